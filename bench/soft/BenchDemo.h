// BenchDemo.h - the demo started for a benchmark, as the player starts it:
// the game library loaded, its folder and playthrough script given to a soft
// kernel, and the game played up to a tick. The benchmark's target defines
// DEMO_LIBRARY, DEMO_FOLDER and DEMO_SCRIPT.
#ifndef QUINDLE_BENCH_DEMO_H
#define QUINDLE_BENCH_DEMO_H

#include "quindle_game.h"

#include "SoftKernel.h"
#include "SoftScript.h"
#include "glrmmgr.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

// Starts the demo on a new kernel (which lives for the whole run) and steps it
// while its clock is below `tick`; ends the benchmark named `name` when the
// demo cannot start.
inline SoftKernel* StartBenchDemo(const char* name, std::uint32_t tick)
{
    auto* kernel = new SoftKernel;
    std::vector<SoftInputEvent> script;
    std::string error;
    void* library = ::dlopen(DEMO_LIBRARY, RTLD_NOW | RTLD_GLOBAL);
    auto start = library ? reinterpret_cast<QuindleGameStartFunction>(::dlsym(library, QUINDLE_GAME_START)) : nullptr;
    if (!kernel->SetGameFolder(DEMO_FOLDER) || !SoftReadScript(DEMO_SCRIPT, &script, &error) || !start) {
        std::fprintf(stderr, "%s: the demo cannot start (%s)\n", name, error.c_str());
        std::exit(1);
    }
    kernel->SetScript(script);
    GLSetRoomDirectory(DEMO_FOLDER);
    static char program[64];
    std::snprintf(program, sizeof program, "%s", name);
    static char* argv[] = {program};
    QuindleHost host{QUINDLE_HOST_VERSION, kernel, kernel, DEMO_FOLDER, 1, argv, ""};
    QuindleGameLoop loop{nullptr, nullptr, nullptr};
    if (start(&host, &loop) != 0)
        std::exit(1);
    while (kernel->GetTicks() < tick)
        loop.step(loop.state);
    return kernel;
}

#endif
