// room_5.cpp - a room library for the end-to-end run: while it runs, a small
// coloured plane (colour 9, 50x50 in the top-left corner) is on the screen.
#include "gldll.h"
#include "glgame.h"
#include "glplane.h"
#include "glplanes.h"
#include "glrmmgr.h"

namespace {
GLColoredPlane* gCorner = nullptr;
}

GL_ROOM_EXPORT void roomDLLInit(void* pKernel)
{
    DLLInit(pKernel);
}

GL_ROOM_EXPORT void roomInit()
{
    gCorner = new GLColoredPlane(ZOR_Rect(0, 0, 49, 49), 9, 5, 0, ZOR_Point(0, 0));
    theGame->mpPlaneManager->Add(gCorner);
}

GL_ROOM_EXPORT void roomDoIt()
{
}

GL_ROOM_EXPORT int roomHandleEvent(GLEvent*)
{
    return 0;
}

GL_ROOM_EXPORT void roomDispose()
{
    theGame->mpPlaneManager->Remove(gCorner);
    delete gCorner;
    gCorner = nullptr;
}
