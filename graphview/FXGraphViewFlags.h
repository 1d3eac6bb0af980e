// The redraw and refit flags of the graph view's operations that bring nodes into view.
#pragma once

enum FXGraphVieweRedrawFlag {
    RedrawAlways = 0,    // update the view in any case
    RedrawIfChanged = 1, // update only if the refit moved the view
};

enum FXGraphViewRefitFlag {
    RefitAlways = 0,            // zoom out if the box needs it; no change of centre
    RefitIfTooBig = 1,          // the same, tested only if the box is bigger than the widget
    RefitIfTooBigAndCentre = 2, // as RefitIfTooBig, then centre the view on the box
};
