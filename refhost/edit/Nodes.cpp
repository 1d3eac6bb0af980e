// Node queries of the reference host.
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/MaterialUsageNode.h"

uint16_t EffectInstance_opu4h5a4j::getNumTrackInputs() const { return static_cast<uint16_t>(inputs_.size()); }

IdStamp EffectInstance_opu4h5a4j::getInputTrackId(uint16_t k) const {
    return k < inputs_.size() ? inputs_[k].track : IdStamp();
}

bool isPlainMaterial(FXGraphNodeBase* node) { return dynamic_cast<MaterialUsageNode*>(node) != nullptr; }
