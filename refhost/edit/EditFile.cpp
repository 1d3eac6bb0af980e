// Reading and writing edits as JSON.
#include "refhost/edit/EditFile.h"

#include <cmath>
#include <fstream>
#include <set>
#include <sstream>
#include <sys/stat.h>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/AliasedInputEffect.h"
#include "host/CompoundEffect.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/ImageImportEffect.h"
#include "host/MaterialUsageNode.h"
#include "refhost/core/Base64.h"
#include "refhost/json/Json.h"
#include "refhost/json/MemberSink.h"

namespace EditFile {

namespace {

ObjectCodec& codec() {
    static ObjectCodec c;
    return c;
}

class StreamedLoad;

// Nodes by id in one open-addressed array, for the many lookups of a load: a node tree of the
// standard library costs a cache miss per level of a large edit.
class NodeTable {
public:
    FXGraphNodeBase* find(const IdStamp& id) const { return slots_.empty() ? nullptr : slotFor(id).node; }
    void add(const IdStamp& id, FXGraphNodeBase* node) {
        if ((count_ + 1) * 2 > slots_.size())
            grow();
        Slot& s = slotFor(id);
        if (!s.node)
            ++count_;
        s = {id, node};
    }

private:
    struct Slot {
        IdStamp id;
        FXGraphNodeBase* node = nullptr; // null: free
    };
    const Slot& slotFor(const IdStamp& id) const {
        const size_t mask = slots_.size() - 1;
        for (size_t i = IdStampMixHash::mix(id) & mask;; i = (i + 1) & mask)
            if (!slots_[i].node || slots_[i].id == id)
                return slots_[i];
    }
    Slot& slotFor(const IdStamp& id) { return const_cast<Slot&>(std::as_const(*this).slotFor(id)); }
    void grow() {
        std::vector<Slot> old(std::max<size_t>(64, slots_.size() * 2));
        old.swap(slots_);
        for (const Slot& s : old)
            if (s.node)
                slotFor(s.id) = s;
    }

    std::vector<Slot> slots_;
    size_t count_ = 0;
};

// Turns model faults into "NAME:LINE:COLUMN: message" at the value that carries them.
class Loader {
public:
    Loader(const std::string& name, Edit& edit) : name_(name), edit_(edit) {}

    bool load(const json::Value& root) {
        if (!head(root))
            return false;
        if (const json::Value* nodes = root.find("nodes"))
            if (!nodeList(*nodes))
                return false;
        return tail(root);
    }

    // The edit's own fields and its materials: what the nodes rely on.
    bool head(const json::Value& root) {
        if (!root.isObject())
            return fail(root, "expected an object at the top of an edit file");
        const json::Value* fmt = root.find("format");
        if (fmt && (!fmt->isString() || fmt->asString() != "nodedesk-edit"))
            return fail(*fmt, "expected \"nodedesk-edit\" as the format");
        if (const json::Value* v = root.find("version")) {
            if (!v->isNumber() || v->asNumber() != 1)
                return fail(*v, "expected version 1");
        }
        std::string name;
        if (!optString(root, "name", name))
            return false;
        edit_.setName(toWide(String(name)));
        std::string cookie = "E0.0.1";
        if (!optString(root, "cookie", cookie))
            return false;
        Cookie c = Cookie::fromString(String(cookie));
        if (!c.valid() || c.kind() != Cookie::EditKind)
            return fail(*root.find("cookie"), "expected an edit cookie such as \"E1.0.1\"");
        edit_.setCookie(c);
        bool stereo = false;
        if (!optBool(root, "stereoscopic", stereo))
            return false;
        edit_.setStereoscopic(stereo);

        if (const json::Value* mats = root.find("materials"))
            return materials(*mats);
        return true;
    }

