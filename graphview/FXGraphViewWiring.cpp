// Connection editing on the canvas: a press on a port picks a connection up or fixes one end of a
// new one, the loose end follows the pointer, and the next press joins it, is refused, or lets it
// go. Nodes are removed here too. Every change goes through the host's editor, is announced, and
// is one step of the edit's undo history.
#include "graphnodes/FXGraphViewNode.h"
#include "graphview/FXGraphView.h"
#include "host/MaterialUsageNode.h"
#include "host/TransitStatus.h"
#include "host/UpdateDeferrer.h"
#include "host/Vob.h"
#include "host/VobManager.h"

namespace {

// Iterators on a node whose connection is being picked up at its input, and on every other node.
constexpr int kPickUpAtInput = 1;
constexpr int kWiring = 9;

const EditModifications& connectionsChanged() {
    static const EditModifications mods{EditModification(5)};
    return mods;
}

// Holds a flag up for a scope.
class FlagScope {
public:
    explicit FlagScope(bool& flag) : flag_(flag), was_(flag) { flag_ = true; }
    ~FlagScope() { flag_ = was_; }
    FlagScope(const FlagScope&) = delete;
    FlagScope& operator=(const FlagScope&) = delete;

private:
    bool& flag_;
    bool was_;
};

} // namespace

FXEditor FXGraphView::wiringEditor() const {
    return FXEditor(edit_, vob() ? vob()->getEditModule() : EditModule(),
                    edit_ ? edit_->getIdx(primaryChan_) : -1);
}

void FXGraphView::tellTransportOfGraphChange() const {
    if (vob() && vob()->isRecording())
        TransitStatus::manager().graphChanged();
}

void FXGraphView::refreshAfterLooseConnection() {
    handleModifications(connectionsChanged(), VobModification(0));
}

bool FXGraphView::handleInputClicked(Zk::Ptr<FXGraphViewNode> node, int input) {
    if (!node || !node->node())
        return true;
    Glib::UpdateDeferrer defer(canvas(), 1);
    FlagScope suppress(suppressInputRecalc_);
    FXEditor editor = wiringEditor();

    if (!draggingIFNode_) {
        if (FXGraphViewNode* source = node->getInputNode(input)) {
            EasyBackup step(edit_);
            draggedIFIsInput_ = false;
            draggingIFNode_ = Zk::Ptr<FXGraphViewNode>(source);
            draggedIF_ = source->getOutputFor(node.get(), input);
            EditGraphIterator it = getIteratorFor(node->node(), kPickUpAtInput);
            editor.disconnectNodes(it, input, true);
            node->clearInputLink(input);
            source->eraseOutput(draggedIF_);
            if (edit_)
                edit_->addModification(connectionsChanged(), true);
        } else {
            draggedIFIsInput_ = true;
            draggingIFNode_ = node;
            draggedIF_ = input;
        }
        const XY<int> p = pointerInView();
        lastMousePos_[0] = p.x;
        lastMousePos_[1] = p.y;
        enableETime();
        return true;
    }

    // An occupied input is never overwritten, and an input can't take a loose input end.
    if (draggedIFIsInput_ || node->getInputNode(input))
        return true;
    EditGraphIterator from = getIteratorFor(draggingIFNode_->node(), kWiring);
    EditGraphIterator to = getIteratorFor(node->node(), kWiring);
    if (!editor.canConnectNodes(to, static_cast<size_t>(input), from))
        return true;
    if (vob())
        vob()->makeBackup();
    // One output feeds one input: the output's present destination lets go first.
    if (FXGraphViewNode* dest = draggingIFNode_->getOutputNode(draggedIF_)) {
        EditGraphIterator it = getIteratorFor(dest->node(), kWiring);
        editor.disconnectNodes(it, dest->getInputFor(draggingIFNode_.get(), draggedIF_), true);
    }
    editor.connectNodes(to, input, from, true);
    tellTransportOfGraphChange();
    disableETime();
    draggingIFNode_ = nullptr;
    if (edit_)
        edit_->addModification(connectionsChanged(), true);
    return true;
}

