// Button: a push button with a text label that fires a callback when clicked.
#pragma once

#include "host/Glob.h"
#include "host/WidgetCallback.h"

// The callback fires with the button as sender. A width or height of 0 takes the natural size.
class Button : public Glob {
public:
    struct InitArgs : GlobCreationInfo {
        InitArgs() = default;
        InitArgs(const UIString& l, const WidgetCallback& cb, int w = 0, int h = 0)
            : GlobCreationInfo(w, h), label(l), callback(cb) {}
        UIString label;
        WidgetCallback callback;
    };

    explicit Button(const InitArgs& args);
    const char* idstring() const override { return "Button"; }

    void setLabel(const UIString& label);
    const UIString& getLabel() const { return label_; }
    const WidgetCallback& getCallback() const { return callback_; }
    // Does what a click does; false if the button is inactive.
    bool click();

protected:
    Button(const InitArgs& args, int kind);
    UIString label_;
    WidgetCallback callback_;
};
