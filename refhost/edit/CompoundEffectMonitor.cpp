// The monitor of the tracks and effect chain at a Vob's playhead.
#include "host/CompoundEffectMonitor.h"

#include <algorithm>
#include <cstring>
#include <set>

#include "host/CelEventPair.h"
#include "host/Edit.h"
#include "host/MaterialUsageNode.h"
#include "host/Vob.h"

namespace {

using Component = CompoundEffectMonitorClient::Component;

bool contains(const std::vector<IdStamp>& ids, const IdStamp& id) {
    return std::find(ids.begin(), ids.end(), id) != ids.end();
}

bool sameIds(const std::vector<Component>& a, const std::vector<Component>& b) {
    if (a.size() != b.size())
        return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (a[i]->getId() != b[i]->getId())
            return false;
    return true;
}

const Component* findById(const std::vector<Component>& list, const IdStamp& id) {
    for (const auto& c : list)
        if (c->getId() == id)
            return &c;
    return nullptr;
}

} // namespace

VobClient* Vob::findClient(const char* name) const {
    for (VobClient* c : clients_)
        if (name && std::strcmp(c->idString(), name) == 0)
            return c;
    return nullptr;
}

CompoundEffectMonitor::CompoundEffectMonitor(Vob* vob)
    : VobClient(vob ? vob->cookie() : Cookie(), vob, kHighPriority, kUnmanaged) {
    Snapshot s = read(IdStamp());
    tracks_ = s.tracks;
    track_ = s.track;
    flags_ = s.flags;
    components_ = s.components;
}

CompoundEffectMonitor::~CompoundEffectMonitor() = default;

CompoundEffectMonitor::Snapshot CompoundEffectMonitor::read(const IdStamp& wantedTrack) const {
    Snapshot s;
    EditPtr edit = getEdit();
    if (!edit || !vob())
        return s;
    double t = vob()->getCurrentTime(1);
    std::vector<IdStamp> groupsSeen;
    for (int c = 0; c < edit->numChans(); ++c) {
        const EditChannel& ch = edit->chan(c);
        if (edit->eventAt(c, t) < 0)
            continue;
        if (ch.type == kVideoChan) {
            s.tracks.push_back(ch.id);
            s.flags |= kHasVideo;
        } else if (ch.type == kAudioChan) {
            // One track stands for a stereo group: its first channel with something to play.
            if (ch.stereoGroup.valid()) {
                if (contains(groupsSeen, ch.stereoGroup))
                    continue;
                groupsSeen.push_back(ch.stereoGroup);
            }
            s.tracks.push_back(ch.id);
            s.flags |= kHasAudio;
        }
    }

    s.track = wantedTrack;
    if (!s.track.valid() || (!contains(s.tracks, s.track) && contains(tracks_, s.track))) {
        // The current track has gone: take the first track of the same kind, else the first.
        IdStamp fallback = s.tracks.empty() ? IdStamp() : s.tracks.front();
        EditChanType kind = s.track.valid() ? edit->getChanType(s.track) : kAnyChanType;
        for (const IdStamp& id : s.tracks)
            if (kind != kAnyChanType && edit->getChanType(id) == kind) {
                fallback = id;
                break;
            }
        s.track = fallback;
    }

    CelEventPair at(edit, s.track, t);
    Zk::Ptr<FXGraphNodeBase> node = at.getEffectHandle();
    std::set<const FXGraphNodeBase*> seen;
    while (node && seen.insert(node.get()).second) {
        auto fx = Zk::dynamicCast<EffectInstance_opu4h5a4j>(node);
        if (!fx)
            break;
        s.components.push_back(fx);
        node = fx->getNumInputs() > 0 ? fx->input(0).node : nullptr;
    }
    return s;
}

unsigned CompoundEffectMonitor::getNumComponents(unsigned type) const {
    unsigned n = 0;
    for (const auto& c : components_) {
        unsigned t = c->chanType() == kAudioChan ? kAudioComponent : kVideoComponent;
        if (type == kAnyComponent || type == t)
            ++n;
    }
    return n;
}

