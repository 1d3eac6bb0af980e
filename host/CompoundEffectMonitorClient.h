// CompoundEffectMonitorClient: what a watcher of the effects at the current place hears.
#pragma once

#include <utility>
#include <vector>

#include "host/EditTypes.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/IdStamp.h"

// A client is told of each change twice: piece by piece through the four component calls, then
// once as a whole through handleCompoundEffectChanges. All of them do nothing here.
class CompoundEffectMonitorClient {
public:
    using Component = Zk::Ptr<EffectInstance_opu4h5a4j>;

    // One published change as the monitor saw it.
    struct ChangeDescription {
        std::vector<Component> removed;
        std::vector<Component> added;
        // Components that changed places: (the one now at the lower index, the one it displaced).
        std::vector<std::pair<Component, Component>> swapped;
        // The list was read afresh: components were replaced or reordered beyond a swap.
        bool changed = false;
        // The Vob's flags of the change (bit value 2: the playhead moved).
        unsigned flags = 0;
        // The change of the edit that caused this, and its detail, the kind.
        EditModification modification;
        unsigned kind = 0;
        // The list of tracks at the current place is different.
        bool tracksChanged = false;
        IdStamp oldTrack;
        IdStamp newTrack;
    };

    virtual ~CompoundEffectMonitorClient() = default;
    virtual void componentAdded(const Component& component) {}
    virtual void componentRemoved(const Component& component) {}
    virtual void componentSwapped(const Component& a, const Component& b) {}
    virtual void resyncComponents() {}
    virtual void handleCompoundEffectChanges(const ChangeDescription& desc) {}
};
