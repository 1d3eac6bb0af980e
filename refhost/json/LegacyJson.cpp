// The hand-written reader the edit files were read with before, kept beside the library's for
// the load benchmark until the comparison is recorded.
#include "refhost/json/Json.h"

#include "host/LightweightString.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace json::legacy {

namespace {

class Reader {
public:
    Reader(const std::string& t, ParseError& e) : text_(t), err_(e) {}

    bool document(Value& out) {
        skipSpace();
        if (!value(out, 0))
            return false;
        skipSpace();
        if (pos_ < text_.size())
            return fail("expected the end of the document");
        return true;
    }

private:
    bool fail(const std::string& what) {
        err_.line = line_;
        err_.column = static_cast<int>(pos_ - lineStart_) + 1;
        err_.message = what;
        return false;
    }
    int peek() const { return pos_ < text_.size() ? static_cast<unsigned char>(text_[pos_]) : -1; }
    void skipSpace() {
        while (pos_ < text_.size()) {
            char c = text_[pos_];
            if (c == '\n') {
                ++line_;
                lineStart_ = pos_ + 1;
            } else if (c != ' ' && c != '\t' && c != '\r') {
                break;
            }
            ++pos_;
        }
    }
    bool literal(const char* word) {
        size_t n = std::strlen(word);
        if (text_.compare(pos_, n, word) != 0)
            return fail(std::string("expected '") + word + "'");
        pos_ += n;
        return true;
    }

    bool value(Value& out, int depth) {
        out.line = line_;
        out.column = static_cast<int>(pos_ - lineStart_) + 1;
        switch (peek()) {
        case '{':
            return object(out, depth);
        case '[':
            return array(out, depth);
        case '"': {
            std::string s;
            if (!string(s))
                return false;
            int l = out.line, c = out.column;
            out = Value::string(std::move(s));
            out.line = l;
            out.column = c;
            return true;
        }
        case 't':
        case 'f': {
            bool b = peek() == 't';
            if (!literal(b ? "true" : "false"))
                return false;
            int l = out.line, c = out.column;
            out = Value::boolean(b);
            out.line = l;
            out.column = c;
            return true;
        }
        case 'n':
            return literal("null");
        case -1:
            return fail("expected a value, found the end of the text");
        default:
            if (peek() == '-' || (peek() >= '0' && peek() <= '9'))
                return number(out);
            return fail("expected a value");
        }
    }

    bool object(Value& out, int depth) {
        if (depth >= kMaxDepth)
            return fail("nesting is deeper than " + std::to_string(kMaxDepth) + " levels");
        int l = out.line, c = out.column;
        out = Value::object();
        out.line = l;
        out.column = c;
        ++pos_;
        skipSpace();
        if (peek() == '}') {
            ++pos_;
            return true;
        }
        for (;;) {
            skipSpace();
            if (peek() != '"')
                return fail("expected a member name in double quotes");
            std::string key;
            if (!string(key))
                return false;
            skipSpace();
            if (peek() != ':')
                return fail("expected ':' after a member name");
            ++pos_;
            skipSpace();
            Value v;
            if (!value(v, depth + 1))
                return false;
            out.set(key, std::move(v));
            skipSpace();
            if (peek() == ',') {
                ++pos_;
                continue;
            }
            if (peek() == '}') {
                ++pos_;
                return true;
            }
            return fail("expected ',' or '}' after an object member");
        }
    }

    bool array(Value& out, int depth) {
        if (depth >= kMaxDepth)
            return fail("nesting is deeper than " + std::to_string(kMaxDepth) + " levels");
        int l = out.line, c = out.column;
        out = Value::array();
        out.line = l;
        out.column = c;
        ++pos_;
        skipSpace();
        if (peek() == ']') {
            ++pos_;
            return true;
        }
        for (;;) {
            skipSpace();
            Value v;
            if (!value(v, depth + 1))
                return false;
            out.push(std::move(v));
            skipSpace();
            if (peek() == ',') {
                ++pos_;
                continue;
            }
            if (peek() == ']') {
                ++pos_;
                return true;
            }
            return fail("expected ',' or ']' after an array item");
        }
    }

