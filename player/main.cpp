// quindle-player: runs a game folder on the soft kernel, headless by default.
//
//   quindle-player <game folder> [options] [-- game arguments]
//
// See Usage() below, and docs/KERNEL.md for the game folder.
#include "Check.h"
#include "GameFolder.h"
#include "KitCheck.h"
#include "HostReports.h"
#include "Overlay.h"
#include "quindle_game.h"
#include "PlayerTape.h"

#include "SoftKernel.h"
#include "SoftText.h"
#include "gldefs.h"
#include "glrmmgr.h"
#ifdef QUINDLE_HAVE_WINDOW
#include "SoftWindow.h"
#include "WindowKeys.h"
#endif

#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string>
#include <vector>

namespace {

void Usage(std::FILE* out)
{
    std::fprintf(out,
                 "usage: quindle-player <game folder> [options] [-- game arguments]\n"
                 "       quindle-player --check <game folder> [--script FILE] [--strict]\n"
                 "\n"
                 "Runs the game headless until it quits or the time is over, and writes\n"
                 "what it drew. The game folder names the game library in game.txt and is\n"
                 "also the directory of the game's room libraries (see docs/KERNEL.md).\n"
                 "\n"
                 "  --ticks N         stop after N ticks, 60 a second (default 3600)\n"
                 "  --script FILE     input events by tick (see docs/KERNEL.md)\n"
                 "  --out DIR         where frames go (default quindle-out); made if missing\n"
                 "  --frame T[,T...]  write the frame drawn at tick T as DIR/frame-T.png\n"
                 "  --every N         write every Nth tick's frame as a PNG\n"
                 "  --gif FILE        the whole run as an animated GIF (default DIR/run.gif)\n"
                 "  --no-gif          no GIF\n"
                 "  --gif-every N     one GIF frame every N ticks (default 2)\n"
                 "  --step N          ticks the clock advances per frame (default 1)\n"
                 "  --quiet           no progress line\n"
                 "  --window          play in a window instead (real clock, mouse and keyboard)\n"
                 "  --scale N         window scale 1..8 (default: the largest that fits the\n"
                 "                    display); Ctrl+Q quits the game\n"
                 "  --lang CODE       play in the language of lang/CODE/ in the game folder\n"
                 "                    (what it lacks comes from the default files); in a\n"
                 "                    window the user's locale chooses when the folder has it\n"
                 "  --check           read the whole folder without running the game; print\n"
                 "                    every problem as FILE:LINE: error|warning: WHAT\n"
                 "  --strict          warnings are faults too\n"
                 "  --trace           print each sample, message, room, robot and movie\n"
                 "                    the game starts, as TICK WHAT, on standard output\n"
                 "  --record FILE     write the run on a tape (see docs/TAPE.md)\n"
                 "  --replay FILE     play a tape: its input, clock and step, with every output\n"
                 "                    option (or watched with --window); stops at the first\n"
                 "                    call the game makes otherwise than on the tape\n"
                 "  --overlay         draw the developer overlay (planes, items, polygons, routes,\n"
                 "                    the pointer, a status line) into every frame written; in a\n"
                 "                    window, start with it on\n"
                 "\n"
                 "Keys in the window: F1 overlay on/off, F2 pause/go on, F3 one frame while\n"
                 "paused, F12 write the frame shown as DIR/shot-TICK-N.png (Ctrl+Q quits).\n"
                 "\n"
                 "Always writes DIR/final.png, the last frame.\n"
                 "\n"
                 "Exit status:\n"
                 "  0  a normal end (with --replay: the tape matched to its game's end)\n"
                 "  1  a usage error\n"
                 "  2  a faulty game folder, script, tape or resource (the file is named)\n"
                 "  3  a game that cannot start (its library does not load or start)\n"
                 "  4  a replay that diverged (the report names the frame and the call)\n"
                 "  5  a tape that ended before its game did\n"
                 "A failed check of the library ends a replay as it ended the recorded run.\n");
}

struct Options {
    std::string folder;
    std::uint32_t ticks = 3600;
    std::string script;
    std::string out = "quindle-out";
    std::set<std::uint32_t> frames;
    std::uint32_t every = 0;
    std::string gif;
    bool noGif = false;
    std::uint32_t gifEvery = 2;
    std::uint32_t step = 1;
    bool quiet = false;
    bool ticksGiven = false;
    bool window = false;
    bool overlay = false;
    bool check = false;
    bool strict = false;
    bool trace = false;
    int scale = 0; // the largest that fits the display
    std::string record, replay;
    std::string lang;
    bool langGiven = false;
    std::vector<char*> gameArgs;
};

bool Number(const char* text, long long low, long long high, long long* value)
{
    return SoftParseInt(text ? text : "", low, high, value);
}

bool ParseOptions(int argc, char** argv, Options* o, std::string* error)
{
    for (int i = 1; i < argc; i++) {
        const std::string a = argv[i];
        const char* next = i + 1 < argc ? argv[i + 1] : nullptr;
        long long v = 0;
        auto need = [&](const char* what) {
            if (!next) {
                *error = a + " needs " + what;
                return false;
            }
            i++;
            return true;
        };
        if (a == "--") {
            for (int j = i + 1; j < argc; j++)
                o->gameArgs.push_back(argv[j]);
            break;
        } else if (a == "-h" || a == "--help") {
            Usage(stdout);
            std::exit(0);
        } else if (a == "--ticks") {
            if (!need("a number of ticks") || !Number(next, 1, 0x7FFFFFFF, &v))
                return *error = error->empty() ? "--ticks needs a number of ticks 1..2147483647" : *error, false;
            o->ticks = static_cast<std::uint32_t>(v);
            o->ticksGiven = true;
        } else if (a == "--script") {
            if (!need("a file"))
                return false;
            o->script = next;
        } else if (a == "--out") {
            if (!need("a directory"))
                return false;
            o->out = next;
        } else if (a == "--frame") {
            if (!need("ticks"))
                return false;
            std::string list = next;
            std::size_t at = 0;
            while (at <= list.size()) {
                std::size_t comma = list.find(',', at);
                if (comma == std::string::npos)
                    comma = list.size();
                if (!Number(list.substr(at, comma - at).c_str(), 0, 0x7FFFFFFF, &v)) {
                    *error = "--frame needs ticks separated by commas, not '" + list + "'";
                    return false;
                }
                o->frames.insert(static_cast<std::uint32_t>(v));
                at = comma + 1;
            }
        } else if (a == "--every" || a == "--gif-every" || a == "--step" || a == "--scale") {
            if (!need("a number") || !Number(next, 1, a == "--scale" ? 8 : 3600, &v)) {
                *error = a + " needs a number 1.." + (a == "--scale" ? "8" : "3600");
                return false;
            }
            if (a == "--every")
                o->every = static_cast<std::uint32_t>(v);
            else if (a == "--gif-every")
                o->gifEvery = static_cast<std::uint32_t>(v);
            else if (a == "--step")
                o->step = static_cast<std::uint32_t>(v);
            else
                o->scale = static_cast<int>(v);
        } else if (a == "--gif") {
            if (!need("a file"))
                return false;
            o->gif = next;
        } else if (a == "--lang") {
            if (!need("a language code"))
                return false;
            o->lang = next;
            if (o->lang.empty() || o->lang.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                                             "0123456789-_") != std::string::npos) {
                *error = "--lang needs a language code of letters, digits, '-' and '_', not '" + o->lang + "'";
                return false;
            }
            o->langGiven = true;
        } else if (a == "--record" || a == "--replay") {
            if (!need("a tape file"))
                return false;
            (a == "--record" ? o->record : o->replay) = next;
        } else if (a == "--no-gif") {
            o->noGif = true;
        } else if (a == "--quiet") {
            o->quiet = true;
        } else if (a == "--window") {
            o->window = true;
        } else if (a == "--overlay") {
            o->overlay = true;
        } else if (a == "--check" || a == "--strict" || a == "--trace") {
            (a == "--check" ? o->check : a == "--strict" ? o->strict : o->trace) = true;
        } else if (!a.empty() && a[0] == '-') {
            *error = "unknown option " + a;
            return false;
        } else if (o->folder.empty()) {
            o->folder = a;
        } else {
            *error = "only one game folder, not also '" + a + "'";
            return false;
        }
    }
    if (o->folder.empty()) {
        *error = "no game folder given";
        return false;
    }
    return true;
}

