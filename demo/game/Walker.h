// Walker.h - an actor who walks where he is sent, around what stands in his
// way, showing the walk loop of the direction he goes in.
//
// Made of library parts: a GLCel (the actor's picture on a plane), a GLPath
// (the legs of his route; each new leg turns him), and a GLCycler (his steps).
// The walker is a GLObject so that the path can cue it on arrival; it then
// stops the steps and cues whoever sent it.
#ifndef DEMO_WALKER_H
#define DEMO_WALKER_H

#include "DemoApi.h"

#include "glcel.h"
#include "glset.h"

class GLCycler;
class WalkPath;

class DEMO_API Walker : public GLObject {
public:
    // Loops of the walker's view: one walk cycle per direction.
    enum Facing { kRight = 0, kLeft = 1, kToward = 2, kAway = 3 };

    // Shows the walker on the plane at pos, standing, facing the viewer.
    Walker(AbsGLPlane* pPlane, int view, const GLPoint& pos);
    virtual ~Walker();

    // Where the walker may set foot (plane coordinates): targets outside are
    // pulled in.
    void SetFloor(const ZOR_Rect& floor) { mFloor = floor; }
    // Something he must walk around (only one: our rooms have one well).
    void SetObstacle(const ZOR_Rect& obstacle)
    {
        mObstacle = obstacle;
        mHasObstacle = TRUE;
    }

    // Walks to the point; cues pCaller (if any) on arrival. A new walk
    // replaces the one under way; its caller is not cued.
    void WalkTo(const GLPoint& dest, GLObject* pCaller);
    int IsWalking() const { return mpPath != 0; }
    // Stops where he stands; whoever sent him is not cued.
    void Stop();
    void Face(Facing facing);
    // Looks toward a point without moving.
    void FaceToward(const GLPoint& point);

    GLCel* Cel() { return mpCel; }

    // The path's arrival.
    virtual void Cue(GLCue* pCue);

private:
    void PlanRoute(const GLPoint& from, const GLPoint& to);
    int Crosses(const GLPoint& from, const GLPoint& to) const;
    void ClearRoute();

    GLCel* mpCel;
    GLCycler* mpSteps;
    WalkPath* mpPath;
    GLListAsArray<GLPoint> mRoute; // the points of the route; ours to delete
    GLObject* mpCaller;
    ZOR_Rect mFloor;
    ZOR_Rect mObstacle;
    int mHasObstacle;
};

#endif
