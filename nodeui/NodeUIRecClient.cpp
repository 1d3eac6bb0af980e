// Listening to one node UI record.
#include "nodeui/NodeUIRecClient.h"

#include "host/MethodCallback.h"
#include "nodeui/NodeUIRecBase.h"

void NodeUIRecClient::registerWith(NodeUIRecBase* rec) {
    guard_ = nullptr;
    if (!rec)
        return;
    guard_ = rec->getNotify().registerNotification(
        new MethodCallback<NodeUIRecClient, NotifyMsg, int>(this, &NodeUIRecClient::updateNotifyInternal),
        NodeUIRecBase::getRecUpdateMsgType());
}

int NodeUIRecClient::updateNotifyInternal(const NotifyMsg&) {
    recUpdateNotify();
    return 0;
}
