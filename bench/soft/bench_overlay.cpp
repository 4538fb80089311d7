// The player's overlay on a frame of the demo: the courtyard at tick 600, Pip
// walking his route behind the well. Composition alone, and composition with
// the overlay drawn over it, side by side in one run; the overlay's budget is
// at most twice the composition again (three times in all).
#include "BenchDemo.h"
#include "Overlay.h"

#include <benchmark/benchmark.h>

namespace {

// The demo, played to the frame measured; it lives for the whole run.
SoftKernel& Demo()
{
    static SoftKernel* k = StartBenchDemo("bench_overlay", 600);
    return *k;
}

void BM_DemoCompose(benchmark::State& state)
{
    SoftKernel& k = Demo();
    for (auto _ : state) {
        k.Compose();
        benchmark::DoNotOptimize(k.Frame()[1000]);
    }
}
BENCHMARK(BM_DemoCompose)->Unit(benchmark::kMicrosecond);

void BM_DemoComposeWithOverlay(benchmark::State& state)
{
    SoftKernel& k = Demo();
    PlayerOverlay overlay;
    const PlayerOverlay::Status status;
    for (auto _ : state) {
        k.Compose();
        benchmark::DoNotOptimize(overlay.Draw(k, status)[1000]);
    }
}
BENCHMARK(BM_DemoComposeWithOverlay)->Unit(benchmark::kMicrosecond);

} // namespace
BENCHMARK_MAIN();
