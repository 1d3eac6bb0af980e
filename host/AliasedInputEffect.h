// AliasedInputEffect: a node that repeats a node from elsewhere in the graph. It has no inputs
// of its own, so a walk never loops through it; it names the node it repeats.
#pragma once

#include "host/EffectInstance_opu4h5a4j.h"

class AliasedInputEffect : public EffectInstance_opu4h5a4j {
public:
    explicit AliasedInputEffect(const IdStamp& id) : EffectInstance_opu4h5a4j(id) {
        setTagTypeId("Alias:Input");
    }

    const IdStamp& aliasOf() const { return aliasOf_; }
    void setAliasOf(const IdStamp& id) { aliasOf_ = id; }

private:
    IdStamp aliasOf_;
};
