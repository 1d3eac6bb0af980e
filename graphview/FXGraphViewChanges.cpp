// Change tracking: for each notice from the edit, the playhead, the node records and the project,
// the lightest refresh that is right (nothing, names, stills, a repaint or a rebuild), heaviest
// rules tested first.
#include <cmath>

#include "graphview/FXGraphView.h"
#include "host/TransitStatus.h"
#include "host/Vob.h"

namespace {

constexpr double kNoTime = 1e99;
// Modification types after which the graph may be a different one: a structural change, an
// applied template, undo or redo, destroyed nodes, a reload, the channel list.
constexpr EditModificationType kRebuildTypes[] = {
    kModStructure, kModEffectApplied, kModRestored, kModNodesRemoved, kModReloaded, kModChannels, kModNone};
// The magnitude of transport speed from which the graph is no longer followed.
constexpr int kFastSpeed = 1024;
// Playing or shuttling: no stills while the transport moves the playhead.
constexpr unsigned kTransportMoving = 0x14;

} // namespace

const char* FXGraphView::refreshName(Refresh r) {
    switch (r) {
    case Refresh::Nothing:
        return "nothing";
    case Refresh::Names:
        return "names";
    case Refresh::Stills:
        return "stills";
    case Refresh::Repaint:
        return "repaint";
    case Refresh::Rebuild:
        return "rebuild";
    }
    return "nothing";
}

void FXGraphView::noteRefresh(Refresh r) {
    lastRefresh_ = r;
    ++refreshCounts_[static_cast<int>(r)];
    if (refreshListener_)
        refreshListener_(r);
}

void FXGraphView::handleModifications(const EditModifications& mods, const VobModification& vobMod) {
    // A view whose Vob has closed, or that shows no edit, has nothing to follow.
    if (!vob() || !edit_) {
        VobClient::handleModifications(mods, vobMod);
        noteRefresh(Refresh::Nothing);
        return;
    }
    Refresh done = Refresh::Nothing;
    if (!mods.empty() && mods.includesAnyOf(kRebuildTypes)) {
        morphologyStart_ = morphologyEnd_ = kNoTime;
        recalcNodeList(false);
        if (manualPosMode_.getVal())
            checkForCoincidentNodes();
        calcMorphologyExtents(vob()->getCurrentTime(1));
        ensureNodeListVisible(getAllNodes(), RefitIfTooBig);
        update();
        done = Refresh::Rebuild;
    } else if (!mods.empty() && mods.includes(kModEffectGraph, 5)) {
        recalcNodeList(false);
        update();
        done = Refresh::Rebuild;
    } else if (!mods.empty() && mods.includes(kModEffectGraph, 11)) {
        update();
        done = Refresh::Repaint;
    } else if (!mods.empty() && (mods.includes(kModNames, 0) || mods.includes(kModEffectGraph, 4))) {
        drawNodeNames();
        done = Refresh::Names;
    } else if (vobMod.flags & 0x8000) {
        NodeUIManagerClient::registerWith(nullptr);
    } else if (vobMod.flags & 0x20) {
        setEditFocus(vob(), primaryChan_, true);
        done = Refresh::Rebuild;
    } else if (vobMod.flags & 0x8) {
        if (vob()->anyUnjoinedCuts()) {
            morphologyStart_ = morphologyEnd_ = kNoTime;
            recalcNodeList(true);
            done = Refresh::Rebuild;
        }
    } else if (vobMod.flags & 0x2) {
        const bool fast = vob()->isRecording() && std::abs(TransitStatus::manager().speed()) >= kFastSpeed;
        if (!fast) {
            const double t = vobMod.time;
            // The end of the span belongs to the next span.
            const bool inside = morphologyStart_ != kNoTime && morphologyEnd_ != kNoTime &&
                                morphologyStart_ <= t && t <= morphologyEnd_ &&
                                !(std::fabs(t - morphologyEnd_) < 1e-6);
            if (inside) {
                if (!(vob()->stateWord() & kTransportMoving)) {
                    drawStills();
                    done = Refresh::Stills;
                }
            } else {
                recalcNodeList(false);
                if (manualPosMode_.getVal())
                    checkForCoincidentNodes();
                calcMorphologyExtents(t);
                resetView(RedrawAlways, RefitIfTooBigAndCentre);
                done = Refresh::Rebuild;
            }
        }
    }
    noteRefresh(done);
    VobClient::handleModifications(mods, vobMod);
}

int FXGraphView::handleProjectStateChange(const NotifierEvent<Zk::CurrentProject::ChangeDescription>& event) {
    if (event.value.flags & Zk::CurrentProject::kLookChanged) {
        draw();
        noteRefresh(Refresh::Repaint);
    } else if (event.value.flags & Zk::CurrentProject::kPicturesChanged) {
        drawStills();
        noteRefresh(Refresh::Stills);
    } else {
        noteRefresh(Refresh::Nothing);
    }
    return 0;
}

void FXGraphView::newNodeRecNotify(NodeUIRecBase*) {
    recalcNodeList(true);
    noteRefresh(Refresh::Rebuild);
}

// The removal comes with the edit's own change; the list follows from there.
void FXGraphView::nodeRecDeletedNotify(NodeUIRecBase*) {}

void FXGraphView::generalUpdateNotify(LightweightString<char> message) {
    if (message == "GroupUpdateMsg") {
        draw();
        noteRefresh(Refresh::Repaint);
    }
}

void FXGraphView::notifyValChanged(const ValObserverBase&) {
    updateScrollbars(true);
}
