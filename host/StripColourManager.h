// StripColourManager: the colours the host gives effects and materials on strips and nodes. An
// effect's colour follows the family of its tag type id (blur, colour, mix, matte, geometry,
// transition, audio, import, alias); a material's is fixed by its cookie, so the same clip has
// the same colour everywhere.
#pragma once

#include "host/Colour.h"
#include "host/Cookie.h"
#include "host/LightweightString.h"

class StripColourManager {
public:
    static Colour getTypeColour(const String& tagTypeId);
    static Colour getColourFor(const Cookie& material);
};
