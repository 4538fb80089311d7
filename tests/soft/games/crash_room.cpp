// crash_room.cpp - room 7 of the tape game ("crash"): it reads through a null
// pointer in its frame once the clock reaches tick 30, as a room with a
// dangling object would.
#include "gldll.h"
#include "glrmmgr.h"

namespace {
int* volatile gNothing = nullptr;
}

GL_ROOM_EXPORT void roomDLLInit(void* pKernel)
{
    DLLInit(pKernel);
}

GL_ROOM_EXPORT void roomInit()
{
}

GL_ROOM_EXPORT void roomDoIt()
{
    if (kernel->GetTicks() >= 30)
        *gNothing = 1; // the crash the report must point at
}

GL_ROOM_EXPORT int roomHandleEvent(GLEvent*)
{
    return 0;
}

GL_ROOM_EXPORT void roomDispose()
{
}
