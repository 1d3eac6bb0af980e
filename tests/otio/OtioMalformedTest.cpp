// Bad timeline files are refused in one line that says where and what was expected, by the
// reader and by the programs, which exit with code 2.
#include <gtest/gtest.h>

#include "../support/ProgramRun.h"

#include <filesystem>
#include <fstream>

#include "refhost/edit/EditFile.h"
#include "refhost/edit/OtioReader.h"
#include "tests/otio/OtioTestSupport.h"

namespace {

struct Refusal {
    const char* file;
    const char* where; // "LINE:COLUMN"
    const char* what;
};

} // namespace

TEST(OtioMalformed, EachFaultIsOneLineAtItsPlace) {
    const Refusal cases[] = {
        {"truncated.otio", "6:1", "expected a value"},
        {"missing-colon.otio", "2:17", "expected ':' after the member name"},
        {"trailing-garbage.otio", "1:85", "expected the end of the text after the top-level value"},
        {"too-deep.otio", "1:201", "expected nesting at most 200 deep"},
        {"rate-zero.otio", "36:25", "expected a rate above 0"},
        {"negative-duration.otio", "39:27", "expected a duration of 0 or more"},
        {"overlapping-transitions.otio", "61:11", "expected transitions that do not overlap"},
        {"adjacent-transitions.otio", "43:11", "expected an item between two transitions"},
        {"not-a-timeline.otio", "1:1", "expected a Timeline.1 object at the top of the file"},
        {"no-schema.otio", "6:7", "expected \"OTIO_SCHEMA\""},
        {"text-for-rate.otio", "41:26", "expected a finite number for \"value\""},
        {"cycle-a.otio", "29:29", "expected timelines that do not refer to each other in a ring"},
    };
    for (const Refusal& c : cases) {
        SCOPED_TRACE(c.file);
        std::string path = otiotest::malformed(c.file);
        std::string error;
        EditPtr edit(new Edit());
        edit->setName(L"untouched");
        EXPECT_FALSE(OtioReader::load(path, *edit, error));
        EXPECT_EQ(error.find('\n'), std::string::npos) << error;
        std::string want = std::string(c.where) + ": " + c.what;
        // The ring is told in the file where it closes.
        std::string file = std::string(c.file) == "cycle-a.otio" ? otiotest::malformed("cycle-b.otio") : path;
        EXPECT_EQ(error.rfind(file + ":" + want, 0), 0u) << error;
        EXPECT_EQ(toUtf8(edit->name()).str(), "untouched") << "a refused file leaves the edit as it was";
    }
}

TEST(OtioMalformed, OddBytesNeverCrash) {
    const std::string texts[] = {
        "", "null", std::string("{\"OTIO_SCHEMA\": \"Timeline.1\"}\0junk", 34),
        "{\"OTIO_SCHEMA\": \"Timeline.1\", \"tracks\": []}",
        "{\"OTIO_SCHEMA\": \"Timeline\", \"tracks\": {}}",
        "{\"OTIO_SCHEMA\": \"Timeline.1\", \"tracks\": {\"OTIO_SCHEMA\": \"Stack.1\", "
        "\"children\": [{\"OTIO_SCHEMA\": \"Track.1\", \"children\": {}}]}}",
        "\"\xff\xfe\"", "{\"\xe4", "[\"\xf0\x9f", "[1e999]",
        // A long mantissa with a large negative exponent, once read out of bounds.
        "11111111111111000000000000000000000000000000000."
        "000000000002000000000000000000008198552921648719339E-417"};
    for (const std::string& t : texts) {
        std::string error;
        Edit edit;
        EXPECT_FALSE(OtioReader::loadFromText(t, "odd.otio", edit, error));
        EXPECT_EQ(error.rfind("odd.otio:", 0), 0u) << error;
    }
}

TEST(OtioPrograms, ConvertWritesAnEditFileAndRefusesBadInput) {
    std::vector<std::string> samples = otiotest::sampleFiles();
    ASSERT_FALSE(samples.empty());
    std::string in;
    for (const auto& s : samples)
        if (s.find("nested_example") != std::string::npos)
            in = s;
    std::string out = std::string(NODEDESK_BINARY_DIR) + "/nested.edit.json";
    ProgramRun ok = runProgram("nodedesk-convert " + in + " " + out);
    ASSERT_EQ(ok.code, 0) << ok.out;
    std::string error;
    EditPtr back = EditFile::open(out, error);
    ASSERT_TRUE(back) << error;
    EditPtr direct = OtioReader::open(in, error);
    EXPECT_EQ(otiotest::describe(*back), otiotest::describe(*direct));

    ProgramRun bad = runProgram("nodedesk-convert " + otiotest::malformed("rate-zero.otio") + " " + out + ".x");
    EXPECT_EQ(bad.code, 2);
    EXPECT_EQ(bad.out, "nodedesk-convert: " + otiotest::malformed("rate-zero.otio") +
                           ":36:25: expected a rate above 0\n");
    EXPECT_FALSE(std::filesystem::exists(out + ".x"));
    EXPECT_EQ(runProgram("nodedesk-convert only-one.otio").code, 2);
}

TEST(OtioPrograms, LayoutTakesATimeline) {
    std::string in;
    for (const auto& s : otiotest::sampleFiles())
        if (s.find("transition.otio") != std::string::npos)
            in = s;
    ASSERT_FALSE(in.empty());
    ProgramRun r = runProgram("nodedesk-layout " + in + " --time 0.3");
    ASSERT_EQ(r.code, 0) << r.out;
    EXPECT_NE(r.out.find("Transition:Dissolve"), std::string::npos) << r.out;
    EXPECT_NE(r.out.find("Clip-002"), std::string::npos);
    EXPECT_NE(r.out.find("Clip-003"), std::string::npos);

    ProgramRun bad = runProgram("nodedesk-layout " + otiotest::malformed("truncated.otio"));
    EXPECT_EQ(bad.code, 2);
    EXPECT_NE(bad.out.find("truncated.otio:6:1: expected a value"), std::string::npos) << bad.out;
}
