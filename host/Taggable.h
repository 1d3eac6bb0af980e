// Taggable: a Streamable that lives in an edit's store of objects and carries a tag type id,
// the text that names what kind of thing it is ("PixShader:Mattes:flatcol.fx").
#pragma once

#include "host/Streamable.h"

class Taggable : public Streamable {
public:
    Taggable() = default;
    explicit Taggable(BuilderType b) : Streamable(b) {}
    ~Taggable() override = default;

    const String& tagTypeId() const { return tagTypeId_; }
    void setTagTypeId(const String& id) { tagTypeId_ = id; }

private:
    String tagTypeId_;
};
