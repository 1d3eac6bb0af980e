// ProgramRun: runs a program of the build with its standard error joined to its output, as the
// end-to-end tests of the programs do.
#pragma once

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>

struct ProgramRun {
    std::string out;
    int code = -1;
};

// `args` starts with the program's name in the build folder; `env` goes before it, as words
// such as "env -u DISPLAY".
inline ProgramRun runProgram(const std::string& args, const std::string& env = std::string()) {
    ProgramRun r;
    const std::string cmd =
        env + (env.empty() ? "" : " ") + std::string(NODEDESK_BINARY_DIR) + "/" + args + " 2>&1";
    FILE* p = popen(cmd.c_str(), "r");
    if (!p)
        return r;
    std::array<char, 4096> buf;
    size_t n;
    while ((n = std::fread(buf.data(), 1, buf.size(), p)) > 0)
        r.out.append(buf.data(), n);
    const int status = pclose(p);
    r.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return r;
}
