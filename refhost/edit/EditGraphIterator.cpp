// Walks over an edit's effect graphs at one time.
#include "host/EditGraphIterator.h"

#include <algorithm>
#include <set>

#include "host/Edit.h"
#include "host/EditGraphSearchScope.h"
#include "host/FXEditor.h"

namespace {

// The channel whose graph takes `chan` in through a track input at `time`, or -1.
int consumerOf(const Edit& edit, int chan, double time) {
    const IdStamp chanId = edit.chan(chan).id;
    for (int c = 0; c < edit.numChans(); ++c) {
        if (c == chan)
            continue;
        int ev = edit.eventAt(c, time);
        if (ev < 0)
            continue;
        std::vector<FXGraphNodeBase*> stack{edit.chan(c).cel->events()[static_cast<size_t>(ev)].node.get()};
        std::set<FXGraphNodeBase*> seen;
        while (!stack.empty()) {
            FXGraphNodeBase* n = stack.back();
            stack.pop_back();
            if (!n || !seen.insert(n).second)
                continue;
            for (const auto& in : n->inputs()) {
                if (in.node)
                    stack.push_back(in.node.get());
                else if (in.track == chanId)
                    return c;
            }
        }
    }
    return -1;
}

} // namespace

EditGraphIterator::EditGraphIterator(int options) : options_(options) {}

EditGraphIterator::EditGraphIterator(const EditPtr& edit, int chanIndex, const double& time, int options)
    : edit_(edit), time_(time), options_(options) {
    startAtChannel(chanIndex);
}

EditGraphIterator::EditGraphIterator(const EditPtr& edit, const IdStamp& chan, const double& time,
                                     int options)
    : edit_(edit), time_(time), options_(options) {
    if (edit_)
        startAtChannel(edit_->getIdx(chan));
}

bool EditGraphIterator::startAtChannel(int chanIndex) {
    path_.clear();
    if (!edit_ || chanIndex < 0 || chanIndex >= edit_->numChans())
        return false;
    if (options_ & optPrimary) {
        // Climb to the graph that shows this channel, guarding against channels feeding each
        // other in a ring.
        std::set<int> visited{chanIndex};
        for (int up = consumerOf(*edit_, chanIndex, time_); up >= 0 && visited.insert(up).second;
             up = consumerOf(*edit_, chanIndex, time_))
            chanIndex = up;
    }
    int ev = edit_->eventAt(chanIndex, time_);
    if (ev < 0)
        return false;
    Entry e;
    e.node = edit_->chan(chanIndex).cel->events()[static_cast<size_t>(ev)].node;
    e.chan = chanIndex;
    if (!e.node)
        return false;
    path_.push_back(e);
    return true;
}

int EditGraphIterator::entryIndex(int index) const {
    if (index < 0)
        index = static_cast<int>(path_.size()) + index;
    return index >= 0 && index < static_cast<int>(path_.size()) ? index : -1;
}

Zk::Ptr<FXGraphNodeBase> EditGraphIterator::getNode(int index) const {
    int i = entryIndex(index);
    return i < 0 ? nullptr : path_[static_cast<size_t>(i)].node;
}

IdStamp EditGraphIterator::getNodeId(int index) const {
    int i = entryIndex(index);
    return i < 0 ? IdStamp() : path_[static_cast<size_t>(i)].node->getId();
}

IdStamp EditGraphIterator::getChanId(int index) const {
    int c = getChanIndex(index);
    return c < 0 ? IdStamp() : edit_->chan(c).id;
}

int EditGraphIterator::getChanIndex(int index) const {
    int i = entryIndex(index);
    return i < 0 ? -1 : path_[static_cast<size_t>(i)].chan;
}

int EditGraphIterator::getParentInputNum() const {
    return path_.empty() ? 0 : path_.back().parentInput;
}

bool EditGraphIterator::resolveInput(const Entry& at, unsigned input, Entry& out) const {
    if (!at.node || input >= at.node->getNumInputs() || input >= at.node->inputs().size())
        return false;
    const FXGraphNodeBase::Input& in = at.node->input(input);
    if (in.ghost && !traverseGhosts_)
        return false;
    out.parentInput = static_cast<int>(input);
    if (in.node) {
        out.node = in.node;
        out.chan = at.chan;
        return true;
    }
    if (in.track.valid() && edit_) {
        int c = edit_->getIdx(in.track);
        int ev = edit_->eventAt(c, time_); // an internal track is no channel: -1
        if (ev < 0)
            return false;
        out.node = edit_->chan(c).cel->events()[static_cast<size_t>(ev)].node;
        out.chan = c;
        return static_cast<bool>(out.node);
    }
    return false;
}

bool EditGraphIterator::moveToInput(unsigned input) {
    if (path_.empty())
        return false;
    Entry next;
    if (!resolveInput(path_.back(), input, next))
        return false;
    path_.push_back(next);
    return true;
}

bool EditGraphIterator::moveBack() {
    if (path_.size() <= 1)
        return false;
    path_.pop_back();
    return true;
}

