// Walks over an edit's effect graphs at one time.
#include "host/EditGraphIterator.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "host/CompoundEffect.h"
#include "host/Edit.h"
#include "host/EditGraphSearchScope.h"
#include "host/FXEditor.h"

namespace {

// For each channel, the lowest-numbered other channel whose graph at `time` takes it in through
// a track input, or -1. One walk over each channel's graph, so the whole table costs what the
// graphs do.
std::vector<int> consumerTable(const Edit& edit, double time) {
    const int count = edit.numChans();
    std::unordered_map<IdStamp, int, IdStampHash> index;
    index.reserve(static_cast<size_t>(count));
    for (int c = 0; c < count; ++c)
        index.emplace(edit.chan(c).id, c);
    std::vector<int> consumer(static_cast<size_t>(count), -1);
    std::vector<FXGraphNodeBase*> stack;
    std::unordered_set<FXGraphNodeBase*> seen;
    for (int c = 0; c < count; ++c) {
        int ev = edit.eventAt(c, time);
        if (ev < 0)
            continue;
        stack.assign(1, edit.chan(c).cel->events()[static_cast<size_t>(ev)].node.get());
        seen.clear();
        while (!stack.empty()) {
            FXGraphNodeBase* n = stack.back();
            stack.pop_back();
            if (!n || !seen.insert(n).second)
                continue;
            for (const auto& in : n->inputs()) {
                if (in.node) {
                    stack.push_back(in.node.get());
                    continue;
                }
                if (!in.track.valid())
                    continue;
                auto fed = index.find(in.track);
                if (fed != index.end() && fed->second != c && consumer[static_cast<size_t>(fed->second)] < 0)
                    consumer[static_cast<size_t>(fed->second)] = c;
            }
        }
    }
    return consumer;
}

// For each channel, the channel that shows it: the top of its climb over consumers, a channel
// that nothing takes in. Channels that feed each other in a ring have no such top; the
// lowest-numbered channel of the ring stands for it, so that the ring still shows once.
std::vector<int> primaryTable(const std::vector<int>& consumer) {
    const size_t count = consumer.size();
    std::vector<int> primary(count, -1);
    std::vector<int> onPath(count, -1); // place on the climb being made, -1 when off it
    std::vector<int> path;
    for (size_t start = 0; start < count; ++start) {
        if (primary[start] >= 0)
            continue;
        path.clear();
        int top = -1;
        for (int c = static_cast<int>(start);; c = consumer[static_cast<size_t>(c)]) {
            if (c < 0) {
                top = path.back();
                break;
            }
            if (primary[static_cast<size_t>(c)] >= 0) {
                top = primary[static_cast<size_t>(c)];
                break;
            }
            if (onPath[static_cast<size_t>(c)] >= 0) {
                top = *std::min_element(path.begin() + onPath[static_cast<size_t>(c)], path.end());
                break;
            }
            onPath[static_cast<size_t>(c)] = static_cast<int>(path.size());
            path.push_back(c);
        }
        for (int c : path) {
            primary[static_cast<size_t>(c)] = top;
            onPath[static_cast<size_t>(c)] = -1;
        }
    }
    return primary;
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
        chanIndex = primaryTable(consumerTable(*edit_, time_))[static_cast<size_t>(chanIndex)];
    }
    int ev = edit_->eventAt(chanIndex, time_);
    if (ev < 0)
        return false;
    Entry e = rootEntry(chanIndex, edit_->chan(chanIndex).cel->events()[static_cast<size_t>(ev)].node);
    if (!e.node)
        return false;
    path_.push_back(e);
    return true;
}

EditGraphIterator::Entry EditGraphIterator::rootEntry(int chan, const Zk::Ptr<FXGraphNodeBase>& node) const {
    Entry e;
    e.node = node;
    e.chan = chan;
    e.edit = edit_.get();
    e.time = time_;
    return e;
}

Zk::Ptr<FXGraphNodeBase> EditGraphIterator::getNode(int index) const {
    int i = entryIndex(index);
    return i < 0 ? nullptr : path_[static_cast<size_t>(i)].node.ptr();
}

IdStamp EditGraphIterator::getNodeId(int index) const {
    int i = entryIndex(index);
    return i < 0 ? IdStamp() : path_[static_cast<size_t>(i)].node->getId();
}

