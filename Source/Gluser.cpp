// Gluser.cpp - input dispatch. See include/gluser.h.
#include "gluser.h"

#include "gldll.h"
#include "glgame.h"
#include "glplanes.h"

namespace {

const std::uint16_t kHandsOn = 1u;
const std::uint16_t kHandlesNulls = 2u;
const std::uint16_t kModalHogs = 4u;

// Sets or clears one flag bit and returns the bit's new value.
int SetUserFlag(std::uint16_t& flags, std::uint16_t bit, int fFlag)
{
    if (fFlag)
        flags = static_cast<std::uint16_t>(flags | bit);
    else
        flags = static_cast<std::uint16_t>(flags & ~bit);
    return flags & bit;
}

} // namespace

GLUser::GLUser() : mMousePos(0, 0), mExtra(0), mEvent(), mUserFlags(0), mpHogs(0), mpPrimaDonnas(0), mpOrphans(0)
{
    mpHogs = GL_NEW GLEventHandlerSet(10, 10);
    GL_ASSERT(mpHogs != 0);
    mpPrimaDonnas = GL_NEW GLEventHandlerSet(10, 10);
    GL_ASSERT(mpPrimaDonnas != 0);
    mpOrphans = GL_NEW GLEventHandlerSet(10, 10);
    GL_ASSERT(mpOrphans != 0);
}

// A user's sets are its own: a copy gets new sets holding the same handlers,
// so that the two users never release the same set.
GLUser::GLUser(const GLUser& user)
    : GLObject(user), mMousePos(user.mMousePos), mExtra(user.mExtra), mEvent(user.mEvent), mUserFlags(user.mUserFlags),
      mpHogs(0), mpPrimaDonnas(0), mpOrphans(0)
{
    CopySets(user);
}

GLUser& GLUser::operator=(const GLUser& user)
{
    if (this != &user) {
        GLObject::operator=(user);
        mMousePos = user.mMousePos;
        mExtra = user.mExtra;
        mEvent = user.mEvent;
        mUserFlags = user.mUserFlags;
        DeleteSets();
        CopySets(user);
    }
    return *this;
}

GLUser::~GLUser()
{
    DeleteSets();
}

void GLUser::CopySets(const GLUser& user)
{
    mpHogs = GL_NEW GLEventHandlerSet(*user.mpHogs);
    GL_ASSERT(mpHogs != 0);
    mpPrimaDonnas = GL_NEW GLEventHandlerSet(*user.mpPrimaDonnas);
    GL_ASSERT(mpPrimaDonnas != 0);
    mpOrphans = GL_NEW GLEventHandlerSet(*user.mpOrphans);
    GL_ASSERT(mpOrphans != 0);
}

void GLUser::DeleteSets()
{
    delete mpHogs;
    mpHogs = 0;
    delete mpPrimaDonnas;
    mpPrimaDonnas = 0;
    delete mpOrphans;
    mpOrphans = 0;
}

void GLUser::DoIt()
{
    mEvent.Refresh(kEventMaskAll);
    // The mouse position is kept current every frame, null events included.
    mMousePos = mEvent.where;
    mExtra = mEvent.extra;
    if (!DoesHandleNulls() && mEvent.type == 0)
        return;
    if (!IsHandsOn()) {
        HandleHandsOff(&mEvent);
        return;
    }
    HandleEvent(&mEvent);
}

int GLUser::HandleEvent(GLEvent* pEvent)
{
    if (!mpHogs->IsEmpty()) {
        // While there are hogs nobody else is asked, even if no hog claims it.
        ProcessHogs(pEvent);
    } else if (ProcessPrimas(pEvent) == FALSE) {
        if (theGame->mpPlaneManager->HandleEvent(pEvent) == FALSE)
            ProcessOrphans(pEvent);
    }
    return pEvent->claimed;
}

int GLUser::ProcessHogs(GLEvent* pEvent)
{
    // Whether the hogs are modal is read before they are asked: a hog that
    // switches it while it handles this event changes the next frame only.
    if (HogsAreModal()) {
        // No frame is drawn and no object works until a hog claims an event
        // (by its answer or by the claimed flag). Should the last hog leave
        // the set without claiming one, nobody is left who could: the loop
        // ends there with the event unclaimed rather than spin for ever.
        int fTaken = mpHogs->HandleEvent(pEvent);
        while (!fTaken && !pEvent->claimed && !mpHogs->IsEmpty()) {
            pEvent->Refresh(kEventMaskAll);
            fTaken = mpHogs->HandleEvent(pEvent);
        }
    } else {
        mpHogs->HandleEvent(pEvent);
    }
    return pEvent->claimed;
}

int GLUser::ProcessPrimas(GLEvent* pEvent)
{
    if (mpPrimaDonnas->IsEmpty())
        return FALSE;
    return mpPrimaDonnas->HandleEvent(pEvent);
}

int GLUser::ProcessOrphans(GLEvent* pEvent)
{
    if (mpOrphans->IsEmpty())
        return FALSE;
    return mpOrphans->HandleEvent(pEvent);
}

int GLUser::HandleHandsOff(GLEvent* pEvent)
{
    pEvent->claimed = TRUE;
    return FALSE;
}

int GLUser::IsHandsOn()
{
    return mUserFlags & kHandsOn;
}

int GLUser::DoesHandleNulls()
{
    return mUserFlags & kHandlesNulls;
}

int GLUser::HogsAreModal()
{
    return mUserFlags & kModalHogs;
}

int GLUser::IsHandsOn(int fFlag)
{
    return SetUserFlag(mUserFlags, kHandsOn, fFlag);
}

int GLUser::DoesHandleNulls(int fFlag)
{
    return SetUserFlag(mUserFlags, kHandlesNulls, fFlag);
}

int GLUser::HogsAreModal(int fFlag)
{
    return SetUserFlag(mUserFlags, kModalHogs, fFlag);
}
