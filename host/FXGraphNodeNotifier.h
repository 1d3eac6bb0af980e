// FXGraphNodeNotifier: the notifier through which a graph node tells its clients of changes.
#pragma once

#include "host/EffectModification.h"
#include "host/GenericNotifier.h"

extern template class GenericNotifier<EffectModification>;

// Sends one EffectModification per change, under the default notification type. Between
// startBatch() and the endBatch() that closes the outermost level, changes are gathered and
// the clients hear once, at the end, with the modification the batch was opened with. An end
// without a start does nothing. A copy has no clients and no open batch.
class FXGraphNodeNotifier : public GenericNotifier<EffectModification> {
public:
    FXGraphNodeNotifier() = default;
    FXGraphNodeNotifier(const FXGraphNodeNotifier&) : GenericNotifier<EffectModification>() {}
    FXGraphNodeNotifier& operator=(const FXGraphNodeNotifier&) { return *this; }
    ~FXGraphNodeNotifier() override;

    // Tells the clients now, or at the end of the open batch.
    void changed(const EffectModification& modification);
    void startBatch(const EffectModification& modification);
    void endBatch();
    bool inBatch() const { return depth_ > 0; }

private:
    unsigned depth_ = 0;
    EffectModification batch_;
};
