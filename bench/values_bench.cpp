// Cost of setting a value server with 0, 1 and 10 clients, and through a manager that rewrites.
#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "values/ValClient.h"
#include "values/ValManager.h"

namespace {

struct Sink : ValClient<double> {
    void valChanged(const ValServerEvent<double>& e) override { benchmark::DoNotOptimize(sum += e.value); }
    double sum = 0.0;
};

class Owner : public ValManager<double, Owner> {
public:
    Owner() {
        zoom = 1.0;
        addServerCallback(&zoom, &Owner::clamp);
    }
    bool clamp(ValServer<double>*, double& v) {
        if (v > 1e6)
            v = 1e6;
        return true;
    }
    ValServer<double> zoom;
};

void BM_SetVal(benchmark::State& state) {
    ValServer<double> server;
    server = 0.0;
    std::vector<std::unique_ptr<Sink>> clients;
    for (int i = 0; i < state.range(0); ++i) {
        clients.push_back(std::make_unique<Sink>());
        clients.back()->registerWith(&server);
    }
    double v = 0.0;
    for (auto _ : state)
        benchmark::DoNotOptimize(server.setVal(v += 1.0));
    state.counters["clients"] = static_cast<double>(state.range(0));
}
BENCHMARK(BM_SetVal)->Arg(0)->Arg(1)->Arg(10);

void BM_SetValManaged(benchmark::State& state) {
    Owner owner;
    Sink client;
    client.registerWith(&owner.zoom);
    double v = 0.0;
    for (auto _ : state)
        benchmark::DoNotOptimize(owner.zoom.setVal(v += 1.0));
}
BENCHMARK(BM_SetValManaged);

} // namespace

BENCHMARK_MAIN();
