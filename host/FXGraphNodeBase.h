// FXGraphNodeBase: the base of everything in an effect graph. A node has an id, a name, the
// channel type it carries, and a list of inputs. Every input of an effect is a track input: its
// track is a channel of the edit (whose content at the walk's time feeds it) or an internal track
// of the graph, which carries a direct link to another node. An input without a node and without
// a channel's content is open.
#pragma once

#include <vector>

#include "host/EditTypes.h"
#include "host/EffectModification.h"
#include "host/FXGraphNodeIFDescriptor.h"
#include "host/FXGraphNodeNotifier.h"
#include "host/IdStamp.h"
#include "host/Taggable.h"

class FXGraphNodeBase : public Taggable {
public:
    struct Input {
        Zk::Ptr<FXGraphNodeBase> node; // a direct link, or null
        IdStamp track;                 // the channel or internal track feeding the input, or invalid
        bool ghost = false;            // entered only by walks that traverse ghosts
    };

    explicit FXGraphNodeBase(const IdStamp& id) : id_(id) {}
    ~FXGraphNodeBase() override = default;

    const IdStamp& getId() const { return id_; }
    virtual unsigned getNumInputs() const { return static_cast<unsigned>(inputs_.size()); }

    const WString& getName() const { return name_; }
    // The labels of an input: the ones the node was given, else the ones its kind gives (a mix's
    // background and foreground, a transition's outgoing and incoming side), else numbered.
    FXGraphNodeIFDescriptor getInputDescriptor(unsigned input) const;
    void setInputLabels(std::vector<WString> labels) { inputLabels_ = std::move(labels); }
    void setName(const WString& n) { name_ = n; }
    EditChanType chanType() const { return chanType_; }
    void setChanType(EditChanType t) { chanType_ = t; }

    // The model's view of the inputs, for the host's own editing.
    const Input& input(unsigned i) const { return inputs_[i]; }
    Input& input(unsigned i) { return inputs_[i]; }
    void setNumInputs(unsigned n) { inputs_.resize(n); }
    std::vector<Input>& inputs() { return inputs_; }
    const std::vector<Input>& inputs() const { return inputs_; }

    // Change counter, raised by every change of the node; stills and thumbnails key on it.
    // Each change is also told to the node's clients (FXGraphNodeClient), at once or at the end
    // of the batch it belongs to.
    unsigned changeCount() const { return changes_; }
    void noteChanged() {
        ++changes_;
        notifier_.changed(EffectModification());
    }

    // Brackets a change of the node made of several steps: the clients hear once, at the end of
    // the outermost bracket, with the modification given here.
    void startBatchChange(const EffectModification& modification) { notifier_.startBatch(modification); }
    void endBatchChange() { notifier_.endBatch(); }
    FXGraphNodeNotifier& changeNotifier() { return notifier_; }

protected:
    std::vector<Input> inputs_;

private:
    IdStamp id_;
    WString name_;
    std::vector<WString> inputLabels_;
    EditChanType chanType_ = kVideoChan;
    unsigned changes_ = 0;
    FXGraphNodeNotifier notifier_;
};

// True if the node is a bare source clip.
bool isPlainMaterial(FXGraphNodeBase* node);
