// The workbench starts from a saved screen layout: its size and its graph tool's zoom come back;
// a damaged layout is reported in one line and the workbench starts as if there were none.
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>

#include "host/configb.h"
#include "tests/support/ProgramRun.h"

namespace {

const std::string kSample = std::string(NODEDESK_SOURCE_DIR) + "/samples/showcase.edit.json";

std::string writeFile(const std::string& name, const std::string& text) {
    const std::string path = std::string(NODEDESK_BINARY_DIR) + "/" + name;
    std::ofstream(path) << text;
    return path;
}

double dumpedZoom(const std::string& path) {
    std::ifstream in(path);
    std::stringstream all;
    all << in.rdbuf();
    rapidjson::Document d;
    d.Parse(all.str().c_str());
    if (d.HasParseError() || !d.HasMember("views"))
        return -1;
    return d["views"][0]["zoom"].GetDouble();
}

ProgramRun runWith(const std::string& layout, const std::string& dump) {
    return runProgram("nodedesk-workbench " + kSample + " --headless --time 2 --layout " + layout +
                      " --dump-view " + dump + " --snapshot " + NODEDESK_BINARY_DIR + "/layout-shot.png");
}

} // namespace

TEST(WorkbenchLayout, TheSavedZoomComesBack) {
    configb view;
    view.set("TYPE", "FXGraphTool");
    view.set("GROUPID", "workbench");
    view.set("VIEW_ZOOM", 0.3);
    configb bench;
    bench.set("TYPE", "Workbench");
    bench.set("W", 700);
    bench.set("H", 500);
    bench.set("VIEW", view.toText());
    const std::string layout =
        writeFile("layout-good.txt", "# nodedesk screen layout 1\n[window]\n" + bench.toText().str());
    const std::string dump = std::string(NODEDESK_BINARY_DIR) + "/layout-good.json";
    ProgramRun run = runWith(layout, dump);
    ASSERT_EQ(run.code, 0) << run.out;
    EXPECT_EQ(run.out.find("layout"), std::string::npos) << run.out;
    EXPECT_DOUBLE_EQ(dumpedZoom(dump), 0.3);
}

TEST(WorkbenchLayout, ADamagedLayoutIsReportedOnceAndIgnored) {
    const std::string dump = std::string(NODEDESK_BINARY_DIR) + "/layout-damaged.json";
    const std::string withZoom =
        "# nodedesk screen layout 1\n[window]\nTYPE=s:\"Workbench\"\nVIEW=s:\"VIEW_ZOOM=d:0.3\\n\"\n";
    for (const std::string& text :
         {std::string("garbage\n"), withZoom + "[window]\nTYPE=s:\"Nothing\"\n", withZoom + "W=i:-5\n",
          std::string("# nodedesk screen layout 1\n[window]\n"
                      "TYPE=s:\"Workbench\"\nVIEW=s:\"bad line\"\n")}) {
        const std::string layout = writeFile("layout-damaged.txt", text);
        ProgramRun run = runWith(layout, dump);
        ASSERT_EQ(run.code, 0) << run.out;
        EXPECT_NE(run.out.find("nodedesk-workbench: layout ignored: "), std::string::npos) << run.out;
        size_t ours = 0;
        for (size_t at = run.out.find("nodedesk-workbench:"); at != std::string::npos;
             at = run.out.find("nodedesk-workbench:", at + 1))
            ++ours;
        EXPECT_EQ(ours, 1u) << "one line: " << run.out;
        EXPECT_NE(dumpedZoom(dump), 0.3) << "nothing of it applied: " << text;
    }
}
