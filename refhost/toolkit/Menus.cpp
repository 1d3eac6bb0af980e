// Widget callbacks, menu items and the pop-up menu of a MenuGlob, on QMenu.
#include <QAction>
#include <QActionGroup>
#include <QMenu>

#include "host/MenuData.h"
#include "host/MenuGlob.h"
#include "host/WidgetCallback.h"
#include "refhost/toolkit/GlobImpl.h"

int WidgetCallback::fire(Glob* sender, const LightweightString<char>& msg, Zk::Ptr<iObject> data) const {
    if (call_)
        return call_(msg, data);
    if (message_.empty())
        return 0;
    EventHandler* to = target_ ? target_ : (sender ? static_cast<EventHandler*>(sender->parent()) : nullptr);
    return to ? to->handleDataMessageEvent(message_, sender, data) : 0;
}

int MenuItem::choose(Glob* owner, unsigned short choice) const {
    if (!active_)
        return 0;
    Zk::Ptr<iObject> data;
    if (!choices_.empty()) {
        if (choice >= choices_.size())
            return 0;
        data = Zk::Ptr<iObject>(new MenuData::Change(choices_[choice].resolve(), choice));
    }
    LightweightString<char> text = toUtf8(label_.resolve());
    if (!callback_.message().empty() && !callback_.target() && owner)
        return owner->handleDataMessageEvent(callback_.message(), owner, data);
    return callback_.fire(owner, text, data);
}

void MenuGlob::clearMenu() {
    items_.clear();
    title_ = UIString();
}

std::vector<MenuItem> MenuGlob::prepareMenu(const Event* e) {
    reviewMenu(e);
    return getMenuItems(e);
}

bool MenuGlob::processRightMouseClicks(const Event& e) {
    if (!mouse_right_event(e) || !mouse_up_event(e))
        return false;
    return popUpMenu(&e);
}

bool MenuGlob::popUpMenu(const Event* e) {
    std::vector<MenuItem> items = prepareMenu(e);
    if (items.empty())
        return false;
    auto* menu = new QMenu(impl().widget);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setObjectName(QStringLiteral("nodedeskPopup"));
    WString title = getMenuTitle().resolve();
    if (!title.empty()) {
        QAction* t = menu->addAction(toolkit::toQString(title));
        t->setEnabled(false);
        menu->addSeparator();
    }
    Glob* self = this;
    for (const MenuItem& item : items) {
        if (item.isSeparator()) {
            menu->addSeparator();
            continue;
        }
        QString label = toolkit::toQString(item.label().resolve());
        if (item.choices().empty()) {
            QAction* a = menu->addAction(label);
            a->setEnabled(item.active());
            QObject::connect(a, &QAction::triggered, [self, item] {
                if (is_good_glob_ptr(self))
                    item.choose(self);
            });
            continue;
        }
        QMenu* sub = menu->addMenu(label);
        sub->setEnabled(item.active());
        auto* group = new QActionGroup(sub);
        for (std::size_t i = 0; i < item.choices().size(); ++i) {
            QAction* a = sub->addAction(toolkit::toQString(item.choices()[i].resolve()));
            a->setCheckable(true);
            a->setChecked(i == item.selected().index);
            group->addAction(a);
            auto idx = static_cast<unsigned short>(i);
            QObject::connect(a, &QAction::triggered, [self, item, idx] {
                if (is_good_glob_ptr(self))
                    item.choose(self, idx);
            });
        }
    }
    XY<int> at = e ? e->pos() : XY<int>(width() / 2, height() / 2);
    menu->popup(impl().widget->mapToGlobal(QPoint(at.x, height() - 1 - at.y)));
    return true;
}
