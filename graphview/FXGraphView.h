// FXGraphView: the canvas that shows the effect graph of the edit under the playhead. It holds
// the three coordinate spaces (graph units, view pixels with y upward, whole pixels), the zoom
// and centre as value servers, the canvas bounds, the scroll bars that stand for them, the
// layout direction and the timer count. The view nodes and what draws and moves them stand on
// this frame.
#pragma once

#include <functional>
#include <list>
#include <map>
#include <unordered_map>
#include <utility>
#include <vector>

#include "graphview/FXGraphViewFlags.h"
#include "host/BezierCurveDescription.h"
#include "host/CurrentProject.h"
#include "host/DragDropDestination.h"
#include "host/Edit.h"
#include "host/EditGraphIterator.h"
#include "host/EffectTemplate.h"
#include "host/EllipseDescription.h"
#include "host/FXEditor.h"
#include "host/ImageDescription.h"
#include "host/NotifierEvent.h"
#include "host/RectDescription.h"
#include "host/ScrollBar.h"
#include "host/StandardPanel.h"
#include "host/TextAlignment.h"
#include "host/TextDescription.h"
#include "host/ValObserverClient.h"
#include "host/VobClient.h"
#include "nodeui/NodeUIManagerClient.h"
#include "nodeui/NodeUIPosSource.h"
#include "values/ValManager.h"
#include "values/ValObserver.h"
#include "values/ValServer.h"

class FXGraphViewNode;
class NodeUIPosManager;
class NodeUIRecBase;
class Vob;

