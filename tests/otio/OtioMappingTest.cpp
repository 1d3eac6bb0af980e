// How the parts of a timeline become parts of an edit: media, effects, transitions between their
// neighbours, nested stacks and tracks as compound effects the iterator walks into, and what is
// skipped rather than refused.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "host/EditGraphIterator.h"
#include "host/FXEditor.h"
#include "refhost/edit/EditFile.h"
#include "refhost/edit/OtioReader.h"
#include "tests/otio/OtioTestSupport.h"

namespace {

// Small timelines written inline, at 24 frames a second.
std::string rt(double frames) {
    return R"({"OTIO_SCHEMA": "RationalTime.1", "rate": 24, "value": )" + std::to_string(frames) + "}";
}
std::string range(double start, double dur) {
    return R"({"OTIO_SCHEMA": "TimeRange.1", "start_time": )" + rt(start) + R"(, "duration": )" + rt(dur) +
           "}";
}
std::string clip(const std::string& name, double dur, const std::string& ref = "null",
                 const std::string& effects = "[]") {
    return R"({"OTIO_SCHEMA": "Clip.1", "name": ")" + name + R"(", "source_range": )" + range(0, dur) +
           R"(, "media_reference": )" + ref + R"(, "effects": )" + effects + "}";
}
std::string gap(double dur) {
    return R"({"OTIO_SCHEMA": "Gap.1", "source_range": )" + range(0, dur) + "}";
}
std::string transition(double in, double out, const std::string& type = "SMPTE_Dissolve") {
    return R"({"OTIO_SCHEMA": "Transition.1", "name": "T", "transition_type": ")" + type +
           R"(", "in_offset": )" + rt(in) + R"(, "out_offset": )" + rt(out) + "}";
}
std::string join(const std::vector<std::string>& items) {
    std::string s;
    for (const auto& i : items)
        s += (s.empty() ? "" : ", ") + i;
    return s;
}
std::string track(const std::vector<std::string>& items, const std::string& kind = "Video",
                  const std::string& extra = "") {
    return R"({"OTIO_SCHEMA": "Track.1", "name": "", "kind": ")" + kind + R"(", "children": [)" +
           join(items) + "]" + extra + "}";
}
std::string stack(const std::vector<std::string>& items, const std::string& extra = "") {
    return R"({"OTIO_SCHEMA": "Stack.1", "name": "S", "children": [)" + join(items) + "]" + extra + "}";
}
std::string timeline(const std::vector<std::string>& tracks, double gstFrames = 0) {
    return R"({"OTIO_SCHEMA": "Timeline.1", "name": "t", "global_start_time": )" + rt(gstFrames) +
           R"(, "tracks": )" + stack(tracks) + "}";
}

struct Loaded {
    EditPtr edit{new Edit()};
    std::string error;
    OtioReader::Report report;
    bool ok = false;
};

Loaded load(const std::string& text, const std::string& name = "inline.otio") {
    Loaded l;
    l.ok = OtioReader::loadFromText(text, name, *l.edit, l.error, &l.report);
    return l;
}

} // namespace

