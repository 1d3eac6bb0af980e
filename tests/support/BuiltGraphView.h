// BuiltGraphView: a test fixture of a graph view on an edit built in code: one video channel
// "V1", orientation BottomToTop, the playhead at 1 s. A test builds its graph with `g`, then opens
// the view; the view and the Vobs go at the end of the test.
#pragma once

#include <gtest/gtest.h>

#include "GraphBuilder.h"
#include "graphview/FXGraphView.h"
#include "host/EditorPreferences.h"
#include "host/ToolkitApp.h"
#include "host/VobManager.h"

template <class View = FXGraphView>
struct BuiltGraphView : ::testing::Test {
    void SetUp() override {
        ensureToolkitApplication();
        prefs().setPreference(kOrientationPrefKey, "BottomToTop");
        chan = g.channel(L"V1");
    }
    void TearDown() override {
        delete view;
        VobManager::instance().reset();
    }
    View& openView(int width, int height, const char* vobName) {
        vob = VobManager::instance().vobFor(g.edit, vobName);
        vob->storeCurrentTime(1.0);
        view = new View(FXGraphView::InitArgs(width, height, vob.get(), 1));
        return *view;
    }

    GraphBuilder g;
    int chan = 0;
    Zk::Ptr<Vob> vob;
    View* view = nullptr;
};