    bool hex4(unsigned& out) {
        out = 0;
        for (int i = 0; i < 4; ++i) {
            int c = peek();
            unsigned d;
            if (c >= '0' && c <= '9')
                d = static_cast<unsigned>(c - '0');
            else if (c >= 'a' && c <= 'f')
                d = static_cast<unsigned>(c - 'a' + 10);
            else if (c >= 'A' && c <= 'F')
                d = static_cast<unsigned>(c - 'A' + 10);
            else
                return fail("expected four hexadecimal digits after \\u");
            out = out * 16 + d;
            ++pos_;
        }
        return true;
    }

    bool string(std::string& out) {
        ++pos_; // the opening quote
        for (;;) {
            int c = peek();
            if (c == -1 || c == '\n')
                return fail("expected '\"' to close the string");
            ++pos_;
            if (c == '"')
                return true;
            if (c < 0x20)
                return fail("control character inside a string");
            if (c != '\\') {
                out.push_back(static_cast<char>(c));
                continue;
            }
            int e = peek();
            ++pos_;
            switch (e) {
            case '"':
                out.push_back('"');
                break;
            case '\\':
                out.push_back('\\');
                break;
            case '/':
                out.push_back('/');
                break;
            case 'b':
                out.push_back('\b');
                break;
            case 'f':
                out.push_back('\f');
                break;
            case 'n':
                out.push_back('\n');
                break;
            case 'r':
                out.push_back('\r');
                break;
            case 't':
                out.push_back('\t');
                break;
            case 'u': {
                unsigned cp;
                if (!hex4(cp))
                    return false;
                if (cp >= 0xD800 && cp < 0xDC00) {
                    unsigned lo;
                    if (peek() != '\\' || pos_ + 1 >= text_.size() || text_[pos_ + 1] != 'u')
                        return fail("expected the second half of a surrogate pair");
                    pos_ += 2;
                    if (!hex4(lo) || lo < 0xDC00 || lo > 0xDFFF)
                        return fail("expected the second half of a surrogate pair");
                    cp = 0x10000 + ((cp - 0xD800) << 10) + (lo - 0xDC00);
                } else if (cp >= 0xDC00 && cp <= 0xDFFF) {
                    // Half a pair has no UTF-8 form of its own.
                    return fail("expected the first half of a surrogate pair before its second");
                }
                appendUtf8(out, cp);
                break;
            }
            default:
                --pos_;
                return fail("unknown escape in a string");
            }
        }
    }

    bool number(Value& out) {
        size_t start = pos_;
        if (peek() == '-')
            ++pos_;
        if (peek() == '0') {
            ++pos_;
        } else if (peek() >= '1' && peek() <= '9') {
            while (peek() >= '0' && peek() <= '9')
                ++pos_;
        } else {
            return fail("expected a digit");
        }
        if (peek() == '.') {
            ++pos_;
            if (!(peek() >= '0' && peek() <= '9'))
                return fail("expected a digit after the decimal point");
            while (peek() >= '0' && peek() <= '9')
                ++pos_;
        }
        if (peek() == 'e' || peek() == 'E') {
            ++pos_;
            if (peek() == '+' || peek() == '-')
                ++pos_;
            if (!(peek() >= '0' && peek() <= '9'))
                return fail("expected a digit in the exponent");
            while (peek() >= '0' && peek() <= '9')
                ++pos_;
        }
        double d = 0.0;
        auto r = std::from_chars(text_.data() + start, text_.data() + pos_, d);
        if (r.ec != std::errc() || !std::isfinite(d)) {
            pos_ = start;
            return fail("number out of range");
        }
        int l = out.line, c = out.column;
        out = Value::number(d);
        out.line = l;
        out.column = c;
        return true;
    }

    const std::string& text_;
    ParseError& err_;
    size_t pos_ = 0;
    size_t lineStart_ = 0;
    int line_ = 1;
};

} // namespace

bool parse(const std::string& text, Value& out, ParseError& error) {
    Reader r(text, error);
    Value v;
    if (!r.document(v))
        return false;
    out = std::move(v);
    return true;
}

} // namespace json::legacy
