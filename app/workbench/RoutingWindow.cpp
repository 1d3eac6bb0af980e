// RoutingWindow: opening the routing panel and driving its table with pointer events.
#include "app/workbench/RoutingWindow.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "host/CompoundEffectMonitor.h"
#include "host/GlobManager.h"
#include "host/MenuGlob.h"
#include "host/TableWidget.h"
#include "host/UifStd.h"
#include "host/Vob.h"
#include "refhost/notify/FunctionCallback.h"
#include "routing/AudioRoutingView.h"
#include "routing/MultiTrackRoutingView.h"

namespace {

bool toInt(const char* s, int& out) {
    char* end = nullptr;
    long v = std::strtol(s, &end, 10);
    if (end == s || *end != '\0' || v < 0 || v > 100000)
        return false;
    out = static_cast<int>(v);
    return true;
}

XY<int> centreOf(TableWidget* t, int row) {
    Zk::Box<int> b = t->getCellBox(XY<int>(0, row));
    return XY<int>((b.x1 + b.x2) / 2, (b.y1 + b.y2) / 2);
}

} // namespace

const char* RoutingWindow::Options::usage() {
    return "[--routing] [--routing-tab LABEL] [--routing-click ROW] [--routing-drag FROM:TO] "
           "[--routing-snapshot FILE]";
}

bool RoutingWindow::Options::parse(int argc, char** argv, int& i) {
    const std::string a = argv[i];
    if (a == "--routing") {
        commands.push_back("routing");
        return true;
    }
    if (i + 1 >= argc)
        return false;
    std::string v = argv[i + 1];
    if (a == "--routing-drag") {
        // FROM:TO on the command line.
        std::size_t colon = v.find(':');
        if (colon == std::string::npos)
            return false;
        v[colon] = ' ';
    } else if (a != "--routing-tab" && a != "--routing-click" && a != "--routing-snapshot") {
        return false;
    }
    commands.push_back(a.substr(2) + " " + v);
    ++i;
    return true;
}

RoutingWindow::RoutingWindow(Vob* vob, Glob* beside)
    : vob_(vob), beside_(beside), monitor_(std::make_unique<CompoundEffectMonitor>(vob)) {}

RoutingWindow::~RoutingWindow() {
    // The panel leaves the monitor as it goes, so it goes first, at once.
    if (MultiTrackRoutingView* p = panel())
        delete p;
}

MultiTrackRoutingView* RoutingWindow::panel() const {
    return panel_ && is_good_glob_ptr(panel_) ? panel_ : nullptr;
}

bool RoutingWindow::isOpen() const {
    return panel() != nullptr;
}

void RoutingWindow::open() {
    if (isOpen())
        return;
    const int w = 360, h = beside_ ? beside_->height() : 480;
    MultiTrackRoutingView::InitArgs args(w, h, vob_);
    panel_ = new MultiTrackRoutingView(args);
    panel_->setTitle(UIString(L"Routing"));
    panel_->setMovable(true);
    panel_->setResizable(true);
    XY<int> at = glib_getPosForWindow(w, h);
    if (beside_)
        at = XY<int>(beside_->getPosition().x + beside_->width() + UifStd::getWidgetGap(),
                     beside_->getPosition().y);
    Glob::setupRootPos(panel_->canvas(), at);
    GlobManager::instance().realize(panel_);
}

void RoutingWindow::close() {
    if (MultiTrackRoutingView* p = panel())
        GlobManager::instance().requestDeletion(p);
    panel_ = nullptr;
}

void RoutingWindow::toggle() {
    if (isOpen())
        close();
    else
        open();
}

void RoutingWindow::addToggleTo(MenuGlob* menu) {
    if (!menu)
        return;
    menu->addMenuItem(
        MenuItem(UIString(L"Routing panel"), WidgetCallback(refhost::makeCallback([this](const NotifyMsg&) {
                     toggle();
                     return 1;
                 }))));
}

bool RoutingWindow::selectTab(const WString& label) {
    MultiTrackRoutingView* p = panel();
    if (!p || !p->getTabs())
        return false;
    int i = p->getTabs()->findPageIdx(UIString(label));
    return i >= 0 && p->getTabs()->selectPage(i, true, true);
}

bool RoutingWindow::clickRow(int row) {
    MultiTrackRoutingView* p = panel();
    AudioRoutingView* audio = p ? p->getAudioView() : nullptr;
    if (!audio || row < 0 || row >= audio->getNumRows())
        return false;
    TableWidget* t = audio->getTable();
    XY<int> at = centreOf(t, row);
    t->dispatchMouseEvent(Event(Event::Down, Event::Left, at, at));
    t->dispatchMouseEvent(Event(Event::Up, Event::Left, at, at));
    return true;
}

bool RoutingWindow::dragRow(int from, int to) {
    MultiTrackRoutingView* p = panel();
    AudioRoutingView* audio = p ? p->getAudioView() : nullptr;
    if (!audio || from < 0 || to < 0 || from >= audio->getNumRows() || to >= audio->getNumRows())
        return false;
    TableWidget* t = audio->getTable();
    const XY<int> press = centreOf(t, from), target = centreOf(t, to);
    const int step = std::max(1, t->getLineHeight() / 2) * (target.y > press.y ? 1 : -1);
    t->dispatchMouseEvent(Event(Event::Down, Event::Left, press, press));
    XY<int> at = press;
    while (at.y != target.y) {
        at.y = std::abs(target.y - at.y) < std::abs(step) ? target.y : at.y + step;
        t->dispatchMouseEvent(Event(Event::Move, Event::Left, at, press));
    }
    t->dispatchMouseEvent(Event(Event::Up, Event::Left, at, press));
    return true;
}

bool RoutingWindow::runCommand(const std::string& line, std::string& error) {
    const std::size_t space = line.find(' ');
    const std::string verb = line.substr(0, space);
    const std::string arg = space == std::string::npos ? std::string() : line.substr(space + 1);
    if (verb == "routing-toggle") {
        toggle();
        return true;
    }
    if (verb != "routing" && verb != "routing-tab" && verb != "routing-click" && verb != "routing-drag" &&
        verb != "routing-snapshot") {
        error = "'" + verb + "' is no routing command";
        return false;
    }
    open();
    if (verb == "routing-tab") {
        if (!selectTab(toWide(String(arg)))) {
            error = "the routing panel has no tab '" + arg + "'";
            return false;
        }
    } else if (verb == "routing-click") {
        int row = -1;
        if (!toInt(arg.c_str(), row) || !clickRow(row)) {
            error = "the routing panel shows no audio row '" + arg + "'";
            return false;
        }
    } else if (verb == "routing-drag") {
        const std::size_t gap = arg.find(' ');
        int from = -1, to = -1;
        if (gap == std::string::npos || !toInt(arg.substr(0, gap).c_str(), from) ||
            !toInt(arg.substr(gap + 1).c_str(), to) || !dragRow(from, to)) {
            error = "the routing panel can't drag rows '" + arg + "'";
            return false;
        }
    } else if (verb == "routing-snapshot") {
        if (arg.empty() || !panel()->saveSnapshot(arg.c_str())) {
            error = "can't write '" + arg + "'";
            return false;
        }
    }
    return true;
}

bool RoutingWindow::run(const Options& options, std::string& error) {
    for (const std::string& c : options.commands)
        if (!runCommand(c, error))
            return false;
    return true;
}
