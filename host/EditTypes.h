// The small enumerations and records of the edit model: channel types, change descriptions,
// time ranges.
#pragma once

#include <cstdint>
#include <vector>

// Channel types. The graph logic uses video, passed as 1.
enum EditChanType : unsigned { kAnyChanType = 0, kVideoChan = 1, kAudioChan = 2 };

// What changed in an edit. An effect graph change (18) carries a detail: 4 names and
// parameters, 5 connections, 11 a property that only shows on the node (such as its enable flag).
enum EditModificationType : unsigned {
    kModNone = 0,
    kModStructure = 1,     // channels or cels added, removed or moved
    kModNodesRemoved = 7,  // effect nodes destroyed
    kModEffectApplied = 8, // a template added effects
    kModRestored = 9,      // undo or redo brought back an earlier state
    kModReloaded = 11,     // the edit was loaded afresh
    kModChannels = 12,     // channel list changed
    kModNames = 16,        // display names changed
    kModEffectGraph = 18,  // a change inside an effect graph; see the detail
};

struct EditModification {
    EditModification() = default;
    // A change inside an effect graph of the given detail.
    explicit EditModification(unsigned graphDetail) : type(kModEffectGraph), detail(graphDetail) {}
    EditModification(EditModificationType t, unsigned d) : type(t), detail(d) {}

    bool matches(int t) const { return static_cast<int>(type) == t; }

    EditModificationType type = kModNone;
    unsigned detail = 0;
};

class EditModifications {
public:
    EditModifications() = default;
    explicit EditModifications(const EditModification& m) { mods_.push_back(m); }

    void add(const EditModification& m) { mods_.push_back(m); }
    void add(const EditModifications& o) { mods_.insert(mods_.end(), o.mods_.begin(), o.mods_.end()); }
    bool empty() const { return mods_.empty(); }
    bool includes(unsigned type, unsigned detail) const {
        for (const auto& m : mods_)
            if (m.type == type && m.detail == detail)
                return true;
        return false;
    }
    // `types` ends with 0.
    bool includesAnyOf(const EditModificationType* types) const {
        for (const auto& m : mods_)
            for (const EditModificationType* t = types; *t != kModNone; ++t)
                if (m.type == *t)
                    return true;
        return false;
    }
    const std::vector<EditModification>& list() const { return mods_; }

private:
    std::vector<EditModification> mods_;
};

// How the published change touched the Vob: bit 1 (0x2) the playhead moved and `time` holds
// it, bit 3 (0x8) cuts changed, bit 5 (0x20) the edit shown changed, bit 15 (0x8000) views
// are to leave their managers.
struct VobModification {
    VobModification() = default;
    explicit VobModification(unsigned f) : flags(f) {}
    VobModification(unsigned f, double t) : flags(f), time(t) {}
    // A change that concerns a span of time, such as the region of a new effect.
    VobModification(unsigned f, double t, double end) : flags(f), time(t), endTime(end) {}

    unsigned flags = 0;
    double time = 1e99;
    double endTime = 1e99;
};

struct Ordered {};

// A closed range of numbers.
template <class T, class Tag = Ordered>
struct NumRange {
    NumRange() = default;
    NumRange(T l, T h) : lo(l), hi(h) {}
    T lo = T();
    T hi = T();
    bool contains(T v) const { return v >= lo && v <= hi; }
};

// The host's test of equal edit times.
inline bool valEqualsVal(double a, double b) {
    double d = a - b;
    return d < 1e-6 && d > -1e-6;
}
