// Changes to effect graphs, with the reference host's refusal rules.
#include "host/FXEditor.h"

#include <algorithm>
#include <map>
#include <set>
#include <unordered_set>

#include "host/Edit.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/MaterialUsageNode.h"
#include "host/TransitStatus.h"
#include "host/UserMessages.h"
#include "host/Vob.h"
#include "host/VobManager.h"

namespace {

// True if `target` can be reached from `from` over inputs at the iterator's time.
bool reaches(const EditGraphIterator& from, const FXGraphNodeBase* target) {
    Vector<Zk::Ptr<FXGraphNodeBase>> below;
    from.findAllComponents(below);
    for (const auto& n : below)
        if (n.get() == target)
            return true;
    return false;
}

// One node of each ring of `nodes` that no node outside the ring feeds, the ring's lowest id.
// `nodes` is closed under inputs. A depth-first walk over inputs finishes a ring that feeds
// another after it, so taking unclaimed nodes by latest finish meets each top ring first.
std::vector<const FXGraphNodeBase*> topRingsOf(const std::vector<const FXGraphNodeBase*>& nodes) {
    std::set<const FXGraphNodeBase*> visited;
    std::vector<const FXGraphNodeBase*> finished;
    for (const FXGraphNodeBase* start : nodes) {
        if (!visited.insert(start).second)
            continue;
        std::vector<std::pair<const FXGraphNodeBase*, size_t>> stack{{start, 0}};
        while (!stack.empty()) {
            auto& [n, next] = stack.back();
            if (next < n->inputs().size()) {
                const FXGraphNodeBase* in = n->inputs()[next++].node.get();
                if (in && visited.insert(in).second)
                    stack.push_back({in, 0});
                continue;
            }
            finished.push_back(n);
            stack.pop_back();
        }
    }
    // Who feeds whom, backwards, to find the members of a ring: those below its top that reach
    // back up to it.
    std::map<const FXGraphNodeBase*, std::vector<const FXGraphNodeBase*>> feeders;
    for (const FXGraphNodeBase* n : nodes)
        for (const auto& in : n->inputs())
            if (in.node)
                feeders[in.node.get()].push_back(n);
    std::set<const FXGraphNodeBase*> claimed;
    std::vector<const FXGraphNodeBase*> tops;
    for (auto it = finished.rbegin(); it != finished.rend(); ++it) {
        if (claimed.count(*it))
            continue;
        std::set<const FXGraphNodeBase*> below;
        std::vector<const FXGraphNodeBase*> stack{*it};
        while (!stack.empty()) {
            const FXGraphNodeBase* n = stack.back();
            stack.pop_back();
            if (!below.insert(n).second)
                continue;
            for (const auto& in : n->inputs())
                if (in.node && !claimed.count(in.node.get()))
                    stack.push_back(in.node.get());
        }
        const FXGraphNodeBase* lowest = *it;
        std::set<const FXGraphNodeBase*> ring;
        stack.assign(1, *it);
        while (!stack.empty()) {
            const FXGraphNodeBase* n = stack.back();
            stack.pop_back();
            if (!below.count(n) || !ring.insert(n).second)
                continue;
            if (n->getId().compare(lowest->getId()) < 0)
                lowest = n;
            for (const FXGraphNodeBase* f : feeders[n])
                stack.push_back(f);
        }
        tops.push_back(lowest);
        claimed.insert(below.begin(), below.end());
    }
    return tops;
}

// A rewiring while the transport runs: it must read the graph again.
void tellTransport() {
    if (TransitStatus::manager().speed() != 0)
        TransitStatus::manager().graphChanged();
}

// An edit is read-only while any Vob shows it so.
bool readOnly(const EditPtr& edit) {
    if (!edit)
        return false;
    for (const Zk::Ptr<Vob>& v : VobManager::instance().vobs())
        if (v->edit() == edit && v->isReadOnly())
            return true;
    return false;
}

} // namespace

FXEditor::FXEditor(const EditPtr& edit) : edit_(edit) {}
FXEditor::FXEditor(const EditModule& module) : edit_(module.edit()), module_(module) {}
FXEditor::FXEditor(const EditPtr& edit, const EditModule& module, int chanIndex)
    : edit_(edit), module_(module), chanIndex_(chanIndex) {}

EditGraphIterator FXEditor::getIteratorFor(const EditPtr& edit, const IdStamp& id, double time, int options) {
    if (!edit || !id.valid())
        return EditGraphIterator(options);
    if (edit->getIdx(id) >= 0)
        return EditGraphIterator(edit, id, time, options);
    EditGraphIterator it(options);
    it.edit_ = edit;
    it.time_ = time;
    it.search(id, EditGraphIterator::searchWholeEdit);
    return it;
}

