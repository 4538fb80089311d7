// The player's overlay on a frame of the demo: the courtyard at tick 600, Pip
// walking his route behind the well. Composition alone, and composition with
// the overlay drawn over it, side by side in one run; the overlay's budget is
// at most twice the composition again (three times in all).
#include "Overlay.h"
#include "quindle_game.h"

#include "SoftScript.h"
#include "glrmmgr.h"

#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>

namespace {

// The demo, played to the frame measured; it lives for the whole run.
SoftKernel& Demo()
{
    static SoftKernel* k = [] {
        auto* kernel = new SoftKernel;
        std::vector<SoftInputEvent> script;
        std::string error;
        void* library = ::dlopen(DEMO_LIBRARY, RTLD_NOW | RTLD_GLOBAL);
        auto start = library ? reinterpret_cast<QuindleGameStartFunction>(::dlsym(library, QUINDLE_GAME_START))
                             : nullptr;
        if (!kernel->SetGameFolder(DEMO_FOLDER) || !SoftReadScript(DEMO_SCRIPT, &script, &error) || !start) {
            std::fprintf(stderr, "bench_overlay: the demo cannot start (%s)\n", error.c_str());
            std::exit(1);
        }
        kernel->SetScript(script);
        GLSetRoomDirectory(DEMO_FOLDER);
        static char name[] = "bench_overlay";
        static char* argv[] = {name};
        QuindleHost host{QUINDLE_HOST_VERSION, kernel, kernel, DEMO_FOLDER, 1, argv, ""};
        QuindleGameLoop loop{nullptr, nullptr, nullptr};
        if (start(&host, &loop) != 0)
            std::exit(1);
        while (kernel->GetTicks() < 600)
            loop.step(loop.state);
        return kernel;
    }();
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
