// Glrobot.cpp - robots. See include/glrobot.h.
#include "glrobot.h"

#include "glcast.h"
#include "glplane.h"
#include "glsi.h"
#include "gltimer.h"

namespace {

const std::uint32_t kStarted = 0x02;
const std::uint32_t kEnded = 0x04;
const std::uint32_t kClientHidden = 0x10;
const std::uint32_t kThirdFlag = 0x20;
const std::uint32_t kPaused = 0x40;

// The robot the kernel plays now, if it has not ended: the kernel's robot
// operations name no robot, so only this one may read signals.
GLRobot* gpPlayingRobot = 0;

} // namespace

GLRobot::GLRobot(unsigned long resource, AbsGLPlane* pPlane, int iPriority, const GLPoint& pos)
    : mSignal(0), mResource(static_cast<std::uint32_t>(resource)), mPos(pos), mpPlane(pPlane), mPriority(iPriority),
      mRobotFlags(0), mpClient(0), mpCaller(0), mNeedsInit(TRUE)
{
    GL_ASSERT(pPlane != NULL);
    GL_ASSERT(iPriority >= -1);
    NeedsDoIt(TRUE);
}

GLRobot::GLRobot(const GLRobot& robot)
    : GLObject(robot), mSignal(robot.mSignal), mResource(robot.mResource), mPos(robot.mPos), mpPlane(robot.mpPlane),
      mPriority(robot.mPriority), mRobotFlags(robot.mRobotFlags), mpClient(robot.mpClient), mpCaller(robot.mpCaller),
      mNeedsInit(robot.mNeedsInit)
{
}

GLRobot& GLRobot::operator=(const GLRobot& robot)
{
    GLObject::operator=(robot);
    mSignal = robot.mSignal;
    mResource = robot.mResource;
    mPos = robot.mPos;
    mpPlane = robot.mpPlane;
    mPriority = robot.mPriority;
    mRobotFlags = robot.mRobotFlags;
    mpClient = robot.mpClient;
    mpCaller = robot.mpCaller;
    mNeedsInit = robot.mNeedsInit;
    return *this;
}

GLRobot::~GLRobot()
{
    if (mRobotFlags & kStarted)
        Terminate(FALSE);
    if (gpPlayingRobot == this)
        gpPlayingRobot = 0;
}

void GLRobot::Init()
{
    kernel->InitRobot(mResource, mpPlane->GetId(), mPriority, mPos.GetX(), mPos.GetY(), 128);
    mNeedsInit = FALSE;
}

void GLRobot::Start(int fWait, int fHideClient, int fThird)
{
    if (gpPlayingRobot && gpPlayingRobot != this)
        gpPlayingRobot->Terminate(TRUE);
    if ((mRobotFlags & kEnded) || mNeedsInit == TRUE)
        Init();
    kernel->PrepareRobot(0, 50000, 50000, 50000);
    mRobotFlags |= kStarted;
    mSignal = 0;
    if (fThird)
        mRobotFlags |= kThirdFlag;
    if (fHideClient && mpClient) {
        mRobotFlags |= kClientHidden;
        mpClient->Hide();
    }
    // Its end took it out of the cast; a robot started while it still plays
    // is refused here, as it is in the cast already.
    mpPlane->GetCast()->Add(this);
    gpPlayingRobot = this;
    kernel->PlayRobot();
    if (fWait) {
        while (!kernel->IsRobotDone())
            kernel->UpdateScreen(1);
        Done();
    }
}

void GLRobot::DoIt()
{
    if (!(mRobotFlags & kStarted) || (mRobotFlags & kPaused))
        return;
    mSignal = kernel->GetRobotSignal();
    if (mSignal == kRobotEnded) {
        Done();
        return;
    }
    if (mpCaller && mSignal != 0)
        GL_NEW GLCue(mpCaller, 0, 0, 0);
}

void GLRobot::Done()
{
    End(TRUE);
}

void GLRobot::Terminate(int fCue)
{
    End(fCue);
}

// The end, reached or forced: off the screen, the client back, the caller
// told when asked, out of the cast.
void GLRobot::End(int fCue)
{
    mRobotFlags |= kEnded;
    // The kernel's robot may be another one by now; that one is not ours to stop.
    if (gpPlayingRobot == this || gpPlayingRobot == 0)
        kernel->TerminateRobot();
    if ((mRobotFlags & kClientHidden) && mpClient)
        mpClient->Show();
    if (mpCaller && fCue) {
        mSignal = kRobotEnded;
        GL_NEW GLCue(mpCaller, 0, 0, 0);
    }
    mpPlane->GetCast()->Remove(this);
    if (gpPlayingRobot == this)
        gpPlayingRobot = 0;
}

int GLRobot::DoneYet()
{
    return kernel->IsRobotDone();
}

int GLRobot::IsPlaying()
{
    return kernel->IsRobotPlaying();
}

void GLRobot::Pause()
{
    if (IsPlaying()) {
        kernel->PauseRobot();
        mRobotFlags |= kPaused;
    }
}

void GLRobot::Resume()
{
    if (IsPlaying() && (mRobotFlags & kPaused)) {
        kernel->PlayRobot();
        mRobotFlags &= ~kPaused;
    }
}

void GLRobot::SetResource(unsigned long resource)
{
    mResource = static_cast<std::uint32_t>(resource);
    mNeedsInit = TRUE;
}

void GLRobot::SetPos(GLPoint& pos)
{
    mPos = pos;
    mNeedsInit = TRUE;
}

void GLRobot::SetPlane(AbsGLPlane* pPlane)
{
    if (mRobotFlags & kStarted)
        return;
    mpPlane = pPlane;
    mNeedsInit = TRUE;
}

void GLRobot::SetPri(int iNewPriority)
{
    GL_ASSERT(iNewPriority >= -1);
    mPriority = iNewPriority;
    kernel->SetRobotPriority(iNewPriority);
    mNeedsInit = TRUE;
}

void GLRobot::SetClient(GLScreenItem* pNewClient)
{
    GL_ASSERT(pNewClient != 0);
    mpClient = pNewClient;
}

void GLRobot::SetCaller(GLObject* pWhoToCue)
{
    GL_ASSERT(pWhoToCue != 0);
    mpCaller = pWhoToCue;
}
