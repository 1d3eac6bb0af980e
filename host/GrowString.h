// GrowString: an appendable text, used for a stream's accumulated errors and for printOn.
#pragma once

#include <string>

#include "host/LightweightString.h"

// Grows by appending only; an empty text means nothing was said.
class GrowString {
public:
    GrowString() = default;

    GrowString& operator<<(const char* s) {
        if (s)
            text_ += s;
        return *this;
    }
    GrowString& operator<<(const String& s) {
        text_.append(s.c_str(), s.size());
        return *this;
    }
    GrowString& operator<<(const std::string& s) {
        text_ += s;
        return *this;
    }
    GrowString& operator<<(char c) {
        text_ += c;
        return *this;
    }
    // printf-style append.
    GrowString& appendf(const char* format, ...) __attribute__((format(printf, 2, 3)));

    bool empty() const { return text_.empty(); }
    std::size_t size() const { return text_.size(); }
    const char* c_str() const { return text_.c_str(); }
    const std::string& str() const { return text_; }
    void clear() { text_.clear(); }

private:
    std::string text_;
};