    // What follows the nodes: channels, links between nodes, times and stored objects.
    bool tail(const json::Value& root) {
        if (const json::Value* chans = root.find("channels"))
            if (!channels(*chans))
                return false;
        if (!resolveLinks())
            return false;

        double start = 0.0, end = 0.0;
        for (int i = 0; i < edit_.numChans(); ++i)
            end = std::max(end, edit_.chan(i).cel->get_end_time());
        if (!optNumber(root, "start", start) || !optNumber(root, "end", end))
            return false;
        if (end < start) {
            const json::Value* at = root.find("end") ? root.find("end") : root.find("start");
            return fail(*at, "expected the end of the edit at or after its start");
        }
        edit_.setTimes(start, end);

        if (const json::Value* objs = root.find("objects"))
            if (!objects(*objs))
                return false;
        return true;
    }

    bool nodeList(const json::Value& list) {
        if (!list.isArray())
            return fail(list, "expected an array of nodes");
        for (const auto& n : list.items())
            if (!node(n))
                return false;
        return true;
    }

    std::string error;

private:
    friend class StreamedLoad;

    // Where a value stood in the text, kept for faults found after the value is gone.
    struct Place {
        int line = 0;
        int column = 0;
    };
    static Place placeOf(const json::Value& v) { return {v.line, v.column}; }

    bool fail(const json::Value& at, const std::string& what) { return fail(placeOf(at), what); }
    bool fail(Place at, const std::string& what) {
        std::ostringstream s;
        s << name_ << ':' << at.line << ':' << at.column << ": " << what;
        error = s.str();
        return false;
    }
    bool optString(const json::Value& obj, const char* key, std::string& out) {
        const json::Value* v = obj.find(key);
        if (!v)
            return true;
        if (!v->isString())
            return fail(*v, std::string("expected a string for \"") + key + "\"");
        out = v->asString();
        return true;
    }
    bool optNumber(const json::Value& obj, const char* key, double& out) {
        const json::Value* v = obj.find(key);
        if (!v)
            return true;
        if (!v->isNumber())
            return fail(*v, std::string("expected a number for \"") + key + "\"");
        out = v->asNumber();
        return true;
    }
    bool optBool(const json::Value& obj, const char* key, bool& out) {
        const json::Value* v = obj.find(key);
        if (!v)
            return true;
        if (!v->isBool())
            return fail(*v, std::string("expected true or false for \"") + key + "\"");
        out = v->asBool();
        return true;
    }
    bool id(const json::Value& obj, const char* key, IdStamp& out, bool required) {
        const json::Value* v = obj.find(key);
        if (!v) {
            if (required)
                return fail(obj, std::string("expected an id \"") + key + "\"");
            return true;
        }
        if (!v->isString() || !(out = IdStamp(v->asString().c_str())).valid())
            return fail(*v, std::string("expected an id such as \"1.0.7\" for \"") + key + "\"");
        return true;
    }

    bool materials(const json::Value& list) {
        if (!list.isArray())
            return fail(list, "expected an array of materials");
        for (const auto& m : list.items()) {
            if (!m.isObject())
                return fail(m, "expected a material object");
            EditMaterial mat;
            std::string cookie, name, source = "bars", file;
            if (!optString(m, "cookie", cookie) || !optString(m, "name", name) ||
                !optString(m, "source", source) || !optString(m, "file", file))
                return false;
            mat.cookie = Cookie::fromString(String(cookie));
            if (!mat.cookie.valid() || mat.cookie.kind() != Cookie::MaterialKind)
                return fail(m, "expected a material cookie such as \"M1.0.1\"");
            static const std::set<std::string> sources{"bars", "ramp",  "grid", "noise",
                                                       "tone", "slate", "image"};
            if (!sources.count(source))
                return fail(*m.find("source"),
                            "expected a source of bars, ramp, grid, noise, tone, slate or image");
            if (edit_.findMaterial(mat.cookie))
                return fail(m, "material " + cookie + " is defined twice");
            mat.name = toWide(String(name));
            mat.source = String(source);
            mat.file = String(file);
            edit_.materials().push_back(mat);
        }
        return true;
    }

