// The graph view on generated edits: a rebuild of the node list with its tidy, through the
// indexes and by the plain scans; a full redraw at 1920x1080 into the raster canvas, beside the
// same nodes and curves drawn by Qt's QGraphicsScene; and one frame of panning over a large graph
// of which a few hundred nodes are on screen; one pointer move of a held node and one timer round
// of auto-scrolling in a graph of 1,000 nodes.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QGraphicsPathItem>
#include <QGraphicsRectItem>
#include <QGraphicsScene>
#include <QGraphicsSimpleTextItem>
#include <QGraphicsView>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cstdlib>
#include <map>
#include <memory>

#include "graphnodes/FXGraphViewNode.h"
#include "graphview/FXGraphView.h"
#include "host/Canvas.h"
#include "host/ToolkitApp.h"
#include "host/Vob.h"
#include "host/VobManager.h"
#include "refhost/edit/EditGenerator.h"
#include "refhost/toolkit/GlobImpl.h"

namespace {

EditPtr generated(uint32_t nodes) {
    static std::map<uint32_t, EditPtr> cache;
    auto it = cache.find(nodes);
    if (it != cache.end())
        return it->second;
    GeneratorOptions o;
    o.seed = 11;
    o.nodes = nodes;
    return cache[nodes] = generateEdit(o);
}

// A view of a generated edit at a given size, with the playhead inside its one graph event.
struct ViewOn {
    ViewOn(uint32_t nodes, int w, int h) {
        setenv("QT_QPA_PLATFORM", "offscreen", 0);
        ensureToolkitApplication();
        edit = generated(nodes);
        vob = VobManager::instance().vobFor(edit, "bench-" + std::to_string(nodes) + "-" + std::to_string(w));
        vob->storeCurrentTime(1.0);
        view = std::make_unique<FXGraphView>(FXGraphView::InitArgs(w, h, vob.get(), 1));
    }
    // Zoom and centre so that the whole graph is in the window.
    void fitAll() {
        view->updateMinAndMaxPositions();
        double cx = 0, cy = 0;
        view->setViewZoom(view->calcAutoScale(cx, cy));
        view->setViewCentre(cx, cy);
    }
    int onScreen() const {
        return static_cast<int>(std::count_if(view->nodes().begin(), view->nodes().end(),
                                              [](const auto& n) { return n->onScreen_; }));
    }
    EditPtr edit;
    Zk::Ptr<Vob> vob;
    std::unique_ptr<FXGraphView> view;
};

void rebuild(benchmark::State& state, bool indexed) {
    ViewOn v(static_cast<uint32_t>(state.range(0)), 800, 600);
    v.view->manualPosMode().setVal(false); // every rebuild tidies
    v.view->setIndexedRebuild(indexed);
    for (auto _ : state)
        v.view->recalcNodeList(false);
    state.counters["nodes"] = static_cast<double>(v.view->nodes().size());
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * v.view->nodes().size()));
}

void BM_Rebuild_Indexed(benchmark::State& state) {
    rebuild(state, true);
}
void BM_Rebuild_PlainScans(benchmark::State& state) {
    rebuild(state, false);
}

void BM_Redraw_1080p(benchmark::State& state) {
    ViewOn v(static_cast<uint32_t>(state.range(0)), 1920, 1080);
    v.fitAll();
    v.view->draw(); // stills into the cache, boxes worked out
    for (auto _ : state)
        v.view->draw();
    state.counters["visible"] = v.onScreen();
    state.counters["scale"] = v.view->physicalScale();
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * v.onScreen()));
}

