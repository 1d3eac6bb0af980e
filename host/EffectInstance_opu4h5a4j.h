// EffectInstance_opu4h5a4j: any effect of a graph. Its kind is the tag type id; it can be
// switched off; it has named numeric parameters; some of its inputs are track inputs.
#pragma once

#include <map>
#include <string>

#include "host/FXGraphNodeBase.h"

class EffectInstance_opu4h5a4j : public FXGraphNodeBase {
public:
    explicit EffectInstance_opu4h5a4j(const IdStamp& id) : FXGraphNodeBase(id) {}

    bool isEnabled() const { return enabled_; }
    void setEnabled(bool e) {
        enabled_ = e;
        noteChanged();
    }

    // The number of track inputs (one per input), and the track feeding track input k: a
    // channel's id, an internal track's id, or invalid for a slot without a track.
    uint16_t getNumTrackInputs() const;
    IdStamp getInputTrackId(uint16_t k) const;
    // Sets what feeds track input k: a node of the effect's edit (linked through a new internal
    // track), an internal track (taking the node it carries), a channel, or nothing (invalid).
    // Links are often passed round in a series of calls; within a series an internal track let
    // go by an earlier call still names the node it carried. `lastOfSeries` ends the series.
    // The effect's edit is the open edit that holds it; outside every open edit a node's id
    // can't be resolved and is taken as a bare track.
    void setInputTrackId(uint16_t k, const IdStamp& track, bool lastOfSeries);

    double param(const std::string& name, double fallback = 0.0) const {
        auto it = params_.find(name);
        return it == params_.end() ? fallback : it->second;
    }
    void setParam(const std::string& name, double v) {
        params_[name] = v;
        noteChanged();
    }
    const std::map<std::string, double>& params() const { return params_; }

    // A transition stands between two cels of a channel; its inputs are the outgoing and the
    // incoming material.
    bool isTransition() const { return tagTypeId().startsWith("Transition:"); }
    // Whether the user may wire the effect's inputs by hand: every effect but a transition,
    // whose inputs are its two cels.
    bool inputsOpenToWiring() const { return !isTransition(); }

private:
    bool enabled_ = true;
    std::map<std::string, double> params_;
};
