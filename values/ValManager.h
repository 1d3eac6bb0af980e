// ValManager: a value manager that asks its owner, server by server, about each change.
#pragma once

#include "host/Vector.h"
#include "values/LastValServer.h"
#include "values/ValManagerBase.h"

class FXGraphView;

// The owner class derives from ValManager<T, Owner> and names, for each server it wants a say
// in, a member function that may refuse or rewrite the value. A server claimed without a
// callback, or a manager that is not part of an Owner, takes every value. The manager also
// remembers the server constructed last before it, and can make that server send a change.
// Servers are best kept inside the owner, so that none outlives its manager.
template <class T, class Owner>
class ValManager : public ValManagerBase<T> {
public:
    using Callback = bool (Owner::*)(ValServer<T>*, T&);

    // One claimed server and the callback to ask. Records compare by server alone, so a record
    // with a null callback serves as a search key.
    struct ServerRec final {
        ServerRec() = default;
        ServerRec(ValServer<T>* s, Callback c) : server(s), callback(c) {}
        virtual bool operator==(const ServerRec& other) const { return server == other.server; }

        ValServer<T>* server = nullptr;
        Callback callback = nullptr;
    };

    ValManager() : lastServer_(dynamic_cast<ValServerBase*>(LastValServer::getLastValServer())) {}
    ValManager(const ValManager&) = default;
    ValManager& operator=(const ValManager&) = default;
    ~ValManager() override = default;

protected:
    // Claims a server with a callback. The steps run in a fixed order: a second call for a
    // server this manager already holds releases the record it has just made, and leaves the
    // server claimed with no callback.
    void addServerCallback(ValServer<T>* server, Callback callback);
    // Makes the server recorded at construction send a change of its value.
    void notifyValChanged() {
        if (lastServer_)
            lastServer_->issueValChanged(4);
    }

    const Vector<ServerRec>& serverRecs() const { return servers_; }
    ValServerBase* lastServer() const { return lastServer_; }

private:
    bool requestValChange(ValServer<T>* server, T& value) override;
    void releaseServer(ValServer<T>* server) override { servers_.remove(ServerRec(server, nullptr)); }

    Vector<ServerRec> servers_;
    ValServerBase* lastServer_;
};

template <class T, class Owner>
void ValManager<T, Owner>::addServerCallback(ValServer<T>* server, Callback callback) {
    if (!server)
        return;
    releaseServer(server);
    servers_.append(ServerRec(server, callback));
    if (server->manager())
        ValManagerBase<T>::releaseFromManager(server->manager(), server);
    ValManagerBase<T>::setServerManager(server, this);
}

template <class T, class Owner>
bool ValManager<T, Owner>::requestValChange(ValServer<T>* server, T& value) {
    Owner* owner = dynamic_cast<Owner*>(this);
    if (!owner)
        return true;
    unsigned at;
    if (!servers_.find(ServerRec(server, nullptr), at))
        return true;
    Callback callback = servers_[at].callback;
    if (!callback)
        return true;
    return (owner->*callback)(server, value);
}
