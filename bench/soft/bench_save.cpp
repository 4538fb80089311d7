// Saving and restoring the demo: the courtyard at tick 750 (Pip at rest by
// the well, the ambient track playing). A save writes the file (temporary
// file, then rename); a restore reads it, leaves the room, loads the room's
// library again and puts everything back. Targets on the release build: a
// save within 2 ms, a restore within 20 ms, a save of at most 4 KB.
#include "BenchDemo.h"

#include "glsave.h"

#include <benchmark/benchmark.h>

#include <cstdlib>

namespace {

const char kSave[] = "/tmp/quindle-bench-save.sav";

// The demo, played to the tick measured; it lives for the whole run.
GLSaveGame& Demo()
{
    static GLSaveGame* saves = [] {
        StartBenchDemo("bench_save", 751); // at rest after tick 750
        if (!GLSaveGame::Installed())      // the game installs its saves as it starts
            std::exit(1);
        return GLSaveGame::Installed();
    }();
    return *saves;
}

void BM_DemoSave(benchmark::State& state)
{
    GLSaveGame& saves = Demo();
    for (auto _ : state)
        if (!saves.Save(kSave))
            state.SkipWithError(saves.LastError());
    state.counters["bytes"] = saves.Write(nullptr);
}
BENCHMARK(BM_DemoSave)->Unit(benchmark::kMicrosecond);

void BM_DemoRestore(benchmark::State& state)
{
    GLSaveGame& saves = Demo();
    if (!saves.Save(kSave))
        state.SkipWithError(saves.LastError());
    for (auto _ : state)
        if (!saves.Restore(kSave))
            state.SkipWithError(saves.LastError());
    std::remove(kSave);
}
BENCHMARK(BM_DemoRestore)->Unit(benchmark::kMillisecond);

} // namespace
BENCHMARK_MAIN();
