// Timelines written by other editing programs open as edits: their tracks, clips, gaps and
// transitions are all there, at the times the files give, their graphs lay out at any time, and
// they survive a trip through the edit file.
#include <gtest/gtest.h>

#include <rapidjson/document.h>

#include <cmath>
#include <fstream>
#include <set>

#include "graphview/RootStacker.h"
#include "host/FXEditor.h"
#include "refhost/edit/EditFile.h"
#include "refhost/edit/EditPosSource.h"
#include "refhost/edit/OtioReader.h"
#include "tests/otio/OtioTestSupport.h"

namespace {

using rapidjson::Value;

std::string readAll(const std::string& path) {
    std::ifstream f(path, std::ios::binary);
    std::ostringstream s;
    s << f.rdbuf();
    return s.str();
}

std::string schemaName(const Value& v) {
    if (!v.IsObject() || !v.HasMember("OTIO_SCHEMA") || !v["OTIO_SCHEMA"].IsString())
        return std::string();
    std::string s = v["OTIO_SCHEMA"].GetString();
    return s.substr(0, s.rfind('.'));
}

// Objects of each schema anywhere in the file.
void countSchemas(const Value& v, std::map<std::string, int>& counts) {
    if (v.IsObject()) {
        std::string s = schemaName(v);
        if (!s.empty())
            ++counts[s];
        for (auto& m : v.GetObject())
            countSchemas(m.value, counts);
    } else if (v.IsArray()) {
        for (auto& i : v.GetArray())
            countSchemas(i, counts);
    }
}

double seconds(const Value& rt) {
    return rt["value"].GetDouble() / rt["rate"].GetDouble();
}

// The time an item takes in its track, from its own range or its media's.
double itemDuration(const Value& item) {
    if (item.HasMember("source_range") && item["source_range"].IsObject())
        return seconds(item["source_range"]["duration"]);
    if (item.HasMember("media_reference") && item["media_reference"].IsObject())
        return seconds(item["media_reference"]["available_range"]["duration"]);
    if (item.HasMember("media_references")) {
        const Value& refs = item["media_references"];
        return seconds(refs[item["active_media_reference_key"].GetString()]["available_range"]["duration"]);
    }
    double d = 0.0;
    for (auto& c : item["children"].GetArray())
        if (schemaName(c) != "Transition")
            d = schemaName(item) == "Stack" ? std::max(d, itemDuration(c)) : d + itemDuration(c);
    return d;
}

struct Span {
    double start, end;
};

// The cels a track should have: items end to end from the track's origin, each giving up to its
// neighbouring transitions the time they take, then cut to the track's own range.
std::vector<Span> expectedCels(const Value& track, double gst) {
    double origin = gst, lo = gst, hi = 1e300;
    if (track.HasMember("source_range") && track["source_range"].IsObject()) {
        origin = gst - seconds(track["source_range"]["start_time"]);
        lo = std::max(gst, origin);
        hi = gst + seconds(track["source_range"]["duration"]);
    }
    std::vector<Span> cels;
    double pos = origin;
    bool afterTransition = false;
    double pendingOut = 0.0;
    for (auto& c : track["children"].GetArray()) {
        if (schemaName(c) == "Transition") {
            double in = seconds(c["in_offset"]), out = seconds(c["out_offset"]);
            if (!cels.empty() && !afterTransition)
                cels.back().end -= in;
            cels.push_back({pos - in, pos + out});
            afterTransition = true;
            pendingOut = out;
            continue;
        }
        double d = itemDuration(c);
        cels.push_back({pos + (afterTransition ? pendingOut : 0.0), pos + d});
        afterTransition = false;
        pos += d;
    }
    std::vector<Span> out;
    for (Span s : cels) {
        s.start = std::max(s.start, lo);
        s.end = std::min(s.end, hi);
        if (s.end > s.start)
            out.push_back(s);
    }
    return out;
}

struct Counts {
    int clips = 0, gaps = 0, transitions = 0, compounds = 0;
};

Counts countEdit(const Edit& edit) {
    Counts n;
    otiotest::forEachEdit(edit, [&](const Edit& e) {
        for (const auto& [id, node] : e.nodes()) {
            n.clips += dynamic_cast<const MaterialUsageNode*>(node.get()) != nullptr;
            n.transitions += node->tagTypeId().startsWith("Transition:");
            n.compounds += dynamic_cast<const CompoundEffect*>(node.get()) != nullptr;
        }
        for (int c = 0; c < e.numChans(); ++c)
            for (const auto& ev : e.chan(c).cel->events())
                n.gaps += ev.kind == CelEvent::Black;
    });
    return n;
}

class SampleTimelines : public ::testing::Test {
protected:
    void SetUp() override {
        files = otiotest::sampleFiles();
        ASSERT_EQ(files.size(), 10u) << "the sample timelines should be at " << NODEDESK_SOURCE_DIR
                                     << "/../shared/otio";
    }
    std::vector<std::string> files;
};

} // namespace

