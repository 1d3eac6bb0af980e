// Cookie: the identity of a database object (an edit, a material, an effect graph). Its text
// form is a kind letter followed by the id's text, "E1.0.7"; the invalid cookie's text is "-".
#pragma once

#include "host/IdStamp.h"
#include "host/LightweightString.h"

class Cookie {
public:
    enum Kind : char { None = 0, EditKind = 'E', MaterialKind = 'M', EffectGraphKind = 'G' };

    Cookie() = default;
    Cookie(Kind kind, const IdStamp& id) : kind_(kind), id_(id) {}

    static Cookie fromString(const String& text);
    String asString() const;

    bool valid() const { return kind_ != None && id_.valid(); }
    bool isEffectGraph() const { return kind_ == EffectGraphKind; }
    Kind kind() const { return kind_; }
    const IdStamp& id() const { return id_; }
    bool operator==(const Cookie& o) const { return kind_ == o.kind_ && id_ == o.id_; }
    bool operator!=(const Cookie& o) const { return !(*this == o); }

private:
    Kind kind_ = None;
    IdStamp id_;
};
