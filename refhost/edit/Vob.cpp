// Vobs, their clients and their manager; undo by snapshots of the edit.
#include "host/Vob.h"

#include <algorithm>

#include "host/CelEventPair.h"
#include "host/Edit.h"
#include "host/VobClient.h"
#include "host/VobManager.h"

namespace {
Vob* gRecordMachine = nullptr;
Vob* gPlayMachine = nullptr;
constexpr size_t kUndoLimit = 100;
} // namespace

Vob::Vob(const EditPtr& edit, const LightweightString<char>& group) : edit_(edit), group_(group) {
    if (edit_)
        time_ = edit_->getStartTime();
}

Vob::~Vob() {
    for (VobClient* c : clients_)
        c->vob_ = nullptr;
    if (gRecordMachine == this)
        gRecordMachine = nullptr;
    if (gPlayMachine == this)
        gPlayMachine = nullptr;
}

Cookie Vob::cookie() const {
    return edit_ ? edit_->cookie() : Cookie();
}

double Vob::getCurrentTime(int) const {
    return time_;
}

void Vob::setCurrentTime(double t) {
    time_ = t;
    setChangeDescription(EditModifications(), VobModification(0x2, t));
}

EditModule Vob::getEditModule() const {
    double in = getMarkTime(65535);
    auto out = marks_.find(2);
    if (in != 1e99 && out != marks_.end())
        return EditModule(edit_, std::min(in, out->second), std::max(in, out->second), focus_);
    if (edit_ && focus_.valid()) {
        CelEventPair e(edit_, focus_, time_);
        if (e.valid())
            return EditModule(edit_, e.editTime(), e.endEditTime(), focus_);
    }
    return EditModule(edit_, edit_ ? edit_->getStartTime() : 0.0, edit_ ? edit_->getEndTime() : 0.0, focus_);
}

bool Vob::anyUnjoinedCuts() const {
    if (!edit_)
        return false;
    for (int c = 0; c < edit_->numChans(); ++c) {
        const auto& evs = edit_->chan(c).cel->events();
        for (size_t i = 1; i < evs.size(); ++i)
            if (evs[i].kind == CelEvent::Material && evs[i - 1].kind == CelEvent::Material &&
                evs[i].strip == evs[i - 1].strip && valEqualsVal(evs[i].start, evs[i - 1].end))
                return true;
    }
    return false;
}

double Vob::getMarkTime(int chan) const {
    (void)chan; // marks are the edit's own, whatever channel is asked
    auto it = marks_.find(1);
    return it == marks_.end() ? 1e99 : it->second;
}

void Vob::setMarkTime(const IdStamp&, double t, int which) {
    if (t == 1e99)
        marks_.erase(which);
    else
        marks_[which] = t;
}

void Vob::setChangeDescription(const EditModifications& mods, const VobModification& vobMod) {
    // A client may close itself or others while it hears: work on a copy, skip the departed.
    std::vector<VobClient*> clients = clients_;
    Zk::Ptr<Vob> keep(this);
    for (VobClient* c : clients)
        if (std::find(clients_.begin(), clients_.end(), c) != clients_.end())
            c->handleModifications(mods, vobMod);
}

void Vob::makeBackup() {
    if (!edit_)
        return;
    Zk::Ptr<Edit> snap = Zk::make<Edit>();
    snap->copyStateFrom(*edit_);
    undo_.push_back(snap);
    if (undo_.size() > kUndoLimit)
        undo_.erase(undo_.begin());
    redo_.clear();
}

void Vob::restore(std::vector<Zk::Ptr<Edit>>& from, std::vector<Zk::Ptr<Edit>>& to) {
    Zk::Ptr<Edit> now = Zk::make<Edit>();
    now->copyStateFrom(*edit_);
    to.push_back(now);
    Zk::Ptr<Edit> back = from.back();
    from.pop_back();
    edit_->copyStateFrom(*back);
    edit_->addModification(EditModifications(EditModification(kModRestored, 0)), false);
    EditModifications mods(EditModification(kModRestored, 0));
    for (const Zk::Ptr<Vob>& v : VobManager::instance().vobs())
        if (v->edit_ == edit_)
            v->setChangeDescription(mods, VobModification(0));
}

bool Vob::undoRequest() {
    if (undo_.empty() || !edit_)
        return false;
    restore(undo_, redo_);
    return true;
}

bool Vob::redoRequest() {
    if (redo_.empty() || !edit_)
        return false;
    restore(redo_, undo_);
    return true;
}

Vob* Vob::getRecordMachine() {
    return gRecordMachine;
}
Vob* Vob::getPlayMachine() {
    return gPlayMachine;
}
void Vob::makeRecordMachine() {
    gRecordMachine = this;
}
void Vob::makePlayMachine() {
    gPlayMachine = this;
}

void Vob::attach(VobClient* c) {
    if (std::find(clients_.begin(), clients_.end(), c) == clients_.end())
        clients_.push_back(c);
    c->vob_ = this;
}

void Vob::detach(VobClient* c) {
    clients_.erase(std::remove(clients_.begin(), clients_.end(), c), clients_.end());
    if (c->vob_ == this)
        c->vob_ = nullptr;
}

