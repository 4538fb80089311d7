// Walker.cpp - Pip's picture, pace and floor.
#include "Walker.h"

#include "DemoGame.h"

#include "glcel.h"
#include "glwalk.h"

#include <cstdio>

WalkerParts::WalkerParts(AbsGLPlane* pPlane, int view, const GLPoint& pos, int room)
{
    // Priority -9999: the kernel orders the walker by his feet (y), so he
    // passes in front of the well's front and behind its back.
    mpCel = new GLCel(pPlane, view, GLWalker::kToward, 0, pos, kPriorityOnTop, kFullSizeScale);
    mpCel->SetMoveSpeed(2);            // a step every two ticks...
    mpCel->SetStepSize(GLPoint(4, 2)); // ...of up to 4 pixels across, 2 in depth
    mpCel->SetCycleSpeed(7);           // a new cel of the walk cycle every 7 ticks
    mpCel->Show();

    char name[32], report[256];
    std::snprintf(name, sizeof name, "walk/%d.txt", room);
    mpFloor = GLWalkArea::Load(Demo()->FolderFile(name), report, sizeof report);
    if (!mpFloor)
        std::fprintf(stderr, "%s\n", report); // a faulty floor is the game's to report
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
