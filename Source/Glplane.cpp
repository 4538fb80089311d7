// Glplane.cpp - planes and their four kinds. See include/glplane.h.
#include "glplane.h"

#include "glcast.h"

// ----- AbsGLPlane: set-up and destruction -----

AbsGLPlane::AbsGLPlane() : m_pPlane(0), m_fChangedValue(FALSE), m_pCast(0) {}

AbsGLPlane::AbsGLPlane(PlaneType planeType, const ZOR_Rect& ZOR_RectPlane, int iPriority, int iWindowIndex,
                       const ZOR_Point& vanishPt, int iColor, int iPicture, int fMirror)
    : m_pPlane(0), m_fChangedValue(FALSE), m_pCast(0)
{
    // The constructor tests the colour before the priority; Init tests them
    // the other way round. Both orders are kept, as a call with both wrong
    // reports whichever comes first.
    GL_ASSERT((iPicture > 0 && planeType == picture) || (iPicture == 0 && planeType != picture));
    GL_ASSERT(!ZOR_RectPlane.IsEmpty());
    GL_ASSERT(fMirror == True || fMirror == False);
    GL_ASSERT((iPicture == 0 && fMirror == False) || iPicture > 0);
    // The check's text is reported as written, spacing included.
    // clang-format off
    GL_ASSERT(iColor >=0 && iColor <= 255);
    // clang-format on
    GL_ASSERT(iPriority == -9999 || iPriority >= -1);
    GL_ASSERT(0 <= iWindowIndex && iWindowIndex < MaxGameWindowCount);

    Init(planeType, ZOR_RectPlane, iPriority, iWindowIndex, vanishPt, iColor, iPicture, fMirror);

    GL_ASSERT(m_fChangedValue == False);
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
}

void AbsGLPlane::Init(PlaneType planeType, const ZOR_Rect& ZOR_RectPlane, int iPriority, int iWindowIndex,
                      const ZOR_Point& vanishPt, int iColor, int iPicture, int fMirror)
{
    GL_ASSERT(m_pPlane == 0);
    GL_ASSERT((iPicture > 0 && planeType == picture) || (iPicture == 0 && planeType != picture));
    GL_ASSERT(!ZOR_RectPlane.IsEmpty());
    GL_ASSERT(fMirror == True || fMirror == False);
    GL_ASSERT((iPicture == 0 && fMirror == False) || iPicture > 0);
    GL_ASSERT(iPriority == -9999 || iPriority >= -1);
    // The check's text is reported as written, spacing included.
    // clang-format off
    GL_ASSERT(iColor >=0 && iColor <= 255);
    // clang-format on
    GL_ASSERT(0 <= iWindowIndex && iWindowIndex < MaxGameWindowCount);

    int iType = kPlaneColored;
    switch (planeType) {
    case colored:
        iType = kPlaneColored;
        break;
    case picture:
        iType = kPlanePicture;
        break;
    case transparent:
        iType = kPlaneTransparent;
        break;
    case opaque:
        iType = kPlaneOpaque;
        break;
    }

    m_fChangedValue = FALSE;

    // kPriorityOnTop asks for a place above every plane the kernel has now.
    if (iPriority == kPriorityOnTop)
        iPriority = kernel->TopPlanePriority() + 1;

    // The kernel takes its arguments by non-const pointer; it gets copies.
    ZOR_Rect rect(ZOR_RectPlane.left, ZOR_RectPlane.top, ZOR_RectPlane.right, ZOR_RectPlane.bottom);
    ZOR_Point vanish(vanishPt.x, vanishPt.y);
    m_pPlane = kernel->NewPlane(iType, iColor, &rect, iWindowIndex, iPriority, &vanish, iPicture, fMirror);
    GL_ASSERT(m_pPlane != 0);

    GL_ASSERT(NULL == m_pCast);
    m_pCast = GL_NEW GLCast;
    GL_ASSERT(NULL != m_pCast);

    kernel->AddPlane(m_pPlane);
    kernel->PlaneCreated(m_pPlane);
}

// Objects still on the plane are not touched: they must be destroyed or moved
// first, and the plane must have left the plane manager.
AbsGLPlane::~AbsGLPlane()
{
    GL_ASSERT(m_fChangedValue != True);
    if (m_pPlane) {
        kernel->DeletePlane(m_pPlane->Id());
        m_pPlane = 0;
    }
    if (m_pCast) {
        delete m_pCast;
        m_pCast = 0;
    }
}

