// PlayerTape.cpp - recording and replaying a run in the player.
#include "PlayerTape.h"

#include "CrashReport.h"
#include "Portable.h"
#include "gldefs.h"
#ifdef QUINDLE_HAVE_WINDOW
#include "SoftWindow.h"
#endif

#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace {

PlayerTape* gWatched = nullptr;
bool gWindowNotice = false;
std::string gTapePath;

std::string BaseName(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

// Whether a tape's game library is this folder's. On Windows a tape made on
// Linux names the library "<name>.so", which is "<name>.dll" here.
bool SameGameLibrary(const std::string& onTape, const std::string& here)
{
#ifdef _WIN32
    const auto stem = [](const std::string& name, const char* extension) {
        const std::size_t n = std::strlen(extension);
        return name.size() > n && name.compare(name.size() - n, n, extension) == 0 ? name.substr(0, name.size() - n)
                                                                                    : std::string();
    };
    const std::string fromLinux = stem(onTape, ".so");
    if (!fromLinux.empty() && fromLinux == stem(here, ".dll"))
        return true;
#endif
    return onTape == here;
}

void Stopped(TapeKernel::Stop why, const std::string& report, void*)
{
    std::fprintf(stderr, "quindle-player: %s: %s\n", gTapePath.c_str(), report.c_str());
    // The game's objects still live: the process ends without running the
    // destructors of statics that may refer to them.
    std::fflush(nullptr);
    std::_Exit(why == TapeKernel::Stop::kTapeEnded ? 5 : 4);
}

bool MakeDirectories(const std::string& path)
{
    for (std::size_t at = 1; at <= path.size(); at++) {
        if (at < path.size() && path[at] != '/')
            continue;
        const std::string part = path.substr(0, at);
        struct stat st;
        if (::stat(part.c_str(), &st) != 0 && PortableMakeDirectory(part.c_str()) != 0)
            return false;
    }
    return true;
}

} // namespace

std::string SessionTapePath(const std::string& title, std::string* error)
{
    const char* data = std::getenv("XDG_DATA_HOME");
    const char* home = std::getenv("HOME");
    std::string dir;
    if (data && data[0] == '/')
        dir = data;
    else if (home && home[0])
        dir = std::string(home) + "/.local/share";
    else {
        *error = "no data folder for the session's tape (neither XDG_DATA_HOME nor HOME is set)";
        return std::string();
    }
    std::string name = title.empty() ? "untitled" : title;
    std::replace(name.begin(), name.end(), '/', '_');
    if (name[0] == '.')
        name[0] = '_';
    dir += "/quindle/" + name;
    if (!MakeDirectories(dir)) {
        *error = dir + ": cannot make the folder for the session's tape";
        return std::string();
    }
    // The last ten sessions are kept: names sort by when they were made.
    std::vector<std::string> old;
    if (DIR* d = ::opendir(dir.c_str())) {
        while (const dirent* e = ::readdir(d)) {
            const std::string n = e->d_name;
            if (n.size() > 13 && n.compare(0, 8, "session-") == 0 && n.compare(n.size() - 5, 5, ".tape") == 0)
                old.push_back(n);
        }
        ::closedir(d);
    }
    std::sort(old.begin(), old.end());
    for (std::size_t i = 0; i + 9 < old.size(); i++)
        std::remove((dir + "/" + old[i]).c_str());
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    PortableLocalTime(now, &local);
    char stamp[32];
    std::strftime(stamp, sizeof stamp, "%Y%m%d-%H%M%S", &local);
    std::string path = dir + "/session-" + stamp + ".tape";
    for (int n = 2; ::access(path.c_str(), F_OK) == 0; n++)
        path = dir + "/session-" + stamp + "-" + std::to_string(n) + ".tape";
    return path;
}

