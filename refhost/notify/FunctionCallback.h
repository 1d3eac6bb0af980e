// FunctionCallback: a callback that runs a function with the message it is given.
#pragma once

#include <functional>
#include <utility>

#include "host/NotifyMsg.h"
#include "host/iCallbackBase.h"

namespace refhost {

// For menu items and widget callbacks of the host's own commands.
class FunctionCallback : public iCallbackBase<int, NotifyMsg> {
public:
    explicit FunctionCallback(std::function<int(const NotifyMsg&)> f) : f_(std::move(f)) {}
    int invoke(const NotifyMsg& msg) override { return f_ ? f_(msg) : 0; }

private:
    std::function<int(const NotifyMsg&)> f_;
};

inline Zk::Ptr<iCallbackBase<int, NotifyMsg>> makeCallback(std::function<int(const NotifyMsg&)> f) {
    return Zk::Ptr<iCallbackBase<int, NotifyMsg>>(new FunctionCallback(std::move(f)));
}

} // namespace refhost
