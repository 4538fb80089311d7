// CrashReport_win.cpp - the player's reports of how a run ended, on Windows.
// The build takes this file instead of CrashReport.cpp there.
//
// Not written yet for Windows: the report of a crash (no handler is installed,
// so a crash ends the run as the system ends it, without the stack trace, and
// a tape being recorded is not finished) and stack traces. An interrupt
// (Ctrl+C, Ctrl+Break) is seen, and the run stops between frames as on Linux.
#include "CrashReport.h"

#include "SoftKernel.h"

#include <csignal>
#include <cstdio>

namespace {

struct State {
    CrashHooks hooks;
    volatile long room = -1;
    volatile std::sig_atomic_t interrupted = 0;
};
State gState;

void OnInterrupt(int sig)
{
    gState.interrupted = sig;
}

} // namespace

void InstallCrashReport(const CrashHooks& hooks)
{
    gState.hooks = hooks;
    std::signal(SIGINT, &OnInterrupt);
    std::signal(SIGTERM, &OnInterrupt);
    std::signal(SIGBREAK, &OnInterrupt);
}

void CrashReportRoom(long room)
{
    gState.room = room;
}

void CrashReportCheckFailed()
{
    std::fprintf(stderr, "quindle-player: the check failed");
    if (SoftKernel* k = gState.hooks.kernel)
        std::fprintf(stderr, " at tick %llu, frame %llu", static_cast<unsigned long long>(k->TicksSeen()),
                     static_cast<unsigned long long>(k->FramesComposed()) + 1ull);
    if (gState.room >= 0)
        std::fprintf(stderr, ", room %ld\n", static_cast<long>(gState.room));
    else
        std::fprintf(stderr, ", no room loaded\n");
}

int Interrupted()
{
    return gState.interrupted;
}

void CrashReportDone() {}

void WriteStackTrace(int, const char*)
{
    std::fprintf(stderr, "quindle-player: no stack trace on Windows\n");
}
