// nodedesk-workbench: opens an edit in the workbench window with the effect graph view, or with
// --headless --snapshot FILE writes the same picture to a file.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "app/workbench/Workbench.h"
#include "graphview/FXGraphView.h"
#include "host/Edit.h"
#include "host/GlobManager.h"
#include "host/ToolkitApp.h"
#include "host/UIString.h"
#include "host/Vob.h"
#include "host/VobManager.h"
#include "refhost/edit/EditFile.h"

namespace {

const char kUsage[] =
    "usage: nodedesk-workbench [EDIT] [--time T] [--headless --snapshot FILE.png] [--size WxH]";

int fail(const std::string& message) {
    std::fprintf(stderr, "nodedesk-workbench: %s\n", message.c_str());
    return 2;
}

// True when a window can be shown: a display server to talk to, and a platform that draws on it.
bool haveDisplay() {
    const char* platform = std::getenv("QT_QPA_PLATFORM");
    if (platform && (!std::strcmp(platform, "offscreen") || !std::strcmp(platform, "minimal")))
        return false;
    const char* x = std::getenv("DISPLAY");
    const char* wayland = std::getenv("WAYLAND_DISPLAY");
    return (x && *x) || (wayland && *wayland);
}

} // namespace

int main(int argc, char** argv) {
    bool headless = false;
    std::string snapshot;
    std::string editPath;
    double time = NAN;
    int w = 900, h = 600;
    for (int i = 1; i < argc; ++i) {
        const std::string a = argv[i];
        if (a == "--help" || a == "-h") {
            std::puts(kUsage);
            return 0;
        }
        if (a == "--headless") {
            headless = true;
            continue;
        }
        if (a == "--snapshot" || a == "--size" || a == "--time") {
            if (i + 1 >= argc)
                return fail(a + " needs a value; " + kUsage);
            const std::string v = argv[++i];
            if (a == "--snapshot") {
                if (v.empty())
                    return fail("--snapshot needs a file name");
                snapshot = v;
            } else if (a == "--size") {
                int used = 0;
                if (std::sscanf(v.c_str(), "%dx%d%n", &w, &h, &used) != 2 ||
                    used != static_cast<int>(v.size()) || w < 200 || h < 150 || w > 8000 || h > 8000)
                    return fail("--size takes WIDTHxHEIGHT from 200x150 to 8000x8000, not '" + v + "'");
            } else {
                char* end = nullptr;
                time = std::strtod(v.c_str(), &end);
                if (v.empty() || *end != '\0' || !std::isfinite(time))
                    return fail("--time takes a number of seconds, not '" + v + "'");
            }
        } else if (!a.empty() && a[0] == '-') {
            return fail("unknown flag '" + a + "'; " + kUsage);
        } else if (editPath.empty()) {
            editPath = a;
        } else {
            return fail(std::string("one edit at a time; ") + kUsage);
        }
    }
    if (headless && snapshot.empty())
        return fail("--headless draws only into a --snapshot FILE; give one");
    if (!headless && snapshot.empty() && !haveDisplay())
        return fail("no display to open a window on; use --headless --snapshot FILE.png");
    if (editPath.empty())
        editPath = std::string(NODEDESK_SOURCE_DIR) + "/samples/showcase.edit.json";
    if (headless)
        setenv("QT_QPA_PLATFORM", "offscreen", 1);

    std::string error;
    EditPtr edit = EditFile::open(editPath, error);
    if (!edit)
        return fail(error);
    Zk::Ptr<Vob> vob = VobManager::instance().vobFor(edit, "workbench");
    vob->storeCurrentTime(std::isnan(time) ? edit->getStartTime() : time);

    ensureToolkitApplication();
    auto* bench = new Workbench(w, h);
    bench->setTitle(UIString(L"nodedesk \u2014 " + edit->name().str()));
    bench->setView([&](const GlobCreationInfo& info) -> Glob* {
        FXGraphView::InitArgs args(info.width, info.height, vob.get(), 1);
        args.palette = info.palette;
        return new FXGraphView(args);
    });
    Glob::setupRootPos(bench->canvas(), glib_getPosForWindow(w, h));
    GlobManager::instance().realize(bench);

    int rc = 0;
    if (!snapshot.empty() && !bench->saveSnapshot(snapshot.c_str())) {
        std::fprintf(stderr, "nodedesk-workbench: can't write %s\n", snapshot.c_str());
        rc = 1;
    }
    if (!headless && rc == 0)
        rc = runToolkitApplication();
    GlobManager::instance().destroyAll();
    VobManager::instance().reset();
    return rc;
}
