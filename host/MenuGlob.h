// MenuGlob: a widget with a pop-up menu, built afresh each time it is shown.
#pragma once

#include <vector>

#include "host/Glob.h"
#include "host/MenuItem.h"

// On a right-button release processRightMouseClicks calls reviewMenu, which may rebuild the
// items, then shows getMenuItems under the title. A choice fires the item's callback.
class MenuGlob : public Glob {
public:
    using Glob::Glob;

    void clearMenu();
    void setMenuTitle(const UIString& title) { title_ = title; }
    const UIString& getMenuTitle() const { return title_; }
    void addMenuItem(const MenuItem& item) { items_.push_back(item); }
    void setMenuItems(const std::vector<MenuItem>& items) { items_ = items; }
    const std::vector<MenuItem>& menuItems() const { return items_; }

    virtual void reviewMenu(const Event* e) {}
    virtual std::vector<MenuItem> getMenuItems(const Event* e) { return items_; }

    // Shows the menu on a right-button release; true if one was shown.
    bool processRightMouseClicks(const Event& e);
    // reviewMenu, then getMenuItems: what a menu at e would show.
    std::vector<MenuItem> prepareMenu(const Event* e);
    // Pops the menu up at the pointer; false when there are no items.
    bool popUpMenu(const Event* e);

private:
    UIString title_;
    std::vector<MenuItem> items_;
};
