// HostReports.cpp - see HostReports.h.
#include "HostReports.h"

#include "CrashReport.h"
#include "SoftKernel.h"
#include "gldefs.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

struct Reports {
    SoftKernel* kernel = nullptr;
    bool strict = false;
    bool trace = false;
    int (*fault)(const char* report, void* data) = nullptr;
    void* faultData = nullptr;
};
Reports gReports;

void PrintTrace(const char* line, void*)
{
    std::printf("%u %s\n", gReports.kernel->GetTicks(), line);
}

void OnNotice(int kind, const char* file, int line, const char* text)
{
    if (kind == GL_NOTICE_TRACE) {
        // "room N loaded", "room N unloaded": where a crash report says the game was.
        long room = 0;
        char state[16] = "";
        if (std::sscanf(text, "room %ld %15s", &room, state) == 2)
            CrashReportRoom(std::strcmp(state, "loaded") == 0 ? room : -1);
        if (gReports.trace)
            PrintTrace(text, nullptr);
        return;
    }
    const bool fault = kind == GL_NOTICE_ERROR || gReports.strict;
    const char* what = kind == GL_NOTICE_ERROR ? "error" : "warning";
    char report[1024];
    if (line > 0)
        std::snprintf(report, sizeof report, "%s:%d: %s: %s", file, line, what, text);
    else
        std::snprintf(report, sizeof report, "%s: %s: %s", file, what, text);
    std::fprintf(stderr, "quindle-player: %s\n", report);
    if (!fault)
        return;
    // The game cannot go on as written (a track whose wait would end it, a
    // room library that does not load): stop now, before the library's own
    // check ends the process without a word of the file.
    std::fprintf(stderr, "quindle-player: stopped by a fault at tick %u\n", gReports.kernel->TicksSeen());
    const int verdict = gReports.fault ? gReports.fault(report, gReports.faultData) : 0;
    std::fflush(stdout);
    std::fflush(stderr);
    _exit(verdict ? verdict : 2);
}

} // namespace

void InstallHostReports(SoftKernel& kernel, bool strict, bool trace)
{
    gReports.kernel = &kernel;
    gReports.strict = strict;
    gReports.trace = trace;
    GLSetHostNotice(&OnNotice);
    kernel.SetTraceHook(trace ? &PrintTrace : nullptr, nullptr);
}

void SetHostFaultHook(int (*hook)(const char* report, void* data), void* data)
{
    gReports.fault = hook;
    gReports.faultData = data;
}