TEST(OtioMapping, MediaBecomesPicturesOrSlates) {
    std::string image = R"({"OTIO_SCHEMA": "ExternalReference.1", "target_url": "stills/a%20b.png"})";
    std::string movie = R"({"OTIO_SCHEMA": "ExternalReference.1", "target_url": "file:///m/x.mov"})";
    std::string missing = R"({"OTIO_SCHEMA": "MissingReference.1"})";
    std::string bars = R"({"OTIO_SCHEMA": "GeneratorReference.1", "generator_kind": "SMPTEBars"})";
    std::string sequence = R"({"OTIO_SCHEMA": "ImageSequenceReference.1", "target_url_base": "file:///seq/",
        "name_prefix": "f.", "name_suffix": ".exr", "start_frame": 7, "frame_zero_padding": 4})";
    Loaded l =
        load(timeline({track({clip("Img", 24, image), clip("Mov", 24, movie), clip("Gone", 24, missing),
                              clip("Bars", 24, bars), clip("Seq", 24, sequence)}),
                       track({clip("Voice", 24, movie)}, "Audio")}),
             "/data/cut.otio");
    ASSERT_TRUE(l.ok) << l.error;
    const auto& mats = l.edit->materials();
    ASSERT_EQ(mats.size(), 6u);
    EXPECT_EQ(mats[0].source.str(), "image");
    EXPECT_EQ(mats[0].file.str(), "/data/stills/a%20b.png")
        << "a relative path starts at the timeline's folder";
    EXPECT_EQ(mats[1].source.str(), "slate") << "a movie is no still the render service reads";
    EXPECT_EQ(toUtf8(mats[1].name).str(), "Mov") << "the slate shows the clip's name";
    EXPECT_EQ(mats[2].source.str(), "slate");
    EXPECT_EQ(mats[3].source.str(), "bars");
    EXPECT_EQ(mats[4].source.str(), "image");
    EXPECT_EQ(mats[4].file.str(), "/seq/f.0007.exr") << "an image sequence shows its first frame";
    EXPECT_EQ(mats[5].source.str(), "tone");
    EXPECT_EQ(l.edit->chan(1).type, kAudioChan);
    EXPECT_EQ(toUtf8(l.edit->chan(0).name).str(), "V1") << "an unnamed track is named by kind and number";
    EXPECT_EQ(toUtf8(l.edit->chan(1).name).str(), "A1");
    // A clip without effects is a plain material cel.
    const CelEvent& first = l.edit->chan(0).cel->events()[0];
    EXPECT_EQ(first.kind, CelEvent::Material);
    EXPECT_EQ(first.strip, mats[0].cookie);
}

TEST(OtioMapping, EffectsChainInOrderWithTagsAndParameters) {
    std::string effects = R"([
        {"OTIO_SCHEMA": "Effect.1", "name": "", "effect_name": "Gaussian Blur", "metadata": {"radius": 3}},
        {"OTIO_SCHEMA": "LinearTimeWarp.1", "name": "", "effect_name": "LinearTimeWarp", "time_scalar": 2},
        {"OTIO_SCHEMA": "Effect.1", "name": "Glow", "effect_name": "GlowFX", "enabled": false,
         "metadata": {"look": {"amount": 0.5, "label": "x"}}},
        {"OTIO_SCHEMA": "Effect.9", "effect_name": "FromTheFuture"}])";
    std::string trackFx = R"(, "effects": [{"OTIO_SCHEMA": "Effect.1", "effect_name": "Sepia"}])";
    Loaded l = load(timeline(
        {track({clip("A", 24, "null", effects), transition(6, 6), clip("B", 24)}, "Video", trackFx)}));
    ASSERT_TRUE(l.ok) << l.error;
    ASSERT_EQ(l.report.warnings.size(), 1u);
    EXPECT_NE(l.report.warnings[0].find("skipped an object of unknown schema \"Effect.9\""),
              std::string::npos)
        << l.report.warnings[0];
    EXPECT_EQ(l.report.warnings[0].rfind("inline.otio:", 0), 0u) << "a warning names its place";

    // Over A's cel: the track's sepia, then glow, time warp, blur, material.
    EditGraphIterator it(l.edit, 0, 0.1, 0);
    std::vector<std::string> tags;
    do
        tags.push_back(it.getNode(-1)->tagTypeId().str());
    while (it.moveToInput(0));
    ASSERT_EQ(tags.size(), 5u);
    EXPECT_EQ(tags[0], "PixShader:Colour:sepia.fx");
    EXPECT_EQ(tags[1], "Effect:GlowFX");
    EXPECT_EQ(tags[2], "Retime:LinearTimeWarp");
    EXPECT_EQ(tags[3], "PixShader:Blur:gaussian.fx");
    EXPECT_TRUE(isPlainMaterial(it.getNode(-1).get()));
    auto* glow = dynamic_cast<EffectInstance_opu4h5a4j*>(it.getNode(1).get());
    ASSERT_NE(glow, nullptr);
    EXPECT_FALSE(glow->isEnabled());
    EXPECT_EQ(toUtf8(glow->getName()).str(), "Glow");
    EXPECT_EQ(glow->param("look.amount"), 0.5);
    EXPECT_EQ(dynamic_cast<EffectInstance_opu4h5a4j*>(it.getNode(2).get())->param("time_scalar"), 2.0);
    EXPECT_EQ(dynamic_cast<EffectInstance_opu4h5a4j*>(it.getNode(3).get())->param("radius"), 3.0);

    // The track's effect stands over the transition cel too, and the dissolve takes the clips'
    // own graphs, without the track's effect.
    EditGraphIterator t(l.edit, 0, 1.0, 0);
    EXPECT_EQ(t.getNode(-1)->tagTypeId().str(), "PixShader:Colour:sepia.fx");
    ASSERT_TRUE(t.moveToInput(0));
    EXPECT_EQ(t.getNode(-1)->tagTypeId().str(), "Transition:Dissolve");
    ASSERT_TRUE(t.moveToInput(0));
    EXPECT_EQ(t.getNode(-1)->tagTypeId().str(), "Effect:GlowFX");
}