IdStamp EditGraphIterator::getChanId(int index) const {
    int i = chanEntryIndex(index);
    if (i < 0 || path_[static_cast<size_t>(i)].chan < 0)
        return IdStamp();
    const Entry& e = path_[static_cast<size_t>(i)];
    return e.edit->chan(e.chan).id;
}

int EditGraphIterator::chanEntryIndex(int index) const {
    // At the root there is no entry before the current one: the channel the path starts from
    // stands in for it, so that a root is known by its channel like any other node.
    if (index == -2 && path_.size() == 1)
        return 0;
    return entryIndex(index);
}

int EditGraphIterator::getChanIndex(int index) const {
    int i = chanEntryIndex(index);
    return i < 0 ? -1 : path_[static_cast<size_t>(i)].chan;
}

int EditGraphIterator::getParentInputNum() const {
    return path_.empty() ? 0 : path_.back().parentInput;
}

bool EditGraphIterator::resolveInput(const Entry& at, unsigned input, Entry& out, bool hold) const {
    if (!at.node || input >= at.node->getNumInputs() || input >= at.node->inputs().size())
        return false;
    const FXGraphNodeBase::Input& in = at.node->input(input);
    if (in.ghost && !traverseGhosts_)
        return false;
    out.parentInput = static_cast<int>(input);
    out.edit = at.edit;
    if (at.inner)
        out.inner = at.inner;
    out.time = at.time;
    if (in.node) {
        if (hold)
            out.node = in.node;
        else
            out.node.look(in.node.get());
        out.chan = at.chan;
        return true;
    }
    // The tracks of a compound effect are channels of its inner edit, at the inner time.
    if (auto* compound = dynamic_cast<const CompoundEffect*>(at.node.get())) {
        if (!compound->innerEdit())
            return false;
        out.inner = compound->innerEdit();
        out.edit = out.inner.get();
        out.time = at.time + compound->timeOffset();
    }
    if (in.track.valid() && out.edit) {
        int c = out.edit->getIdx(in.track);
        int ev = out.edit->eventAt(c, out.time); // an internal track is no channel: -1
        if (ev < 0)
            return false;
        const Zk::Ptr<FXGraphNodeBase>& node = out.edit->chan(c).cel->events()[static_cast<size_t>(ev)].node;
        if (hold)
            out.node = node;
        else
            out.node.look(node.get());
        out.chan = c;
        return static_cast<bool>(out.node);
    }
    return false;
}

bool EditGraphIterator::moveToInput(unsigned input) {
    return step(input, true);
}

bool EditGraphIterator::lookToInput(unsigned input) {
    return step(input, false);
}

bool EditGraphIterator::step(unsigned input, bool hold) {
    if (path_.empty())
        return false;
    // A walk that takes a node's first input mostly takes the others after it: their nodes are
    // fetched into the cache now, while the walk goes down the first.
    if (input == 0 && path_.back().node) {
        for (const FXGraphNodeBase::Input& in : path_.back().node->inputs()) {
            const char* n = reinterpret_cast<const char*>(in.node.get());
            if (n) {
                __builtin_prefetch(n);
                __builtin_prefetch(n + 64);
            }
        }
    }
    // The step is resolved in its place at the end of the path, and taken off again when the
    // input leads nowhere.
    path_.emplace_back();
    if (!resolveInput(path_[path_.size() - 2], input, path_.back(), hold)) {
        path_.pop_back();
        return false;
    }
    // And the new node's own inputs, which the walk reads next when it goes on down.
    const std::vector<FXGraphNodeBase::Input>& below = path_.back().node->inputs();
    if (!below.empty())
        __builtin_prefetch(below.data());
    return true;
}

bool EditGraphIterator::moveBack() {
    if (path_.size() <= 1)
        return false;
    path_.pop_back();
    return true;
}

EditPtr EditGraphIterator::getCurrentPosEdit() const {
    return path_.empty() ? edit_ : EditPtr(path_.back().edit);
}

bool EditGraphIterator::isCompoundEffectHead() const {
    return !path_.empty() && dynamic_cast<const CompoundEffect*>(path_.back().node.get()) != nullptr;
}

