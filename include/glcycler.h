// glcycler.h - cel cyclers: animate cels by stepping their cel numbers.
//
// A cycler drives any number of cels, each at its own pace (the cel's cycle
// speed, in game ticks between steps), from the game's object set. Eight rules
// derive from it and replace only NextCel, the choice of the next cel number
// and whether a cel has reached its end. When every cel reports its end in the
// same pass the cycler is done: it stops, lets go of its cels and cues the
// object that started it. The direction is the cycler's, shared by its cels.
//
// Usage: construct (empty, or with one cel, which starts at once); Add more
// cels; for a GLCycleToCycler set the target cel; Start() or Start(pCaller);
// wait for the cue; delete the cycler or Add new cels and Start again.
// A cycler may not be deleted while an object waits for its cue.
#ifndef QUINDLE_GLCYCLER_H
#define QUINDLE_GLCYCLER_H

#include "globject.h"
#include "glset.h"

class GLCel;

class QUINDLE_API GLCycler : public GLObject {
public:
    // Empty and idle, forward.
    GLCycler();
    // Drives pCel and starts at once, with no caller.
    GLCycler(GLCel* pCel);
    // A copy holds the same cels with their own due times; it is idle, has no
    // caller and is not in the game's object set. The cels keep pointing to
    // the cycler they had.
    GLCycler(const GLCycler& cycler);
    GLCycler& operator=(const GLCycler& cycler);
    // Stops a cycling cycler and lets go of its cels (they are not deleted).
    virtual ~GLCycler();

    // Adds a cel, due one cycle speed from now; returns the number of cels.
    // With fStart, adding the first cel also starts the cycler.
    int Add(GLCel* pCel, int fStart);
    // Lets go of a cel; FALSE when the cycler does not hold it.
    int Release(GLCel* pCel);
    // Lets go of the cel at index (>= 0); FALSE past the end.
    int Release(int index);
    // Lets go of every cel.
    int Release();

    // TRUE when stepping forward.
    int CycleForward();
    // Forward when non-zero, else backward; returns +1 or -1.
    int CycleForward(int fForward);

    // Puts the cycler in the game's object set; it must not be cycling.
    void Start();
    // The same, cueing pCaller when done.
    void Start(GLObject* pCaller);
    // Takes the cycler out of the game's object set, keeping its cels.
    void Stop();
    // Stops, lets go of every cel and cues the caller, if any.
    void Done();

    // TRUE while the cycler is in the game's object set.
    int IsCycling() const { return mCycling; }
    // TRUE once all its cels reached their end in one pass (until the next Start).
    int IsCompleted() const { return mCompleted; }
    // The cels driven, in the order they were added.
    const GLSetAsArray<GLCel>& GetCels() const { return *mpCels; }

protected:
    virtual void DoIt();
    // The base rule: cel + direction, wrapping both ways; never ends.
    virtual int NextCel(GLCel* pCel);
    // The last cel index of the cel's loop, as the kernel counts it, kept to
    // 16 unsigned bits (a loop of no cels gives 65535).
    static std::uint16_t LastCelOf(GLCel* pCel);

    std::int32_t mCycling;
    std::int32_t mCompleted;
    GLObject* mpCaller;
    std::int32_t mTargetCel; // 0 until set; only the cycle-to rule reads it
    GLSetAsArray<GLCel>* mpCels;
    KernelListAsArray* mpCelTimes;
    std::int32_t mDirection;
    std::int32_t mCelsAtEnd;

private:
    void CopyCels(const GLCycler& cycler);
};

// A random cel of the loop at each step, never the one shown; never ends.
class QUINDLE_API GLRandCycler : virtual public GLCycler {
public:
    GLRandCycler();
    GLRandCycler(const GLRandCycler& cycler);
    virtual ~GLRandCycler();

private:
    virtual int NextCel(GLCel* pCel);
};

