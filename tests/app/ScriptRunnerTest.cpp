// Scripted workbench sessions: the reader's checks of every field, the sample scripts played on
// the sample edits, and what the program does with a script that is bad or whose expectation
// fails.
#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "../support/ProgramRun.h"
#include "app/workbench/Script.h"
#include "refhost/edit/EditFile.h"

namespace {

namespace fs = std::filesystem;

std::string source(const std::string& path) {
    return std::string(NODEDESK_SOURCE_DIR) + "/" + path;
}

std::string readAll(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

// A folder of its own for one test, emptied first.
std::string scratch(const std::string& name) {
    const fs::path dir = fs::path(NODEDESK_BINARY_DIR) / "script-tests" / name;
    fs::remove_all(dir);
    fs::create_directories(dir);
    return dir.string();
}

std::string writeScript(const std::string& dir, const std::string& text) {
    const std::string path = dir + "/script.json";
    std::ofstream(path) << text;
    return path;
}

// Scripts point at pixels, so each run starts from the default preferences in a folder of its
// own: other tests running at the same time change the shared ones (the layout's direction).
ProgramRun workbench(const std::string& edit, const std::string& args) {
    static int runs = 0;
    const fs::path config = fs::path(NODEDESK_BINARY_DIR) / "script-tests" / "config" /
                            (std::to_string(getpid()) + "-" + std::to_string(++runs));
    fs::remove_all(config);
    fs::create_directories(config);
    return runProgram("nodedesk-workbench " + source("samples/" + edit) + " " + args,
                      "env NODEDESK_CONFIG_DIR=" + config.string());
}

size_t lines(const std::string& s) {
    size_t n = 0;
    for (char c : s)
        n += c == '\n';
    return n;
}

TEST(ScriptReader, ReadsEveryActionWithItsFields) {
    Script s;
    std::string error;
    ASSERT_TRUE(readScript(R"({"steps": [
        {"do": "press", "at": [10, -20], "button": "right", "holding": ["shift", "control"]},
        {"do": "move", "at": [11, 21]},
        {"do": "release", "at": [12, 22], "button": "middle"},
        {"do": "wheel", "at": [1, 2], "steps": -3},
        {"do": "key-down", "key": "alt"}, {"do": "key-up", "key": "q"},
        {"do": "drop", "template": "Sepia", "at": [5, 6], "replace": true},
        {"do": "time", "seconds": 2.5}, {"do": "undo"}, {"do": "redo"},
        {"do": "save", "path": "out.edit.json"},
        {"do": "expect-nodes", "count": 4},
        {"do": "expect-connection", "from": "1.0.2", "to": "Mix", "input": 1},
        {"do": "expect-connection", "from": "a", "to": "b"}]})",
                           s, error))
        << error;
    ASSERT_EQ(s.steps.size(), 14u);
    EXPECT_EQ(s.steps[0].action, ScriptStep::Press);
    EXPECT_EQ(s.steps[0].at, XY<int>(10, -20));
    EXPECT_EQ(s.steps[0].button, ScriptStep::Right);
    EXPECT_EQ(s.steps[0].holding, (std::vector<std::string>{"shift", "control"}));
    EXPECT_EQ(s.steps[1].button, ScriptStep::Left) << "left unless told";
    EXPECT_EQ(s.steps[2].button, ScriptStep::Middle);
    EXPECT_EQ(s.steps[3].wheelSteps, -3);
    EXPECT_EQ(s.steps[5].action, ScriptStep::KeyUp);
    EXPECT_EQ(s.steps[5].text, "q");
    EXPECT_EQ(s.steps[6].text, "Sepia");
    EXPECT_TRUE(s.steps[6].replace);
    EXPECT_EQ(s.steps[6].at, XY<int>(5, 6));
    EXPECT_EQ(s.steps[7].seconds, 2.5);
    EXPECT_EQ(s.steps[10].text, "out.edit.json");
    EXPECT_EQ(s.steps[11].count, 4);
    EXPECT_EQ(s.steps[12].from, "1.0.2");
    EXPECT_EQ(s.steps[12].input, 1);
    EXPECT_EQ(s.steps[13].input, -1) << "any input unless told";
}

