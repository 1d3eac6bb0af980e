// Text helpers of the host: printf into strings and UTF-8/wide conversion.
#include <cstdio>
#include <cwchar>
#include <string>

#include "host/LightweightString.h"

String stringFormatV(const char* fmt, va_list args) {
    va_list copy;
    va_copy(copy, args);
    int n = std::vsnprintf(nullptr, 0, fmt, copy);
    va_end(copy);
    if (n <= 0)
        return String("");
    std::string out(static_cast<size_t>(n) + 1, '\0');
    std::vsnprintf(out.data(), out.size(), fmt, args);
    out.resize(static_cast<size_t>(n));
    return String(std::move(out));
}

String stringFormat(const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    String s = stringFormatV(fmt, args);
    va_end(args);
    return s;
}

WString toWide(const String& s) {
    std::wstring out;
    const unsigned char* p = reinterpret_cast<const unsigned char*>(s.c_str());
    size_t n = s.size();
    for (size_t i = 0; i < n;) {
        unsigned c = p[i];
        unsigned cp = 0xFFFD;
        size_t len = 1;
        if (c < 0x80) {
            cp = c;
        } else if ((c >> 5) == 6 && i + 1 < n) {
            cp = ((c & 0x1F) << 6) | (p[i + 1] & 0x3F);
            len = 2;
        } else if ((c >> 4) == 14 && i + 2 < n) {
            cp = ((c & 0x0F) << 12) | ((p[i + 1] & 0x3F) << 6) | (p[i + 2] & 0x3F);
            len = 3;
        } else if ((c >> 3) == 30 && i + 3 < n) {
            cp =
                ((c & 0x07) << 18) | ((p[i + 1] & 0x3F) << 12) | ((p[i + 2] & 0x3F) << 6) | (p[i + 3] & 0x3F);
            len = 4;
        }
        out.push_back(static_cast<wchar_t>(cp));
        i += len;
    }
    return WString(std::move(out));
}

void appendUtf8(std::string& out, unsigned cp) {
    if (cp < 0x80) {
        out.push_back(static_cast<char>(cp));
    } else if (cp < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else if (cp < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
}

String toUtf8(const WString& s) {
    std::string out;
    for (size_t i = 0; i < s.size(); ++i)
        appendUtf8(out, static_cast<unsigned>(s[i]));
    return String(std::move(out));
}
