// LightweightString: the host's reference-counted string of char or wchar_t. A null string reads
// as empty. Copies share the text; a change copies it first.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

template <class T>
class LightweightString {
public:
    using Std = std::basic_string<T>;

    LightweightString() = default;
    LightweightString(const T* s) {
        if (s)
            rep_ = std::make_shared<Std>(s);
    }
    LightweightString(const T* s, std::size_t n) : rep_(std::make_shared<Std>(s, n)) {}
    LightweightString(const Std& s) : rep_(std::make_shared<Std>(s)) {}
    LightweightString(Std&& s) : rep_(std::make_shared<Std>(std::move(s))) {}
    LightweightString(std::basic_string_view<T> s) : rep_(std::make_shared<Std>(s)) {}

    bool isNull() const { return !rep_; }
    bool empty() const { return !rep_ || rep_->empty(); }
    std::size_t size() const { return rep_ ? rep_->size() : 0; }
    std::size_t length() const { return size(); }
    const T* c_str() const { return rep_ ? rep_->c_str() : emptyText(); }
    operator const T*() const { return c_str(); }
    std::basic_string_view<T> view() const { return {c_str(), size()}; }
    Std str() const { return rep_ ? *rep_ : Std(); }
    T operator[](std::size_t i) const { return (*rep_)[i]; }

    LightweightString& operator+=(const LightweightString& o) { return append(o.c_str(), o.size()); }
    LightweightString& operator+=(const T* s) { return append(s, std::char_traits<T>::length(s)); }
    LightweightString& operator+=(T c) { return append(&c, 1); }
    LightweightString& append(const T* s, std::size_t n) {
        mutableStd().append(s, n);
        return *this;
    }
    LightweightString operator+(const LightweightString& o) const {
        LightweightString r(view());
        r += o;
        return r;
    }
    LightweightString operator+(const T* s) const {
        LightweightString r(view());
        r += s;
        return r;
    }

    // A literal is first compared by its text pointer, then by its characters.
    bool operator==(const T* s) const {
        if (!s)
            return empty();
        if (c_str() == s)
            return true;
        return view() == std::basic_string_view<T>(s);
    }
    bool operator!=(const T* s) const { return !(*this == s); }
    bool operator==(const LightweightString& o) const { return view() == o.view(); }
    bool operator!=(const LightweightString& o) const { return !(*this == o); }
    bool operator<(const LightweightString& o) const { return view() < o.view(); }

    bool startsWith(const T* prefix) const {
        return view().substr(0, std::char_traits<T>::length(prefix)) == prefix;
    }

private:
    static const T* emptyText() {
        static const T e[1] = {T()};
        return e;
    }
    Std& mutableStd() {
        if (!rep_)
            rep_ = std::make_shared<Std>();
        else if (rep_.use_count() > 1)
            rep_ = std::make_shared<Std>(*rep_);
        return *rep_;
    }

    std::shared_ptr<Std> rep_;
};

using String = LightweightString<char>;
using WString = LightweightString<wchar_t>;

// printf into a new string.
String stringFormat(const char* fmt, ...) __attribute__((format(printf, 1, 2)));
String stringFormatV(const char* fmt, va_list args);
// UTF-8 and wide conversions used wherever text crosses between the two.
WString toWide(const String& s);
String toUtf8(const WString& s);
// Appends one code point to a UTF-8 byte string.
void appendUtf8(std::string& out, unsigned codePoint);
