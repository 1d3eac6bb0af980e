// Packing and unpacking an edit's object store.
#include "refhost/stream/EditObjectStore.h"

#include <map>

#include "host/Edit.h"
#include "host/Log.h"
#include "host/PStream.h"
#include "host/StreamClassRegistrar.h"
#include "host/StreamFile.h"
#include "host/Taggable.h"
#include "refhost/edit/EditFile.h"
#include "refhost/stream/ChainShape.h"

namespace {

const char* const kMagic = "Strm1.0 objects";

bool readString(StreamFile& f, std::string& out) {
    unsigned n = 0;
    return f.getUnsignedLong(n) && f.getBytes(out, n);
}

// The classes of the objects the editor keeps with an edit, by the key they are bound under.
const std::map<std::string, std::string>& classesByKey() {
    static const std::map<std::string, std::string> table{
        {"NodePosManager", "Streamable.Taggable.NodeUIManagerBase.NodeUIPosManager"},
    };
    return table;
}

// The registered class an object is built as. The key names it where the editor knows the key;
// otherwise the longest registered beginning of the chain's path does, since a newer revision of
// a class adds its layers after the known ones.
const StreamClassRegistrar* classFor(const std::string& key, const std::string& path) {
    auto known = classesByKey().find(key);
    if (known != classesByKey().end())
        if (const StreamClassRegistrar* cls = StreamClassRegistrar::find(String(known->second)))
            return cls;
    for (std::string prefix = path; !prefix.empty();) {
        if (const StreamClassRegistrar* cls = StreamClassRegistrar::find(String(prefix)))
            return cls;
        const size_t dot = prefix.rfind('.');
        prefix.resize(dot == std::string::npos ? 0 : dot);
    }
    return nullptr;
}

// Builds one object from its own bytes; null with the reason on failure. The class's reader
// decides what survives: it drops the object only when a layer it knows is broken. Layers it
// does not know, and a chain cut short, cost what they hold and are noted in the log.
Zk::Ptr<Taggable> buildObject(const std::string& key, const std::string& path, const std::string& bytes,
                              std::string& error) {
    const StreamClassRegistrar* cls = classFor(key, path);
    if (!cls) {
        error = "unknown class " + (path.empty() ? std::string("(no chain of layers)") : path);
        return nullptr;
    }
    StreamFile f(bytes);
    PStream s(&f);
    Zk::Ptr<Taggable> obj = Zk::dynamicCast<Taggable>(cls->builder()(s));
    if (!obj) {
        error = s.inError() ? s.errors.str() : cls->longName().str() + " is not an object of an edit";
        return nullptr;
    }
    if (s.inError())
        Log("object '%s' read in part: %s\n", key.c_str(), s.errors.str().c_str());
    else if (path != cls->shortName().str() && path != cls->longName().str())
        Log("object '%s' is stored as %s; read as %s, its other layers skipped\n", key.c_str(), path.c_str(),
            cls->shortName().str().c_str());
    return obj;
}

// The edit file carries each object as the bytes of its chain.
const bool codecInstalled = [] {
    EditFile::setObjectCodec({&packEditObject, &unpackEditObject});
    return true;
}();

} // namespace

std::string packEditObject(const Edit& edit, const std::string& key) {
    Zk::Ptr<Taggable> obj = edit.openObjectInternal(String(key));
    if (!obj)
        return std::string();
    StreamFile f;
    PStream s(&f);
    s << *obj;
    return f.bytes();
}

bool unpackEditObject(Edit& edit, const std::string& key, const std::string& bytes, std::string& error) {
    Zk::Ptr<Taggable> obj = buildObject(key, ChainShape(bytes).shortPath(), bytes, error);
    if (!obj)
        return false;
    edit.bindObjectToEdit(obj, String(key));
    return true;
}

bool isEditObjectStore(const std::string& bytes) {
    StreamFile f(bytes);
    std::string magic;
    return readString(f, magic) && magic == kMagic;
}

bool splitEditObjects(const std::string& bytes, std::vector<StoredObjectBytes>& out, std::string& error) {
    StreamFile f(bytes);
    std::string magic;
    unsigned count = 0;
    if (!readString(f, magic) || magic != kMagic) {
        error = "not an object store";
        return false;
    }
    if (!f.getUnsignedLong(count)) {
        error = "object store ends before its count";
        return false;
    }
    // Every object takes at least 12 bytes of frame, so the loop ends with the bytes.
    for (unsigned i = 0; i < count; ++i) {
        StoredObjectBytes obj;
        unsigned length = 0;
        if (!readString(f, obj.key) || !readString(f, obj.className) || !f.getUnsignedLong(length)) {
            error = "object store ends inside the frame of object " + std::to_string(i + 1);
            return false;
        }
        obj.offset = f.position();
        if (!f.getBytes(obj.bytes, length)) {
            error = "object store ends inside object '" + obj.key + "'";
            return false;
        }
        out.push_back(std::move(obj));
    }
    if (!f.eof()) {
        error = std::to_string(f.remaining()) + " bytes follow the last object of the store";
        return false;
    }
    return true;
}

std::string packEditObjects(const Edit& edit) {
    StreamFile f;
    PStream s(&f);
    s << String(kMagic);
    unsigned count = 0;
    for (const auto& [key, obj] : edit.objects())
        count += obj ? 1 : 0;
    f.setUnsignedLong(count);
    for (const auto& [key, obj] : edit.objects()) {
        if (!obj)
            continue;
        s << String(key) << obj->hierarchyName(false, false);
        const unsigned lengthAt = f.position();
        f.setUnsignedLong(0);
        const unsigned start = f.position();
        s << *obj;
        const unsigned end = f.position();
        f.position(lengthAt);
        f.setUnsignedLong(end - start);
        f.position(end);
    }
    return f.bytes();
}

bool unpackEditObjects(Edit& edit, const std::string& bytes, std::string& error) {
    std::vector<StoredObjectBytes> objects;
    if (!splitEditObjects(bytes, objects, error))
        return false;
    std::string errors;
    for (const auto& stored : objects) {
        std::string why;
        Zk::Ptr<Taggable> obj = buildObject(stored.key, stored.className, stored.bytes, why);
        if (obj)
            edit.bindObjectToEdit(obj, String(stored.key));
        else
            errors += "object '" + stored.key + "': " + why + "\n";
    }
    error = errors;
    return errors.empty();
}
