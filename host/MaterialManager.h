// MaterialManager: the materials of the open edits.
#pragma once

#include "host/Cookie.h"
#include "host/LightweightString.h"

class MaterialManager {
public:
    // The image file behind an image clip, empty when the cookie names no image material of an
    // open edit.
    static WString findFileForImageClip(const Cookie& material);
};
