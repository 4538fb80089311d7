// Glscript.cpp - scripts. See include/glscript.h.
#include "glscript.h"

#include "gldll.h"
#include "glgame.h"
#include "glset.h"

// Every constructor builds the timer part as a timer for nobody with no wait
// (which puts the script at the front of the game's object set), then makes
// the script its own receiver and enters the first state. The entry is a
// direct call of GLScript::Cue, not a virtual one: a derived class is not yet
// built at this point.
GLScript::GLScript(GLScriptCode pCode) : GLTimer(0, UnsetTimer, 0, 0, 0), mState(-1), mpCode(pCode)
{
    mpWhoToCue = this;
    mpCuer = 0;
    GLScript::Cue();
}

GLScript::GLScript(GLScriptCode pCode, int iFirstState)
    : GLTimer(0, UnsetTimer, 0, 0, 0), mState(iFirstState - 1), mpCode(pCode)
{
    mpWhoToCue = this;
    mpCuer = 0;
    GLScript::Cue();
}

GLScript::GLScript(GLScriptCode pCode, int iFirstState, int iValue)
    : GLTimer(0, UnsetTimer, 0, iValue, 0), mState(iFirstState - 1), mpCode(pCode)
{
    mpWhoToCue = this;
    mpCuer = 0;
    GLScript::Cue();
}

GLScript::GLScript(GLScriptCode pCode, int iFirstState, int iValue, void* pData)
    : GLTimer(0, UnsetTimer, 0, iValue, pData), mState(iFirstState - 1), mpCode(pCode)
{
    mpWhoToCue = this;
    mpCuer = 0;
    GLScript::Cue();
}

GLScript::GLScript(const GLScript& script) : GLTimer(script), mState(script.mState), mpCode(script.mpCode) {}

GLScript& GLScript::operator=(const GLScript& script)
{
    GLTimer::operator=(script);
    mState = script.mState;
    mpCode = script.mpCode;
    return *this;
}

GLScript::~GLScript()
{
    // A copy was never put in the set; removing it would be the set's failed
    // check, so only a script that is there leaves it. The cuer is told either
    // way: destroying a script is what it waits for.
    if (theGame->mpObjects->IsInList(this))
        theGame->mpObjects->Remove(this);
    if (mpCuer != 0)
        mpCuer->Cue(this);
}

void GLScript::DoIt()
{
    // A script holds UnsetTimer whenever no wait runs, so the timer's check,
    // which refuses that kind, is only asked while a wait runs.
    if (mType != UnsetTimer && Check())
        Cue();
}

void GLScript::Cue(GLCue*)
{
    Cue();
}

// Nothing of the script is touched once the code function is called, so the
// code function may delete its own script (except during construction).
void GLScript::Cue()
{
    ChangeState(mState + 1);
}

void GLScript::ChangeState(int iState)
{
    mState = iState;
    mpCode(this, mState);
}

void GLScript::SetCycles(std::uint32_t cycles)
{
    // The check's text is reported as written, spacing included.
    // clang-format off
    GL_ASSERT(mType==UnsetTimer && cycles);
    // clang-format on
    mType = CyclesTimer;
    mCycles = cycles;
}

void GLScript::SetSeconds(std::uint32_t secs)
{
    // The check's text is reported as written, spacing included.
    // clang-format off
    GL_ASSERT(mType==UnsetTimer && secs);
    // clang-format on
    mType = SecondsTimer;
    mSecondsEnd = kernel->GetTime(1) + secs;
}

void GLScript::SetTicks(std::uint32_t ticks)
{
    // The check's text is reported as written, spacing included.
    // clang-format off
    GL_ASSERT(mType==UnsetTimer && ticks);
    // clang-format on
    mType = TicksTimer;
    mTicksEnd = theGame->mGameTicks + ticks;
}
