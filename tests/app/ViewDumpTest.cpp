// The view's state as JSON: every field checked against the view's own accessors, after a zoom
// and a scroll too, numbers that read back to the same doubles, and the workbench's flag.
#include <gtest/gtest.h>

#include "../support/ProgramRun.h"

#include <rapidjson/document.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>

#include "app/workbench/ViewDump.h"
#include "graphnodes/FXGraphViewNode.h"
#include "graphview/FXGraphView.h"
#include "host/Edit.h"
#include "host/EditorPreferences.h"
#include "host/ToolkitApp.h"
#include "host/VobManager.h"
#include "nodeui/Orientation.h"
#include "refhost/edit/EditFile.h"

namespace {

rapidjson::Document readDump(const std::string& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    rapidjson::Document d;
    d.Parse<rapidjson::kParseFullPrecisionFlag>(text.str().c_str());
    return d;
}

void expectBox(const rapidjson::Value& a, double x1, double y1, double x2, double y2, const char* what) {
    ASSERT_TRUE(a.IsArray()) << what;
    ASSERT_EQ(a.Size(), 4u) << what;
    EXPECT_EQ(a[0].GetDouble(), x1) << what;
    EXPECT_EQ(a[1].GetDouble(), y1) << what;
    EXPECT_EQ(a[2].GetDouble(), x2) << what;
    EXPECT_EQ(a[3].GetDouble(), y2) << what;
}

// Every field of the dump against the view.
void expectDumpOf(const FXGraphView& v, const std::string& path) {
    std::string error;
    const FXGraphView* views[] = {&v};
    ASSERT_TRUE(writeViewDump(views, 1, path, error)) << error;
    const rapidjson::Document d = readDump(path);
    ASSERT_FALSE(d.HasParseError());
    ASSERT_EQ(d["views"].Size(), 1u);
    const rapidjson::Value& j = d["views"][0];
    EXPECT_EQ(std::string(j["edit"].GetString()), std::string(toUtf8(v.getEditH()->name()).c_str()));
    EXPECT_EQ(std::string(j["primaryChannel"].GetString()), v.primaryChan().asString().c_str());
    EXPECT_EQ(j["time"].GetDouble(), v.getEditTime());
    EXPECT_EQ(std::string(j["orientation"].GetString()), orientationToString(v.getOrientation()).c_str());
    EXPECT_EQ(j["manual"].GetBool(), v.getManualPosMode());
    EXPECT_EQ(j["zoom"].GetDouble(), v.getViewZoomValue()) << "the zoom reads back to the same double";
    EXPECT_EQ(j["centre"][0].GetDouble(), v.getViewCX());
    EXPECT_EQ(j["centre"][1].GetDouble(), v.getViewCY());
    EXPECT_EQ(j["physicalScale"].GetDouble(), v.physicalScale());
    const Zk::Box<int> w = v.getWindowPos();
    expectBox(j["window"], w.x1, w.y1, w.x2, w.y2, "window");
    EXPECT_EQ(j["morphologyStart"].GetDouble(), v.morphologyStart());
    EXPECT_EQ(j["morphologyEnd"].GetDouble(), v.morphologyEnd());
    EXPECT_EQ(j["connectionDrag"].GetBool(), static_cast<bool>(v.draggingIFNode()));
    EXPECT_EQ(j["nodeDrag"].GetBool(), static_cast<bool>(v.draggingNode()));
    const rapidjson::Value& nodes = j["nodes"];
    ASSERT_EQ(nodes.Size(), v.nodes().size());
    for (rapidjson::SizeType i = 0; i < nodes.Size(); ++i) {
        const FXGraphViewNode& n = *v.nodes()[i];
        const rapidjson::Value& o = nodes[i];
        EXPECT_EQ(std::string(o["id"].GetString()), n.pos_.getNodeId().asString().c_str());
        EXPECT_EQ(std::string(o["class"].GetString()), viewNodeClassName(n));
        EXPECT_EQ(std::string(o["name"].GetString()), std::string(toUtf8(n.getName()).c_str()));
        EXPECT_EQ(o["x"].GetDouble(), n.x());
        EXPECT_EQ(o["y"].GetDouble(), n.y());
        EXPECT_EQ(o["root"].GetInt(), n.pos_.visitMark_);
        expectBox(o["box"], n.getLeft(), n.getBottom(), n.getRight(), n.getTop(), "box");
        expectBox(o["pixels"], n.box_.x1, n.box_.y1, n.box_.x2, n.box_.y2, "pixels");
        EXPECT_EQ(o["highlighted"].GetBool(), n.highlighted_);
        EXPECT_EQ(o["onScreen"].GetBool(), n.onScreen_);
        EXPECT_EQ(o["thumbnail"].GetBool(), n.hasThumbnail());
        ASSERT_EQ(o["inputs"].Size(), static_cast<rapidjson::SizeType>(n.numInputs()));
        for (int k = 0; k < n.numInputs(); ++k) {
            const FXGraphViewNode* far = n.getInputNode(k);
            if (far)
                EXPECT_EQ(std::string(o["inputs"][k].GetString()), far->pos_.getNodeId().asString().c_str());
            else
                EXPECT_TRUE(o["inputs"][k].IsNull());
        }
    }
}

} // namespace

