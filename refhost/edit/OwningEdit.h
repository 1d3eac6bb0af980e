// The open edit that holds a node, for the host's commands that start from a node alone.
#pragma once

#include "host/Edit.h"
#include "host/VobManager.h"

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

} // namespace refhost
