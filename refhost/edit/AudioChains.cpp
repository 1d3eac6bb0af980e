// Effect chains passed round by their links: track inputs set by id, and what an event plays.
#include <utility>
#include <vector>

#include "host/CelEventPair.h"
#include "host/Edit.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/VobManager.h"
#include "host/ce_handle.h"
#include "refhost/edit/OwningEdit.h"

namespace {

bool isInternalTrack(const IdStamp& id) {
    return id.a() == 0 && id.b() == 1;
}

// Internal tracks let go during the present series of link changes, with what they carried.
std::vector<std::pair<IdStamp, Zk::Ptr<FXGraphNodeBase>>>& releasedTracks() {
    static std::vector<std::pair<IdStamp, Zk::Ptr<FXGraphNodeBase>>> released;
    return released;
}

Zk::Ptr<FXGraphNodeBase> nodeCarriedBy(const Edit& edit, const IdStamp& track) {
    for (const auto& [id, node] : edit.nodes())
        for (const auto& in : node->inputs())
            if (in.track == track && in.node)
                return in.node;
    for (const auto& [id, node] : releasedTracks())
        if (id == track)
            return node;
    return nullptr;
}

} // namespace

void EffectInstance_opu4h5a4j::setInputTrackId(uint16_t k, const IdStamp& track, bool lastOfSeries) {
    if (k < inputs_.size()) {
        Input& slot = inputs_[k];
        EditPtr edit = refhost::owningEdit(this);
        Input next;
        next.ghost = slot.ghost;
        if (!track.valid()) {
            // An open slot.
        } else if (edit && edit->findNode(track)) {
            next.node = edit->findNode(track);
            next.track = edit->newTrackId();
        } else if (edit && isInternalTrack(track)) {
            next.node = nodeCarriedBy(*edit, track);
            next.track = track;
        } else {
            next.track = track;
        }
        if (isInternalTrack(slot.track) && slot.node && slot.track != next.track)
            releasedTracks().emplace_back(slot.track, slot.node);
        slot = next;
        noteChanged();
    }
    if (lastOfSeries)
        releasedTracks().clear();
}

bool CelEventPair::isBlack() const {
    return !valid_ || edit_->chan(chan_).cel->events()[static_cast<size_t>(index_)].kind == CelEvent::Black;
}

bool CelEventPair::isEffect() const {
    return valid_ && edit_->chan(chan_).cel->events()[static_cast<size_t>(index_)].kind == CelEvent::Graph;
}

ce_handle CelEventPair::inH() const {
    return valid_ ? ce_handle(edit_, chan_, index_) : ce_handle();
}

bool ce_handle::valid() const {
    return edit_ && chan_ >= 0 && chan_ < edit_->numChans() && index_ >= 0 &&
           index_ < static_cast<int>(edit_->chan(chan_).cel->events().size());
}

bool ce_handle::setEffectGraph(const IdStamp& root) {
    if (!valid())
        return false;
    Zk::Ptr<FXGraphNodeBase> node = edit_->findNode(root);
    if (!node)
        return false;
    CelEvent& ev = edit_->chan(chan_).cel->events()[static_cast<size_t>(index_)];
    if (ev.kind != CelEvent::Graph || !ev.strip.isEffectGraph())
        ev.strip = Cookie(Cookie::EffectGraphKind, edit_->newId());
    ev.kind = CelEvent::Graph;
    ev.node = node;
    return true;
}
