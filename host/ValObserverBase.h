// ValObserverBase: the untyped face of a value observer.
#pragma once

class ValObserverClient;

// What a ValObserverClient receives: identifies the observer that fired, whatever its value type.
// The client is not owned.
class ValObserverBase {
public:
    explicit ValObserverBase(ValObserverClient* client = nullptr) : client_(client) {}
    virtual ~ValObserverBase() = default;

    ValObserverClient* client() const { return client_; }
    void setClient(ValObserverClient* client) { client_ = client; }

protected:
    ValObserverClient* client_;
};
