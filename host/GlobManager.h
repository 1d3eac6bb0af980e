// GlobManager: owns the root widgets, shows them, deletes them at a safe moment, runs timers.
#pragma once

#include <vector>

#include "host/GlobCreationInfo.h"
#include "host/WidgetPosition.h"
#include "host/XY.h"

class Glob;
class Canvas;

// Timer events reach every widget with the timer interest at the host's period, 40 ms.
class GlobManager {
public:
    static GlobManager& instance();

    // Shows a root widget and takes it over. It goes where Glob::setupRootPos last said, if
    // that wasn't used yet.
    void realize(Glob* g);
    // Deletes a root widget (or takes a child out of its parent and deletes it) from the event
    // loop, never inside the call that asked.
    void requestDeletion(Glob* g);
    // Performs the deletions asked for so far; the event loop does this on its own.
    int processDeletions();
    bool owns(const Glob* g) const;
    const std::vector<Glob*>& roots() const { return roots_; }
    // Deletes every root widget now.
    void destroyAll();

    // The screen position (bottom-left) for a new root widget of the info's size.
    XY<int> getPosForGlob(const GlobCreationInfo& info, const WidgetPosition& pos) const;
    // pos moved as little as needed to keep a widget of that size on the screen.
    XY<int> getSafePosForGlob(Canvas* canvas, const XY<int>& size, const XY<int>& pos) const;

    // One round of timer events, as the host's clock gives them.
    void deliverTimerEvents();
    static int timerPeriodMs() { return 40; }

    // Internal to the toolkit.
    void noteTimerInterest(Glob* g, bool on);
    void forget(Glob* g);

private:
    GlobManager() = default;
    std::vector<Glob*> roots_;
    std::vector<Glob*> pendingDeletion_;
    std::vector<Glob*> timerClients_;
    bool timerRunning_ = false;
};

// Where the window system puts a new window of that size: centred on the screen.
XY<int> glib_getPosForWindow(int w, int h);
// The screen's size in pixels.
XY<int> glib_getScreenSize();
