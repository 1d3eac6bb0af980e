// Timeline interchange text into positioned values, through RapidJSON's event reader.
#include "refhost/edit/OtioJson.h"

#include <rapidjson/reader.h>

#include <algorithm>
#include <sstream>

namespace {

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

// Builds the tree from the reader's events. The iterative reader calls for a bracket, a string
// or a number with the stream at the token's first byte, and for true, false and null just past
// the token; each value's start is found from that.
class Builder {
public:
    Builder(const std::string& text, rapidjson::StringStream& stream) : text_(text), stream_(stream) {}

    bool Null() { return add(begin(OtioJson::Null, "null")); }
    bool Bool(bool b) {
        OtioJson v = begin(OtioJson::Bool, b ? "true" : "false");
        v.boolean = b;
        return add(std::move(v));
    }
    bool Int(int i) { return numberValue(i); }
    bool Uint(unsigned u) { return numberValue(u); }
    bool Int64(int64_t i) { return numberValue(static_cast<double>(i)); }
    bool Uint64(uint64_t u) { return numberValue(static_cast<double>(u)); }
    bool Double(double d) { return numberValue(d); }
    bool RawNumber(const char*, rapidjson::SizeType, bool) { return false; }
    bool String(const char* s, rapidjson::SizeType n, bool) {
        OtioJson v = begin(OtioJson::String);
        v.text.assign(s, n);
        return add(std::move(v));
    }
    bool StartObject() { return open(OtioJson::Object); }
    bool StartArray() { return open(OtioJson::Array); }
    bool Key(const char* s, rapidjson::SizeType n, bool) {
        stack_.back().key.assign(s, n);
        return true;
    }
    bool EndObject(rapidjson::SizeType) { return close(); }
    bool EndArray(rapidjson::SizeType) { return close(); }

    OtioJson root;
    bool tooDeep = false;
    size_t tooDeepAt = 0;

private:
    struct Frame {
        OtioJson value;
        std::string key;
    };

    OtioJson begin(OtioJson::Type type, std::string_view literal = {}) {
        size_t at = stream_.Tell();
        if (!literal.empty() && at >= literal.size() &&
            text_.compare(at - literal.size(), literal.size(), literal) == 0)
            at -= literal.size();
        OtioJson v;
        v.type = type;
        v.offset = std::min(at, text_.size());
        return v;
    }
    bool numberValue(double d) {
        OtioJson v = begin(OtioJson::Number);
        v.number = d;
        return add(std::move(v));
    }
    bool open(OtioJson::Type type) {
        OtioJson v = begin(type);
        if (stack_.size() >= static_cast<size_t>(OtioJson::kMaxDepth)) {
            tooDeep = true;
            tooDeepAt = v.offset;
            return false;
        }
        stack_.push_back(Frame{std::move(v), {}});
        return true;
    }
    bool close() {
        OtioJson v = std::move(stack_.back().value);
        stack_.pop_back();
        return add(std::move(v));
    }
    bool add(OtioJson v) {
        if (stack_.empty()) {
            root = std::move(v);
            return true;
        }
        Frame& top = stack_.back();
        if (top.value.type == OtioJson::Object)
            top.value.keys.push_back(std::move(top.key));
        top.value.items.push_back(std::move(v));
        return true;
    }

    const std::string& text_;
    rapidjson::StringStream& stream_;
    std::vector<Frame> stack_;
};

const char* expected(rapidjson::ParseErrorCode code) {
    using namespace rapidjson;
    switch (code) {
    case kParseErrorDocumentEmpty:
        return "expected a JSON value";
    case kParseErrorDocumentRootNotSingular:
        return "expected the end of the text after the top-level value";
    case kParseErrorValueInvalid:
        return "expected a value: an object, array, string, number, true, false or null";
    case kParseErrorObjectMissName:
        return "expected a member name in double quotes";
    case kParseErrorObjectMissColon:
        return "expected ':' after the member name";
    case kParseErrorObjectMissCommaOrCurlyBracket:
        return "expected ',' or '}' after an object member";
    case kParseErrorArrayMissCommaOrSquareBracket:
        return "expected ',' or ']' after an array element";
    case kParseErrorStringUnicodeEscapeInvalidHex:
        return "expected four hexadecimal digits after \\u";
    case kParseErrorStringUnicodeSurrogateInvalid:
        return "expected a valid surrogate pair of \\u escapes";
    case kParseErrorStringEscapeInvalid:
        return "expected a valid escape after '\\'";
    case kParseErrorStringMissQuotationMark:
        return "expected a closing '\"' before the end of the text";
    case kParseErrorStringInvalidEncoding:
        return "expected UTF-8 text in a string";
    case kParseErrorNumberTooBig:
        return "expected a number within the range of a double";
    case kParseErrorNumberMissFraction:
        return "expected digits after the decimal point";
    case kParseErrorNumberMissExponent:
        return "expected digits in the exponent";
    default:
        return "expected well-formed JSON";
    }
}

} // namespace

const OtioJson* OtioJson::find(std::string_view key) const {
    if (type != Object)
        return nullptr;
    for (size_t i = keys.size(); i-- > 0;)
        if (keys[i] == key)
            return &items[i];
    return nullptr;
}

void OtioJson::lineColumn(const std::string& text, size_t offset, int& line, int& column) {
    line = 1;
    size_t lineStart = 0;
    size_t end = std::min(offset, text.size());
    for (size_t i = 0; i < end; ++i)
        if (text[i] == '\n') {
            ++line;
            lineStart = i + 1;
        }
    column = static_cast<int>(offset - lineStart) + 1;
}

bool OtioJson::parse(const std::string& text, const std::string& name, OtioJson& out, std::string& error) {
    // RapidJSON's UTF-8 check reads up to three bytes past a lead byte before it looks for the
    // end, so the text is read from a copy with room after its end.
    std::string padded = text;
    padded.append(8, '\0');
    rapidjson::StringStream stream(padded.c_str());
    Builder builder(text, stream);
    rapidjson::Reader reader;
    constexpr unsigned flags = rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;
    rapidjson::ParseResult ok = reader.Parse<flags>(stream, builder);
    // A NUL byte ends RapidJSON's text early; anything after it is no part of a valid file.
    size_t stop = stream.Tell();
    if (ok && stop < text.size()) {
        size_t at = stop;
        while (at < text.size() && isSpace(text[at]))
            ++at;
        if (at < text.size()) {
            ok = rapidjson::ParseResult(rapidjson::kParseErrorDocumentRootNotSingular, at);
        }
    }
    if (ok) {
        out = std::move(builder.root);
        return true;
    }
    size_t at = std::min(builder.tooDeep ? builder.tooDeepAt : ok.Offset(), text.size());
    int line = 0, column = 0;
    lineColumn(text, at, line, column);
    std::ostringstream s;
    s << name << ':' << line << ':' << column << ": ";
    if (builder.tooDeep)
        s << "expected nesting at most " << kMaxDepth << " deep";
    else
        s << expected(ok.Code());
    error = s.str();
    return false;
}
