// The document model, read through RapidJSON's event reader and written with its token writer.
#include "refhost/json/Json.h"

#include "refhost/json/MemberSink.h"

#include <rapidjson/reader.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstring>

namespace {

// The text as RapidJSON reads it: a NUL past the end, never a read beyond it. Copied into each
// string and number parse, so that the reader's own stream still stands at the token's first
// byte when the handler is told of the token.
struct TextStream {
    using Ch = char;
    const char* begin;
    const char* src;
    const char* end;

    char Peek() const { return src == end ? '\0' : *src; }
    char Take() { return src == end ? '\0' : *src++; }
    size_t Tell() const { return static_cast<size_t>(src - begin); }
    char* PutBegin() { return nullptr; }
    void Put(char) {}
    void Flush() {}
    size_t PutEnd(char*) { return 0; }
};

} // namespace

namespace rapidjson {
template <>
struct StreamTraits<TextStream> {
    enum { copyOptimization = 1 };
};
} // namespace rapidjson

namespace json {

Value Value::boolean(bool b) {
    Value v;
    v.data_ = b;
    return v;
}
Value Value::number(double d) {
    Value v;
    v.data_ = d;
    return v;
}
Value Value::string(std::string s) {
    Value v;
    v.data_ = std::move(s);
    return v;
}
Value Value::array() {
    Value v;
    v.data_ = Items();
    return v;
}
Value Value::object() {
    Value v;
    v.data_ = Members();
    return v;
}

bool Value::asBool() const {
    const bool* b = std::get_if<bool>(&data_);
    return b && *b;
}
double Value::asNumber() const {
    const double* d = std::get_if<double>(&data_);
    return d ? *d : 0.0;
}
const std::string& Value::asString() const {
    static const std::string none;
    const std::string* s = std::get_if<std::string>(&data_);
    return s ? *s : none;
}
const Value::Items& Value::items() const {
    static const Items none;
    const Items* i = std::get_if<Items>(&data_);
    return i ? *i : none;
}
const Value::Members& Value::members() const {
    static const Members none;
    const Members* m = std::get_if<Members>(&data_);
    return m ? *m : none;
}

const Value* Value::find(const std::string& key) const {
    // A repeated name counts once, with its last value, as a reader that assigns would see it.
    const Members& ms = members();
    for (auto m = ms.rbegin(); m != ms.rend(); ++m)
        if (m->first == key)
            return &m->second;
    return nullptr;
}

Value& Value::push(Value v) {
    if (!isArray())
        data_ = Items();
    Items& items = std::get<Items>(data_);
    items.push_back(std::move(v));
    return items.back();
}

Value& Value::set(const std::string& key, Value v) {
    if (!isObject())
        data_ = Members();
    Members& members = std::get<Members>(data_);
    for (auto& m : members)
        if (m.first == key) {
            m.second = std::move(v);
            return m.second;
        }
    members.emplace_back(key, std::move(v));
    return members.back().second;
}

void Value::setItems(Items items) {
    data_ = std::move(items);
}
void Value::setMembers(Members members) {
    data_ = std::move(members);
}

namespace {

// Builds the document from the reader's events, each value in place at its parent's end. With a
// sink, the top-level object's members (or the items of a streamed member) go to the sink as each
// is complete instead.
class Builder {
public:
    Builder(const std::string& text, TextStream& stream, MemberSink* sink)
        : text_(text), stream_(stream), sink_(sink) {}

