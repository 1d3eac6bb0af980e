// WidgetSurround: the spacing kept around a child widget when it is placed.
#pragma once

// margin is extra space in pixels on every side; weight (0.2 by default) is the share of spare
// width a widget takes when a row of widgets is stretched.
struct WidgetSurround {
    int margin = 0;
    float weight = 0.2f;
};
