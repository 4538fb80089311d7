// glmover.h - movers and paths: walk a cel to a point, or along points.
//
// A mover walks its actor in a straight line, one step every move-speed
// interval (the cel's GetMoveSpeed, in game ticks), at most the cel's step
// size per step, and cues its caller on arrival with itself as the cuer. A
// path walks a list of points one leg after another and cues once, after the
// last. Both work from the game's object set while moving.
#ifndef QUINDLE_GLMOVER_H
#define QUINDLE_GLMOVER_H

#include "glbresen.h"
#include "globject.h"
#include "glset.h"

class GLCel;

class QUINDLE_API GLMover : public GLObject {
public:
    // Idle, for pActor.
    GLMover(GLCel* pActor);
    // Starts walking pActor to dest at once.
    GLMover(GLCel* pActor, const GLPoint& dest);
    // The same, cueing pCaller on arrival.
    GLMover(GLCel* pActor, const GLPoint& dest, GLObject* pCaller);
    // Copies share the source's points and stepper, member by member; the
    // library never copies a mover, and at most one of the two may be deleted.
    GLMover(const GLMover& mover);
    GLMover& operator=(const GLMover& mover);
    // A mover deleted while it moves leaves the game's object set first.
    virtual ~GLMover();

    virtual void DoIt();
    // The virtual members stand in the order of the exported table.
    // Sets the object to cue on arrival, then begins the leg with Start(dest).
    virtual void Start(const GLPoint& dest, GLObject* pCaller);
    // Begins a leg from where the actor stands; the mover must be idle.
    virtual void Start(const GLPoint& dest);
    // Called on arrival at the end of a leg; a mover is then done.
    virtual void NextDest();

    // Stops where the last step put the actor; the caller stays for a later Start.
    void Stop();
    // Takes one step and moves the actor; TRUE when it arrived.
    int DoStep();
    // Stops and cues the caller, if any, with the mover as cuer.
    void Done();

    // TRUE while a leg is under way.
    int IsMoving() const { return mpBresen != 0; }
    GLCel* GetActor() const { return mpActor; }
    // Where the current leg ends; null before the first Start.
    const GLPoint* GetDest() const { return mpDest; }

protected:
    void Init();

    GLCel* mpActor;
    GLObject* mpCaller;
    GLBresen* mpBresen;
    GLPoint* mpPos;
    GLPoint* mpDest;
    std::uint32_t mNextMoveTime;
};

class QUINDLE_API GLPath : public GLMover {
public:
    // Idle, for pActor.
    GLPath(GLCel* pActor);
    // Starts walking the points at once; the list must outlive the walk.
    GLPath(GLCel* pActor, GLListAsArray<GLPoint>& points);
    // The same, cueing pCaller after the last point.
    GLPath(GLCel* pActor, GLListAsArray<GLPoint>& points, GLObject* pCaller);
    GLPath(const GLPath& path);
    GLPath& operator=(const GLPath& path);
    virtual ~GLPath();

    // Walks from the current point: the first for a new path, and the first
    // again once every point has been walked. A path stopped part-way goes on
    // from the point it was walking to.
    void Start(GLListAsArray<GLPoint>& points);
    void Start(GLListAsArray<GLPoint>& points, GLObject* pCaller);
    using GLMover::Start;
    // Starts the next leg, or is done after the last point.
    virtual void NextDest();
    // The points walked (null before Start) and the index of the one the
    // current leg goes to: the points after it are still to come.
    const GLListAsArray<GLPoint>* GetPoints() const { return mpPoints; }
    int GetCurIndex() const { return mCurIndex; }

protected:
    GLListAsArray<GLPoint>* mpPoints;
    std::int32_t mCurIndex;
};

#endif