TEST(OtioMapping, DissolveStandsBetweenItsNeighbours) {
    Loaded l = load(
        timeline({track({clip("A", 24), transition(6, 12), clip("B", 48), transition(12, 0, "SMPTE_Wipe"),
                         gap(24), transition(0, 6, "Custom"), clip("C", 24)})},
                 24));
    ASSERT_TRUE(l.ok) << l.error;
    const auto& evs = l.edit->chan(0).cel->events();
    ASSERT_EQ(evs.size(), 7u);
    // A [1, 1.75), dissolve [1.75, 2.5), B [2.5, 3.5), wipe [3.5, 4), gap [4, 5), custom [5, 5.25), C.
    EXPECT_DOUBLE_EQ(evs[0].start, 1.0);
    EXPECT_DOUBLE_EQ(evs[0].end, 1.75);
    EXPECT_DOUBLE_EQ(evs[1].start, 1.75);
    EXPECT_DOUBLE_EQ(evs[1].end, 2.5);
    EXPECT_DOUBLE_EQ(evs[2].start, 2.5);
    EXPECT_DOUBLE_EQ(evs[2].end, 3.5);
    EXPECT_DOUBLE_EQ(evs[3].end, 4.0);
    EXPECT_EQ(evs[4].kind, CelEvent::Black);
    EXPECT_DOUBLE_EQ(evs[5].start, 5.0);
    EXPECT_DOUBLE_EQ(evs[6].start, 5.25);

    auto dissolve = evs[1].node;
    ASSERT_EQ(dissolve->tagTypeId().str(), "Transition:Dissolve");
    ASSERT_EQ(dissolve->getNumInputs(), 2u);
    EXPECT_EQ(dissolve->input(0).node, evs[0].node) << "the outgoing side is the cel before";
    EXPECT_EQ(dissolve->input(1).node, evs[2].node) << "the incoming side is the cel after";
    EXPECT_EQ(dynamic_cast<EffectInstance_opu4h5a4j*>(dissolve.get())->param("duration"), 0.75);
    // The walk at the transition's time goes through the dissolve into either side.
    EditGraphIterator it(l.edit, 0, 2.0, 0);
    ASSERT_TRUE(it.moveToInput(1));
    EXPECT_EQ(it.getNode(-1), evs[2].node);

    EXPECT_EQ(evs[3].node->tagTypeId().str(), "Transition:Wipe");
    EXPECT_EQ(evs[3].node->input(1).node, nullptr) << "a gap side is an open input";
    EXPECT_EQ(evs[5].node->tagTypeId().str(), "Transition:Custom");
    EXPECT_EQ(evs[5].node->input(0).node, nullptr);
    EXPECT_EQ(evs[5].node->input(1).node, evs[6].node);
}

