// The reference edit model: channels with their time lines, the graph nodes, materials and the
// store of objects.
#include "host/Edit.h"

#include <algorithm>
#include <map>
#include <string>

#include "host/AliasedInputEffect.h"
#include "host/CompoundEffect.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/ImageImportEffect.h"
#include "host/MaterialUsageNode.h"

EditPtr::EditPtr(Edit* e) : edit_(e) {
    if (edit_)
        edit_->addRef();
}
EditPtr::EditPtr(const EditPtr& o) : EditPtr(o.edit_) {}
EditPtr& EditPtr::operator=(const EditPtr& o) {
    return *this = o.edit_;
}
EditPtr& EditPtr::operator=(Edit* e) {
    if (e)
        e->addRef();
    Edit* old = edit_;
    edit_ = e;
    if (old)
        old->release();
    return *this;
}
EditPtr::~EditPtr() {
    if (edit_)
        edit_->release();
}

int Cel::eventIndexAt(double time) const {
    // The event whose span [start, end) holds the time; events are sorted and do not overlap.
    auto it = std::upper_bound(events_.begin(), events_.end(), time,
                               [](double t, const CelEvent& e) { return t < e.start; });
    if (it == events_.begin())
        return -1;
    --it;
    if (time < it->end)
        return static_cast<int>(it - events_.begin());
    return -1;
}

namespace {
// Every edit alive in the process, for opening by cookie.
std::vector<Edit*>& liveEdits() {
    static auto* edits = new std::vector<Edit*>;
    return *edits;
}
} // namespace

Edit::Edit() {
    liveEdits().push_back(this);
}
Edit::~Edit() {
    auto& edits = liveEdits();
    edits.erase(std::remove(edits.begin(), edits.end(), this), edits.end());
    // Graphs may hold rings of counted links; an edit that goes breaks them so that its nodes go
    // too. A node still held elsewhere keeps its inputs' tracks but loses their links.
    for (auto& [id, node] : nodes_)
        for (auto& in : node->inputs())
            in.node = nullptr;
}

void EditPtr::i_open(const Cookie& cookie, eEditOpenBehaviour) {
    *this = nullptr;
    if (!cookie.valid())
        return;
    for (Edit* e : liveEdits())
        if (e->cookie() == cookie && e->refCount() > 0) {
            *this = e;
            return;
        }
    // A source clip opens as an edit of its own, named after the clip: the edit cookie of a
    // material of an open edit. It is made once and kept for the process.
    if (cookie.kind() != Cookie::EditKind)
        return;
    static std::map<std::string, EditPtr> sources;
    for (Edit* e : std::vector<Edit*>(liveEdits())) {
        for (const EditMaterial& m : e->materials()) {
            if (m.cookie.id() != cookie.id())
                continue;
            EditPtr& source = sources[cookie.asString().c_str()];
            if (!source) {
                source = new Edit();
                source->setCookie(cookie);
            }
            source->setName(m.name);
            *this = source;
            return;
        }
    }
}

void Edit::getChans(std::vector<IdStamp>& out, unsigned type, unsigned subtypeMask) const {
    for (const auto& c : chans_)
        if ((type == kAnyChanType || c.type == type) && (c.subtype & subtypeMask))
            out.push_back(c.id);
}

void Edit::getChans(Vector<int>& out, unsigned type, unsigned subtypeMask) const {
    for (size_t i = 0; i < chans_.size(); ++i)
        if ((type == kAnyChanType || chans_[i].type == type) && (chans_[i].subtype & subtypeMask))
            out.append(static_cast<int>(i));
}

int Edit::getIdx(const IdStamp& chan) const {
    if (indexedChans_ != chans_.size()) {
        // Channels are only appended, or all replaced (which resets the count): index the new.
        if (indexedChans_ > chans_.size()) {
            chanIndex_.clear();
            indexedChans_ = 0;
        }
        for (size_t i = indexedChans_; i < chans_.size(); ++i)
            chanIndex_.emplace(chans_[i].id, static_cast<int>(i)); // the first of equal ids wins
        indexedChans_ = chans_.size();
    }
    auto it = chanIndex_.find(chan);
    return it == chanIndex_.end() ? -1 : it->second;
}

