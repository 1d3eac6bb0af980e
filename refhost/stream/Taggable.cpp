// The layer of objects that live in an edit's store.
#include "host/Taggable.h"

#include "host/GrowString.h"
#include "host/StreamClassRegistrar.h"
#include "host/StreamableLayer.h"
#include "host/TagMarkerTable.h"

STRM_DEFINE_LAYER(Taggable, "T");

void Taggable::pack(PStream& s) const {
    s << tagTypeId_;
}

void Taggable::unpack(PStream& s) {
    s >> tagTypeId_;
}

void Taggable::printOn(GrowString& out) const {
    Streamable::printOn(out);
    if (!tagTypeId_.empty())
        out << " " << tagTypeId_;
}

void Taggable::destroyChildren(TagMarkerTable&) {}
void Taggable::displaceNotify() {}
void Taggable::preDeleteNotify() {}
void Taggable::preDestroyNotify() {}
void Taggable::destroyNotify() {}

String Taggable::asString() const {
    return tagTypeId_.empty() ? hierarchyName(false, false) : tagTypeId_;
}

Zk::Ptr<Taggable> Taggable::clone() const {
    return Zk::dynamicCast<Taggable>(clone(buildForClone));
}

void Taggable::cloneWithChildren(std::vector<Zk::Ptr<Taggable>>& out, TagMarkerTable& table) {
    Zk::Ptr<Taggable> copy = clone();
    if (!copy)
        return;
    table.add(this, copy);
    out.push_back(copy);
}
