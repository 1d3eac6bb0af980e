// The host's font services: the default font, loading, measuring and fitting text.
#pragma once

#include "host/FontDesc.h"

int getDefaultFontSize();
String getDefaultFontName(int kind = 0);
// Distance from the bottom of a box of the given height up to the baseline that centres one line
// of the font in it.
int getFontYOffset(int boxHeight, const FontDesc& font);

namespace Glib {

FontDesc getDefaultFont();
FontDesc loadFont(const String& name, int size, int style = 0);
int textWidth(const WString& text, const FontDesc& font);
// The text if it fits in width pixels, else its longest head that fits with ".." appended; an
// empty text when not even ".." fits.
WString fitTextToWidth(const WString& text, const FontDesc& font, int width, int flags = 0);

} // namespace Glib
