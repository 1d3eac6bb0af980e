// CompoundEffectMonitor: follows the tracks and the effect chain at the current place of a Vob.
#pragma once

#include <vector>

#include "host/CompoundEffectMonitorClient.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/IdStamp.h"
#include "host/VobClient.h"

// The current place is the playhead of the Vob. The monitor keeps the list of tracks that hold
// something there (every video channel, and one track per audio group: its first channel), a
// current track among them, and the components of the current track: the effects met from its
// graph's root downward along input 0, down to the first node that is no effect. After every
// published change it reads all of this again and tells its clients what differs.
class CompoundEffectMonitor : public VobClient {
public:
    static constexpr const char* IDString = "CompoundEffectMonitor";
    enum eFlags : unsigned { kHasVideo = 0x1, kHasAudio = 0x2 };
    // Component types: an effect on video, an effect on sound.
    enum eComponentType : unsigned { kAnyComponent = 0, kVideoComponent = 1, kAudioComponent = 3 };

    explicit CompoundEffectMonitor(Vob* vob);
    ~CompoundEffectMonitor() override;
    const char* idString() const override { return IDString; }

    unsigned getFlags() const { return flags_; }
    const IdStamp& getTrackID() const { return track_; }
    // Makes another track current and tells the clients; an id that isn't in the list of tracks
    // is taken all the same, and shows whatever that channel holds.
    void setTrackID(const IdStamp& track);
    const std::vector<IdStamp>& getTrackIDs() const { return tracks_; }
    Vob* getVob() const { return vob(); }
    EditPtr getSourceEdit() const { return getEdit(); }

    unsigned getNumComponents(unsigned type) const;
    // The component at that index of the chain, counting from its root; null past the end.
    Zk::Ptr<EffectInstance_opu4h5a4j> getEffect(unsigned short index) const;

    // Adds (true) or removes (false) a client. A client must leave before it is destroyed; one
    // that leaves while a change is being told hears nothing more of it.
    void registerForChangeNotifications(CompoundEffectMonitorClient* client, bool add);

    // Reads the place again and tells the clients, as after a published change.
    void resync();
    void handleModifications(const EditModifications& mods, const VobModification& vobMod) override;

private:
    struct Snapshot {
        std::vector<IdStamp> tracks;
        IdStamp track;
        unsigned flags = 0;
        std::vector<Zk::Ptr<EffectInstance_opu4h5a4j>> components;
    };
    Snapshot read(const IdStamp& wantedTrack) const;
    void apply(Snapshot next, CompoundEffectMonitorClient::ChangeDescription desc);

    std::vector<IdStamp> tracks_;
    IdStamp track_;
    unsigned flags_ = 0;
    std::vector<Zk::Ptr<EffectInstance_opu4h5a4j>> components_;
    std::vector<CompoundEffectMonitorClient*> clients_;
};
