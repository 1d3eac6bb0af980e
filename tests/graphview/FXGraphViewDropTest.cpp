// Effect templates dropped on the graph view: what each drop does by what lies under the pointer,
// the refusals, the preview window that follows a drag, the playhead and placement after a
// drop, and the undo step a drop makes.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QMouseEvent>
#include <algorithm>
#include <cmath>
#include <string>

#include "../support/BuiltGraphView.h"
#include "graphnodes/FXGraphViewNode.h"
#include "host/AliasedInputEffect.h"
#include "host/DragDropManager.h"
#include "host/EffectTemplateDragItem.h"
#include "host/EffectTemplateManager.h"
#include "host/GlobManager.h"
#include "host/TextBox.h"
#include "host/UserMessages.h"
#include "refhost/edit/EditFile.h"
#include "refhost/toolkit/GlobImpl.h"

namespace {

struct DropFixture : BuiltGraphView<> {
    FXGraphView& open(double time = 1.0) {
        FXGraphView& v = openView(600, 400, "drop-test");
        vob->makeRecordMachine();
        vob->storeCurrentTime(time);
        v.recalcNodeList(false);
        v.ensureNodeListVisible(v.getAllNodes(), RefitIfTooBigAndCentre);
        v.draw();
        return v;
    }
    static Zk::Ptr<EffectTemplate> tmpl(const wchar_t* name) {
        Zk::Ptr<EffectTemplate> t = EffectTemplateManager::instance().find(name);
        EXPECT_TRUE(t) << "no template in the catalogue";
        return t;
    }
    XY<int> pixelsOf(const IdStamp& id) const {
        FXGraphViewNode* n = view->findViewRecForNode(id);
        EXPECT_TRUE(n);
        if (!n)
            return XY<int>();
        const XY<double> p = view->graphToViewSpace(n->x(), n->y());
        return XY<int>(static_cast<int>(std::lround(p.x)), static_cast<int>(std::lround(p.y)));
    }
    // A pixel of the canvas, beside the graph, where no node stands.
    XY<int> emptySpot() const {
        const Zk::Box<int> w = view->getWindowPos();
        for (int x = w.x1 + 5; x < w.x2; x += 7)
            for (int y = w.y1 + 5; y < w.y2; y += 7) {
                double gx = 0, gy = 0;
                view->viewToGraphSpace(x, y, gx, gy);
                if (!view->findNodeAt(x, y) && gx > view->getCanvasMinX() && gx < view->getCanvasMaxX() &&
                    gy > view->getCanvasMinY() && gy < view->getCanvasMaxY())
                    return XY<int>(x, y);
            }
        ADD_FAILURE() << "no empty spot on the canvas";
        return XY<int>();
    }
    Zk::Ptr<FXGraphNodeBase> eventRoot(double t) const {
        for (const CelEvent& e : g.edit->chan(chan).cel->events())
            if (t >= e.start && t < e.end)
                return e.node;
        return nullptr;
    }
    std::string saved() const { return EditFile::saveToText(*g.edit); }

    // A material under a blur, the channel's one event from 0 to 10 s.
    void blurOverMaterial() {
        blur = g.effect(1, 1, "PixShader:Blur:gaussian.fx");
        mat = g.material(2);
        GraphBuilder::link(blur, 0, mat);
        g.graphEvent(chan, 0, 10, blur);
    }
    // A dissolve between two materials, the channel's one event from 0 to 10 s.
    void dissolve() {
        blur = g.effect(1, 2, "Transition:Dissolve");
        mat = g.material(2);
        other = g.material(3);
        GraphBuilder::link(blur, 0, mat);
        GraphBuilder::link(blur, 1, other);
        g.graphEvent(chan, 0, 10, blur);
    }

