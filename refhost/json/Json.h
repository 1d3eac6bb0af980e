// Json: the reference host's small JSON document model, reader and writer. The reader reports
// the first fault with its line and column and what it expected; it never throws, and nesting
// deeper than kMaxDepth is refused rather than recursed into.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace json {

class Value {
public:
    enum Type { Null, Bool, Number, String, Array, Object };

    Value() = default;
    static Value boolean(bool b);
    static Value number(double d);
    static Value string(std::string s);
    static Value array();
    static Value object();

    Type type() const { return type_; }
    bool isNull() const { return type_ == Null; }
    bool isBool() const { return type_ == Bool; }
    bool isNumber() const { return type_ == Number; }
    bool isString() const { return type_ == String; }
    bool isArray() const { return type_ == Array; }
    bool isObject() const { return type_ == Object; }

    bool asBool() const { return bool_; }
    double asNumber() const { return number_; }
    const std::string& asString() const { return string_; }
    const std::vector<Value>& items() const { return items_; }
    const std::vector<std::pair<std::string, Value>>& members() const { return members_; }
    // The member of that name, or null when absent.
    const Value* find(const std::string& key) const;

    Value& push(Value v);
    Value& set(const std::string& key, Value v);

    // Where the value began in its text, 1-based; 0 for values made in code.
    int line = 0;
    int column = 0;

private:
    Type type_ = Null;
    bool bool_ = false;
    double number_ = 0.0;
    std::string string_;
    std::vector<Value> items_;
    std::vector<std::pair<std::string, Value>> members_;
};

struct ParseError {
    int line = 0;
    int column = 0;
    std::string message; // "expected ',' or '}' after an object member"
};

inline constexpr int kMaxDepth = 200;

// Parses a whole document; false with `error` filled on the first fault.
bool parse(const std::string& text, Value& out, ParseError& error);
// Writes a document with two-space indentation; numbers in their shortest exact form.
std::string write(const Value& v);

} // namespace json
