// Saving and restoring the demo: the courtyard at tick 750 (Pip at rest by
// the well, the ambient track playing). A save writes the file (temporary
// file, then rename); a restore reads it, leaves the room, loads the room's
// library again and puts everything back. Targets on the release build: a
// save within 2 ms, a restore within 20 ms, a save of at most 4 KB.
#include "quindle_game.h"

#include "SoftKernel.h"
#include "SoftScript.h"
#include "glrmmgr.h"
#include "glsave.h"

#include <benchmark/benchmark.h>
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

const char kSave[] = "/tmp/quindle-bench-save.sav";

// The demo, played to the tick measured; it lives for the whole run.
GLSaveGame& Demo()
{
    static GLSaveGame* saves = [] {
        auto* kernel = new SoftKernel;
        std::vector<SoftInputEvent> script;
        std::string error;
        void* library = ::dlopen(DEMO_LIBRARY, RTLD_NOW | RTLD_GLOBAL);
        auto start = library ? reinterpret_cast<QuindleGameStartFunction>(::dlsym(library, QUINDLE_GAME_START))
                             : nullptr;
        if (!kernel->SetGameFolder(DEMO_FOLDER) || !SoftReadScript(DEMO_SCRIPT, &script, &error) || !start) {
            std::fprintf(stderr, "bench_save: the demo cannot start (%s)\n", error.c_str());
            std::exit(1);
        }
        kernel->SetScript(script);
        GLSetRoomDirectory(DEMO_FOLDER);
        static char name[] = "bench_save";
        static char* argv[] = {name};
        QuindleHost host{QUINDLE_HOST_VERSION, kernel, kernel, DEMO_FOLDER, 1, argv, ""};
        QuindleGameLoop loop{nullptr, nullptr, nullptr};
        if (start(&host, &loop) != 0 || !GLSaveGame::Installed())
            std::exit(1);
        while (kernel->GetTicks() <= 750)
            loop.step(loop.state);
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