    Zk::Ptr<MaterialUsageNode> materialNode(const json::Value& at, const IdStamp& nodeId,
                                            const std::string& cookie, bool& ok) {
        Cookie c = Cookie::fromString(String(cookie));
        const EditMaterial* mat = edit_.findMaterial(c);
        if (!mat) {
            ok = fail(at, "material " + cookie + " is not defined");
            return nullptr;
        }
        auto node = Zk::make<MaterialUsageNode>(nodeId, c);
        node->setName(mat->name);
        node->setSource(mat->source);
        node->setFile(mat->file);
        ok = true;
        return node;
    }

    bool node(const json::Value& n) {
        if (!n.isObject())
            return fail(n, "expected a node object");
        IdStamp nid;
        if (!id(n, "id", nid, true))
            return false;
        // The edit is new and events have added nothing yet: a node is one of the list's or
        // inside a compound of it.
        if (made_.find(nid) || (madeCompound_ && edit_.findNode(nid)))
            return fail(*n.find("id"), "node " + nid.asString().str() + " is defined twice");
        std::string kind = "effect", name, tag, file;
        if (!optString(n, "kind", kind) || !optString(n, "name", name) || !optString(n, "tag", tag) ||
            !optString(n, "file", file))
            return false;
        Zk::Ptr<FXGraphNodeBase> node;
        if (kind == "material") {
            std::string mat;
            if (!optString(n, "material", mat))
                return false;
            bool ok;
            node = materialNode(n, nid, mat, ok);
            if (!ok)
                return false;
        } else if (kind == "image") {
            auto img = Zk::make<ImageImportEffect>(nid);
            img->setFile(String(file));
            node = img;
        } else if (kind == "alias") {
            auto alias = Zk::make<AliasedInputEffect>(nid);
            IdStamp of;
            if (!id(n, "of", of, true))
                return false;
            alias->setAliasOf(of);
            aliases_.push_back({placeOf(n), of});
            node = alias;
        } else if (kind == "compound") {
            if (!(node = compound(n, nid)))
                return false;
            madeCompound_ = true;
        } else if (kind == "effect") {
            if (tag.empty())
                return fail(n, "expected a \"tag\" naming the effect's type");
            node = Zk::make<EffectInstance_opu4h5a4j>(nid);
        } else {
            return fail(*n.find("kind"), "expected a kind of effect, image, alias, compound or material");
        }
        if (!tag.empty())
            node->setTagTypeId(shared(tags_, tag, [](const std::string& t) { return String(t); }));
        if (!name.empty())
            node->setName(shared(names_, name, [](const std::string& t) { return toWide(String(t)); }));
        bool audio = false;
        if (!optBool(n, "audio", audio))
            return false;
        node->setChanType(audio ? kAudioChan : kVideoChan);
        if (auto* fx = dynamic_cast<EffectInstance_opu4h5a4j*>(node.get())) {
            bool enabled = true;
            if (!optBool(n, "enabled", enabled))
                return false;
            fx->setEnabled(enabled);
            if (const json::Value* params = n.find("params")) {
                if (!params->isObject())
                    return fail(*params, "expected an object of numeric parameters");
                for (const auto& [k, v] : params->members()) {
                    if (!v.isNumber())
                        return fail(v, "expected a number for parameter \"" + k + "\"");
                    fx->setParam(k, v.asNumber());
                }
            }
        }
        if (const json::Value* ins = n.find("inputs")) {
            if (!ins->isArray())
                return fail(*ins, "expected an array of inputs");
            if (!dynamic_cast<EffectInstance_opu4h5a4j*>(node.get()) || kind == "image" || kind == "alias")
                return fail(*ins, "only effects have inputs");
            node->setNumInputs(static_cast<unsigned>(ins->items().size()));
            for (size_t i = 0; i < ins->items().size(); ++i) {
                const json::Value& in = ins->items()[i];
                if (!in.isObject())
                    return fail(in, "expected an input object");
                FXGraphNodeBase::Input& slot = node->input(static_cast<unsigned>(i));
                if (!optBool(in, "ghost", slot.ghost))
                    return false;
                // A slot named without a track gets an internal one; "track": null has none.
                auto* inner = dynamic_cast<CompoundEffect*>(node.get());
                if (const json::Value* t = in.find("track")) {
                    if (!t->isNull() && !id(in, "track", slot.track, false))
                        return false;
                    if (inner && slot.track.valid() && inner->innerEdit()->getIdx(slot.track) < 0)
                        return fail(*t, "expected a channel of the compound's inner edit");
                    if (slot.track.valid() && !inner)
                        tracks_.push_back({placeOf(*t), slot.track});
                } else {
                    slot.track = IdStamp();
                    unnamedTracks_.push_back(&slot);
                }
                if (in.find("node")) {
                    IdStamp target;
                    if (!id(in, "node", target, false))
                        return false;
                    links_.push_back({placeOf(in), node, static_cast<unsigned>(i), target});
                }
            }
        }
        edit_.addNode(node);
        made_.add(nid, node.get());
        return true;
    }

