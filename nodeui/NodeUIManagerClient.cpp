// Listening to a node UI manager: the three registrations and the messages scanned back.
#include "nodeui/NodeUIManagerClient.h"

#include <cstdio>

#include "host/MethodCallback.h"
#include "nodeui/NodeUIManagerBase.h"

namespace {

using Callback = MethodCallback<NodeUIManagerClient, NotifyMsg, int>;

NodeUIRecBase* scanRecord(const NotifyMsg& msg) {
    void* p = nullptr;
    if (std::sscanf(static_cast<const char*>(msg), "%p", &p) != 1)
        return nullptr;
    return static_cast<NodeUIRecBase*>(p);
}

} // namespace

void NodeUIManagerClient::registerWith(NodeUIManagerBase* manager) {
    addedGuard_ = nullptr;
    deletedGuard_ = nullptr;
    generalGuard_ = nullptr;
    if (!manager)
        return;
    NotifyWithDisable& notifier = manager->getNotify();
    addedGuard_ =
        notifier.registerNotification(new Callback(this, &NodeUIManagerClient::newRecNotifyInternal),
                                      NodeUIManagerBase::getRecAddedMsgType());
    deletedGuard_ =
        notifier.registerNotification(new Callback(this, &NodeUIManagerClient::recDelNotifyInternal),
                                      NodeUIManagerBase::getRecDeletedMsgType());
    generalGuard_ =
        notifier.registerNotification(new Callback(this, &NodeUIManagerClient::generalNotifyInternal),
                                      NodeUIManagerBase::getGeneralMsgType());
}

int NodeUIManagerClient::newRecNotifyInternal(const NotifyMsg& msg) {
    newNodeRecNotify(scanRecord(msg));
    return 0;
}

int NodeUIManagerClient::recDelNotifyInternal(const NotifyMsg& msg) {
    nodeRecDeletedNotify(scanRecord(msg));
    return 0;
}

int NodeUIManagerClient::generalNotifyInternal(const NotifyMsg& msg) {
    generalUpdateNotify(LightweightString<char>(static_cast<const char*>(msg)));
    return 0;
}
