// NodeUIManagerClient: an observer of a NodeUIManagerBase, told of records added and deleted
// and of free-form general updates.
#pragma once

#include "host/LightweightString.h"
#include "host/Notifiable.h"
#include "host/ZkGuard.h"
#include "host/ZkPtr.h"

class NodeUIManagerBase;
class NodeUIRecBase;

// Hears one manager at a time; registering anew ends the old registrations. A deleted record
// is still alive while nodeRecDeletedNotify runs. Clients must not delete records of the
// manager from inside these calls.
class NodeUIManagerClient : public Notifiable {
public:
    NodeUIManagerClient() = default;
    NodeUIManagerClient(const NodeUIManagerClient&) = default;
    NodeUIManagerClient(NodeUIManagerClient&&) = default;
    NodeUIManagerClient& operator=(const NodeUIManagerClient&) = default;
    NodeUIManagerClient& operator=(NodeUIManagerClient&&) = default;
    ~NodeUIManagerClient() override = default;

    // Null ends listening.
    virtual void registerWith(NodeUIManagerBase* manager);
    virtual void newNodeRecNotify(NodeUIRecBase* rec) = 0;
    virtual void nodeRecDeletedNotify(NodeUIRecBase* rec) = 0;
    virtual void generalUpdateNotify(LightweightString<char> text) = 0;

private:
    int newRecNotifyInternal(const NotifyMsg& msg);
    int recDelNotifyInternal(const NotifyMsg& msg);
    int generalNotifyInternal(const NotifyMsg& msg);

    Zk::Ptr<Zk::Guard> addedGuard_;
    Zk::Ptr<Zk::Guard> deletedGuard_;
    Zk::Ptr<Zk::Guard> generalGuard_;
};