// ----- queries -----

std::int32_t AbsGLPlane::GetId() const
{
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    GL_ASSERT(m_pPlane->Id() >= 20000);
    return m_pPlane->Id();
}

int AbsGLPlane::GetPri() const
{
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    return m_pPlane->priority;
}

const ZOR_Rect& AbsGLPlane::GetRect() const
{
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    return m_pPlane->rect;
}

int AbsGLPlane::GetBackColor() const
{
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    GL_ASSERT(m_pPlane->type != -2);
    return m_pPlane->color;
}

ZOR_Point AbsGLPlane::GetVanishPt()
{
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    return ZOR_Point(m_pPlane->vanishingPoint.x, m_pPlane->vanishingPoint.y);
}

int AbsGLPlane::TopScreenItemPriority()
{
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    return kernel->TopScreenItemPriority(m_pPlane->Id());
}

int AbsGLPlane::ShowStylePercentComplete()
{
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    return kernel->ShowStylePercentComplete(m_pPlane->Id());
}

int AbsGLPlane::OnMe(const GLPoint& point) const
{
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    const ZOR_Rect& rect = GetRect();
    const int x = point.GetX();
    const int y = point.GetY();
    return (rect.left <= x && x <= rect.right && rect.top <= y && y <= rect.bottom) ? 1 : 0;
}

// ----- setters -----

void AbsGLPlane::Changed(int fDoUpdate)
{
    m_fChangedValue = TRUE;
    if (fDoUpdate)
        Update();
}

void AbsGLPlane::SetPri(int iPriorityNew, int fDoUpdate)
{
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    GL_ASSERT(iPriorityNew >= -1);
    m_pPlane->priority = iPriorityNew;
    Changed(fDoUpdate);
}

void AbsGLPlane::SetBackColor(int iColor, int fDoUpdate)
{
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    // The check's text is reported as written, spacing included.
    // clang-format off
    GL_ASSERT(iColor >=0 && iColor <= 255);
    // clang-format on
    GL_ASSERT(m_pPlane->type != -2);
    m_pPlane->color = iColor;
    Changed(fDoUpdate);
}

void AbsGLPlane::SetVanishPt(const ZOR_Point& vanishPt, int fDoUpdate)
{
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    GL_ASSERT(fDoUpdate == True || fDoUpdate == False);
    m_pPlane->vanishingPoint = ZOR_Point(vanishPt.x, vanishPt.y);
    Changed(fDoUpdate);
}

// The kernel is told of a new rectangle as soon as it is written, whether or
// not the rest of the change is pushed now.
void AbsGLPlane::SetRect(const ZOR_Rect& ZOR_RectPlane, int fDoUpdate)
{
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    GL_ASSERT(!ZOR_RectPlane.IsEmpty());
    m_pPlane->rect = ZOR_Rect(ZOR_RectPlane.left, ZOR_RectPlane.top, ZOR_RectPlane.right, ZOR_RectPlane.bottom);
    kernel->PlaneRectChanged(m_pPlane);
    Changed(fDoUpdate);
}

void AbsGLPlane::SetRect(int iLeft, int iTop, int iRight, int iBottom, int fDoUpdate)
{
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    // The check's text is reported as written, spacing included.
    // clang-format off
    GL_ASSERT(!(ZOR_Rect(iLeft,iTop,iRight,iBottom)).IsEmpty());
    // clang-format on
    GL_ASSERT(fDoUpdate == True || fDoUpdate == False);
    m_pPlane->rect = ZOR_Rect(iLeft, iTop, iRight, iBottom);
    kernel->PlaneRectChanged(m_pPlane);
    Changed(fDoUpdate);
}

void AbsGLPlane::Update()
{
    GL_ASSERT(m_fChangedValue == True);
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    kernel->UpdatePlane(m_pPlane);
    m_fChangedValue = FALSE;
}

// ----- direct kernel operations -----

