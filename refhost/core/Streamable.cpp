// The root layer of persistent objects.
#include "host/Streamable.h"

#include "host/GrowString.h"
#include "host/StreamClassRegistrar.h"
#include "host/StreamableLayer.h"

STRM_DEFINE_LAYER(Streamable, "$");

void Streamable::printOn(GrowString& out) const {
    out << hierarchyName(false, false);
}

// The major revision of the root layer is the stream format written after it.
void Streamable::pack(PStream&) const {
    revisionMajor(2);
}

void Streamable::unpack(PStream&) {}
