// ValClient: a client of one value server at a time.
#pragma once

#include "host/EnableDisable.h"
#include "host/MethodCallback.h"
#include "host/NotifyMsgTypeDictionary.h"
#include "host/ZkGuard.h"
#include "host/ZkPtr.h"
#include "values/ValServer.h"

// Hears every change of its server through valChanged while it is enabled; changes made while
// it is disabled are missed for good, not queued. Whether enabled or not, it hears of the
// server's death and is left with no server and no registration. The registration ends with the
// client. A copy has the disable count of the original and no server.
template <class T>
class ValClient : public EnableDisable {
public:
    ValClient() = default;
    ValClient(const ValClient& other) : EnableDisable(other) {}
    ValClient& operator=(const ValClient& other) {
        EnableDisable::operator=(other);
        return *this;
    }
    virtual ~ValClient() = default;

    // Registers with a server, ending any earlier registration; null ends registration. The
    // server already held is left as it is.
    virtual void registerWith(ValServer<T>* server);
    virtual void valChanged(const ValServerEvent<T>& event) = 0;
    virtual void valPreChanged(const ValServerEvent<T>&) {}

    ValServer<T>* server() const { return server_; }

protected:
    Zk::Ptr<Zk::Guard> guard_;
    ValServer<T>* server_ = nullptr;

private:
    int handleServerEvent(const ValServerEvent<T>& event);
};

template <class T>
void ValClient<T>::registerWith(ValServer<T>* server) {
    if (server == server_)
        return;
    server_ = server;
    if (!server) {
        guard_.reset();
        return;
    }
    using Callback = MethodCallback<ValClient<T>, ValServerEvent<T>, int>;
    Zk::Ptr<iCallbackBase<int, ValServerEvent<T>>> callback(
        new Callback(this, &ValClient::handleServerEvent));
    guard_ = server->registerInternal(
        new CallbackInvoker<ValServerEvent<T>>(callback, NotifyMsgTypeDictionary::instance().defaultMsgType));
}

template <class T>
int ValClient<T>::handleServerEvent(const ValServerEvent<T>& event) {
    switch (event.kind) {
    case ValServerEvent<T>::kChanged:
        if (disableCount() <= 0)
            valChanged(event);
        break;
    case ValServerEvent<T>::kAboutToChange:
        if (disableCount() < 1)
            valPreChanged(event);
        break;
    case ValServerEvent<T>::kDestroyed:
        server_ = nullptr;
        guard_.reset();
        break;
    default:
        break;
    }
    return 0;
}

extern template class ValClient<double>;
extern template class ValClient<XY<double>>;
