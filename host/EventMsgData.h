// EventMsgData: a value carried as the data of a posted or sent message.
#pragma once

#include "host/iObject.h"

template <class T>
class EventMsgData : public iObject {
public:
    explicit EventMsgData(const T& v) : value_(v) {}
    const T& getData() const { return value_; }

private:
    T value_;
};
