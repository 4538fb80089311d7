// CrashReport_web.cpp - the crash report in a web page, where there is none to
// make: a page has no signals to catch (a fault in the game's code is a trap
// that the browser reports in its console, with the page's own stack), no
// process to fork and no SIGINT or SIGTERM. The player's calls stay the same.
#include "CrashReport.h"

void InstallCrashReport(const CrashHooks&) {}

void CrashReportRoom(long) {}

void CrashReportCheckFailed() {}

int Interrupted()
{
    return 0;
}

void CrashReportDone() {}

void WriteStackTrace(int, const char*) {}
