// glrobot.h - GLRobot, a prerecorded animation the kernel plays on a plane.
//
// The library loads, starts, pauses, resumes and stops the robot and watches
// the signal the kernel reports each frame: a cue point passed, or the end. The
// robot can hide a screen item (its client) while it plays in its place, and
// cues its caller at each cue point and at the end.
//
// The kernel plays one robot at a time. Starting a robot while another one is
// still playing ends the other first, as Terminate(TRUE) would: its client is
// shown again and its caller is cued, so nothing waits for an end that would
// never come.
//
// Usage: construct; SetClient and SetCaller as needed; Start; react to cues;
// Pause/Resume as needed; Terminate or let it end; delete.
#ifndef QUINDLE_GLROBOT_H
#define QUINDLE_GLROBOT_H

#include "globject.h"
#include "glpoint.h"

class AbsGLPlane;
class GLScreenItem;

class QUINDLE_API GLRobot : public GLObject {
public:
    // Settings only; nothing happens in the kernel before Start.
    GLRobot(unsigned long resource, AbsGLPlane* pPlane, int iPriority, const GLPoint& pos);
    GLRobot(const GLRobot& robot);
    GLRobot& operator=(const GLRobot& robot);
    // A robot that was started is terminated once more, without a cue.
    virtual ~GLRobot();

    // Loads the robot into the kernel with the current settings.
    void Init();
    // Starts playing. fWait: return only when the robot is done (only the
    // screen is updated meanwhile). fHideClient: hide the client until the end.
    // The third flag is kept in the state bits and changes nothing: the robot
    // is always taken off the screen at its end.
    void Start(int fWait, int fHideClient, int fThird);
    // Reads the kernel's signal: cue point, end or nothing.
    virtual void DoIt();
    // Stops before the end; cues the caller only when fCue is non-zero.
    void Terminate(int fCue);
    int DoneYet();
    int IsPlaying();
    // Halt and continue; ignored while the robot is not playing.
    void Pause();
    void Resume();

    unsigned long GetResource() const { return mResource; }
    // Takes effect at the next Start.
    void SetResource(unsigned long resource);
    GLPoint& GetPos() { return mPos; }
    // Takes effect at the next Start.
    void SetPos(GLPoint& pos);
    AbsGLPlane* GetPlane() { return mpPlane; }
    // Ignored once the robot has been started.
    void SetPlane(AbsGLPlane* pPlane);
    int GetPri() const { return mPriority; }
    // Changes the kernel's priority at once.
    void SetPri(int iNewPriority);
    GLScreenItem* GetClient() { return mpClient; }
    void SetClient(GLScreenItem* pNewClient);
    GLObject* GetCaller() { return mpCaller; }
    void SetCaller(GLObject* pWhoToCue);

    // The signal read in the last frame; 0xFFFFFFFF once the robot has ended.
    std::uint32_t GetSignal() const { return mSignal; }
    std::uint32_t GetFlags() const { return mRobotFlags; }

private:
    void Done();
    void End(int fCue);

    std::uint32_t mSignal;
    std::uint32_t mResource;
    GLPoint mPos;
    AbsGLPlane* mpPlane;
    std::int32_t mPriority;
    std::uint32_t mRobotFlags;
    GLScreenItem* mpClient;
    GLObject* mpCaller;
    std::int32_t mNeedsInit;
};

#endif
