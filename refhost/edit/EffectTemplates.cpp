// The template catalogue of the reference host, and the template operations of the editor.
#include <algorithm>
#include <set>

#include "host/Edit.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/EffectTemplateManager.h"
#include "host/FXEditor.h"
#include "host/MaterialUsageNode.h"

unsigned EffectTemplate::getNumInputs(int inputType) const {
    if (inputType != 1)
        return 0;
    unsigned n = 0;
    for (const auto& c : components_)
        for (const auto& in : c->inputs())
            if (!in.node)
                ++n;
    return n;
}

Vector<Zk::Ptr<FXGraphNodeBase>> EffectTemplate::getComponents(int) const {
    Vector<Zk::Ptr<FXGraphNodeBase>> out;
    for (const auto& c : components_)
        out.append(c);
    return out;
}

namespace {

uint32_t gPrototypeId = 1;

Zk::Ptr<EffectInstance_opu4h5a4j> effect(const char* tag, const wchar_t* name, unsigned inputs,
                                         EditChanType type = kVideoChan) {
    auto fx = Zk::make<EffectInstance_opu4h5a4j>(IdStamp(0xFFFF, 0, gPrototypeId++));
    fx->setTagTypeId(tag);
    fx->setName(name);
    fx->setChanType(type);
    fx->setNumInputs(inputs);
    for (unsigned i = 0; i < inputs; ++i)
        fx->input(i).track = IdStamp(0, 1, 0xFFFF0000u + gPrototypeId++);
    return fx;
}

Zk::Ptr<EffectTemplate> single(const wchar_t* name, const char* tag, unsigned inputs,
                               EditChanType type = kVideoChan, bool stereo = false) {
    return Zk::make<EffectTemplate>(
        name, type, std::vector<Zk::Ptr<FXGraphNodeBase>>{effect(tag, name, inputs, type)}, stereo);
}

// Copies the template's components into the edit with fresh ids, keeping their links among
// themselves; returns the copies, head first.
std::vector<Zk::Ptr<FXGraphNodeBase>> instantiate(Edit& edit, const EffectTemplate& tmpl) {
    Vector<Zk::Ptr<FXGraphNodeBase>> protos = tmpl.getComponents(0);
    std::vector<Zk::Ptr<FXGraphNodeBase>> copies;
    for (const auto& p : protos) {
        auto* fx = dynamic_cast<EffectInstance_opu4h5a4j*>(p.get());
        auto copy = Zk::make<EffectInstance_opu4h5a4j>(edit.newId());
        copy->setTagTypeId(p->tagTypeId());
        copy->setName(p->getName());
        copy->setChanType(p->chanType());
        if (fx)
            for (const auto& [k, v] : fx->params())
                copy->setParam(k, v);
        copy->setNumInputs(p->getNumInputs());
        for (unsigned i = 0; i < p->getNumInputs(); ++i)
            copy->input(i).track = edit.newTrackId();
        copies.push_back(copy);
    }
    for (unsigned c = 0; c < protos.size(); ++c)
        for (unsigned i = 0; i < protos[c]->getNumInputs(); ++i)
            if (const auto& linked = protos[c]->input(i).node)
                for (unsigned k = 0; k < protos.size(); ++k)
                    if (protos[k] == linked)
                        copies[c]->input(i).node = copies[k];
    for (const auto& c : copies)
        edit.addNode(c);
    return copies;
}

// The node feeds the first open input of every component: a one-effect template takes it on
// its input 0, and a template of several effects, such as a glow, gives it to each of them.
void feedOpenInputs(const std::vector<Zk::Ptr<FXGraphNodeBase>>& copies,
                    const Zk::Ptr<FXGraphNodeBase>& node) {
    for (const auto& c : copies)
        for (auto& in : c->inputs())
            if (!in.node) {
                in.node = node;
                break;
            }
}

// Puts `head` wherever `old` was used: in other nodes' links and as the node of events.
void takePlace(Edit& edit, const Zk::Ptr<FXGraphNodeBase>& old, const Zk::Ptr<FXGraphNodeBase>& head,
               const std::set<const FXGraphNodeBase*>& skip) {
    for (const auto& [id, n] : edit.nodes()) {
        if (skip.count(n.get()))
            continue;
        for (auto& in : n->inputs())
            if (in.node == old) {
                in.node = head;
                n->noteChanged();
            }
    }
    for (int c = 0; c < edit.numChans(); ++c)
        for (auto& ev : edit.chan(c).cel->events())
            if (ev.node == old) {
                ev.node = head;
                ev.kind = CelEvent::Graph;
                ev.strip = Cookie(Cookie::EffectGraphKind, head->getId());
            }
}

// A time at which the node stands in a channel's graph, for the iterator of a result.
double timeOfNode(const Edit& edit, const FXGraphNodeBase* node, double preferred) {
    for (int c = 0; c < edit.numChans(); ++c)
        for (const auto& ev : edit.chan(c).cel->events()) {
            std::vector<const FXGraphNodeBase*> stack{ev.node.get()};
            std::set<const FXGraphNodeBase*> seen;
            while (!stack.empty()) {
                const FXGraphNodeBase* n = stack.back();
                stack.pop_back();
                if (!n || !seen.insert(n).second)
                    continue;
                if (n == node)
                    return preferred >= ev.start && preferred < ev.end ? preferred : ev.start;
                for (const auto& in : n->inputs())
                    stack.push_back(in.node.get());
            }
        }
    return preferred;
}

} // namespace

