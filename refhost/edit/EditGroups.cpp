// Stereo groups and display names of channels; the attributes of materials by cookie.
#include <string>
#include <unordered_set>

#include "host/Edit.h"
#include "host/EditInfo.h"
#include "host/VobManager.h"

namespace {

// Whether the graph below `node` holds a node with that id; `seen` stops at shared nodes.
bool graphHolds(const FXGraphNodeBase* node, const IdStamp& id,
                std::unordered_set<const FXGraphNodeBase*>& seen) {
    if (!node || !seen.insert(node).second)
        return false;
    if (node->getId() == id)
        return true;
    for (unsigned i = 0; i < node->getNumInputs(); ++i)
        if (graphHolds(node->input(i).node.get(), id, seen))
            return true;
    return false;
}

} // namespace

// An id that is no channel but a node of the edit's graphs names the first channel whose cel
// uses that node, as a source clip in a graph is titled by the track it lies on.
WString Edit::getChanDisplayName(const IdStamp& chan, unsigned fmt) const {
    int idx = getIdx(chan);
    if (idx < 0 && chan.valid() && findNode(chan)) {
        for (int c = 0; c < numChans() && idx < 0; ++c) {
            const Zk::Ptr<Cel>& cel = chans_[static_cast<size_t>(c)].cel;
            if (!cel)
                continue;
            std::unordered_set<const FXGraphNodeBase*> seen;
            for (const CelEvent& e : cel->events())
                if (graphHolds(e.node.get(), chan, seen)) {
                    idx = c;
                    break;
                }
        }
    }
    if (idx < 0)
        return WString();
    WString name = (fmt & 1) ? chans_[static_cast<size_t>(idx)].name : WString();
    if (!name.empty() || !(fmt & 2))
        return name;
    int number = 0;
    for (int i = 0; i <= idx; ++i)
        if (chans_[static_cast<size_t>(i)].type == chans_[static_cast<size_t>(idx)].type)
            ++number;
    // Appended rather than prefixed: GCC's -O3 sees a prefix insert into a fresh string as a
    // possible overlapping copy (-Wrestrict) where there is none.
    std::string s(1, chans_[static_cast<size_t>(idx)].type == kAudioChan ? 'A' : 'V');
    s += std::to_string(number);
    return toWide(String(s));
}

std::vector<IdStamp> Edit::getGroupContainingChan(const IdStamp& chan) const {
    int idx = getIdx(chan);
    if (idx < 0)
        return {};
    const IdStamp& group = chans_[static_cast<size_t>(idx)].stereoGroup;
    if (!group.valid())
        return {chan};
    std::vector<IdStamp> out;
    for (const auto& c : chans_)
        if (c.stereoGroup == group)
            out.push_back(c.id);
    return out;
}

WString Edit::getGroupDisplayName(const IdStamp& chan, bool brief) const {
    std::vector<IdStamp> group = getGroupContainingChan(chan);
    if (group.empty())
        return WString();
    if (brief && group.size() > 2)
        return getChanDisplayName(group.front(), 3) + WString(L"-") + getChanDisplayName(group.back(), 3);
    WString out;
    for (size_t i = 0; i < group.size(); ++i) {
        if (i)
            out += WString(L"+");
        out += getChanDisplayName(group[i], 3);
    }
    return out;
}

Cookie convertCookie(const Cookie& c, CookieType type, unsigned char) {
    if (!c.valid())
        return Cookie();
    if (c.kind() == static_cast<Cookie::Kind>(type))
        return c;
    if (c.kind() == Cookie::MaterialKind && type == 'E')
        return c;
    return Cookie();
}

EditInfo::EditInfo(const Cookie& c, dbrecord*) {
    if (!c.valid())
        return;
    for (const auto& vob : VobManager::instance().vobs()) {
        const Edit* edit = vob && vob->edit() ? vob->edit().get() : nullptr;
        if (!edit)
            continue;
        if (c.kind() == Cookie::EditKind && edit->cookie() == c) {
            found_ = true;
            name_ = edit->name();
            return;
        }
        if (const EditMaterial* m = edit->findMaterial(c)) {
            found_ = true;
            name_ = m->name;
            source_ = toWide(m->source);
            file_ = toWide(m->file);
            return;
        }
    }
}

WString EditInfo::getAttribW(const char* attribute) const {
    std::string a = attribute ? attribute : "";
    if (a == "name")
        return name_;
    if (a == "source")
        return source_;
    if (a == "file")
        return file_;
    return WString();
}
