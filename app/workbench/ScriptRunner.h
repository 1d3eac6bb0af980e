// ScriptRunner: plays a scripted session on the workbench's real widgets. Pointer, wheel and key
// actions go to the widgets as the window system's events would, so they take the same path
// as a person's; a drop drags the template from the template list to the point and releases it
// there. Optionally writes a picture of the window after each step.
#pragma once

#include <string>

#include "app/workbench/Script.h"

class FXGraphView;
class Glob;
class EffectsBrowser;
class Vob;
class Workbench;

class ScriptRunner {
public:
    struct Targets {
        Workbench* bench = nullptr;
        FXGraphView* view = nullptr;
        // The effect graph tool's template list, when it is shown.
        EffectsBrowser* templates = nullptr;
        Vob* vob = nullptr;
    };
    // Exit codes of a run.
    enum eResult { Played = 0, Failed = 1, BadScript = 2 };

    ScriptRunner(const Targets& targets, std::string snapshotDir);

    // Plays every step in order. Stops at the first step that fails (an expectation not met, a
    // save that can't be written, a drop with nothing to drag from) with a one-line error that
    // names the step.
    eResult run(const Script& script, std::string& error);
    // The picture written after step n (from 1).
    std::string snapshotPath(int step) const;

private:
    bool play(const ScriptStep& step, std::string& why);
    // A mouse event of the window system to a widget, at a point in the view's pixels.
    void sendMouse(Glob& to, int qtType, const XY<int>& viewPos, int button, unsigned holding);
    void settle();

    Targets t_;
    std::string snapshotDir_;
    // Mouse buttons held down, as Qt's button bits.
    int buttons_ = 0;
};
