// UifStd: the user interface's style metrics, in pixels.
#pragma once

#include "host/FontDesc.h"

// The metrics are fixed for the process; the row height follows the default font size.
class UifStd {
public:
    static UifStd& instance();

    static int getRowHeight();
    static int getWidgetGap();
    static int getIndentWidth();
    static FontDesc getTitleFont();
    // 0: panels are free-floating windows.
    static int getWindowArrangement();
    static int getTheme() { return 0; }
};
