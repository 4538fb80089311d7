// Walker.cpp - Pip's picture, pace and floor.
#include "Walker.h"

#include "DemoGame.h"

#include "glcel.h"
#include "glwalk.h"

#include <cstdio>

WalkerParts::WalkerParts(AbsGLPlane* pPlane, int view, const GLPoint& pos, int room)
{
    // On-top priority: the kernel orders the walker by his feet (y), so he
    // passes in front of the well's front and behind its back.
    mpCel = new GLCel(pPlane, view, GLWalker::kToward, 0, pos, kPriorityOnTop, kFullSizeScale);
    mpCel->SetMoveSpeed(2);            // a step every two ticks...
    mpCel->SetStepSize(GLPoint(4, 2)); // ...of up to 4 pixels across, 2 in depth
    mpCel->SetCycleSpeed(7);           // a new cel of the walk cycle every 7 ticks
    mpCel->Show();

    // A floor that cannot be read is told to the host by the library; he then
    // walks straight wherever he is sent.
    char name[32];
    std::snprintf(name, sizeof name, "walk/%d.txt", room);
    mpFloor = GLWalkArea::Load(Demo()->FolderFile(name));
}

WalkerParts::~WalkerParts()
{
    delete mpFloor;
    delete mpCel;
}

Walker::Walker(AbsGLPlane* pPlane, int view, const GLPoint& pos, int room)
    : WalkerParts(pPlane, view, pos, room), GLWalker(mpCel, mpFloor)
{
}

Walker::~Walker() {}
