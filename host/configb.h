// configb: a saved widget's record, typed values under text keys, with a text form.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "host/Cookie.h"
#include "host/LightweightString.h"
#include "host/XY.h"

// A missing key is never an error: in() leaves the value as it was and returns -1. A key is
// printable ASCII without '=' and without spaces at either end. The text form is one line per
// key, "KEY=t:value", t naming the type (i int, u unsigned, d double, b bool, s string, c cookie,
// p point); strings are quoted with backslash escapes. Keys keep their order of first setting.
class configb {
public:
    using Value = std::variant<int64_t, uint32_t, double, bool, String, Cookie, XY<int>>;

    // Each set returns false, changing nothing, for an invalid key.
    bool set(const String& key, int v);
    bool set(const String& key, unsigned v);
    bool set(const String& key, double v);
    bool set(const String& key, bool v);
    bool set(const String& key, const String& v);
    bool set(const String& key, const char* v) { return set(key, String(v)); }
    bool set(const String& key, const Cookie& v);
    bool set(const String& key, const XY<int>& v);

    // 0 when found with a value that converts to the asked type; -1 otherwise, v unchanged.
    // Numbers convert among int, unsigned and double when the value fits.
    int in(const String& key, int& v) const;
    int in(const String& key, unsigned& v) const;
    int in(const String& key, double& v) const;
    int in(const String& key, bool& v) const;
    int in(const String& key, String& v) const;
    int in(const String& key, Cookie& v) const;
    int in(const String& key, XY<int>& v) const;

    bool has(const String& key) const;
    bool remove(const String& key);
    void clear();
    std::size_t size() const { return order_.size(); }
    bool empty() const { return order_.empty(); }

    String toText() const;
    // Reads the text form. On malformed text returns false with a message naming the line in
    // error, and leaves out empty. Blank lines and lines starting with '#' are skipped.
    static bool fromText(const String& text, configb& out, String& error);

    static bool validKey(const String& key);
    bool operator==(const configb& o) const;

private:
    bool put(const String& key, Value v);
    const Value* find(const String& key) const;

    std::vector<std::pair<std::string, Value>> order_;
};
