// configb: typed keys and their line-per-key text form.
#include "host/configb.h"
#include "refhost/core/TextQuote.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

#include "host/PersistableXY.h"

namespace {

template <class T>
bool toInt(const configb::Value& v, T& out) {
    if (auto* i = std::get_if<int64_t>(&v)) {
        if (*i < std::numeric_limits<T>::min() || *i > static_cast<int64_t>(std::numeric_limits<T>::max()))
            return false;
        out = static_cast<T>(*i);
        return true;
    }
    if (auto* u = std::get_if<uint32_t>(&v)) {
        if (static_cast<uint64_t>(*u) > static_cast<uint64_t>(std::numeric_limits<T>::max()))
            return false;
        out = static_cast<T>(*u);
        return true;
    }
    if (auto* d = std::get_if<double>(&v)) {
        if (!std::isfinite(*d) || *d != std::floor(*d) ||
            *d < static_cast<double>(std::numeric_limits<T>::min()) ||
            *d > static_cast<double>(std::numeric_limits<T>::max()))
            return false;
        out = static_cast<T>(*d);
        return true;
    }
    return false;
}

std::string quote(std::string_view s) {
    std::string out;
    appendQuoted(out, s, "\\x%02x");
    return out;
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

bool unquote(std::string_view s, std::string& out) {
    if (s.size() < 2 || s.front() != '"' || s.back() != '"')
        return false;
    s = s.substr(1, s.size() - 2);
    out.clear();
    for (std::size_t i = 0; i < s.size(); ++i) {
        char c = s[i];
        if (c == '"')
            return false;
        if (c != '\\') {
            out += c;
            continue;
        }
        if (++i >= s.size())
            return false;
        switch (s[i]) {
        case '"':
        case '\\':
            out += s[i];
            break;
        case 'n':
            out += '\n';
            break;
        case 'r':
            out += '\r';
            break;
        case 't':
            out += '\t';
            break;
        case 'x': {
            if (i + 2 >= s.size())
                return false;
            int h = hexDigit(s[i + 1]), l = hexDigit(s[i + 2]);
            if (h < 0 || l < 0)
                return false;
            out += static_cast<char>(h * 16 + l);
            i += 2;
            break;
        }
        default:
            return false;
        }
    }
    return true;
}

template <class T>
bool parseNumber(std::string_view s, T& out) {
    if (s.empty())
        return false;
    auto [p, ec] = std::from_chars(s.data(), s.data() + s.size(), out);
    return ec == std::errc() && p == s.data() + s.size();
}

bool parseDouble(std::string_view s, double& out) {
    if (s.empty() || s.size() > 64)
        return false;
    std::string z(s);
    char* end = nullptr;
    out = std::strtod(z.c_str(), &end);
    return end == z.c_str() + z.size() && std::isfinite(out) && z.find_first_of(" \t") == std::string::npos;
}

bool parseValue(char type, std::string_view text, configb::Value& v) {
    switch (type) {
    case 'i': {
        int64_t i;
        if (!parseNumber(text, i))
            return false;
        v = i;
        return true;
    }
    case 'u': {
        uint32_t u;
        if (!parseNumber(text, u))
            return false;
        v = u;
        return true;
    }
    case 'd': {
        double d;
        if (!parseDouble(text, d))
            return false;
        v = d;
        return true;
    }
    case 'b':
        if (text != "0" && text != "1")
            return false;
        v = text == "1";
        return true;
    case 's': {
        std::string s;
        if (!unquote(text, s))
            return false;
        v = String(std::move(s));
        return true;
    }
    case 'c': {
        Cookie c = Cookie::fromString(String(text));
        if (!c.valid() && text != "-")
            return false;
        v = c;
        return true;
    }
    case 'p': {
        XY<int> p;
        if (!PersistableXY::parse(String(text), p))
            return false;
        v = p;
        return true;
    }
    default:
        return false;
    }
}

} // namespace

bool configb::validKey(const String& key) {
    std::string_view k = key.view();
    if (k.empty() || k.size() > 256 || k.front() == ' ' || k.back() == ' ' || k.front() == '#')
        return false;
    for (char c : k)
        if (c < 0x20 || c > 0x7e || c == '=')
            return false;
    return true;
}

bool configb::put(const String& key, Value v) {
    if (!validKey(key))
        return false;
    for (auto& [k, val] : order_)
        if (k == key.view()) {
            val = std::move(v);
            return true;
        }
    order_.emplace_back(key.str(), std::move(v));
    return true;
}

const configb::Value* configb::find(const String& key) const {
    for (auto& [k, val] : order_)
        if (k == key.view())
            return &val;
    return nullptr;
}

bool configb::set(const String& key, int v) {
    return put(key, static_cast<int64_t>(v));
}
bool configb::set(const String& key, unsigned v) {
    return put(key, static_cast<uint32_t>(v));
}
bool configb::set(const String& key, double v) {
    return std::isfinite(v) && put(key, v);
}
bool configb::set(const String& key, bool v) {
    return put(key, v);
}
bool configb::set(const String& key, const String& v) {
    return put(key, v);
}
bool configb::set(const String& key, const Cookie& v) {
    return put(key, v);
}
bool configb::set(const String& key, const XY<int>& v) {
    return put(key, v);
}

int configb::in(const String& key, int& v) const {
    const Value* f = find(key);
    return f && toInt(*f, v) ? 0 : -1;
}

int configb::in(const String& key, unsigned& v) const {
    const Value* f = find(key);
    if (!f)
        return -1;
    if (auto* i = std::get_if<int64_t>(f)) {
        if (*i < 0 || *i > std::numeric_limits<unsigned>::max())
            return -1;
        v = static_cast<unsigned>(*i);
        return 0;
    }
    return toInt(*f, v) ? 0 : -1;
}

int configb::in(const String& key, double& v) const {
    const Value* f = find(key);
    if (!f)
        return -1;
    if (auto* d = std::get_if<double>(f))
        v = *d;
    else if (auto* i = std::get_if<int64_t>(f))
        v = static_cast<double>(*i);
    else if (auto* u = std::get_if<uint32_t>(f))
        v = *u;
    else
        return -1;
    return 0;
}

template <class T>
static int inExact(const configb::Value* f, T& v) {
    if (!f)
        return -1;
    if (auto* t = std::get_if<T>(f)) {
        v = *t;
        return 0;
    }
    return -1;
}

int configb::in(const String& key, bool& v) const {
    return inExact(find(key), v);
}
int configb::in(const String& key, String& v) const {
    return inExact(find(key), v);
}
int configb::in(const String& key, Cookie& v) const {
    return inExact(find(key), v);
}
int configb::in(const String& key, XY<int>& v) const {
    return inExact(find(key), v);
}

bool configb::has(const String& key) const {
    return find(key) != nullptr;
}

bool configb::remove(const String& key) {
    for (auto it = order_.begin(); it != order_.end(); ++it)
        if (it->first == key.view()) {
            order_.erase(it);
            return true;
        }
    return false;
}

void configb::clear() {
    order_.clear();
}

String configb::toText() const {
    std::string out;
    for (auto& [k, v] : order_) {
        out += k;
        out += '=';
        if (auto* i = std::get_if<int64_t>(&v))
            out += "i:" + std::to_string(*i);
        else if (auto* u = std::get_if<uint32_t>(&v))
            out += "u:" + std::to_string(*u);
        else if (auto* d = std::get_if<double>(&v)) {
            char buf[40];
            std::snprintf(buf, sizeof buf, "%.17g", *d);
            out += "d:";
            out += buf;
        } else if (auto* b = std::get_if<bool>(&v))
            out += *b ? "b:1" : "b:0";
        else if (auto* s = std::get_if<String>(&v))
            out += "s:" + quote(s->view());
        else if (auto* c = std::get_if<Cookie>(&v))
            out += "c:" + c->asString().str();
        else if (auto* p = std::get_if<XY<int>>(&v))
            out += "p:" + PersistableXY::toString(*p).str();
        out += '\n';
    }
    return String(std::move(out));
}

bool configb::fromText(const String& text, configb& out, String& error) {
    out.clear();
    configb read;
    std::string_view all = text.view();
    int lineNo = 0;
    auto fail = [&](const char* why) {
        error = stringFormat("saved layout, line %d: %s", lineNo, why);
        out.clear();
        return false;
    };
    while (!all.empty()) {
        std::size_t nl = all.find('\n');
        std::string_view line = all.substr(0, nl);
        all = nl == std::string_view::npos ? std::string_view() : all.substr(nl + 1);
        ++lineNo;
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        if (line.empty() || line.front() == '#')
            continue;
        std::size_t eq = line.find('=');
        if (eq == std::string_view::npos)
            return fail("no '=' after the key");
        String key{line.substr(0, eq)};
        if (!validKey(key))
            return fail("the key is not valid");
        if (read.has(key))
            return fail("the key appears twice");
        std::string_view rest = line.substr(eq + 1);
        if (rest.size() < 2 || rest[1] != ':')
            return fail("no type before the value");
        Value v;
        if (!parseValue(rest[0], rest.substr(2), v))
            return fail("the value does not read as its type");
        read.put(key, std::move(v));
    }
    out = std::move(read);
    error = String();
    return true;
}

bool configb::operator==(const configb& o) const {
    if (order_.size() != o.order_.size())
        return false;
    for (std::size_t i = 0; i < order_.size(); ++i)
        if (order_[i].first != o.order_[i].first || order_[i].second != o.order_[i].second)
            return false;
    return true;
}

String PersistableXY::toString(const XY<int>& v) {
    return stringFormat("(%d,%d)", v.x, v.y);
}

bool PersistableXY::parse(const String& text, XY<int>& out) {
    std::string_view s = text.view();
    auto trim = [](std::string_view t) {
        while (!t.empty() && (t.front() == ' ' || t.front() == '\t'))
            t.remove_prefix(1);
        while (!t.empty() && (t.back() == ' ' || t.back() == '\t'))
            t.remove_suffix(1);
        return t;
    };
    s = trim(s);
    if (s.size() < 5 || s.front() != '(' || s.back() != ')')
        return false;
    s = s.substr(1, s.size() - 2);
    std::size_t comma = s.find(',');
    if (comma == std::string_view::npos)
        return false;
    int x, y;
    if (!parseNumber(trim(s.substr(0, comma)), x) || !parseNumber(trim(s.substr(comma + 1)), y))
        return false;
    out = XY<int>(x, y);
    return true;
}
