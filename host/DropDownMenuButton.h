// DropDownMenuButton: a button that shows the selected one of a list of items and drops the list.
#pragma once

#include <vector>

#include "host/Glob.h"
#include "host/MenuItemIndex.h"
#include "host/WidgetCallback.h"

// A choice by the user selects the item and sends dropDownMenuButtonMsg to the parent (or fires
// the callback) with a MenuData::Change as data.
class DropDownMenuButton : public Glob {
public:
    static constexpr const char* dropDownMenuButtonMsg = "DropDownMenuButton";
    struct InitArgs : GlobCreationInfo {
        InitArgs(const std::vector<UIString>& i, const WidgetCallback& cb, int w = 0, int h = 0)
            : GlobCreationInfo(w, h), items(i), callback(cb) {}
        std::vector<UIString> items;
        WidgetCallback callback;
    };

    explicit DropDownMenuButton(const InitArgs& args);
    const char* idstring() const override { return "DropDownMenuButton"; }

    MenuItemIndex getSelectedItem() const { return selected_; }
    // Selects without a message; false for an index out of range.
    bool setSelectedItem(MenuItemIndex i);
    const std::vector<UIString>& getItems() const { return items_; }
    // What the user's choice does.
    void choose(unsigned short index);

private:
    std::vector<UIString> items_;
    WidgetCallback callback_;
    MenuItemIndex selected_;
};
