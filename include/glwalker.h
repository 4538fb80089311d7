// glwalker.h - GLWalker, an actor who walks where he is sent along the
// shortest route of a walkable area, showing the walk loop of the way he goes.
//
// The walker drives a cel that it does not own, with the library's own parts:
// a path (GLPath) walks the route leg by leg, one step per move-speed
// interval of at most the cel's step size, and a cycler (GLCycler) steps the
// walk loop's cels at the cel's cycle speed while he walks.
//
// Loops. The walk loop of a direction is the loop of that number: 0 right,
// 1 left, 2 toward the viewer (down the screen), 3 away (up), and with eight
// directions also 4 toward and right, 5 toward and left, 6 away and right,
// 7 away and left. The direction of a leg is chosen by its angle: with four
// directions a leg more across than in depth (|dx| > |dy|) walks right or
// left, any other toward or away; with eight, each direction takes the 45
// degrees round its own angle. On arrival he stands: on cel 0 of the loop he
// walked with, or, when standing loops are set, on cel 0 of loop first + the
// direction.
//
// Depth. Optionally the actor's scale follows his y: at or above the far line
// the far scale, at or below the near line the near scale, in between in
// proportion (scales in 128ths: 128 is full size). His step size is scaled
// alike, from the step size he had when the depth scale was set, which is his
// step size at full size.
#ifndef QUINDLE_GLWALKER_H
#define QUINDLE_GLWALKER_H

#include "globject.h"
#include "glset.h"

class GLCel;
class GLCycler;
class GLWalkArea;
class GLWalkerPath;

class QUINDLE_API GLWalker : public GLObject {
public:
    enum Direction {
        kRight = 0,
        kLeft = 1,
        kToward = 2,
        kAway = 3,
        kTowardRight = 4,
        kTowardLeft = 5,
        kAwayRight = 6,
        kAwayLeft = 7
    };

    // A walker for pActor that keeps to pArea (null: he walks straight to
    // any point). Neither is owned; both must outlive the walker. Four
    // directions, no standing loops, no depth scale.
    GLWalker(GLCel* pActor, const GLWalkArea* pArea);
    GLWalker(const GLWalker&) = delete;
    GLWalker& operator=(const GLWalker&) = delete;
    // Stops him where he stands; whoever sent him is not cued.
    virtual ~GLWalker();

    // The area he keeps to from the next walk on.
    void SetArea(const GLWalkArea* pArea) { mpArea = pArea; }
    // 4 or 8.
    void SetDirections(int iDirections);
    // Standing loops are iFirstLoop + direction; -1 stands on the walk loop.
    void SetStandLoops(int iFirstLoop);
    // Scales him by depth from now on; iFarY above iNearY, scales above 0.
    void SetDepthScale(int iFarY, int iFarScale, int iNearY, int iNearScale);

    // Walks to the point (moved into the area when it lies outside), and
    // cues pCaller (if any) once, with the walker as cuer, when he stands
    // there. A walk under way is replaced: its caller is not cued.
    void WalkTo(const GLPoint& dest, GLObject* pCaller);
    // Stops where he stands; whoever sent him is not cued.
    void Stop();
    int IsWalking() const;

    // Turns him (walking or standing) to a direction, or toward a point.
    void Face(int iDirection);
    void FaceToward(const GLPoint& point);
    int GetDirection() const { return mDirection; }
    // The direction of a move by (dx, dy) under the walker's rule; his
    // current one for no move.
    int DirectionOf(int dx, int dy) const;

    GLCel* GetActor() const { return mpActor; }
    // The points of the walk under way (empty when he stands).
    const GLListAsArray<GLPoint>& GetRoute() const { return mRoute; }

private:
    friend class GLWalkerPath;
    // From the path: after each step, on each new leg, and on arrival.
    void Stepped();
    void NewLeg(const GLPoint& dest);
    void Arrived();
    void Pose();
    void ClearRoute();

    GLCel* mpActor;
    const GLWalkArea* mpArea;
    GLWalkerPath* mpPath;
    GLCycler* mpSteps;
    GLObject* mpCaller;
    GLListAsArray<GLPoint> mRoute; // owned points
    std::int32_t mDirections;
    std::int32_t mDirection;
    std::int32_t mStandLoops;
    std::int32_t mScaled; // TRUE while scaling by depth
    std::int32_t mFarY, mFarScale, mNearY, mNearScale;
    std::int32_t mBaseStepX, mBaseStepY;
};

#endif
