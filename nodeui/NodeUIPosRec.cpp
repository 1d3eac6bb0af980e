// A node position record: moving it, its own servers' changes, and layer "K".
#include "nodeui/NodeUIPosRec.h"

#include <cstdint>
#include <cstring>

#include "host/PStream.h"
#include "host/StreamClassRegistrar.h"
#include "host/StreamFile.h"
#include "host/StreamableLayer.h"

STRM_DEFINE_LAYER(NodeUIPosRec, "K");

NodeUIPosRec::NodeUIPosRec() {
    startAtOrigin();
}

NodeUIPosRec::NodeUIPosRec(NodeUIManagerBase* manager, const IdStamp& id, const Cookie& hostEdit)
    : NodeUIRecBase(manager, id, hostEdit) {
    startAtOrigin();
}

NodeUIPosRec::NodeUIPosRec(BuilderType b) : NodeUIRecBase(b) {
    startAtOrigin();
}

// The servers are fresh: the position is not copied.
NodeUIPosRec::NodeUIPosRec(BuilderType b, const NodeUIPosRec& other)
    : NodeUIRecBase(b, other), MultiValClient() {
    revisionMajor_ = other.revisionMajor_;
    revisionMinor_ = other.revisionMinor_;
    startAtOrigin();
}

NodeUIPosRec::~NodeUIPosRec() = default;

// The servers are new: no manager and no client has them yet, so nobody is there to be told.
void NodeUIPosRec::startAtOrigin() {
    x_.storeSilently(0.0);
    y_.storeSilently(0.0);
}

void NodeUIPosRec::watchOwnServers() {
    if (serversHandedOut_)
        return;
    serversHandedOut_ = true;
    MultiValClient<double>::registerWith(&x_);
    MultiValClient<double>::registerWith(&y_);
}

// The values are written into the servers directly: neither the record's clients nor those of
// the servers hear of the copy, and no manager of a server is asked.
NodeUIPosRec& NodeUIPosRec::operator=(const NodeUIPosRec& other) {
    x_.storeSilently(other.y_.getVal());
    y_.storeSilently(other.y_.getVal());
    anchorX_ = other.anchorX_;
    anchorY_ = other.anchorY_;
    hasAnchor_ = other.hasAnchor_;
    visitMark_ = other.visitMark_;
    return *this;
}

bool NodeUIPosRec::serversUnwatched() const {
    if (!serversHandedOut_)
        return true;
    auto* self = const_cast<NodeUIPosRec*>(this);
    return x_.numClients() == 1 && y_.numClients() == 1 && !x_.manager() && !y_.manager() &&
           isRegisteredWith(&self->x_) && isRegisteredWith(&self->y_);
}

void NodeUIPosRec::setPos(double x, double y, bool notify) {
    if (x == x_.getVal() && y == y_.getVal())
        return;
    if (serversUnwatched()) {
        // Only the record hears its servers, and it is silent while it moves them itself.
        x_.storeSilently(x);
        y_.storeSilently(y);
    } else {
        watchOwnServers();
        ++disabled_;
        x_ = x;
        y_ = y;
        if (disabled_ > 0)
            --disabled_;
    }
    if (notify)
        sendUpdateNotification();
}

void NodeUIPosRec::setAnchor(double x, double y) {
    anchorX_ = x;
    anchorY_ = y;
    hasAnchor_ = true;
}

void NodeUIPosRec::handleValChanged(ValServer<double>*) {
    sendUpdateNotification();
}

// The body in one write: x, y, the anchor's x and y as little-endian doubles, then the flag.
void NodeUIPosRec::pack(PStream& s) const {
    char body[33];
    const double values[4] = {x_.getVal(), y_.getVal(), anchorX_, anchorY_};
    for (int v = 0; v < 4; ++v) {
        uint64_t bits;
        std::memcpy(&bits, &values[v], 8);
        for (int i = 0; i < 8; ++i)
            body[8 * v + i] = static_cast<char>(bits >> (8 * i));
    }
    body[32] = hasAnchor_ ? 1 : 0;
    s.file->setBytes(body, sizeof body);
}

void NodeUIPosRec::unpack(PStream& s) {
    StreamFile& f = *s.file;
    double x = 0.0, y = 0.0;
    f.getDouble(x);
    f.getDouble(y);
    if (serversUnwatched() && (disabled_ != 0 || getNotify().numClients() == 0)) {
        // Nobody would hear the two updates: a record being read has no clients yet.
        x_.storeSilently(x);
        y_.storeSilently(y);
    } else {
        watchOwnServers();
        x_ = x;
        y_ = y;
    }
    f.getDouble(anchorX_);
    f.getDouble(anchorY_);
    unsigned char has = 0;
    f.getUnsignedChar(has);
    hasAnchor_ = has != 0;
    // Servers never handed out are registered with when they are.
    if (serversHandedOut_) {
        MultiValClient<double>::registerWith(&x_);
        MultiValClient<double>::registerWith(&y_);
    }
}