// What the frame hook needs.
struct Run {
    const Options* options = nullptr;
    SoftGifWriter gif;
    std::uint32_t lastGifTick = 0;
    bool haveGifFrame = false;
    long long gifFrames = 0;
    std::string writeError;
    int pngs = 0;
    PlayerOverlay* overlay = nullptr; // headless with --overlay
#ifdef QUINDLE_HAVE_WINDOW
    PlayerWindowKeys* window = nullptr;
#endif
};

void OnFrame(SoftKernel& k, void* data)
{
    Run& run = *static_cast<Run*>(data);
    const Options& o = *run.options;
    const std::uint32_t tick = k.GetTicks();
#ifdef QUINDLE_HAVE_WINDOW
    if (run.window) {
        run.window->OnFrame();
        return;
    }
#endif
    PlayerOverlay::Status status;
    status.frameMillis = o.step * 1000.0 / 60; // the virtual clock's: the same frames every run
    const std::uint8_t* frame = run.overlay ? run.overlay->Draw(k, status) : k.Frame();
    if (o.frames.count(tick) || (o.every && tick % o.every == 0)) {
        char name[32];
        std::snprintf(name, sizeof name, "/frame-%06u.png", tick);
        std::string error;
        if (SoftWritePng(o.out + name, frame, SoftKernel::kWidth, SoftKernel::kHeight, k.Palette(), &error))
            run.pngs++;
        else if (run.writeError.empty())
            run.writeError = error;
    }
    if (run.gif.IsOpen() && (!run.haveGifFrame || tick - run.lastGifTick >= o.gifEvery)) {
        // Whole centiseconds per frame, rounded so that the delays add up to
        // the run's real time.
        const long long span = o.gifEvery > o.step ? o.gifEvery : o.step;
        const long long n = run.gifFrames++;
        const int delay = static_cast<int>((n + 1) * span * 100 / 60 - n * span * 100 / 60);
        std::string error;
        if (!run.gif.AddFrame(frame, k.Palette(), delay, &error) && run.writeError.empty())
            run.writeError = error;
        run.lastGifTick = tick;
        run.haveGifFrame = true;
    }
}

