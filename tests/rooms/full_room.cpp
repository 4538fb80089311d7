// A room with all five exports that records every call it gets. Built several
// times under different numbers and into different directories; ROOM_ORIGIN
// tells the builds apart.
#include "gldll.h"
#include "glrmmgr.h"
#include "room_trace.h"

#include <cstring>

namespace {

RoomTrace trace = {ROOM_ORIGIN, {0}, 0, 0, nullptr, nullptr, nullptr, nullptr, 0};

void Record(const char* call)
{
    std::strncat(trace.calls, call, sizeof trace.calls - std::strlen(trace.calls) - 1);
    std::strncat(trace.calls, " ", sizeof trace.calls - std::strlen(trace.calls) - 1);
}

} // namespace

GL_ROOM_EXPORT RoomTrace* roomTrace()
{
    return &trace;
}

GL_ROOM_EXPORT void roomDLLInit(void* pKernel)
{
    Record("DLLInit");
    trace.dllInits++;
    trace.kernelGiven = pKernel;
    trace.kernelSeen = kernel;
}

GL_ROOM_EXPORT void roomInit()
{
    Record("Init");
    trace.gameSeen = theGame;
}

GL_ROOM_EXPORT void roomDoIt()
{
    Record("DoIt");
    trace.doIts++;
}

GL_ROOM_EXPORT int roomHandleEvent(GLEvent* pEvent)
{
    Record("Event");
    trace.lastEvent = pEvent;
    return trace.reply;
}

GL_ROOM_EXPORT void roomDispose()
{
    Record("Dispose");
}
