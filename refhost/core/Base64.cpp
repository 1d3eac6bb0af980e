// Base64 coding.
#include "refhost/core/Base64.h"

namespace {
const char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

int decodeChar(char c) {
    if (c >= 'A' && c <= 'Z')
        return c - 'A';
    if (c >= 'a' && c <= 'z')
        return c - 'a' + 26;
    if (c >= '0' && c <= '9')
        return c - '0' + 52;
    if (c == '+')
        return 62;
    if (c == '/')
        return 63;
    return -1;
}
} // namespace

std::string base64Encode(const std::string& bytes) {
    std::string out;
    out.reserve((bytes.size() + 2) / 3 * 4);
    size_t i = 0;
    for (; i + 2 < bytes.size(); i += 3) {
        unsigned v = (static_cast<unsigned char>(bytes[i]) << 16) | (static_cast<unsigned char>(bytes[i + 1]) << 8) |
                     static_cast<unsigned char>(bytes[i + 2]);
        out += kAlphabet[(v >> 18) & 63];
        out += kAlphabet[(v >> 12) & 63];
        out += kAlphabet[(v >> 6) & 63];
        out += kAlphabet[v & 63];
    }
    if (i < bytes.size()) {
        unsigned v = static_cast<unsigned char>(bytes[i]) << 16;
        if (i + 1 < bytes.size())
            v |= static_cast<unsigned char>(bytes[i + 1]) << 8;
        out += kAlphabet[(v >> 18) & 63];
        out += kAlphabet[(v >> 12) & 63];
        out += i + 1 < bytes.size() ? kAlphabet[(v >> 6) & 63] : '=';
        out += '=';
    }
    return out;
}

bool base64Decode(const std::string& text, std::string& out) {
    out.clear();
    if (text.size() % 4 != 0)
        return false;
    out.reserve(text.size() / 4 * 3);
    for (size_t i = 0; i < text.size(); i += 4) {
        int a = decodeChar(text[i]), b = decodeChar(text[i + 1]);
        bool last = i + 4 == text.size();
        bool pad2 = last && text[i + 2] == '=' && text[i + 3] == '=';
        bool pad1 = last && !pad2 && text[i + 3] == '=';
        int c = pad2 ? 0 : decodeChar(text[i + 2]);
        int d = (pad1 || pad2) ? 0 : decodeChar(text[i + 3]);
        if (a < 0 || b < 0 || c < 0 || d < 0)
            return false;
        unsigned v = (static_cast<unsigned>(a) << 18) | (static_cast<unsigned>(b) << 12) |
                     (static_cast<unsigned>(c) << 6) | static_cast<unsigned>(d);
        out += static_cast<char>((v >> 16) & 0xFF);
        if (!pad2)
            out += static_cast<char>((v >> 8) & 0xFF);
        if (!pad1 && !pad2)
            out += static_cast<char>(v & 0xFF);
    }
    return true;
}
