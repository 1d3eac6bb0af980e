// UIString: a user-interface text, either literal wide text or a resource id, and a flag word.
#pragma once

#include "host/LightweightString.h"

// Id NoResource means the wide text stands as it is. Flag AppendDots adds ".." to the resolved
// text (used for labels that open a further dialogue).
class UIString {
public:
    static constexpr unsigned NoResource = 999999;
    static constexpr unsigned AppendDots = 1;

    UIString() = default;
    UIString(unsigned resourceId, unsigned flags = 0) : id_(resourceId), flags_(flags) {}
    UIString(const WString& text, unsigned resourceId = NoResource, unsigned flags = 0)
        : text_(text), id_(resourceId), flags_(flags) {}
    UIString(const wchar_t* text) : text_(text) {}

    // The text to show: the resource's text for a resource id (the literal text if the resource
    // is unknown), else the literal text; then the flags applied.
    WString resolve() const;

    const WString& text() const { return text_; }
    unsigned id() const { return id_; }
    unsigned flags() const { return flags_; }
    bool operator==(const UIString& o) const { return resolve() == o.resolve(); }

private:
    WString text_;
    unsigned id_ = NoResource;
    unsigned flags_ = 0;
};