EffectTemplateManager::EffectTemplateManager() {
    add(single(L"Gaussian blur", "PixShader:Blur:gaussian.fx", 1));
    add(single(L"Colour correction", "PixShader:Colour:correct.fx", 1));
    add(single(L"Black and white", "PixShader:Colour:mono.fx", 1));
    add(single(L"Sepia", "PixShader:Colour:sepia.fx", 1));
    add(single(L"Vignette", "PixShader:Geometry:vignette.fx", 1));
    add(single(L"Crop", "PixShader:Geometry:crop.fx", 1));
    add(single(L"Picture in picture", "PixShader:Mix:pip.fx", 2));
    add(single(L"Key", "PixShader:Mix:key.fx", 2));
    add(single(L"Three-way mix", "PixShader:Mix:mix3.fx", 3));
    add(single(L"Dissolve", "Transition:Dissolve", 2));
    add(single(L"Wipe", "Transition:Wipe", 2));
    add(single(L"Flat colour matte", "PixShader:Mattes:flatcol.fx", 0));
    add(single(L"Linear gradient", "PixShader:Mattes:gradients:linear.fx", 0));
    add(single(L"Stereo convergence", "PixShader:Stereo:converge.fx", 1, kVideoChan, true));
    // A glow: the picture blurred, laid over itself.
    auto over = effect("PixShader:Mix:over.fx", L"Glow", 2);
    auto blur = effect("PixShader:Blur:gaussian.fx", L"Glow blur", 1);
    over->input(0).node = blur;
    add(Zk::make<EffectTemplate>(L"Soft glow", kVideoChan,
                                 std::vector<Zk::Ptr<FXGraphNodeBase>>{over, blur}));
    add(single(L"Equaliser", "Audio:Filter:eq", 1, kAudioChan));
    add(single(L"Compressor", "Audio:Dynamics:compressor", 1, kAudioChan));
    add(single(L"Gain", "Audio:Level:gain", 1, kAudioChan));
}

EffectTemplateManager& EffectTemplateManager::instance() {
    static EffectTemplateManager m;
    return m;
}

Zk::Ptr<EffectTemplate> EffectTemplateManager::find(const WString& name) const {
    for (const auto& t : templates_)
        if (t->getName() == name)
            return t;
    return nullptr;
}

FXEditor::RC FXEditor::applyEffectsTemplateToNode(const Zk::Ptr<EffectTemplate>& tmpl,
                                                  const Zk::Ptr<FXGraphNodeBase>& node) {
    RC rc;
    if (!tmpl || !node || !edit_ || !edit_->findNode(node->getId()) || tmpl->getComponents(0).empty())
        return rc;
    std::vector<Zk::Ptr<FXGraphNodeBase>> copies = instantiate(*edit_, *tmpl);
    std::set<const FXGraphNodeBase*> fresh;
    for (const auto& c : copies)
        fresh.insert(c.get());
    takePlace(*edit_, node, copies.front(), fresh);
    feedOpenInputs(copies, node);
    rc.mods.add(EditModification(kModEffectApplied, 0));
    rc.mods.add(EditModification(5));
    const double t = timeOfNode(*edit_, copies.front().get(), module_.regionStart());
    rc.iterator = getIteratorFor(edit_, copies.front()->getId(), t, 9);
    rc.ok = true;
    edit_->addModification(rc.mods, true);
    return rc;
}