void AbsGLPlane::MoveItems(int iDeltaX, int iDeltaY, int fMovePics)
{
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(iDeltaX >= -1200 && iDeltaX <= 1200);
    GL_ASSERT(iDeltaY >= -800 && iDeltaY <= 800);
    GL_ASSERT(fMovePics == True || fMovePics == False);
    kernel->MovePlaneItems(m_pPlane->Id(), iDeltaX, iDeltaY, fMovePics);
}

void AbsGLPlane::SetShowStyle(ShowStyle style, int iSpeed, int iColor, int, int fAnimateFlag, int fUseReferenceFrame,
                              int iToFrom, int* intArray, int iArraySize, int iDivisionCount)
{
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    GL_ASSERT(iSpeed > 0);
    GL_ASSERT(iColor == -1 || (iColor >= 0 && iColor <= 255));
    GL_ASSERT(fAnimateFlag == True || fAnimateFlag == False);
    GL_ASSERT(fUseReferenceFrame == True || fUseReferenceFrame == False);
    GL_ASSERT(0 <= iToFrom && 2 >= iToFrom);
    // The check's text is reported as written, spacing included.
    // clang-format off
    GL_ASSERT((intArray == 0 && iArraySize == 0) || (intArray !=0 && iArraySize > 0));
    // clang-format on
    GL_ASSERT(iDivisionCount == -1 || iDivisionCount > 0);

    // The enumeration has a fixed underlying type, so any int can arrive here.
    if (style < showStyle0 || style > showStyle15)
        GL_ASSERT(!"Unexpected ShowStyle specified");

    kernel->SetShowStyle(m_pPlane->Id(), style, iSpeed, iColor, fAnimateFlag, fUseReferenceFrame, iToFrom, intArray,
                         iArraySize, iDivisionCount);
}

void AbsGLPlane::ToLocal(ZOR_Point* pPoint)
{
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    kernel->PlaneToLocal(GetId(), pPoint);
}

void AbsGLPlane::ToGlobal(ZOR_Point* pPoint)
{
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    kernel->PlaneToGlobal(GetId(), pPoint);
}

// ----- the four kinds -----
//
// Each kind's Init is meant for a plane built by its default constructor; it
// checks that no kernel plane exists yet and, afterwards, that the common
// set-up left the plane made, with a cast and no change pending.

GLColoredPlane::GLColoredPlane() {}

GLColoredPlane::GLColoredPlane(const ZOR_Rect& ZOR_RectPlane, int iColor, int iPriority, int iWindowIndex,
                               const ZOR_Point& vanishPt)
    : AbsGLPlane(colored, ZOR_RectPlane, iPriority, iWindowIndex, vanishPt, iColor, 0, 0)
{
}

GLColoredPlane::GLColoredPlane(int iLeft, int iTop, int iRight, int iBottom, int iColor, int iPriority,
                               int iWindowIndex, const ZOR_Point& vanishPt)
    : AbsGLPlane(colored, ZOR_Rect(iLeft, iTop, iRight, iBottom), iPriority, iWindowIndex, vanishPt, iColor, 0, 0)
{
}

GLColoredPlane::~GLColoredPlane() {}

void GLColoredPlane::Init(const ZOR_Rect& ZOR_RectPlane, int iColor, int iWindowIndex, int iPriority,
                          const ZOR_Point& vanishPt)
{
    GL_ASSERT(m_pPlane == 0);
    AbsGLPlane::Init(colored, ZOR_RectPlane, iPriority, iWindowIndex, vanishPt, iColor, 0, 0);
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    GL_ASSERT(m_fChangedValue == False);
}

void GLColoredPlane::Init(int iLeft, int iTop, int iRight, int iBottom, int iColor, int iPriority, int iWindowIndex,
                          const ZOR_Point& vanishPt)
{
    GL_ASSERT(m_pPlane == 0);
    AbsGLPlane::Init(colored, ZOR_Rect(iLeft, iTop, iRight, iBottom), iPriority, iWindowIndex, vanishPt, iColor, 0, 0);
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    GL_ASSERT(m_fChangedValue == False);
}

GLPicturePlane::GLPicturePlane() {}

GLPicturePlane::GLPicturePlane(const ZOR_Rect& ZOR_RectPlane, int iPicture, int iPriority, int iWindowIndex,
                               int fMirror, const ZOR_Point& vanishPt)
    : AbsGLPlane(picture, ZOR_RectPlane, iPriority, iWindowIndex, vanishPt, 0, iPicture, fMirror)
{
}