VobClient::VobClient(Cookie cookie, Vob* vob, eClientPriority priority, eClientManagementDetails details)
    : cookie_(cookie), priority_(priority), details_(details) {
    if (vob)
        VobManager::instance().open(this, Zk::Ptr<Vob>(vob));
}

VobClient::~VobClient() {
    if (vob_)
        vob_->detach(this);
}

EditPtr VobClient::getEdit() const {
    return vob_ ? vob_->edit() : EditPtr();
}

void VobClient::handleModifications(const EditModifications&, const VobModification&) {
    ++heard_;
}

VobManager& VobManager::instance() {
    static VobManager m;
    return m;
}

void VobManager::registerEdit(const EditPtr& edit) {
    if (!edit || findEdit(edit->cookie()))
        return;
    edits_.push_back(edit);
}

EditPtr VobManager::findEdit(const Cookie& cookie) const {
    for (const EditPtr& e : edits_)
        if (e->cookie() == cookie)
            return e;
    return EditPtr();
}

Zk::Ptr<Vob> VobManager::vobFor(const EditPtr& edit, const LightweightString<char>& group) {
    for (const auto& v : vobs_)
        if (v->group() == group && v->edit() == edit)
            return v;
    registerEdit(edit);
    Zk::Ptr<Vob> v = Zk::make<Vob>(edit, group);
    vobs_.push_back(v);
    // Announced changes of the edit reach every Vob on it.
    Edit* raw = edit.get();
    edit->setPublisher([this, raw](const EditModifications& mods, unsigned vobFlags) {
        std::vector<Zk::Ptr<Vob>> on;
        for (const auto& each : vobs_)
            if (each->edit().get() == raw)
                on.push_back(each);
        for (const auto& each : on)
            each->setChangeDescription(mods, VobModification(vobFlags));
    });
    if (!Vob::getRecordMachine())
        v->makeRecordMachine();
    if (!Vob::getPlayMachine())
        v->makePlayMachine();
    return v;
}

void VobManager::open(VobClient* client, Zk::Ptr<Vob> vob) {
    if (!client || !vob)
        return;
    if (client->vob_ && client->vob_ != vob.get())
        client->vob_->detach(client);
    if (std::find(vobs_.begin(), vobs_.end(), vob) == vobs_.end())
        vobs_.push_back(vob);
    vob->attach(client);
}

bool VobManager::open(VobClient* client, const LightweightString<char>& group) {
    for (const auto& v : vobs_)
        if (v->group() == group) {
            open(client, v);
            return true;
        }
    return false;
}

bool VobManager::open(VobClient* client, int oldGroupId) {
    return open(client, stringFormat("%d", oldGroupId));
}

bool VobManager::create(VobClient* client, const Cookie& cookie, const LightweightString<char>& group) {
    EditPtr edit = findEdit(cookie);
    if (!edit)
        return false;
    open(client, vobFor(edit, group));
    return true;
}

bool VobManager::create(VobClient* client, const Cookie& cookie, int oldGroupId) {
    return create(client, cookie, stringFormat("%d", oldGroupId));
}

void VobManager::close(VobClient* client, bool dropIfUnused) {
    if (!client || !client->vob_)
        return;
    Vob* v = client->vob_;
    v->detach(client);
    if (!dropIfUnused || !v->clients().empty())
        return;
    EditPtr edit = v->edit();
    vobs_.erase(
        std::remove_if(vobs_.begin(), vobs_.end(), [v](const Zk::Ptr<Vob>& p) { return p.get() == v; }),
        vobs_.end());
    for (const auto& other : vobs_)
        if (other->edit() == edit)
            return;
    closeEdit(edit);
}

void VobManager::closeEdit(const EditPtr& edit) {
    if (!edit)
        return;
    // Views leave the managers stored in the edit before those go with it.
    for (const auto& v : vobs_)
        if (v->edit() == edit)
            v->setChangeDescription(EditModifications(), VobModification(0x8000));
    // Objects stored in the edit hold the edit in turn; closing it lets both go.
    edit->setPublisher(nullptr);
    edit->clearObjects();
    edits_.erase(std::remove(edits_.begin(), edits_.end(), edit), edits_.end());
}

Vob* VobManager::getVobWithCookie(const Cookie& cookie) const {
    for (const auto& v : vobs_)
        if (v->cookie() == cookie)
            return v.get();
    return nullptr;
}

void VobManager::reset() {
    std::vector<EditPtr> edits = edits_;
    for (const auto& v : vobs_)
        edits.push_back(v->edit());
    vobs_.clear();
    for (const auto& e : edits)
        closeEdit(e);
    edits_.clear();
}

EasyBackup::EasyBackup(const EditPtr& edit) : edit_(edit) {
    if (!edit_)
        return;
    for (const auto& v : VobManager::instance().vobs())
        if (v->edit() == edit_) {
            v->makeBackup();
            break;
        }
    edit_->holdAnnouncements();
}

EasyBackup::~EasyBackup() {
    if (edit_)
        edit_->releaseAnnouncements();
}
