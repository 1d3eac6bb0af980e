// nodedesk-workbench: the workbench window, or with --headless --snapshot FILE its picture.
#include <cstdio>
#include <cstring>
#include <string>

#include "app/workbench/Workbench.h"
#include "host/GlobManager.h"
#include "host/ToolkitApp.h"

namespace {

int usage() {
    std::fprintf(stderr, "usage: nodedesk-workbench [--headless] [--snapshot FILE] [--size WxH]\n");
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    bool headless = false;
    std::string snapshot;
    int w = 900, h = 600;
    for (int i = 1; i < argc; ++i) {
        if (!std::strcmp(argv[i], "--headless")) {
            headless = true;
        } else if (!std::strcmp(argv[i], "--snapshot") && i + 1 < argc) {
            snapshot = argv[++i];
        } else if (!std::strcmp(argv[i], "--size") && i + 1 < argc) {
            if (std::sscanf(argv[++i], "%dx%d", &w, &h) != 2 || w < 200 || h < 150 || w > 8000 || h > 8000)
                return usage();
        } else {
            return usage();
        }
    }
    if (headless)
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    ensureToolkitApplication();

    auto* bench = new Workbench(w, h);
    Glob::setupRootPos(bench->canvas(), glib_getPosForWindow(w, h));
    GlobManager::instance().realize(bench);

    int rc = 0;
    if (!snapshot.empty()) {
        if (!bench->saveSnapshot(snapshot.c_str())) {
            std::fprintf(stderr, "nodedesk-workbench: can't write %s\n", snapshot.c_str());
            rc = 1;
        }
    }
    if (!headless && rc == 0)
        rc = runToolkitApplication();
    GlobManager::instance().destroyAll();
    return rc;
}
