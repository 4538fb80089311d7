// Glcel.cpp - the animated actor: a screen item that is also a feature. See
// include/glcel.h.
//
// The two GLObject parts are kept apart by always naming the part: the cast
// gets the feature part (GLFeature*) for input and the screen item part
// (GLScreenItem*, inside GLScreenItem's own code) for drawing and DoIt.
#include "glcel.h"

#include "glcast.h"
#include "glframe.h"
#include "glplane.h"

GLCel::GLCel(AbsGLPlane* pPlane, std::uint32_t view, short loop, short cel, GLPoint pos, int iPriority,
             const ScaleInfo& scale)
    : GLScreenItem(pPlane, static_cast<int>(view), loop, cel, pos, iPriority, scale), GLFeature(pPlane), mCycleSpeed(6),
      mMoveSpeed(6), mpCycler(0), mpMover(0), mStepSize(0, 0)
{
    CommonMemberInit();
}

GLCel::GLCel(AbsGLPlane* pPlane, const KernelMemBitmap* pKernelMemBitmap, GLPoint pos, int iPriority,
             const ScaleInfo& scale)
    : GLScreenItem(pPlane, pKernelMemBitmap, pos, iPriority, scale), GLFeature(pPlane), mCycleSpeed(6), mMoveSpeed(6),
      mpCycler(0), mpMover(0), mStepSize(0, 0)
{
    CommonMemberInit();
}

// The members are destroyed in reverse order: the step size, then the feature
// part (leaving the event set), then the screen item part (giving back the
// kernel record and leaving the cast).
GLCel::~GLCel() {}

void GLCel::CommonMemberInit()
{
    mpCycler = 0;
    mpMover = 0;
    mMoveSpeed = 6;
    mCycleSpeed = 6;
    mStepSize.SetPoint(3, 3);
    SetBounds();
    GLFeature::IsScreenItem(TRUE);
    GLFeature::NeedsDoIt(TRUE);
    GLFeature::NeedsEvent(TRUE);
    GLFeature::Init();
}

void GLCel::SetBounds()
{
    ZOR_Rect seen;
    if (kernel->GetNowSeenRect(GetPlaneId(), GetId(), &seen))
        GLFeature::SetRect(seen.left, seen.top, seen.right, seen.bottom);
}

std::uint16_t GLCel::LastLoop() const
{
    return static_cast<std::uint16_t>(kernel->NumLoops(GetView()) - 1);
}

std::uint16_t GLCel::LastCel() const
{
    return static_cast<std::uint16_t>(kernel->NumCels(static_cast<std::uint32_t>(GetView()), GetLoop()) - 1);
}

AbsGLPlane* GLCel::GetPlane()
{
    return GLScreenItem::GetPlane();
}

GL_FRAME_PATH void GLCel::Update()
{
    GLScreenItem::Update();
    SetBounds();
}

void GLCel::Show()
{
    GLCast* pCast = GetPlane()->GetCast();
    GL_ASSERT(pCast);
    GLFeature* pFeature = this;
    if (!pCast->IsInEventSet(pFeature))
        pCast->AddToEvents(pFeature);
    GLScreenItem::Show();
}

void GLCel::Hide()
{
    GLCast* pCast = GetPlane()->GetCast();
    GL_ASSERT(pCast);
    GLFeature* pFeature = this;
    if (pCast->IsInEventSet(pFeature))
        pCast->RemoveFromEvents(pFeature);
    GLScreenItem::Hide();
}

void GLCel::SetPlane(AbsGLPlane* pPlane, int fDoUpdate)
{
    GLScreenItem::SetPlane(pPlane, fDoUpdate);
    GLFeature::SetPlane(pPlane);
}
