// EditInfo: the database record behind a cookie, read by attribute name.
#pragma once

#include "host/Cookie.h"
#include "host/LightweightString.h"

struct dbrecord;

// Cookie kinds as numbers: 69 ('E') asks for the source record of a strip's material.
using CookieType = int;

// The cookie of the record of the given kind that stands for c. A material is its own source
// record here, so a material's cookie converted to kind 69 comes back as it is; a cookie
// already of the kind asked comes back too; anything else gives the invalid cookie. `flags`
// (255: everything) is kept for the host's other databases.
Cookie convertCookie(const Cookie& c, CookieType type, unsigned char flags);

// The attributes of a material or an edit of one of the open edits. With a null record the
// record is looked up by cookie; an unknown cookie has no attributes.
class EditInfo {
public:
    EditInfo(const Cookie& c, dbrecord* record);
    bool valid() const { return found_; }
    // "name" is the material's (or edit's) name, "source" a material's kind of source,
    // "file" its image file. Unknown attributes are empty.
    WString getAttribW(const char* attribute) const;

private:
    bool found_ = false;
    WString name_;
    WString source_;
    WString file_;
};
