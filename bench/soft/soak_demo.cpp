// soak_demo: plays a game folder headless for a long time with no output and
// reports whether it stays flat: frames a second, the kernel ledger's live
// blocks and the process's resident memory, at the start, every tenth of the
// run and at the end.
//
//   soak_demo <game folder> <input script> [frames, default 1000000]
//
// The script's events are handed out again and again, one round after the
// other, without its quit: a round lasts until the quit's tick (or the last
// event's) and one second more.
#include "GameFolder.h"
#include "SoftKernel.h"
#include "glconst.h"
#include "glrmmgr.h"
#include "quindle_game.h"

#include <dlfcn.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

namespace {

long ResidentKiB()
{
    std::ifstream statm("/proc/self/statm");
    long pages = 0, resident = 0;
    statm >> pages >> resident;
    return resident * (::sysconf(_SC_PAGESIZE) / 1024);
}

int Fail(const std::string& what)
{
    std::fprintf(stderr, "soak_demo: %s\n", what.c_str());
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 3 || argc > 4)
        return Fail("usage: soak_demo <game folder> <input script> [frames]");
    const std::string folder = argv[1];
    const long long frames = argc == 4 ? std::atoll(argv[3]) : 1000000;
    GameFile game;
    std::string error;
    std::vector<SoftInputEvent> script;
    if (!ReadGameFile(folder, &game, &error) || !SoftReadScript(argv[2], &script, &error))
        return Fail(error);

    // The rounds of input, enough for the whole run.
    std::vector<SoftInputEvent> round;
    std::uint32_t period = 0;
    for (const SoftInputEvent& e : script) {
        period = e.tick;
        if (!(e.type == kEventKeyDown && e.message == kQuitKey && e.modifiers == kQuitModifiers))
            round.push_back(e);
    }
    period += 60;
    std::vector<SoftInputEvent> events;
    for (long long start = 0; start < frames; start += period)
        for (SoftInputEvent e : round) {
            e.tick += static_cast<std::uint32_t>(start);
            events.push_back(e);
        }

    SoftKernel k;
    if (!k.SetGameFolder(folder))
        return Fail(k.Fault());
    k.SetScript(events);
    void* library = ::dlopen(game.library.c_str(), RTLD_NOW | RTLD_GLOBAL);
    auto start = library ? reinterpret_cast<QuindleGameStartFunction>(::dlsym(library, QUINDLE_GAME_START)) : nullptr;
    if (!start)
        return Fail(game.library + ": cannot be loaded or has no " + QUINDLE_GAME_START);
    GLSetRoomDirectory(folder.c_str());
    char* gameArgv[] = {argv[0], nullptr};
    QuindleHost host{QUINDLE_HOST_VERSION, &k, &k, folder.c_str(), 1, gameArgv, ""};
    QuindleGameLoop loop{nullptr, nullptr, nullptr};
    if (start(&host, &loop) != 0 || !loop.step)
        return Fail(game.library + ": the game did not start");
    // The game's own log is not part of the figures.
    std::fflush(stdout);
    if (!std::freopen("/dev/null", "w", stdout))
        return Fail("cannot silence the game's log");

    // Resources are read on first use and kept, so memory grows through the
    // first round; from then on every round should end where the first did.
    // The figures are taken at the ends of rounds, the same point of the game.
    std::fprintf(stderr, "frame 0: %zu live blocks, %ld KiB resident\n", k.Ledger().LiveCount(), ResidentKiB());
    std::size_t blocksAfterRound = 0;
    long rssAfterRound = 0;
    std::size_t lastBlocks = 0;
    long lastRss = 0;
    long long nextReport = period;
    const auto begin = std::chrono::steady_clock::now();
    long long frame = 0;
    while (frame < frames && !k.HasFault() && loop.step(loop.state)) {
        frame++;
        if (frame % period != 0)
            continue;
        lastBlocks = k.Ledger().LiveCount();
        lastRss = ResidentKiB();
        if (frame == period) {
            blocksAfterRound = lastBlocks;
            rssAfterRound = lastRss;
        }
        if (frame < nextReport)
            continue;
        std::fprintf(stderr, "frame %lld: %zu live blocks, %ld KiB resident\n", frame, lastBlocks, lastRss);
        nextReport = frame + (frames / 10 > period ? frames / 10 : period);
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    if (k.HasFault())
        return Fail(k.Fault());
    std::fprintf(stderr,
                 "%lld frames in %.1f s: %.0f frames a second; at the ends of the first and the last rounds: "
                 "live blocks %zu and %zu, %ld and %ld KiB resident\n",
                 frame, seconds, frame / seconds, blocksAfterRound, lastBlocks, rssAfterRound, lastRss);
    if (loop.finish)
        loop.finish(loop.state);
    return frame == frames ? 0 : Fail("the game ended before the run did");
}
