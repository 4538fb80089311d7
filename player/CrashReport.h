// CrashReport.h - what the player says when the game's code crashes, and how
// a run that is killed or crashes still leaves a finished tape.
//
// A crash (SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT) ends the player with one
// report on the error stream:
//
//   quindle-player: the game crashed: segmentation fault (SIGSEGV) at tick 30, frame 31, room 7
//   quindle-player: stack trace:
//     #0 roomDoIt at tests/soft/games/crash_room.cpp:24 (7.so)
//     ...
//   quindle-player: the run's tape: <path> (replay it with --replay)
//
// and exit status 6. The signal handler writes only with async-signal-safe
// calls; the stack is symbolised and the tape finished by a forked child,
// which the handler waits for at most a few seconds, so the report never
// hangs even when the crash left the heap locked.
//
// SIGINT and SIGTERM ask the run to stop between frames (Interrupted()); a
// second one, or a game that does not get back to the player within two
// seconds, ends the run at once, after the tape is finished.
#ifndef QUINDLE_PLAYER_CRASH_REPORT_H
#define QUINDLE_PLAYER_CRASH_REPORT_H

#include <cstdint>
#include <string>

class SoftKernel;

struct CrashHooks {
    SoftKernel* kernel = nullptr;
    // Finishes the tape being recorded (or, replaying, compares the end with
    // the tape's): 0 when the run may end as reported, 4 when a replay
    // diverged here. Runs in the forked child. May be null.
    int (*finishTape)(int signal, const char* what, void* data) = nullptr;
    void* data = nullptr;
    std::string tapePath; // named in the report when set
};

// Installs the handlers. Call once, before the game starts.
void InstallCrashReport(const CrashHooks& hooks);
// The room now loaded (-1: none), kept from the library's room traces.
void CrashReportRoom(long room);
// A check of the library failed and its report has been shown: adds the tick,
// frame, room and stack trace; the abort that follows ends the process as the
// library documents it, without a second report.
void CrashReportCheckFailed();
// A SIGINT or SIGTERM arrived (the signal's number), or 0.
int Interrupted();
// The run has ended: signals no longer stop it early.
void CrashReportDone();

// The stack of the calling code, symbolised, one "  #N function at file:line
// (module)" line each, on the error stream; the innermost `skip` frames are
// left out, and with `after` every frame up to the outermost one of the
// function of that name.
void WriteStackTrace(int skip, const char* after = nullptr);

#endif
