// PlayerTape.cpp - recording and replaying a run in the player.
#include "PlayerTape.h"

#include "gldefs.h"
#ifdef QUINDLE_HAVE_WINDOW
#include "SoftWindow.h"
#endif

#include <cstdio>
#include <cstdlib>

namespace {

PlayerTape* gWatched = nullptr;
bool gWindowNotice = false;
std::string gTapePath;

std::string BaseName(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

void Stopped(TapeKernel::Stop why, const std::string& report, void*)
{
    std::fprintf(stderr, "quindle-player: %s: %s\n", gTapePath.c_str(), report.c_str());
    // The game's objects still live: the process ends without running the
    // destructors of statics that may refer to them.
    std::fflush(nullptr);
    std::_Exit(why == TapeKernel::Stop::kTapeEnded ? 5 : 4);
}

} // namespace

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
        if (h.title != title || h.library != BaseName(library)) {
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

void PlayerTape::WatchChecks(bool window)
{
    if (!mActive)
        return;
    gWatched = this;
    gWindowNotice = window;
    // A failed check ends the process: the tape is finished first, then the
    // report is shown as it would be without a tape.
    GLSetAssertNotice([](const char* text, const char* title) {
        std::string report(text);
        while (!report.empty() && report.back() == '\n')
            report.pop_back();
        if (!gWatched->mTape.FailedCheck(report) && gWatched->mTape.Replaying())
            std::fprintf(stderr, "quindle-player: %s: replay diverged at frame %u: this check did not fail in the "
                                 "recorded run\n",
                         gTapePath.c_str(), gWatched->mTape.Frames() + 1);
#ifdef QUINDLE_HAVE_WINDOW
        if (gWindowNotice) {
            SoftWindow::ShowMessage(title, text);
            return;
        }
#endif
        std::fprintf(stderr, "%s\n%s", title, text);
        std::fflush(stderr);
    });
}

int PlayerTape::Finish(bool quit, bool closed, bool fault, int status)
{
    if (!mActive)
        return status;
    const TapeEnding ending = quit     ? TapeEnding::kQuit
                              : fault  ? TapeEnding::kFault
                              : closed ? TapeEnding::kClosed
                                       : TapeEnding::kTimeOver;
    std::string report;
    const int verdict = mTape.Finish(ending, &report);
    if (verdict)
        std::fprintf(stderr, "quindle-player: %s: %s\n", mPath.c_str(), report.c_str());
    return status ? status : verdict;
}
