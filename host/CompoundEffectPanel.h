// CompoundEffectPanel: the window of one effect of a graph, opened on one of its pages.
#pragma once

#include "host/EditGraphIterator.h"
#include "host/LightweightString.h"

class Glob;
class Vob;

// The "params" page lists the effect's parameters, each editable as an undoable step of the
// Vob's edit; any other page name opens the same page. One window per effect: asking again
// raises the window that is open.
class CompoundEffectPanel {
public:
    // The window, or null when the iterator stands on no effect or the Vob has no edit.
    static Glob* create(Vob* vob, EditGraphIterator it, const LightweightString<char>& page);
    // The number of effect windows open now.
    static int openCount();
};
