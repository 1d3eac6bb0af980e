// Log: the host's diagnostic log, printf-style, with no levels.
#pragma once

#include <functional>
#include <string>

void Log(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Where log lines go; stderr unless a sink is installed (tests and tools capture them).
void setLogSink(std::function<void(const std::string&)> sink);