    bool Null() { return add(Value(), literalStart(4)); }
    bool Bool(bool b) { return add(Value::boolean(b), literalStart(b ? 4 : 5)); }
    bool Int(int i) { return add(Value::number(i), stream_.Tell()); }
    bool Uint(unsigned u) { return add(Value::number(u), stream_.Tell()); }
    bool Int64(int64_t i) { return add(Value::number(static_cast<double>(i)), stream_.Tell()); }
    bool Uint64(uint64_t u) { return add(Value::number(static_cast<double>(u)), stream_.Tell()); }
    bool Double(double d) {
        if (!std::isfinite(d))
            return fault(stream_.Tell(), "number out of range");
        // The exact reading goes wrong on a zero significand with an exponent ("0.000e300" came
        // back as 6e290): a number whose digits are all zero is zero of its sign.
        size_t at = stream_.Tell();
        const bool negative = at < text_.size() && text_[at] == '-';
        bool zero = true;
        for (at += negative ? 1 : 0; at < text_.size() && text_[at] != 'e' && text_[at] != 'E'; ++at) {
            const char c = text_[at];
            if (c >= '1' && c <= '9')
                zero = false;
            else if (c != '0' && c != '.')
                break;
        }
        if (zero)
            d = negative ? -0.0 : 0.0;
        return add(Value::number(d), stream_.Tell());
    }
    bool RawNumber(const char*, rapidjson::SizeType, bool) { return false; }
    bool String(const char* s, rapidjson::SizeType n, bool) {
        if (!checkSurrogates(s, n))
            return false;
        return add(Value::string(std::string(s, n)), stream_.Tell());
    }
    bool Key(const char* s, rapidjson::SizeType n, bool) {
        if (!checkSurrogates(s, n))
            return false;
        open_.back().key.assign(s, n);
        return true;
    }
    bool StartObject() { return start(Value::Object); }
    bool StartArray() { return start(Value::Array); }
    bool EndObject(rapidjson::SizeType) { return end(); }
    bool EndArray(rapidjson::SizeType) { return end(); }

    Value root;
    // Set when the builder, not the reader, stopped the parse.
    bool stopped = false;
    size_t stopAt = 0;
    std::string stopWhy;

private:
    struct Open {
        Value value;
        bool object = false;
        std::string key;       // the name of the member being read, in an object
        bool streamed = false; // an array whose items go to the sink
        Value::Items items;
        Value::Members members;
    };

    bool told(bool goOn) { return goOn || fault(stream_.Tell(), std::string()); }

    bool fault(size_t at, std::string why) {
        stopped = true;
        stopAt = at;
        stopWhy = std::move(why);
        return false;
    }

    // True, false and null are told once read; strings, numbers and brackets before.
    size_t literalStart(size_t length) const {
        size_t at = stream_.Tell();
        return at >= length ? at - length : 0;
    }

    // The 1-based line and column of `offset`, counted on from the last place asked about:
    // places come in text order, so the whole text is scanned once.
    void place(size_t offset, Value& v) {
        offset = std::min(offset, text_.size());
        const char* p = text_.data() + counted_;
        const char* stop = text_.data() + offset;
        while (p < stop) {
            const void* nl = std::memchr(p, '\n', static_cast<size_t>(stop - p));
            if (!nl)
                break;
            ++line_;
            p = static_cast<const char*>(nl) + 1;
            lineStart_ = static_cast<size_t>(p - text_.data());
        }
        counted_ = offset;
        v.line = line_;
        v.column = static_cast<int>(offset - lineStart_) + 1;
    }

    bool start(Value::Type type) {
        size_t at = stream_.Tell();
        if (open_.size() >= static_cast<size_t>(kMaxDepth))
            return fault(at, "nesting is deeper than " + std::to_string(kMaxDepth) + " levels");
        if (sink_ && open_.empty() && type != Value::Object)
            return fault(at, "expected an object at the top of the document");
        const bool streamed =
            sink_ && open_.size() == 1 && type == Value::Array && sink_->streamsItems(open_.back().key);
        open_.emplace_back();
        Open& o = open_.back();
        o.object = type == Value::Object;
        o.streamed = streamed;
        place(at, o.value);
        return true;
    }

    bool end() {
        Open& o = open_.back();
        if (o.object)
            o.value.setMembers(std::move(o.members));
        else
            o.value.setItems(std::move(o.items));
        Value done = std::move(o.value);
        open_.pop_back();
        return finish(std::move(done));
    }

    bool add(Value v, size_t at) {
        if (sink_ && open_.empty())
            return fault(at, "expected an object at the top of the document");
        place(at, v);
        return finish(std::move(v));
    }

    bool finish(Value v) {
        if (open_.empty()) {
            root = std::move(v);
            return true;
        }
        Open& o = open_.back();
        if (sink_ && open_.size() == 1)
            return told(sink_->member(std::move(o.key), std::move(v)));
        if (o.streamed)
            return told(sink_->item(open_.front().key, std::move(v)));
        if (o.object)
            o.members.emplace_back(std::move(o.key), std::move(v));
        else
            o.items.push_back(std::move(v));
        return true;
    }