FXEditor::RC FXEditor::autoApplyEffectsTemplate(const Zk::Ptr<EffectTemplate>& tmpl, const EditModule& module,
                                                int, int, void*) {
    RC rc;
    EditPtr edit = module.edit() ? module.edit() : edit_;
    if (!tmpl || !edit)
        return rc;
    edit_ = edit;
    int chan = edit->getIdx(module.chan());
    if (chan < 0 || edit->getChanType(chan) != tmpl->getType()) {
        chan = -1;
        for (int c = 0; c < edit->numChans() && chan < 0; ++c)
            if (edit->getChanType(c) == tmpl->getType())
                chan = c;
    }
    if (chan < 0)
        return rc;
    const double start = module.regionStart();
    int ev = edit->eventAt(chan, start);
    if (ev >= 0) {
        Zk::Ptr<FXGraphNodeBase> top = edit->chan(chan).cel->events()[static_cast<size_t>(ev)].node;
        return applyEffectsTemplateToNode(tmpl, top);
    }
    // Black there: the template stands alone as a new event over the region, cutting the black.
    double end = module.regionEnd() > start ? module.regionEnd() : start + 1.0;
    std::vector<Zk::Ptr<FXGraphNodeBase>> copies = instantiate(*edit, *tmpl);
    auto& events = edit->chan(chan).cel->events();
    std::vector<CelEvent> next;
    for (const CelEvent& e : events) {
        if (e.end <= start || e.start >= end) {
            next.push_back(e);
            continue;
        }
        if (e.kind != CelEvent::Black) { // the region stops at the first content after its start
            end = std::min(end, e.start);
            next.push_back(e);
            continue;
        }
        if (e.start < start) {
            CelEvent before = e;
            before.end = start;
            next.push_back(before);
        }
        if (e.end > end) {
            CelEvent after = e;
            after.start = end;
            next.push_back(after);
        }
    }
    CelEvent added;
    added.start = start;
    added.end = end;
    added.kind = CelEvent::Graph;
    added.node = copies.front();
    added.strip = Cookie(Cookie::EffectGraphKind, copies.front()->getId());
    next.push_back(added);
    std::sort(next.begin(), next.end(),
              [](const CelEvent& a, const CelEvent& b) { return a.start < b.start; });
    events = std::move(next);
    if (end > edit->getEndTime())
        edit->setTimes(edit->getStartTime(), end);
    rc.mods.add(EditModification(kModEffectApplied, 0));
    rc.mods.add(EditModification(kModStructure, 0));
    rc.iterator = getIteratorFor(edit, copies.front()->getId(), start, 9);
    rc.ok = true;
    // The new event cuts the black it stands on.
    edit->addModification(rc.mods, true, 0x8);
    return rc;
}

FXEditor::RC FXEditor::replaceTransitionEffect(CelEventPair& pair, const Zk::Ptr<EffectTemplate>& tmpl) {
    RC rc;
    if (!tmpl || !pair.valid() || !pair.edit())
        return rc;
    edit_ = pair.edit();
    Zk::Ptr<FXGraphNodeBase> old = pair.getEffectHandle();
    auto* transition = dynamic_cast<EffectInstance_opu4h5a4j*>(old.get());
    if (!transition || !transition->isTransition())
        return rc;
    std::vector<Zk::Ptr<FXGraphNodeBase>> copies = instantiate(*edit_, *tmpl);
    // The transition's inputs, in order, become the template's open inputs.
    unsigned next = 0;
    for (const auto& c : copies)
        for (auto& in : c->inputs())
            if (!in.node && next < old->getNumInputs()) {
                in.node = old->input(next).node;
                if (!in.node && old->input(next).track.valid())
                    in.track = old->input(next).track;
                ++next;
            }
    std::set<const FXGraphNodeBase*> fresh;
    for (const auto& c : copies)
        fresh.insert(c.get());
    takePlace(*edit_, old, copies.front(), fresh);
    for (auto& in : old->inputs())
        in.node = nullptr;
    edit_->removeNode(old->getId());
    rc.mods.add(EditModification(kModEffectApplied, 0));
    rc.mods.add(EditModification(kModNodesRemoved, 0));
    rc.iterator = getIteratorFor(edit_, copies.front()->getId(), pair.editTime(), 9);
    rc.ok = true;
    edit_->addModification(rc.mods, true);
    return rc;
}
