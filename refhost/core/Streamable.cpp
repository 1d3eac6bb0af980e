// Default behaviour of the root persistent class.
#include "host/Streamable.h"

void Streamable::printOn(GrowString&) const {}
void Streamable::assign(const Streamable*) {}
String Streamable::hierarchyName(bool, bool shortNames) const {
    return String(shortNames ? "$" : "Streamable");
}
StreamableTraitsBase::eStatus Streamable::STRM_hierarchyUnpack(PStream&) {
    return StreamableTraitsBase::statusFailed;
}
StreamableTraitsBase::eStatus Streamable::STRM_hierarchyPack(PStream&) const {
    return StreamableTraitsBase::statusFailed;
}
Zk::Ptr<Streamable> Streamable::clone(BuilderType) const {
    return nullptr;
}