Zk::Ptr<Cel> Edit::get_edit_cel_p(int chan) const {
    if (chan < 0 || chan >= numChans())
        return nullptr;
    return chans_[static_cast<size_t>(chan)].cel;
}

EditChanType Edit::getChanType(int chan) const {
    return chan < 0 || chan >= numChans() ? kAnyChanType : chans_[static_cast<size_t>(chan)].type;
}

unsigned Edit::getChanSubtype(int chan) const {
    return chan < 0 || chan >= numChans() ? 0 : chans_[static_cast<size_t>(chan)].subtype;
}

WString Edit::getChanDisplayName(int chan) const {
    return chan < 0 || chan >= numChans() ? WString() : chans_[static_cast<size_t>(chan)].name;
}

void Edit::addModification(const EditModifications& mods, bool announce) {
    addModification(mods, announce, 0);
}

void Edit::addModification(const EditModifications& mods, bool announce, unsigned vobFlags) {
    ++changeCount_;
    if (!announce)
        return;
    announced_.add(mods);
    announcedFlags_ |= vobFlags;
    if (held_ == 0 && publisher_) {
        const unsigned flags = announcedFlags_;
        publisher_(takeAnnouncedModifications(), flags);
    }
}

void Edit::releaseAnnouncements() {
    if (held_ > 0 && --held_ == 0 && publisher_ && !announced_.empty()) {
        const unsigned flags = announcedFlags_;
        publisher_(takeAnnouncedModifications(), flags);
    }
}

EditModifications Edit::takeAnnouncedModifications() {
    EditModifications out = announced_;
    announced_ = EditModifications();
    announcedFlags_ = 0;
    return out;
}

Zk::Ptr<Taggable> Edit::openObjectInternal(const String& key) const {
    auto it = objects_.find(key.str());
    return it == objects_.end() ? nullptr : it->second;
}

void Edit::bindObjectToEdit(Zk::Ptr<Taggable> obj, const String& key) {
    if (obj)
        objects_[key.str()] = std::move(obj);
    else
        objects_.erase(key.str());
}

int Edit::addChannel(EditChannel c) {
    if (!c.cel)
        c.cel = Zk::make<Cel>();
    if (!c.id.valid())
        c.id = newId();
    chans_.push_back(std::move(c));
    return numChans() - 1;
}

Zk::Ptr<FXGraphNodeBase> Edit::findNode(const IdStamp& id) const {
    auto it = nodes_.find(id);
    if (it != nodes_.end())
        return it->second;
    for (const IdStamp& c : compounds_) {
        auto at = nodes_.find(c);
        auto* compound = at == nodes_.end() ? nullptr : dynamic_cast<CompoundEffect*>(at->second.get());
        if (compound && compound->innerEdit())
            if (Zk::Ptr<FXGraphNodeBase> n = compound->innerEdit()->findNode(id))
                return n;
    }
    return nullptr;
}

void Edit::addNode(Zk::Ptr<FXGraphNodeBase> node) {
    if (!node)
        return;
    IdStamp id = node->getId();
    if (id.a() == 0 && id.b() == 0 && id.c() >= nextId_)
        nextId_ = id.c() + 1;
    tagBag_.add(id, Zk::Ptr<Taggable>(node.get()));
    compounds_.erase(std::remove(compounds_.begin(), compounds_.end(), id), compounds_.end());
    if (dynamic_cast<CompoundEffect*>(node.get()))
        compounds_.push_back(id);
    nodes_[id] = std::move(node);
}

void Edit::removeNode(const IdStamp& id) {
    nodes_.erase(id);
    tagBag_.remove(id);
    compounds_.erase(std::remove(compounds_.begin(), compounds_.end(), id), compounds_.end());
}

IdStamp Edit::newId() {
    // Fresh ids live in the (0, 0, n) range; ids read from files are skipped over.
    for (;;) {
        IdStamp id(0, 0, nextId_++);
        if (!findNode(id) && getIdx(id) < 0)
            return id;
    }
}