TEST(OtioMapping, NestedStackIsACompoundEffectTheIteratorWalksInto) {
    std::string nested = stack({track({gap(12), clip("Inner", 24)}), track({clip("Over", 12)})},
                               R"(, "source_range": )" + range(6, 24) +
                                   R"(, "effects": [{"OTIO_SCHEMA": "Effect.1", "effect_name": "Crop"}])");
    Loaded l = load(timeline({track({clip("A", 24), nested, clip("B", 24)})}));
    ASSERT_TRUE(l.ok) << l.error;
    const auto& evs = l.edit->chan(0).cel->events();
    ASSERT_EQ(evs.size(), 3u);
    EXPECT_DOUBLE_EQ(evs[1].start, 1.0);
    EXPECT_DOUBLE_EQ(evs[1].end, 2.0);

    // At 1.5 s the nested stack shows its own time 1.5 - 1 + 0.25 = 0.75 s: inner clip on V1,
    // "Over" no more on V2.
    EditGraphIterator it(l.edit, 0, 1.5, 0);
    ASSERT_TRUE(it.isValid());
    EXPECT_EQ(it.getNode(-1)->tagTypeId().str(), "PixShader:Geometry:crop.fx");
    EXPECT_FALSE(it.isCompoundEffectHead());
    EXPECT_FALSE(it.moveBackToCompoundEffect()) << "the root lies in the edit itself";
    ASSERT_TRUE(it.moveToInput(0));
    ASSERT_TRUE(it.isCompoundEffectHead());
    auto* compound = dynamic_cast<CompoundEffect*>(it.getNode(-1).get());
    ASSERT_NE(compound, nullptr);
    EXPECT_EQ(compound->getNumInputs(), 2u) << "one input per inner video channel";
    EXPECT_EQ(it.getCurrentPosEdit(), l.edit);
    EXPECT_FALSE(it.moveToInput(1)) << "the upper inner track is empty at that time";
    ASSERT_TRUE(it.moveToInput(0));
    EXPECT_EQ(toUtf8(it.getNode(-1)->getName()).str(), "Inner");
    EXPECT_EQ(it.getCurrentPosEdit(), compound->innerEdit()) << "the entry lies in the nested edit";
    EXPECT_EQ(it.getChanId(-1), compound->innerEdit()->chan(0).id);
    EXPECT_EQ(it.depth(), 2);
    // The inner cel, told in the edit's own time and cut to the compound's cel.
    NumRange<double, Ordered> r = it.getRange(-1, CelEventPair::kEventRange);
    EXPECT_DOUBLE_EQ(r.lo, 1.25);
    EXPECT_DOUBLE_EQ(r.hi, 2.0);
    EXPECT_EQ(it.getUTRHandle(-1).edit(), compound->innerEdit());
    ASSERT_TRUE(it.moveBackToCompoundEffect());
    EXPECT_EQ(it.depth(), 1);
    EXPECT_TRUE(it.isCompoundEffectHead());

    // Earlier in the stack's time both inner tracks show.
    EditGraphIterator early(l.edit, 0, 1.1, 0);
    ASSERT_TRUE(early.moveToInput(0));
    ASSERT_TRUE(early.moveToInput(1));
    EXPECT_EQ(toUtf8(early.getNode(-1)->getName()).str(), "Over");

    // Whole-graph walks and searches reach inside.
    Vector<Zk::Ptr<FXGraphNodeBase>> all;
    EditGraphIterator(l.edit, 0, 1.5, 0).findAllComponents(all);
    EXPECT_EQ(all.size(), 3u) << "crop, compound, inner clip";
    Zk::Ptr<FXGraphNodeBase> inner = all[2];
    EditGraphIterator found = FXEditor::getIteratorFor(l.edit, inner->getId(), 1.5, 9);
    ASSERT_TRUE(found.isValid());
    EXPECT_EQ(found.depth(), 2);
    EXPECT_EQ(l.edit->findNode(inner->getId()), inner) << "the edit finds nodes inside compounds";
}

TEST(OtioMapping, NestedTrackAndStateRebuild) {
    std::string nested =
        track({clip("In", 24), clip("In2", 24)}, "Video", R"(, "source_range": )" + range(12, 24));
    Loaded l = load(timeline({track({nested})}));
    ASSERT_TRUE(l.ok) << l.error;
    EditGraphIterator it(l.edit, 0, 0.75, 0);
    ASSERT_TRUE(it.isCompoundEffectHead());
    EXPECT_EQ(it.getNode(-1)->tagTypeId().str(), "Compound:Track");
    ASSERT_TRUE(it.moveToInput(0));
    EXPECT_EQ(toUtf8(it.getNode(-1)->getName()).str(), "In2") << "0.75 s into a track trimmed from 0.5 s";
    EditGraphIterator again = FXEditor::getIteratorFor(it.getState());
    EXPECT_TRUE(again == it);
}

