// TabbedDialogue: a strip of tabs, each a page with a label and a page id.
#pragma once

#include <vector>

#include "host/Glob.h"

// A click on a tab selects it and sends changePageMsg to the parent with an
// EventMsgData<TabDetails> as data.
class TabbedDialogue : public Glob {
public:
    static constexpr const char* changePageMsg = "TabbedDialogueChangePage";
    struct InitArgs : GlobCreationInfo {
        InitArgs(int w, int h, const std::vector<UIString>& p, unsigned f = 0)
            : GlobCreationInfo(w, h), pages(p), flags(f) {}
        std::vector<UIString> pages;
        unsigned flags = 0;
    };

    explicit TabbedDialogue(const InitArgs& args);
    const char* idstring() const override { return "TabbedDialogue"; }
    static int minHeight();

    // Replaces the pages; true if labels changed. Ids of pages whose label stays are kept.
    bool setPages(const std::vector<UIString>& pages, int tabKind, bool redraw);
    int numPages() const { return static_cast<int>(pages_.size()); }
    void setPageID(int index, const WString& id);
    WString getPageID(int index) const;
    int getCurrentTabIndex() const { return current_; }
    // The index of the page with that label (compared as resolved text); negative if none.
    int findPageIdx(const UIString& label) const;
    // Selects a page; notify sends the change message as a click would. False if out of range.
    bool selectPage(int index, bool notify, bool redraw);
    // Selects the page with that id.
    virtual bool selectPage(const WString& id, bool notify, bool redraw);
    const std::vector<UIString>& pages() const { return pages_; }

private:
    void syncControl();
    std::vector<UIString> pages_;
    std::vector<WString> ids_;
    int current_ = -1;
};
