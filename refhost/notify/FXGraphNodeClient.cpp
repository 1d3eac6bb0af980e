// The host's observer of a graph node.
#include "host/FXGraphNodeClient.h"

#include "host/FXGraphNodeBase.h"
#include "host/MethodCallback.h"
#include "host/NotifyMsgTypeDictionary.h"

FXGraphNodeClient::~FXGraphNodeClient() = default;

void FXGraphNodeClient::registerWith(FXGraphNodeBase* node) {
    if (node && node == watchedNode())
        return;
    guard_.reset();
    node_ = node;
    if (!node)
        return;
    using Callback = MethodCallback<FXGraphNodeClient, EffectModification, int>;
    guard_ = node->changeNotifier().registerNotification(
        Zk::Ptr<iCallbackBase<int, EffectModification>>(
            new Callback(this, &FXGraphNodeClient::handleNodeChange)),
        NotifyMsgTypeDictionary::instance().defaultMsgType);
}

FXGraphNodeBase* FXGraphNodeClient::watchedNode() const {
    return guard_ && guard_->active() ? node_ : nullptr;
}

void FXGraphNodeClient::notifyValChanged(const ValObserverBase&) {
    generalUpdateNotification(EffectModification());
}

int FXGraphNodeClient::handleNodeChange(const EffectModification& modification) {
    generalUpdateNotification(modification);
    return 0;
}
