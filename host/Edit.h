// Edit: an open edit. Channels (video and audio, with subtypes, names and stereo groups) each
// carry a Cel time line; effect graphs are nodes linked by their inputs; the object store keeps
// Taggable objects by key and is saved with the edit.
#pragma once

#include <functional>
#include <map>
#include <unordered_map>
#include <string>
#include <vector>

#include "host/Cel.h"
#include "host/Cookie.h"
#include "host/EditModule.h"
#include "host/EditPtr.h"
#include "host/EditTypes.h"
#include "host/ShotVideoMetadata.h"
#include "host/TagBag.h"
#include "host/Vector.h"

class EffectInstance_opu4h5a4j;

struct EditChannel {
    IdStamp id;
    EditChanType type = kVideoChan;
    unsigned subtype = 1; // a bit: 1, 2, 4 or 8
    WString name;
    IdStamp stereoGroup; // audio channels of one group share it; invalid if none
    Zk::Ptr<Cel> cel;
};

struct EditMaterial {
    Cookie cookie;
    WString name;
    String source = "bars"; // "bars", "ramp", "grid", "noise", "tone" or "image"
    String file;            // for "image"
};

class Edit : public iObject {
public:
    Edit();
    ~Edit() override;

    // --- what the graph logic asks -------------------------------------------------------------
    void getChans(std::vector<IdStamp>& out, unsigned type, unsigned subtypeMask) const;
    void getChans(Vector<int>& out, unsigned type, unsigned subtypeMask) const;
    double getStartTime() const { return start_; }
    double getEndTime() const { return end_; }
    // The number of a channel, -1 if it is not in this edit.
    int getIdx(const IdStamp& chan) const;
    Zk::Ptr<Cel> get_edit_cel_p(int chan) const;
    EditChanType getChanType(int chan) const;
    unsigned getChanSubtype(int chan) const;
    WString getChanDisplayName(int chan) const;
    // The same by channel id. fmt bit 1 gives the channel's own name; with bit 2 a channel
    // without a name is called by its type and number ("A3"). A node's id names the first
    // channel whose time line uses the node. Empty for anything else.
    WString getChanDisplayName(const IdStamp& chan, unsigned fmt) const;
    EditChanType getChanType(const IdStamp& chan) const { return getChanType(getIdx(chan)); }
    // The channels of the stereo group that holds chan, in edit order; chan alone when it is in
    // no group; empty when it is no channel of the edit.
    std::vector<IdStamp> getGroupContainingChan(const IdStamp& chan) const;
    // The name of that group: its channels' display names joined by "+". With `brief` a group of
    // more than two channels is named by its first and last channel ("A1-A4").
    WString getGroupDisplayName(const IdStamp& chan, bool brief) const;
    // Records a change. With `announce` true it is published to the clients of the edit's
    // Vobs: at once, or when the outermost open undo step (EasyBackup) closes.
    void addModification(const EditModifications& mods, bool announce);
    // Who publishes announced changes; set by the Vob manager when a Vob opens on the edit.
    void setPublisher(std::function<void(const EditModifications&)> publisher) {
        publisher_ = std::move(publisher);
    }
    // Undo steps hold announcements back until the outermost one closes.
    void holdAnnouncements() { ++held_; }
    void releaseAnnouncements();
    bool hasStereoscopicVideo() const { return stereoscopic_; }
    // Marks the edit as needing a save, or as saved.
    void setDirty(bool dirty) { dirty_ = dirty; }
    bool isDirty() const { return dirty_; }

    // The store of Taggable objects by key, saved with the edit.
    Zk::Ptr<Taggable> openObjectInternal(const String& key) const;
    void bindObjectToEdit(Zk::Ptr<Taggable> obj, const String& key);
    const std::map<std::string, Zk::Ptr<Taggable>>& objects() const { return objects_; }
    void clearObjects() { objects_.clear(); }
    TagBag& tagBag() { return tagBag_; }
    const TagBag& tagBag() const { return tagBag_; }

    // --- the model, for the host's own code ----------------------------------------------------
    const Cookie& cookie() const { return cookie_; }
    void setCookie(const Cookie& c) { cookie_ = c; }
    const WString& name() const { return name_; }
    void setName(const WString& n) { name_ = n; }
    void setTimes(double start, double end) {
        start_ = start;
        end_ = end;
    }
    void setStereoscopic(bool s) { stereoscopic_ = s; }
    // The picture the edit is made of.
    const ShotVideoMetadata& getVideoMetadata() const { return videoMetadata_; }
    void setVideoMetadata(const ShotVideoMetadata& m) { videoMetadata_ = m; }

    int numChans() const { return static_cast<int>(chans_.size()); }
    const EditChannel& chan(int i) const { return chans_[static_cast<size_t>(i)]; }
    EditChannel& chan(int i) { return chans_[static_cast<size_t>(i)]; }
    int addChannel(EditChannel c);

    // Every node of the edit's graphs, by id, those inside compound effects included.
    Zk::Ptr<FXGraphNodeBase> findNode(const IdStamp& id) const;
    void addNode(Zk::Ptr<FXGraphNodeBase> node);
    void removeNode(const IdStamp& id);
    const std::map<IdStamp, Zk::Ptr<FXGraphNodeBase>, IdStampLess>& nodes() const { return nodes_; }
    // A fresh id for a new node or channel.
    IdStamp newId();
    // A fresh id for an internal track of a graph, in a range of its own (0.1.n).
    IdStamp newTrackId();
    // Makes sure later internal track ids do not repeat one read from a file.
    void noteTrackId(const IdStamp& id);

    std::vector<EditMaterial>& materials() { return materials_; }
    const std::vector<EditMaterial>& materials() const { return materials_; }
    const EditMaterial* findMaterial(const Cookie& c) const;

    // The content of channel `chan` at `time`: its event index, or -1 for black.
    int eventAt(int chan, double time) const;
    // Changes recorded with announce true since the last take.
    EditModifications takeAnnouncedModifications();
    const EditModifications& pendingModifications() const { return announced_; }
    // A counter raised by every recorded change.
    unsigned changeCount() const { return changeCount_; }

    // Copies the whole state of another edit: channels, nodes (deep), materials and objects.
    // Used by undo to restore a snapshot; node objects are copied so that the snapshot stays
    // apart from later changes.
    void copyStateFrom(const Edit& other);

private:
    Cookie cookie_;
    WString name_;
    double start_ = 0.0;
    double end_ = 0.0;
    bool stereoscopic_ = false;
    ShotVideoMetadata videoMetadata_;
    bool dirty_ = false;
    std::vector<EditChannel> chans_;
    // Channel numbers by id for the first `indexedChans_` channels; channels are appended or
    // replaced all at once, and their ids are never changed in place.
    mutable std::unordered_map<IdStamp, int, IdStampHash> chanIndex_;
    mutable size_t indexedChans_ = 0;
    std::map<IdStamp, Zk::Ptr<FXGraphNodeBase>, IdStampLess> nodes_;
    std::vector<IdStamp> compounds_; // the nodes of nodes_ that are compound effects
    std::vector<EditMaterial> materials_;
    std::map<std::string, Zk::Ptr<Taggable>> objects_;
    TagBag tagBag_;
    EditModifications announced_;
    std::function<void(const EditModifications&)> publisher_;
    int held_ = 0;
    unsigned changeCount_ = 0;
    uint32_t nextId_ = 1;
    uint32_t nextTrack_ = 1;
};
