// EditGraphIterator: a walk over the effect graph of one edit at one time, held as a path from a
// channel's root node; it stands on the node at index depth(). It does not guard against cycles
// or nodes reached twice: a path may hold one node more than once.
//
// The option word: bit 0 (1) makes `search` look from the top of every channel of the edit and
// among orphaned components, not only below the path's root; bit 1 (2) climbs from the
// channel's own root to the primary node, the root of the graph that takes the channel in
// through a track input (repeatedly); bit 3 (8) marks an iterator made for a known node.
// The values in use: 9 (a walk from a known node), 10 (the primary node over channel 0),
// 2 (the primary node of one channel), 1 (a search from the top), 0 (a plain walk).
//
// A compound effect's inputs lie in its inner edit: a step through one of them enters that edit
// at the inner time, and the entries below it report the inner edit's channels and cels.
#pragma once

#include <vector>

#include "host/CelEventPair.h"
#include "host/EditPtr.h"
#include "host/EditTypes.h"
#include "host/FXGraphNodeBase.h"
#include "host/Vector.h"

// The text form, for positions carried in text messages: "<edit cookie>;<root channel>;<time>;
// <options>;<id>,<id>,...", the path from the root. An edit is found again by its cookie among
// the open edits (VobManager); text that doesn't read, or names no open edit, gives a state
// without a path, whose iterator is not valid.
class EditGraphIteratorState {
public:
    EditGraphIteratorState() = default;
    explicit EditGraphIteratorState(const LightweightString<char>& text);
    String asString() const;

    EditPtr edit;
    std::vector<IdStamp> path; // node ids from the root
    IdStamp rootChan;
    double time = 0.0;
    int options = 0;
};

class EditGraphIterator {
public:
    enum eSearchType { searchBelowRoot = 0, searchWholeEdit = 1 };
    enum eOptions { optSearchFromTop = 1, optPrimary = 2, optFromNode = 8 };

    explicit EditGraphIterator(int options = 0);
    EditGraphIterator(const EditPtr& edit, int chanIndex, const double& time, int options);
    EditGraphIterator(const EditPtr& edit, const IdStamp& chan, const double& time, int options);
    // From the text form of asString (that of its state); not valid when the text doesn't read.
    explicit EditGraphIterator(const LightweightString<char>& text);
    String asString() const { return getState().asString(); }

    bool isValid() const { return !path_.empty(); }
    int depth() const { return static_cast<int>(path_.size()) - 1; }
    Zk::Ptr<FXGraphNodeBase> getNode(int index) const;
    // The same node without taking a reference, for a caller that only looks: it stays valid
    // while the entry stands on the path and the graph is not changed.
    FXGraphNodeBase* peekNode(int index) const {
        const int i = entryIndex(index);
        return i < 0 ? nullptr : path_[static_cast<size_t>(i)].node.get();
    }
    IdStamp getNodeId(int index) const;
    // -1 the current entry, -2 the one before (at the root: the root's own channel); a missing
    // entry gives the invalid id and -1.
    IdStamp getChanId(int index) const;
    int getChanIndex(int index) const;
    int getParentInputNum() const;

    bool moveToInput(unsigned input);
    // Steps as moveToInput, for a walk that only looks: the new entry holds no reference on its
    // node, so the walk must leave the graph as it is while it stands there. A copy of the
    // iterator holds every node of its path.
    bool lookToInput(unsigned input);
    bool moveBack();
    bool search(const FXGraphNodeBase* node);
    bool search(const IdStamp& id, eSearchType type = searchBelowRoot);
    void findAllComponents(Vector<Zk::Ptr<FXGraphNodeBase>>& out) const;

    const double& getTime() const { return time_; }
    const EditPtr& getEditH() const { return edit_; }
    EditPtr getCurrentPosEdit() const;
    NumRange<double, Ordered> getRange(int index, CelEventPair::eRangeType type) const;
    // Where the walk's time lies within the current entry's event, from 0 at its start to 1 at
    // its end; 0 for an invalid iterator or an empty event.
    double getCompoundAlpha() const;
    // True when the current node is a compound effect, whose inputs lead into its inner edit.
    bool isCompoundEffectHead() const;
    // Steps back to the compound effect that holds the current entry; false, with the path
    // unchanged, when the current entry lies in the iterator's own edit.
    bool moveBackToCompoundEffect();
    CelEventPair getUTRHandle(int index) const;
    void setTraverseGhosts(bool t) { traverseGhosts_ = t; }
    int options() const { return options_; }

