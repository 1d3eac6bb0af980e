// printf-style appending to a GrowString.
#include "host/GrowString.h"

#include <cstdarg>

GrowString& GrowString::appendf(const char* format, ...) {
    va_list args;
    va_start(args, format);
    String s = stringFormatV(format, args);
    va_end(args);
    return *this << s;
}
