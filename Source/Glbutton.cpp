// Glbutton.cpp - buttons. See include/glbutton.h.
#include "glbutton.h"

#include "glevent.h"
#include "glgame.h"
#include "gldll.h"
#include "gluser.h"

namespace {


} // namespace

GLButton::GLButton(AbsGLPlane* pPlane, unsigned long view, short loop, short cel, GLPoint pos, int iPriority)
    : GLCel(pPlane, view, loop, cel, pos, iPriority, kFullSizeScale),
      mDisabledFace(static_cast<std::uint32_t>(view), loop, 2, 0),
      mEnabledFace(static_cast<std::uint32_t>(view), loop, 0, 0),
      mHighlitFace(static_cast<std::uint32_t>(view), loop, 3, 0),
      mDepressedFace(static_cast<std::uint32_t>(view), loop, 1, 0)
{
    GLButton::CommonMemberInit();
}

GLButton::GLButton(AbsGLPlane* pPlane, const KernelMemBitmap* pKernelMemBitmap, GLPoint pos, int iPriority)
    : GLCel(pPlane, pKernelMemBitmap, pos, iPriority, kFullSizeScale)
{
    GLButton::CommonMemberInit();
}

// The hog set holds the feature part; a deleted button must not stay there.
GLButton::~GLButton()
{
    if (mHogging && theGame && theGame->mpUser &&
        theGame->mpUser->mpHogs->IsInList(static_cast<GLFeature*>(this)))
        theGame->mpUser->mpHogs->Remove(static_cast<GLFeature*>(this));
}

void GLButton::CommonMemberInit()
{
    mHogging = FALSE;
    mEnabled = FALSE;
    mDepressed = FALSE;
    mHighlit = FALSE;
    mpMouseUpFnct = 0;
}

int GLButton::HandleEvent(GLEvent* pEvent)
{
    GL_ASSERT(pEvent);
    if (pEvent->type != kEventPointerDown && pEvent->type != kEventPointerUp && pEvent->type != kEventPointerMove)
        return pEvent->claimed;
    if (mpSelectFunction)
        mpSelectFunction(pEvent, static_cast<GLFeature*>(this));
    else
        GeneralSelect(pEvent);
    return pEvent->claimed;
}

void GLButton::GeneralSelect(GLEvent* pEvent)
{
    GL_ASSERT(pEvent);
    // The hit test is virtual: a button class may give itself its own shape.
    if (mEnabled && OnMe(pEvent->where)) {
        if (pEvent->type == kEventPointerDown) {
            Depress(TRUE);
        } else if (pEvent->type == kEventPointerUp && mDepressed) {
            UnDepress(TRUE);
            if (mpMouseUpFnct)
                mpMouseUpFnct(pEvent, static_cast<GLFeature*>(this));
        }
        pEvent->claimed = TRUE;
    } else if (pEvent->type == kEventPointerUp && mDepressed) {
        UnDepress(TRUE);
        pEvent->claimed = TRUE;
    }
}

void GLButton::LoadFace(GLCelRes& face, int fDoUpdate)
{
    if (HasVLC())
        Load(face, fDoUpdate);
    else if (fDoUpdate)
        ForceUpdate();
}

void GLButton::Enable(int fDoUpdate)
{
    mEnabled = TRUE;
    LoadFace(mEnabledFace, fDoUpdate);
}

void GLButton::Disable(int fDoUpdate)
{
    mEnabled = FALSE;
    LoadFace(mDisabledFace, fDoUpdate);
}

void GLButton::Depress(int fDoUpdate)
{
    mDepressed = TRUE;
    LoadFace(mDepressedFace, fDoUpdate);
}

void GLButton::UnDepress(int fDoUpdate)
{
    mDepressed = FALSE;
    LoadFace(mEnabledFace, fDoUpdate);
}

void GLButton::Highlight(int fDoUpdate)
{
    mHighlit = TRUE;
    LoadFace(mHighlitFace, fDoUpdate);
}

void GLButton::UnHighlight(int fDoUpdate)
{
    mHighlit = FALSE;
    LoadFace(mEnabledFace, fDoUpdate);
}

void GLButton::SetEnabledFace(unsigned long view, short loop, short cel)
{
    mEnabledFace.Init(static_cast<std::uint32_t>(view), loop, cel, 0);
}

void GLButton::SetDepressedFace(unsigned long view, short loop, short cel)
{
    mDepressedFace.Init(static_cast<std::uint32_t>(view), loop, cel, 0);
}

void GLButton::SetDisabledFace(unsigned long view, short loop, short cel)
{
    mDisabledFace.Init(static_cast<std::uint32_t>(view), loop, cel, 0);
}

void GLButton::SetHighlitFace(unsigned long view, short loop, short cel)
{
    mHighlitFace.Init(static_cast<std::uint32_t>(view), loop, cel, 0);
}

void GLButton::SetHogging(int fHogging)
{
    GLEventHandlerSet* pHogs = theGame->mpUser->mpHogs;
    GLFeature* pFeature = this;
    if (fHogging && !mHogging)
        pHogs->AddToEnd(pFeature);
    else if (!fHogging && mHogging && pHogs->IsInList(pFeature))
        pHogs->Remove(pFeature);
    mHogging = fHogging;
}
