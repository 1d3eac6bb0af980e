// TabbedDialogue on QTabBar: pages with labels and ids; a click tells the parent.
#include "host/TabbedDialogue.h"

#include <QTabBar>

#include "host/EventMsgData.h"
#include "host/TabDetails.h"
#include "host/UifStd.h"
#include "refhost/toolkit/GlobImpl.h"

TabbedDialogue::TabbedDialogue(const InitArgs& args)
    : Glob(args), pages_(args.pages), ids_(args.pages.size()) {
    auto* bar = new QTabBar(impl().widget);
    impl().control = bar;
    bar->setExpanding(false);
    bar->setDrawBase(true);
    syncControl();
    current_ = pages_.empty() ? -1 : 0;
    QObject::connect(bar, &QTabBar::tabBarClicked, [this](int i) {
        if (i >= 0)
            selectPage(i, true, true);
    });
    resize(args.width > 0 ? args.width : 200, args.height > 0 ? args.height : minHeight());
}

int TabbedDialogue::minHeight() {
    return UifStd::getRowHeight() + 8;
}

void TabbedDialogue::syncControl() {
    auto* bar = static_cast<QTabBar*>(impl().control);
    QSignalBlocker block(bar);
    while (bar->count() > 0)
        bar->removeTab(0);
    for (const UIString& p : pages_)
        bar->addTab(toolkit::toQString(p.resolve()));
    if (current_ >= 0 && current_ < bar->count())
        bar->setCurrentIndex(current_);
}

bool TabbedDialogue::setPages(const std::vector<UIString>& pages, int, bool redraw) {
    bool changed = pages.size() != pages_.size();
    for (std::size_t i = 0; !changed && i < pages.size(); ++i)
        changed = pages[i].resolve() != pages_[i].resolve();
    if (!changed)
        return false;
    std::vector<WString> ids(pages.size());
    for (std::size_t i = 0; i < pages.size(); ++i) {
        int old = findPageIdx(pages[i]);
        if (old >= 0)
            ids[i] = ids_[static_cast<std::size_t>(old)];
    }
    pages_ = pages;
    ids_ = ids;
    if (current_ >= static_cast<int>(pages_.size()))
        current_ = pages_.empty() ? -1 : 0;
    syncControl();
    if (redraw)
        update();
    return true;
}

void TabbedDialogue::setPageID(int index, const WString& id) {
    if (index >= 0 && index < numPages())
        ids_[static_cast<std::size_t>(index)] = id;
}

WString TabbedDialogue::getPageID(int index) const {
    return index >= 0 && index < numPages() ? ids_[static_cast<std::size_t>(index)] : WString();
}

int TabbedDialogue::findPageIdx(const UIString& label) const {
    WString want = label.resolve();
    for (int i = 0; i < numPages(); ++i)
        if (pages_[static_cast<std::size_t>(i)].resolve() == want)
            return i;
    return -1;
}

bool TabbedDialogue::selectPage(int index, bool notify, bool) {
    if (index < 0 || index >= numPages())
        return false;
    current_ = index;
    auto* bar = static_cast<QTabBar*>(impl().control);
    {
        QSignalBlocker block(bar);
        bar->setCurrentIndex(index);
    }
    if (notify && parent())
        parent()->handleDataMessageEvent(changePageMsg, this,
                                         Zk::Ptr<iObject>(new EventMsgData<TabDetails>(
                                             TabDetails{pages_[static_cast<std::size_t>(index)], index})));
    return true;
}

bool TabbedDialogue::selectPage(const WString& id, bool notify, bool redraw) {
    for (int i = 0; i < numPages(); ++i)
        if (ids_[static_cast<std::size_t>(i)] == id)
            return selectPage(i, notify, redraw);
    return false;
}
