// Reading edit files: the JSON reader alone (text to the positioned document) and the whole load
// (text to edit model), on a generated edit of 100,000 nodes; and the peak memory of both on a
// 50 MB edit, with the load also made from the whole document as it is when the text's order or a
// fault asks for it, each measured in a fresh process of this same program so that one
// measurement's heap never counts in another's:
//   MB/s      text read per second
//   peak_MB   the load's peak resident memory over that of a process that loaded nothing
//   x_file    that peak over the size of the file
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <map>
#include <string>
#include <sys/resource.h>
#include <unistd.h>

#include "refhost/edit/EditFile.h"
#include "refhost/edit/EditGenerator.h"
#include "refhost/json/Json.h"

namespace {

const std::string& editText(uint32_t nodes) {
    static std::map<uint32_t, std::string> cache;
    std::string& text = cache[nodes];
    if (text.empty()) {
        GeneratorOptions o;
        o.seed = 1;
        o.nodes = nodes;
        text = EditFile::saveToText(*generateEdit(o));
    }
    return text;
}

void readRate(benchmark::State& state, size_t bytes) {
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
    state.counters["MB/s"] =
        benchmark::Counter(static_cast<double>(bytes) / 1e6, benchmark::Counter::kIsIterationInvariantRate);
}

void BM_ParseJson(benchmark::State& state) {
    const std::string& text = editText(static_cast<uint32_t>(state.range(0)));
    for (auto _ : state) {
        json::Value v;
        json::ParseError e;
        if (!json::parse(text, v, e))
            state.SkipWithError(e.message.c_str());
        benchmark::DoNotOptimize(v);
    }
    readRate(state, text.size());
}
BENCHMARK(BM_ParseJson)->Arg(100000)->Unit(benchmark::kMillisecond);

void BM_LoadEdit(benchmark::State& state) {
    const std::string& text = editText(static_cast<uint32_t>(state.range(0)));
    for (auto _ : state) {
        Edit e;
        std::string error;
        if (!EditFile::loadFromText(text, "bench", e, error))
            state.SkipWithError(error.c_str());
    }
    readRate(state, text.size());
}
BENCHMARK(BM_LoadEdit)->Arg(100000)->Unit(benchmark::kMillisecond);

long peakKb() {
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return u.ru_maxrss;
}

// Runs this program again to read `path` the way `mode` says; its peak resident memory in KiB.
long peakOf(const char* mode, const std::string& path) {
    std::string cmd = "/proc/" + std::to_string(getpid()) + "/exe --peak-of " + mode + " " + path;
    FILE* p = popen(cmd.c_str(), "r");
    if (!p)
        return -1;
    long kb = -1;
    if (std::fscanf(p, "%ld", &kb) != 1)
        kb = -1;
    pclose(p);
    return kb;
}

void BM_PeakMemory(benchmark::State& state, const char* mode) {
    // About 290,000 nodes make 50 MB of edit file.
    static const std::string path = [] {
        std::string p = "/tmp/nodedesk-bench-" + std::to_string(getpid()) + ".edit.json";
        std::ofstream(p, std::ios::binary) << editText(290000);
        return p;
    }();
    const double fileMb = static_cast<double>(editText(290000).size()) / 1048576.0;
    long base = 0, peak = 0;
    for (auto _ : state) {
        base = peakOf("nothing", path);
        peak = peakOf(mode, path);
    }
    if (base < 0 || peak < 0)
        state.SkipWithError("the measuring process failed");
    const double mb = static_cast<double>(peak - base) / 1024.0;
    state.counters["file_MB"] = fileMb;
    state.counters["peak_MB"] = mb;
    state.counters["x_file"] = mb / fileMb;
}
BENCHMARK_CAPTURE(BM_PeakMemory, ParseJson, "parse")->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_PeakMemory, LoadEdit, "load")->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_PeakMemory, LoadEditWhole, "whole")->Iterations(1)->Unit(benchmark::kMillisecond);

// The measuring process: reads the file as asked and prints its peak resident memory.
int measure(const std::string& mode, const std::string& path) {
    std::string error;
    if (mode == "load") {
        if (!EditFile::open(path, error))
            return 2;
    } else if (mode != "nothing") {
        std::ifstream f(path, std::ios::binary | std::ios::ate);
        std::string text(static_cast<size_t>(f.tellg()), '\0');
        f.seekg(0);
        f.read(text.data(), static_cast<std::streamsize>(text.size()));
        json::Value v;
        json::ParseError pe;
        Edit e;
        if (mode == "parse" ? !json::parse(text, v, pe) : !EditFile::loadWholeFromText(text, path, e, error))
            return 2;
    }
    std::printf("%ld\n", peakKb());
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 4 && std::strcmp(argv[1], "--peak-of") == 0)
        return measure(argv[2], argv[3]);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    std::remove(("/tmp/nodedesk-bench-" + std::to_string(getpid()) + ".edit.json").c_str());
    return 0;
}
