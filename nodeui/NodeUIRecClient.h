// NodeUIRecClient: an observer of one NodeUIRecBase, told when the record changes.
#pragma once

#include "host/Notifiable.h"
#include "host/ZkGuard.h"
#include "host/ZkPtr.h"

class NodeUIRecBase;

class NodeUIRecClient : public Notifiable {
public:
    NodeUIRecClient() = default;
    NodeUIRecClient(const NodeUIRecClient&) = default;
    NodeUIRecClient& operator=(const NodeUIRecClient&) = default;
    ~NodeUIRecClient() override = default;

    // Null ends listening.
    virtual void registerWith(NodeUIRecBase* rec);
    virtual void recUpdateNotify() = 0;

private:
    int updateNotifyInternal(const NotifyMsg& msg);

    Zk::Ptr<Zk::Guard> guard_;
};
