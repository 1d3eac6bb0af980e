// MultiValClient: a client of any number of value servers at once.
#pragma once

#include <utility>

#include "host/Notifiable.h"
#include "host/NotifyMsgTypeDictionary.h"
#include "host/Vector.h"
#include "host/ZkGuard.h"
#include "host/ZkPtr.h"
#include "host/iCallbackBase.h"
#include "values/ValClientBase.h"
#include "values/ValServer.h"

// Registers with each server it is given, once, and hears every change of any of them through
// handleValChanged with the server that changed, unless the client is disabled. A server that
// dies is forgotten. Each registration is kept with the manager the server had when it was
// registered with. The batch messages of a manager ("StartBatch", "EndBatch"), when they reach
// notify(), become handleBatchStart() and handleBatchEnd(). A copy watches nothing.
template <class T>
class MultiValClient : public Notifiable, public ValClientBase {
public:
    MultiValClient() = default;
    MultiValClient(const MultiValClient& other) : Notifiable(other), ValClientBase(other) {}
    MultiValClient& operator=(const MultiValClient& other) {
        ValClientBase::operator=(other);
        return *this;
    }
    ~MultiValClient() override = default;

    int notify(const NotifyMsg& message) override;
    int destroy(const NotifyMsg&) override { return 0; }
    int bufNotify(const NotifyMsg&) override { return 0; }

    virtual void registerWith(ValServer<T>* server);
    // False when the client was not registered with the server.
    virtual bool deregisterFrom(ValServer<T>* server);
    virtual void handleValChanged(ValServer<T>* server) = 0;
    virtual void handleBatchStart() {}
    virtual void handleBatchEnd() {}

    void valChangedNtfy(ValServerBase* server) override;

    unsigned numServers() const { return registrations_.size(); }
    bool isRegisteredWith(ValServer<T>* server) const { return find(server) < registrations_.size(); }

private:
    class ServerCallback;

    unsigned find(ValServer<T>* server) const;
    void forget(ValServer<T>* server);

    Vector<std::pair<ValManagerBase<T>*, Zk::Ptr<Zk::Guard>>> registrations_;
};

// The registration on one server: it knows the server, which the event does not carry.
template <class T>
class MultiValClient<T>::ServerCallback : public iCallbackBase<int, ValServerEvent<T>> {
public:
    ServerCallback(MultiValClient* client, ValServer<T>* server) : client_(client), server_(server) {}

    int invoke(const ValServerEvent<T>& event) override {
        switch (event.kind) {
        case ValServerEvent<T>::kChanged:
            client_->valChangedNtfy(server_);
            break;
        case ValServerEvent<T>::kAboutToChange:
            if (client_->isEnabled())
                client_->valPreChangedNtfy(server_);
            break;
        case ValServerEvent<T>::kDestroyed:
            client_->forget(server_);
            break;
        default:
            break;
        }
        return 0;
    }

private:
    MultiValClient* client_;
    ValServer<T>* server_;
};

template <class T>
int MultiValClient<T>::notify(const NotifyMsg& message) {
    if (message.text() == "StartBatch")
        handleBatchStart();
    else if (message.text() == "EndBatch")
        handleBatchEnd();
    return 0;
}

template <class T>
void MultiValClient<T>::registerWith(ValServer<T>* server) {
    if (!server || isRegisteredWith(server))
        return;
    Zk::Ptr<iCallbackBase<int, ValServerEvent<T>>> callback(new ServerCallback(this, server));
    Zk::Ptr<Zk::Guard> guard =
        server->registerNotification(callback, NotifyMsgTypeDictionary::instance().defaultMsgType);
    registrations_.append(std::make_pair(server->manager(), guard));
}

template <class T>
bool MultiValClient<T>::deregisterFrom(ValServer<T>* server) {
    unsigned at = find(server);
    if (at >= registrations_.size())
        return false;
    registrations_.removeAt(at);
    return true;
}

template <class T>
void MultiValClient<T>::valChangedNtfy(ValServerBase* server) {
    if (!isEnabled())
        return;
    handleValChanged(dynamic_cast<ValServer<T>*>(server));
}

template <class T>
unsigned MultiValClient<T>::find(ValServer<T>* server) const {
    const NotifierBase* notifier = server;
    for (unsigned i = 0; i < registrations_.size(); ++i) {
        const Zk::Ptr<Zk::Guard>& guard = registrations_[i].second;
        if (server && guard && guard->notifier() == notifier)
            return i;
    }
    return registrations_.size();
}

template <class T>
void MultiValClient<T>::forget(ValServer<T>* server) {
    unsigned at = find(server);
    if (at < registrations_.size())
        registrations_.removeAt(at);
}

extern template class MultiValClient<double>;