    // Half a surrogate pair has no UTF-8 form of its own; the reader writes the lone second half
    // of one as if it had (bytes ED B0..BF). Such a string is refused just past its escape.
    bool checkSurrogates(const char* s, size_t n) {
        bool lone = false;
        for (size_t i = 0; i + 1 < n && !lone; ++i)
            lone = static_cast<unsigned char>(s[i]) == 0xED &&
                   (static_cast<unsigned char>(s[i + 1]) & 0xF0) == 0xB0;
        if (!lone)
            return true;
        size_t p = stream_.Tell() + 1;
        while (p + 6 <= text_.size() && text_[p] != '"') {
            if (text_[p] != '\\') {
                ++p;
                continue;
            }
            if (text_[p + 1] != 'u') {
                p += 2;
                continue;
            }
            unsigned cp = 0;
            std::from_chars(text_.data() + p + 2, text_.data() + p + 6, cp, 16);
            if (cp >= 0xD800 && cp < 0xDC00) {
                p += 12; // the pair, checked by the reader
                continue;
            }
            if (cp >= 0xDC00 && cp <= 0xDFFF)
                return fault(p + 6, "expected the first half of a surrogate pair before its second");
            p += 6;
        }
        return fault(stream_.Tell(), "expected the first half of a surrogate pair before its second");
    }