TEST(ScriptReader, MalformedScriptsAreRefusedOnOneLineNamingTheStep) {
    const struct {
        const char* file;
        const char* says;
    } cases[] = {
        {"script-not-json.json", "line 2 column"},
        {"script-no-steps.json", "\"steps\""},
        {"script-step-not-object.json", "step 2: is not an object"},
        {"script-point-of-one-number.json", "step 2: \"at\" must be [x, y]"},
        {"script-coordinate-beyond-any-screen.json", "step 1: \"at\" must hold whole pixels"},
        {"script-unknown-key.json", "step 3: unknown key \"hyper\""},
        {"script-wheel-of-no-steps.json", "step 1: \"steps\" must not be 0"},
        {"script-control-characters-in-a-name.json", "step 1: unknown action \"jump\\n\\x07 around\""},
        {"script-fractional-count.json", "step 1: \"count\" must be a whole number"},
        {"script-unknown-button.json", "step 1: \"button\" is left, right or middle"},
    };
    for (const auto& c : cases) {
        Script s;
        s.steps.resize(3);
        std::string error;
        EXPECT_FALSE(readScript(readAll(source(std::string("tests/data/malformed/") + c.file)), s, error))
            << c.file;
        EXPECT_NE(error.find(c.says), std::string::npos) << c.file << ": " << error;
        EXPECT_EQ(error.find('\n'), std::string::npos) << c.file << ": one line";
        EXPECT_TRUE(s.steps.empty()) << c.file << ": nothing half read";
    }

    Script s;
    std::string error;
    const auto none = [](const std::string&) { return false; };
    EXPECT_FALSE(
        readScript(R"({"steps": [{"do": "drop", "template": "Nothing", "at": [1, 1]}]})", s, error, none));
    EXPECT_EQ(error, "step 1: no template named \"Nothing\"");
    EXPECT_FALSE(readScript(R"({"steps": [{"do": "save"}]})", s, error));
    EXPECT_EQ(error, "step 1: needs \"path\"");
    EXPECT_FALSE(readScript(R"({"steps": [{"do": "time", "seconds": "soon"}]})", s, error));
    EXPECT_EQ(error, "step 1: \"seconds\" has the wrong type");
    EXPECT_TRUE(readScript(R"({"steps": []})", s, error)) << "an empty session is a session";
}

TEST(ScriptRunner, SampleScriptsPlayOnTheirEdits) {
    const struct {
        const char* edit;
        const char* args;
        const char* script;
        int steps;
    } samples[] = {
        {"chain.edit.json", "", "chain-drops.json", 12},
        {"transition.edit.json", "--time 5.5", "transition-swap.json", 10},
        {"multitrack.edit.json", "--time 2", "multitrack-gestures.json", 24},
    };
    for (const auto& s : samples) {
        const std::string dir = scratch(s.script);
        ProgramRun r = workbench(s.edit, std::string(s.args) + " --script " + source("samples/scripts/") +
                                             s.script + " --snapshot-each " + dir + "/shots");
        EXPECT_EQ(r.code, 0) << s.script << ": " << r.out;
        for (int i = 1; i <= s.steps; ++i) {
            char name[32];
            std::snprintf(name, sizeof name, "/shots/step-%03d.png", i);
            EXPECT_GT(fs::exists(dir + name) ? fs::file_size(dir + name) : 0u, 1000u) << s.script << name;
        }
        EXPECT_FALSE(fs::exists(dir + "/shots/step-" + std::to_string(s.steps + 1) + ".png"));
    }
}

