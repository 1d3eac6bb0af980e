// The audio routing table: rows, texts, colours and cursors; the click, the swap and its undo;
// the menu; following the monitor; the drawing of a cell.
#include "routing/AudioRoutingView.h"

#include <memory>
#include <string>
#include <vector>

#include "host/Canvas.h"
#include "host/PlugInUIAdaptorFactory.h"
#include "host/Resources.h"
#include "tests/routing/RoutingTestSupport.h"

using namespace routingtest;

namespace {

struct Table : AudioSample {
    void SetUp() override {
        AudioSample::SetUp();
        monitor->setTrackID(kA1);
    }
    void TearDown() override {
        view.reset();
        AudioSample::TearDown();
    }
    AudioRoutingView& make() {
        view = std::make_unique<AudioRoutingView>(
            AudioRoutingView::InitArgs(300, 400, Border(0, 0, 15), monitor.get()));
        return *view;
    }
    std::vector<std::wstring> texts() {
        std::vector<std::wstring> out;
        for (int r = 0; r < view->getNumRows(); ++r)
            out.push_back(view->getFieldText(XY<int>(0, r)).str());
        return out;
    }
    // A press and release on a row, the release `moved` pixels from the press.
    bool click(int row, int moved = 0) {
        TableWidget* t = view->getTable();
        Zk::Box<int> box = t->getCellBox(XY<int>(0, row));
        XY<int> at((box.x1 + box.x2) / 2, (box.y1 + box.y2) / 2);
        XY<int> to(at.x + moved, at.y);
        t->dispatchMouseEvent(Event(Event::Down, Event::Left, at, at));
        return t->dispatchMouseEvent(Event(Event::Up, Event::Left, to, at));
    }
    std::unique_ptr<AudioRoutingView> view;
};

TEST_F(Table, RowCountFollowsTheChainTheCrossfadeAndTheEmptyTrack) {
    make();
    EXPECT_EQ(view->getNumRows(), 5) << "four effects and the source";
    EXPECT_EQ(texts(),
              (std::vector<std::wstring>{L"Compressor", L"Room reverb", L"Equaliser", L"Gain", L"A1"}))
        << "the source of a chain on a track is named by the track";
    fx(kEqualiser)->setName(WString());
    EXPECT_EQ(texts()[2], L"Audio:Filter:eq") << "an unnamed effect shows its kind";
    EXPECT_EQ(view->getTable()->getLineHeight(), 2 * UifStd::getRowHeight());
    ASSERT_EQ(view->getColumns().size(), 1u);

    // Plain music: no effects, so no rows at all, and the label says why.
    monitor->setTrackID(kA3);
    view->setTrack(kA3);
    EXPECT_EQ(view->getNumRows(), 0);
    EXPECT_EQ(view->getTable()->getEmptyLabel().resolve().str(), resourceStrW(10884).str());
    EXPECT_EQ(view->getSourceText().str(), L"Music");

    // At 10 the track crossfades from the music into the ambience.
    vob->setCurrentTime(10.0);
    EXPECT_TRUE(view->isCrossfade());
    EXPECT_EQ(texts(), (std::vector<std::wstring>{L"Crossfade", L"Music / Ambience"}));
    EXPECT_EQ(view->getCellCursor(XY<int>(0, 0)), CursorArrow) << "a crossfade can't be moved";
    EXPECT_FALSE(view->requestSwapRows(0, 1));
}

TEST_F(Table, ColoursAndCursorsByRow) {
    monitor->setTrackID(kA4);
    vob->setCurrentTime(15.0);
    make();
    ASSERT_EQ(texts(), (std::vector<std::wstring>{L"Limiter", L"Gain", L"A4"}));
    const Palette base = view->getTable()->getPalette();
    Palette p = base;
    view->getFieldColours(XY<int>(0, 0), p);
    EXPECT_TRUE(p.text(0) == base.text(0)) << "an effect that is on keeps the palette";
    p = base;
    view->getFieldColours(XY<int>(0, 1), p);
    EXPECT_TRUE(p.text(0) == base.text(1)) << "the gain is off";
    p = base;
    view->getFieldColours(XY<int>(0, 2), p);
    EXPECT_TRUE(p.text(0) == base.text(2)) << "the source row";

    EXPECT_EQ(view->getCellCursor(XY<int>(0, 0)), CursorDragRow);
    EXPECT_EQ(view->getCellCursor(XY<int>(0, 1)), CursorDragRow);
    EXPECT_EQ(view->getCellCursor(XY<int>(0, 2)), CursorArrow);
}

TEST_F(Table, AClickSwitchesAnEffectAsAnUndoableStep) {
    make();
    const std::string before = text();
    EXPECT_TRUE(click(1));
    EXPECT_FALSE(fx(kReverb)->isEnabled());
    EXPECT_EQ(vob->undoDepth(), 1u);
    ASSERT_TRUE(vob->undoRequest());
    EXPECT_EQ(text(), before);
    EXPECT_TRUE(fx(kReverb)->isEnabled());

    EXPECT_FALSE(click(1, mouseClickTolerance() + 5)) << "a drag is no click";
    EXPECT_FALSE(click(4)) << "the source row";
    EXPECT_TRUE(fx(kReverb)->isEnabled());
    EXPECT_EQ(text(), before);
}

TEST_F(Table, SwappingNeighboursRelinksTheChain) {
    make();
    const std::string before = text();
    ASSERT_TRUE(view->requestSwapRows(2, 1));
    EXPECT_EQ(texts(),
              (std::vector<std::wstring>{L"Compressor", L"Equaliser", L"Room reverb", L"Gain", L"A1"}));
    EXPECT_EQ(below(kCompressor), kEqualiser);
    EXPECT_EQ(below(kEqualiser), kReverb);
    EXPECT_EQ(below(kReverb), kGain);
    EXPECT_EQ(below(kGain), kDialogue);
    EXPECT_EQ(head(kA1, 5), kCompressor);
    const std::string swapped = text();

    ASSERT_TRUE(vob->undoRequest());
    EXPECT_EQ(text(), before);
    EXPECT_EQ(texts()[1], L"Room reverb") << "the table follows the undo";
    ASSERT_TRUE(vob->redoRequest());
    EXPECT_EQ(text(), swapped);
}

TEST_F(Table, SwappingTheTopRowChangesWhatEverySideOfTheGroupPlays) {
    make();
    const std::string before = text();
    const unsigned made = PlugInUIAdaptorFactory::instance().adaptorsMade();
    ASSERT_TRUE(view->requestSwapRows(0, 1));
    EXPECT_EQ(head(kA1, 5), kReverb);
    EXPECT_EQ(head(kA2, 5), kReverb) << "both sides of the stereo group keep one chain";
    EXPECT_EQ(below(kReverb), kCompressor);
    EXPECT_EQ(below(kCompressor), kEqualiser);
    EXPECT_EQ(texts()[0], L"Room reverb");
    EXPECT_GT(PlugInUIAdaptorFactory::instance().adaptorsMade(), made) << "the moved plug-in is set up again";
    Edit reloaded;
    std::string error;
    ASSERT_TRUE(EditFile::loadFromText(text(), "swapped", reloaded, error)) << error;
    EXPECT_EQ(EditFile::saveToText(reloaded), text()) << "the relinked chain saves and loads as it stands";
    ASSERT_TRUE(vob->undoRequest());
    EXPECT_EQ(text(), before);
}

TEST_F(Table, SwappingTheBottomRowHandsTheSourceOn) {
    make();
    const std::string before = text();
    ASSERT_TRUE(view->requestSwapRows(3, 2));
    EXPECT_EQ(below(kReverb), kGain);
    EXPECT_EQ(below(kGain), kEqualiser);
    EXPECT_EQ(below(kEqualiser), kDialogue);
    ASSERT_TRUE(vob->undoRequest());
    EXPECT_EQ(text(), before);
}

TEST_F(Table, SwapsOutOfRangeOrOfTheSourceChangeNothing) {
    make();
    const std::string before = text();
    EXPECT_FALSE(view->requestSwapRows(-1, 0));
    EXPECT_FALSE(view->requestSwapRows(3, 4)) << "row 4 is the source";
    EXPECT_FALSE(view->requestSwapRows(0, 99));
    EXPECT_FALSE(view->requestSwapRows(2, 2));
    EXPECT_EQ(text(), before);
    EXPECT_EQ(vob->undoDepth(), 0u);
}

TEST_F(Table, RowMenusCarryTheComponentsCommands) {
    make();
    auto menuAt = [&](int row) {
        Zk::Box<int> box = view->getTable()->getCellBox(XY<int>(0, row));
        XY<int> off(view->getTable()->getPosition().x - view->getPosition().x,
                    view->getTable()->getPosition().y - view->getPosition().y);
        XY<int> at((box.x1 + box.x2) / 2 + off.x, (box.y1 + box.y2) / 2 + off.y);
        Event e(Event::Up, Event::Right, at, at);
        return view->prepareMenu(&e);
    };
    auto labels = [](const std::vector<MenuItem>& items) {
        std::vector<std::wstring> out;
        for (const auto& i : items)
            out.push_back(i.label().resolve().str());
        return out;
    };

    std::vector<MenuItem> items = menuAt(1);
    EXPECT_EQ(view->getMenuTitle().resolve().str(), L"Room reverb");
    EXPECT_EQ(labels(items),
              (std::vector<std::wstring>{L"Switch off", L"Parameters..", L"Remove from chain"}));
    EXPECT_EQ(labels(menuAt(4)), (std::vector<std::wstring>{L"Remove all effects"}))
        << "the source has a menu";
    EXPECT_TRUE(view->prepareMenu(nullptr).empty());

    // Taking the reverb out leaves three effects, as one undoable step.
    const std::string before = text();
    ASSERT_EQ(items[2].choose(view.get()), 1);
    EXPECT_EQ(texts(), (std::vector<std::wstring>{L"Compressor", L"Equaliser", L"Gain", L"A1"}));
    EXPECT_EQ(below(kCompressor), kEqualiser);
    ASSERT_TRUE(vob->undoRequest());
    EXPECT_EQ(text(), before);

    // Everything above the source goes: the track plays its clip again, and the table is empty.
    ASSERT_EQ(menuAt(4)[0].choose(view.get()), 1);
    EXPECT_EQ(view->getNumRows(), 0);
    for (const IdStamp& side : {kA1, kA2}) {
        CelEventPair plays(edit, side, 5.0);
        EXPECT_FALSE(plays.isEffect());
        EXPECT_TRUE(plays.stripCookie() == Cookie::fromString("M6.0.1"));
    }
    EXPECT_EQ(view->getSourceText().str(), L"Dialogue");
}

TEST_F(Table, OneEffectCannotBeReordered) {
    monitor->setTrackID(kA4);
    vob->setCurrentTime(15.0);
    make();
    {
        EasyBackup step(edit);
        fx(kLimiter)->setInputTrackId(0, kNarration, true);
        edit->addModification(EditModifications(EditModification(5)), true);
    }
    EXPECT_EQ(texts(), (std::vector<std::wstring>{L"Limiter", L"A4"}));
    EXPECT_EQ(view->getCellCursor(XY<int>(0, 0)), CursorArrow);
    EXPECT_FALSE(view->requestSwapRows(0, 1));
}

TEST_F(Table, NoticesForATrackThatHasGoneChangeNothing) {
    make();
    const std::string before = text();
    view->setTrack(IdStamp(77, 0, 1));
    monitor->resync();
    EXPECT_TRUE(view->getSourceText().empty());
    EXPECT_FALSE(view->requestSwapRows(4, 7));
    EXPECT_EQ(text(), before);
}

TEST_F(Table, ACellDrawsItsNameTheArrowBelowAndTheDivider) {
    make();
    TableWidget* t = view->getTable();
    CanvasRenderer& r = t->canvas()->renderer();
    r.startRecording();
    t->draw();
    r.stopRecording();
    int texts = 0, arrows = 0;
    const int w = t->width();
    for (const auto& p : r.recorded()) {
        if (const auto* d = p.as<Glib::TextDescription>()) {
            ++texts;
            EXPECT_EQ(d->alignment, 2);
            EXPECT_EQ(d->anchor.x, w / 2);
        }
        if (const auto* d = p.as<Glib::ImageDescription>()) {
            ++arrows;
            EXPECT_EQ(d->box.x1, (w - d->width) / 2);
        }
    }
    EXPECT_EQ(texts, 5);
    EXPECT_EQ(arrows, 4) << "every row but the source has the arrow that feeds it";
}

} // namespace
