// HostReports.cpp - see HostReports.h.
#include "HostReports.h"

#include "CrashReport.h"
#include "Overlay.h"
#include "SoftKernel.h"
#include "glcast.h"
#include "glcel.h"
#include "gldefs.h"
#include "gldll.h"
#include "glgame.h"
#include "glplane.h"
#include "glplanes.h"

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

// A press on a cel the kernel drew there, where the library's own rectangle
// of the cel does not reach, goes through the cel: a cel takes clicks only on
// what the kernel reported after its last update, and one shown but not
// updated since has no such report. The trace says so, for nothing else does.
void TracePressThrough(SoftKernel& k, const KernelEventRecord& e, void*)
{
    if (!theGame || e.type != kEventPointerDown)
        return;
    std::vector<SoftKernel::InspectedPlane> shown;
    k.Inspect(&shown);
    const GLSetAsArray<AbsGLPlane>& planes = theGame->mpPlaneManager->moPlanes;
    for (int i = 0; i < planes.NumElements(); i++) {
        AbsGLPlane* plane = planes.At(i);
        const SoftKernel::InspectedPlane* drawn = nullptr;
        for (const auto& p : shown)
            drawn = p.id == plane->GetId() ? &p : drawn;
        const GLSetAsArray<GLTarget>* events = plane->GetCast()->GetEventSet();
        for (int j = 0; drawn && j < events->NumElements(); j++) {
            GLCel* cel = dynamic_cast<GLCel*>(EventMember(events, j));
            if (!cel || !cel->IsVisible())
                continue;
            for (const auto& item : drawn->items) {
                const ZOR_Rect& r = item.rect;
                if (item.id != cel->GetId() || !item.hasRect || e.where.x < r.left || e.where.x > r.right ||
                    e.where.y < r.top || e.where.y > r.bottom)
                    continue;
                const ZOR_Rect& at = plane->GetRect();
                const GLRect& seen = static_cast<const GLFeature*>(cel)->GetRect();
                if (seen.OnMe(e.where.x - at.left, e.where.y - at.top))
                    continue;
                std::printf("%u press at (%d, %d) goes through cel %d (view %d): the library's rectangle of it "
                            "(%d, %d, %d, %d) is what the kernel reported at its last update; update the cel "
                            "after showing it (ForceUpdate) for it to take clicks\n",
                            k.TicksSeen(), static_cast<int>(e.where.x), static_cast<int>(e.where.y),
                            static_cast<int>(cel->GetId()), cel->GetView(), seen.left, seen.top, seen.right,
                            seen.bottom);
            }
        }
    }
}

} // namespace

void InstallHostReports(SoftKernel& kernel, bool strict, bool trace)
{
    gReports.kernel = &kernel;
    gReports.strict = strict;
    gReports.trace = trace;
    GLSetHostNotice(&OnNotice);
    kernel.SetTraceHook(trace ? &PrintTrace : nullptr, nullptr);
    kernel.SetInputHook(trace ? &TracePressThrough : nullptr, nullptr);
}

void SetHostFaultHook(int (*hook)(const char* report, void* data), void* data)
{
    gReports.fault = hook;
    gReports.faultData = data;
}