bool EditGraphIterator::moveBackToCompoundEffect() {
    if (path_.empty())
        return false;
    const Edit* here = path_.back().edit;
    for (size_t i = path_.size() - 1; i-- > 0;) {
        if (path_[i].edit == here)
            continue;
        // The first entry of another edit going back is the head whose inputs lead here.
        path_.resize(i + 1);
        return true;
    }
    return false;
}

bool EditGraphIterator::searchFrom(const Entry& root, const FXGraphNodeBase* node, const IdStamp* id) {
    // Depth first over inputs in rising order; each node is entered once so that a cycle ends.
    std::vector<Entry> path{root};
    std::vector<unsigned> nextInput{0};
    std::unordered_set<const FXGraphNodeBase*> seen{root.node.get()};
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
        Entry root = rootEntry(c, edit_->chan(c).cel->events()[static_cast<size_t>(ev)].node);
        if (root.node && searchFrom(root, nullptr, &id))
            return true;
    }
    std::vector<IdStamp> orphans;
    FXEditor::findOrphanedComponents(edit_, time_, orphans);
    for (const IdStamp& o : orphans) {
        Entry root = rootEntry(-1, edit_->findNode(o));
        if (root.node && searchFrom(root, nullptr, &id))
            return true;
    }
    return false;
}

void EditGraphIterator::findAllComponents(Vector<Zk::Ptr<FXGraphNodeBase>>& out) const {
    if (path_.empty())
        return;
    std::unordered_set<const FXGraphNodeBase*> seen;
    std::vector<Entry> stack{path_.back()};
    while (!stack.empty()) {
        Entry e = stack.back();
        stack.pop_back();
        if (!seen.insert(e.node.get()).second)
            continue;
        out.append(e.node.ptr());
        // Push in reverse so that input 0 comes out first: a preorder over rising inputs.
        for (unsigned i = e.node->getNumInputs(); i-- > 0;) {
            Entry child;
            if (resolveInput(e, i, child))
                stack.push_back(child);
        }
    }
}

NumRange<double, Ordered> EditGraphIterator::getRange(int index, CelEventPair::eRangeType) const {
    int i = entryIndex(index);
    if (i < 0 || path_[static_cast<size_t>(i)].chan < 0)
        return NumRange<double, Ordered>(time_, time_);
    const Entry& at = path_[static_cast<size_t>(i)];
    int ev = at.edit->eventAt(at.chan, at.time);
    if (ev < 0)
        return NumRange<double, Ordered>(time_, time_);
    // An inner cel is told in the iterator's own time, cut to the cels that hold it outside.
    const CelEvent& e = at.edit->chan(at.chan).cel->events()[static_cast<size_t>(ev)];
    double shift = at.time - time_;
    double lo = e.start - shift, hi = e.end - shift;
    if (at.edit != edit_.get())
        for (int j = i; j-- > 0;) {
            if (path_[static_cast<size_t>(j)].edit == at.edit)
                continue;
            NumRange<double, Ordered> outer = getRange(j, CelEventPair::kEventRange);
            lo = std::max(lo, outer.lo);
            hi = std::min(hi, outer.hi);
            break;
        }
    return NumRange<double, Ordered>(lo, std::max(lo, hi));
}

CelEventPair EditGraphIterator::getUTRHandle(int index) const {
    int i = chanEntryIndex(index);
    if (i < 0 || path_[static_cast<size_t>(i)].chan < 0)
        return CelEventPair();
    const Entry& at = path_[static_cast<size_t>(i)];
    return CelEventPair(EditPtr(at.edit), at.chan, at.time);
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

// Lives beside the iterator, whose table of consumers it shares.
void findAllRootNodeChans(const EditPtr& edit, double time, std::vector<IdStamp>& out, EditChanType type) {
    if (!edit)
        return;
    // A channel holds a root when it has a graph and shows itself: no other channel's graph
    // takes it in, or it stands for a ring of channels that feed each other.
    const std::vector<int> primary = primaryTable(consumerTable(*edit, time));
    for (int c = 0; c < edit->numChans(); ++c) {
        if (edit->getChanType(c) != type)
            continue;
        const int ev = edit->eventAt(c, time);
        if (ev < 0 || !edit->chan(c).cel->events()[static_cast<size_t>(ev)].node)
            continue;
        if (primary[static_cast<size_t>(c)] == c)
            out.push_back(edit->chan(c).id);
    }
}
