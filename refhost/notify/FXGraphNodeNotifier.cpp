// Change notification of graph nodes, with the batches that bracket a change.
#include "host/FXGraphNodeNotifier.h"

#include "host/NotifyMsgTypeDictionary.h"

template class GenericNotifier<EffectModification>;

FXGraphNodeNotifier::~FXGraphNodeNotifier() = default;

void FXGraphNodeNotifier::changed(const EffectModification& modification) {
    if (depth_ > 0 || numClients() == 0)
        return;
    issueNotification(modification, NotifyMsgTypeDictionary::instance().defaultMsgType);
}

void FXGraphNodeNotifier::startBatch(const EffectModification& modification) {
    if (depth_++ == 0)
        batch_ = modification;
}

void FXGraphNodeNotifier::endBatch() {
    if (depth_ == 0 || --depth_ > 0)
        return;
    // A client may open the next batch while this one is being told, which overwrites batch_:
    // every client of this dispatch hears the modification this batch was opened with.
    const EffectModification closed = batch_;
    issueNotification(closed, NotifyMsgTypeDictionary::instance().defaultMsgType);
}