Zk::Ptr<EffectInstance_opu4h5a4j> CompoundEffectMonitor::getEffect(unsigned short index) const {
    return index < components_.size() ? components_[index] : nullptr;
}

void CompoundEffectMonitor::registerForChangeNotifications(CompoundEffectMonitorClient* client, bool add) {
    auto it = std::find(clients_.begin(), clients_.end(), client);
    if (add && client && it == clients_.end())
        clients_.push_back(client);
    if (!add && it != clients_.end())
        clients_.erase(it);
}

void CompoundEffectMonitor::setTrackID(const IdStamp& track) {
    apply(read(track), CompoundEffectMonitorClient::ChangeDescription());
}

void CompoundEffectMonitor::resync() {
    apply(read(track_), CompoundEffectMonitorClient::ChangeDescription());
}

void CompoundEffectMonitor::handleModifications(const EditModifications& mods,
                                                const VobModification& vobMod) {
    CompoundEffectMonitorClient::ChangeDescription desc;
    desc.flags = vobMod.flags;
    for (const auto& m : mods.list())
        if (m.type == kModEffectGraph || desc.modification.type == kModNone)
            desc.modification = m;
    desc.kind = desc.modification.detail;
    apply(read(track_), desc);
    VobClient::handleModifications(mods, vobMod);
}

void CompoundEffectMonitor::apply(Snapshot next, CompoundEffectMonitorClient::ChangeDescription desc) {
    desc.tracksChanged = next.tracks != tracks_;
    desc.oldTrack = track_;
    desc.newTrack = next.track;

    const std::vector<Component>& was = components_;
    const std::vector<Component>& now = next.components;
    for (const auto& c : was)
        if (!findById(now, c->getId()))
            desc.removed.push_back(c);
    for (const auto& c : now)
        if (!findById(was, c->getId()))
            desc.added.push_back(c);
    if (desc.removed.empty() && desc.added.empty() && !sameIds(was, now)) {
        std::vector<size_t> moved;
        for (size_t i = 0; i < now.size(); ++i)
            if (now[i]->getId() != was[i]->getId())
                moved.push_back(i);
        if (moved.size() == 2)
            desc.swapped.emplace_back(now[moved[0]], now[moved[1]]);
        else
            desc.changed = true;
    }
    // Components that stayed but are other objects (an undo brings back copies) or moved
    // round a removal.
    if (!desc.changed) {
        std::vector<IdStamp> keptWas, keptNow;
        for (const auto& c : was)
            if (const Component* n = findById(now, c->getId())) {
                keptWas.push_back(c->getId());
                if (n->get() != c.get())
                    desc.changed = true;
            }
        for (const auto& c : now)
            if (findById(was, c->getId()))
                keptNow.push_back(c->getId());
        if (desc.swapped.empty() && keptWas != keptNow)
            desc.changed = true;
    }

    tracks_ = std::move(next.tracks);
    track_ = next.track;
    flags_ = next.flags;
    components_ = std::move(next.components);

    // A client may leave (or be destroyed by another client) while it is being told.
    std::vector<CompoundEffectMonitorClient*> clients = clients_;
    auto stillThere = [this](CompoundEffectMonitorClient* c) {
        return std::find(clients_.begin(), clients_.end(), c) != clients_.end();
    };
    for (CompoundEffectMonitorClient* c : clients) {
        if (!stillThere(c))
            continue;
        for (const auto& r : desc.removed)
            if (stillThere(c))
                c->componentRemoved(r);
        for (const auto& a : desc.added)
            if (stillThere(c))
                c->componentAdded(a);
        for (const auto& [a, b] : desc.swapped)
            if (stillThere(c))
                c->componentSwapped(a, b);
        if (desc.changed && stillThere(c))
            c->resyncComponents();
        if (stillThere(c))
            c->handleCompoundEffectChanges(desc);
    }
}
