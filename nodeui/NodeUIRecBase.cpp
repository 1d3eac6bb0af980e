// One node UI record: its node, its host edit, its update message and layer "L".
#include "nodeui/NodeUIRecBase.h"

#include <algorithm>
#include <string>

#include "host/Edit.h"
#include "host/FXGraphNodeBase.h"
#include "host/NotifyMsgTypeDictionary.h"
#include "host/PStream.h"
#include "host/StreamClassRegistrar.h"
#include "host/StreamFile.h"
#include "host/StreamableLayer.h"
#include "nodeui/NodeUIManagerBase.h"

int NodeUIRecBase::recUpdateMsgType_ = NotifyMsgTypeDictionary::instance().intern("nodeRecUpdate");

STRM_DEFINE_LAYER(NodeUIRecBase, "L");

NodeUIRecBase::NodeUIRecBase() : nodeId_(0, 0, 0) {}

NodeUIRecBase::NodeUIRecBase(NodeUIManagerBase* manager, const IdStamp& id, const Cookie& hostEdit)
    : manager_(manager), nodeId_(id), hostEditCookie_(hostEdit) {
    registerWithNode();
}

NodeUIRecBase::NodeUIRecBase(BuilderType b) : Streamable(b) {}

NodeUIRecBase::NodeUIRecBase(BuilderType b, const NodeUIRecBase& other)
    : DLListRec(), FXGraphNodeClient(), NotifyWithDisable(), Streamable(b, other), manager_(other.manager_),
      nodeId_(other.nodeId_), hostEditCookie_(other.hostEditCookie_) {
    revisionMajor_ = other.revisionMajor_;
    revisionMinor_ = other.revisionMinor_;
}

NodeUIRecBase::NodeUIRecBase(const NodeUIRecBase& other)
    : iVirtual(), Zk::InternalRefCount(), iObject(), DLListRec(), FXGraphNodeClient(), NotifyWithDisable(),
      Streamable(other), manager_(other.manager_), nodeId_(other.nodeId_),
      hostEditCookie_(other.hostEditCookie_) {
    revisionMajor_ = other.revisionMajor_;
    revisionMinor_ = other.revisionMinor_;
}

NodeUIRecBase& NodeUIRecBase::operator=(const NodeUIRecBase& other) {
    nodeId_ = other.nodeId_;
    ++idChanges_;
    hostEditCookie_ = other.hostEditCookie_;
    return *this;
}

NodeUIRecBase::~NodeUIRecBase() = default;

void NodeUIRecBase::registerWithNode() {
    if (!nodeId_.valid() || !manager_)
        return;
    // The manager holds its edit, and the object found stays held while it is cast and watched:
    // no further references are taken.
    const EditPtr& edit = manager_->editH_;
    if (!edit)
        return;
    const Zk::Ptr<Taggable> object = edit->tagBag().openObject(nodeId_).instance();
    if (auto* node = dynamic_cast<FXGraphNodeBase*>(object.get()))
        FXGraphNodeClient::registerWith(node);
}

void NodeUIRecBase::sendUpdateNotification() {
    if (disabled_ != 0)
        return;
    getNotify().call(NotifyMsg(String("")), recUpdateMsgType_);
}

void NodeUIRecBase::pack(PStream& s) const {
    revisionMajor(1);
    revisionMinor(1);
    s.file->setCookedChar(2);
    nodeId_.pack(s);
    // The records of a manager share one host edit: its text is made once.
    thread_local Cookie lastCookie;
    thread_local String lastText = Cookie().asString();
    if (!(hostEditCookie_ == lastCookie)) {
        lastText = hostEditCookie_.asString();
        lastCookie = hostEditCookie_;
    }
    s << lastText;
}

// A record read from a 1.0 layer has no host edit: it keeps the default cookie, which opens no
// edit, and counts as 1.1 from now on.
void NodeUIRecBase::unpack(PStream& s) {
    unsigned char stampVersion = 0;
    s.file->getUnsignedChar(stampVersion);
    nodeId_.unpack(s, stampVersion);
    ++idChanges_;
    if (revisionMinor_ != 0) {
        // The records of a manager share one host edit: a text like the last one is not read
        // again.
        thread_local std::string lastText;
        thread_local Cookie lastCookie;
        StreamFile& f = *s.file;
        unsigned n = 0;
        if (!f.getUnsignedLong(n)) {
            hostEditCookie_ = Cookie();
        } else if (n == lastText.size() && f.remaining() >= n &&
                   std::equal(lastText.begin(), lastText.end(), f.bytes().data() + f.position())) {
            f.position(f.position() + n);
            hostEditCookie_ = lastCookie;
        } else {
            std::string text;
            f.getBytes(text, n);
            hostEditCookie_ = Cookie::fromString(String(text));
            lastText = std::move(text);
            lastCookie = hostEditCookie_;
        }
    }
    revisionMajor(1);
    revisionMinor(1);
}
