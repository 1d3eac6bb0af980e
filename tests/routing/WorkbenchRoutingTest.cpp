// The workbench drives its routing panel from the command line, and says so when it can't.
#include <gtest/gtest.h>

#include "../support/ProgramRun.h"

#include <array>
#include <cstdio>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace {

ProgramRun workbench(const std::string& args) {
    return runProgram("nodedesk-workbench " + std::string(NODEDESK_SOURCE_DIR) +
                      "/samples/audio.edit.json --headless " + args);
}

TEST(WorkbenchRouting, ChoosesATabDragsAndClicksRowsAndDrawsThePanel) {
    const std::string png = std::string(NODEDESK_BINARY_DIR) + "/routing-test.png";
    std::remove(png.c_str());
    ProgramRun r = workbench(
        "--time 15 --routing-tab A4+A5 --routing-drag 0:1 --routing-click 0 --routing-snapshot " + png);
    EXPECT_EQ(r.code, 0) << r.out;
    EXPECT_EQ(access(png.c_str(), R_OK), 0);
}

TEST(WorkbenchRouting, BadRequestsAreRefused) {
    ProgramRun r = workbench("--time 5 --routing-tab A4+A5");
    EXPECT_EQ(r.code, 1) << "that group has no tab before the cut";
    EXPECT_NE(r.out.find("no tab"), std::string::npos) << r.out;
    r = workbench("--time 5 --routing-tab A3 --routing-click 0");
    EXPECT_EQ(r.code, 1) << "plain music has no rows";
    r = workbench("--routing-drag 1-2");
    EXPECT_EQ(r.code, 2) << r.out;
}

} // namespace
