// VobManager: the host's list of Vobs and of the open edits they stand on. One Vob per group
// name; attaching a client to a Vob is `open`, detaching it `close`.
#pragma once

#include <vector>

#include "host/Cookie.h"
#include "host/EditPtr.h"
#include "host/LightweightString.h"
#include "host/Vob.h"

class VobClient;

class VobManager {
public:
    static VobManager& instance();

    // Makes the edit known by its cookie, so that `create` can find it.
    void registerEdit(const EditPtr& edit);
    EditPtr findEdit(const Cookie& cookie) const;

    // A Vob on the edit in that group, made if there is none yet.
    Zk::Ptr<Vob> vobFor(const EditPtr& edit, const LightweightString<char>& group);

    void open(VobClient* client, Zk::Ptr<Vob> vob);
    // Attaches the client to the Vob of that group; false if there is none.
    bool open(VobClient* client, const LightweightString<char>& group);
    bool open(VobClient* client, int oldGroupId);
    // Makes a Vob for the edit with that cookie in that group and attaches the client; false if
    // the edit is not open.
    bool create(VobClient* client, const Cookie& cookie, const LightweightString<char>& group);
    bool create(VobClient* client, const Cookie& cookie, int oldGroupId);
    // Detaches the client; with `dropIfUnused` a Vob left without clients is forgotten.
    void close(VobClient* client, bool dropIfUnused);

    Vob* getVobWithCookie(const Cookie& cookie) const;
    const std::vector<Zk::Ptr<Vob>>& vobs() const { return vobs_; }
    // The open edits: those registered or with a Vob, until closed.
    const std::vector<EditPtr>& edits() const { return edits_; }
    // Forgets every Vob and closes every edit; for tests and program exit.
    void reset();
    // Closes an edit: its stored objects are let go and it is forgotten.
    void closeEdit(const EditPtr& edit);

private:
    std::vector<Zk::Ptr<Vob>> vobs_;
    std::vector<EditPtr> edits_;
};

// EasyBackup: a scoped undo step. The edit's state is kept as one step when it opens, and the
// changes announced while it lives are published together when the outermost one closes.
class EasyBackup {
public:
    explicit EasyBackup(const EditPtr& edit);
    ~EasyBackup();
    EasyBackup(const EasyBackup&) = delete;
    EasyBackup& operator=(const EasyBackup&) = delete;

private:
    EditPtr edit_;
};
