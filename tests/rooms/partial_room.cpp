// A room that loads but exports nothing but its start-up: every later step
// finds its export missing.
#include "glrmmgr.h"
#include "room_trace.h"

namespace {

RoomTrace trace = {"partial", {0}, 0, 0, nullptr, nullptr, nullptr, nullptr, 0};

} // namespace

GL_ROOM_EXPORT RoomTrace* roomTrace()
{
    return &trace;
}

GL_ROOM_EXPORT void roomDLLInit(void* pKernel)
{
    trace.dllInits++;
    trace.kernelGiven = pKernel;
}