bool MakeDirectory(const std::string& dir)
{
    struct stat st;
    if (::stat(dir.c_str(), &st) == 0)
        return S_ISDIR(st.st_mode);
    return ::mkdir(dir.c_str(), 0777) == 0;
}

} // namespace

int main(int argc, char** argv)
{
    Options o;
    std::string error;
    if (!ParseOptions(argc, argv, &o, &error)) {
        std::fprintf(stderr, "quindle-player: %s\n\n", error.c_str());
        Usage(stderr);
        return 1;
    }
    if (o.check)
        return CheckGameFolder(o.folder, o.script, o.strict, stdout);
    GameFile game;
    if (!ReadGameFile(o.folder, &game, &error)) {
        std::fprintf(stderr, "quindle-player: %s\n", error.c_str());
        return 2;
    }

    SoftKernel k;
    PlayerTape tape(k);
    if (const int failed = tape.Open(o.record, o.replay, !o.script.empty(), game.title, game.library, o.window,
                                     &o.step, &o.gameArgs))
        return failed;
    k.SetTicksPerFrame(o.step);
    InstallHostReports(k, o.strict, o.trace);
    if (!k.SetGameFolder(o.folder)) {
        std::fprintf(stderr, "quindle-player: %s\n", k.Fault().c_str());
        return 2;
    }
    if (o.window && !o.langGiven)
        o.lang = LocaleLanguage(o.folder);
    k.Resources().SetLanguage(o.lang);
    if (!o.script.empty()) {
        std::vector<SoftInputEvent> events;
        if (!SoftReadScript(o.script, &events, &error)) {
            std::fprintf(stderr, "quindle-player: %s\n", error.c_str());
            return 2;
        }
        k.SetScript(events);
    }

    Run run;
    run.options = &o;
    PlayerOverlay overlay;
    if (o.overlay && !o.window)
        run.overlay = &overlay;
#ifdef QUINDLE_HAVE_WINDOW
    SoftWindow window;
    PlayerWindowKeys keys(k, window, o.out, o.overlay);
    if (o.window) {
        if (!window.Open(game.title, o.scale, &error)) {
            std::fprintf(stderr, "quindle-player: %s\n", error.c_str());
            return 3;
        }
        GLSetAssertNotice([](const char* text, const char* title) { SoftWindow::ShowMessage(title, text); });
        k.UseRealClock(true);
        run.window = &keys;
        if (!window.StartAudio(k))
            std::fprintf(stderr, "quindle-player: no audio device: playing without sound\n");
    }
#else
    if (o.window) {
        std::fprintf(stderr, "quindle-player: this player was built without SDL2: no --window\n");
        return 1;
    }
#endif
    if (!o.window) {
        if (!MakeDirectory(o.out)) {
            std::fprintf(stderr, "quindle-player: %s: cannot make the output directory\n", o.out.c_str());
            return 2;
        }
        if (!o.noGif && !run.gif.Open(o.gif.empty() ? o.out + "/run.gif" : o.gif, SoftKernel::kWidth,
                                      SoftKernel::kHeight, &error)) {
            std::fprintf(stderr, "quindle-player: %s\n", error.c_str());
            return 2;
        }
    }
    k.SetFrameHook(&OnFrame, &run);

    void* library = ::dlopen(game.library.c_str(), RTLD_NOW | RTLD_GLOBAL);
    if (!library) {
        std::fprintf(stderr, "quindle-player: %s: cannot load the game library (%s)\n", game.library.c_str(),
                     ::dlerror());
        return 3;
    }
    auto start = reinterpret_cast<QuindleGameStartFunction>(::dlsym(library, QUINDLE_GAME_START));
    if (!start) {
        std::fprintf(stderr, "quindle-player: %s: exports no %s\n", game.library.c_str(), QUINDLE_GAME_START);
        return 3;
    }

    // The game folder is the directory of the room libraries.
    GLSetRoomDirectory(o.folder.c_str());
    tape.WatchChecks(o.window);

    o.gameArgs.insert(o.gameArgs.begin(), argv[0]);
    QuindleHost host{QUINDLE_HOST_VERSION, tape.Kernel(), &k, o.folder.c_str(), static_cast<int>(o.gameArgs.size()),
                     o.gameArgs.data(), o.lang.c_str()};
    QuindleGameLoop loop{nullptr, nullptr, nullptr};
    if (start(&host, &loop) != 0 || !loop.step) {
        std::fprintf(stderr, "quindle-player: %s: the game did not start\n", game.library.c_str());
        return 3;
    }

    const bool progress = !o.quiet && !o.window && ::isatty(2);
    int status = 0;
    bool quit = false, closed = false;
    std::uint32_t shown = 0;
    while (!k.HasFault()) {
        if (tape.Replaying() ? tape.AtEnd() : (!o.window || o.ticksGiven) && k.GetTicks() >= o.ticks)
            break;
        const std::uint32_t framesBefore = k.FramesComposed();
        if (!loop.step(loop.state)) {
            quit = true;
            break;
        }
        if (k.FramesComposed() == framesBefore) {
            // Without a frame the headless clock stands still: the run would never end.
            std::fprintf(stderr, "quindle-player: %s: a step drew no frame (the kernel's UpdateScreen was not called)\n",
                         game.library.c_str());
            status = 3;
            break;
        }
#ifdef QUINDLE_HAVE_WINDOW
        if (o.window && window.Closed()) {
            closed = true;
            break;
        }
#endif
        if (progress && k.GetTicks() - shown >= 15) {
            shown = k.GetTicks();
            std::fprintf(stderr, "\rquindle-player: tick %u/%u (%u%%), %u frames", shown, o.ticks,
                         static_cast<unsigned>(static_cast<unsigned long long>(shown) * 100 / o.ticks),
                         k.FramesComposed());
        }
    }
    if (progress)
        std::fprintf(stderr, "\r%70s\r", "");
    if (loop.finish)
        loop.finish(loop.state);
    status = tape.Finish(quit, closed, k.HasFault(), status);

    if (k.HasFault()) {
        std::fprintf(stderr, "quindle-player: %s\n", k.Fault().c_str());
        status = 2;
    }
    if (!o.window) {
        const std::uint8_t* last = run.overlay ? overlay.Frame() : k.Frame();
        if (!SoftWritePng(o.out + "/final.png", last, SoftKernel::kWidth, SoftKernel::kHeight, k.Palette(), &error) ||
            !run.gif.Close(&error)) {
            std::fprintf(stderr, "quindle-player: %s\n", error.c_str());
            status = status ? status : 2;
        }
        if (!run.writeError.empty()) {
            std::fprintf(stderr, "quindle-player: %s\n", run.writeError.c_str());
            status = status ? status : 2;
        }
    }
    const std::size_t leaks = k.Ledger().LiveCount();
    if (leaks)
        std::fprintf(stderr, "quindle-player: %zu blocks were not given back:\n", leaks);
    k.Ledger().ReportLeaks(stderr);
    if (!o.quiet)
        std::fprintf(stderr, "quindle-player: %s after %u ticks, %u frames%s%s\n",
                     quit ? "the game quit" : k.HasFault() ? "stopped by a fault" : "time over", k.GetTicks(),
                     k.FramesComposed(), o.window ? "" : ", written to ", o.window ? "" : o.out.c_str());
    // The game library stays loaded: objects of the game may still be referred
    // to by the library's statics at exit.
    return status;
}