EditGraphIterator FXEditor::getIteratorFor(const EditPtr& edit, const FXGraphNodeBase* node, double time,
                                           int options) {
    if (!node)
        return EditGraphIterator(options);
    return getIteratorFor(edit, node->getId(), time, options);
}

EditGraphIterator FXEditor::getIteratorFor(const EditGraphIteratorState& state) {
    if (state.path.empty())
        return EditGraphIterator(state.options);
    // Replay the stored path from its channel; fall back to a search for its last node.
    if (state.rootChan.valid()) {
        EditGraphIterator it(state.edit, state.rootChan, state.time, state.options);
        bool ok = it.isValid() && it.getNodeId(0) == state.path.front();
        for (size_t step = 1; ok && step < state.path.size(); ++step) {
            ok = false;
            Zk::Ptr<FXGraphNodeBase> n = it.getNode(-1);
            for (unsigned i = 0; n && i < n->getNumInputs() && !ok; ++i) {
                if (it.moveToInput(i)) {
                    if (it.getNodeId(-1) == state.path[step])
                        ok = true;
                    else
                        it.moveBack();
                }
            }
        }
        if (ok)
            return it;
    }
    return getIteratorFor(state.edit, state.path.back(), state.time, state.options);
}

void FXEditor::findOrphanedComponents(EditPtr edit, double, std::vector<IdStamp>& out) {
    if (!edit)
        return;
    // Everything that any event of any channel reaches by links is in use.
    std::unordered_set<const FXGraphNodeBase*> used;
    used.reserve(edit->nodes().size());
    auto markFrom = [&](const FXGraphNodeBase* start) {
        std::vector<const FXGraphNodeBase*> stack{start};
        while (!stack.empty()) {
            const FXGraphNodeBase* n = stack.back();
            stack.pop_back();
            if (!n || !used.insert(n).second)
                continue;
            for (const auto& in : n->inputs())
                if (in.node)
                    stack.push_back(in.node.get());
        }
    };
    for (int c = 0; c < edit->numChans(); ++c)
        for (const auto& ev : edit->chan(c).cel->events())
            markFrom(ev.node.get());

    // The tops of the rest: orphans that no other orphan takes as an input.
    std::unordered_set<const FXGraphNodeBase*> fed;
    for (const auto& [id, n] : edit->nodes())
        if (!used.count(n.get()))
            for (const auto& in : n->inputs())
                if (in.node && in.node.get() != n.get())
                    fed.insert(in.node.get());
    for (const auto& [id, n] : edit->nodes()) {
        if (used.count(n.get()) || fed.count(n.get()))
            continue;
        out.push_back(id);
        markFrom(n.get());
    }
    // What is left hangs from rings of nodes that feed each other, and has no top. A ring that
    // no other leftover feeds stands for everything below it, by its lowest id.
    const size_t firstRing = out.size();
    std::vector<const FXGraphNodeBase*> rest;
    for (const auto& [id, n] : edit->nodes())
        if (!used.count(n.get()))
            rest.push_back(n.get());
    for (const FXGraphNodeBase* top : topRingsOf(rest)) {
        out.push_back(top->getId());
        markFrom(top);
    }
    std::sort(out.begin() + static_cast<std::ptrdiff_t>(firstRing), out.end(),
              [](const IdStamp& l, const IdStamp& r) { return l.compare(r) < 0; });
}

bool FXEditor::destroyNode(EditGraphIterator& it, bool announce) {
    Zk::Ptr<FXGraphNodeBase> node = it.getNode(-1);
    // A node inside a compound effect lies in its inner edit; the change is told through the
    // edit the walk started in.
    EditPtr edit = it.getCurrentPosEdit();
    if (!node || !edit || isPlainMaterial(node.get()))
        return false;
    if (readOnly(it.getEditH()) || readOnly(edit)) {
        if (announce)
            makeMessage(UIString(RefusedReadOnly));
        return false;
    }
    for (const auto& [id, n] : edit->nodes())
        for (auto& in : n->inputs())
            if (in.node == node) {
                in.node = nullptr;
                n->noteChanged();
            }
    Zk::Ptr<FXGraphNodeBase> successor;
    if (node->getNumInputs() > 0)
        successor = node->input(0).node;
    for (int c = 0; c < edit->numChans(); ++c) {
        for (auto& ev : edit->chan(c).cel->events()) {
            if (ev.node != node)
                continue;
            if (auto* mat = dynamic_cast<MaterialUsageNode*>(successor.get())) {
                ev.kind = CelEvent::Material;
                ev.strip = mat->material();
                ev.node = successor;
            } else if (successor) {
                ev.node = successor;
            } else {
                ev.kind = CelEvent::Black;
                ev.strip = Cookie();
                ev.node = nullptr;
            }
        }
    }
    edit->removeNode(node->getId());
    it.moveBack();
    it.getEditH()->addModification(EditModifications(EditModification(kModNodesRemoved, 0)), announce);
    return true;
}

