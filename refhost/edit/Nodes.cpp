// Node queries of the reference host.
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/MaterialUsageNode.h"

uint16_t EffectInstance_opu4h5a4j::getNumTrackInputs() const {
    uint16_t n = 0;
    for (const auto& in : inputs_)
        if (in.isTrack)
            ++n;
    return n;
}

IdStamp EffectInstance_opu4h5a4j::getInputTrackId(uint16_t k) const {
    uint16_t seen = 0;
    for (const auto& in : inputs_) {
        if (!in.isTrack)
            continue;
        if (seen == k)
            return in.track;
        ++seen;
    }
    return IdStamp();
}

bool isPlainMaterial(FXGraphNodeBase* node) { return dynamic_cast<MaterialUsageNode*>(node) != nullptr; }
