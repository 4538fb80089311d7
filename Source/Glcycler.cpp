// Glcycler.cpp - cel cyclers. See include/glcycler.h.
#include "glcycler.h"

#include "glcel.h"
#include "gldll.h"
#include "glframe.h"
#include "glgame.h"
#include "gltimer.h"

// The rules check "lastCel >= 0" on an unsigned 16-bit value: the check always
// holds, and is kept so that every rule states its range the same way.
#pragma GCC diagnostic ignored "-Wtype-limits"

// Due times are kept one block each, beside the cel at the same index.
static std::uint32_t* DueTime(KernelListAsArray* pTimes, int index)
{
    return static_cast<std::uint32_t*>((*pTimes)[index]);
}

GLCycler::GLCycler()
    : mCycling(FALSE), mCompleted(FALSE), mpCaller(0), mTargetCel(0), mpCels(0), mpCelTimes(0), mDirection(1),
      mCelsAtEnd(0)
{
    mpCels = GL_NEW GLSetAsArray<GLCel>(1, 1);
    mpCelTimes = GL_NEW KernelListAsArray(1, 1);
}

GLCycler::GLCycler(GLCel* pCel)
    : mCycling(FALSE), mCompleted(FALSE), mpCaller(0), mTargetCel(0), mpCels(0), mpCelTimes(0), mDirection(1),
      mCelsAtEnd(0)
{
    mpCels = GL_NEW GLSetAsArray<GLCel>(1, 1);
    mpCelTimes = GL_NEW KernelListAsArray(1, 1);
    Add(pCel, TRUE);
}

// Copies are deep: sharing the two lists would free them twice.
GLCycler::GLCycler(const GLCycler& cycler)
    : GLObject(cycler), mCycling(FALSE), mCompleted(cycler.mCompleted), mpCaller(0), mTargetCel(cycler.mTargetCel),
      mpCels(0), mpCelTimes(0), mDirection(cycler.mDirection), mCelsAtEnd(cycler.mCelsAtEnd)
{
    mpCels = GL_NEW GLSetAsArray<GLCel>(1, 1);
    mpCelTimes = GL_NEW KernelListAsArray(1, 1);
    CopyCels(cycler);
}

GLCycler& GLCycler::operator=(const GLCycler& cycler)
{
    if (this != &cycler) {
        GL_ASSERT(!mCycling);
        GLObject::operator=(cycler);
        Release();
        mCompleted = cycler.mCompleted;
        mTargetCel = cycler.mTargetCel;
        mDirection = cycler.mDirection;
        mCelsAtEnd = cycler.mCelsAtEnd;
        CopyCels(cycler);
    }
    return *this;
}

void GLCycler::CopyCels(const GLCycler& cycler)
{
    for (int i = 0; i < cycler.mpCels->NumElements(); i++) {
        mpCels->AddToEnd(cycler.mpCels->At(i));
        std::uint32_t* pDue = static_cast<std::uint32_t*>(GL_ALLOC(sizeof(std::uint32_t)));
        GL_ASSERT(pDue);
        *pDue = *DueTime(cycler.mpCelTimes, i);
        mpCelTimes->AddToEnd(pDue);
    }
}

GLCycler::~GLCycler()
{
    GL_ASSERT(!mpCaller);
    if (mCycling)
        Stop();
    Release();
    delete mpCelTimes;
    delete mpCels;
}

int GLCycler::Add(GLCel* pCel, int fStart)
{
    mpCels->AddToEnd(pCel);
    std::uint32_t* pDue = static_cast<std::uint32_t*>(GL_ALLOC(sizeof(std::uint32_t)));
    GL_ASSERT(pDue);
    *pDue = theGame->mGameTicks + static_cast<std::uint32_t>(pCel->GetCycleSpeed());
    mpCelTimes->AddToEnd(pDue);
    pCel->SetCycler(this);
    if (mpCels->NumElements() == 1 && fStart)
        Start();
    return mpCels->NumElements();
}

int GLCycler::Release(GLCel* pCel)
{
    int index;
    if (!mpCels->IndexOf(pCel, &index))
        return FALSE;
    pCel->SetCycler(0);
    void* pDue = DueTime(mpCelTimes, index);
    mpCelTimes->RemoveAt(index);
    mpCels->Remove(pCel);
    GL_FREE(pDue);
    return TRUE;
}

