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
    issueNotification(batch_, NotifyMsgTypeDictionary::instance().defaultMsgType);
}
