// ImageButton: a button that shows an icon instead of text.
#pragma once

#include "host/Button.h"

// A size of 0 takes the icon's size plus a small margin. An icon that can't be read shows the
// label text instead.
class ImageButton : public Button {
public:
    struct InitArgs : Button::InitArgs {
        InitArgs(const String& path, const WidgetCallback& cb, int w = 0, int h = 0)
            : Button::InitArgs(UIString(), cb, w, h), iconPath(path) {}
        String iconPath;
    };

    explicit ImageButton(const InitArgs& args);
    const char* idstring() const override { return "ImageButton"; }
    const String& getIconPath() const { return iconPath_; }
    bool hasIcon() const { return hasIcon_; }

private:
    String iconPath_;
    bool hasIcon_ = false;
};