// Joining at an output clears the loose connection before the editor works and relies on the
// editor's own announcement of the new link; joining at an input announces after it.
bool FXGraphView::handleOutputClicked(Zk::Ptr<FXGraphViewNode> node, int output) {
    if (!node || !node->node())
        return true;
    Glib::UpdateDeferrer defer(canvas(), 1);
    FlagScope suppress(suppressInputRecalc_);
    FXEditor editor = wiringEditor();

    if (draggingIFNode_) {
        // Only a loose end from an input, and only onto the spare output.
        if (!draggedIFIsInput_ || output != static_cast<int>(node->outputs().size()))
            return true;
        EditGraphIterator to = getIteratorFor(draggingIFNode_->node(), kWiring);
        EditGraphIterator from = getIteratorFor(node->node(), kWiring);
        if (!editor.canConnectNodes(to, static_cast<size_t>(draggedIF_), from))
            return true;
        if (vob())
            vob()->makeBackup();
        disableETime();
        draggingIFNode_ = nullptr;
        editor.disconnectNodes(to, draggedIF_, true);
        editor.connectNodes(to, draggedIF_, from, true);
        tellTransportOfGraphChange();
        return true;
    }

    if (FXGraphViewNode* dest = node->getOutputNode(output)) {
        EasyBackup step(edit_);
        draggedIFIsInput_ = true;
        draggingIFNode_ = Zk::Ptr<FXGraphViewNode>(dest);
        draggedIF_ = dest->getInputFor(node.get(), output);
        EditGraphIterator it = getIteratorFor(dest->node(), kWiring);
        editor.disconnectNodes(it, draggedIF_, true);
        dest->clearInputLink(draggedIF_);
        node->eraseOutput(output);
        if (edit_)
            edit_->addModification(connectionsChanged(), true);
    } else {
        draggedIFIsInput_ = false;
        draggingIFNode_ = node;
        draggedIF_ = output;
    }
    const XY<int> p = pointerInView();
    lastMousePos_[0] = p.x;
    lastMousePos_[1] = p.y;
    enableETime();
    return true;
}

// A connection let go stays off the graph: picking it up took it off, as its own undo step. Only
// a link the editor made meanwhile at the fixed end is taken off here.
bool FXGraphView::removeDraggedIFConnection() {
    if (!draggingIFNode_)
        return false;
    Zk::Ptr<FXGraphViewNode> fixed = draggingIFNode_;
    disableETime();
    draggingIFNode_ = nullptr;

    FXGraphViewNode* owner = nullptr; // the node whose input holds the link
    int input = -1;
    if (draggedIFIsInput_) {
        if (fixed->getInputNode(draggedIF_)) {
            owner = fixed.get();
            input = draggedIF_;
        }
    } else if (FXGraphViewNode* dest = fixed->getOutputNode(draggedIF_)) {
        owner = dest;
        input = dest->getInputFor(fixed.get(), draggedIF_);
    }
    if (!owner) {
        refreshAfterLooseConnection();
        return true;
    }
    EasyBackup step(edit_);
    FXEditor editor = wiringEditor();
    EditGraphIterator it = getIteratorFor(owner->node(), kWiring);
    editor.disconnectNodes(it, input, true);
    if (edit_)
        edit_->addModification(connectionsChanged(), true);
    return true;
}

bool FXGraphView::destroyNode(int x, int y) {
    Zk::Ptr<FXGraphViewNode> hit;
    for (const auto& node : nodes_) {
        const XY<double> lb = graphToViewSpace(node->getLeft(), node->getBottom());
        const XY<double> rt = graphToViewSpace(node->getRight(), node->getTop());
        if (lb.x <= x && x <= rt.x && lb.y <= y && y <= rt.y) {
            hit = node;
            break;
        }
    }
    if (!hit)
        return false;
    if (dynamic_cast<MaterialUsageNode*>(hit->node().get()))
        return true; // a source clip stays in the graph
    EditGraphIterator it = getIteratorFor(hit->node(), kWiring);
    if (!it.isValid())
        return true;
    if (vob())
        vob()->makeBackup();
    FXEditor editor = wiringEditor();
    editor.destroyNode(it, true);
    return true;
}
