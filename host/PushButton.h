// PushButton: the standard text button of toolbars.
#pragma once

#include "host/Button.h"

class PushButton : public Button {
public:
    explicit PushButton(const InitArgs& args);
    const char* idstring() const override { return "PushButton"; }
    // The height of a push button in the standard look.
    static int calcHeight();
};
