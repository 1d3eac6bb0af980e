// The host's log: one line per call, to stderr unless a sink is installed.
#include "host/Log.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>

#include "host/LightweightString.h"

namespace {
std::mutex& sinkMutex() {
    static std::mutex m;
    return m;
}
std::function<void(const std::string&)>& sink() {
    static std::function<void(const std::string&)> s;
    return s;
}
} // namespace

void setLogSink(std::function<void(const std::string&)> s) {
    std::lock_guard<std::mutex> lock(sinkMutex());
    sink() = std::move(s);
}

void Log(const char* format, ...) {
    va_list args;
    va_start(args, format);
    String line = stringFormatV(format, args);
    va_end(args);
    std::lock_guard<std::mutex> lock(sinkMutex());
    if (sink())
        sink()(line.str());
    else
        std::fputs(line.c_str(), stderr);
}
