// Vob: the host's object for one open edit, shared by every panel on it: the playhead, marks,
// undo history, and the publishing of changes to its clients.
#pragma once

#include <map>
#include <vector>

#include "host/Cookie.h"
#include "host/EditModule.h"
#include "host/EditPtr.h"
#include "host/EditTypes.h"
#include "host/iObject.h"

class VobClient;

class Vob : public iObject {
public:
    enum StateBits : unsigned { kPlaying = 0x4, kShuttling = 0x10 };

    Vob(const EditPtr& edit, const LightweightString<char>& group);
    ~Vob() override;

    const EditPtr& edit() const { return edit_; }
    const LightweightString<char>& group() const { return group_; }
    Cookie cookie() const;

    // The playhead. Accuracy 1 asks for a frame-exact time; the reference edit model keeps
    // times exactly, so both accuracies give the stored time.
    double getCurrentTime(int accuracy) const;
    // Moves the playhead without telling anyone.
    void storeCurrentTime(double t) { time_ = t; }
    // Moves the playhead and publishes the move (VobModification bit 1 with the time).
    void setCurrentTime(double t);

    // The region a new effect would take and the channel in focus: the marked region when both
    // marks are set, else the event under the playhead on the focused channel, else the edit.
    EditModule getEditModule() const;
    void setFocusChan(const IdStamp& chan) { focus_ = chan; }
    bool isReadOnly() const { return readOnly_; }
    void setReadOnly(bool r) { readOnly_ = r; }
    // True where a channel has a cut inside continuous material: two adjacent events of the same
    // material, the second starting where the first ended.
    bool anyUnjoinedCuts() const;

    // Marks: channel 65535 means the edit's own mark, which is the in mark.
    double getMarkTime(int chan) const;
    void setMarkTime(const IdStamp& chan, double t, int which);
    void clearMarks() { marks_.clear(); }

    // Publishes a change to every client, in the order they attached.
    void setChangeDescription(const EditModifications& mods, const VobModification& vobMod);

    // Undo: makeBackup keeps the edit's state as one step; undo and redo restore it and publish
    // the change as a restore (type 9).
    void makeBackup();
    bool undoRequest();
    bool redoRequest();
    size_t undoDepth() const { return undo_.size(); }
    size_t redoDepth() const { return redo_.size(); }

    // The Vob that records, and the one that plays; the most recent Vob that asked to be.
    static Vob* getRecordMachine();
    static Vob* getPlayMachine();
    void makeRecordMachine();
    void makePlayMachine();

    // Transport state: recording flag, state word (bits 0x4 playing, 0x10 shuttling).
    bool isRecording() const { return recording_; }
    void setRecording(bool r) { recording_ = r; }
    unsigned stateWord() const { return state_; }
    void setStateWord(unsigned s) { state_ = s; }

    const std::vector<VobClient*>& clients() const { return clients_; }
    // The first attached client whose idString is name; null if none.
    VobClient* findClient(const char* name) const;

private:
    friend class VobManager;
    friend class VobClient;
    void attach(VobClient* c);
    void detach(VobClient* c);
    void restore(std::vector<Zk::Ptr<Edit>>& from, std::vector<Zk::Ptr<Edit>>& to);

    EditPtr edit_;
    LightweightString<char> group_;
    double time_ = 0.0;
    IdStamp focus_;
    bool readOnly_ = false;
    bool recording_ = false;
    unsigned state_ = 0;
    std::map<int, double> marks_; // 1 in, 2 out
    std::vector<VobClient*> clients_;
    std::vector<Zk::Ptr<Edit>> undo_;
    std::vector<Zk::Ptr<Edit>> redo_;
};
