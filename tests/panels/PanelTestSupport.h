// A built edit opened on a Vob for the graph tool's tests: V1 shows a mix of a blurred source and
// a second source from 0 s to 10 s; V2 shows a dissolve between the two sources from 0 s to 10 s.
// The preferences the panel reads are cleared before each test.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "graphview/FXGraphView.h"
#include "host/Edit.h"
#include "host/EditorPreferences.h"
#include "host/GlobManager.h"
#include "host/ToolkitApp.h"
#include "host/Vob.h"
#include "host/VobManager.h"
#include "panels/FXGraphTool.h"
#include "tests/support/GraphBuilder.h"

namespace paneltest {

inline const IdStamp kSource1(1, 0, 1), kSource2(1, 0, 2), kBlur(1, 0, 10), kMix(1, 0, 11),
    kDissolve(1, 0, 20);
inline const Cookie kEditCookie(Cookie::EditKind, IdStamp(7, 0, 1));

struct PanelTest : ::testing::Test {
    void SetUp() override {
        ensureToolkitApplication();
        for (const char* key :
             {FXGraphTool::kZoomPref, FXGraphTool::kTemplatesPref, FXGraphTool::kAutoPositionPref,
              FXGraphTool::kSizePref, FXGraphTool::kPositionPref})
            prefs().removePreference(key);
        prefs().setPreference("Video Routing : Orientation", "BottomToTop");
        g.edit->setCookie(kEditCookie);
        g.edit->setName(L"Panel test");
        g.edit->materials().push_back(
            EditMaterial{Cookie(Cookie::MaterialKind, IdStamp(3, 0, 1)), L"Bars", "bars", ""});
        v1 = g.channel(L"V1");
        v2 = g.channel(L"V2");
        auto s1 = g.material(kSource1.c()), s2 = g.material(kSource2.c());
        auto blur = g.effect(kBlur.c(), 1, "PixShader:Blur:gaussian.fx");
        auto mix = g.effect(kMix.c(), 2, "PixShader:Mix:pip.fx");
        auto dissolve = g.effect(kDissolve.c(), 2, "Transition:Dissolve");
        GraphBuilder::link(blur, 0, s1);
        GraphBuilder::link(mix, 0, blur);
        GraphBuilder::link(mix, 1, s2);
        GraphBuilder::link(dissolve, 0, s1);
        GraphBuilder::link(dissolve, 1, s2);
        g.graphEvent(v1, 0, 10, mix);
        g.graphEvent(v2, 0, 10, dissolve);
        vob = VobManager::instance().vobFor(g.edit, "panel");
        vob->storeCurrentTime(2.0);
        vob->makeRecordMachine();
        vob->makePlayMachine();
    }
    void TearDown() override {
        GlobManager::instance().destroyAll();
        delete panel;
        panel = nullptr;
        VobManager::instance().reset();
    }
    FXGraphTool& open(int w = 0, int h = 0) {
        panel = new FXGraphTool(FXGraphTool::InitArgs(w, h, vob.get()));
        return *panel;
    }
    // The text form of the position of a node of the edit, walked from its channel.
    std::string position(const IdStamp& node, int chan) const {
        EditGraphIterator it(g.edit, chan, 2.0, 0);
        EXPECT_TRUE(it.search(node)) << node.asString().c_str();
        return it.getState().asString().str();
    }
    std::vector<Glob*> rootsOfType(const char* type) const {
        std::vector<Glob*> out;
        for (Glob* r : GlobManager::instance().roots())
            if (std::string(r->idstring()) == type)
                out.push_back(r);
        return out;
    }

    GraphBuilder g;
    int v1 = 0, v2 = 0;
    Zk::Ptr<Vob> vob;
    FXGraphTool* panel = nullptr;
};

} // namespace paneltest
