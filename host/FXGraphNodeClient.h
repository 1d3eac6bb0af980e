// FXGraphNodeClient: the host's observer of one graph node.
#pragma once

#include "host/EffectModification.h"
#include "host/ValObserverClient.h"
#include "host/ZkGuard.h"
#include "host/ZkPtr.h"

class FXGraphNodeBase;

// Watches one node at a time and hears each change of it through generalUpdateNotification.
// A value observer of the client that fires counts as a general change of the node. The node is
// not owned: when it is destroyed the client stops hearing of it and watchedNode() turns null,
// with no event. A copy watches nothing.
class FXGraphNodeClient : public ValObserverClient {
public:
    FXGraphNodeClient() = default;
    FXGraphNodeClient(const FXGraphNodeClient&) : ValObserverClient() {}
    FXGraphNodeClient& operator=(const FXGraphNodeClient&) { return *this; }
    ~FXGraphNodeClient() override;

    // Starts watching a node, ending the watch of any other; null ends watching. Watching the
    // node already watched changes nothing.
    void registerWith(FXGraphNodeBase* node);
    FXGraphNodeBase* watchedNode() const;

    void notifyValChanged(const ValObserverBase& observer) override;
    virtual void generalUpdateNotification(const EffectModification&) {}

private:
    int handleNodeChange(const EffectModification& modification);

    FXGraphNodeBase* node_ = nullptr;
    Zk::Ptr<Zk::Guard> guard_;
};
