// ce_handle: a handle on one event of a channel for changing what the event plays.
#pragma once

#include "host/EditPtr.h"
#include "host/IdStamp.h"

class ce_handle {
public:
    ce_handle() = default;
    ce_handle(const EditPtr& edit, int chan, int index) : edit_(edit), chan_(chan), index_(index) {}
    bool valid() const;
    // Makes the event play the graph headed by the node with that id: the node becomes the
    // event's root, and an event that held plain material becomes an effect graph of its own.
    // False, with nothing changed, if the handle or the node is not there.
    bool setEffectGraph(const IdStamp& root);

private:
    EditPtr edit_;
    int chan_ = -1;
    int index_ = -1;
};
