// PlugInUIAdaptorFactory: makes the user interface adaptor for a plug-in effect.
#pragma once

#include "host/EffectInstance_opu4h5a4j.h"
#include "host/LightweightString.h"
#include "host/iPlugInUIAdaptor.h"

class PlugInUIAdaptorFactory {
public:
    static PlugInUIAdaptorFactory& instance();
    // An adaptor for the effect; context names where it is shown (empty: a window of its own).
    // Null for a null effect.
    Zk::Ptr<iPlugInUIAdaptor> createAdaptorFor(const Zk::Ptr<EffectInstance_opu4h5a4j>& effect,
                                               const String& context);
    // How many adaptors were made; for diagnostics.
    unsigned adaptorsMade() const { return made_; }

private:
    unsigned made_ = 0;
};