TEST_F(SampleTimelines, EveryFileOpensWithWhatItHolds) {
    for (const std::string& path : files) {
        SCOPED_TRACE(path);
        std::string error;
        OtioReader::Report report;
        EditPtr edit = OtioReader::open(path, error, &report);
        ASSERT_TRUE(edit) << error;

        rapidjson::Document doc;
        doc.Parse(readAll(path).c_str());
        ASSERT_FALSE(doc.HasParseError());
        std::map<std::string, int> schemas;
        countSchemas(doc, schemas);
        const Value& top = doc["tracks"]["children"];
        EXPECT_EQ(edit->numChans(), static_cast<int>(top.Size())) << "one channel per track";

        Counts n = countEdit(*edit);
        EXPECT_EQ(n.clips, schemas["Clip"]);
        EXPECT_EQ(n.gaps, schemas["Gap"]);
        EXPECT_EQ(n.transitions, schemas["Transition"]);
        EXPECT_EQ(n.compounds, schemas["Stack"] - 1 + schemas["Track"] + schemas["Sequence"] -
                                   static_cast<int>(top.Size()))
            << "every nested stack or track is a compound effect";
        EXPECT_EQ(static_cast<int>(report.markers.size()), schemas["Marker"]);

        double gst = doc.HasMember("global_start_time") && doc["global_start_time"].IsObject()
                         ? seconds(doc["global_start_time"])
                         : 0.0;
        EXPECT_DOUBLE_EQ(edit->getStartTime(), gst);
        for (rapidjson::SizeType t = 0; t < top.Size(); ++t) {
            SCOPED_TRACE("track " + std::to_string(t));
            const EditChannel& ch = edit->chan(static_cast<int>(t));
            EXPECT_EQ(ch.type, std::string(top[t]["kind"].GetString()) == "Audio" ? kAudioChan : kVideoChan);
            if (top[t].HasMember("name") && top[t]["name"].GetStringLength() > 0)
                EXPECT_EQ(toUtf8(ch.name).str(), top[t]["name"].GetString());
            std::vector<Span> want = expectedCels(top[t], gst);
            const auto& events = ch.cel->events();
            ASSERT_EQ(events.size(), want.size());
            for (size_t i = 0; i < want.size(); ++i) {
                EXPECT_NEAR(events[i].start, want[i].start, 1e-9) << "cel " << i;
                EXPECT_NEAR(events[i].end, want[i].end, 1e-9) << "cel " << i;
            }
        }
    }
}

TEST_F(SampleTimelines, GraphsLayOutAtEveryCel) {
    for (const std::string& path : files) {
        SCOPED_TRACE(path);
        std::string error;
        EditPtr edit = OtioReader::open(path, error);
        ASSERT_TRUE(edit) << error;
        std::set<double> times{edit->getStartTime(), edit->getEndTime() - 1e-3};
        for (int c = 0; c < edit->numChans(); ++c)
            for (const auto& ev : edit->chan(c).cel->events())
                times.insert((ev.start + ev.end) / 2);
        int treesSeen = 0;
        for (double t : times) {
            EditPosSource source(edit, VidRouting::Orientations::BottomToTop);
            std::vector<IdStamp> roots = RootStacker::videoRoots(edit, t);
            std::vector<Zk::Box<double>> boxes =
                RootStacker::tidyRoots(edit, t, roots, XY<double>(0, 0), &source);
            ASSERT_EQ(boxes.size(), roots.size());
            for (size_t r = 0; r < roots.size(); ++r) {
                ++treesSeen;
                EXPECT_LE(boxes[r].x1, boxes[r].x2);
                EXPECT_LE(boxes[r].y1, boxes[r].y2);
                EditGraphIterator it = FXEditor::getIteratorFor(edit, roots[r], t, 9);
                Vector<Zk::Ptr<FXGraphNodeBase>> members;
                it.findAllComponents(members);
                for (unsigned i = 0; i < members.size(); ++i) {
                    NodeUIPosRec* rec = source.getPosRecForNode(members[i]->getId());
                    ASSERT_NE(rec, nullptr) << "every node below a root, inside compounds too, has a place";
                    EXPECT_TRUE(std::isfinite(rec->x()) && std::isfinite(rec->y()));
                }
            }
        }
        EXPECT_GT(treesSeen, 0);
    }
}

TEST_F(SampleTimelines, ImportsAreRepeatableAndRoundTripThroughTheEditFile) {
    for (const std::string& path : files) {
        SCOPED_TRACE(path);
        std::string error;
        EditPtr a = OtioReader::open(path, error);
        EditPtr b = OtioReader::open(path, error);
        ASSERT_TRUE(a && b) << error;
        EXPECT_EQ(otiotest::describe(*a), otiotest::describe(*b)) << "importing twice gives the same ids";

        std::string text = EditFile::saveToText(*a);
        EditPtr back(new Edit());
        ASSERT_TRUE(EditFile::loadFromText(text, "saved.edit.json", *back, error)) << error;
        EXPECT_EQ(otiotest::describe(*back), otiotest::describe(*a));
        EXPECT_EQ(EditFile::saveToText(*back), text);

        // No id is given twice, across nested edits too.
        std::set<std::string> ids;
        size_t count = 0;
        otiotest::forEachEdit(*a, [&](const Edit& e) {
            for (const auto& [id, node] : e.nodes()) {
                ids.insert(id.asString().str());
                ++count;
            }
            for (int c = 0; c < e.numChans(); ++c) {
                ids.insert(e.chan(c).id.asString().str());
                ++count;
            }
        });
        EXPECT_EQ(ids.size(), count);
    }
}