int GLCycler::Release(int index)
{
    GL_ASSERT(index>=0);
    if (index < mpCels->NumElements())
        return Release(mpCels->At(index));
    return FALSE;
}

int GLCycler::Release()
{
    for (int i = 0; i < mpCels->NumElements(); i++) {
        mpCels->At(i)->SetCycler(0);
        GL_FREE(DueTime(mpCelTimes, i));
    }
    mpCels->Flush();
    mpCelTimes->Flush();
    return TRUE;
}

int GLCycler::CycleForward()
{
    return mDirection == 1 ? TRUE : FALSE;
}

int GLCycler::CycleForward(int fForward)
{
    mDirection = fForward ? 1 : -1;
    return mDirection;
}

void GLCycler::Start()
{
    GL_ASSERT(!mCycling);
    mCycling = TRUE;
    mCompleted = FALSE;
    theGame->mpObjects->AddToEnd(this);
}

void GLCycler::Start(GLObject* pCaller)
{
    mpCaller = pCaller;
    Start();
}

void GLCycler::Stop()
{
    mCycling = FALSE;
    theGame->mpObjects->Remove(this);
}

void GLCycler::Done()
{
    Stop();
    Release();
    if (mpCaller) {
        GL_NEW GLCue(mpCaller, 0, 0, 0);
        mpCaller = 0;
    }
}

GL_FRAME_PATH void GLCycler::DoIt()
{
    GL_ASSERT(mCycling&&!mCompleted);
    mCelsAtEnd = 0;
    const int n = mpCels->NumElements();
    if (n != 0) {
        const std::uint32_t now = theGame->mGameTicks;
        for (int i = 0; i < n; i++) {
            std::uint32_t* pDue = DueTime(mpCelTimes, i);
            if (*pDue > now)
                continue;
            GLCel* pCel = mpCels->At(i);
            *pDue = theGame->mGameTicks + static_cast<std::uint32_t>(pCel->GetCycleSpeed());
            pCel->SetCel(NextCel(pCel), TRUE);
        }
    }
    if (mCelsAtEnd == n) {
        mCompleted = TRUE;
        Done();
    }
}

std::uint16_t GLCycler::LastCelOf(GLCel* pCel)
{
    return static_cast<std::uint16_t>(kernel->NumCels(static_cast<std::uint32_t>(pCel->GetView()), pCel->GetLoop()) - 1);
}

int GLCycler::NextCel(GLCel* pCel)
{
    const int cel = pCel->GetCel();
    const std::uint16_t lastCel = LastCelOf(pCel);
    GL_ASSERT(lastCel>=0);
    int next = cel + mDirection;
    if (next < 0)
        next = lastCel;
    else if (next > lastCel)
        next = 0;
    return next;
}

// ----- the rules -----

GLRandCycler::GLRandCycler() {}
GLRandCycler::GLRandCycler(const GLRandCycler& cycler) : GLCycler(cycler) {}
GLRandCycler::~GLRandCycler() {}

int GLRandCycler::NextCel(GLCel* pCel)
{
    const int cel = pCel->GetCel();
    const std::uint16_t lastCel = LastCelOf(pCel);
    GL_ASSERT(lastCel>=0);
    if (lastCel == 0)
        return cel;
    int next;
    do {
        next = static_cast<int>(kernel->Random(0, lastCel));
    } while (next == cel);
    return next;
}

GLEndCycler::GLEndCycler() {}
GLEndCycler::GLEndCycler(const GLEndCycler& cycler) : GLCycler(cycler) {}
GLEndCycler::~GLEndCycler() {}

int GLEndCycler::NextCel(GLCel* pCel)
{
    const int cel = pCel->GetCel();
    const std::uint16_t lastCel = LastCelOf(pCel);
    GL_ASSERT(lastCel>=0);
    int next = cel + mDirection;
    if (next < 0) {
        next = 0;
        mCelsAtEnd++;
    } else if (next > lastCel) {
        next = lastCel;
        mCelsAtEnd++;
    }
    return next;
}

GLEndForwardCycler::GLEndForwardCycler() {}
GLEndForwardCycler::GLEndForwardCycler(const GLEndForwardCycler& cycler) : GLCycler(cycler) {}
GLEndForwardCycler::~GLEndForwardCycler() {}

