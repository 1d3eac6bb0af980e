// Checkbox: a labelled check box.
#pragma once

#include "host/FontDesc.h"
#include "host/Glob.h"
#include "host/WidgetCallback.h"

// A change by the user sends "Checkbox 1" or "Checkbox 0" (or the callback's own message with
// " 1"/" 0" appended) to the parent, with the checkbox as sender.
class Checkbox : public Glob {
public:
    static constexpr const char* checkboxMsg = "Checkbox ";
    struct InitArgs : GlobCreationInfo {
        InitArgs(const UIString& l, bool v, int w = 0, int h = 0)
            : GlobCreationInfo(w, h), label(l), value(v) {}
        UIString label;
        bool value = false;
        WidgetCallback callback;
    };

    explicit Checkbox(const InitArgs& args);
    const char* idstring() const override { return "Checkbox"; }
    bool getValue() const { return value_; }
    // Sets the value without a message.
    void setValue(bool v);
    // Does what a click does; false if inactive.
    bool click();

    static int getDefaultAppearance() { return 0; }
    // The width a checkbox with this label takes: box, gap and text.
    static int calcWidth(const UIString& label, int appearance, const FontDesc& font);

private:
    void userChanged(bool v);
    UIString label_;
    WidgetCallback callback_;
    bool value_;
};
