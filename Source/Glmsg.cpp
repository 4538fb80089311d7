// Glmsg.cpp - messages and the messager. See include/glmsg.h.
#include "glmsg.h"

#include "gldll.h"
#include "gltalker.h"
#include "gltimer.h"
#include "kernel.h"

#include <cstring>

namespace {

// A conversation said from sequence 1, or a range given without an end, runs
// at most to this sequence: in practice until the kernel has no next message.
const int kLastSequence = 32767;

void SetKeys(int* pKeys, int iKey1, int iKey2, int iKey3, int iKey4, int iSequence)
{
    pKeys[0] = iKey1;
    pKeys[1] = iKey2;
    pKeys[2] = iKey3;
    pKeys[3] = iKey4;
    pKeys[4] = iSequence;
}

} // namespace

// ----- GLMessage -----

GLMessage::GLMessage() : mTalker(0), mpText(0)
{
    SetKeys(mKeys, -1, -1, -1, -1, -1);
    SetKeys(mLastKeys, -1, -1, -1, -1, -1);
}

GLMessage::GLMessage(const GLMessage& message) : GLObject(message), mTalker(0), mpText(0)
{
    *this = message;
}

// The text is duplicated rather than shared: a shared block would be freed by
// both messages.
GLMessage& GLMessage::operator=(const GLMessage& message)
{
    if (this == &message)
        return *this;
    GLObject::operator=(message);
    std::memcpy(mKeys, message.mKeys, sizeof mKeys);
    std::memcpy(mLastKeys, message.mLastKeys, sizeof mLastKeys);
    mTalker = message.mTalker;
    if (mpText)
        GL_FREE(mpText);
    mpText = 0;
    if (message.mpText) {
        const std::size_t size = std::strlen(message.mpText) + 1;
        mpText = static_cast<char*>(GL_ALLOC(size));
        std::memcpy(mpText, message.mpText, size);
    }
    return *this;
}

GLMessage::~GLMessage()
{
    if (mpText)
        GL_FREE(mpText);
}

// Replaces the text block with one of the size the kernel asked for.
void GLMessage::TakeText(int iSize)
{
    if (mpText)
        GL_FREE(mpText);
    mpText = static_cast<char*>(GL_ALLOC(iSize));
}

// A kernel that fills the whole block leaves no terminator; the narrator
// measures the text, so the block always ends in one. A size below 1 has no
// last byte to write (the allocation has refused a size of 0 already).
void GLMessage::EndText(int iSize)
{
    if (mpText && iSize > 0)
        mpText[iSize - 1] = '\0';
}

int GLMessage::Fill(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence)
{
    SetKeys(mKeys, iKey1, iKey2, iKey3, iKey4, iSequence);
    int size = 0;
    if (kernel->GetMessageSize(iKey1, iKey2, iKey3, iKey4, iSequence, &size) == 0)
        return 0;
    TakeText(size);
    mTalker = kernel->GetMessage(iKey1, iKey2, iKey3, iKey4, iSequence, mpText, size);
    EndText(size);
    GetKeys();
    return mTalker;
}

int GLMessage::Fill()
{
    int size = 0;
    if (kernel->GetNextMessageSize(&size) == 0)
        return 0;
    TakeText(size);
    mTalker = kernel->GetNextMessage(mpText, size);
    EndText(size);
    GetKeys();
    return mTalker;
}

void GLMessage::GetKeys()
{
    kernel->GetLastMessageKeys(mLastKeys);
    std::memcpy(mKeys, mLastKeys, sizeof mKeys);
}

// ----- GLMessager -----

GLMessager::GLMessager()
    : mpCaller(0), mSequence(0), mLastSequence(0), mpTalkers(GL_NEW GLSetAsArray<GLNarrator>(10, 10)),
      mpMessage(GL_NEW GLMessage()), mAborted(FALSE), mpOwnTalkers(0)
{
}

