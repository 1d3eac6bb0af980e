// Transitions taken out of a channel's time line.
#include "host/TransitionsEditor.h"

#include "host/CelEventPair.h"
#include "host/Edit.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/MaterialUsageNode.h"
#include "host/Vob.h"
#include "host/VobManager.h"

namespace {

// What one side of a transition shows, as an event over [start, end).
CelEvent sideEvent(const Edit& edit, const FXGraphNodeBase::Input& in, double start, double end, double at) {
    CelEvent e;
    e.start = start;
    e.end = end;
    Zk::Ptr<FXGraphNodeBase> node = in.node;
    if (!node && in.track.valid()) {
        // An input fed by another channel shows what that channel shows there.
        const int chan = edit.getIdx(in.track);
        const int index = chan >= 0 ? edit.eventAt(chan, at) : -1;
        if (index >= 0) {
            const CelEvent& src = edit.chan(chan).cel->events()[static_cast<size_t>(index)];
            e.kind = src.kind;
            e.strip = src.strip;
            e.node = src.node;
            return e;
        }
    }
    if (!node)
        return e;
    e.node = node;
    if (auto* m = dynamic_cast<MaterialUsageNode*>(node.get())) {
        e.kind = CelEvent::Material;
        e.strip = m->material();
    } else {
        e.kind = CelEvent::Graph;
        e.strip = Cookie(Cookie::EffectGraphKind, node->getId());
    }
    return e;
}

} // namespace

bool TransitionsEditor::removeVideoTransition(int chan, double time) {
    EditPtr edit = vob_ ? vob_->edit() : EditPtr();
    if (!edit || chan < 0 || chan >= edit->numChans() || edit->getChanType(chan) != kVideoChan)
        return false;
    CelEventPair pair(edit, chan, time);
    if (!pair.valid())
        return false;
    Zk::Ptr<FXGraphNodeBase> root = pair.getEffectHandle();
    auto* transition = dynamic_cast<EffectInstance_opu4h5a4j*>(root.get());
    if (!transition || !transition->isTransition())
        return false;

    EasyBackup step(edit);
    const double start = pair.editTime(), end = pair.endEditTime(), mid = (start + end) * 0.5;
    FXGraphNodeBase::Input none;
    const auto& ins = transition->inputs();
    CelEvent out = sideEvent(*edit, ins.size() > 0 ? ins[0] : none, start, mid, start);
    CelEvent in = sideEvent(*edit, ins.size() > 1 ? ins[1] : none, mid, end, end);
    auto& events = edit->chan(chan).cel->events();
    const auto at = events.begin() + pair.eventIndex();
    *at = out;
    events.insert(at + 1, in);

    // The transition goes unless some other graph still uses it.
    bool used = false;
    for (const auto& [id, n] : edit->nodes())
        for (const auto& link : n->inputs())
            used = used || link.node == root;
    if (!used) {
        for (auto& link : root->inputs())
            link.node = nullptr;
        edit->removeNode(root->getId());
    }
    EditModifications mods{EditModification(kModStructure, 0)};
    mods.add(EditModification(kModNodesRemoved, 0));
    edit->addModification(mods, true);
    return true;
}
