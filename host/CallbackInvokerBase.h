// CallbackInvokerBase: the untyped record of one registration on a notifier's list.
#pragma once

#include "host/DLListRec.h"

namespace Zk {
class Guard;
}

// Answers to one notification type. The notifier owns the record; the registration's guard
// points back at it and the record at the guard, so either end can end the registration.
class CallbackInvokerBase : public DLListRec {
public:
    explicit CallbackInvokerBase(int type) : type_(type) {}
    ~CallbackInvokerBase() override = default;

    bool typeMatch(int type) const { return type == type_; }
    int type() const { return type_; }

private:
    friend class NotifierBase;

    int type_;
    Zk::Guard* guard_ = nullptr;
};
