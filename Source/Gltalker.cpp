// Gltalker.cpp - narrators. See include/gltalker.h.
#include "gltalker.h"

#include "gldll.h"
#include "glevent.h"
#include "glgame.h"
#include "glmsg.h"
#include "gltimer.h"
#include "gluser.h"
#include "kernel.h"

#include <cstring>

namespace {

// What a narrator starts when it says a message. Both are always on: every
// message is shown as text and played as speech (when it has any).
const int GameDoesText = TRUE;
const int GameDoesAudio = TRUE;

// Ticks of talk time per byte of text, for a message without speech.
const std::uint32_t kTicksPerByte = 5;

} // namespace

GLNarrator::GLNarrator() : mpMessage(0), mpCaller(0), mpTextView(0), mTalkEndTime(0), mIAmTalking(FALSE) {}

GLNarrator::GLNarrator(GLTextView* pTextView)
    : mpMessage(0), mpCaller(0), mpTextView(pTextView), mTalkEndTime(0), mIAmTalking(FALSE)
{
}

// A copy is in none of the game's sets: were it marked talking, its Done would
// fail the sets' checks and nobody would ever end it.
GLNarrator::GLNarrator(const GLNarrator& narrator)
    : GLObject(narrator), mpMessage(narrator.mpMessage), mpCaller(narrator.mpCaller), mpTextView(narrator.mpTextView),
      mTalkEndTime(narrator.mTalkEndTime), mIAmTalking(FALSE)
{
}

// Assigning over a talking narrator keeps it talking, and in the sets, so
// that the game still reaches it and it still ends.
GLNarrator& GLNarrator::operator=(const GLNarrator& narrator)
{
    GLObject::operator=(narrator);
    mpMessage = narrator.mpMessage;
    mpCaller = narrator.mpCaller;
    mpTextView = narrator.mpTextView;
    mTalkEndTime = narrator.mTalkEndTime;
    return *this;
}

GLNarrator::~GLNarrator()
{
    // Deleting a talking narrator is a fault of the game's, but leaving the
    // sets here keeps the game loop and the user object from reaching a
    // deleted object. Its message may be gone already, so its speech is left.
    if (mIAmTalking && theGame != 0) {
        if (theGame->mpObjects != 0 && theGame->mpObjects->IsInList(this))
            theGame->mpObjects->Remove(this);
        if (theGame->mpUser != 0 && theGame->mpUser->mpHogs->IsInList(this))
            theGame->mpUser->mpHogs->Remove(this);
    }
}

void GLNarrator::Say(GLMessage* pMessage, GLObject* pCaller)
{
    GL_ASSERT(!mIAmTalking && (GameDoesText || GameDoesAudio));
    mpMessage = pMessage;
    mpCaller = pCaller;
    if (GameDoesText)
        StartText();
    if (GameDoesAudio)
        StartAudio();
    mTalkEndTime += theGame->mGameTicks;
    theGame->mpObjects->AddToFront(this);
    theGame->mpUser->mpHogs->AddToFront(this);
    mIAmTalking = TRUE;
}

void GLNarrator::StartText()
{
    const std::size_t length = mpMessage->mpText ? std::strlen(mpMessage->mpText) : 0;
    mTalkEndTime = kTicksPerByte * static_cast<std::uint32_t>(length);
    Display();
}

void GLNarrator::StartAudio()
{
    const int* pKeys = mpMessage->mKeys;
    const int iLength = kernel->PlayMessageAudio(pKeys[0], pKeys[1], pKeys[2], pKeys[3], pKeys[4], 0, 127, 0);
    if (iLength != 0)
        mTalkEndTime = static_cast<std::uint32_t>(iLength) + 1;
}

void GLNarrator::DoIt()
{
    GL_ASSERT(mIAmTalking);
    // The speech is asked about only once the talk time is over.
    if (theGame->mGameTicks > mTalkEndTime) {
        const int* pKeys = mpMessage->mKeys;
        int iUnused = 0;
        if (kernel->IsMessageAudioPlaying(pKeys[0], pKeys[1], pKeys[2], pKeys[3], pKeys[4], &iUnused) == 0)
            Done(0);
    }
}

int GLNarrator::HandleEvent(GLEvent* pEvent)
{
    GL_ASSERT(mIAmTalking);
    const std::uint16_t type = pEvent->type;
    const std::uint16_t message = pEvent->message;
    const std::uint16_t modifiers = pEvent->modifiers;
    int fEnd = FALSE;
    int iValue = 0;
    if (type & kEventPointerUp) {
        fEnd = TRUE;
        if (modifiers & kModifierFirst)
            iValue = 1;
    } else if (type & kEventKeyDown) {
        if (message == kKeyEnter) {
            fEnd = TRUE;
        } else if (message == kKeyEscape) {
            fEnd = TRUE;
            iValue = 1;
        }
    }
    // Nothing gets past a talking narrator, whatever the event.
    pEvent->claimed = TRUE;
    if (fEnd)
        Done(iValue);
    return TRUE;
}

void GLNarrator::Done(int iValue)
{
    GL_ASSERT(mIAmTalking);
    theGame->mpObjects->Remove(this);
    theGame->mpUser->mpHogs->Remove(this);
    const int* pKeys = mpMessage->mKeys;
    kernel->StopMessageAudio(pKeys[0], pKeys[1], pKeys[2], pKeys[3], pKeys[4]);
    mIAmTalking = FALSE;
    if (mpCaller)
        GL_NEW GLCue(mpCaller, this, iValue, 0);
}

void GLNarrator::Display() {}