TEST(ViewDump, EveryFieldAsTheViewHoldsItBeforeAndAfterAZoomAndAScroll) {
    ensureToolkitApplication();
    prefs().setPreference(kOrientationPrefKey, "BottomToTop");
    std::string error;
    EditPtr edit = EditFile::open(std::string(NODEDESK_SOURCE_DIR) + "/samples/mattes.edit.json", error);
    ASSERT_TRUE(edit) << error;
    Zk::Ptr<Vob> vob = VobManager::instance().vobFor(edit, "dump-test");
    vob->storeCurrentTime(2.0);
    {
        FXGraphView view(FXGraphView::InitArgs(700, 500, vob.get(), 1));
        view.draw();
        ASSERT_GT(view.nodes().size(), 4u);
        const std::string path = std::string(NODEDESK_BINARY_DIR) + "/view-dump.json";
        expectDumpOf(view, path);

        view.setViewZoom(1.0 / 3.0); // a zoom with no short decimal form
        view.setViewCentre(0.1, -0.3);
        view.draw();
        expectDumpOf(view, path);
    }
    VobManager::instance().reset();
}

TEST(ViewDump, TheWorkbenchWritesItAndRefusesAPathItCannotWrite) {
    const std::string sample = std::string(NODEDESK_SOURCE_DIR) + "/samples/showcase.edit.json";
    const std::string path = std::string(NODEDESK_BINARY_DIR) + "/workbench-dump.json";
    std::remove(path.c_str());
    auto [out, code] = runProgram("nodedesk-workbench " + sample + " --headless --time 2 --snapshot " +
                                  NODEDESK_BINARY_DIR + "/dump-shot.png --dump-view " + path);
    ASSERT_EQ(code, 0) << out;
    const rapidjson::Document d = readDump(path);
    ASSERT_FALSE(d.HasParseError());
    const rapidjson::Value& v = d["views"][0];
    EXPECT_EQ(v["time"].GetDouble(), 2.0);
    ASSERT_GT(v["nodes"].Size(), 0u);
    EXPECT_EQ(v["nodes"][0]["highlighted"].GetBool(), true) << "the first node is the edit's primary node";

    auto [bad, badCode] =
        runProgram("nodedesk-workbench " + sample + " --headless --snapshot " + NODEDESK_BINARY_DIR +
                   "/dump-shot.png --dump-view /nonexistent/dir/x.json");
    EXPECT_EQ(badCode, 2);
    EXPECT_NE(bad.find("can't write /nonexistent/dir/x.json"), std::string::npos) << bad;
    size_t ours = 0;
    for (size_t at = bad.find("nodedesk-workbench:"); at != std::string::npos;
         at = bad.find("nodedesk-workbench:", at + 1))
        ++ours;
    EXPECT_EQ(ours, 1u) << "one line: " << bad;
}
