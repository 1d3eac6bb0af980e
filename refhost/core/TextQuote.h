// Quoting of text inside the host's text formats: double quotes, backslash escapes for quote,
// backslash, newline, return and tab, and other control characters in the format's own escape.
#pragma once

#include <string>
#include <string_view>

// `controlEscape` is a printf format for one byte, such as "\\u%04x" or "\\x%02x".
void appendQuoted(std::string& out, std::string_view text, const char* controlEscape);
