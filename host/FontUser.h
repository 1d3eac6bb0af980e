// Glib::FontUser: the font a widget draws its text with.
#pragma once

#include "host/FontDesc.h"

namespace Glib {

// Holds the font of a widget; an unset font means the host's default font.
class FontUser {
public:
    virtual ~FontUser() = default;
    const FontDesc& getFont() const { return font_; }
    virtual void setFont(const FontDesc& f) { font_ = f; }

private:
    FontDesc font_;
};

} // namespace Glib
