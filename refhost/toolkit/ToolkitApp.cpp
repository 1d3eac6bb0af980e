// The application object, made lazily by the host program, and the event pumping around it.
#include "host/ToolkitApp.h"

#include <QApplication>
#include <QEvent>
#include <QKeyEvent>
#include <cstdlib>
#include <set>

#include "host/EventHandler.h"
#include "host/GlobManager.h"
#include "refhost/toolkit/KeyState.h"
#include "refhost/toolkit/UiThread.h"

namespace {

int appArgc = 1;
char appName[] = "nodedesk";
char* appArgv[] = {appName, nullptr};

// Follows the keys held down, for the key-state test.
class KeyWatcher : public QObject {
public:
    using QObject::QObject;
    bool eventFilter(QObject* o, QEvent* e) override {
        if (e->type() == QEvent::KeyPress || e->type() == QEvent::KeyRelease) {
            auto* k = static_cast<QKeyEvent*>(e);
            if (!k->isAutoRepeat())
                toolkit::noteKey(k->key(), e->type() == QEvent::KeyPress, k->modifiers());
        } else if (e->type() == QEvent::MouseButtonPress || e->type() == QEvent::MouseMove ||
                   e->type() == QEvent::MouseButtonRelease) {
            toolkit::noteModifiers(static_cast<QInputEvent*>(e)->modifiers());
        }
        return QObject::eventFilter(o, e);
    }
};

} // namespace

void ensureToolkitApplication() {
    if (QCoreApplication::instance())
        return;
    if (!std::getenv("QT_QPA_PLATFORM") && !std::getenv("DISPLAY") && !std::getenv("WAYLAND_DISPLAY"))
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    toolkit::uiThread() = std::this_thread::get_id();
    auto* app = new QApplication(appArgc, appArgv);
    app->installEventFilter(new KeyWatcher(app));
}

int runToolkitApplication() {
    ensureToolkitApplication();
    return QApplication::exec();
}

void quitToolkitApplication(int code) {
    if (QCoreApplication::instance())
        QCoreApplication::exit(code);
}

void processToolkitEvents() {
    ensureToolkitApplication();
    QCoreApplication::processEvents();
    deliverPostedMessages();
    GlobManager::instance().processDeletions();
    QCoreApplication::processEvents();
}

bool toolkitIsHeadless() {
    ensureToolkitApplication();
    return QGuiApplication::platformName() == QLatin1String("offscreen") ||
           QGuiApplication::platformName() == QLatin1String("minimal");
}
