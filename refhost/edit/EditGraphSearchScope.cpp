// Whole-edit searches answered from one walk while the edit's graphs hold still.
#include "host/EditGraphSearchScope.h"

#include <map>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "host/Edit.h"
#include "host/EditGraphIterator.h"
#include "host/FXEditor.h"

// One walk of an edit at one time, in the order a whole-edit search takes: each channel's graph
// in channel order, then each orphaned component, depth first over inputs in rising order, each
// node once per starting point. A node's answer is the path on which it was first reached.
struct EditGraphSearchScope::Walk {
    struct Step {
        EditGraphIterator::Entry entry;
        int parent = -1;
    };
    std::vector<Step> steps;
    std::unordered_map<IdStamp, int, IdStampHash> first;

    void record(int step) { first.emplace(steps[static_cast<size_t>(step)].entry.node->getId(), step); }
};

namespace {

struct Held {
    int depth = 0;
    std::map<std::pair<double, bool>, EditGraphSearchScope::Walk> walks;
};

std::map<const Edit*, Held>& held() {
    static std::map<const Edit*, Held> h;
    return h;
}

} // namespace

EditGraphSearchScope::EditGraphSearchScope(const EditPtr& edit) : edit_(edit) {
    if (edit_)
        ++held()[edit_.get()].depth;
}

EditGraphSearchScope::~EditGraphSearchScope() {
    if (!edit_)
        return;
    auto it = held().find(edit_.get());
    if (it != held().end() && --it->second.depth <= 0)
        held().erase(it);
}

int EditGraphSearchScope::answer(EditGraphIterator& it, const IdStamp& id) {
    auto h = held().find(it.edit_.get());
    if (h == held().end())
        return -1;
    const auto key = std::make_pair(it.time_, it.traverseGhosts_);
    auto w = h->second.walks.find(key);
    if (w == h->second.walks.end()) {
        EditGraphSearchScope::Walk walk;
        // The walk's own iterator resolves inputs exactly as the search would.
        EditGraphIterator probe(it.options_);
        probe.edit_ = it.edit_;
        probe.time_ = it.time_;
        probe.traverseGhosts_ = it.traverseGhosts_;
        auto walkFrom = [&](const EditGraphIterator::Entry& root) {
            std::unordered_set<const FXGraphNodeBase*> seen{root.node.get()};
            walk.steps.push_back({root, -1});
            walk.record(static_cast<int>(walk.steps.size()) - 1);
            std::vector<std::pair<int, unsigned>> stack{{static_cast<int>(walk.steps.size()) - 1, 0u}};
            while (!stack.empty()) {
                auto& [step, next] = stack.back();
                const EditGraphIterator::Entry top = walk.steps[static_cast<size_t>(step)].entry;
                if (next >= top.node->getNumInputs()) {
                    stack.pop_back();
                    continue;
                }
                EditGraphIterator::Entry child;
                const bool ok = probe.resolveInput(top, next++, child);
                if (!ok || !seen.insert(child.node.get()).second)
                    continue;
                const int parent = step;
                walk.steps.push_back({child, parent});
                const int made = static_cast<int>(walk.steps.size()) - 1;
                walk.record(made);
                stack.emplace_back(made, 0u);
            }
        };
        const Edit& edit = *it.edit_;
        for (int c = 0; c < edit.numChans(); ++c) {
            const int ev = edit.eventAt(c, it.time_);
            if (ev < 0)
                continue;
            EditGraphIterator::Entry root;
            root.node = edit.chan(c).cel->events()[static_cast<size_t>(ev)].node;
            root.chan = c;
            if (root.node)
                walkFrom(root);
        }
        std::vector<IdStamp> orphans;
        FXEditor::findOrphanedComponents(it.edit_, it.time_, orphans);
        for (const IdStamp& o : orphans) {
            EditGraphIterator::Entry root;
            root.node = edit.findNode(o);
            if (root.node)
                walkFrom(root);
        }
        w = h->second.walks.emplace(key, std::move(walk)).first;
    }
    const EditGraphSearchScope::Walk& walk = w->second;
    auto found = walk.first.find(id);
    if (found == walk.first.end())
        return 0;
    std::vector<EditGraphIterator::Entry> path;
    for (int s = found->second; s >= 0; s = walk.steps[static_cast<size_t>(s)].parent)
        path.push_back(walk.steps[static_cast<size_t>(s)].entry);
    it.path_.assign(path.rbegin(), path.rend());
    return 1;
}
