// The reference host's time line edits: each one an undo step that announces what it changed.
#include "refhost/edit/TimelineEditor.h"

#include <algorithm>
#include <set>

#include "host/Edit.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/FXEditor.h"
#include "host/MaterialUsageNode.h"
#include "host/Vob.h"
#include "host/VobManager.h"

namespace {

constexpr unsigned kCutsChanged = 0x8;

bool before(double a, double b) {
    return a < b && !valEqualsVal(a, b);
}

// The index of the event of `events` that starts at `time`, or -1.
int eventStartingAt(const std::vector<CelEvent>& events, double time) {
    for (size_t i = 0; i < events.size(); ++i)
        if (valEqualsVal(events[i].start, time))
            return static_cast<int>(i);
    return -1;
}

void collectBelow(const FXGraphNodeBase* top, std::set<const FXGraphNodeBase*>& into) {
    std::vector<const FXGraphNodeBase*> stack{top};
    while (!stack.empty()) {
        const FXGraphNodeBase* n = stack.back();
        stack.pop_back();
        if (!n || !into.insert(n).second)
            continue;
        for (const auto& in : n->inputs())
            stack.push_back(in.node.get());
    }
}

} // namespace

TimelineEditor::TimelineEditor(Vob* vob) : vob_(vob) {}

EditPtr TimelineEditor::edit() const {
    return vob_ ? vob_->edit() : EditPtr();
}

bool TimelineEditor::cutLimits(int chan, double cutTime, NumRange<double>& limits) const {
    EditPtr e = edit();
    if (!e || chan < 0 || chan >= e->numChans())
        return false;
    const auto& events = e->chan(chan).cel->events();
    const int i = eventStartingAt(events, cutTime);
    if (i < 0)
        return false;
    const CelEvent& at = events[static_cast<size_t>(i)];
    double lo = e->getStartTime();
    if (i > 0) {
        const CelEvent& prev = events[static_cast<size_t>(i) - 1];
        lo = valEqualsVal(prev.end, at.start) ? prev.start : prev.end;
    }
    limits = NumRange<double>(lo, at.end);
    return true;
}

bool TimelineEditor::moveCut(int chan, double cutTime, double newTime) {
    NumRange<double> limits;
    if (!cutLimits(chan, cutTime, limits) || !before(limits.lo, newTime) || !before(newTime, limits.hi) ||
        valEqualsVal(newTime, cutTime))
        return false;
    EditPtr e = edit();
    EasyBackup step(e);
    auto& events = e->chan(chan).cel->events();
    const size_t i = static_cast<size_t>(eventStartingAt(events, cutTime));
    if (i > 0 && valEqualsVal(events[i - 1].end, events[i].start))
        events[i - 1].end = newTime;
    events[i].start = newTime;
    e->setDirty(true);
    e->addModification(EditModifications(EditModification(kModStructure, 0)), true, kCutsChanged);
    return true;
}

bool TimelineEditor::addCel(int chan, double start, double end, const Cookie& material) {
    EditPtr e = edit();
    if (!e || chan < 0 || chan >= e->numChans() || e->getChanType(chan) != kVideoChan || !before(start, end))
        return false;
    const EditMaterial* mat = e->findMaterial(material);
    if (!mat)
        return false;
    EasyBackup step(e);
    auto node = Zk::make<MaterialUsageNode>(e->newId(), material);
    node->setSource(mat->source);
    node->setFile(mat->file);
    node->setName(mat->name);
    e->addNode(node);

    auto& events = e->chan(chan).cel->events();
    std::vector<CelEvent> next;
    for (const CelEvent& ev : events) {
        if (!before(start, ev.end) || !before(ev.start, end)) {
            next.push_back(ev);
            continue;
        }
        if (before(ev.start, start)) {
            CelEvent head = ev;
            head.end = start;
            next.push_back(head);
        }
        if (before(end, ev.end)) {
            CelEvent tail = ev;
            tail.start = end;
            next.push_back(tail);
        }
    }
    CelEvent added;
    added.start = start;
    added.end = end;
    added.kind = CelEvent::Material;
    added.strip = material;
    added.node = node;
    next.push_back(added);
    std::stable_sort(next.begin(), next.end(),
                     [](const CelEvent& a, const CelEvent& b) { return a.start < b.start; });
    events = std::move(next);
    if (end > e->getEndTime())
        e->setTimes(e->getStartTime(), end);
    e->setDirty(true);
    e->addModification(EditModifications(EditModification(kModStructure, 0)), true, kCutsChanged);
    return true;
}

