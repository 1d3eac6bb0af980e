// OtioJson: one value of a timeline interchange file, with the byte offset at which it starts in
// the text, so that every fault found later can be told as "FILE:LINE:COLUMN: what was expected".
// Parsing never throws and never recurses: nesting deeper than kMaxDepth is refused.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

class OtioJson {
public:
    enum Type { Null, Bool, Number, String, Array, Object };
    static constexpr int kMaxDepth = 200;

    Type type = Null;
    bool boolean = false;
    double number = 0.0;
    std::string text;              // a String
    std::vector<OtioJson> items;   // an Array's elements, or an Object's values in the file's order
    std::vector<std::string> keys; // an Object's keys, one for each of its items
    size_t offset = 0;             // of the value's first byte

    bool isNull() const { return type == Null; }
    bool isNumber() const { return type == Number; }
    bool isString() const { return type == String; }
    bool isArray() const { return type == Array; }
    bool isObject() const { return type == Object; }
    bool isBool() const { return type == Bool; }
    // The member with that key (the last one when a key repeats), or null.
    const OtioJson* find(std::string_view key) const;

    // Reads `text` into `out`; on failure sets `error` to "NAME:LINE:COLUMN: what was expected".
    static bool parse(const std::string& text, const std::string& name, OtioJson& out, std::string& error);
    // The 1-based line and byte column of an offset into `text`.
    static void lineColumn(const std::string& text, size_t offset, int& line, int& column);
};
