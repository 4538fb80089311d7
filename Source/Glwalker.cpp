// Glwalker.cpp - an actor walking the routes of a walkable area.
#include "glwalker.h"

#include "glcel.h"
#include "glconst.h"
#include "glcycler.h"
#include "glmover.h"
#include "gltimer.h"
#include "glwalk.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

// The walker's path: a GLPath that tells its walker of each step, each new
// leg and the arrival. It has no caller of its own; the walker cues his.
class GLWalkerPath : public GLPath {
public:
    GLWalkerPath(GLWalker* pWalker) : GLPath(pWalker->GetActor()), mpWalker(pWalker) {}

    // Walks the points from the first.
    void Walk(GLListAsArray<GLPoint>& points)
    {
        mCurIndex = 0;
        Start(points);
        mpWalker->NewLeg(*mpDest);
    }

    // Starts the leg under way again from where the actor stands, so that a
    // new step size takes effect at once.
    void Restep()
    {
        const GLPoint dest(*mpDest);
        Stop();
        GLMover::Start(dest);
    }

    virtual void DoIt()
    {
        GLPath::DoIt();
        if (IsMoving())
            mpWalker->Stepped();
    }

    virtual void NextDest()
    {
        GLPath::NextDest();
        if (IsMoving())
            mpWalker->NewLeg(*mpDest);
        else
            mpWalker->Arrived();
    }

private:
    GLWalker* mpWalker;
};

GLWalker::GLWalker(GLCel* pActor, const GLWalkArea* pArea)
    : mpActor(pActor), mpArea(pArea), mpPath(0), mpSteps(0), mpCaller(0), mRoute(4, 4), mDirections(4),
      mDirection(kToward), mStandLoops(-1), mScaled(FALSE), mFarY(0), mFarScale(kScaleFull), mNearY(1), mNearScale(kScaleFull),
      mBaseStepX(0), mBaseStepY(0)
{
    GL_ASSERT(pActor);
    mpPath = GL_NEW GLWalkerPath(this);
    mpSteps = GL_NEW GLCycler;
}

GLWalker::~GLWalker()
{
    Stop();
    delete mpPath;
    delete mpSteps;
}

void GLWalker::SetDirections(int iDirections)
{
    GL_ASSERT(iDirections == 4 || iDirections == 8);
    mDirections = iDirections;
}

void GLWalker::SetStandLoops(int iFirstLoop)
{
    mStandLoops = iFirstLoop;
    if (!IsWalking())
        Pose();
}

void GLWalker::SetDepthScale(int iFarY, int iFarScale, int iNearY, int iNearScale)
{
    GL_ASSERT(iFarY < iNearY);
    GL_ASSERT(iFarScale > 0 && iNearScale > 0);
    mScaled = TRUE;
    mFarY = iFarY;
    mFarScale = iFarScale;
    mNearY = iNearY;
    mNearScale = iNearScale;
    mBaseStepX = mpActor->GetStepSize().GetX();
    mBaseStepY = mpActor->GetStepSize().GetY();
    Stepped();
}

int GLWalker::IsWalking() const
{
    return mpPath->IsMoving();
}

int GLWalker::DirectionOf(int dx, int dy) const
{
    if (dx == 0 && dy == 0)
        return mDirection;
    const int ax = std::abs(dx), ay = std::abs(dy);
    if (mDirections == 4) {
        if (ax > ay)
            return dx > 0 ? kRight : kLeft;
        return dy > 0 ? kToward : kAway;
    }
    // tan(22.5 degrees) = sqrt(2) - 1: within it of an axis, the axis wins.
    const double kTan = 0.41421356237309503;
    if (ay <= kTan * ax)
        return dx > 0 ? kRight : kLeft;
    if (ax <= kTan * ay)
        return dy > 0 ? kToward : kAway;
    if (dy > 0)
        return dx > 0 ? kTowardRight : kTowardLeft;
    return dx > 0 ? kAwayRight : kAwayLeft;
}

