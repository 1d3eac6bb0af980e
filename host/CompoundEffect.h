// CompoundEffect: an effect whose content is an edit of its own, a nested time line of channels
// and cels. Input k of the effect is fed by the inner channel named by its track, taken at the
// inner time: the walk's time plus the effect's time offset. The iterator steps through the
// effect into the inner graphs; the inner edit is owned by the effect.
#pragma once

#include "host/EditPtr.h"
#include "host/EffectInstance_opu4h5a4j.h"

class CompoundEffect : public EffectInstance_opu4h5a4j {
public:
    explicit CompoundEffect(const IdStamp& id) : EffectInstance_opu4h5a4j(id) {
        setTagTypeId("Compound:Stack");
    }

    const EditPtr& innerEdit() const { return inner_; }
    void setInnerEdit(const EditPtr& e) { inner_ = e; }
    // Inner time minus outer time.
    double timeOffset() const { return offset_; }
    void setTimeOffset(double o) { offset_ = o; }

private:
    EditPtr inner_;
    double offset_ = 0.0;
};
