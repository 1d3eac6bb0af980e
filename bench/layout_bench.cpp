// The layout tool end to end on a generated edit of 100,000 nodes: the program is run as a user
// runs it, its loading, layout and output to /dev/null included, and measured from outside:
//   wall_s    wall-clock time from start to exit
//   peak_MB   the process's peak resident memory, in millions of bytes
//   ok        1 when both are within what the tool aims for (1 s, 200 MB), else 0
#include <benchmark/benchmark.h>

#include <cstdio>
#include <fcntl.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include "refhost/edit/EditFile.h"
#include "refhost/edit/EditGenerator.h"

namespace {

constexpr double kWallLimitS = 1.0;
constexpr double kPeakLimitMB = 200.0;

std::string ownFolder() {
    char buf[4096];
    const ssize_t n = readlink("/proc/self/exe", buf, sizeof buf - 1);
    std::string path(buf, n > 0 ? static_cast<size_t>(n) : 0);
    return path.substr(0, path.rfind('/') + 1);
}

double now() {
    timespec t{};
    clock_gettime(CLOCK_MONOTONIC, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

// Runs the program on `edit` with its output thrown away; false when it did not exit cleanly.
bool runLayout(const std::string& program, const std::string& edit, double& wallS, double& peakMiB) {
    const double start = now();
    const pid_t pid = fork();
    if (pid < 0)
        return false;
    if (pid == 0) {
        const int null = open("/dev/null", O_WRONLY);
        if (null >= 0)
            dup2(null, STDOUT_FILENO);
        execl(program.c_str(), program.c_str(), edit.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    int status = 0;
    rusage use{};
    if (wait4(pid, &status, 0, &use) != pid)
        return false;
    wallS = now() - start;
    peakMiB = static_cast<double>(use.ru_maxrss) / 1024.0;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void BM_LayoutTool(benchmark::State& state) {
    const uint32_t nodes = static_cast<uint32_t>(state.range(0));
    const std::string path = "/tmp/nodedesk-layout-bench-" + std::to_string(getpid()) + ".edit.json";
    GeneratorOptions options;
    options.seed = 1;
    options.nodes = nodes;
    std::string error;
    if (!EditFile::save(*generateEdit(options), path, error)) {
        state.SkipWithError(error.c_str());
        return;
    }
    const std::string program = ownFolder() + "nodedesk-layout";
    double worstWall = 0.0, worstPeak = 0.0;
    for (auto _ : state) {
        double wall = 0.0, peak = 0.0;
        if (!runLayout(program, path, wall, peak)) {
            state.SkipWithError(("cannot run " + program).c_str());
            break;
        }
        state.SetIterationTime(wall);
        worstWall = std::max(worstWall, wall);
        worstPeak = std::max(worstPeak, peak);
    }
    std::remove(path.c_str());
    state.counters["wall_s"] = worstWall;
    const double peakMB = worstPeak * 1048576.0 / 1e6;
    state.counters["peak_MB"] = peakMB;
    state.counters["ok"] = worstWall < kWallLimitS && peakMB < kPeakLimitMB ? 1 : 0;
}
BENCHMARK(BM_LayoutTool)->Arg(100000)->Iterations(3)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