IdStamp Edit::newTrackId() {
    return IdStamp(0, 1, nextTrack_++);
}

void Edit::noteTrackId(const IdStamp& id) {
    if (id.a() == 0 && id.b() == 1 && id.c() >= nextTrack_)
        nextTrack_ = id.c() + 1;
}

const EditMaterial* Edit::findMaterial(const Cookie& c) const {
    for (const auto& m : materials_)
        if (m.cookie == c)
            return &m;
    return nullptr;
}

int Edit::eventAt(int chan, double time) const {
    if (chan < 0 || chan >= numChans())
        return -1;
    const Cel& cel = *chans_[static_cast<size_t>(chan)].cel;
    int i = cel.eventIndexAt(time);
    if (i < 0 || cel.events()[static_cast<size_t>(i)].kind == CelEvent::Black)
        return -1;
    return i;
}

namespace {

Zk::Ptr<FXGraphNodeBase> shallowCopy(const FXGraphNodeBase& n) {
    FXGraphNodeBase* copy = nullptr;
    if (auto* m = dynamic_cast<const MaterialUsageNode*>(&n))
        copy = new MaterialUsageNode(*m);
    else if (auto* i = dynamic_cast<const ImageImportEffect*>(&n))
        copy = new ImageImportEffect(*i);
    else if (auto* a = dynamic_cast<const AliasedInputEffect*>(&n))
        copy = new AliasedInputEffect(*a);
    else if (auto* c = dynamic_cast<const CompoundEffect*>(&n)) {
        // A snapshot keeps its own copy of the nested edit, apart from later changes.
        auto* compound = new CompoundEffect(*c);
        if (c->innerEdit()) {
            EditPtr inner(new Edit());
            inner->copyStateFrom(*c->innerEdit());
            compound->setInnerEdit(inner);
        }
        copy = compound;
    } else if (auto* e = dynamic_cast<const EffectInstance_opu4h5a4j*>(&n))
        copy = new EffectInstance_opu4h5a4j(*e);
    else
        copy = new FXGraphNodeBase(n);
    return Zk::Ptr<FXGraphNodeBase>(copy);
}

} // namespace

void Edit::copyStateFrom(const Edit& other) {
    if (&other == this)
        return;
    cookie_ = other.cookie_;
    name_ = other.name_;
    start_ = other.start_;
    end_ = other.end_;
    stereoscopic_ = other.stereoscopic_;
    materials_ = other.materials_;
    objects_ = other.objects_;
    nextId_ = other.nextId_;
    nextTrack_ = other.nextTrack_;

    // Nodes are copied, then their links are pointed at the copies.
    std::map<const FXGraphNodeBase*, Zk::Ptr<FXGraphNodeBase>> copies;
    nodes_.clear();
    compounds_ = other.compounds_;
    tagBag_ = TagBag();
    for (const auto& [id, node] : other.nodes_) {
        Zk::Ptr<FXGraphNodeBase> c = shallowCopy(*node);
        copies[node.get()] = c;
        nodes_[id] = c;
        tagBag_.add(id, Zk::Ptr<Taggable>(c.get()));
    }
    auto mapped = [&](const Zk::Ptr<FXGraphNodeBase>& p) -> Zk::Ptr<FXGraphNodeBase> {
        if (!p)
            return nullptr;
        auto it = copies.find(p.get());
        return it == copies.end() ? p : it->second;
    };
    for (auto& [id, node] : nodes_)
        for (auto& in : node->inputs())
            in.node = mapped(in.node);

    chans_.clear();
    indexedChans_ = 0;
    chanIndex_.clear();
    for (const auto& c : other.chans_) {
        EditChannel nc = c;
        nc.cel = Zk::make<Cel>();
        for (const auto& ev : c.cel->events()) {
            CelEvent ne = ev;
            ne.node = mapped(ev.node);
            nc.cel->events().push_back(ne);
        }
        chans_.push_back(std::move(nc));
    }
    ++changeCount_;
}
