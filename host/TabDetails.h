// TabDetails: which tab was chosen: its label and its index.
#pragma once

#include "host/UIString.h"

struct TabDetails {
    UIString label;
    int index = -1;
};
