// Colours, palettes, style metrics and fonts of the reference look.
#include <QFontDatabase>
#include <QFontMetrics>
#include <algorithm>
#include <memory>
#include <string>
#include <unordered_map>

#include "host/Colour.h"
#include "host/GlibFonts.h"
#include "host/Palette.h"
#include "host/ToolkitApp.h"
#include "host/UifStd.h"
#include "refhost/toolkit/GlobImpl.h"

namespace {
double clamp01(double v) {
    return std::clamp(v, 0.0, 1.0);
}
} // namespace

Colour::Colour(double r, double g, double b, bool translucent)
    : r_(clamp01(r)), g_(clamp01(g)), b_(clamp01(b)), translucent_(translucent) {}

bool Colour::operator==(const Colour& o) const {
    return r_ == o.r_ && g_ == o.g_ && b_ == o.b_ && translucent_ == o.translucent_;
}

Colour scale(const Colour& c, double f) {
    return Colour(c.red() * f, c.green() * f, c.blue() * f, c.translucent());
}

NormalisedRGB fromColour(const Colour& c) {
    return NormalisedRGB{c.red(), c.green(), c.blue(), c.translucent() ? 0.5 : 1.0};
}

Palette::Palette() : Palette(Colour(0.24, 0.25, 0.27)) {}

Palette::Palette(const Colour& base) : base_(base) {
    double lum = 0.299 * base.red() + 0.587 * base.green() + 0.114 * base.blue();
    text_ = lum > 0.55 ? Colour(0.08, 0.08, 0.08) : Colour(0.92, 0.92, 0.92);
}

Colour Palette::window(int shade) const {
    if (shade == 0)
        return base_;
    if (shade < 0)
        return scale(base_, std::max(0.0, 1.0 + 0.12 * shade));
    // Lighter shades move towards white.
    double t = std::min(1.0, 0.12 * shade);
    return Colour(base_.red() + (1 - base_.red()) * t, base_.green() + (1 - base_.green()) * t,
                  base_.blue() + (1 - base_.blue()) * t, base_.translucent());
}

Colour Palette::text(int kind) const {
    if (kind == 1)
        return Colour((text_.red() + base_.red()) / 2, (text_.green() + base_.green()) / 2,
                      (text_.blue() + base_.blue()) / 2);
    if (kind == 2)
        return Colour(text_.red() * 0.75 + base_.red() * 0.25, text_.green() * 0.75 + base_.green() * 0.25,
                      text_.blue() * 0.75 + base_.blue() * 0.25);
    return text_;
}

UifStd& UifStd::instance() {
    static UifStd s;
    return s;
}

int UifStd::getRowHeight() {
    return getDefaultFontSize() + 10;
}
int UifStd::getWidgetGap() {
    return 4;
}
int UifStd::getIndentWidth() {
    return 6;
}
FontDesc UifStd::getTitleFont() {
    return FontDesc{getDefaultFontName(0), getDefaultFontSize(), true};
}
int UifStd::getWindowArrangement() {
    return 0;
}

int getDefaultFontSize() {
    return 13;
}
String getDefaultFontName(int) {
    return "DejaVu Sans";
}

namespace {

// Fonts and their metrics are made once per description, and text widths are kept per font and
// text: a canvas repaints the same titles over and over. The tables are bounded and start afresh
// when full.
struct FontEntry {
    QFont font;
    QFontMetrics metrics;
    std::unordered_map<std::wstring, int> widths;
};

std::string fontKey(const FontDesc& f) {
    return std::string(f.name.c_str()) + '\x1f' + std::to_string(f.size) + (f.bold ? "b" : "");
}

FontEntry& fontEntry(const FontDesc& f) {
    static std::unordered_map<std::string, std::unique_ptr<FontEntry>> fonts;
    const std::string key = fontKey(f);
    auto it = fonts.find(key);
    if (it != fonts.end())
        return *it->second;
    ensureToolkitApplication();
    QFont q(QString::fromUtf8(f.name.empty() ? getDefaultFontName(0).c_str() : f.name.c_str()));
    q.setPixelSize(f.size > 0 ? f.size : getDefaultFontSize());
    q.setBold(f.bold);
    if (fonts.size() >= 256)
        fonts.clear();
    auto entry = std::unique_ptr<FontEntry>(new FontEntry{q, QFontMetrics(q), {}});
    return *(fonts[key] = std::move(entry));
}

} // namespace

QFont toolkit::toQFont(const FontDesc& f) {
    return fontEntry(f).font;
}

const QFontMetrics& toolkit::fontMetrics(const FontDesc& f) {
    return fontEntry(f).metrics;
}

int getFontYOffset(int boxHeight, const FontDesc& font) {
    const QFontMetrics& fm = toolkit::fontMetrics(font);
    return (boxHeight - (fm.ascent() + fm.descent())) / 2 + fm.descent();
}

FontDesc Glib::getDefaultFont() {
    return FontDesc{getDefaultFontName(0), getDefaultFontSize(), false};
}

FontDesc Glib::loadFont(const String& name, int size, int style) {
    return FontDesc{name.empty() ? getDefaultFontName(0) : name, size > 0 ? size : getDefaultFontSize(),
                    (style & 1) != 0};
}

int Glib::textWidth(const WString& text, const FontDesc& font) {
    FontEntry& e = fontEntry(font);
    const std::wstring key(text.view());
    auto it = e.widths.find(key);
    if (it != e.widths.end())
        return it->second;
    if (e.widths.size() >= 8192)
        e.widths.clear();
    const int w = e.metrics.horizontalAdvance(toolkit::toQString(text));
    e.widths.emplace(key, w);
    return w;
}

WString Glib::fitTextToWidth(const WString& text, const FontDesc& font, int width, int) {
    if (textWidth(text, font) <= width)
        return text;
    // The longest head that fits with ".." after it; widths grow with the head, so halve.
    const std::wstring s(text.view());
    size_t lo = 0, hi = s.size(); // a head of lo characters fits (or lo is 0); hi does not
    while (hi - lo > 1) {
        const size_t mid = (lo + hi) / 2;
        if (textWidth(WString(s.substr(0, mid) + L".."), font) <= width)
            lo = mid;
        else
            hi = mid;
    }
    if (lo > 0)
        return WString(s.substr(0, lo) + L"..");
    return textWidth(L"..", font) <= width ? WString(L"..") : WString();
}

QString toolkit::toQString(const WString& s) {
    return QString::fromWCharArray(s.c_str(), static_cast<int>(s.size()));
}

WString toolkit::fromQString(const QString& s) {
    return WString(s.toStdWString());
}

QColor toolkit::toQColor(const Colour& c) {
    return QColor::fromRgbF(static_cast<float>(c.red()), static_cast<float>(c.green()),
                            static_cast<float>(c.blue()), c.translucent() ? 0.5f : 1.0f);
}
