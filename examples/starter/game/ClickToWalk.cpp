#include "ClickToWalk.h"

#include "glconst.h"
#include "glevent.h"

ClickToWalk::ClickToWalk(GLCel* pHero) : mMover(pHero) {}

int ClickToWalk::HandleEvent(GLEvent* pEvent)
{
    if (pEvent->type != kEventPointerDown)
        return FALSE;
    // A mover walks one line at a time: a new click replaces the walk under way.
    if (mMover.IsMoving())
        mMover.Stop();
    mMover.Start(pEvent->where);
    pEvent->claimed = TRUE;
    return TRUE;
}