void GLWalker::Face(int iDirection)
{
    GL_ASSERT(iDirection >= 0 && iDirection < mDirections);
    mDirection = iDirection;
    Pose();
}

void GLWalker::FaceToward(const GLPoint& point)
{
    Face(DirectionOf(point.GetX() - mpActor->GetPos().GetX(), point.GetY() - mpActor->GetPos().GetY()));
}

// The loop and cel of his direction: the walk loop while walking (the cycler
// steps its cels), the standing pose otherwise.
void GLWalker::Pose()
{
    if (IsWalking()) {
        if (mpActor->GetLoop() != mDirection)
            mpActor->SetLoop(mDirection, TRUE);
        return;
    }
    const int iLoop = mStandLoops >= 0 ? mStandLoops + mDirection : mDirection;
    if (mpActor->GetLoop() != iLoop)
        mpActor->SetLoop(iLoop, TRUE);
    if (mpActor->GetCel() != 0)
        mpActor->SetCel(0, TRUE);
}

void GLWalker::WalkTo(const GLPoint& dest, GLObject* pCaller)
{
    if (mpPath->IsMoving())
        mpPath->Stop();
    ClearRoute();
    mpCaller = pCaller;
    const GLPoint& from = mpActor->GetPos();
    if (mpArea)
        mpArea->FindPath(from, dest, mRoute);
    else if (dest != from)
        mRoute.AddToEnd(GL_NEW GLPoint(dest));
    if (mRoute.IsEmpty()) {
        Arrived(); // already there
        return;
    }
    if (!mpSteps->IsCycling()) {
        if (mpSteps->GetCels().IsEmpty())
            mpSteps->Add(mpActor, FALSE);
        mpSteps->Start();
    }
    Stepped();
    mpPath->Walk(mRoute);
}

void GLWalker::Stop()
{
    if (mpPath->IsMoving())
        mpPath->Stop();
    if (mpSteps->IsCycling())
        mpSteps->Stop();
    mpSteps->Release();
    mpCaller = 0;
    ClearRoute();
    Pose();
}

void GLWalker::NewLeg(const GLPoint& dest)
{
    FaceToward(dest);
}

void GLWalker::Stepped()
{
    if (!mScaled)
        return;
    const int y = mpActor->GetPos().GetY();
    int iScale = y <= mFarY ? mFarScale : y >= mNearY ? mNearScale
                                                       : mFarScale + (mNearScale - mFarScale) * (y - mFarY) / (mNearY - mFarY);
    ScaleInfo scale = mpActor->GetScale();
    if (scale.scaleX != iScale || scale.scaleY != iScale) {
        scale.scaleX = iScale;
        scale.scaleY = iScale;
        mpActor->SetScale(scale, TRUE);
    }
    // Rounded to the nearest pixel, and never below one.
    const int iStepX = std::max(1, (mBaseStepX * iScale + kScaleFull / 2) / kScaleFull);
    const int iStepY = std::max(1, (mBaseStepY * iScale + kScaleFull / 2) / kScaleFull);
    if (mpActor->GetStepSize().GetX() != iStepX || mpActor->GetStepSize().GetY() != iStepY) {
        mpActor->SetStepSize(GLPoint(iStepX, iStepY));
        if (mpPath->IsMoving())
            mpPath->Restep();
    }
}

void GLWalker::Arrived()
{
    Stepped(); // scaled for where the last step put him
    GLObject* pCaller = mpCaller;
    Stop();
    if (pCaller)
        GL_NEW GLCue(pCaller, this, 0, 0);
}

void GLWalker::ClearRoute()
{
    while (!mRoute.IsEmpty()) {
        GLPoint* p = mRoute.At(mRoute.NumElements() - 1);
        mRoute.RemoveAt(mRoute.NumElements() - 1);
        delete p;
    }
}
