// Glmover.cpp - movers and paths. See include/glmover.h.
#include "glmover.h"

#include "glcel.h"
#include "gldll.h"
#include "glframe.h"
#include "glgame.h"
#include "gltimer.h"

GLMover::GLMover(GLCel* pActor)
    : mpActor(pActor), mpCaller(0), mpBresen(0), mpPos(0), mpDest(0), mNextMoveTime(0)
{
    Init();
}

GLMover::GLMover(GLCel* pActor, const GLPoint& dest)
    : mpActor(pActor), mpCaller(0), mpBresen(0), mpPos(0), mpDest(0), mNextMoveTime(0)
{
    Init();
    Start(dest);
}

GLMover::GLMover(GLCel* pActor, const GLPoint& dest, GLObject* pCaller)
    : mpActor(pActor), mpCaller(pCaller), mpBresen(0), mpPos(0), mpDest(0), mNextMoveTime(0)
{
    Init();
    Start(dest);
}

GLMover::GLMover(const GLMover& mover)
    : GLObject(mover), mpActor(mover.mpActor), mpCaller(mover.mpCaller), mpBresen(mover.mpBresen),
      mpPos(mover.mpPos), mpDest(mover.mpDest), mNextMoveTime(mover.mNextMoveTime)
{
}

GLMover& GLMover::operator=(const GLMover& mover)
{
    GLObject::operator=(mover);
    mpActor = mover.mpActor;
    mpCaller = mover.mpCaller;
    mpBresen = mover.mpBresen;
    mpPos = mover.mpPos;
    mpDest = mover.mpDest;
    mNextMoveTime = mover.mNextMoveTime;
    return *this;
}

void GLMover::Init()
{
    mpPos = GL_NEW GLPoint(mpActor->GetPos());
    mpDest = GL_NEW GLPoint(0, 0);
}

// A mover that is still moving is in the game's object set; leaving it there
// would leave a dangling member to be walked on the next frame.
GLMover::~GLMover()
{
    if (mpBresen && theGame && theGame->mpObjects->IsInList(this))
        theGame->mpObjects->Remove(this);
    delete mpPos;
    delete mpDest;
    if (mpBresen)
        delete mpBresen;
    if (mpActor)
        mpActor->mpMover = 0;
}

void GLMover::Start(const GLPoint& dest)
{
    GL_ASSERT(mpActor && !mpBresen);
    *mpPos = mpActor->GetPos();
    *mpDest = dest;
    mpBresen = GL_NEW GLBresen(mpPos, mpDest, mpActor->mStepSize);
    mNextMoveTime = theGame->mGameTicks + static_cast<std::uint32_t>(mpActor->GetMoveSpeed());
    theGame->mpObjects->AddToFront(this);
}

void GLMover::Start(const GLPoint& dest, GLObject* pCaller)
{
    mpCaller = pCaller;
    Start(dest);
}

void GLMover::Stop()
{
    GL_ASSERT(mpBresen);
    theGame->mpObjects->Remove(this);
    delete mpBresen;
    mpBresen = 0;
}

GL_FRAME_PATH void GLMover::DoIt()
{
    if (!mpBresen)
        return;
    if (theGame->mGameTicks < mNextMoveTime)
        return;
    if (DoStep())
        NextDest();
}

int GLMover::DoStep()
{
    GL_ASSERT(mpBresen&&mpActor);
    const int fArrived = mpBresen->DoMove();
    mNextMoveTime = theGame->mGameTicks + static_cast<std::uint32_t>(mpActor->GetMoveSpeed());
    mpActor->SetPos(*mpPos, TRUE);
    return fArrived;
}

void GLMover::NextDest()
{
    Done();
}

void GLMover::Done()
{
    Stop();
    if (mpCaller) {
        GL_NEW GLCue(mpCaller, this, 0, 0);
        mpCaller = 0;
    }
}

// ----- paths -----

GLPath::GLPath(GLCel* pActor) : GLMover(pActor), mpPoints(0), mCurIndex(0) {}

GLPath::GLPath(GLCel* pActor, GLListAsArray<GLPoint>& points) : GLMover(pActor), mpPoints(0), mCurIndex(0)
{
    Start(points);
}

GLPath::GLPath(GLCel* pActor, GLListAsArray<GLPoint>& points, GLObject* pCaller)
    : GLMover(pActor), mpPoints(0), mCurIndex(0)
{
    mpCaller = pCaller;
    Start(points);
}

GLPath::GLPath(const GLPath& path) : GLMover(path), mpPoints(path.mpPoints), mCurIndex(path.mCurIndex) {}

GLPath& GLPath::operator=(const GLPath& path)
{
    GLMover::operator=(path);
    mpPoints = path.mpPoints;
    mCurIndex = path.mCurIndex;
    return *this;
}

GLPath::~GLPath() {}

// A path that has walked all its points starts again from the first: the
// index past the end would otherwise index outside the list.
void GLPath::Start(GLListAsArray<GLPoint>& points)
{
    mpPoints = &points;
    if (mCurIndex >= mpPoints->NumElements())
        mCurIndex = 0;
    GLMover::Start(*mpPoints->At(mCurIndex));
}

void GLPath::Start(GLListAsArray<GLPoint>& points, GLObject* pCaller)
{
    mpCaller = pCaller;
    Start(points);
}

void GLPath::NextDest()
{
    mCurIndex++;
    if (mCurIndex < mpPoints->NumElements()) {
        Stop();
        GLMover::Start(*mpPoints->At(mCurIndex));
    } else {
        Done();
    }
}
