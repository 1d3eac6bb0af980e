// ValServer: an observable value with an optional manager that may veto or rewrite changes.
#pragma once

#include <cstring>
#include <type_traits>

#include "host/GenericNotifier.h"
#include "host/NotifyMsgTypeDictionary.h"
#include "host/XY.h"
#include "host/iObject.h"
#include "values/LastValServer.h"
#include "values/ValServerBase.h"
#include "values/ValServerEvent.h"

template <class T>
class ValManagerBase;

// Holds one value of type T (double, XY<double> or bool). Every change goes through setVal: the
// manager, if one has claimed the server, may refuse it or rewrite the value; then the value is
// stored and every client hears of it, even when it equals the old value. Clients also hear of
// the server's death before it goes, so none is left pointing at it. A default double or bool
// server holds no value until its owner assigns one. A copy takes the value only: no manager, no
// clients. Set the value on the user-interface thread; dispatch is locked by the notifier.
// The value-server templates are the library's; everything under them (notifiers, guards, lists,
// the lock, the observer interfaces the host also uses) comes from the host.
template <class T>
class ValServer : public GenericNotifier<ValServerEvent<T>>,
                  public ValServerBase,
                  public LastValServer,
                  public virtual iObject {
public:
    ValServer() : manager_(nullptr) { LastValServer::getLastValServer(); }
    ValServer(const ValServer& other)
        : Zk::InternalRefCount(), iVirtual(), iObject(), GenericNotifier<ValServerEvent<T>>(),
          ValServerBase(), LastValServer(), value_(other.value_), manager_(nullptr) {
        LastValServer::getLastValServer();
    }
    ~ValServer() noexcept override;

    // Both assignments go through setVal.
    virtual ValServer& operator=(const ValServer& other) {
        setVal(other.value_);
        return *this;
    }
    virtual ValServer& operator=(const T& value) {
        setVal(value);
        return *this;
    }
    // Compares the values, never the identities.
    virtual bool operator==(const ValServer& other) const { return sameValue(value_, other.value_); }
    // False when the manager refused the value; then nothing changed and nothing was sent.
    virtual bool setVal(const T& value);

    void issueValChanged(int detail) override { issue(ValServerEvent<T>::kChanged, detail); }
    void issueValPreChanged(int detail) override { issue(ValServerEvent<T>::kAboutToChange, detail); }

    const T& getVal() const { return value_; }
    // Writes the value in place: no manager is asked and no client is told. For an owner that
    // copies its whole state from another object without a word to anyone.
    void storeSilently(const T& value) { value_ = value; }
    ValManagerBase<T>* manager() const { return manager_; }

private:
    friend class ValManagerBase<T>;

    void issue(int kind, int detail);
    static bool sameValue(const T& a, const T& b);

    T value_;
    ValManagerBase<T>* manager_;
};

template <class T>
bool ValServer<T>::setVal(const T& value) {
    T copy(value);
    if (manager_ && !manager_->requestValChange(this, copy))
        return false;
    value_ = copy;
    issueValChanged(4);
    return true;
}

template <class T>
void ValServer<T>::issue(int kind, int detail) {
    // Only the low 16 bits of the count are looked at, without the lock: it is a cheap early out
    // for the common server that nobody watches.
    if ((this->clients_.size() & 0xFFFFu) == 0)
        return;
    ValServerEvent<T> event{value_, kind, detail};
    this->issueNotification(event, NotifyMsgTypeDictionary::instance().defaultMsgType);
}

template <class T>
ValServer<T>::~ValServer() noexcept {
    if (manager_) {
        manager_->releaseServer(this);
        manager_ = nullptr;
    }
    if (!this->clients_.empty()) {
        CriticalSection::Scope hold(this->cs_);
        ValServerEvent<T> event{value_, ValServerEvent<T>::kDestroyed, 4};
        this->issueNotification(event, NotifyMsgTypeDictionary::instance().defaultMsgType);
    }
}

template <class T>
bool ValServer<T>::sameValue(const T& a, const T& b) {
    if constexpr (std::is_same_v<T, bool>)
        return std::memcmp(&a, &b, sizeof(bool)) == 0;
    else if constexpr (std::is_same_v<T, XY<double>>)
        return a.x == b.x && a.y == b.y;
    else
        return a == b;
}

extern template class ValServer<double>;
extern template class ValServer<XY<double>>;
extern template class ValServer<bool>;

// The manager's operations are used by the bodies above; its header needs this one complete.
#include "values/ValManagerBase.h"