int PlayerTape::Open(const std::string& record, const std::string& replay, bool haveScript,
                     const std::string& title, const std::string& library, bool window, std::uint32_t* step,
                     std::vector<char*>* gameArgs)
{
    if (record.empty() && replay.empty())
        return 0;
    std::string error;
    if (!record.empty() && !replay.empty()) {
        std::fprintf(stderr, "quindle-player: --record and --replay go one at a time\n");
        return 1;
    }
    mPath = gTapePath = record.empty() ? replay : record;
    if (!record.empty()) {
        TapeHeader header;
        header.title = title;
        header.library = BaseName(library);
        header.libraryVersion = QUINDLE_VERSION;
        header.step = *step;
        header.realClock = window ? 1 : 0;
        header.platform = TapePlatform();
        header.pointerBytes = sizeof(void*);
        for (char* a : *gameArgs)
            header.gameArgs.push_back(a);
        if (!mTape.Record(record, header, &error)) {
            std::fprintf(stderr, "quindle-player: %s\n", error.c_str());
            return 2;
        }
    } else {
        if (haveScript) {
            std::fprintf(stderr, "quindle-player: a replay takes its input from the tape, not from --script\n");
            return 1;
        }
        if (!mReader.Open(replay, &error)) {
            std::fprintf(stderr, "quindle-player: %s\n", error.c_str());
            return 2;
        }
        const TapeHeader& h = mReader.Header();
        if (h.title != title || !SameGameLibrary(h.library, BaseName(library))) {
            std::fprintf(stderr, "quindle-player: %s: a tape of the game \"%s\" (%s), not of this folder's \"%s\" (%s)\n",
                         replay.c_str(), h.title.c_str(), h.library.c_str(), title.c_str(),
                         BaseName(library).c_str());
            return 2;
        }
        // The game's objects are as large as the platform makes them, and a
        // tape holds every allocation's size: on another data model the run
        // would differ from its first frame.
        if (h.pointerBytes != sizeof(void*)) {
            std::fprintf(stderr, "quindle-player: %s: a tape from another platform (%s, %u-byte pointers; this is %s, "
                         "%u-byte): its allocations differ in size, so it replays only where it was recorded\n",
                         replay.c_str(), h.platform.c_str(), static_cast<unsigned>(h.pointerBytes), TapePlatform(),
                         static_cast<unsigned>(sizeof(void*)));
            return 2;
        }
        if (h.libraryVersion != QUINDLE_VERSION)
            std::fprintf(stderr, "quindle-player: %s: recorded with quindle %s, replayed with %s\n", replay.c_str(),
                         h.libraryVersion.c_str(), QUINDLE_VERSION);
        *step = h.step;
        mArgs = h.gameArgs;
        gameArgs->clear();
        for (std::string& a : mArgs)
            gameArgs->push_back(&a[0]);
        mTape.Replay(&mReader);
        mTape.SetStopHandler(&Stopped, nullptr);
    }
    mActive = true;
    mSoft.SetClockInputSeam(this);
    return 0;
}

KernelServices* PlayerTape::Kernel()
{
    return mActive ? static_cast<KernelServices*>(&mTape) : &mSoft;
}

bool PlayerTape::Input(bool found, SoftInputEvent* event)
{
    TapeInputEvent e{event->type, event->message, event->modifiers, event->x, event->y};
    if (!mTape.HostInput(found, &e))
        return false;
    event->type = e.type;
    event->message = e.message;
    event->modifiers = e.modifiers;
    event->x = e.x;
    event->y = e.y;
    return true;
}

const std::string PlayerTape::kNone;

void PlayerTape::WatchChecks(bool window)
{
    gWatched = this;
    gWindowNotice = window;
    // A failed check ends the process: the tape is finished first, then the
    // report is shown as it would be without a tape, then where the game was.
    GLSetAssertNotice([](const char* text, const char* title) {
        std::string report(text);
        while (!report.empty() && report.back() == '\n')
            report.pop_back();
        if (gWatched->mActive && !gWatched->mTape.FailedCheck(report) && gWatched->mTape.Replaying())
            std::fprintf(stderr, "quindle-player: %s: replay diverged at frame %u: this check did not fail in the "
                                 "recorded run\n",
                         gTapePath.c_str(), gWatched->mTape.Frames() + 1);
        std::fprintf(stderr, "%s\n%s", title, text);
        std::fflush(stderr);
        CrashReportCheckFailed();
#ifdef QUINDLE_HAVE_WINDOW
        if (gWindowNotice)
            SoftWindow::ShowMessage(title, text);
#endif
    });
}

int PlayerTape::EndNow(TapeEnding ending, const std::string& report)
{
    if (!mActive)
        return 0;
    const bool replaying = mTape.Replaying();
    const std::uint32_t frame = mTape.Frames() + 1;
    if (mTape.EndNow(ending, report) || !replaying)
        return 0;
    std::fprintf(stderr, "quindle-player: %s: replay diverged at frame %u: the recorded run did not end here (%s)\n",
                 mPath.c_str(), frame, TapeEndingText(ending));
    return 4;
}

int PlayerTape::EndBySignal(int signal, const char* what, void* data)
{
    PlayerTape& tape = *static_cast<PlayerTape*>(data);
    if (signal == SIGINT || signal == SIGTERM)
        return tape.mTape.Replaying() ? 0 : tape.EndNow(TapeEnding::kInterrupted, "");
    return tape.EndNow(TapeEnding::kCrashed, what);
}

int PlayerTape::Finish(TapeEnding ending, int status)
{
    if (!mActive)
        return status;
    std::string report;
    const int verdict = mTape.Finish(ending, &report);
    if (verdict)
        std::fprintf(stderr, "quindle-player: %s: %s\n", mPath.c_str(), report.c_str());
    // A replay that diverged says so whatever else went wrong.
    return verdict == 4 || verdict == 5 ? verdict : status ? status : verdict;
}
