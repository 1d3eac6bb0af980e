// Taggable: a Streamable that lives in an edit's store of objects and carries a tag type id,
// the text that names what kind of thing it is ("PixShader:Mattes:flatcol.fx").
#pragma once

#include <vector>

#include "host/Streamable.h"

class TagMarkerTable;

// Its layer, short name "T", revision 1.0, holds the tag type id as a packed string. The
// lifecycle hooks are called by the edit's store; by default they do nothing.
class Taggable : public Streamable {
public:
    Taggable() = default;
    explicit Taggable(BuilderType b) : Streamable(b) {}
    Taggable(BuilderType b, const Taggable& o) : Streamable(b, o), tagTypeId_(o.tagTypeId_) {}
    Taggable(const Taggable&) = default;
    Taggable& operator=(const Taggable&) = default;
    ~Taggable() override = default;

    const String& tagTypeId() const { return tagTypeId_; }
    void setTagTypeId(const String& id) { tagTypeId_ = id; }

    void printOn(GrowString& out) const override;

    STRM_DECLARE_LAYER(Taggable, Streamable);

public:
    virtual void destroyChildren(TagMarkerTable& table);
    virtual void displaceNotify();
    virtual void preDeleteNotify();
    virtual void preDestroyNotify();
    virtual void destroyNotify();
    // The tag type id, or the class path when there is none.
    virtual String asString() const;
    virtual Zk::Ptr<Taggable> clone() const;
    // Appends a copy of this object and of its children to `out`, pairing each in `table`.
    virtual void cloneWithChildren(std::vector<Zk::Ptr<Taggable>>& out, TagMarkerTable& table);

private:
    void pack(PStream& s) const;
    void unpack(PStream& s);

    String tagTypeId_;
};
