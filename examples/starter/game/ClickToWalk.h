// ClickToWalk.h - walks the hero to wherever the player presses the pointer.
#ifndef STARTER_CLICK_TO_WALK_H
#define STARTER_CLICK_TO_WALK_H

#include "globject.h"
#include "glmover.h"

class GLCel;
class GLEvent;

// Put it among the user object's orphans: it takes the presses that nothing
// else took. The hero's plane covers the screen from (0, 0), so the event's
// screen position is the hero's position too.
class ClickToWalk : public GLObject {
public:
    explicit ClickToWalk(GLCel* pHero);
    // A pointer press sends the hero there, from wherever it is; anything
    // else is left to others.
    int HandleEvent(GLEvent* pEvent) override;

private:
    GLMover mMover;
};

#endif