    // What the edit's findNode gives, sooner for the nodes of the list.
    Zk::Ptr<FXGraphNodeBase> findNode(const IdStamp& id) const {
        FXGraphNodeBase* made = made_.find(id);
        return made ? Zk::Ptr<FXGraphNodeBase>(made) : edit_.findNode(id);
    }

    // A compound effect carries its nested edit in "edit", read as an edit of the same form.
    Zk::Ptr<FXGraphNodeBase> compound(const json::Value& n, const IdStamp& nid) {
        auto node = Zk::make<CompoundEffect>(nid);
        double offset = 0.0;
        if (!optNumber(n, "offset", offset))
            return nullptr;
        node->setTimeOffset(offset);
        const json::Value* inner = n.find("edit");
        if (!inner) {
            fail(n, "expected the nested \"edit\" of a compound effect");
            return nullptr;
        }
        EditPtr innerEdit(new Edit());
        Loader sub(name_, *innerEdit);
        if (!sub.load(*inner)) {
            error = sub.error;
            return nullptr;
        }
        node->setInnerEdit(innerEdit);
        return node;
    }

    bool channels(const json::Value& list) {
        if (!list.isArray())
            return fail(list, "expected an array of channels");
        for (const auto& c : list.items()) {
            if (!c.isObject())
                return fail(c, "expected a channel object");
            EditChannel ch;
            if (!id(c, "id", ch.id, true) || !id(c, "group", ch.stereoGroup, false))
                return false;
            if (edit_.getIdx(ch.id) >= 0)
                return fail(*c.find("id"), "channel " + ch.id.asString().str() + " is defined twice");
            std::string type = "video", name;
            if (!optString(c, "type", type) || !optString(c, "name", name))
                return false;
            if (type == "video")
                ch.type = kVideoChan;
            else if (type == "audio")
                ch.type = kAudioChan;
            else
                return fail(*c.find("type"), "expected a channel type of video or audio");
            double sub = 1;
            if (!optNumber(c, "subtype", sub))
                return false;
            if (sub != 1 && sub != 2 && sub != 4 && sub != 8)
                return fail(*c.find("subtype"), "expected a subtype of 1, 2, 4 or 8");
            ch.subtype = static_cast<unsigned>(sub);
            ch.name = toWide(String(name));
            ch.cel = Zk::make<Cel>();
            if (const json::Value* evs = c.find("events"))
                if (!events(*evs, ch))
                    return false;
            edit_.addChannel(std::move(ch));
        }
        return true;
    }