TEST(OtioMapping, TrimmedAwayItemsLeaveNoOrphans) {
    // The track shows 0.5 s to 1.5 s of its content: the end of A, B and the start of the
    // dissolve into C, which is cut at the track's end.
    Loaded l = load(timeline({track({clip("A", 24), clip("B", 12), transition(3, 3), clip("C", 24)}, "Video",
                                    R"(, "source_range": )" + range(12, 24))}));
    ASSERT_TRUE(l.ok) << l.error;
    const auto& evs = l.edit->chan(0).cel->events();
    ASSERT_EQ(evs.size(), 3u);
    EXPECT_DOUBLE_EQ(evs[0].start, 0.0);
    EXPECT_DOUBLE_EQ(evs[0].end, 0.5);
    EXPECT_DOUBLE_EQ(evs[2].start, 0.875);
    EXPECT_DOUBLE_EQ(evs[2].end, 1.0);
    std::vector<IdStamp> orphans;
    FXEditor::findOrphanedComponents(l.edit, 0.0, orphans);
    EXPECT_TRUE(orphans.empty()) << "C feeds the dissolve and has its node; nothing else hangs loose";
    EXPECT_EQ(l.edit->materials().size(), 3u);

    Loaded cut = load(
        timeline({track({clip("A", 24), clip("B", 24)}, "Video", R"(, "source_range": )" + range(0, 12))}));
    ASSERT_TRUE(cut.ok) << cut.error;
    EXPECT_EQ(cut.edit->materials().size(), 1u) << "B lies wholly past the track's end";
    FXEditor::findOrphanedComponents(cut.edit, 0.0, orphans);
    EXPECT_TRUE(orphans.empty());
}

TEST(OtioMapping, UnknownSchemasAreSkippedNotRefused) {
    std::string odd = R"({"OTIO_SCHEMA": "Hologram.3", "name": "h"})";
    std::string markerList =
        R"(, "markers": [{"OTIO_SCHEMA": "Marker.2", "name": "here", "marked_range": )" + range(12, 0) + "}]";
    Loaded l = load(timeline({track({clip("A", 24), odd, clip("B", 24)}, "Video", markerList), odd}, 48));
    ASSERT_TRUE(l.ok) << l.error;
    EXPECT_EQ(l.edit->numChans(), 1);
    EXPECT_EQ(l.edit->chan(0).cel->events().size(), 2u);
    EXPECT_DOUBLE_EQ(l.edit->chan(0).cel->events()[1].start, 3.0) << "a skipped item takes no time";
    ASSERT_EQ(l.report.warnings.size(), 2u);
    for (const auto& w : l.report.warnings)
        EXPECT_NE(w.find("\"Hologram.3\""), std::string::npos) << w;
    ASSERT_EQ(l.report.markers.size(), 1u);
    EXPECT_EQ(l.report.markers[0].name, "here");
    EXPECT_DOUBLE_EQ(l.report.markers[0].time, 2.5);
}

TEST(OtioMapping, TimelineFilesReferToEachOtherAsCompounds) {
    std::string dir = std::string(NODEDESK_BINARY_DIR) + "/otio-refs";
    std::filesystem::create_directories(dir);
    auto write = [&](const std::string& name, const std::string& text) {
        std::ofstream(dir + "/" + name) << text;
    };
    auto ref = [](const std::string& file) {
        return R"({"OTIO_SCHEMA": "ExternalReference.1", "target_url": ")" + file + "\"}";
    };
    write("inner.otio", timeline({track({clip("Deep", 48)})}));
    write("outer.otio",
          timeline({track({clip("Reel", 24, ref("inner.otio")), clip("Again", 24, ref("inner.otio"))})}));
    std::string error;
    EditPtr edit = OtioReader::open(dir + "/outer.otio", error);
    ASSERT_TRUE(edit) << error;
    EditGraphIterator it(edit, 0, 0.5, 0);
    ASSERT_TRUE(it.isCompoundEffectHead());
    ASSERT_TRUE(it.moveToInput(0));
    EXPECT_EQ(toUtf8(it.getNode(-1)->getName()).str(), "Deep");
    // The same file used twice gives two sets of ids, none of them those of the outer edit.
    EditGraphIterator again(edit, 0, 1.5, 0);
    ASSERT_TRUE(again.moveToInput(0));
    EXPECT_EQ(toUtf8(again.getNode(-1)->getName()).str(), "Deep");
    EXPECT_NE(again.getNodeId(-1), it.getNodeId(-1));
    EXPECT_EQ(edit->findNode(again.getNodeId(-1)), again.getNode(-1));
    EXPECT_EQ(edit->findNode(it.getNodeId(-1)), it.getNode(-1));

    // A timeline that is not there is a slate, with a warning.
    write("lost.otio", timeline({track({clip("Lost", 24, ref("absent.otio"))})}));
    OtioReader::Report report;
    EditPtr lost = OtioReader::open(dir + "/lost.otio", error, &report);
    ASSERT_TRUE(lost) << error;
    EXPECT_EQ(lost->materials().at(0).source.str(), "slate");
    ASSERT_EQ(report.warnings.size(), 1u);
    EXPECT_NE(report.warnings[0].find("cannot be read"), std::string::npos) << report.warnings[0];

    // A chain of distinct files nested deeper than the reader goes is refused, not followed.
    for (int i = 0; i < 20; ++i)
        write("chain" + std::to_string(i) + ".otio",
              timeline({track({clip("C", 24, ref("chain" + std::to_string(i + 1) + ".otio"))})}));
    EXPECT_FALSE(OtioReader::open(dir + "/chain0.otio", error));
    EXPECT_NE(error.find("nested by reference at most 16 deep"), std::string::npos) << error;
}

