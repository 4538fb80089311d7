// quindle-player: runs a game folder on the soft kernel, headless by default.
//
//   quindle-player <game folder> [options] [-- game arguments]
//
// See Usage() below, and docs/KERNEL.md for the game folder.
#include "Check.h"
#include "CrashReport.h"
#include "FrameHash.h"
#include "Portable.h"
#include "GameFolder.h"
#include "KitCheck.h"
#include "HostReports.h"
#include "Overlay.h"
#include "quindle_game.h"
#include "PlayerTape.h"
#include "Saves.h"

#include "SoftKernel.h"
#include "SoftText.h"
#include "gldefs.h"
#include "glrmmgr.h"
#ifdef QUINDLE_HAVE_WINDOW
#include "SoftWindow.h"
#include "WindowKeys.h"
#endif

#ifdef __EMSCRIPTEN__
#include <emscripten.h>
#endif
#include <sys/stat.h>
#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#ifdef __EMSCRIPTEN__
extern "C" int QuindleGameStart(const QuindleHost* host, QuindleGameLoop* loop);
#endif

namespace {

void Usage(std::FILE* out)
{
    std::fprintf(out,
                 "usage: quindle-player <game folder> [options] [-- game arguments]\n"
                 "       quindle-player --check <game folder> [--script FILE] [--strict]\n"
                 "       quindle-player --check-save FILE <game folder>\n"
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
                 "  --hashes T[,T...] print the SHA-256 of the frame's palette indices at tick T\n"
                 "                    as 'hash T <hex>' on standard output\n"
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
                 "  --no-record       in a window, record no tape (by default each window\n"
                 "                    session is recorded in $XDG_DATA_HOME/quindle/<title>/,\n"
                 "                    the last ten kept)\n"
                 "  --replay FILE     play a tape: its input, clock and step, with every output\n"
                 "                    option (or watched with --window); stops at the first\n"
                 "                    call the game makes otherwise than on the tape\n"
                 "  --save-at T FILE  save the game after the frame of tick T (see docs/GAME.md)\n"
                 "  --load FILE       start from a save: its room, its state, its tick; the\n"
                 "                    script's events up to that tick are taken as handled\n"
                 "  --check-save FILE start the game, read the save and say what it is\n"
                 "  --overlay         draw the developer overlay (planes, items, polygons, routes,\n"
                 "                    the pointer, a status line) into every frame written; in a\n"
                 "                    window, start with it on\n"
                 "\n"
                 "Keys in the window: F1 overlay on/off, F2 pause/go on, F3 one frame while\n"
                 "paused, F5 save to the quick slot and F9 restore it (in\n"
                 "$XDG_DATA_HOME/quindle/<title>/saves/), F12 write the frame shown as\n"
                 "DIR/shot-TICK-N.png (Ctrl+Q quits).\n"
                 "\n"
                 "Always writes DIR/final.png, the last frame.\n"
                 "\n"
                 "Exit status:\n"
                 "  0  a normal end (with --replay: the tape matched to its game's end)\n"
                 "  1  a usage error\n"
                 "  2  a faulty game folder, script, tape, save or resource (the file is named)\n"
                 "  3  a game that cannot start (no library, the loader refuses it, or it fails to start)\n"
                 "  4  a replay that diverged (the report names the frame and the call)\n"
                 "  5  a tape that ended before its game did\n"
                 "  6  the game crashed (the report names the tick, the room and the stack)\n"
                 "A failed check of the library ends a replay as it ended the recorded run.\n"
                 "SIGINT or SIGTERM stops the run between frames with 128 + the signal; a tape\n"
                 "being recorded is finished first, whatever ends the run.\n");
}

struct Options {
    std::string folder;
    std::uint32_t ticks = 3600;
    std::string script;
    std::string out = "quindle-out";
    std::set<std::uint32_t> frames;
    std::set<std::uint32_t> hashes;
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
    bool noRecord = false;
    int scale = 0; // the largest that fits the display
    std::string record, replay;
    std::string lang;
    bool langGiven = false;
    std::vector<char*> gameArgs;
    SaveOptions saves;
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
        if (const int taken = ParseSaveOption(argc, argv, &i, &o->saves, error)) {
            if (taken < 0)
                return false;
            continue;
        }
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
        } else if (a == "--frame" || a == "--hashes") {
            if (!need("ticks"))
                return false;
            std::string list = next;
            std::size_t at = 0;
            while (at <= list.size()) {
                std::size_t comma = list.find(',', at);
                if (comma == std::string::npos)
                    comma = list.size();
                if (!Number(list.substr(at, comma - at).c_str(), 0, 0x7FFFFFFF, &v)) {
                    *error = a + " needs ticks separated by commas, not '" + list + "'";
                    return false;
                }
                (a == "--frame" ? o->frames : o->hashes).insert(static_cast<std::uint32_t>(v));
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
        } else if (a == "--no-record") {
            o->noRecord = true;
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
    // A tape holds every call of the run: a save or a restore would be on it
    // and a replay could not make it.
    if ((o->saves.saveAt || !o->saves.load.empty()) && (!o->record.empty() || !o->replay.empty())) {
        *error = "--save-at and --load do not go with --record or --replay";
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
    PlayerTape* tape = nullptr;
#ifdef QUINDLE_HAVE_WINDOW
    PlayerWindowKeys* window = nullptr;
    SoftWindow* shown = nullptr;
#endif
};

// How a run ended.
struct Ending {
    bool quit = false;
    bool closed = false;
    int interrupted = 0; // the signal
    int status = 0;      // the run's own status so far
    bool modal = false;  // inside the game's modal input loop
    bool cut = false;    // a replay at the cut of a session's tape: the game is not finished
};

const char* const kModalNote = "ended inside a modal input loop";

// The end of a run: the tape finished, the last frame and the GIF written,
// the leaks and the summary reported. Returns the status to exit with.
int EndRun(Run& run, SoftKernel& k, Ending e)
{
    const Options& o = *run.options;
    PlayerTape& tape = *run.tape;
    std::string error;
    CrashReportDone();
    const bool replaying = tape.Replaying();
    const TapeEnding ending = e.quit          ? TapeEnding::kQuit
                              : k.HasFault()  ? TapeEnding::kFault
                              : e.interrupted ? TapeEnding::kInterrupted
                              : e.closed      ? TapeEnding::kClosed
                                              : TapeEnding::kTimeOver;
    int status = e.status;
    if (k.HasFault()) {
        std::fprintf(stderr, "quindle-player: %s\n", k.Fault().c_str());
        status = status ? status : 2;
    }
    if (e.interrupted)
        status = status ? status : 128 + e.interrupted;
    if (e.modal) {
        // The game is inside a call: it cannot be finished, and the tape ends
        // with the note, so that its replay ends at the same call.
        std::fprintf(stderr, "quindle-player: %s\n", kModalNote);
        const int verdict = replaying ? 0 : tape.EndNow(ending, kModalNote);
        status = status ? status : verdict;
    } else {
        status = tape.Finish(ending, status);
    }
    if (!o.window) {
        const std::uint8_t* last = run.overlay ? run.overlay->Frame() : k.Frame();
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
    // Inside a modal loop, or at the cut of a session's tape, the game still
    // holds what it took.
    const std::size_t leaks = e.modal || e.cut ? 0 : k.Ledger().LiveCount();
    if (leaks) {
        std::fprintf(stderr, "quindle-player: %zu blocks were not given back%s:\n", leaks,
                     o.strict ? " (a fault with --strict)" : "");
        if (o.strict)
            status = status ? status : 2;
        k.Ledger().ReportLeaks(stderr);
    }
    const char* how = e.quit          ? "the game quit"
                      : k.HasFault()  ? "stopped by a fault"
                      : e.interrupted ? "stopped by a signal"
                      : e.closed      ? "the window was closed"
                      : replaying     ? "the tape played to its end"
                                      : "reached its tick limit";
    if (!o.quiet)
        std::fprintf(stderr, "quindle-player: %s after %u ticks, %u frames%s%s\n", how,
                     e.modal ? k.OwnTicks() : k.TicksSeen(),
                     k.FramesComposed(), o.window ? "" : ", written to ", o.window ? "" : o.out.c_str());
    return status;
}

// GetEvent asked again within a frame with nothing due: the game waits in a
// modal loop. A window gathers its input here, and what ends a run between
// frames (the tick limit, Ctrl+Q, the window closed, a signal; replaying, the
// end of the tape) ends it here too.
void OnModal(SoftKernel& k, void* data)
{
    Run& run = *static_cast<Run*>(data);
    const Options& o = *run.options;
    Ending e;
    e.modal = true;
    bool end = false;
#ifdef QUINDLE_HAVE_WINDOW
    if (run.shown) {
        // The loop waits for the player: it need not spin the processor, and
        // in a page the browser gets its turn.
        run.shown->Idle(k);
        e.quit = run.shown->QuitAsked();
        e.closed = run.shown->Closed();
    }
#endif
    if (run.tape->Replaying()) {
        end = run.tape->ReplayEndsHere(kModalNote);
    } else {
        e.interrupted = Interrupted();
        end = e.quit || e.closed || e.interrupted || ((!o.window || o.ticksGiven) && k.OwnTicks() >= o.ticks);
    }
    if (!end)
        return;
    const int status = EndRun(run, k, e);
    std::fflush(nullptr);
    std::_Exit(status);
}

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
    if (o.hashes.count(tick))
        std::printf("hash %u %s\n", tick,
                    Sha256Hex(k.Frame(), static_cast<std::size_t>(SoftKernel::kWidth) * SoftKernel::kHeight).c_str());
#ifdef __EMSCRIPTEN__
    // A page runs the whole game in one call: now and then it lets the browser
    // draw and answer. The time from one frame's hook to the next is what a
    // frame costs the page's main thread (the page keeps them, in
    // Module.quindleFrameMillis by tick, for a test to read).
    static double lastYield = 0, lastFrame = 0;
    const double now = emscripten_get_now();
    if (lastFrame > 0)
        EM_ASM({ (Module.quindleFrameMillis = Module.quindleFrameMillis || [])[$0] = $1; }, tick, now - lastFrame);
    if (now - lastYield > 100) {
        emscripten_sleep(0);
        lastYield = emscripten_get_now();
    }
    lastFrame = emscripten_get_now();
#endif
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

// A path given relative to where the player was started, made absolute: the
// game runs in its own folder.
void Absolute(std::string* path, const std::string& from)
{
    if (!path->empty() && !PortableIsAbsolute(*path))
        *path = from + "/" + *path;
}

bool MakeDirectory(const std::string& dir)
{
    struct stat st;
    if (::stat(dir.c_str(), &st) == 0)
        return S_ISDIR(st.st_mode);
    return PortableMakeDirectory(dir.c_str()) == 0;
}

} // namespace

int main(int argc, char** argv)
{
#ifdef _WIN32
    // What the player prints is the same bytes as on Linux: no carriage
    // returns are put before the line ends.
    ::_setmode(::_fileno(stdout), _O_BINARY);
    ::_setmode(::_fileno(stderr), _O_BINARY);
#endif
    Options o;
    std::string error;
    if (!ParseOptions(argc, argv, &o, &error)) {
        std::fprintf(stderr, "quindle-player: %s\n\n", error.c_str());
        Usage(stderr);
        return 1;
    }
    if (o.check)
        return CheckGameFolder(o.folder, o.script, o.strict, stdout);
    char started[4096];
    if (!::getcwd(started, sizeof started)) {
        std::fprintf(stderr, "quindle-player: the working directory cannot be read\n");
        return 2;
    }
    for (std::string* path : {&o.folder, &o.script, &o.out, &o.gif, &o.record, &o.replay, &o.saves.saveFile,
                              &o.saves.load, &o.saves.check})
        Absolute(path, started);
    GameFile game;
    if (!ReadGameFile(o.folder, &game, &error)) {
        std::fprintf(stderr, "quindle-player: %s\n", error.c_str());
        return 2;
    }

#ifndef __EMSCRIPTEN__ // a page is its own display
    if (o.window) {
        // Without a display SDL would fall back to a driver that shows nothing.
        const char* driver = std::getenv("SDL_VIDEODRIVER");
        if (!std::getenv("DISPLAY") && !std::getenv("WAYLAND_DISPLAY") && !(driver && driver[0])) {
            std::fprintf(stderr, "quindle-player: --window needs a display (neither DISPLAY nor WAYLAND_DISPLAY is set)\n");
            return 3;
        }
    }
#endif
    SoftKernel k;
    PlayerTape tape(k);
#ifdef __EMSCRIPTEN__
    const bool sessionTape = false; // a page keeps no files once it is closed
#else
    const bool sessionTape = o.window && !o.noRecord && o.record.empty() && o.replay.empty();
#endif
    if (sessionTape) {
        // Every crash a tester sees in a window comes with its replay.
        o.record = SessionTapePath(game.title, &error);
        if (o.record.empty())
            std::fprintf(stderr, "quindle-player: %s: playing without a tape\n", error.c_str());
    }
    if (const int failed = tape.Open(o.record, o.replay, !o.script.empty(), game.title, game.library, o.window,
                                     &o.step, &o.gameArgs))
        return failed;
    k.SetTicksPerFrame(o.step);
    InstallHostReports(k, o.strict, o.trace);
    SetHostFaultHook([](const char* report, void* t) { return static_cast<PlayerTape*>(t)->EndNow(TapeEnding::kFault, report); },
                     &tape);
    CrashHooks crash;
    crash.kernel = &k;
    crash.finishTape = &PlayerTape::EndBySignal;
    crash.data = &tape;
    crash.tapePath = tape.RecordingPath();
    InstallCrashReport(crash);
    if (!k.SetGameFolder(o.folder)) {
        std::fprintf(stderr, "quindle-player: %s\n", k.Fault().c_str());
        return 2;
    }
    std::vector<SoftInputEvent> events;
    if (o.window && !o.langGiven)
        o.lang = LocaleLanguage(o.folder);
    k.Resources().SetLanguage(o.lang);
    if (!o.script.empty()) {
        if (!SoftReadScript(o.script, &events, &error)) {
            std::fprintf(stderr, "quindle-player: %s\n", error.c_str());
            return 2;
        }
        k.SetScript(events);
    }

    Run run;
    run.options = &o;
    run.tape = &tape;
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
        k.UseRealClock(true);
        run.window = &keys;
        run.shown = &window;
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
    k.SetModalHook(&OnModal, &run);

#ifdef __EMSCRIPTEN__
    // A web page is one game: its library is linked in.
    QuindleGameStartFunction start = &QuindleGameStart;
#else
    QuindleGameStartFunction start = nullptr;
    if (const int failed = LoadGameLibrary(game.library, &start, &error)) {
        std::fprintf(stderr, "quindle-player: %s\n", error.c_str());
        return failed;
    }
#endif

    // The game folder is the directory of the room libraries, and the game's
    // working directory: what it reads by a relative name is in its folder.
    GLSetRoomDirectory(o.folder.c_str());
    if (::chdir(o.folder.c_str()) != 0) {
        std::fprintf(stderr, "quindle-player: %s: cannot work in the game folder\n", o.folder.c_str());
        return 2;
    }
    tape.WatchChecks(o.window);

    o.gameArgs.insert(o.gameArgs.begin(), argv[0]);
    QuindleHost host{QUINDLE_HOST_VERSION, tape.Kernel(), &k, o.folder.c_str(), static_cast<int>(o.gameArgs.size()),
                     o.gameArgs.data(), o.lang.c_str()};
    QuindleGameLoop loop{nullptr, nullptr, nullptr};
    if (start(&host, &loop) != 0 || !loop.step) {
        std::fprintf(stderr, "quindle-player: %s: the game did not start\n", game.library.c_str());
        return 3;
    }
    PlayerSaves saves(k, o.saves, game.title, !sessionTape && (!o.record.empty() || !o.replay.empty()));
    if (sessionTape && !o.record.empty())
        saves.EndsSessionTape(
            [](void* t) {
                PlayerTape& session = *static_cast<PlayerTape*>(t);
                const std::string path = session.RecordingPath();
                session.EndNow(TapeEnding::kCut, "");
                std::fprintf(stderr, "quindle-player: the session's tape ends before this quick save or restore: %s\n",
                             path.c_str());
            },
            &tape);
    if (const int done = saves.Checking() ? saves.Check() : saves.Started(&events); done || saves.Checking()) {
        if (loop.finish)
            loop.finish(loop.state);
        return done;
    }

#ifdef __EMSCRIPTEN__
    const bool progress = false; // a page's console is no terminal, whatever isatty says
#else
    const bool progress = !o.quiet && !o.window && ::isatty(2);
#endif
    int status = 0;
    bool quit = false, closed = false;
    std::uint32_t shown = 0;
    int interrupted = 0;
    while (!k.HasFault()) {
        if (tape.Replaying() ? tape.AtEnd() : (!o.window || o.ticksGiven) && k.GetTicks() >= o.ticks)
            break;
        if ((interrupted = Interrupted()) != 0)
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
            status = 2;
            break;
        }
        int saveKey = 0;
#ifdef QUINDLE_HAVE_WINDOW
        saveKey = o.window ? keys.TakeSaveKey() : 0;
#endif
        if ((status = saves.AfterFrame(saveKey)) != 0)
            break;
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
    Ending ending;
    ending.cut = tape.AtCut();
    if (loop.finish && !ending.cut)
        loop.finish(loop.state);
    ending.quit = quit;
    ending.closed = closed;
    ending.interrupted = interrupted;
    ending.status = status;
    // The game library stays loaded: objects of the game may still be referred
    // to by the library's statics at exit.
    return EndRun(run, k, ending);
}