    bool events(const json::Value& list, EditChannel& ch) {
        if (!list.isArray())
            return fail(list, "expected an array of events");
        double lastEnd = -1e300;
        for (const auto& e : list.items()) {
            if (!e.isObject())
                return fail(e, "expected an event object");
            CelEvent ev;
            const json::Value* s = e.find("start");
            const json::Value* en = e.find("end");
            if (!s || !en || !s->isNumber() || !en->isNumber())
                return fail(e, "expected numbers \"start\" and \"end\" for an event");
            ev.start = s->asNumber();
            ev.end = en->asNumber();
            if (!(ev.end > ev.start))
                return fail(*en, "expected an event's end after its start");
            if (ev.start < lastEnd)
                return fail(*s, "expected events in time order without overlap");
            lastEnd = ev.end;
            if (const json::Value* m = e.find("material")) {
                if (!m->isString())
                    return fail(*m, "expected a material cookie");
                IdStamp nid;
                if (!id(e, "node", nid, false))
                    return false;
                if (!nid.valid())
                    nid = edit_.newId();
                // Events may share one material node (an effect removed from between two cuts
                // hands both its events the same source); the second names the first's node.
                Zk::Ptr<MaterialUsageNode> node;
                if (Zk::Ptr<FXGraphNodeBase> known = edit_.findNode(nid)) {
                    node = Zk::dynamicCast<MaterialUsageNode>(known);
                    if (!node || !inEvents_.count(node.get()) ||
                        node->material() != Cookie::fromString(String(m->asString())))
                        return fail(e, "node " + nid.asString().str() + " is defined twice");
                } else {
                    bool ok;
                    node = materialNode(*m, nid, m->asString(), ok);
                    if (!ok)
                        return false;
                    edit_.addNode(node);
                    inEvents_.insert(node.get());
                }
                ev.kind = CelEvent::Material;
                ev.strip = node->material();
                ev.node = node;
                if (ch.type == kAudioChan)
                    node->setChanType(kAudioChan);
            } else if (e.find("graph")) {
                IdStamp root;
                if (!id(e, "graph", root, true))
                    return false;
                ev.node = edit_.findNode(root);
                if (!ev.node)
                    return fail(*e.find("graph"), "node " + root.asString().str() + " is not defined");
                ev.kind = CelEvent::Graph;
                std::string cookie = "G" + root.asString().str();
                if (!optString(e, "cookie", cookie))
                    return false;
                ev.strip = Cookie::fromString(String(cookie));
                if (!ev.strip.isEffectGraph())
                    return fail(*e.find("cookie"), "expected an effect graph cookie such as \"G5.0.1\"");
            } else {
                bool black = false;
                if (!optBool(e, "black", black))
                    return false;
                if (!black)
                    return fail(e, "expected \"material\", \"graph\" or \"black\": true in an event");
                ev.kind = CelEvent::Black;
            }
            ch.cel->events().push_back(ev);
        }
        return true;
    }

    bool resolveLinks() {
        for (const auto& l : links_) {
            Zk::Ptr<FXGraphNodeBase> target = findNode(l.target);
            if (!target)
                return fail(l.at, "node " + l.target.asString().str() + " is not defined");
            l.node->input(l.input).node = target;
        }
        for (const auto& a : aliases_)
            if (!edit_.findNode(a.of))
                return fail(a.at,
                            "the alias repeats node " + a.of.asString().str() + ", which is not defined");
        for (const auto& t : tracks_) {
            edit_.noteTrackId(t.of);
            if (edit_.getIdx(t.of) < 0 && !(t.of.a() == 0 && t.of.b() == 1))
                return fail(t.at, "track " + t.of.asString().str() +
                                      " is neither a channel of the edit nor an internal track (0.1.n)");
        }
        for (FXGraphNodeBase::Input* slot : unnamedTracks_)
            slot->track = edit_.newTrackId();
        return true;
    }

    bool objects(const json::Value& objs) {
        if (!objs.isObject())
            return fail(objs, "expected an object of stored objects");
        for (const auto& [key, v] : objs.members()) {
            if (!v.isString())
                return fail(v, "expected base64 text for object \"" + key + "\"");
            std::string bytes;
            if (!base64Decode(v.asString(), bytes))
                return fail(v, "expected base64 text for object \"" + key + "\"");
            if (!codec().unpack)
                continue;
            std::string why;
            if (!codec().unpack(edit_, key, bytes, why))
                return fail(v, "object \"" + key + "\" could not be read: " + why);
        }
        return true;
    }

    struct Link {
        Place at;
        Zk::Ptr<FXGraphNodeBase> node;
        unsigned input;
        IdStamp target;
    };
    struct Alias {
        Place at;
        IdStamp of;
    };

