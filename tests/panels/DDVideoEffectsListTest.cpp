// The template list of the panel: video categories only, rows that fold, templates that drag
// out as template items and are chosen by a click; and positions carried as text.
#include "panels/DDVideoEffectsList.h"

#include "host/EffectTemplateManager.h"
#include "host/Event.h"
#include "host/EffectTemplateDragItem.h"
#include "host/UifStd.h"
#include "panels/VideoTemplateMatcher.h"
#include "refhost/notify/FunctionCallback.h"
#include "tests/panels/PanelTestSupport.h"

using namespace paneltest;

namespace {

std::vector<std::wstring> categoryNames(const std::vector<EffectCategory>& cats) {
    std::vector<std::wstring> out;
    for (const auto& c : cats)
        out.push_back(c.name.str());
    return out;
}

// The middle of a row of a list, in the list's pixels.
XY<int> rowCentre(const EffectsBrowser& list, int row) {
    const int h = UifStd::getRowHeight();
    return XY<int>(list.width() / 2, list.height() - row * h - h / 2);
}

} // namespace

TEST(TemplateMatchers, TrackTypeAndTheBaseTestBothHold) {
    const auto& all = EffectTemplateManager::instance().templates();
    VideoTemplateMatcher video;
    TrackTypeTemplateMatcher audio(kAudioChan);
    int videoCount = 0, audioCount = 0;
    for (const auto& t : all) {
        const EffectTemplateSummary s = EffectTemplateManager::summarise(t);
        videoCount += video.match(s);
        audioCount += audio.match(s);
        EXPECT_NE(video.match(s), audio.match(s)) << "each template is for one kind of track";
    }
    EXPECT_GT(videoCount, 0);
    EXPECT_GT(audioCount, 0);
    EffectTemplateSummary empty;
    empty.trackType = kVideoChan;
    EXPECT_FALSE(video.match(empty)) << "the base test still decides";
}

TEST_F(PanelTest, TheListShowsOnlyVideoCategories) {
    FXGraphTool& p = open();
    DDVideoEffectsList* list = p.templatesList();
    ASSERT_TRUE(list);
    const std::vector<std::wstring> names = categoryNames(list->categories());
    EXPECT_EQ(names, (std::vector<std::wstring>{L"Blur", L"Colour", L"Geometry", L"Mattes", L"Mix", L"Stereo",
                                                L"Transitions"}));
    // The host's own browser shows the audio categories too.
    EffectsBrowser plain(EffectsBrowser::InitArgs(vob.get(), 1, 0, 200, 300));
    const std::vector<std::wstring> every = categoryNames(plain.categories());
    EXPECT_NE(std::find(every.begin(), every.end(), L"Audio Filter"), every.end());
}

TEST_F(PanelTest, RowsFoldChooseAndDrag) {
    std::vector<std::string> chosen;
    EffectsBrowser::InitArgs args(vob.get(), 1, 0, 240, 600);
    args.chosen = WidgetCallback(refhost::makeCallback([&](const NotifyMsg& m) {
        chosen.push_back(m.text().str());
        return 1;
    }));
    DDVideoEffectsList list(DDVideoEffectsList::InitArgs(vob.get(), 1, 0, 240, 600));
    EffectsBrowser browser(args);
    const size_t rows = browser.rows().size();
    EXPECT_EQ(browser.rowText(0).str(), L"Audio Dynamics");

    // A click on a heading folds its category; another opens it.
    auto click = [&](EffectsBrowser& b, int row) {
        const XY<int> at = rowCentre(b, row);
        b.handleMouseEvent(Event(Event::Down, Event::Left, at, at));
        b.handleMouseEvent(Event(Event::Up, Event::Left, at, at));
    };
    click(browser, 0);
    EXPECT_TRUE(browser.isFolded(0));
    EXPECT_EQ(browser.rows().size(), rows - 1);
    click(browser, 0);
    EXPECT_EQ(browser.rows().size(), rows);

    // A click on a template chooses it.
    click(browser, 1);
    EXPECT_EQ(chosen, (std::vector<std::string>{"Compressor"}));
    EXPECT_EQ(browser.selectedRow(), 1);

    // Pressing and moving hands a template item to the drag starter.
    std::vector<Zk::Ptr<DragDropItem>> dragged;
    EffectsBrowser::setDragStarter([&](const Zk::Ptr<DragDropItem>& item, Glob* source) {
        EXPECT_EQ(source, &list);
        dragged.push_back(item);
        return true;
    });
    int row = 1;
    while (list.rows()[static_cast<size_t>(row)].templ < 0)
        ++row;
    const XY<int> at = rowCentre(list, row);
    list.handleMouseEvent(Event(Event::Down, Event::Left, at, at));
    list.handleMouseEvent(Event(Event::Move, Event::Left, XY<int>(at.x + 40, at.y), at));
    list.handleMouseEvent(Event(Event::Up, Event::Left, XY<int>(at.x + 60, at.y), at));
    EffectsBrowser::setDragStarter(nullptr);
    ASSERT_EQ(dragged.size(), 1u);
    EXPECT_EQ(dragged[0]->type(), kDragEffectTemplate);
    auto* item = dynamic_cast<EffectTemplateDragItem*>(dragged[0].get());
    ASSERT_TRUE(item && item->getEffectTemplate());
    EXPECT_EQ(item->getEffectTemplate()->getName(), list.rowText(row));
    EXPECT_EQ(item->getEffectTemplate()->getType(), kVideoChan);
    EXPECT_FALSE(list.makeDragItem(0)) << "a heading doesn't drag";
    EXPECT_FALSE(list.makeDragItem(10000));
    EXPECT_EQ(list.rowAt(XY<int>(-1, 10)), -1);
}

TEST_F(PanelTest, PositionsReadBackFromTheirText) {
    EditGraphIterator it(g.edit, v1, 2.0, 0);
    ASSERT_TRUE(it.search(kBlur));
    const String text = it.getState().asString();
    EditGraphIterator back(text);
    ASSERT_TRUE(back.isValid());
    EXPECT_EQ(back.getNodeId(-1), kBlur);
    EXPECT_TRUE(back == it);
    EXPECT_DOUBLE_EQ(back.getTime(), 2.0);

    const std::string good = text.str();
    for (const std::string& bad :
         {std::string(), std::string(";;;;"), good + ";", good.substr(0, good.size() - 1) + "x",
          "E7.0.2" + good.substr(good.find(';')), "-" + good.substr(good.find(';')),
          good.substr(0, good.rfind(';')) + ";1.0.11,,1.0.10",
          good.substr(0, good.find(';')) + ";100.0.1;inf;0;1.0.11",
          good.substr(0, good.find(';')) + ";100.0.1;1;-3;1.0.11"}) {
        EditGraphIteratorState state{String(bad)};
        EXPECT_TRUE(state.path.empty()) << bad;
        EXPECT_FALSE(EditGraphIterator(String(bad)).isValid()) << bad;
    }
}