// Steps in the cycler's direction and holds at either end, reporting it.
class QUINDLE_API GLEndCycler : virtual public GLCycler {
public:
    GLEndCycler();
    GLEndCycler(const GLEndCycler& cycler);
    virtual ~GLEndCycler();

private:
    virtual int NextCel(GLCel* pCel);
};

// Steps to the last cel and holds there, reporting its end. Going backward it
// holds at cel 0 instead of stepping below it.
class QUINDLE_API GLEndForwardCycler : virtual public GLCycler {
public:
    GLEndForwardCycler();
    GLEndForwardCycler(GLCel* pCel) : GLCycler(pCel) { GL_ASSERT(pCel); }
    GLEndForwardCycler(const GLEndForwardCycler& cycler);
    virtual ~GLEndForwardCycler();

private:
    virtual int NextCel(GLCel* pCel);
};

// Turns the cycler backward and steps down to cel 0, holding there.
class QUINDLE_API GLEndBackCycler : virtual public GLCycler {
public:
    GLEndBackCycler();
    GLEndBackCycler(GLCel* pCel) : GLCycler(pCel) { GL_ASSERT(pCel); }
    GLEndBackCycler(const GLEndBackCycler& cycler);
    virtual ~GLEndBackCycler();

private:
    virtual int NextCel(GLCel* pCel);
};

// Runs 0 to the last cel and back to 0, then reports its end, leaving the
// direction forward. A one-cel loop stays at 0 and reports its end at once.
class QUINDLE_API GLEndForwardBackwardCycler : virtual public GLCycler {
public:
    GLEndForwardBackwardCycler();
    GLEndForwardBackwardCycler(GLCel* pCel) : GLCycler(pCel) { GL_ASSERT(pCel); }
    GLEndForwardBackwardCycler(const GLEndForwardBackwardCycler& cycler);
    virtual ~GLEndForwardBackwardCycler();

private:
    virtual int NextCel(GLCel* pCel);
};

// Back and forth between 0 and the last cel for ever.
class QUINDLE_API GLPingPongCycler : virtual public GLCycler {
public:
    GLPingPongCycler();
    GLPingPongCycler(GLCel* pCel) : GLCycler(pCel) { GL_ASSERT(pCel); }
    GLPingPongCycler(const GLPingPongCycler& cycler);
    virtual ~GLPingPongCycler();

private:
    virtual int NextCel(GLCel* pCel);
};

// Runs to the last cel, then shows cel 0 in the step that reports its end.
// Going backward it holds at cel 0 instead of stepping below it.
class QUINDLE_API GLEndResetCycler : virtual public GLCycler {
public:
    GLEndResetCycler();
    GLEndResetCycler(GLCel* pCel) : GLCycler(pCel) { GL_ASSERT(pCel); }
    GLEndResetCycler(const GLEndResetCycler& cycler);
    virtual ~GLEndResetCycler();

private:
    virtual int NextCel(GLCel* pCel);
};

// Walks one cel per step toward the target cel from either side and holds
// there, reporting its end. Set the target before the first step.
class QUINDLE_API GLCycleToCycler : virtual public GLCycler {
public:
    GLCycleToCycler();
    GLCycleToCycler(GLCel* pCel) : GLCycler(pCel) { GL_ASSERT(pCel); }
    // Drives pCel toward iTargetCel, starting at once.
    GLCycleToCycler(GLCel* pCel, int iTargetCel) : GLCycler(pCel)
    {
        GL_ASSERT(pCel);
        mTargetCel = iTargetCel;
    }
    GLCycleToCycler(const GLCycleToCycler& cycler);
    virtual ~GLCycleToCycler();

    // The cel to walk to; it must lie within the loop when the cel steps.
    void SetTargetCel(int iTargetCel) { mTargetCel = iTargetCel; }
    int GetTargetCel() const { return mTargetCel; }

private:
    virtual int NextCel(GLCel* pCel);
};

#endif
