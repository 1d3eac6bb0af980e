// The workbench's playhead script: one picture per step, and one line with exit code 2 for a bad
// list of times.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "../support/ProgramRun.h"
#include "app/workbench/TimesList.h"

namespace {

const std::string kSample = std::string(NODEDESK_SOURCE_DIR) + "/samples/multitrack.edit.json";

size_t lines(const std::string& s) {
    return static_cast<size_t>(std::count(s.begin(), s.end(), '\n'));
}

} // namespace

TEST(TimelineFlags, EachPlayheadStepWritesAPicture) {
    const std::string dir = std::string(NODEDESK_BINARY_DIR) + "/timeline-steps";
    std::filesystem::remove_all(dir);
    auto [out, code] = runProgram("nodedesk-workbench " + kSample +
                                  " --headless --times 2,7.96,9,-1 --snapshot-each " + dir);
    ASSERT_EQ(code, 0) << out;
    for (const char* name : {"step-001.png", "step-002.png", "step-003.png", "step-004.png"})
        EXPECT_GT(std::filesystem::file_size(dir + "/" + name), 1000u) << name;
    EXPECT_FALSE(std::filesystem::exists(dir + "/step-005.png"));
}

TEST(TimelineFlags, BadTimesAreRefusedInOneLine) {
    const std::string dir = std::string(NODEDESK_BINARY_DIR) + "/timeline-bad";
    for (const char* times : {"x", "1,,2", "1,", ",1", "nan", "inf", "1e999", "2s", "''"}) {
        auto [out, code] = runProgram("nodedesk-workbench " + kSample + " --headless --times " + times +
                                      " --snapshot-each " + dir);
        EXPECT_EQ(code, 2) << times << ": " << out;
        EXPECT_EQ(lines(out), 1u) << times << ": " << out;
    }
    auto [alone, code] = runProgram("nodedesk-workbench " + kSample + " --headless --times 1,2");
    EXPECT_EQ(code, 2) << "no folder for the pictures: " << alone;
    EXPECT_EQ(lines(alone), 1u) << alone;
    auto [missing, missingCode] = runProgram("nodedesk-workbench " + kSample + " --headless --times");
    EXPECT_EQ(missingCode, 2) << missing;
    EXPECT_FALSE(std::filesystem::exists(dir)) << "nothing written for a refused run";
}

TEST(TimelineFlags, TheListReadsFiniteSecondsBetweenSingleCommas) {
    std::vector<double> t;
    ASSERT_TRUE(parseTimesList("2,7.96,-1,1e1", t));
    EXPECT_EQ(t, (std::vector<double>{2, 7.96, -1, 10}));
    ASSERT_TRUE(parseTimesList("3", t));
    EXPECT_EQ(t.size(), 1u);
    for (const char* bad :
         {"", ",", "1,", ",1", "1,,2", "1;2", " 1", "1 ", "nan", "-inf", "1e999", "2s", "1,x"}) {
        EXPECT_FALSE(parseTimesList(bad, t)) << "'" << bad << "'";
        EXPECT_TRUE(t.empty()) << "'" << bad << "'";
    }
}
