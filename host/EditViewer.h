// Edit viewers: windows that show an edit's picture at a time, and the current window.
#pragma once

#include "host/Cookie.h"
#include "host/LightweightString.h"
#include "host/XY.h"

class Glob;

// Opens a viewer of the edit with that cookie at pos (screen, bottom-left; (0, 0) takes the
// position set by Glob::setupRootPos, or the centre), with its playhead at time. kind "tilev"
// is a tile viewer: the picture of the edit at the playhead, and the edit's name. The viewer
// is a client of its own Vob on the edit, in the group named by the edit's cookie. Null when no
// open edit has that cookie; the cookie of a shot views the edit that holds it, time counting
// from the shot's start. The last argument names a layout variant and is kept for the title.
Glob* makeEditViewer(const LightweightString<char>& kind, const Cookie& edit, const XY<int>& pos, double time,
                     const LightweightString<char>& variant);
// Makes g the current window: raised and given the keyboard.
void set_it(Glob* g);
