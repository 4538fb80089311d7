// Gltimer.cpp - cues and timers. See include/gltimer.h.
#include "gltimer.h"

#include "gldll.h"
#include "glgame.h"
#include "glset.h"

GLCue::GLCue(GLObject* whoToCue, GLObject* cuer, int value, void* data)
    : mpWhoToCue(whoToCue), mpCuer(cuer), mValue(value), mpData(data)
{
    // A null receiver is not refused here: the fields are public and a class
    // built on the cue (a script) fills its receiver in after construction.
    // Firing with no receiver is refused instead.
    Init();
}

GLCue::GLCue(const GLCue& cue)
    : GLObject(cue), mpWhoToCue(cue.mpWhoToCue), mpCuer(cue.mpCuer), mValue(cue.mValue), mpData(cue.mpData)
{
}

GLCue& GLCue::operator=(const GLCue& cue)
{
    GLObject::operator=(cue);
    mpWhoToCue = cue.mpWhoToCue;
    mpCuer = cue.mpCuer;
    mValue = cue.mValue;
    mpData = cue.mpData;
    return *this;
}

GLCue::~GLCue()
{
    // A pending cue belongs to the game's object set, but game code may still
    // delete one before it fires (a narrator's cue for a scene that is being
    // torn down). Leaving the set here keeps the game from reaching a deleted
    // object. A cue that fired left the set before it was deleted, and a copy
    // never was in it, so the test keeps both from being removed a second time.
    if (theGame != 0 && theGame->mpObjects != 0 && theGame->mpObjects->IsInList(this))
        theGame->mpObjects->Remove(this);
}

void GLCue::DoIt()
{
    if (Check())
        Cue();
}

void GLCue::Init()
{
    theGame->mpObjects->AddToFront(this);
}

void GLCue::Cue()
{
    // Every cuer in the library tests its caller before it creates a cue, so
    // a cue that reaches this point with no receiver is a fault in game code.
    GL_ASSERT(mpWhoToCue);
    mpWhoToCue->Cue(this);
    theGame->mpObjects->Remove(this);
    delete this;
}

int GLCue::Check()
{
    return TRUE;
}

// The counters that do not belong to the kind start at 0, so that a copy never
// reads an indeterminate value.
GLTimer::GLTimer(GLObject* whoToCue, TimerType type, std::uint32_t count)
    : GLCue(whoToCue, 0, 0, 0), mType(UnsetTimer), mCycles(0), mSecondsEnd(0), mTicksEnd(0)
{
    Init(type, count);
}

GLTimer::GLTimer(GLObject* whoToCue, TimerType type, std::uint32_t count, int value)
    : GLCue(whoToCue, 0, value, 0), mType(UnsetTimer), mCycles(0), mSecondsEnd(0), mTicksEnd(0)
{
    Init(type, count);
}

GLTimer::GLTimer(GLObject* whoToCue, TimerType type, std::uint32_t count, int value, void* data)
    : GLCue(whoToCue, 0, value, data), mType(UnsetTimer), mCycles(0), mSecondsEnd(0), mTicksEnd(0)
{
    Init(type, count);
}

GLTimer::GLTimer(const GLTimer& timer)
    : GLCue(timer), mType(timer.mType), mCycles(timer.mCycles), mSecondsEnd(timer.mSecondsEnd),
      mTicksEnd(timer.mTicksEnd)
{
}

GLTimer& GLTimer::operator=(const GLTimer& timer)
{
    GLCue::operator=(timer);
    mType = timer.mType;
    mCycles = timer.mCycles;
    mSecondsEnd = timer.mSecondsEnd;
    mTicksEnd = timer.mTicksEnd;
    return *this;
}

GLTimer::~GLTimer() {}

void GLTimer::Init(TimerType type, std::uint32_t count)
{
    mType = type;
    switch (type) {
    case CyclesTimer:
        mCycles = count;
        break;
    case TicksTimer:
        mTicksEnd = theGame->mGameTicks + count;
        break;
    case SecondsTimer:
        mSecondsEnd = kernel->GetTime(1) + count;
        break;
    default:
        break;
    }
}

int GLTimer::Check()
{
    // The check's text is reported as written, spacing included.
    // clang-format off
    GL_ASSERT(mType!=UnsetTimer);
    // clang-format on
    int fDue = FALSE;
    switch (mType) {
    case CyclesTimer:
        // A count of 0 would otherwise wrap round and wait 2^32 frames; it is
        // taken as due at once, like a ticks or seconds wait of 0.
        if (mCycles == 0 || --mCycles == 0)
            fDue = TRUE;
        break;
    case TicksTimer:
        fDue = theGame->mGameTicks >= mTicksEnd;
        break;
    case SecondsTimer:
        fDue = kernel->GetTime(1) >= mSecondsEnd;
        break;
    default:
        break;
    }
    if (fDue) {
        mSecondsEnd = 0;
        mTicksEnd = 0;
        mCycles = 0;
        mType = UnsetTimer;
    }
    return fDue;
}