    EditGraphIteratorState getState() const;
    bool operator==(const EditGraphIterator& o) const;

private:
    // A path entry's node: held by a reference, or, for a step that only looks, not. A copy
    // always holds; a move keeps what it had.
    class NodeRef {
    public:
        NodeRef() = default;
        NodeRef(const NodeRef& o) : node_(o.node_), held_(o.node_ != nullptr) { hold(); }
        NodeRef(NodeRef&& o) noexcept : node_(o.node_), held_(o.held_) {
            o.node_ = nullptr;
            o.held_ = false;
        }
        NodeRef& operator=(const NodeRef& o) {
            if (this != &o)
                set(o.node_, true);
            return *this;
        }
        NodeRef& operator=(NodeRef&& o) noexcept {
            if (this != &o) {
                drop();
                node_ = o.node_;
                held_ = o.held_;
                o.node_ = nullptr;
                o.held_ = false;
            }
            return *this;
        }
        NodeRef& operator=(const Zk::Ptr<FXGraphNodeBase>& p) {
            set(p.get(), true);
            return *this;
        }
        ~NodeRef() { drop(); }

        // Stands on the node without a reference.
        void look(FXGraphNodeBase* n) { set(n, false); }
        FXGraphNodeBase* get() const { return node_; }
        FXGraphNodeBase* operator->() const { return node_; }
        explicit operator bool() const { return node_ != nullptr; }
        bool operator==(const NodeRef& o) const { return node_ == o.node_; }
        Zk::Ptr<FXGraphNodeBase> ptr() const { return Zk::Ptr<FXGraphNodeBase>(node_); }

    private:
        void hold() const {
            if (held_)
                static_cast<const Zk::InternalRefCount*>(node_)->addRef();
        }
        void drop() {
            if (held_)
                static_cast<const Zk::InternalRefCount*>(node_)->release();
            node_ = nullptr;
            held_ = false;
        }
        void set(FXGraphNodeBase* n, bool held) {
            if (n && held)
                static_cast<const Zk::InternalRefCount*>(n)->addRef();
            drop();
            node_ = n;
            held_ = n && held;
        }

        FXGraphNodeBase* node_ = nullptr;
        bool held_ = false;
    };

    // A step of the path. The edit an entry lies in is held by the iterator itself (edit_), or
    // for the inside of a compound effect by `inner`, so that a step through a plain link takes
    // no reference on an edit.
    struct Entry {
        NodeRef node;
        int chan = -1; // in the entry's edit
        int parentInput = 0;
        Edit* edit = nullptr; // the edit the entry lies in
        EditPtr inner;        // holds `edit` where it is a compound effect's inner edit
        double time = 0.0;    // the walk's time in that edit

        // A path that grows moves its entries, so that each keeps what it held.
        Entry() = default;
        Entry(const Entry&) = default;
        Entry(Entry&&) noexcept = default;
        Entry& operator=(const Entry&) = default;
        Entry& operator=(Entry&&) noexcept = default;
        ~Entry() = default;
    };
    friend class FXEditor;
    friend class EditGraphSearchScope;

    int entryIndex(int index) const {
        if (index < 0)
            index = static_cast<int>(path_.size()) + index;
        return index >= 0 && index < static_cast<int>(path_.size()) ? index : -1;
    }
    // The entry whose channel index -2 and the like name; at the root, -2 is the root itself.
    int chanEntryIndex(int index) const;
    bool startAtChannel(int chanIndex);
    bool searchFrom(const Entry& root, const FXGraphNodeBase* node, const IdStamp* id);
    bool resolveInput(const Entry& at, unsigned input, Entry& out, bool hold = true) const;
    bool step(unsigned input, bool hold);
    Entry rootEntry(int chan, const Zk::Ptr<FXGraphNodeBase>& node) const;

    EditPtr edit_;
    double time_ = 0.0;
    int options_ = 0;
    bool traverseGhosts_ = false;
    std::vector<Entry> path_;
};
