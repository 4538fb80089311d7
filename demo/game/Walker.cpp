// Walker.cpp - walking around the well.
#include "Walker.h"

#include "glcycler.h"
#include "glgame.h"
#include "glmover.h"
#include "gltimer.h"

#include <cstdlib>

// A path that turns its walker toward each new leg. GLPath calls NextDest at
// the end of every leg; after it has started the next leg, mpDest is where
// the walker is heading.
class WalkPath : public GLPath {
public:
    WalkPath(Walker* pWalker) : GLPath(pWalker->Cel()), mpWalker(pWalker) {}
    virtual void NextDest()
    {
        GLPath::NextDest();
        if (IsMoving())
            mpWalker->FaceToward(*mpDest);
    }

private:
    Walker* mpWalker;
};

namespace {
const ScaleInfo kFullSize = {128, 128, 100, 0};
const int kMargin = 16; // how far from the obstacle's edge the walker keeps
} // namespace

Walker::Walker(AbsGLPlane* pPlane, int view, const GLPoint& pos)
    : mpCel(0), mpSteps(0), mpPath(0), mRoute(4, 4), mpCaller(0), mFloor(0, 0, 639, 479), mObstacle(0, 0, 0, 0),
      mHasObstacle(FALSE)
{
    // Priority -9999: the kernel orders the walker by his feet (y), so he
    // passes in front of the well's front and behind its back.
    mpCel = new GLCel(pPlane, view, kToward, 0, pos, -9999, kFullSize);
    mpCel->SetMoveSpeed(2);            // a step every two ticks...
    mpCel->SetStepSize(GLPoint(4, 2)); // ...of up to 4 pixels across, 2 in depth
    mpCel->SetCycleSpeed(7);           // a new cel of the walk cycle every 7 ticks
    mpCel->Show();
    mpSteps = new GLCycler;
}

Walker::~Walker()
{
    Stop();
    delete mpSteps;
    delete mpCel;
}

void Walker::Face(Facing facing)
{
    if (mpCel->GetLoop() != facing)
        mpCel->SetLoop(facing, TRUE);
}

void Walker::FaceToward(const GLPoint& point)
{
    const int dx = point.GetX() - mpCel->GetPos().GetX();
    const int dy = point.GetY() - mpCel->GetPos().GetY();
    // Walking in depth looks slower than across, so depth wins early.
    if (std::abs(dx) > 2 * std::abs(dy))
        Face(dx > 0 ? kRight : kLeft);
    else if (dy != 0)
        Face(dy > 0 ? kToward : kAway);
}

void Walker::WalkTo(const GLPoint& dest, GLObject* pCaller)
{
    Stop();
    GLPoint to(dest);
    to.SetX(mFloor.left > to.GetX() ? mFloor.left : mFloor.right < to.GetX() ? mFloor.right : to.GetX());
    to.SetY(mFloor.top > to.GetY() ? mFloor.top : mFloor.bottom < to.GetY() ? mFloor.bottom : to.GetY());
    PlanRoute(mpCel->GetPos(), to);

    mpCaller = pCaller;
    FaceToward(*mRoute.At(0));
    mpSteps->Add(mpCel, TRUE); // the walk cycle runs while he walks
    mpPath = new WalkPath(this);
    mpPath->Start(mRoute, this);
}

// The route is the straight line, unless it crosses the obstacle: then the
// walker goes round its nearer side, by the two corners on that side.
void Walker::PlanRoute(const GLPoint& from, const GLPoint& to)
{
    ClearRoute();
    if (mHasObstacle && Crosses(from, to)) {
        const int left = mObstacle.left - kMargin, right = mObstacle.right + kMargin;
        const int top = mObstacle.top - kMargin, bottom = mObstacle.bottom + kMargin;
        // Round the front (below) unless both ends are nearer the back.
        const int side = (from.GetY() + to.GetY()) / 2 < (top + bottom) / 2 && top >= mFloor.top ? top : bottom;
        const int firstX = from.GetX() < to.GetX() ? left : right;
        const int lastX = from.GetX() < to.GetX() ? right : left;
        mRoute.AddToEnd(new GLPoint(firstX, side));
        mRoute.AddToEnd(new GLPoint(lastX, side));
    }
    mRoute.AddToEnd(new GLPoint(to));
}

int Walker::Crosses(const GLPoint& from, const GLPoint& to) const
{
    const int steps = 64;
    for (int i = 0; i <= steps; i++) {
        const int x = from.GetX() + (to.GetX() - from.GetX()) * i / steps;
        const int y = from.GetY() + (to.GetY() - from.GetY()) * i / steps;
        if (x >= mObstacle.left - 4 && x <= mObstacle.right + 4 && y >= mObstacle.top - 4 && y <= mObstacle.bottom + 4)
            return TRUE;
    }
    return FALSE;
}

void Walker::ClearRoute()
{
    while (mRoute.NumElements() > 0) {
        GLPoint* p = mRoute.At(0);
        mRoute.Remove(p);
        delete p;
    }
}

void Walker::Stop()
{
    if (mpPath) {
        // The path leaves the game's object set itself when deleted mid-walk.
        delete mpPath;
        mpPath = 0;
    }
    if (mpSteps->IsCycling())
        mpSteps->Stop();
    mpSteps->Release();
    if (mpCel->GetCel() != 0)
        mpCel->SetCel(0, TRUE); // standing
    mpCaller = 0;
    ClearRoute();
}

void Walker::Cue(GLCue* pCue)
{
    if (pCue->mpCuer != mpPath)
        return; // the cue of a path we have since replaced
    GLObject* caller = mpCaller;
    Stop();
    if (caller)
        new GLCue(caller, this, 0, 0);
}
