// ValObserver: a value client that tells its owner which observer fired.
#pragma once

#include "host/ValObserverBase.h"
#include "host/ValObserverClient.h"
#include "values/ValClient.h"

// Lets a class that watches several values tell them apart: on a change it hands its owner
// (the ValObserverClient) a reference to itself, not the event, and the owner reads the server
// again. With no owner it does nothing. A copy has no owner and no server: an owner that is
// copied sets its own observers up again.
template <class T>
class ValObserver : public ValClient<T>, public ValObserverBase {
public:
    explicit ValObserver(ValObserverClient* client = nullptr) : ValObserverBase(client) {}
    ValObserver(const ValObserver& other) : ValClient<T>(other), ValObserverBase() {}
    ValObserver& operator=(const ValObserver& other) {
        ValClient<T>::operator=(other);
        return *this;
    }
    ~ValObserver() override = default;

    void valChanged(const ValServerEvent<T>&) override {
        if (client_)
            client_->notifyValChanged(*this);
    }
    void valPreChanged(const ValServerEvent<T>&) override {
        if (client_)
            client_->notifyValPreChanged(*this);
    }
};

extern template class ValObserver<double>;
extern template class ValObserver<XY<double>>;