// The peer: the same boxes, titles and curves as items of a QGraphicsScene, drawn by a
// QGraphicsView into an image of the same size.
void BM_Peer_QGraphicsScene_1080p(benchmark::State& state) {
    ViewOn v(static_cast<uint32_t>(state.range(0)), 1920, 1080);
    v.fitAll();
    v.view->draw();
    QGraphicsScene scene(0, 0, 1920, 1080);
    const int h = v.view->height();
    auto flip = [h](int y) { return static_cast<qreal>(h - y); };
    int visible = 0;
    for (const auto& n : v.view->nodes()) {
        if (!n->onScreen_)
            continue;
        ++visible;
        const Zk::Box<int>& b = n->box_;
        const Colour c = n->getColour();
        const QColor fill = QColor::fromRgbF(c.red(), c.green(), c.blue());
        auto* rect =
            scene.addRect(QRectF(b.x1, flip(b.y2), b.width(), b.height()), QPen(fill.darker()), fill);
        if (v.view->physicalScale() * FXGraphViewNode::kTitleHeight > 3.0) {
            auto* title = new QGraphicsSimpleTextItem(QString::fromWCharArray(n->getName().c_str()), rect);
            title->setPos(b.x1 + 2, flip(b.y2));
        }
        for (const auto& [input, far] : n->inputs()) {
            const XY<int> from = far.node->getOutputPos(static_cast<unsigned char>(far.connector));
            const XY<int> to = n->getInputPos(input);
            QPainterPath path(QPointF(from.x, flip(from.y)));
            const qreal my = flip((from.y + to.y) / 2);
            path.cubicTo(QPointF(from.x, my), QPointF(to.x, my), QPointF(to.x, flip(to.y)));
            scene.addPath(path, QPen(fill, v.view->getEdgeThickness(FXGraphView::EdgeMain)));
        }
    }
    QGraphicsView gv(&scene);
    gv.setRenderHint(QPainter::Antialiasing);
    gv.resize(1920, 1080);
    QImage image(1920, 1080, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        QPainter p(&image);
        p.setRenderHint(QPainter::Antialiasing);
        gv.render(&p, QRectF(0, 0, 1920, 1080), QRect(0, 0, 1920, 1080));
    }
    state.counters["visible"] = visible;
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * visible));
}

// One frame of panning: the centre moves by a few pixels and the view repaints.
void BM_PanFrame(benchmark::State& state) {
    ViewOn v(static_cast<uint32_t>(state.range(0)), 1920, 1080);
    v.fitAll();
    v.view->setViewZoom(static_cast<double>(state.range(1)) / 100.0);
    const double cx = v.view->getViewCX(), cy = v.view->getViewCY();
    v.view->draw();
    const double step = 8.0 / v.view->physicalScale();
    int frame = 0;
    for (auto _ : state) {
        v.view->setViewCentre(cx + step * (frame % 2), cy);
        v.view->draw();
        ++frame;
    }
    state.counters["onScreen"] = v.onScreen();
    state.counters["scale"] = v.view->physicalScale();
    state.counters["nodes"] = static_cast<double>(v.view->nodes().size());
}

// Holds the node nearest the middle of the window, at a zoom, with a left press on its body; the
// pointer is placed where the press was.
struct HeldNode {
    HeldNode(ViewOn& v, double zoom) : view(*v.view) {
        v.fitAll();
        view.setViewZoom(zoom);
        view.draw();
        const Zk::Box<int> w = view.getWindowPos();
        const XY<int> mid((w.x1 + w.x2) / 2, (w.y1 + w.y2) / 2);
        long best = -1;
        for (const auto& n : view.nodes()) {
            const Zk::Box<int> b = n->pixelBox();
            const long dx = (b.x1 + b.x2) / 2 - mid.x, dy = (b.y1 + b.y2) / 2 - mid.y;
            int c = 0;
            const XY<int> at((b.x1 + b.x2) / 2, (b.y1 + b.y2) / 2);
            if (n->onScreen_ && n->findConnector(at.x, at.y, c) == FXGraphViewNode::HitBody &&
                (best < 0 || dx * dx + dy * dy < best)) {
                best = dx * dx + dy * dy;
                press = at;
            }
        }
        pointAt(press);
        view.handleMouseEvent(Event(Event::Down, Event::Left, press, press));
    }
    void pointAt(const XY<int>& p) {
        const XY<int> origin = view.getPosition();
        toolkit::notePointer(QPoint(origin.x + p.x, toolkit::screenHeight() - 1 - (origin.y + p.y)));
    }
    FXGraphView& view;
    XY<int> press;
};

