// HostReports.h - what the player tells of a running game besides its frames:
// the library's notices of problems with the game's files, and the trace.
#ifndef QUINDLE_PLAYER_HOST_REPORTS_H
#define QUINDLE_PLAYER_HOST_REPORTS_H

class SoftKernel;

// Installs the library's host notice for a run on this kernel. A warning is
// printed on the error stream as "quindle-player: <file>:<line>: warning:
// <what>"; an error (or, with `strict`, a warning) is a fault: it is printed
// the same way and the player exits with 2 at once, before the game meets
// it. With `trace`, every step the kernel and the library report (samples,
// messages, rooms, robots, movies) is printed on standard output as
// "<tick> <what>".
void InstallHostReports(SoftKernel& kernel, bool strict, bool trace);
// Called with the report ("<file>:<line>: error: <what>") before a fault ends
// the player, to finish the run's tape; a status other than 0 replaces the 2
// the player exits with.
void SetHostFaultHook(int (*hook)(const char* report, void* data), void* data);

#endif
