// The menu of one component of an effect graph: switching, removing, parameters.
#include "host/EffectMenuItems.h"

#include "host/AudioPlugIns.h"
#include "host/CelEventPair.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/EventHandler.h"
#include "host/FXEditor.h"
#include "host/MaterialUsageNode.h"
#include "host/PlugInUIAdaptorFactory.h"
#include "host/Vob.h"
#include "host/VobClient.h"
#include "refhost/edit/OwningEdit.h"
#include "refhost/notify/FunctionCallback.h"

namespace {

using refhost::makeCallback;

MenuItem item(const wchar_t* label, std::function<int(const NotifyMsg&)> f, bool active = true) {
    return MenuItem(UIString(label), WidgetCallback(makeCallback(std::move(f))), active);
}

// An item that sends its command to the tool that serves the Vob.
MenuItem message(const wchar_t* label, const String& text, EventHandler* tool, bool active = true) {
    return MenuItem(UIString(label), WidgetCallback(text, tool), active);
}

EventHandler* toolFor(Vob* vob) {
    return dynamic_cast<EventHandler*>(vob->findClient(EffectMenuItems::kToolName));
}

// Takes an effect out of its chain: whatever read from it reads from its input 0 instead.
bool removeFromChain(const EditPtr& edit, const Zk::Ptr<FXGraphNodeBase>& node, double time) {
    Zk::Ptr<FXGraphNodeBase> below = node->getNumInputs() > 0 ? node->input(0).node : nullptr;
    for (const auto& [id, n] : edit->nodes())
        for (auto& in : n->inputs())
            if (in.node == node && below) {
                in.node = below;
                n->noteChanged();
            }
    EditGraphIterator it = FXEditor::getIteratorFor(edit, node.get(), time, 9);
    return it.isValid() && FXEditor::destroyNode(it, true);
}

int switchEffect(const EditPtr& edit, const IdStamp& id) {
    auto e = Zk::dynamicCast<EffectInstance_opu4h5a4j>(edit->findNode(id));
    if (!e)
        return 0;
    EasyBackup step(edit);
    e->startBatchChange(EffectModification(EffectModification::wholeNode(), IdStamp(0, 0, 0), 1,
                                           EffectModification::kTypeProperty));
    e->setEnabled(!e->isEnabled());
    e->endBatchChange();
    edit->addModification(EditModifications(EditModification(11)), true);
    return 1;
}

} // namespace

std::vector<MenuItem> EffectMenuItems::toolItems(Vob* vob, const EditGraphIterator& at, unsigned flags,
                                                 EventHandler* tool) {
    std::vector<MenuItem> items;
    Zk::Ptr<FXGraphNodeBase> node = at.getNode(-1);
    EditPtr edit = at.getEditH();
    const IdStamp id = node->getId();
    auto fx = Zk::dynamicCast<EffectInstance_opu4h5a4j>(node);
    const String position = at.getState().asString();
    auto command = [&](const char* prefix, const char* word) {
        return String(prefix) + word + " " + position;
    };

    if (fx && (flags & kEnable))
        items.push_back(item(fx->isEnabled() ? L"Switch off" : L"Switch on",
                             [edit, id](const NotifyMsg&) { return switchEffect(edit, id); }));
    if (fx && (flags & kParameters))
        items.push_back(message(L"Parameters..", command("fxutr", "params"), tool));
    if (fx && (flags & kGraph)) {
        items.push_back(message(L"Templates..", command("fxutr", "tile"), tool));
        if (fx->getNumInputs() > 1 && !fx->isTransition())
            items.push_back(message(L"Cycle inputs", command("fxutr", "cycle_inputs"), tool));
        CelEventPair pair(at.getEditH(), at.getChanIndex(-1), at.getTime());
        if (fx->isTransition() && pair.valid() && pair.getEffectHandle() == node)
            items.push_back(message(L"Remove transition", command("fxutr", "remove_xfade"), tool));
    }
    if (flags & kRenders) {
        if (fx) {
            items.push_back(message(L"Render afresh", String("render_effect ") + at.asString(), tool));
            items.push_back(message(L"Import render..", command("fxutr", "import_render"), tool));
        }
        items.push_back(message(L"Pop out viewer", command("popOut", "tile"), tool));
        items.push_back(message(L"Pop out log entry", command("popOut", "log"), tool));
    }
    if (fx && (flags & kRemove) && !vob->isReadOnly())
        items.push_back(message(L"Remove", command("fxutr", "remove_utr"), tool));
    return items;
}

std::vector<MenuItem> EffectMenuItems::getItemsForComponent(Vob* vob, const EditGraphIterator& at,
                                                            unsigned flags) {
    std::vector<MenuItem> items;
    Zk::Ptr<FXGraphNodeBase> node = at.getNode(-1);
    EditPtr edit = at.getEditH();
    if (!vob || !node || !edit || vob->isReadOnly())
        return items;
    const double time = at.getTime();
    const IdStamp id = node->getId();
    auto fx = Zk::dynamicCast<EffectInstance_opu4h5a4j>(node);
    EventHandler* tool = node->chanType() != kAudioChan ? toolFor(vob) : nullptr;
    if (tool)
        return toolItems(vob, at, flags, tool);

    if (fx && (flags & kEnable)) {
        items.push_back(item(fx->isEnabled() ? L"Switch off" : L"Switch on",
                             [edit, id](const NotifyMsg&) { return switchEffect(edit, id); }));
    }
    if (fx && (flags & kParameters)) {
        bool any = !fx->params().empty() || isAudioPlugin(fx->tagTypeId());
        items.push_back(item(
            L"Parameters..",
            [edit, id](const NotifyMsg&) {
                auto e = Zk::dynamicCast<EffectInstance_opu4h5a4j>(edit->findNode(id));
                Zk::Ptr<iPlugInUIAdaptor> a =
                    PlugInUIAdaptorFactory::instance().createAdaptorFor(e, String());
                if (!a)
                    return 0;
                a->setup();
                return a->openWindow() ? 1 : 0;
            },
            any));
    }
    if (fx && (flags & kRemove)) {
        items.push_back(item(L"Remove from chain", [edit, id, time](const NotifyMsg&) {
            Zk::Ptr<FXGraphNodeBase> n = edit->findNode(id);
            if (!n)
                return 0;
            EasyBackup step(edit);
            return removeFromChain(edit, n, time) ? 1 : 0;
        }));
    }
    if (!fx && isPlainMaterial(node.get()) && (flags & kRemove) && at.depth() > 0) {
        // On the source of a chain: every effect above it goes, leaving the clip as it was.
        std::vector<IdStamp> above;
        for (int i = 0; i < at.depth(); ++i)
            above.push_back(at.getNodeId(i));
        items.push_back(item(L"Remove all effects", [edit, above, time](const NotifyMsg&) {
            EasyBackup step(edit);
            int removed = 0;
            for (const IdStamp& a : above)
                if (Zk::Ptr<FXGraphNodeBase> n = edit->findNode(a))
                    removed += removeFromChain(edit, n, time) ? 1 : 0;
            return removed > 0 ? 1 : 0;
        }));
    }
    return items;
}
