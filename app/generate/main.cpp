// nodedesk-generate: writes a large generated edit, the same for the same seed, for benchmarks
// and for trying the programs on edits of any size.
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "refhost/edit/EditFile.h"
#include "refhost/edit/EditGenerator.h"

namespace {

const char kUsage[] = "usage: nodedesk-generate --nodes N --seed S [--shared F] [--chain] OUT";

int fail(const std::string& message) {
    std::fprintf(stderr, "nodedesk-generate: %s\n", message.c_str());
    return 2;
}

// A whole decimal number from `min` to `max`; false for anything else.
bool wholeNumber(const std::string& text, unsigned long min, unsigned long max, uint32_t& out) {
    if (text.empty() || text[0] < '0' || text[0] > '9')
        return false;
    char* end = nullptr;
    errno = 0;
    const unsigned long v = std::strtoul(text.c_str(), &end, 10);
    if (errno != 0 || *end != '\0' || v < min || v > max)
        return false;
    out = static_cast<uint32_t>(v);
    return true;
}

} // namespace

int main(int argc, char** argv) {
    GeneratorOptions options;
    bool haveNodes = false, haveSeed = false;
    std::string outPath;
    for (int i = 1; i < argc; ++i) {
        const std::string a = argv[i];
        if (a == "--help" || a == "-h") {
            std::puts(kUsage);
            return 0;
        }
        if (a == "--chain") {
            options.chain = true;
        } else if (a == "--nodes" || a == "--seed" || a == "--shared") {
            if (i + 1 >= argc)
                return fail(a + " needs a value; " + kUsage);
            const std::string v = argv[++i];
            if (a == "--nodes") {
                // Ten million nodes make an edit file of about 2 GB: past what the loader reads.
                if (!wholeNumber(v, 1, 10'000'000, options.nodes))
                    return fail("--nodes takes a whole number from 1 to 10000000, not '" + v + "'");
                haveNodes = true;
            } else if (a == "--seed") {
                if (!wholeNumber(v, 0, 0xFFFFFFFFul, options.seed))
                    return fail("--seed takes a whole number from 0 to 4294967295, not '" + v + "'");
                haveSeed = true;
            } else {
                char* end = nullptr;
                options.sharedLinks = std::strtod(v.c_str(), &end);
                if (v.empty() || *end != '\0' || !(options.sharedLinks >= 0.0 && options.sharedLinks <= 1.0))
                    return fail("--shared takes a share from 0 to 1, not '" + v + "'");
            }
        } else if (!a.empty() && a[0] == '-') {
            return fail("unknown flag '" + a + "'; " + kUsage);
        } else if (outPath.empty()) {
            outPath = a;
        } else {
            return fail(std::string("one output file at a time; ") + kUsage);
        }
    }
    if (!haveNodes || !haveSeed || outPath.empty())
        return fail(kUsage);

    EditPtr edit = generateEdit(options);
    std::string error;
    if (!EditFile::save(*edit, outPath, error))
        return fail(error);
    return 0;
}
