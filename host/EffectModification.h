// EffectModification: what changed in one node of an effect graph.
#pragma once

#include "host/IdStamp.h"

// Handed to the clients of a node when it has changed. `item` names the part of the node that
// changed, with kWholeNode for a property of the node itself (such as its enable flag); `subItem`
// narrows it down, invalid when there is nothing to narrow; `count` is the number of changes it
// stands for; `type` is the kind of change (kTypeProperty for a property of the node).
class EffectModification {
public:
    static constexpr int kTypeGeneral = 0;
    static constexpr int kTypeProperty = 4;

    static IdStamp wholeNode() { return IdStamp(999, 999, 999); }

    EffectModification() = default;
    EffectModification(const IdStamp& item_, const IdStamp& subItem_, int count_, int type_)
        : item(item_), subItem(subItem_), count(count_), type(type_) {}

    bool operator==(const EffectModification& o) const {
        return item == o.item && subItem == o.subItem && count == o.count && type == o.type;
    }

    IdStamp item = wholeNode();
    IdStamp subItem;
    int count = 1;
    int type = kTypeGeneral;
};