int GLEndForwardCycler::NextCel(GLCel* pCel)
{
    const int cel = pCel->GetCel();
    const std::uint16_t lastCel = LastCelOf(pCel);
    GL_ASSERT(lastCel >= 0);
    GL_ASSERT(cel >= 0);
    GL_ASSERT(cel <= lastCel);
    if (cel < lastCel) {
        const int next = cel + mDirection;
        return next < 0 ? 0 : next;
    }
    mCelsAtEnd++;
    return cel;
}

GLEndBackCycler::GLEndBackCycler() {}
GLEndBackCycler::GLEndBackCycler(const GLEndBackCycler& cycler) : GLCycler(cycler) {}
GLEndBackCycler::~GLEndBackCycler() {}

int GLEndBackCycler::NextCel(GLCel* pCel)
{
    const int cel = pCel->GetCel();
    const std::uint16_t lastCel = LastCelOf(pCel);
    GL_ASSERT(lastCel >= 0);
    GL_ASSERT(cel >= 0);
    GL_ASSERT(cel <= lastCel);
    CycleForward(FALSE);
    if (cel != 0)
        return cel - 1;
    mCelsAtEnd++;
    return 0;
}

GLEndForwardBackwardCycler::GLEndForwardBackwardCycler() {}
GLEndForwardBackwardCycler::GLEndForwardBackwardCycler(const GLEndForwardBackwardCycler& cycler)
    : GLCycler(cycler)
{
}
GLEndForwardBackwardCycler::~GLEndForwardBackwardCycler() {}

int GLEndForwardBackwardCycler::NextCel(GLCel* pCel)
{
    const int cel = pCel->GetCel();
    const std::uint16_t lastCel = LastCelOf(pCel);
    GL_ASSERT(lastCel>=0);
    GL_ASSERT(cel >= 0);
    GL_ASSERT(cel <= lastCel);
    // A one-cel loop has nowhere to go: its round trip is over at once.
    if (lastCel == 0) {
        CycleForward(TRUE);
        mCelsAtEnd++;
        return 0;
    }
    if (cel == 0 && mDirection == -1) {
        CycleForward(TRUE);
        mCelsAtEnd++;
        return 0;
    }
    if (cel == lastCel)
        CycleForward(FALSE);
    return cel + mDirection;
}

GLPingPongCycler::GLPingPongCycler() {}
GLPingPongCycler::GLPingPongCycler(const GLPingPongCycler& cycler) : GLCycler(cycler) {}
GLPingPongCycler::~GLPingPongCycler() {}

int GLPingPongCycler::NextCel(GLCel* pCel)
{
    const int cel = pCel->GetCel();
    const std::uint16_t lastCel = LastCelOf(pCel);
    GL_ASSERT(lastCel>=0);
    GL_ASSERT(cel >= 0);
    GL_ASSERT(cel <= lastCel);
    if (lastCel == 0)
        return 0;
    if (cel == 0)
        CycleForward(TRUE);
    else if (cel == lastCel)
        CycleForward(FALSE);
    return cel + mDirection;
}

GLEndResetCycler::GLEndResetCycler() {}
GLEndResetCycler::GLEndResetCycler(const GLEndResetCycler& cycler) : GLCycler(cycler) {}
GLEndResetCycler::~GLEndResetCycler() {}

int GLEndResetCycler::NextCel(GLCel* pCel)
{
    const int cel = pCel->GetCel();
    const std::uint16_t lastCel = LastCelOf(pCel);
    GL_ASSERT(lastCel>=0);
    GL_ASSERT(cel >= 0);
    GL_ASSERT(cel <= lastCel);
    if (cel == lastCel) {
        mCelsAtEnd++;
        return 0;
    }
    const int next = cel + mDirection;
    return next < 0 ? 0 : next;
}

GLCycleToCycler::GLCycleToCycler() {}
GLCycleToCycler::GLCycleToCycler(const GLCycleToCycler& cycler) : GLCycler(cycler) {}
GLCycleToCycler::~GLCycleToCycler() {}

int GLCycleToCycler::NextCel(GLCel* pCel)
{
    const int cel = pCel->GetCel();
    const std::uint16_t lastCel = LastCelOf(pCel);
    GL_ASSERT(lastCel >= 0);
    GL_ASSERT(cel >= 0);
    GL_ASSERT(cel <= lastCel);
    GL_ASSERT(mTargetCel >= 0);
    GL_ASSERT(mTargetCel <= lastCel);
    if (cel != mTargetCel) {
        CycleForward(mTargetCel > cel ? TRUE : FALSE);
        return cel + mDirection;
    }
    mCelsAtEnd++;
    return cel;
}