TEST(ScriptRunner, DropsUndoRedoAndSaveChangeTheEditAsAPersonWould) {
    const std::string dir = scratch("save");
    const std::string script = writeScript(dir, R"({"steps": [
        {"do": "save", "path": ")" + dir + R"(/before.edit.json"},
        {"do": "drop", "template": "Key", "at": [289, 206]},
        {"do": "expect-connection", "from": "Colour correction", "to": "Key", "input": 0},
        {"do": "save", "path": ")" + dir + R"(/after.edit.json"},
        {"do": "undo"},
        {"do": "save", "path": ")" + dir + R"(/undone.edit.json"},
        {"do": "redo"},
        {"do": "save", "path": ")" + dir + R"(/redone.edit.json"},
        {"do": "time", "seconds": 3},
        {"do": "press", "at": [289, 129]}, {"do": "move", "at": [350, 150]},
        {"do": "release", "at": [350, 150]},
        {"do": "key-down", "key": "shift"}, {"do": "key-up", "key": "shift"}]})");
    ProgramRun r = workbench("chain.edit.json", "--script " + script);
    ASSERT_EQ(r.code, 0) << r.out;
    const std::string before = readAll(dir + "/before.edit.json");
    const std::string after = readAll(dir + "/after.edit.json");
    EXPECT_NE(before, after);
    EXPECT_EQ(readAll(dir + "/undone.edit.json"), before) << "undo gives back the very bytes";
    EXPECT_EQ(readAll(dir + "/redone.edit.json"), after);
    std::string error;
    EditPtr saved = EditFile::open(dir + "/after.edit.json", error);
    ASSERT_TRUE(saved) << error;
    EditPtr original = EditFile::open(source("samples/chain.edit.json"), error);
    ASSERT_TRUE(original) << error;
    EXPECT_EQ(saved->nodes().size(), original->nodes().size() + 1);
}

TEST(ScriptRunner, ABadScriptPlaysNothingAndExitsTwoNamingTheStep) {
    const std::string dir = scratch("bad");
    const std::string script = writeScript(dir, R"({"steps": [
        {"do": "save", "path": ")" + dir + R"(/saved.edit.json"},
        {"do": "drop", "template": "No such template", "at": [1, 1]}]})");
    ProgramRun r = workbench("chain.edit.json", "--script " + script + " --snapshot-each " + dir + "/shots");
    EXPECT_EQ(r.code, 2) << r.out;
    EXPECT_NE(r.out.find("step 2: no template named \"No such template\""), std::string::npos) << r.out;
    EXPECT_EQ(lines(r.out), 1u) << r.out;
    EXPECT_FALSE(fs::exists(dir + "/saved.edit.json")) << "not a single step played";

    r = workbench("chain.edit.json", "--script " + source("tests/data/malformed/script-unknown-key.json"));
    EXPECT_EQ(r.code, 2);
    EXPECT_NE(r.out.find("step 3:"), std::string::npos) << r.out;
    r = workbench("chain.edit.json", "--script " + dir + "/missing.json");
    EXPECT_EQ(r.code, 2);
    EXPECT_EQ(lines(r.out), 1u) << r.out;
    r = workbench("chain.edit.json", "--snapshot-each " + dir);
    EXPECT_EQ(r.code, 2) << "pictures of steps need steps";
    r = workbench("chain.edit.json", "--script");
    EXPECT_EQ(r.code, 2);
}

TEST(ScriptRunner, AnExpectationNotMetStopsTheSessionAtItsStep) {
    const std::string dir = scratch("unmet");
    const std::string script = writeScript(dir, R"({"steps": [
        {"do": "expect-nodes", "count": 5},
        {"do": "expect-nodes", "count": 9},
        {"do": "save", "path": ")" + dir + R"(/saved.edit.json"}]})");
    ProgramRun r = workbench("chain.edit.json", "--script " + script + " --snapshot-each " + dir + "/shots");
    EXPECT_EQ(r.code, 1) << r.out;
    EXPECT_NE(r.out.find("step 2: expected 9 nodes, the view shows 5"), std::string::npos) << r.out;
    EXPECT_TRUE(fs::exists(dir + "/shots/step-001.png"));
    EXPECT_FALSE(fs::exists(dir + "/shots/step-002.png"));
    EXPECT_FALSE(fs::exists(dir + "/saved.edit.json"));

    const std::string wiring = writeScript(dir, R"({"steps": [
        {"do": "expect-connection", "from": "Vignette", "to": "Sepia"}]})");
    r = workbench("chain.edit.json", "--script " + wiring);
    EXPECT_EQ(r.code, 1);
    EXPECT_NE(r.out.find("step 1: \"Vignette\" doesn't feed \"Sepia\""), std::string::npos) << r.out;
}

} // namespace