bool TimelineEditor::removeCel(int chan, int eventIndex) {
    EditPtr e = edit();
    if (!e || chan < 0 || chan >= e->numChans())
        return false;
    auto& events = e->chan(chan).cel->events();
    if (eventIndex < 0 || static_cast<size_t>(eventIndex) >= events.size())
        return false;
    const CelEvent gone = events[static_cast<size_t>(eventIndex)];
    if (gone.kind == CelEvent::Black)
        return false;
    EasyBackup step(e);
    events.erase(events.begin() + eventIndex);

    // The nodes below the lifted event that no other event reaches leave with it.
    std::set<const FXGraphNodeBase*> below, kept;
    collectBelow(gone.node.get(), below);
    for (int c = 0; c < e->numChans(); ++c)
        for (const CelEvent& ev : e->chan(c).cel->events())
            collectBelow(ev.node.get(), kept);
    std::vector<IdStamp> drop;
    for (const FXGraphNodeBase* n : below)
        if (!kept.count(n))
            drop.push_back(n->getId());
    for (const IdStamp& id : drop)
        e->removeNode(id);

    EditModifications mods(EditModification(kModStructure, 0));
    if (gone.kind == CelEvent::Graph && !drop.empty())
        mods.add(EditModification(kModNodesRemoved, 0));
    e->setDirty(true);
    e->addModification(mods, true, kCutsChanged);
    return true;
}

bool TimelineEditor::removeEffect(const IdStamp& node) {
    EditPtr e = edit();
    if (!e || !vob_)
        return false;
    EditGraphIterator it = FXEditor::getIteratorFor(e, node, vob_->getCurrentTime(1), 9);
    if (!it.isValid() || !Zk::dynamicCast<EffectInstance_opu4h5a4j>(it.getNode(-1)))
        return false;
    EasyBackup step(e);
    if (!FXEditor::destroyNode(it, true))
        return false;
    e->setDirty(true);
    return true;
}

bool TimelineEditor::setParam(const IdStamp& node, const std::string& name, double value) {
    EditPtr e = edit();
    auto fx = e ? Zk::dynamicCast<EffectInstance_opu4h5a4j>(e->findNode(node)) : nullptr;
    if (!fx || name.empty())
        return false;
    EasyBackup step(e);
    fx->setParam(name, value);
    e->setDirty(true);
    e->addModification(EditModifications(EditModification(4)), true);
    return true;
}

bool TimelineEditor::setEnabled(const IdStamp& node, bool enabled) {
    EditPtr e = edit();
    auto fx = e ? Zk::dynamicCast<EffectInstance_opu4h5a4j>(e->findNode(node)) : nullptr;
    if (!fx || fx->isEnabled() == enabled)
        return false;
    EasyBackup step(e);
    fx->startBatchChange(EffectModification(EffectModification::wholeNode(), IdStamp(0, 0, 0), 1,
                                            EffectModification::kTypeProperty));
    fx->setEnabled(enabled);
    fx->endBatchChange();
    e->setDirty(true);
    e->addModification(EditModifications(EditModification(11)), true);
    return true;
}

bool TimelineEditor::rename(const IdStamp& node, const WString& name) {
    EditPtr e = edit();
    Zk::Ptr<FXGraphNodeBase> n = e ? e->findNode(node) : nullptr;
    if (!n || n->getName() == name)
        return false;
    EasyBackup step(e);
    n->setName(name);
    n->noteChanged();
    e->setDirty(true);
    e->addModification(EditModifications(EditModification(4)), true);
    return true;
}

bool TimelineEditor::renameChannel(int chan, const WString& name) {
    EditPtr e = edit();
    if (!e || chan < 0 || chan >= e->numChans() || e->chan(chan).name == name)
        return false;
    EasyBackup step(e);
    e->chan(chan).name = name;
    e->setDirty(true);
    e->addModification(EditModifications(EditModification(kModNames, 0)), true);
    return true;
}

bool TimelineEditor::undo() {
    return vob_ && vob_->undoRequest();
}

bool TimelineEditor::redo() {
    return vob_ && vob_->redoRequest();
}
