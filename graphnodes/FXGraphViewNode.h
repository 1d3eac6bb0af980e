// FXGraphViewNode: the on-screen face of one graph node. It keeps the node's place (its own
// position record, the centre in graph space), its colour and its connections, works out its pixel
// rectangle on each draw, draws itself and answers which of its connectors lies under a point.
// The box is 0.125 graph units wide and as high as a picture of the project's shape plus 0.0125
// above and below. The kinds of node (FXGraphViewThumbNode and the rest) add what is peculiar to
// them, in most cases a thumbnail.
#pragma once

#include <map>

#include "host/Colour.h"
#include "host/EditGraphIterator.h"
#include "host/EditPtr.h"
#include "host/FXGraphNodeBase.h"
#include "host/FXGraphNodeClient.h"
#include "host/XY.h"
#include "host/ZkBox.h"
#include "nodeui/NodeUIPosRec.h"
#include "nodeui/NodeUIRecClient.h"

class FXGraphView;

class FXGraphViewNode : public NodeUIRecClient, public FXGraphNodeClient, public virtual iObject {
public:
    // The far end of a connection: its connector number there and its node.
    struct Connection {
        int connector = 0;
        FXGraphViewNode* node = nullptr;
    };
    // What findConnector hit.
    enum eHit { HitNothing = 0, HitBody = 1, HitOutput = 2, HitInput = 3 };

    // Connector sizes as fractions of the view's pixel scale.
    static constexpr double kConnectorRadius = 0.01;
    static constexpr double kConnectorHitSize = 0.02;
    static constexpr double kTitleHeight = 0.025;

    FXGraphViewNode(FXGraphView* view, EditGraphIterator& it);
    ~FXGraphViewNode() override;
    FXGraphViewNode(const FXGraphViewNode&) = delete;
    FXGraphViewNode& operator=(const FXGraphViewNode&) = delete;

    // --- virtual operations
    void recUpdateNotify() override;
    virtual IdStamp getId() const;
    virtual bool hasThumbnail() const { return false; }
    virtual void drawThumbnail(EditGraphIterator&) {}
    virtual void redrawThumbnail();
    virtual bool setPos(double x, double y, bool notify) {
        pos_.setPos(x, y, notify);
        return true;
    }
    virtual double getLeft() const { return x() - 0.0625; }
    virtual double getBottom() const { return y() - 0.125 / aspect() / 2.0 - 0.0125; }
    virtual double getRight() const { return x() + 0.0625; }
    virtual double getTop() const { return y() + 0.125 / aspect() / 2.0 + 0.0125; }
    virtual XY<int> getInputPos(int input) const;
    virtual XY<int> getOutputPos(unsigned char output) const;
    virtual Colour getColour() const;
    virtual bool matches(const EditGraphIterator& it) const;
    virtual WString getName() const;

    // --- what the view uses
    void draw();
    // The title bar alone, as the names-only repaint draws it.
    void drawTitleBar();
    // The pixel rectangle of the node at its present position, as a draw works it out.
    Zk::Box<int> pixelBox() const;
    // box_, grown on request by the connectors' sizes.
    Zk::Box<int> getBox(bool withConnectors) const;
    // HitNothing, HitBody, HitOutput or HitInput; `connector` is the number of what was hit.
    int findConnector(int x, int y, int& connector) const;
    FXGraphViewNode* getInputNode(int input) const;
    FXGraphViewNode* getOutputNode(int output) const;
    // The number under which a connection to `node`'s `connector` is held, -1 when none.
    int getInputFor(const FXGraphViewNode* node, int connector) const;
    int getOutputFor(const FXGraphViewNode* node, int connector) const;
    int getEditIdx() const;
    // Links `source` into input `input`, on both sides; a link made twice is held once.
    bool addInput(int input, FXGraphViewNode* source);
    // A connection taken off by hand while the user holds it: the input keeps its entry with no
    // far end, the output loses its entry.
    void clearInputLink(int input);
    void eraseOutput(int output);
    // For a node the walk reaches again: finds its graph node if it lost it and re-reads the
    // label flags from the iterator.
    void refreshFrom(EditGraphIterator& it);
    // Whether the node is switched on: anything but an effect whose own flag is off.
    bool isEnabled() const;
    // The number of inputs the graph node reports, 0 without one.
    int numInputs() const;
    // Radius of a drawn connector in pixels (below 3 none is drawn).
    int connectorRadius() const;

    double x() const { return pos_.x(); }
    double y() const { return pos_.y(); }
    const Zk::Ptr<FXGraphNodeBase>& node() const { return node_; }
    const EditPtr& editH() const { return editH_; }
    const IdStamp& chanId() const { return chanId_; }
    int slotKey() const { return slotKey_; }
    const Zk::Box<int>& thumbBox() const { return thumbBox_; }
    bool showInputLabels() const { return showInputLabels_; }
    bool showOutputLabels() const { return showOutputLabels_; }
    double thumbTime() const { return thumbTime_; }
    const std::map<int, Connection>& inputs() const { return inputs_; }
    const std::map<int, Connection>& outputs() const { return outputs_; }
    FXGraphView* view() const { return view_; }
    // The picture shape the box follows: width over height.
    static double aspect();

    // Flags and values the view reads and writes.
    NodeUIPosRec pos_;
    Zk::Box<int> box_;
    bool highlighted_ = false;
    bool onScreen_ = true;
    double fade_ = 0.0;

protected:
    // Works out box_ from the position (step 2 of a draw).
    void calcBox();
    void calcThumbBox();
    void decideLabelFlags(const EditGraphIterator& it);
    void findNodeAgain();
    void drawInputs(bool labels, bool connectors);
    void drawConnector(XY<int> pos, const FXGraphViewNode* farEnd, int mode);
    // The hit rectangle of a connector at pos, widened by the widget gap; false when it has none.
    bool connectorHitBox(const XY<int>& pos, bool input, Zk::Box<int>& out, XY<int>& centre) const;
    void fillRect(const Colour& c, const Zk::Box<int>& box);
    void frameRect(const Colour& c, const Zk::Box<int>& box);

    Zk::Ptr<FXGraphNodeBase> node_;
    EditPtr editH_;
    Zk::Box<int> thumbBox_;
    bool showInputLabels_ = false;
    bool showOutputLabels_ = false;
    double thumbTime_ = 1e99;
    IdStamp chanId_;
    int slotKey_ = 0;
    Colour colour_;
    std::map<int, Connection> inputs_;
    std::map<int, Connection> outputs_;
    FXGraphView* view_;
};
