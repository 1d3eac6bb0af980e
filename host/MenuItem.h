// MenuItem: one entry of a pop-up menu: a plain command or a list of choices.
#pragma once

#include <vector>

#include "host/MenuItemIndex.h"
#include "host/UIString.h"
#include "host/WidgetCallback.h"

// A plain item fires its callback with the item's label as message text and no data. An item
// with choices shows them as a sub-menu with the selected one ticked; choosing fires the
// callback with a MenuData::Change. An item without label and callback is a separator.
class MenuItem {
public:
    MenuItem() = default;
    MenuItem(const UIString& label, const WidgetCallback& cb, bool active = true)
        : label_(label), callback_(cb), active_(active) {}
    MenuItem(const UIString& label, const WidgetCallback& cb, const std::vector<UIString>& choices,
             MenuItemIndex selected, bool active = true)
        : label_(label), callback_(cb), choices_(choices), selected_(selected), active_(active) {}

    static MenuItem separator() { return MenuItem(); }

    const UIString& label() const { return label_; }
    const WidgetCallback& callback() const { return callback_; }
    const std::vector<UIString>& choices() const { return choices_; }
    MenuItemIndex selected() const { return selected_; }
    bool active() const { return active_; }
    bool isSeparator() const { return label_.resolve().empty() && callback_.empty(); }

    // What choosing the item (choice: the index among its choices) does; 0 if nothing acted.
    int choose(Glob* owner, unsigned short choice = 0) const;

private:
    UIString label_;
    WidgetCallback callback_;
    std::vector<UIString> choices_;
    MenuItemIndex selected_;
    bool active_ = true;
};
