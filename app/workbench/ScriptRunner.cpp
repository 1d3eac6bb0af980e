// ScriptRunner: scripted sessions on the workbench, delivered as window-system events.
#include "app/workbench/ScriptRunner.h"
#include "host/EffectsBrowser.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <cstdio>
#include <string>

#include "app/workbench/Workbench.h"
#include "graphnodes/FXGraphViewNode.h"
#include "graphview/FXGraphView.h"
#include "host/Edit.h"
#include "host/GlobManager.h"
#include "host/ToolkitApp.h"
#include "host/Vob.h"
#include "refhost/edit/EditFile.h"
#include "refhost/toolkit/GlobImpl.h"

namespace {

// A dragged template passes through this many points between the list and the drop point.
constexpr int kDragSteps = 8;

Qt::MouseButton qtButton(ScriptStep::Button b) {
    return b == ScriptStep::Right    ? Qt::RightButton
           : b == ScriptStep::Middle ? Qt::MiddleButton
                                     : Qt::LeftButton;
}

int qtKey(const std::string& name) {
    static const struct {
        const char* name;
        int key;
    } named[] = {{"shift", Qt::Key_Shift},   {"control", Qt::Key_Control},  {"alt", Qt::Key_Alt},
                 {"escape", Qt::Key_Escape}, {"delete", Qt::Key_Delete},    {"backspace", Qt::Key_Backspace},
                 {"return", Qt::Key_Return}, {"tab", Qt::Key_Tab},          {"space", Qt::Key_Space},
                 {"left", Qt::Key_Left},     {"right", Qt::Key_Right},      {"up", Qt::Key_Up},
                 {"down", Qt::Key_Down},     {"home", Qt::Key_Home},        {"end", Qt::Key_End},
                 {"pageup", Qt::Key_PageUp}, {"pagedown", Qt::Key_PageDown}};
    for (const auto& k : named)
        if (name == k.name)
            return k.key;
    if (name.size() == 1 && name[0] >= 'a' && name[0] <= 'z')
        return Qt::Key_A + (name[0] - 'a');
    if (name.size() == 1 && name[0] >= '0' && name[0] <= '9')
        return Qt::Key_0 + (name[0] - '0');
    return 0;
}

Qt::KeyboardModifiers modifiersOf(const std::vector<std::string>& keys) {
    Qt::KeyboardModifiers m;
    for (const std::string& k : keys) {
        if (k == "shift")
            m |= Qt::ShiftModifier;
        else if (k == "control")
            m |= Qt::ControlModifier;
        else if (k == "alt")
            m |= Qt::AltModifier;
    }
    return m;
}

// A node of the view by its id ("1.0.2"), its title or its graph node's name.
const FXGraphViewNode* findByName(const FXGraphView& view, const std::string& name) {
    const WString wide = toWide(String(name.c_str()));
    for (const auto& n : view.nodes())
        if (std::string(n->getId().asString().c_str()) == name || n->getName() == wide ||
            (n->node() && n->node()->getName() == wide))
            return n.get();
    return nullptr;
}

} // namespace

ScriptRunner::ScriptRunner(const Targets& targets, std::string snapshotDir)
    : t_(targets), snapshotDir_(std::move(snapshotDir)) {}

std::string ScriptRunner::snapshotPath(int step) const {
    char name[32];
    std::snprintf(name, sizeof name, "step-%03d.png", step);
    return snapshotDir_ + "/" + name;
}

ScriptRunner::eResult ScriptRunner::run(const Script& script, std::string& error) {
    if (!t_.bench || !t_.view || !t_.vob) {
        error = "there is no graph view to play the script on";
        return Failed;
    }
    settle();
    int number = 0;
    for (const ScriptStep& step : script.steps) {
        ++number;
        std::string why;
        if (!play(step, why)) {
            error = "step " + std::to_string(number) + ": " + why;
            return Failed;
        }
        settle();
        if (!snapshotDir_.empty() && !t_.bench->saveSnapshot(snapshotPath(number).c_str())) {
            error = "step " + std::to_string(number) + ": can't write " + snapshotPath(number);
            return Failed;
        }
    }
    return Played;
}

void ScriptRunner::settle() {
    processToolkitEvents();
    GlobManager::instance().deliverTimerEvents();
    processToolkitEvents();
}

void ScriptRunner::sendMouse(Glob& to, int qtType, const XY<int>& viewPos, int button, unsigned holding) {
    // View pixels to the screen, then to the receiving widget's frame, where Qt's y runs down.
    const XY<int> origin = t_.view->getPosition();
    const XY<int> screen(origin.x + viewPos.x, origin.y + viewPos.y);
    const XY<int> local = to.screenXYToGlobXY(screen);
    const QPointF q(local.x, to.height() - 1 - local.y);
    const QPointF global(screen.x, toolkit::screenHeight() - 1 - screen.y);
    QMouseEvent e(static_cast<QEvent::Type>(qtType), q, global, static_cast<Qt::MouseButton>(button),
                  Qt::MouseButtons(buttons_), Qt::KeyboardModifiers(holding));
    QCoreApplication::sendEvent(to.impl().widget, &e);
}

