// HostReports.cpp - see HostReports.h.
#include "HostReports.h"

#include "SoftKernel.h"
#include "gldefs.h"

#include <unistd.h>

#include <cstdio>

namespace {

struct Reports {
    SoftKernel* kernel = nullptr;
    bool strict = false;
    bool trace = false;
};
Reports gReports;

void PrintTrace(const char* line, void*)
{
    std::printf("%u %s\n", gReports.kernel->GetTicks(), line);
}

void OnNotice(int kind, const char* file, int line, const char* text)
{
    if (kind == GL_NOTICE_TRACE) {
        if (gReports.trace)
            PrintTrace(text, nullptr);
        return;
    }
    const bool fault = kind == GL_NOTICE_ERROR || gReports.strict;
    const char* what = kind == GL_NOTICE_ERROR ? "error" : "warning";
    if (line > 0)
        std::fprintf(stderr, "quindle-player: %s:%d: %s: %s\n", file, line, what, text);
    else
        std::fprintf(stderr, "quindle-player: %s: %s: %s\n", file, what, text);
    if (!fault)
        return;
    // The game cannot go on as written (a track whose wait would end it, a
    // room library that does not load): stop now, before the library's own
    // check ends the process without a word of the file.
    std::fprintf(stderr, "quindle-player: stopped by a fault at tick %u\n", gReports.kernel->GetTicks());
    std::fflush(stdout);
    std::fflush(stderr);
    _exit(2);
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