    const std::string& text_;
    TextStream& stream_;
    MemberSink* sink_;
    std::vector<Open> open_;
    size_t counted_ = 0;
    size_t lineStart_ = 0;
    int line_ = 1;
};

const char* expected(rapidjson::ParseErrorCode code, int at) {
    using namespace rapidjson;
    switch (code) {
    case kParseErrorDocumentEmpty:
        return "expected a value, found the end of the text";
    case kParseErrorDocumentRootNotSingular:
        return "expected the end of the document";
    case kParseErrorValueInvalid:
        return at == -1 ? "expected a value, found the end of the text" : "expected a value";
    case kParseErrorObjectMissName:
        return "expected a member name in double quotes";
    case kParseErrorObjectMissColon:
        return "expected ':' after a member name";
    case kParseErrorObjectMissCommaOrCurlyBracket:
        return "expected ',' or '}' after an object member";
    case kParseErrorArrayMissCommaOrSquareBracket:
        return "expected ',' or ']' after an array item";
    case kParseErrorStringUnicodeEscapeInvalidHex:
        return "expected four hexadecimal digits after \\u";
    case kParseErrorStringUnicodeSurrogateInvalid:
        return "expected the second half of a surrogate pair";
    case kParseErrorStringEscapeInvalid:
        // The reader says the same of a raw control character as of a bad escape.
        if (at == '\n' || at == -1)
            return "expected '\"' to close the string";
        return at >= 0 && at < 0x20 ? "control character inside a string" : "unknown escape in a string";
    case kParseErrorStringMissQuotationMark:
        return "expected '\"' to close the string";
    case kParseErrorStringInvalidEncoding:
        return "expected UTF-8 text in a string";
    case kParseErrorNumberTooBig:
        return "number out of range";
    case kParseErrorNumberMissFraction:
        return "expected a digit after the decimal point";
    case kParseErrorNumberMissExponent:
        return "expected a digit in the exponent";
    default:
        return "expected well-formed JSON";
    }
}

void lineColumn(const std::string& text, size_t offset, int& line, int& column) {
    line = 1;
    size_t lineStart = 0;
    for (size_t i = 0; i < offset; ++i)
        if (text[i] == '\n') {
            ++line;
            lineStart = i + 1;
        }
    column = static_cast<int>(offset - lineStart) + 1;
}

// Appends to a std::string as RapidJSON's writer asks.
struct TextOut {
    using Ch = char;
    std::string& out;
    void Put(char c) { out.push_back(c); }
    void Flush() {}
};

// RapidJSON's escaping of strings and its shortest exact numbers, without its layout: the layout
// is ours.
class Tokens : public rapidjson::Writer<TextOut> {
public:
    explicit Tokens(TextOut& out) : rapidjson::Writer<TextOut>(out) {}
    void string(const std::string& s) { WriteString(s.data(), static_cast<rapidjson::SizeType>(s.size())); }
    void number(double d) {
        // Whole numbers as such ("3", not "3.0"); what JSON cannot hold as null.
        if (!std::isfinite(d))
            WriteNull();
        else if (d == std::trunc(d) && std::fabs(d) < 9007199254740992.0 && !(d == 0 && std::signbit(d)))
            WriteInt64(static_cast<int64_t>(d));
        else
            WriteDouble(d);
    }
};

bool isSimple(const Value& v) {
    if (v.isArray()) {
        for (const auto& i : v.items())
            if (i.isArray() || i.isObject())
                return false;
        return v.items().size() <= 8;
    }
    if (v.isObject()) {
        for (const auto& m : v.members())
            if (m.second.isArray() || m.second.isObject())
                return false;
        return v.members().size() <= 6;
    }
    return true;
}

void writeValue(std::string& out, Tokens& tokens, const Value& v, int indent) {
    switch (v.type()) {
    case Value::Null:
        out += "null";
        break;
    case Value::Bool:
        out += v.asBool() ? "true" : "false";
        break;
    case Value::Number:
        tokens.number(v.asNumber());
        break;
    case Value::String:
        tokens.string(v.asString());
        break;
    case Value::Array:
    case Value::Object: {
        const bool obj = v.isObject();
        const size_t n = obj ? v.members().size() : v.items().size();
        if (n == 0) {
            out += obj ? "{}" : "[]";
            break;
        }
        // Short records of plain values stay on one line.
        const bool flat = isSimple(v);
        out.push_back(obj ? '{' : '[');
        for (size_t i = 0; i < n; ++i) {
            if (i)
                out.push_back(',');
            if (flat) {
                if (i || obj)
                    out.push_back(' ');
            } else {
                out.push_back('\n');
                out.append(static_cast<size_t>(indent + 2), ' ');
            }
            if (obj) {
                tokens.string(v.members()[i].first);
                out += ": ";
                writeValue(out, tokens, v.members()[i].second, indent + 2);
            } else {
                writeValue(out, tokens, v.items()[i], indent + 2);
            }
        }
        if (flat) {
            if (obj)
                out.push_back(' ');
        } else {
            out.push_back('\n');
            out.append(static_cast<size_t>(indent), ' ');
        }
        out.push_back(obj ? '}' : ']');
        break;
    }
    }
}

} // namespace

namespace {

bool run(const std::string& text, MemberSink* sink, Value* out, ParseError& error) {
    TextStream stream{text.data(), text.data(), text.data() + text.size()};
    Builder builder(text, stream, sink);
    rapidjson::Reader reader;
    // Iterative: the depth of the text never becomes the depth of the call stack.
    constexpr unsigned flags = rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag |
                               rapidjson::kParseFullPrecisionFlag;
    rapidjson::ParseResult r = reader.Parse<flags>(stream, builder);
    size_t at = 0;
    std::string why;
    if (builder.stopped) {
        at = builder.stopAt;
        why = builder.stopWhy;
    } else if (r.IsError()) {
        at = std::min(r.Offset(), text.size());
        // A misspelt word is told where it begins, not where it stopped matching.
        if (r.Code() == rapidjson::kParseErrorValueInvalid)
            while (at > 0 && std::isalpha(static_cast<unsigned char>(text[at - 1])))
                --at;
        int c = at < text.size() ? static_cast<unsigned char>(text[at]) : -1;
        why = expected(r.Code(), c);
    } else {
        // A NUL byte reads as the end of the text; whatever follows it is no part of a document.
        at = stream.Tell();
        while (at < text.size() &&
               (text[at] == ' ' || text[at] == '\t' || text[at] == '\r' || text[at] == '\n'))
            ++at;
        if (at == text.size()) {
            if (out)
                *out = std::move(builder.root);
            return true;
        }
        why = "expected the end of the document";
    }
    lineColumn(text, at, error.line, error.column);
    error.message = why;
    return false;
}

} // namespace

bool parse(const std::string& text, Value& out, ParseError& error) {
    return run(text, nullptr, &out, error);
}

bool parseMembers(const std::string& text, MemberSink& sink, ParseError& error) {
    return run(text, &sink, nullptr, error);
}

std::string write(const Value& v) {
    std::string out;
    TextOut sink{out};
    Tokens tokens(sink);
    writeValue(out, tokens, v, 0);
    out.push_back('\n');
    return out;
}

} // namespace json