    Zk::Ptr<EffectInstance_opu4h5a4j> blur;
    Zk::Ptr<MaterialUsageNode> mat;
    Zk::Ptr<MaterialUsageNode> other;
};

// Moves the pointer over a widget as the window system reports it: a move event at that pixel.
void pointAt(Glob& g, const XY<int>& local) {
    QWidget* w = g.impl().widget;
    const XY<int> screen(g.getPosition().x + local.x, g.getPosition().y + local.y);
    const QPointF q(local.x, g.height() - 1 - local.y);
    const QPointF global(screen.x, toolkit::screenHeight() - 1 - screen.y);
    QMouseEvent e(QEvent::MouseMove, q, global, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(w, &e);
}

TEST_F(DropFixture, EmptyCanvasAndTemplatesWithoutInputsApplyWhereTheHostSeesFit) {
    blurOverMaterial();
    FXGraphView& v = open();
    const size_t before = g.edit->nodes().size();

    EXPECT_TRUE(v.useTemplateAt(tmpl(L"Sepia"), emptySpot(), false));
    EXPECT_EQ(g.edit->nodes().size(), before + 1);
    Zk::Ptr<FXGraphNodeBase> top = eventRoot(1.0);
    ASSERT_NE(top, blur) << "the new effect heads the channel's graph";
    EXPECT_EQ(top->input(0).node, blur);
    EXPECT_TRUE(v.findViewRecForNode(top->getId())) << "the view shows it after the drop";

    // A matte dropped on the material goes the same way: it doesn't land under the blur.
    v.draw();
    EXPECT_TRUE(v.useTemplateAt(tmpl(L"Flat colour matte"), pixelsOf(mat->getId()), false));
    EXPECT_EQ(blur->input(0).node, mat) << "the material still feeds the blur";
    EXPECT_EQ(g.edit->nodes().size(), before + 2);
}

TEST_F(DropFixture, AMaterialTakesATemplateOnlyWithoutReplace) {
    blurOverMaterial();
    FXGraphView& v = open();
    const std::string start = saved();
    const size_t depth = vob->undoDepth();

    EXPECT_FALSE(v.useTemplateAt(tmpl(L"Sepia"), pixelsOf(mat->getId()), true));
    EXPECT_EQ(saved(), start) << "replacing a material changes nothing";
    EXPECT_EQ(vob->undoDepth(), depth) << "and leaves no undo step";

    EXPECT_TRUE(v.useTemplateAt(tmpl(L"Sepia"), pixelsOf(mat->getId()), false));
    Zk::Ptr<FXGraphNodeBase> between = blur->input(0).node;
    ASSERT_NE(between, mat);
    EXPECT_EQ(between->tagTypeId(), String("PixShader:Colour:sepia.fx"));
    EXPECT_EQ(between->input(0).node, mat);
}

TEST_F(DropFixture, OnAnEffectATemplateGoesAboveItOrTakesItsPlace) {
    blurOverMaterial();
    FXGraphView& v = open();
    EXPECT_TRUE(v.useTemplateAt(tmpl(L"Vignette"), pixelsOf(blur->getId()), false));
    Zk::Ptr<FXGraphNodeBase> above = eventRoot(1.0);
    EXPECT_EQ(above->input(0).node, blur);

    v.draw();
    const IdStamp old = blur->getId();
    EXPECT_TRUE(v.useTemplateAt(tmpl(L"Crop"), pixelsOf(old), true));
    EXPECT_FALSE(g.edit->findNode(old)) << "the replaced effect is gone";
    Zk::Ptr<FXGraphNodeBase> crop = above->input(0).node;
    ASSERT_TRUE(crop);
    EXPECT_EQ(crop->tagTypeId(), String("PixShader:Geometry:crop.fx"))
        << "the new effect stands in its place";
}

TEST_F(DropFixture, ATransitionIsSwappedOnlyForATemplateOfTwoInputs) {
    dissolve();
    FXGraphView& v = open();
    const std::string start = saved();
    for (bool replace : {false, true}) {
        EXPECT_FALSE(v.useTemplateAt(tmpl(L"Gaussian blur"), pixelsOf(blur->getId()), replace));
        EXPECT_EQ(saved(), start) << "a one-input template on a transition does nothing";
    }
    EXPECT_FALSE(v.useTemplateAt(tmpl(L"Three-way mix"), pixelsOf(blur->getId()), false));
    EXPECT_EQ(saved(), start);

    EXPECT_TRUE(v.useTemplateAt(tmpl(L"Wipe"), pixelsOf(blur->getId()), false));
    EXPECT_FALSE(g.edit->findNode(blur->getId()));
    Zk::Ptr<FXGraphNodeBase> wipe = eventRoot(1.0);
    ASSERT_TRUE(wipe);
    EXPECT_EQ(wipe->tagTypeId(), String("Transition:Wipe"));
    EXPECT_EQ(wipe->input(0).node, mat);
    EXPECT_EQ(wipe->input(1).node, other);
}

TEST_F(DropFixture, RefusedDropsChangeNothing) {
    blurOverMaterial();
    auto alias = Zk::make<AliasedInputEffect>(IdStamp(1, 0, 9));
    g.edit->addNode(alias);
    auto mix = g.effect(8, 2, "PixShader:Mix:pip.fx");
    GraphBuilder::link(mix, 0, blur);
    GraphBuilder::link(mix, 1, alias);
    g.edit->chan(chan).cel->events().clear();
    g.graphEvent(chan, 0, 10, mix);
    FXGraphView& v = open();
    const std::string start = saved();

    EXPECT_FALSE(v.useTemplateAt(tmpl(L"Sepia"), pixelsOf(alias->getId()), false)) << "an alias";
    const Zk::Box<int> w = v.getWindowPos();
    double gx = 0, gy = 0;
    v.viewToGraphSpace(w.x1 - 4000, w.y1, gx, gy);
    ASSERT_LT(gx, v.getCanvasMinX());
    EXPECT_FALSE(v.useTemplateAt(tmpl(L"Sepia"), XY<int>(w.x1 - 4000, w.y1), false)) << "beyond the canvas";
    EXPECT_FALSE(v.useTemplateAt(nullptr, emptySpot(), false)) << "no template";

    const size_t messages = messagesShown().size();
    EXPECT_FALSE(v.useTemplateAt(tmpl(L"Stereo convergence"), emptySpot(), false));
    ASSERT_EQ(messagesShown().size(), messages + 1);
    EXPECT_EQ(messagesShown().back(), UIString(10881).resolve());
    EXPECT_NE(messagesShown().back().str().find(L"stereoscopic"), std::wstring::npos)
        << "the message says why";
    EXPECT_EQ(saved(), start);

    g.edit->setStereoscopic(true);
    EXPECT_TRUE(v.useTemplateAt(tmpl(L"Stereo convergence"), emptySpot(), false))
        << "a stereoscopic edit takes it";
}

TEST_F(DropFixture, OnlyTheRecordingVobOfAWritableViewTakesTemplatesOfItsType) {
    blurOverMaterial();
    FXGraphView& v = open();
    auto item = Zk::make<EffectTemplateDragItem>(tmpl(L"Sepia"));
    EXPECT_TRUE(v.canAccept(item.get(), Glob::DropInsert));
    EXPECT_FALSE(v.canAccept(kDragNothing, Glob::DropInsert)) << "another kind of item";

    auto audio = Zk::make<EffectTemplateDragItem>(tmpl(L"Gain"));
    EXPECT_FALSE(v.canAccept(audio.get(), Glob::DropInsert)) << "an audio template on the video graph";
    auto empty = Zk::make<EffectTemplateDragItem>(nullptr);
    EXPECT_FALSE(v.canAccept(empty.get(), Glob::DropInsert));

    v.setReadOnly(true);
    EXPECT_FALSE(v.canAccept(item.get(), Glob::DropInsert)) << "a read-only view";
    v.setReadOnly(false);
    vob->setReadOnly(true);
    EXPECT_FALSE(v.canAccept(item.get(), Glob::DropInsert)) << "a read-only edit";
    vob->setReadOnly(false);

    Zk::Ptr<Vob> recorder = VobManager::instance().vobFor(g.edit, "another");
    recorder->makeRecordMachine();
    EXPECT_FALSE(v.canAccept(item.get(), Glob::DropInsert)) << "the view's Vob doesn't record";
    EXPECT_FALSE(v.accept(item.get(), Glob::DropInsert));
    vob->makeRecordMachine();
    EXPECT_TRUE(v.canAccept(item.get(), Glob::DropReplace));
}

TEST_F(DropFixture, ADropIsOneUndoStepThatRoundTripsExactly) {
    blurOverMaterial();
    FXGraphView& v = open();
    const std::string before = saved();
    const size_t depth = vob->undoDepth();
    ASSERT_TRUE(v.useTemplateAt(tmpl(L"Soft glow"), pixelsOf(blur->getId()), false));
    const std::string after = saved();
    ASSERT_NE(after, before);
    EXPECT_EQ(vob->undoDepth(), depth + 1) << "one step for the whole template";

    ASSERT_TRUE(vob->undoRequest());
    EXPECT_EQ(saved(), before);
    EXPECT_FALSE(v.findViewRecForNode(eventRoot(1.0)->getId()) == nullptr) << "the view follows the undo";
    EXPECT_EQ(v.nodes().size(), 2u);
    ASSERT_TRUE(vob->redoRequest());
    EXPECT_EQ(saved(), after);
    EXPECT_EQ(v.nodes().size(), 4u) << "the glow's two effects are back";
}

TEST_F(DropFixture, ThePlayheadStaysOnTheNewEffect) {
    blurOverMaterial();
    g.blackEvent(chan, 10, 100);
    FXGraphView& v = open(5e-7);
    ASSERT_TRUE(v.useTemplateAt(tmpl(L"Sepia"), emptySpot(), false));
    EXPECT_EQ(vob->getCurrentTime(1), 5e-7) << "within the tolerance of the start: it stays";

    // At the very end of the new effect's span the playhead wouldn't show it: it goes to the start.
    vob->storeCurrentTime(10.0);
    ASSERT_TRUE(v.useTemplateAt(tmpl(L"Sepia"), pixelsOf(blur->getId()), false));
    EXPECT_EQ(vob->getCurrentTime(1), 0.0);
}

TEST_F(DropFixture, ManualPlacementPutsTheNewNodeAtTheDropPoint) {
    blurOverMaterial();
    FXGraphView& v = open();
    v.manualPosMode().setVal(true);
    const XY<int> spot = emptySpot();
    const XY<double> at = v.viewToGraphSpace(spot.x, spot.y);
    ASSERT_TRUE(v.useTemplateAt(tmpl(L"Sepia"), spot, false));
    FXGraphViewNode* made = v.findViewRecForNode(eventRoot(1.0)->getId());
    ASSERT_TRUE(made);
    EXPECT_NEAR(made->x(), at.x, 1e-9);
    EXPECT_NEAR(made->y(), at.y, 1e-9);
}

TEST_F(DropFixture, APreviewFollowsTheDragAndGoesWhenItIsRefused) {
    blurOverMaterial();
    FXGraphView& v = open();
    Glob::setupRootPos(v.canvas(), XY<int>(100, 100));
    GlobManager::instance().realize(&v);
    auto item = Zk::make<EffectTemplateDragItem>(tmpl(L"Sepia"));
    auto* dragWidget = new TextBox(TextBox::InitArgs(UIString(L"Sepia"), false, 60, 20));
    dragWidget->setVisible(true);
    item->setDragWidget(dragWidget);

    pointAt(v, XY<int>(200, 150));
    v.indicateAcceptability(item.get(), iDragDropDestination::kAcceptable);
    Glob* preview = v.floatingNode();
    ASSERT_TRUE(preview);
    EXPECT_FALSE(preview->isChildGlob()) << "a window of its own";
    EXPECT_TRUE(GlobManager::instance().owns(preview));
    const XY<int> s = v.getNodeSize();
    EXPECT_EQ(preview->getPosition(), XY<int>(100 + 200 - s.x / 2, 100 + 150 - s.y / 2))
        << "centred on the pointer";
    EXPECT_FALSE(dragWidget->isVisible()) << "the preview stands in for the dragged item";

    pointAt(v, XY<int>(260, 120));
    v.indicateAcceptability(item.get(), iDragDropDestination::kAcceptable);
    EXPECT_EQ(v.floatingNode(), preview) << "the same window, moved";
    EXPECT_EQ(preview->getPosition(), XY<int>(100 + 260 - s.x / 2, 100 + 120 - s.y / 2));

    v.indicateAcceptability(item.get(), iDragDropDestination::kUnacceptable);
    EXPECT_EQ(v.floatingNode(), nullptr);
    EXPECT_FALSE(is_good_glob_ptr(preview)) << "destroyed, not hidden";
    EXPECT_TRUE(dragWidget->isVisible());

    v.indicateAcceptability(item.get(), iDragDropDestination::kAcceptable);
    EXPECT_TRUE(v.accept(item.get(), Glob::DropInsert));
    EXPECT_TRUE(v.floatingNode()) << "a drop leaves the preview to the drag's end";
    v.indicateAcceptability(item.get(), iDragDropDestination::kNotOver);
    EXPECT_EQ(v.floatingNode(), nullptr);
    delete dragWidget;
    GlobManager::instance().forget(&v);
}

TEST_F(DropFixture, TheDragManagerTakesATemplateOverTheViewAndDropsIt) {
    blurOverMaterial();
    FXGraphView& v = open();
    Glob::setupRootPos(v.canvas(), XY<int>(100, 100));
    GlobManager::instance().realize(&v);
    DragDropManager& dd = DragDropManager::instance();
    auto item = Zk::make<EffectTemplateDragItem>(tmpl(L"Sepia"));
    const XY<int> outside(40, 40);
    const XY<int> spot = emptySpot();
    const XY<int> over(100 + spot.x, 100 + spot.y);

    ASSERT_TRUE(dd.startDrag(item, nullptr, outside));
    ASSERT_TRUE(item->getDragWidget());
    EXPECT_FALSE(dd.startDrag(item, nullptr, outside)) << "one drag at a time";
    EXPECT_EQ(dd.destinationAt(over), &v);
    pointAt(v, spot);
    dd.dragTo(over);
    EXPECT_EQ(dd.destination(), &v);
    EXPECT_TRUE(v.floatingNode());
    dd.dragTo(outside);
    EXPECT_EQ(v.floatingNode(), nullptr) << "leaving the view removes the preview";
    EXPECT_TRUE(item->getDragWidget()->isVisible());

    const size_t before = g.edit->nodes().size();
    pointAt(v, spot);
    dd.dragTo(over);
    EXPECT_EQ(dd.destinationAt(over), &v) << "the preview under the pointer lets the drag through";
    EXPECT_TRUE(dd.drop(over, false));
    EXPECT_EQ(g.edit->nodes().size(), before + 1);
    EXPECT_EQ(v.floatingNode(), nullptr) << "gone after the drop";
    EXPECT_FALSE(dd.dragging());
    EXPECT_EQ(item->getDragWidget(), nullptr);
    processToolkitEvents();
    GlobManager::instance().forget(&v);
}

} // namespace