    const std::string& name_;
    Edit& edit_;
    std::vector<Link> links_;
    std::vector<Alias> aliases_;
    std::vector<Alias> tracks_;
    std::vector<FXGraphNodeBase::Input*> unnamedTracks_;
    std::set<const FXGraphNodeBase*> inEvents_; // material nodes made by events
    NodeTable made_;                            // the nodes of the list, which the edit holds
    bool madeCompound_ = false;

    // Nodes' names and tags, one text for each that repeats: a large edit has few distinct ones,
    // and a string's copies share its text until one is changed. Only the first kMaxShared
    // distinct texts are kept, so that an edit of all-different names costs no more than before.
    static constexpr size_t kMaxShared = 4096;
    template <class S, class Make>
    static S shared(std::unordered_map<std::string, S>& known, const std::string& text, Make make) {
        auto it = known.find(text);
        if (it != known.end())
            return it->second;
        S made = make(text);
        if (known.size() < kMaxShared)
            known.emplace(text, made);
        return made;
    }
    std::unordered_map<std::string, String> tags_;
    std::unordered_map<std::string, WString> names_;
};

json::Value idValue(const IdStamp& id) {
    return json::Value::string(id.asString().str());
}

// Reads an edit's text without holding its nodes as a document: each node is made as soon as it is
// read and its text let go. The load reads the edit's own fields and materials before the nodes,
// so this gives what Loader::load gives on the whole document as long as those members stand
// before the nodes in the text, as the writer puts them. When one stands after them, or anything
// at all fails, the read is given up and the caller reads the document whole, which also words the
// fault exactly as it always has.
class StreamedLoad : public json::MemberSink {
public:
    StreamedLoad(const std::string& name, Edit& edit) : loader_(name, edit) {}

    bool streamsItems(const std::string& key) override { return key == "nodes" && !nodesRead_; }

    bool item(const std::string&, json::Value node) override { return readHead() && loader_.node(node); }

    bool member(std::string key, json::Value value) override {
        if (nodesRead_ && readBeforeNodes(key))
            return false;
        if (key == "nodes") {
            nodesRead_ = true;
            return readHead() && loader_.nodeList(value);
        }
        others_.set(key, std::move(value));
        return true;
    }

    // Once the whole text is read.
    bool finish() { return readHead() && loader_.tail(others_); }

private:
    static bool readBeforeNodes(const std::string& key) {
        return key == "format" || key == "version" || key == "name" || key == "cookie" ||
               key == "stereoscopic" || key == "materials" || key == "nodes";
    }
    bool readHead() {
        if (!headRead_) {
            headRead_ = true;
            headOk_ = loader_.head(others_);
        }
        return headOk_;
    }

    Loader loader_;
    json::Value others_ =
        json::Value::object(); // every member but the nodes; a repeated name keeps its last value
    bool nodesRead_ = false;
    bool headRead_ = false;
    bool headOk_ = false;
};

} // namespace

void setObjectCodec(const ObjectCodec& c) {
    codec() = c;
}

namespace {

// Reads `text` into `fresh` as it goes; false when the whole document must be read instead.
bool streamInto(const std::string& text, const std::string& name, Edit& fresh) {
    StreamedLoad load(name, fresh);
    json::ParseError pe;
    return json::parseMembers(text, load, pe) && load.finish();
}

// Reads `text` into `fresh`, an edit that nobody else sees yet. `owner`, when given, holds the
// text and is emptied once it is parsed, so that the text and the model are never held together.
bool loadInto(const std::string& text, std::string* owner, const std::string& name, Edit& fresh,
              std::string& error) {
    json::Value root;
    json::ParseError pe;
    if (!json::parse(text, root, pe)) {
        std::ostringstream s;
        s << name << ':' << pe.line << ':' << pe.column << ": " << pe.message;
        error = s.str();
        return false;
    }
    if (owner)
        std::string().swap(*owner);
    Loader loader(name, fresh);
    if (!loader.load(root)) {
        error = loader.error;
        return false;
    }
    return true;
}

// The text of an edit file, if it is a regular file within the size limit.
bool readFile(const std::string& path, std::string& text, std::string& error) {
    // Only a regular file of a bounded size is read: a device or a pipe could give bytes forever.
    struct stat st {};
    if (::stat(path.c_str(), &st) != 0) {
        error = path + ": cannot be opened";
        return false;
    }
    if (!S_ISREG(st.st_mode)) {
        error = path + ": not a regular file";
        return false;
    }
    if (static_cast<uint64_t>(st.st_size) > kMaxFileBytes) {
        error = path + ": " + std::to_string(st.st_size) + " bytes, more than the " +
                std::to_string(kMaxFileBytes) + " an edit file may have";
        return false;
    }
    std::ifstream f(path, std::ios::binary);
    if (!f) {
        error = path + ": cannot be opened";
        return false;
    }
    text.assign(static_cast<size_t>(st.st_size), '\0');
    f.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<size_t>(f.gcount()));
    return true;
}

} // namespace