FXEditor::eRefusal FXEditor::connectionRefusal(const EditGraphIterator& to, size_t input,
                                               const EditGraphIterator& from) const {
    Zk::Ptr<FXGraphNodeBase> dst = to.getNode(-1);
    Zk::Ptr<FXGraphNodeBase> src = from.getNode(-1);
    if (!dst || !src)
        return RefusedNotAnEffect;
    if (readOnly(edit_) || readOnly(to.getEditH()))
        return RefusedReadOnly;
    if (dst == src)
        return RefusedLoop;
    auto* effect = dynamic_cast<EffectInstance_opu4h5a4j*>(dst.get());
    if (!effect)
        return RefusedNotAnEffect;
    // A transition takes the two cels beside its cut; its inputs are not the user's to wire.
    if (!effect->inputsOpenToWiring())
        return RefusedTransition;
    if (input >= dst->getNumInputs())
        return RefusedNoSuchInput;
    if (dst->chanType() != src->chanType())
        return RefusedMediaType;
    // The new link would close a ring if the destination already feeds the source.
    return reaches(from, dst.get()) ? RefusedLoop : RefusedNone;
}

bool FXEditor::canConnectNodes(const EditGraphIterator& to, size_t input,
                               const EditGraphIterator& from) const {
    return connectionRefusal(to, input, from) == RefusedNone;
}

bool FXEditor::connectNodes(EditGraphIterator& to, int input, const EditGraphIterator& from, bool announce) {
    if (!edit_)
        return false;
    const eRefusal refusal =
        input < 0 ? RefusedNoSuchInput : connectionRefusal(to, static_cast<size_t>(input), from);
    if (refusal != RefusedNone) {
        if (announce)
            makeMessage(UIString(refusal));
        return false;
    }
    Zk::Ptr<FXGraphNodeBase> dst = to.getNode(-1);
    FXGraphNodeBase::Input& in = dst->input(static_cast<unsigned>(input));
    in.node = from.getNode(-1);
    // A link travels on an internal track; a channel's track gives its place to one.
    if (!in.track.valid() || edit_->getIdx(in.track) >= 0)
        in.track = edit_->newTrackId();
    dst->noteChanged();
    tellTransport();
    edit_->addModification(EditModifications(EditModification(5)), announce);
    return true;
}

bool FXEditor::disconnectNodes(EditGraphIterator& to, int input, bool announce) {
    Zk::Ptr<FXGraphNodeBase> dst = to.getNode(-1);
    if (!dst || input < 0 || static_cast<unsigned>(input) >= dst->getNumInputs())
        return false;
    if (readOnly(edit_) || readOnly(to.getEditH())) {
        if (announce)
            makeMessage(UIString(RefusedReadOnly));
        return false;
    }
    FXGraphNodeBase::Input& in = dst->input(static_cast<unsigned>(input));
    const bool fromChannel = in.track.valid() && edit_ && edit_->getIdx(in.track) >= 0;
    if (!in.node && !fromChannel)
        return false;
    // The slot keeps a track of its own, so the layout keeps its place open.
    in.node = nullptr;
    if (fromChannel)
        in.track = edit_->newTrackId();
    dst->noteChanged();
    tellTransport();
    if (edit_)
        edit_->addModification(EditModifications(EditModification(5)), announce);
    return true;
}

NumRange<double> FXEditor::getRegionForNewEffect(const EditModule& module, bool, int) {
    return NumRange<double>(module.regionStart(), module.regionEnd());
}

bool FXEditor::cycleInputs(EditGraphIterator& it, bool announce) {
    Zk::Ptr<FXGraphNodeBase> n = it.getNode(-1);
    if (!n || n->getNumInputs() < 2)
        return false;
    auto& ins = n->inputs();
    FXGraphNodeBase::Input first = ins.front();
    for (size_t i = 0; i + 1 < ins.size(); ++i) {
        ins[i].node = ins[i + 1].node;
        ins[i].track = ins[i + 1].track;
    }
    ins.back().node = first.node;
    ins.back().track = first.track;
    n->noteChanged();
    tellTransport();
    if (edit_)
        edit_->addModification(EditModifications(EditModification(5)), announce);
    return true;
}