GLPicturePlane::GLPicturePlane(int iLeft, int iTop, int iRight, int iBottom, int iPicture, int iPriority,
                               int iWindowIndex, int fMirror, const ZOR_Point& vanishPt)
    : AbsGLPlane(picture, ZOR_Rect(iLeft, iTop, iRight, iBottom), iPriority, iWindowIndex, vanishPt, 0, iPicture,
                 fMirror)
{
}

// The forms without a rectangle are not implemented: the plane is made with a
// placeholder rectangle and the call then ends with the report.
GLPicturePlane::GLPicturePlane(int iPicture, int iPriority, int iWindowIndex, int fMirror, const ZOR_Point& vanishPt)
    : AbsGLPlane(picture, ZOR_Rect(0, 0, 1, 1), iPriority, iWindowIndex, vanishPt, 0, iPicture, fMirror)
{
    GL_ASSERT(!"Not yet implemented");
}

GLPicturePlane::~GLPicturePlane() {}

void GLPicturePlane::Init(const ZOR_Rect& ZOR_RectPlane, int iPicture, int iPriority, int iWindowIndex, int fMirror,
                          const ZOR_Point& vanishPt)
{
    GL_ASSERT(m_pPlane == 0);
    AbsGLPlane::Init(picture, ZOR_RectPlane, iPriority, iWindowIndex, vanishPt, 0, iPicture, fMirror);
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    GL_ASSERT(m_fChangedValue == False);
}

void GLPicturePlane::Init(int iLeft, int iTop, int iRight, int iBottom, int iPicture, int iPriority, int iWindowIndex,
                          int fMirror, const ZOR_Point& vanishPt)
{
    GL_ASSERT(m_pPlane == 0);
    AbsGLPlane::Init(picture, ZOR_Rect(iLeft, iTop, iRight, iBottom), iPriority, iWindowIndex, vanishPt, 0, iPicture,
                     fMirror);
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    GL_ASSERT(m_fChangedValue == False);
}

void GLPicturePlane::Init(int, int, int, int, const ZOR_Point&)
{
    GL_ASSERT(m_pPlane == 0);
    GL_ASSERT(!"Not yet implemented");
}

int GLPicturePlane::IsMirror() const
{
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    return m_pPlane->mirror;
}

int GLPicturePlane::GetPicture() const
{
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    return m_pPlane->picture;
}

void GLPicturePlane::SetMirror(int fMirror, int fDoUpdate)
{
    GL_ASSERT(fMirror == True || fMirror == False);
    GL_ASSERT(fDoUpdate == True || fDoUpdate == False);
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    m_pPlane->mirror = fMirror;
    Changed(fDoUpdate);
}

void GLPicturePlane::SetPicture(int iNewPicture, int fDoUpdate)
{
    GL_ASSERT(iNewPicture >= 0);
    GL_ASSERT(fDoUpdate == True || fDoUpdate == False);
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    if (m_pPlane->picture != iNewPicture) {
        m_pPlane->picture = iNewPicture;
        // Tells the kernel to load the picture when it takes the change over.
        m_pPlane->pictureChanged = 1;
    } else {
        GL_ASSERT(!"The picture number you passed is already the current picture");
    }
    Changed(fDoUpdate);
}

void GLPicturePlane::AddPicAt(int iPicture, int iXPos, int iYPos, int fMirror, int fDeleteCopy)
{
    GL_ASSERT(iPicture >= 0);
    GL_ASSERT(iXPos >= 0 && iXPos <= 1200);
    GL_ASSERT(iYPos >= 0 && iYPos <= 800);
    GL_ASSERT(fMirror == True || fMirror == False);
    GL_ASSERT(fDeleteCopy == True || fDeleteCopy == False);
    GL_ASSERT(m_pPlane != 0);
    kernel->AddPicAt(m_pPlane->Id(), iPicture, iXPos, iYPos, fMirror, fDeleteCopy);
}

