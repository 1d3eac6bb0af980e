// nodedesk-convert IN OUT.edit.json: reads an edit from IN (a timeline interchange file ".otio",
// or an edit file) and writes it as an edit file. The reader's warnings go to stderr; a file
// that cannot be read or written gives a one-line error and exit code 2.
#include <cstdio>
#include <string>

#include "refhost/edit/AnyEditFile.h"
#include "refhost/edit/EditFile.h"

namespace {

const char kUsage[] = "usage: nodedesk-convert IN.otio OUT.edit.json";

int fail(const std::string& message) {
    std::fprintf(stderr, "nodedesk-convert: %s\n", message.c_str());
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    std::string in, out;
    for (int i = 1; i < argc; ++i) {
        std::string a = argv[i];
        if (a == "--help" || a == "-h") {
            std::puts(kUsage);
            return 0;
        }
        if (!a.empty() && a[0] == '-')
            return fail("unknown flag '" + a + "'; " + kUsage);
        if (in.empty())
            in = a;
        else if (out.empty())
            out = a;
        else
            return fail(std::string("one input and one output; ") + kUsage);
    }
    if (out.empty())
        return fail(kUsage);
    std::string error;
    EditPtr edit = AnyEditFile::open(in, error);
    if (!edit)
        return fail(error);
    if (!EditFile::save(*edit, out, error))
        return fail(error);
    return 0;
}
