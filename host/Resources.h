// Resource texts and icons of the host: numbered user-interface texts and icon file paths.
#pragma once

#include "host/LightweightString.h"

// The text of resource id, formatted: fmt 0 leaves it as it is; fmt 1 upper-cases it. An
// unknown id gives an empty text.
WString resourceStrW(unsigned id, int fmt = 0);
// prefix + resource text + suffix, formatted as resourceStrW.
WString paddedResourceStrW(unsigned id, const WString& prefix, const WString& suffix, int fmt = 0);
// The full path of a named icon file of the host; empty if there is no such icon.
String getIconPath(const String& name);
// Where resource texts are read from: a file of lines "<id> <text>". Loaded on first use from
// the host's resources; calling this replaces them (false and no change if the file can't be read).
bool loadResourceStrings(const String& path);
// Parses resource text; lines that aren't "<id> <text>" are skipped and counted in badLines.
int parseResourceStrings(const String& text, int* badLines);