bool loadFromText(const std::string& text, const std::string& name, Edit& into, std::string& error) {
    Zk::Ptr<Edit> fresh = Zk::make<Edit>();
    if (!streamInto(text, name, *fresh)) {
        fresh = Zk::make<Edit>();
        if (!loadInto(text, nullptr, name, *fresh, error))
            return false;
    }
    into.copyStateFrom(*fresh);
    return true;
}

bool loadWholeFromText(const std::string& text, const std::string& name, Edit& into, std::string& error) {
    Zk::Ptr<Edit> fresh = Zk::make<Edit>();
    if (!loadInto(text, nullptr, name, *fresh, error))
        return false;
    into.copyStateFrom(*fresh);
    return true;
}

bool load(const std::string& path, Edit& into, std::string& error) {
    std::string text;
    return readFile(path, text, error) && loadFromText(text, path, into, error);
}

EditPtr open(const std::string& path, std::string& error) {
    // A new edit is read in place: no copy of what was read.
    EditPtr e(new Edit());
    std::string text;
    if (!readFile(path, text, error))
        return EditPtr();
    if (streamInto(text, path, *e))
        return e;
    e = EditPtr(new Edit());
    if (!loadInto(text, &text, path, *e, error))
        return EditPtr();
    return e;
}

namespace {

json::Value editToJson(const Edit& edit) {
    json::Value root = json::Value::object();
    root.set("format", json::Value::string("nodedesk-edit"));
    root.set("version", json::Value::number(1));
    root.set("name", json::Value::string(toUtf8(edit.name()).str()));
    root.set("cookie", json::Value::string(edit.cookie().asString().str()));
    root.set("start", json::Value::number(edit.getStartTime()));
    root.set("end", json::Value::number(edit.getEndTime()));
    if (edit.hasStereoscopicVideo())
        root.set("stereoscopic", json::Value::boolean(true));

    json::Value& mats = root.set("materials", json::Value::array());
    for (const auto& m : edit.materials()) {
        json::Value& o = mats.push(json::Value::object());
        o.set("cookie", json::Value::string(m.cookie.asString().str()));
        o.set("name", json::Value::string(toUtf8(m.name).str()));
        o.set("source", json::Value::string(m.source.str()));
        if (!m.file.empty())
            o.set("file", json::Value::string(m.file.str()));
    }

    // Material nodes that stand in events are written with their events.
    std::set<const FXGraphNodeBase*> inEvents;
    json::Value chans = json::Value::array();
    for (int i = 0; i < edit.numChans(); ++i) {
        const EditChannel& c = edit.chan(i);
        json::Value& o = chans.push(json::Value::object());
        o.set("id", idValue(c.id));
        o.set("type", json::Value::string(c.type == kAudioChan ? "audio" : "video"));
        o.set("subtype", json::Value::number(c.subtype));
        o.set("name", json::Value::string(toUtf8(c.name).str()));
        if (c.stereoGroup.valid())
            o.set("group", idValue(c.stereoGroup));
        json::Value& evs = o.set("events", json::Value::array());
        for (const auto& ev : c.cel->events()) {
            json::Value& e = evs.push(json::Value::object());
            e.set("start", json::Value::number(ev.start));
            e.set("end", json::Value::number(ev.end));
            if (ev.kind == CelEvent::Material) {
                e.set("material", json::Value::string(ev.strip.asString().str()));
                e.set("node", idValue(ev.node->getId()));
                inEvents.insert(ev.node.get());
            } else if (ev.kind == CelEvent::Graph) {
                e.set("graph", idValue(ev.node->getId()));
                e.set("cookie", json::Value::string(ev.strip.asString().str()));
            } else {
                e.set("black", json::Value::boolean(true));
            }
        }
    }

    json::Value& nodes = root.set("nodes", json::Value::array());
    for (const auto& [nid, node] : edit.nodes()) {
        if (inEvents.count(node.get()))
            continue;
        json::Value& o = nodes.push(json::Value::object());
        o.set("id", idValue(nid));
        if (auto* m = dynamic_cast<const MaterialUsageNode*>(node.get())) {
            o.set("kind", json::Value::string("material"));
            o.set("material", json::Value::string(m->material().asString().str()));
        } else if (auto* img = dynamic_cast<const ImageImportEffect*>(node.get())) {
            o.set("kind", json::Value::string("image"));
            o.set("file", json::Value::string(img->file().str()));
        } else if (auto* al = dynamic_cast<const AliasedInputEffect*>(node.get())) {
            o.set("kind", json::Value::string("alias"));
            o.set("of", idValue(al->aliasOf()));
        } else if (auto* cx = dynamic_cast<const CompoundEffect*>(node.get())) {
            o.set("kind", json::Value::string("compound"));
            o.set("offset", json::Value::number(cx->timeOffset()));
            if (cx->innerEdit())
                o.set("edit", editToJson(*cx->innerEdit()));
        } else {
            o.set("kind", json::Value::string("effect"));
        }
        if (!node->tagTypeId().empty() && !dynamic_cast<const ImageImportEffect*>(node.get()) &&
            !dynamic_cast<const AliasedInputEffect*>(node.get()))
            o.set("tag", json::Value::string(node->tagTypeId().str()));
        if (!node->getName().empty())
            o.set("name", json::Value::string(toUtf8(node->getName()).str()));
        if (node->chanType() == kAudioChan)
            o.set("audio", json::Value::boolean(true));
        if (auto* fx = dynamic_cast<const EffectInstance_opu4h5a4j*>(node.get())) {
            if (!fx->isEnabled())
                o.set("enabled", json::Value::boolean(false));
            if (!fx->params().empty()) {
                json::Value& p = o.set("params", json::Value::object());
                for (const auto& [k, v] : fx->params())
                    p.set(k, json::Value::number(v));
            }
        }
        if (!node->inputs().empty()) {
            json::Value& ins = o.set("inputs", json::Value::array());
            for (const auto& in : node->inputs()) {
                json::Value& i = ins.push(json::Value::object());
                if (in.node)
                    i.set("node", idValue(in.node->getId()));
                i.set("track", in.track.valid() ? idValue(in.track) : json::Value());
                if (in.ghost)
                    i.set("ghost", json::Value::boolean(true));
            }
        }
    }
    root.set("channels", std::move(chans));

    if (codec().pack && !edit.objects().empty()) {
        json::Value& objs = root.set("objects", json::Value::object());
        for (const auto& [key, obj] : edit.objects())
            objs.set(key, json::Value::string(base64Encode(codec().pack(edit, key))));
    }
    return root;
}

} // namespace

std::string saveToText(const Edit& edit) {
    return json::write(editToJson(edit));
}

bool save(const Edit& edit, const std::string& path, std::string& error) {
    std::string text = saveToText(edit);
    std::string tmp = path + ".tmp";
    {
        std::ofstream f(tmp, std::ios::binary | std::ios::trunc);
        if (!f || !(f << text) || !f.flush()) {
            error = path + ": cannot be written";
            return false;
        }
    }
    if (std::rename(tmp.c_str(), path.c_str()) != 0) {
        error = path + ": cannot be replaced";
        return false;
    }
    return true;
}

} // namespace EditFile
