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
#include "refhost/edit/AnyEditFile.h"

namespace {

int usage() {
    std::fprintf(stderr,
                 "usage: nodedesk-workbench [EDIT] [--time T] [--headless] [--snapshot FILE] [--size WxH]\n");
    return 2;
}

int fail(const std::string& message) {
    std::fprintf(stderr, "nodedesk-workbench: %s\n", message.c_str());
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    bool headless = false;
    std::string snapshot;
    std::string editPath = std::string(NODEDESK_SOURCE_DIR) + "/samples/showcase.edit.json";
    double time = NAN;
    int w = 900, h = 600;
    for (int i = 1; i < argc; ++i) {
        if (!std::strcmp(argv[i], "--headless")) {
            headless = true;
        } else if (!std::strcmp(argv[i], "--snapshot") && i + 1 < argc) {
            snapshot = argv[++i];
        } else if (!std::strcmp(argv[i], "--size") && i + 1 < argc) {
            if (std::sscanf(argv[++i], "%dx%d", &w, &h) != 2 || w < 200 || h < 150 || w > 8000 || h > 8000)
                return usage();
        } else if (!std::strcmp(argv[i], "--time") && i + 1 < argc) {
            char* end = nullptr;
            time = std::strtod(argv[++i], &end);
            if (*end != '\0' || !std::isfinite(time))
                return fail(std::string("--time takes a number of seconds, not '") + argv[i] + "'");
        } else if (argv[i][0] != '-') {
            editPath = argv[i];
        } else {
            return usage();
        }
    }
    if (headless)
        setenv("QT_QPA_PLATFORM", "offscreen", 1);

    std::string error;
    EditPtr edit = AnyEditFile::open(editPath, error);
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
