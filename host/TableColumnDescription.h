// TableColumnDescription: one column of a table: its title, field id and width settings.
#pragma once

#include "host/LightweightString.h"
#include "host/UIString.h"
#include "host/XY.h"

// widthKind 1 stretches the column over the free width; 0 keeps width pixels (0: natural).
struct TableColumnDescription {
    UIString title;
    String fieldId;
    int widthKind = 1;
    int width = 0;
    XY<int> flags;
};
