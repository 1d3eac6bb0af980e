// FXEditor: makes changes to an edit's effect graphs, with the host's rules: no cycle, no input
// out of range, no node of the wrong channel type, no rewiring of a transition, and no change at
// all to an edit open read-only.
#pragma once

#include <vector>

#include "host/EditGraphIterator.h"
#include "host/EditModule.h"
#include "host/EditTypes.h"
#include "host/EffectTemplate.h"

class FXEditor {
public:
    // The result of an edit: where it happened and what changed.
    struct RC {
        EditGraphIterator iterator{0};
        EditModifications mods;
        bool ok = false;
    };

    explicit FXEditor(const EditPtr& edit);
    explicit FXEditor(const EditModule& module);
    FXEditor(const EditPtr& edit, const EditModule& module, int chanIndex);

    static EditGraphIterator getIteratorFor(const EditPtr& edit, const IdStamp& id, double time, int options);
    static EditGraphIterator getIteratorFor(const EditPtr& edit, const FXGraphNodeBase* node, double time,
                                            int options);
    static EditGraphIterator getIteratorFor(const EditGraphIteratorState& state);
    // Appends the ids of the nodes that no channel's graph reaches: the tops of detached
    // subgraphs, each once, in id order.
    static void findOrphanedComponents(EditPtr edit, double time, std::vector<IdStamp>& out);
    // Removes the node the iterator stands on. Its parents' links to it open; a root node of a
    // channel's event gives its place to the node on its input 0, or leaves the event black.
    // Material nodes stand for the cel itself and are not removed. Announces with `announce`.
    static bool destroyNode(EditGraphIterator& it, bool announce);

    // Resource ids of the messages for a refused change.
    enum eRefusal : unsigned {
        RefusedNone = 0,
        RefusedLoop = 11300,
        RefusedMediaType = 11301,
        RefusedNoSuchInput = 11302,
        RefusedTransition = 11303,
        RefusedReadOnly = 11304,
        RefusedNotAnEffect = 11305,
    };
    // Why a link from `from` into `input` of `to` would be refused, RefusedNone when it may be
    // made. A pure question, as canConnectNodes is; connectNodes shows the refusal's message.
    eRefusal connectionRefusal(const EditGraphIterator& to, size_t input,
                               const EditGraphIterator& from) const;
    bool canConnectNodes(const EditGraphIterator& to, size_t input, const EditGraphIterator& from) const;
    bool connectNodes(EditGraphIterator& to, int input, const EditGraphIterator& from, bool announce);
    bool disconnectNodes(EditGraphIterator& to, int input, bool announce);
    // Templates. Each copies the template's components into the edit with fresh ids and answers
    // with an iterator on the new head and the change, which includes (8, 0).
    // Onto a node: the head takes the node's place in everything that used it, and the node
    // feeds the first open input of each component.
    RC applyEffectsTemplateToNode(const Zk::Ptr<EffectTemplate>& tmpl, const Zk::Ptr<FXGraphNodeBase>& node);
    // Where the host sees fit: onto what the module's channel (or the first channel of the
    // template's type) shows at the module's start, or, where that is black, as a new effect
    // event over the module's region. The flags and the last two arguments are passed through.
    RC autoApplyEffectsTemplate(const Zk::Ptr<EffectTemplate>& tmpl, const EditModule& module, int flags,
                                int reserved, void* context);
    // Puts the template in the place of the transition of that event; the transition's inputs
    // become the template's, in order.
    RC replaceTransitionEffect(CelEventPair& pair, const Zk::Ptr<EffectTemplate>& tmpl);

    // The span a new effect would take: the module's region (its marks, or the event under the
    // playhead on its channel, or the whole edit). `snapToFrames` and `accuracy` ask for frame
    // times; this edit model keeps times exactly.
    static NumRange<double> getRegionForNewEffect(const EditModule& module, bool snapToFrames, int accuracy);

    // Rotates the links of a node's inputs by one place: input i takes what input i+1 had.
    bool cycleInputs(EditGraphIterator& it, bool announce);

    const EditPtr& edit() const { return edit_; }
    const EditModule& module() const { return module_; }
    // The channel the editor was made for, -1 for an editor without one.
    int chanIndex() const { return chanIndex_; }

private:
    EditPtr edit_;
    EditModule module_;
    int chanIndex_ = -1;
};

// Appends the channels of that type that have a graph (any content that is not black) at `time`.
void findAllRootNodeChans(const EditPtr& edit, double time, std::vector<IdStamp>& out, EditChanType type);
