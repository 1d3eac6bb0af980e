// FloatingLogMetadataPanel: a floating window of what the log knows of a shot.
#pragma once

#include "host/Cookie.h"
#include "host/XY.h"

class VobClient;

// Shows the shot's name, its kind, its source and its span on its channel, read from the open
// edit that holds it. The window is a Vob client of that edit (so it follows renames).
class FloatingLogMetadataPanel {
public:
    // The window's client, or null when no open edit holds a shot with that cookie.
    static VobClient* create(const Cookie& shot, const XY<int>& pos);
};
