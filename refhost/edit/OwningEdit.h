// The open edit that holds a node, and callbacks made from functions; shared by the host's
// editing commands.
#pragma once

#include <functional>
#include <utility>

#include "host/Edit.h"
#include "host/NotifyMsg.h"
#include "host/VobManager.h"
#include "host/iCallbackBase.h"

namespace refhost {

// The edit of one of the open Vobs whose node list holds this very node; null if none does.
inline EditPtr owningEdit(const FXGraphNodeBase* node) {
    if (!node)
        return nullptr;
    for (const auto& vob : VobManager::instance().vobs())
        if (vob && vob->edit() && vob->edit()->findNode(node->getId()).get() == node)
            return vob->edit();
    return nullptr;
}

// A callback that runs a function with the message's text.
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