bool ScriptRunner::play(const ScriptStep& step, std::string& why) {
    FXGraphView& view = *t_.view;
    const unsigned holding = modifiersOf(step.holding).toInt();
    switch (step.action) {
    case ScriptStep::Press: {
        const Qt::MouseButton b = qtButton(step.button);
        buttons_ |= b;
        sendMouse(view, QEvent::MouseButtonPress, step.at, b, holding);
        return true;
    }
    case ScriptStep::Move:
        sendMouse(view, QEvent::MouseMove, step.at, Qt::NoButton, holding);
        return true;
    case ScriptStep::Release: {
        const Qt::MouseButton b = qtButton(step.button);
        buttons_ &= ~b;
        sendMouse(view, QEvent::MouseButtonRelease, step.at, b, holding);
        return true;
    }
    case ScriptStep::Wheel: {
        const XY<int> local = step.at;
        const XY<int> origin = view.getPosition();
        const QPointF q(local.x, view.height() - 1 - local.y);
        const QPointF global(origin.x + local.x, toolkit::screenHeight() - 1 - (origin.y + local.y));
        QWheelEvent e(q, global, QPoint(), QPoint(0, 120 * step.wheelSteps), Qt::MouseButtons(buttons_),
                      modifiersOf(step.holding), Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(view.impl().widget, &e);
        return true;
    }
    case ScriptStep::KeyDown:
    case ScriptStep::KeyUp: {
        const bool down = step.action == ScriptStep::KeyDown;
        QKeyEvent e(down ? QEvent::KeyPress : QEvent::KeyRelease, qtKey(step.text), Qt::NoModifier);
        QCoreApplication::sendEvent(view.impl().widget, &e);
        return true;
    }
    case ScriptStep::Drop: {
        EffectsBrowser* list = t_.templates;
        const int row = list ? list->rowOf(toWide(String(step.text.c_str()))) : -1;
        if (row < 0) {
            why = "no template \"" + step.text + "\" in the list to drag from";
            return false;
        }
        // From the row's middle to the drop point; the list holds the pointer until the release,
        // as the window system gives a pressed widget every move.
        const XY<int> origin = view.getPosition();
        const XY<int> rowScreen(list->getPosition().x + list->rowCentre(row).x,
                                list->getPosition().y + list->rowCentre(row).y);
        const XY<int> start(rowScreen.x - origin.x, rowScreen.y - origin.y);
        const unsigned mods = step.replace ? Qt::ControlModifier : Qt::NoModifier;
        buttons_ |= Qt::LeftButton;
        sendMouse(*list, QEvent::MouseButtonPress, start, Qt::LeftButton, 0);
        for (int i = 1; i <= kDragSteps; ++i) {
            const XY<int> p(start.x + (step.at.x - start.x) * i / kDragSteps,
                            start.y + (step.at.y - start.y) * i / kDragSteps);
            sendMouse(*list, QEvent::MouseMove, p, Qt::NoButton, i == kDragSteps ? mods : 0);
            processToolkitEvents();
        }
        buttons_ &= ~Qt::LeftButton;
        sendMouse(*list, QEvent::MouseButtonRelease, step.at, Qt::LeftButton, mods);
        return true;
    }
    case ScriptStep::SetTime:
        t_.vob->setCurrentTime(step.seconds);
        return true;
    case ScriptStep::Undo:
        t_.vob->undoRequest();
        return true;
    case ScriptStep::Redo:
        t_.vob->redoRequest();
        return true;
    case ScriptStep::Save: {
        std::string error;
        if (!t_.vob->edit() || !EditFile::save(*t_.vob->edit(), step.text, error)) {
            why = error.empty() ? "nothing to save" : error;
            return false;
        }
        return true;
    }
    case ScriptStep::ExpectNodes:
        if (static_cast<int>(view.nodes().size()) != step.count) {
            why = "expected " + std::to_string(step.count) + " nodes, the view shows " +
                  std::to_string(view.nodes().size());
            return false;
        }
        return true;
    case ScriptStep::ExpectConnection: {
        const FXGraphViewNode* from = findByName(view, step.from);
        const FXGraphViewNode* to = findByName(view, step.to);
        if (!from || !to) {
            why = "no node \"" + (from ? step.to : step.from) + "\" in the view";
            return false;
        }
        for (int i = 0; i < to->numInputs(); ++i)
            if ((step.input < 0 || step.input == i) && to->getInputNode(i) == from)
                return true;
        why = "\"" + step.from + "\" doesn't feed " +
              (step.input < 0 ? std::string("\"") : "input " + std::to_string(step.input) + " of \"") +
              step.to + "\"";
        return false;
    }
    }
    return true;
}