bool EditGraphIterator::searchFrom(const Entry& root, const FXGraphNodeBase* node, const IdStamp* id) {
    // Depth first over inputs in rising order; each node is entered once so that a cycle ends.
    std::vector<Entry> path{root};
    std::vector<unsigned> nextInput{0};
    std::set<const FXGraphNodeBase*> seen{root.node.get()};
    // Looking for an id also finds the node that comes in through the track of that id.
    auto matches = [&](const Entry& e, const Entry* parent) {
        if (node)
            return e.node.get() == node;
        return e.node->getId() == *id ||
               (parent && parent->node->input(static_cast<unsigned>(e.parentInput)).track == *id);
    };
    if (matches(root, nullptr)) {
        path_ = std::move(path);
        return true;
    }
    while (!path.empty()) {
        Entry& top = path.back();
        unsigned& i = nextInput.back();
        if (i >= top.node->getNumInputs()) {
            path.pop_back();
            nextInput.pop_back();
            continue;
        }
        Entry child;
        bool ok = resolveInput(top, i++, child);
        if (!ok || !seen.insert(child.node.get()).second)
            continue;
        bool hit = matches(child, &top);
        path.push_back(child);
        nextInput.push_back(0);
        if (hit) {
            path_ = std::move(path);
            return true;
        }
    }
    return false;
}

bool EditGraphIterator::search(const FXGraphNodeBase* node) {
    if (!node || !edit_)
        return false;
    if (!(options_ & optSearchFromTop) && !path_.empty())
        return searchFrom(path_.front(), node, nullptr);
    return search(node->getId(), searchWholeEdit);
}

bool EditGraphIterator::search(const IdStamp& id, eSearchType type) {
    if (!edit_ || !id.valid())
        return false;
    if (type == searchBelowRoot && !(options_ & optSearchFromTop)) {
        if (path_.empty())
            return false;
        return searchFrom(Entry(path_.front()), nullptr, &id);
    }
    const int remembered = EditGraphSearchScope::answer(*this, id);
    if (remembered >= 0)
        return remembered == 1;
    for (int c = 0; c < edit_->numChans(); ++c) {
        int ev = edit_->eventAt(c, time_);
        if (ev < 0)
            continue;
        Entry root;
        root.node = edit_->chan(c).cel->events()[static_cast<size_t>(ev)].node;
        root.chan = c;
        if (root.node && searchFrom(root, nullptr, &id))
            return true;
    }
    std::vector<IdStamp> orphans;
    FXEditor::findOrphanedComponents(edit_, time_, orphans);
    for (const IdStamp& o : orphans) {
        Entry root;
        root.node = edit_->findNode(o);
        if (root.node && searchFrom(root, nullptr, &id))
            return true;
    }
    return false;
}

void EditGraphIterator::findAllComponents(Vector<Zk::Ptr<FXGraphNodeBase>>& out) const {
    if (path_.empty())
        return;
    std::set<const FXGraphNodeBase*> seen;
    std::vector<Entry> stack{path_.back()};
    while (!stack.empty()) {
        Entry e = stack.back();
        stack.pop_back();
        if (!seen.insert(e.node.get()).second)
            continue;
        out.append(e.node);
        // Push in reverse so that input 0 comes out first: a preorder over rising inputs.
        for (unsigned i = e.node->getNumInputs(); i-- > 0;) {
            Entry child;
            if (resolveInput(e, i, child))
                stack.push_back(child);
        }
    }
}

NumRange<double, Ordered> EditGraphIterator::getRange(int index, CelEventPair::eRangeType) const {
    int c = getChanIndex(index);
    if (c < 0)
        return NumRange<double, Ordered>(time_, time_);
    int ev = edit_->eventAt(c, time_);
    if (ev < 0)
        return NumRange<double, Ordered>(time_, time_);
    const CelEvent& e = edit_->chan(c).cel->events()[static_cast<size_t>(ev)];
    return NumRange<double, Ordered>(e.start, e.end);
}

CelEventPair EditGraphIterator::getUTRHandle(int index) const {
    int c = getChanIndex(index);
    return c < 0 ? CelEventPair() : CelEventPair(edit_, c, time_);
}

EditGraphIteratorState EditGraphIterator::getState() const {
    EditGraphIteratorState s;
    s.edit = edit_;
    s.time = time_;
    s.options = options_;
    for (const auto& e : path_)
        s.path.push_back(e.node->getId());
    if (!path_.empty() && path_.front().chan >= 0)
        s.rootChan = edit_->chan(path_.front().chan).id;
    return s;
}

bool EditGraphIterator::operator==(const EditGraphIterator& o) const {
    if (!(edit_ == o.edit_) || path_.size() != o.path_.size())
        return false;
    for (size_t i = 0; i < path_.size(); ++i)
        if (path_[i].node != o.path_[i].node || path_[i].parentInput != o.path_[i].parentInput)
            return false;
    return true;
}