class FXGraphView : public StandardPanel,
                    public VobClient,
                    public NodeUIManagerClient,
                    public ValManager<double, FXGraphView>,
                    public ValObserverClient,
                    public DragDropDestination,
                    public NodeUIPosSource {
public:
    enum eEdgeType { EdgeMain = 0, EdgeOutline = 1 };

    struct InitArgs : GlobCreationInfo {
        InitArgs() = default;
        InitArgs(int w, int h, Vob* v, int type = 1) : GlobCreationInfo(w, h), vob(v), chanType(type) {}
        Vob* vob = nullptr;
        int chanType = 1;
    };

    explicit FXGraphView(const InitArgs& args);
    ~FXGraphView() override;
    FXGraphView(const FXGraphView&) = delete;
    FXGraphView& operator=(const FXGraphView&) = delete;

    // --- accessors
    double getViewCX() const { return viewCentre_.getVal().x; }
    double getViewCY() const { return viewCentre_.getVal().y; }
    ValServer<XY<double>>& getViewCentreSrv() { return viewCentre_; }
    ValServer<double>& getViewZoom() { return viewZoom_; }
    ValServer<bool>& manualPosMode() { return manualPosMode_; }
    bool getManualPosMode() const { return manualPosMode_.getVal(); }
    double getViewZoomValue() const { return viewZoom_.getVal(); }
    double getCanvasMinX() const { return canvasMinX_; }
    double getCanvasMinY() const { return canvasMinY_; }
    double getCanvasMaxX() const { return canvasMaxX_; }
    double getCanvasMaxY() const { return canvasMaxY_; }
    uint16_t getMaxNodeWidth() const { return static_cast<uint16_t>(maxNodeWidth_); }
    VidRouting::Orientations::Orientation getOrientation() const override { return orientation_; }
    bool getReadOnly() const { return readOnly_; }
    void setReadOnly(bool r) { readOnly_ = r; }
    const EditPtr& getEditH() const { return edit_; }
    double getEditTime() const;
    const UifColour& getBackgroundCol() const { return backgroundCol_; }
    void setBackgroundCol(const UifColour& c) { backgroundCol_ = c; }
    bool drawingOverview() const { return drawingOverview_; }
    bool autoScrolling() const { return autoScrolling_; }
    bool isETimeEnabled() const { return eTimeCount_ > 0; }
    const Zk::Ptr<FXGraphViewNode>& draggingNode() const { return draggingNode_; }
    const Zk::Ptr<FXGraphViewNode>& draggingIFNode() const { return draggingIFNode_; }
    const Zk::Ptr<FXGraphViewNode>& fadingNewNode() const { return fadingNewNode_; }
    double physicalScale() const { return physicalScale_; }
    const IdStamp& primaryChan() const { return primaryChan_; }
    double morphologyStart() const { return morphologyStart_; }
    double morphologyEnd() const { return morphologyEnd_; }
    ScrollBar* horzScrollBar() const { return horzScrollBar_; }
    ScrollBar* vertScrollBar() const { return vertScrollBar_; }
    // A value-manager callback that accepts every change as it is.
    bool handleViewWinChange(ValServer<double>* server, double& value);

    // --- the three spaces
    XY<double> graphToViewSpace(double x, double y) const;
    void graphToViewSpace(double x, double y, double& vx, double& vy) const;
    XY<double> viewToGraphSpace(double x, double y) const;
    void viewToGraphSpace(double x, double y, double& gx, double& gy) const;
    double graphToViewDistance(double d) const { return d * physicalScale_; }
    double viewToGraphDistance(double d) const { return d / physicalScale_; }
    // Rounds view-space values to pixels with a deliberate half-pixel shift.
    static XY<int> graphToPixels(double x, double y);
    // The area the graph is drawn in: inside the indent, clear of the two scroll bars.
    Zk::Box<int, Zk::BottomUpTraits> getWindowPos() const;
    bool clipRectToView(int& x1, int& y1, int& x2, int& y2) const;
    void resetClipRect();
    void constrainToCanvas(double& x, double& y) const;
    void constrainToCanvas(XY<double>& p) const { constrainToCanvas(p.x, p.y); }

    // --- scale and zoom
    double calcPhysicalScale(double zoom) const;
    double fitViewToCanvRect(Zk::Box<double, Zk::BottomUpTraits>& box) const;
    double calcAutoScale(double& cx, double& cy) const;
    Zk::Box<double, Zk::BottomUpTraits> getGraphExtents() const;
    virtual void setViewZoom(double z);
    virtual void setViewCentre(double x, double y);
    void setMaxNodeSize(int width);
    XY<int> getNodeSize() const;
    uint16_t getEdgeThickness(eEdgeType type) const;
    int handleZoom(int direction) override;
    void resetView(FXGraphVieweRedrawFlag redraw, FXGraphViewRefitFlag refit);
    void resize(double w, double h) override;
    void updateScrollbars(bool redraw);
    int handleMessageEvent(const LightweightString<char>& msg, Glob* from) override;
    void handleScrollbarMsg(ScrollBar* bar, const LightweightString<char>& msg);
    void enableETime();
    void disableETime();
    int getPrimaryChanIx() const;
    void setOrientation(VidRouting::Orientations::Orientation o, bool refit);
    int changeOrientation(const NotifyMsg& msg);

    // --- the node list
    void setEditFocus(Vob* vob, const IdStamp& chan, bool alwaysRedraw);
    void recalcNodeList(bool notifyGroup);
    // Walks every root, appending the view nodes it makes; returns how many it made.
    int createViewNodeRecs();
    int createViewNodeRecs(const IdStamp& root, int rootIndex);
    int createViewNodeRecsInternal(EditGraphIterator& it, FXGraphViewNode* parent, int rootIndex);
    // The kind of view node the iterator's node calls for.
    Zk::Ptr<FXGraphViewNode> createViewNode(EditGraphIterator& it);
    void flushNodeList();
    std::vector<IdStamp> getRoots() const;
    Vector<IdStamp> getAllNodes() const;
    void getAllNodes(Vector<IdStamp>& out) const;
    void calcVisibleNodeList(Vector<IdStamp>& out) const;
    bool ensureNodeListVisible(const Vector<IdStamp>& ids, FXGraphViewRefitFlag refit);
    // The first view node in list order whose record holds that id, found through an index.
    FXGraphViewNode* findViewRecForNode(const IdStamp& id) const;
    // The same answer by a scan of the list, as the index must give it.
    FXGraphViewNode* findViewRecForNodeByScan(const IdStamp& id) const;
    FXGraphViewNode* findNodeAt(int x, int y) const;
    Zk::Ptr<FXGraphNodeBase> findNodeAtPos(const XY<double>& pos) const;
    FXGraphViewNode* getPrimaryNodePtr() const;
    EditGraphIterator getIteratorFor(const IdStamp& id, int options) const;
    EditGraphIterator getIteratorFor(const Zk::Ptr<FXGraphNodeBase>& node, int options) const;
    NodeUIPosRec* getPosRecForNode(const IdStamp& id) override;
    NodeUIPosRec* getPosRecForUtr(CelEventPair& pair);
    const std::vector<Zk::Ptr<FXGraphViewNode>>& nodes() const { return nodes_; }
    // Finding view nodes, and carrying positions over a rebuild, go through indexes; with false
    // both scan the lists instead, as the benchmark's baseline does. The answers are the same.
    void setIndexedRebuild(bool indexed) { indexedRebuild_ = indexed; }

    // --- placing and the span of time the list holds for
    void tidy();
    int tidy(const NotifyMsg& msg);
    // Lays out every root from the origin; draws nothing and keeps the view where it is.
    void autoTidy();
    void autoTidyNodeRecs(const std::vector<IdStamp>& roots, XY<double> origin);
    // Tidies whenever two view nodes stand on exactly the same point.
    void checkForCoincidentNodes();
    // The same outcome by comparing every pair, tidying again for each node that shares a point.
    void checkForCoincidentNodesByScan();
    bool assignPositionFromChannel(FXGraphViewNode* node);
    void assignPositionFromConnections(FXGraphViewNode* node);
    void assignPositionsManual(Vector<FXGraphViewNode*>& nodes, double left, double right, double ySum,
                               int count);
    XY<double> findMaterialNodePosition() const { return XY<double>(-1, -1); }
    void relativeMoveTree(EditGraphIterator& it, const double& dx, const double& dy, int rootIndex,
                          std::vector<NodeUIPosRec*>& seen);
    void translateManuallyPositionedNodes(Zk::Ptr<FXGraphNodeBase> node, double dx, double dy, bool);
    void translateManuallyPositionedNodes(EditGraphIterator& it, double dx, double dy);
    void updateMinAndMaxPositions();
    void calcMorphologyExtents(double time);
    void rotateNodes(double degrees);
    const std::map<std::pair<IdStamp, int64_t>, XY<double>>& chanPositions() const { return chanPositions_; }

    // --- gestures: the pointer, the wheel and the timer on the canvas
    // The press, drag and release rules: a node held and moved (with the tree-move key, its whole
    // tree), a click on a node's body, a canvas press that pans or zooms, and the ports that pick
    // up and put down connections.
    static constexpr int DragThreshold = 3;
    static constexpr int AutoScrollMargin = 20;
    static constexpr double ZoomPixelsPerRange = 170.0;
    static constexpr double WheelZoomStep = 0.1;
    static constexpr double FadeDuration = 0.4;
    static constexpr int TimerInterest = 0x1000;
    static constexpr int TreeMoveKey = 0x1000000;
    // The value of the "max_click_separation" setting, read once at load; no gesture uses it.
    static int maxClickSeparation();
    bool handleMouseEvent(const Event& e) override;
    void handleTimerEvent() override;
    MouseCursorID contextCursor(const XY<int>& screenPos) override;
    bool checkForPanAndZoom(const Event& e);
    // A click on a node's body: an effect (not an alias) is switched on or off, as one undo step.
    bool handleNodeClicked(Zk::Ptr<FXGraphViewNode> node);
    // Whether the pointer is outside the view's window or within AutoScrollMargin of its edge.
    bool mouseInAutoScrollArea() const;
    bool setAutoScrollState(bool on);
    // The pointer in the view's pixels, y upward.
    XY<int> pointerInView() const;

    // --- wiring: click, carry, click
    bool handleInputClicked(Zk::Ptr<FXGraphViewNode> node, int input);
    bool handleOutputClicked(Zk::Ptr<FXGraphViewNode> node, int output);
    // Ends a loose connection where it is: false when none was loose.
    bool removeDraggedIFConnection();
    // Removes the node whose box holds the view point (x, y); true when a node lay there, whether
    // or not it could be removed.
    bool destroyNode(int x, int y);
    int draggedIF() const { return draggedIF_; }
    bool draggedIFIsInput() const { return draggedIFIsInput_; }

protected:
    // Starts the fade of a node just made; null ends the fade under way.
    void initNodeFade(FXGraphViewNode* node);

private:
    // --- gestures
    // Where the held node's centre goes for the pointer at view pixel p, inside the canvas.
    XY<double> dragTarget(const XY<int>& p) const;
    void startNodeDrag(const Zk::Ptr<FXGraphViewNode>& node, const XY<int>& p);
    // Moves the held node; the repaint its announcement brings covers only the pixels the move
    // touches, unless the whole view moved under it.
    void moveHeldNode(const Zk::Ptr<FXGraphViewNode>& node, const XY<double>& to, bool wholeView);
    // The boxes of pixels a node's move by `shift` pixels touches: the node, where it is and where
    // it goes, and each of its connections.
    std::vector<Zk::Box<int>> moveDamage(const FXGraphViewNode& node, const XY<int>& shift) const;
    static void mergeDamage(std::vector<Zk::Box<int>>& areas);
    // The boxes a node covers where it stands, in view, merged.
    std::vector<Zk::Box<int>> restingDamage(const FXGraphViewNode& node) const;
    // While a node is held and moved, the rest of the graph is kept as a picture and the node
    // floats above it: a move puts the picture back where the node was and where it goes and
    // paints only the node and its connections there. Letting go paints it back in its place.
    bool canFloat() const;
    void keepPictureWithout(const Zk::Ptr<FXGraphViewNode>& node);
    void paintFloating();
    void landFloating();
    void forgetPicture();
    // --- wiring
    FXEditor wiringEditor() const;
    void tellTransportOfGraphChange() const;
    void refreshAfterLooseConnection();

public:
    // --- drawing
    const char* idstring() const override { return "FXGraphView"; }
    void drawBackground() override;
    void drawPrimaryNodeHighlight();
    void drawConnections(eEdgeType type);
    // Only the connections that end at `only`.
    void drawConnections(eEdgeType type, const FXGraphViewNode* only);
    void drawNodes();
    void drawDraggedConnection();
    void drawDraggedConnection(eEdgeType type);
    // One connection: from the upstream output end to the downstream input end.
    void drawConnection(const XY<int>& from, const XY<int>& to, const Colour& colour,
                        unsigned short thickness);
    // Partial repaints: only the nodes' titles, only their stills.
    void drawNodeNames();
    void drawStills();
    void drawText(const WString& text, const Zk::Box<int>& box, const Colour& colour, TextAlignment alignment,
                  const char* fontName);
    // A filled circle of radius r round a point, as connectors and the ends of a dragged
    // connection are drawn.
    static Glib::EllipseDescription dotAt(const XY<int>& centre, int r, const Colour& colour);
    void drawText(const String& text, const Zk::Box<int>& box, const Colour& colour, TextAlignment alignment,
                  const char* fontName);
    // Every primitive of the view goes to the canvas through here: clipped to the clip box,
    // skipped when nothing of it is left, and its clipped box marked as changed.
    void submitPrimitive(const Glib::RectDescription& d);
    void submitPrimitive(const Glib::BezierCurveDescription& d);
    void submitPrimitive(const Glib::EllipseDescription& d);
    void submitPrimitive(const Glib::TextDescription& d);
    void submitPrimitive(const Glib::ImageDescription& d);
    // The canvas's clip box; the whole canvas when it has none.
    Zk::Box<int> currentClip() const;
    // A view node moved: repaint now, so that a dragged node follows the pointer.
    void nodePosRecUpdate(FXGraphViewNode* node);
    // A view node's inputs changed: rebuild, unless the view is rewiring them itself.
    void nodeInputsChanged(FXGraphViewNode* node);

    // --- notices
    void handleModifications(const EditModifications& mods, const VobModification& vobMod) override;
    int handleProjectStateChange(const NotifierEvent<Zk::CurrentProject::ChangeDescription>& event);
    void newNodeRecNotify(NodeUIRecBase* rec) override;
    void nodeRecDeletedNotify(NodeUIRecBase* rec) override;
    void generalUpdateNotify(LightweightString<char> message) override;
    void notifyValChanged(const ValObserverBase& observer) override;

    // --- changes: what the last notice cost, lightest first
    enum class Refresh { Nothing, Names, Stills, Repaint, Rebuild };
    static const char* refreshName(Refresh r);
    // What the view did about the last notice it had.
    Refresh lastRefresh() const { return lastRefresh_; }
    // How many notices have taken each refresh since the view was made.
    unsigned refreshCount(Refresh r) const { return refreshCounts_[static_cast<int>(r)]; }
    // How many times the node list was actually rebuilt (a rebuild asked for during a loose
    // connection does not happen).
    unsigned nodeListBuilds() const { return nodeListBuilds_; }
    // Told after each notice, with what was done about it.
    void setRefreshListener(std::function<void(Refresh)> listener) { refreshListener_ = std::move(listener); }

    // --- menu
    void reviewMenu(const Event* event) override;

    // --- drops: effect templates dropped on the canvas. A read-only view takes none.
    bool canAccept(DragDropItem* item, Glob::eDropReason reason) const override;
    bool canAccept(DragDropItemType type, Glob::eDropReason reason) const override;
    bool accept(DragDropItem* item, Glob::eDropReason reason) override;
    void indicateAcceptability(DragDropItem* item, eAcceptance acceptance) override;
    // Puts the template into the graph by what lies under pos (view pixels) and places the new
    // node there; replace asks it to take the place of the effect it lands on. One undo step.
    // True when a new effect stands in the graph afterwards.
    bool useTemplateAt(Zk::Ptr<EffectTemplate> tmpl, const XY<int>& pos, bool replace);
    FXEditor::RC applyTemplateTo(Zk::Ptr<EffectTemplate> tmpl, FXGraphViewNode* node);
    // The preview window that follows a drag over the view, or null when there is none.
    Glob* floatingNode() const { return floatingNode_.alive() ? floatingNode_.glob : nullptr; }

private:
    Zk::Ptr<NodeUIPosManager> posManager() const;
    XY<double> windowCentre() const;
    template <class D>
    void gate(const D& d);
    // The index of nodes_ by record id: first position in list order. It is rebuilt whenever the
    // list was changed behind its back.
    void appendViewNode(const Zk::Ptr<FXGraphViewNode>& n);
    void reindexNodes() const;
    // Whether the index still describes nodes_ (same count, same last node).
    bool indexIsCurrent() const;
    mutable std::unordered_map<IdStamp, size_t, IdStampHash> nodeIndex_;
    mutable size_t indexedCount_ = 0;
    mutable const FXGraphViewNode* indexedLast_ = nullptr;
    bool indexedRebuild_ = true;
    void noteRefresh(Refresh r);
    Refresh lastRefresh_ = Refresh::Nothing;
    unsigned refreshCounts_[5] = {0, 0, 0, 0, 0};
    unsigned nodeListBuilds_ = 0;
    std::function<void(Refresh)> refreshListener_;

protected:
    // The view's state. Gestures, connection drags and fades read and write the fields that the
    // frame itself only clears.

    bool suppressInputRecalc_ = false;
    std::vector<Zk::Ptr<FXGraphViewNode>> nodes_;
    EditPtr edit_;
    ValServer<bool> reservedFlag_;
    ValServer<bool> manualPosMode_;
    UifColour backgroundCol_;
    ValServer<XY<double>> viewCentre_;
    double canvasMinX_ = -1.0;
    double canvasMinY_ = -1.0;
    double canvasMaxX_ = 1.0;
    double canvasMaxY_ = 1.0;
    ValServer<double> viewZoom_;
    double physicalScale_ = 1.0;
    bool drawingOverview_ = false;
    int maxNodeWidth_ = 0;
    ValServer<double> reservedVal1_;
    ValServer<double> reservedVal2_;
    Zk::Ptr<FXGraphViewNode> draggingNode_;
    Zk::Ptr<FXGraphViewNode> draggingIFNode_;
    uint64_t reservedPair_[2] = {0, 0};
    Zk::Ptr<FXGraphViewNode> fadingNewNode_;
    double fadeElapsed_ = 0.0;
    int draggedIF_ = 0;
    bool draggedIFIsInput_ = false;
    int lastMousePos_[2] = {0, 0};
    bool autoScrolling_ = false;
    double eTimeStamp_ = 0.0;
    int eTimeCount_ = 0;
    IdStamp primaryChan_;
    int dragOffset_[2] = {0, 0};
    Zk::Ptr<FXGraphViewNode> minXNode_;
    Zk::Ptr<FXGraphViewNode> minYNode_;
    Zk::Ptr<FXGraphViewNode> maxXNode_;
    Zk::Ptr<FXGraphViewNode> maxYNode_;
    bool readOnly_ = false;
    double morphologyStart_ = 1e99;
    double morphologyEnd_ = 1e99;
    std::map<std::pair<IdStamp, int64_t>, XY<double>> chanPositions_;
    bool panning_ = false;
    VidRouting::Orientations::Orientation orientation_ = VidRouting::Orientations::BottomToTop;
    ScrollBar* horzScrollBar_ = nullptr;
    ScrollBar* vertScrollBar_ = nullptr;
    ValObserver<double> zoomObserver_;
    ValObserver<XY<double>> centreObserver_;
    int chanType_ = 1;
    std::list<Zk::Ptr<Zk::Guard>> projectGuards_;

    // --- drops
    // A checked handle on the preview window: alive while the widget exists and still carries
    // the id it was made with. Clearing destroys a live widget.
    struct FloatingNodeHandle {
        FloatingNodeHandle() = default;
        FloatingNodeHandle(const FloatingNodeHandle&) = delete;
        FloatingNodeHandle& operator=(const FloatingNodeHandle&) = delete;
        ~FloatingNodeHandle() { clear(); }
        IdStamp id;
        Glob* glob = nullptr;
        bool alive() const;
        void clear();
    };
    FloatingNodeHandle floatingNode_;

    // --- the held node floating over a kept picture of the rest
    Zk::Ptr<FXGraphViewNode> floating_;
    // A repaint that leaves the floating node out, to make the picture.
    bool hidingFloating_ = false;
    // The boxes the repaint of the floating node's move puts back and paints.
    std::vector<Zk::Box<int>> floatingAreas_;
};
