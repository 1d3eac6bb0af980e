// Json: the reference host's JSON document model, with each value's place in its text. Reading
// and the writing of tokens are RapidJSON's; the reader reports the first fault with its line and
// column and what it expected, never throws, and refuses nesting deeper than kMaxDepth rather
// than recursing into it.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <variant>
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

    using Items = std::vector<Value>;
    using Members = std::vector<std::pair<std::string, Value>>;

    Type type() const { return static_cast<Type>(data_.index()); }
    bool isNull() const { return type() == Null; }
    bool isBool() const { return type() == Bool; }
    bool isNumber() const { return type() == Number; }
    bool isString() const { return type() == String; }
    bool isArray() const { return type() == Array; }
    bool isObject() const { return type() == Object; }

    // Each gives the value of its type, or an empty one (false, 0) for a value of another type.
    bool asBool() const;
    double asNumber() const;
    const std::string& asString() const;
    const Items& items() const;
    const Members& members() const;
    // The member of that name (its last value when the name repeats), or null when absent.
    const Value* find(const std::string& key) const;

    Value& push(Value v);
    Value& set(const std::string& key, Value v);
    // Replace the whole content, making the value an array or an object.
    void setItems(Items items);
    void setMembers(Members members);

    // Where the value began in its text, 1-based; 0 for values made in code.
    int line = 0;
    int column = 0;

private:
    // One alternative per Type, in its order; a document of many small values stays small.
    std::variant<std::monostate, bool, double, std::string, Items, Members> data_;
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