// One pointer move while a node is held in a graph of N nodes, at zoom Z percent: the event, the new
// position, its announcement through the position record, and the repaint it brings.
void BM_DragNodeMove(benchmark::State& state) {
    ViewOn v(static_cast<uint32_t>(state.range(0)), 1920, 1080);
    HeldNode held(v, static_cast<double>(state.range(1)) / 100.0);
    int step = 0;
    for (auto _ : state) {
        const XY<int> p(held.press.x + 6 + (step % 2) * 4, held.press.y + 4);
        held.pointAt(p);
        held.view.handleMouseEvent(Event(Event::Move, Event::Left, p, held.press));
        ++step;
    }
    CanvasRenderer& r = held.view.canvas()->renderer();
    r.clearRecording();
    r.startRecording();
    const XY<int> p(held.press.x + 8, held.press.y + 4);
    held.pointAt(p);
    held.view.handleMouseEvent(Event(Event::Move, Event::Left, p, held.press));
    // The primitives one move paints, in how many areas of how many pixels, against a whole repaint.
    state.counters["primitives"] = static_cast<double>(r.recorded().size());
    {
        std::vector<Zk::Box<int>> clips;
        for (const auto& rec : r.recorded()) {
            const Zk::Box<int>& c = rec.clip;
            if (std::none_of(clips.begin(), clips.end(), [&](const Zk::Box<int>& k) {
                    return k.x1 == c.x1 && k.y1 == c.y1 && k.x2 == c.x2 && k.y2 == c.y2;
                }))
                clips.push_back(c);
        }
        state.counters["areas"] = static_cast<double>(clips.size());
        double px = 0;
        for (const auto& c : clips)
            px += static_cast<double>(c.x2 - c.x1) * (c.y2 - c.y1);
        state.counters["areaPixels"] = px;
    }
    r.clearRecording();
    held.view.draw();
    state.counters["wholeView"] = static_cast<double>(r.recorded().size());
    r.stopRecording();
    r.clearRecording();
    state.counters["held"] = held.view.draggingNode() ? 1 : 0;
    state.counters["autoScrolling"] = held.view.autoScrolling() ? 1 : 0;
    state.counters["nodes"] = static_cast<double>(held.view.nodes().size());
}

// The ends of a drag in a graph of N nodes: the first move, which paints the rest of the graph
// once as the picture the held node floats over, and the release, which paints the node back in
// its place. Each iteration presses, moves once and lets go.
void BM_DragFirstMoveAndRelease(benchmark::State& state) {
    ViewOn v(static_cast<uint32_t>(state.range(0)), 1920, 1080);
    HeldNode held(v, static_cast<double>(state.range(1)) / 100.0);
    const XY<int> press = held.press;
    held.view.handleMouseEvent(Event(Event::Up, Event::Left, press, press));
    int step = 0, onNode = 0;
    for (auto _ : state) {
        held.pointAt(press);
        held.view.handleMouseEvent(Event(Event::Down, Event::Left, press, press));
        onNode += held.view.draggingNode() ? 1 : 0;
        // There and back, so that the press always lands on the node.
        const XY<int> p(press.x + (step % 2 ? -6 : 6), press.y);
        held.pointAt(p);
        held.view.handleMouseEvent(Event(Event::Move, Event::Left, p, press));
        held.view.handleMouseEvent(Event(Event::Up, Event::Left, p, press));
        ++step;
    }
    state.counters["nodes"] = static_cast<double>(held.view.nodes().size());
    state.counters["pressesOnNode"] = static_cast<double>(onNode) / std::max(step, 1);
}

// One timer round of auto-scrolling with a node held at the left edge: the canvas moves, the
// node follows the pointer, and the view repaints.
void BM_AutoScrollRound(benchmark::State& state) {
    ViewOn v(static_cast<uint32_t>(state.range(0)), 1920, 1080);
    HeldNode held(v, 0.5);
    const Zk::Box<int> w = held.view.getWindowPos();
    const XY<int> edge(w.x1 + 5, held.press.y);
    held.pointAt(edge);
    held.view.handleMouseEvent(Event(Event::Move, Event::Left, edge, held.press));
    const double cx = held.view.getViewCX(), cy = held.view.getViewCY();
    for (auto _ : state) {
        state.PauseTiming();
        held.view.setViewCentre(cx, cy); // each round scrolls from the same place
        state.ResumeTiming();
        held.view.handleTimerEvent();
    }
    state.counters["autoScrolling"] = held.view.autoScrolling() ? 1 : 0;
    state.counters["nodes"] = static_cast<double>(held.view.nodes().size());
}

} // namespace

BENCHMARK(BM_Rebuild_Indexed)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Rebuild_PlainScans)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Redraw_1080p)->Arg(500)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Peer_QGraphicsScene_1080p)->Arg(500)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PanFrame)->Args({10000, 100})->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DragNodeMove)->Args({1000, 20})->Args({1000, 50})->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DragFirstMoveAndRelease)->Args({1000, 20})->Unit(benchmark::kMillisecond);
BENCHMARK(BM_AutoScrollRound)->Arg(1000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