TEST(OtioMapping, CompoundsKeepTheirOwnInnerEditThroughCopiesAndFiles) {
    Loaded l = load(timeline({track({stack({track({clip("Inner", 24)})})})}));
    ASSERT_TRUE(l.ok) << l.error;
    auto* compound = dynamic_cast<CompoundEffect*>(l.edit->chan(0).cel->events()[0].node.get());
    ASSERT_NE(compound, nullptr);

    // An undo snapshot is a copy that later changes inside the compound do not reach.
    EditPtr snapshot(new Edit());
    snapshot->copyStateFrom(*l.edit);
    std::string before = otiotest::describe(*snapshot);
    compound->innerEdit()->chan(0).name = L"renamed";
    EXPECT_EQ(otiotest::describe(*snapshot), before);
    EXPECT_NE(otiotest::describe(*l.edit), before);

    // In an edit file a compound's inputs must name channels of its nested edit.
    std::string text = EditFile::saveToText(*l.edit);
    std::string innerChan = compound->innerEdit()->chan(0).id.asString().str();
    size_t at = text.find("\"track\": \"" + innerChan + "\"");
    ASSERT_NE(at, std::string::npos) << text;
    std::string bad = text;
    bad.replace(at + 9, innerChan.size() + 2, "\"1.2.3\"");
    EditPtr back(new Edit());
    std::string error;
    EXPECT_FALSE(EditFile::loadFromText(bad, "bad.edit.json", *back, error));
    EXPECT_NE(error.find("expected a channel of the compound's inner edit"), std::string::npos) << error;
    std::string noInner = text;
    noInner.replace(noInner.find("\"edit\":"), 7, "\"xedit\":");
    EXPECT_FALSE(EditFile::loadFromText(noInner, "bad.edit.json", *back, error));
    EXPECT_NE(error.find("expected the nested \"edit\" of a compound effect"), std::string::npos) << error;
}

TEST(OtioMapping, DestroyingANodeInsideACompoundChangesTheInnerEdit) {
    std::string blur = R"([{"OTIO_SCHEMA": "Effect.1", "effect_name": "Blur"}])";
    Loaded l = load(timeline({track({stack({track({clip("Inner", 24, "null", blur)})})})}));
    ASSERT_TRUE(l.ok) << l.error;
    EditGraphIterator it(l.edit, 0, 0.5, 0);
    ASSERT_TRUE(it.moveToInput(0));
    ASSERT_EQ(it.getNode(-1)->tagTypeId().str(), "PixShader:Blur:gaussian.fx");
    EditPtr inner = it.getCurrentPosEdit();
    IdStamp blurId = it.getNodeId(-1);
    unsigned changes = l.edit->changeCount();
    ASSERT_TRUE(FXEditor::destroyNode(it, false));
    EXPECT_FALSE(inner->findNode(blurId));
    EXPECT_EQ(inner->chan(0).cel->events()[0].kind, CelEvent::Material)
        << "the cel falls back to its material";
    EXPECT_GT(l.edit->changeCount(), changes) << "the change is told through the outer edit";
    EditGraphIterator after(l.edit, 0, 0.5, 0);
    ASSERT_TRUE(after.moveToInput(0));
    EXPECT_TRUE(isPlainMaterial(after.getNode(-1).get()));
}
