// ValManagerBase: a manager of value servers that can veto their changes and bracket batches.
#pragma once

#include "host/NotifyMsg.h"
#include "host/NotifyMsgTypeDictionary.h"
#include "host/NotifyWithDisable.h"
#include "values/ValServer.h"

// Claims servers, after which each change of a claimed server is put to requestValChange
// before it lands. Batches nest; the depth is the disable count of getNotify(), so a batch also
// holds back every sender that honours that count, and a subclass that hands out another
// notifier shares that notifier's batch. Only the outermost start sends "StartBatch" (with the
// depth still 0) and only the end that brings the depth to 0 sends "EndBatch"; an end with no
// batch open still sends "EndBatch". Value changes inside a batch still land and notify at once.
template <class T>
class ValManagerBase : public NotifyWithDisable {
public:
    ValManagerBase() = default;
    ValManagerBase(const ValManagerBase&) = default;
    ValManagerBase& operator=(const ValManagerBase&) = default;
    ~ValManagerBase() override = default;

    // Asked by a claimed server before it takes a value, which the manager may rewrite. False
    // refuses the change.
    virtual bool requestValChange(ValServer<T>* server, T& value) = 0;
    // Forgets what the manager keeps about a server. The server's link to its manager is the
    // caller's to change.
    virtual void releaseServer(ValServer<T>* server) = 0;

protected:
    // True when this call opened the outermost batch.
    bool startBatchOperation();
    // True when no batch remains open.
    bool endBatchOperation();
    // Claims a server, taking it from the manager that held it.
    void setManagerFor(ValServer<T>* server);

    // For subclasses, which cannot reach a server's link or another manager's release themselves.
    static void setServerManager(ValServer<T>* server, ValManagerBase* manager) {
        server->manager_ = manager;
    }
    static void releaseFromManager(ValManagerBase* manager, ValServer<T>* server) {
        manager->releaseServer(server);
    }

private:
    void sendBatchMessage(const char* text);
};

template <class T>
bool ValManagerBase<T>::startBatchOperation() {
    bool opened = false;
    if (getNotify().disabled_ == 0) {
        sendBatchMessage("StartBatch");
        opened = true;
    }
    ++getNotify().disabled_;
    return opened;
}

template <class T>
bool ValManagerBase<T>::endBatchOperation() {
    if (getNotify().disabled_ > 0)
        --getNotify().disabled_;
    if (getNotify().disabled_ != 0)
        return false;
    sendBatchMessage("EndBatch");
    return true;
}

template <class T>
void ValManagerBase<T>::setManagerFor(ValServer<T>* server) {
    if (!server)
        return;
    if (server->manager_)
        server->manager_->releaseServer(server);
    server->manager_ = this;
}

template <class T>
void ValManagerBase<T>::sendBatchMessage(const char* text) {
    NotifyMsg message{LightweightString<char>(text), Zk::Ptr<iObject>()};
    getNotify().getNotify().call(message, NotifyMsgTypeDictionary::instance().defaultMsgType);
}

extern template class ValManagerBase<double>;