void GLPicturePlane::SetScroll(int iXStepSize, int iYStepSize, int iPicture, int fWithAnimate, int iTicks, int fMirror)
{
    GL_ASSERT(m_pPlane != 0);
    // Scrolling goes along one axis at a time.
    GL_ASSERT(!(iXStepSize == 0 && iYStepSize == 0));
    GL_ASSERT(!(iXStepSize != 0 && iYStepSize != 0));
    GL_ASSERT(iPicture >= 0);
    GL_ASSERT(fWithAnimate == True || fWithAnimate == False);
    GL_ASSERT(iTicks == -1 || iTicks > 0);
    GL_ASSERT(fMirror == True || fMirror == False);
    kernel->SetScroll(m_pPlane->Id(), iXStepSize, iYStepSize, iPicture, fWithAnimate, iTicks, fMirror);
}

GLTransparentPlane::GLTransparentPlane() {}

GLTransparentPlane::GLTransparentPlane(const ZOR_Rect& ZOR_RectPlane, int iPriority, int iWindowIndex,
                                       const ZOR_Point& vanishPt)
    : AbsGLPlane(transparent, ZOR_RectPlane, iPriority, iWindowIndex, vanishPt, 0, 0, 0)
{
}

GLTransparentPlane::GLTransparentPlane(int iLeft, int iTop, int iRight, int iBottom, int iPriority, int iWindowIndex,
                                       const ZOR_Point& vanishPt)
    : AbsGLPlane(transparent, ZOR_Rect(iLeft, iTop, iRight, iBottom), iPriority, iWindowIndex, vanishPt, 0, 0, 0)
{
}

GLTransparentPlane::~GLTransparentPlane() {}

void GLTransparentPlane::Init(const ZOR_Rect& ZOR_RectPlane, int iPriority, int iWindowIndex, const ZOR_Point& vanishPt)
{
    GL_ASSERT(m_pPlane == 0);
    AbsGLPlane::Init(transparent, ZOR_RectPlane, iPriority, iWindowIndex, vanishPt, 0, 0, 0);
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    GL_ASSERT(m_fChangedValue == False);
}

void GLTransparentPlane::Init(int iLeft, int iTop, int iRight, int iBottom, int iPriority, int iWindowIndex,
                              const ZOR_Point& vanishPt)
{
    GL_ASSERT(m_pPlane == 0);
    AbsGLPlane::Init(transparent, ZOR_Rect(iLeft, iTop, iRight, iBottom), iPriority, iWindowIndex, vanishPt, 0, 0, 0);
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    GL_ASSERT(m_fChangedValue == False);
}

GLOpaquePlane::GLOpaquePlane() {}

GLOpaquePlane::GLOpaquePlane(const ZOR_Rect& ZOR_RectPlane, int iColor, int iPriority, int iWindowIndex,
                             const ZOR_Point& vanishPt)
    : AbsGLPlane(opaque, ZOR_RectPlane, iPriority, iWindowIndex, vanishPt, iColor, 0, 0)
{
}

GLOpaquePlane::GLOpaquePlane(int iLeft, int iTop, int iRight, int iBottom, int iColor, int iPriority, int iWindowIndex,
                             const ZOR_Point& vanishPt)
    : AbsGLPlane(opaque, ZOR_Rect(iLeft, iTop, iRight, iBottom), iPriority, iWindowIndex, vanishPt, iColor, 0, 0)
{
}

GLOpaquePlane::~GLOpaquePlane() {}

void GLOpaquePlane::Init(const ZOR_Rect& ZOR_RectPlane, int iColor, int iPriority, int iWindowIndex,
                         const ZOR_Point& vanishPt)
{
    GL_ASSERT(m_pPlane == 0);
    AbsGLPlane::Init(opaque, ZOR_RectPlane, iPriority, iWindowIndex, vanishPt, iColor, 0, 0);
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    GL_ASSERT(m_fChangedValue == False);
}

void GLOpaquePlane::Init(int iLeft, int iTop, int iRight, int iBottom, int iColor, int iPriority, int iWindowIndex,
                         const ZOR_Point& vanishPt)
{
    GL_ASSERT(m_pPlane == 0);
    AbsGLPlane::Init(opaque, ZOR_Rect(iLeft, iTop, iRight, iBottom), iPriority, iWindowIndex, vanishPt, iColor, 0, 0);
    GL_ASSERT(m_pPlane != 0);
    GL_ASSERT(m_pCast != 0);
    GL_ASSERT(m_fChangedValue == False);
}
