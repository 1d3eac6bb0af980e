// GlobManager: root widgets, deferred deletion, root placement and the timer round.
#include "host/GlobManager.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QMetaObject>
#include <QScreen>
#include <QTimer>
#include <algorithm>
#include <optional>

#include "host/Glob.h"
#include "host/ToolkitApp.h"
#include "refhost/toolkit/GlobImpl.h"

namespace {

std::optional<XY<int>>& pendingRootPos() {
    static std::optional<XY<int>> p;
    return p;
}

QTimer* heartbeat() {
    static QTimer* t = nullptr;
    if (!t && QCoreApplication::instance()) {
        t = new QTimer(QCoreApplication::instance());
        t->setInterval(GlobManager::timerPeriodMs());
        QObject::connect(t, &QTimer::timeout, [] { GlobManager::instance().deliverTimerEvents(); });
    }
    return t;
}

} // namespace

GlobManager& GlobManager::instance() {
    static GlobManager* m = new GlobManager;
    return *m;
}

void Glob::setupRootPos(Canvas*, const XY<int>& screenPos) {
    pendingRootPos() = screenPos;
}

void GlobManager::realize(Glob* g) {
    if (!is_good_glob_ptr(g) || g->parent())
        return;
    if (pendingRootPos()) {
        g->setPos(pendingRootPos()->x, pendingRootPos()->y);
        pendingRootPos().reset();
    }
    if (!owns(g))
        roots_.push_back(g);
    g->impl().widget->show();
    g->update();
}

void GlobManager::requestDeletion(Glob* g) {
    if (!is_good_glob_ptr(g) || std::count(pendingDeletion_.begin(), pendingDeletion_.end(), g))
        return;
    pendingDeletion_.push_back(g);
    if (QCoreApplication::instance())
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [] { GlobManager::instance().processDeletions(); },
            Qt::QueuedConnection);
}

int GlobManager::processDeletions() {
    int n = 0;
    while (!pendingDeletion_.empty()) {
        Glob* g = pendingDeletion_.front();
        pendingDeletion_.erase(pendingDeletion_.begin());
        if (!is_good_glob_ptr(g))
            continue;
        if (Glob* p = g->parent())
            p->removeWidget(g, true);
        else
            delete g;
        ++n;
    }
    return n;
}

bool GlobManager::owns(const Glob* g) const {
    return std::find(roots_.begin(), roots_.end(), g) != roots_.end();
}

void GlobManager::destroyAll() {
    processDeletions();
    while (!roots_.empty())
        delete roots_.back();
}

void GlobManager::forget(Glob* g) {
    roots_.erase(std::remove(roots_.begin(), roots_.end(), g), roots_.end());
    pendingDeletion_.erase(std::remove(pendingDeletion_.begin(), pendingDeletion_.end(), g),
                           pendingDeletion_.end());
    noteTimerInterest(g, false);
}

XY<int> GlobManager::getPosForGlob(const GlobCreationInfo& info, const WidgetPosition& pos) const {
    XY<int> screen = glib_getScreenSize();
    switch (pos.kind()) {
    case WidgetPosition::ScreenKind:
    case WidgetPosition::BottomLeftKind:
        return XY<int>(pos.x(), pos.y());
    case WidgetPosition::TopLeftKind:
        return XY<int>(pos.x(), screen.y - pos.y() - info.height);
    case WidgetPosition::CentreKind: {
        XY<int> c = glib_getPosForWindow(info.width, info.height);
        return XY<int>(c.x + pos.x(), c.y + pos.y());
    }
    default:
        return glib_getPosForWindow(info.width, info.height);
    }
}

XY<int> GlobManager::getSafePosForGlob(Canvas*, const XY<int>& size, const XY<int>& pos) const {
    XY<int> screen = glib_getScreenSize();
    int x = std::clamp(pos.x, 0, std::max(0, screen.x - size.x));
    int y = std::clamp(pos.y, 0, std::max(0, screen.y - size.y));
    return XY<int>(x, y);
}

void GlobManager::noteTimerInterest(Glob* g, bool on) {
    auto it = std::find(timerClients_.begin(), timerClients_.end(), g);
    if (on && it == timerClients_.end())
        timerClients_.push_back(g);
    if (!on && it != timerClients_.end())
        timerClients_.erase(it);
    QTimer* t = heartbeat();
    if (!t)
        return;
    if (!timerClients_.empty() && !t->isActive())
        t->start();
    if (timerClients_.empty() && t->isActive())
        t->stop();
}

void GlobManager::deliverTimerEvents() {
    std::vector<Glob*> round = timerClients_;
    for (Glob* g : round)
        if (is_good_glob_ptr(g) && (g->getInterests() & Glob::TimerInterest))
            g->handleTimerEvent();
}

XY<int> glib_getScreenSize() {
    ensureToolkitApplication();
    QScreen* s = QGuiApplication::primaryScreen();
    if (!s)
        return XY<int>(1920, 1080);
    return XY<int>(s->geometry().width(), s->geometry().height());
}

XY<int> glib_getPosForWindow(int w, int h) {
    XY<int> s = glib_getScreenSize();
    return XY<int>(std::max(0, (s.x - w) / 2), std::max(0, (s.y - h) / 2));
}