GLMessager::GLMessager(const GLMessager& messager)
    : GLObject(messager), mpCaller(messager.mpCaller), mSequence(messager.mSequence),
      mLastSequence(messager.mLastSequence), mpTalkers(GL_NEW GLSetAsArray<GLNarrator>(*messager.mpTalkers)),
      mpMessage(GL_NEW GLMessage(*messager.mpMessage)), mAborted(messager.mAborted), mpOwnTalkers(0)
{
}

GLMessager& GLMessager::operator=(const GLMessager& messager)
{
    if (this == &messager)
        return *this;
    GLObject::operator=(messager);
    mpCaller = messager.mpCaller;
    mSequence = messager.mSequence;
    mLastSequence = messager.mLastSequence;
    *mpTalkers = *messager.mpTalkers;
    *mpMessage = *messager.mpMessage;
    mAborted = messager.mAborted;
    return *this;
}

GLMessager::~GLMessager()
{
    DeleteOwnTalkers();
    delete mpTalkers;
    delete mpMessage;
}

void GLMessager::DeleteOwnTalkers()
{
    if (!mpOwnTalkers)
        return;
    // A narrator's destructor takes a talking narrator out of the game's sets.
    while (!mpOwnTalkers->IsEmpty()) {
        GLNarrator* pNarrator = mpOwnTalkers->Last();
        mpOwnTalkers->Remove(pNarrator);
        delete pNarrator;
    }
    delete mpOwnTalkers;
    mpOwnTalkers = 0;
}

int GLMessager::Say(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, GLObject* pCaller)
{
    mpCaller = pCaller;
    if (iSequence != 0) {
        mSequence = iSequence;
        mLastSequence = iSequence;
    } else {
        mSequence = 1;
        mLastSequence = kLastSequence;
    }
    // The check's text is reported as written, spacing included.
    // clang-format off
    GL_ASSERT(mSequence<=mLastSequence);
    // clang-format on
    // The result reports this lookup. The held message's talker number would
    // still be that of an earlier conversation after a lookup that found
    // nothing, since a failed fill leaves the held message as it was.
    const int iTalker = mpMessage->Fill(iKey1, iKey2, iKey3, iKey4, mSequence);
    if (iTalker != 0)
        DoIt();
    else
        Dispose();
    return iTalker != 0;
}

int GLMessager::SayRange(int iKey1, int iKey2, int iKey3, int iKey4, int iFirst, int iLast, GLObject* pCaller)
{
    mpCaller = pCaller;
    mSequence = iFirst;
    mLastSequence = iLast != 0 ? iLast : kLastSequence;
    // The check's text is reported as written, spacing included.
    // clang-format off
    GL_ASSERT(mSequence<=mLastSequence);
    // clang-format on
    const int iTalker = mpMessage->Fill(iKey1, iKey2, iKey3, iKey4, iFirst);
    if (iTalker != 0)
        DoIt();
    else
        Dispose();
    return iTalker != 0;
}

void GLMessager::DoIt()
{
    GLNarrator* pNarrator = FindTalker(mpMessage->mTalker);
    if (pNarrator)
        pNarrator->Say(mpMessage, this);
    else
        Dispose();
}

GLNarrator* GLMessager::FindTalker(int)
{
    // Every call makes a new narrator. Those made here belong to the messager
    // and are deleted with it, since nothing else would ever delete them.
    if (!mpOwnTalkers)
        mpOwnTalkers = GL_NEW GLSetAsArray<GLNarrator>(2, 2);
    GLNarrator* pNarrator = GL_NEW GLNarrator();
    mpOwnTalkers->AddToEnd(pNarrator);
    return pNarrator;
}

void GLMessager::Cue(GLCue* pCue)
{
    Cue(pCue->mValue);
}

void GLMessager::Cue(int iValue)
{
    if (iValue != 0)
        mAborted = TRUE;
    if (mAborted == FALSE) {
        ++mSequence;
        if (mSequence <= mLastSequence && mpMessage->Fill() != 0) {
            DoIt();
            return;
        }
    }
    Dispose();
}

void GLMessager::Dispose()
{
    if (mpCaller)
        GL_NEW GLCue(mpCaller, this, mAborted, 0);
    mAborted = FALSE;
}
