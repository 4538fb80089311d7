// Glsi.cpp - screen items. See include/glsi.h.
#include "glsi.h"

#include "glcast.h"
#include "glplane.h"

namespace {

void SetViewSource(KernelScreenItemSource* pSource, int iView, int iLoop, int iCel)
{
    pSource->kind = kSourceView;
    pSource->view = iView;
    pSource->loop = iLoop;
    pSource->cel = iCel;
    pSource->memId = 0;
}

void SetBitmapSource(KernelScreenItemSource* pSource, const KernelMemBitmap* pKernelMemBitmap)
{
    pSource->kind = kSourceMemBitmap;
    pSource->view = 0;
    pSource->loop = 0;
    pSource->cel = 0;
    pSource->memId = *pKernelMemBitmap->m_pMemIDBitmap;
}

} // namespace

GLScreenItem::GLScreenItem()
    : m_pScreenItem(0), m_fChangedValue(FALSE), m_fVisible(FALSE), m_iView(kNoView), m_iLoop(kNoView), m_iCel(kNoView),
      m_pKernelMemBitmap(0), m_pGLPlane(0)
{
}

GLScreenItem::GLScreenItem(AbsGLPlane* pPlane, int iView, int iLoop, int iCel, const GLPoint& pos, int iPriority,
                           const ScaleInfo& scale)
    : m_pScreenItem(0), m_fChangedValue(FALSE), m_fVisible(FALSE), m_iView(kNoView), m_iLoop(kNoView), m_iCel(kNoView),
      m_pKernelMemBitmap(0), m_pGLPlane(0)
{
    GL_ASSERT(iView >= 0);
    GL_ASSERT(iLoop >= 0);
    GL_ASSERT(iCel >= 0);
    GL_ASSERT(iPriority == -9999 || iPriority >= -1);
    Init(pPlane, iView, iLoop, iCel, pos, iPriority, scale);
    GL_ASSERT(m_fChangedValue == FALSE);
    GL_ASSERT(m_fVisible == FALSE);
    GL_ASSERT(m_pKernelMemBitmap == 0);
    GL_ASSERT(m_iView >= 0);
    GL_ASSERT(m_iLoop >= 0);
    GL_ASSERT(m_iCel >= 0);
    GL_ASSERT(m_pScreenItem != 0);
}

GLScreenItem::GLScreenItem(AbsGLPlane* pPlane, const KernelMemBitmap* pKernelMemBitmap, const GLPoint& pos,
                           int iPriority, const ScaleInfo& scale)
    : m_pScreenItem(0), m_fChangedValue(FALSE), m_fVisible(FALSE), m_iView(kNoView), m_iLoop(kNoView), m_iCel(kNoView),
      m_pKernelMemBitmap(0), m_pGLPlane(0)
{
    GL_ASSERT(pPlane != NULL);
    GL_ASSERT(iPriority == -9999 || iPriority >= -1);
    GL_ASSERT(pKernelMemBitmap != 0);
    GL_ASSERT(kernel->DLLCheckValid(*pKernelMemBitmap->m_pMemIDBitmap));
    Init(pPlane, pKernelMemBitmap, pos, iPriority, scale);
    GL_ASSERT(m_fChangedValue == FALSE);
    GL_ASSERT(m_fVisible == FALSE);
    GL_ASSERT(m_pKernelMemBitmap != 0);
    GL_ASSERT(m_iView < 0);
    GL_ASSERT(m_iLoop < 0);
    GL_ASSERT(m_iCel < 0);
    GL_ASSERT(m_pScreenItem != 0);
}

GLScreenItem::~GLScreenItem()
{
    // The bitmap belongs to the game.
    m_pKernelMemBitmap = 0;
    if (m_pScreenItem) {
        // A record on the screen has to come off it; one that never got there
        // (or was swapped out by Hide) is only given back.
        if (m_fVisible)
            kernel->DeleteScreenItem(m_pScreenItem);
        else
            kernel->DisposeScreenItem(m_pScreenItem);
        m_pScreenItem = 0;
    }
    if (m_pGLPlane)
        m_pGLPlane->GetCast()->Remove(this);
    m_pGLPlane = 0;
}

void GLScreenItem::Init(AbsGLPlane* pPlane, int iView, int iLoop, int iCel, const GLPoint& pos, int iPriority,
                        const ScaleInfo& scale)
{
    GL_ASSERT(pPlane != NULL);
    GL_ASSERT(pPlane->GetId() >= 0);
    GL_ASSERT(m_pScreenItem == 0);
    GL_ASSERT(iView >= 0);
    GL_ASSERT(iLoop >= 0);
    GL_ASSERT(iCel >= 0);
    GL_ASSERT(iPriority == -9999 || iPriority >= -1);

    m_iView = iView;
    m_iLoop = iLoop;
    m_iCel = iCel;
    m_CelRes.Init(static_cast<std::uint32_t>(iView), static_cast<short>(iLoop), static_cast<short>(iCel), 0);
    m_pKernelMemBitmap = 0;
    m_fChangedValue = FALSE;
    m_fVisible = FALSE;
    m_Position = pos;

    KernelScreenItemSource source = {};
    SetViewSource(&source, iView, iLoop, iCel);
    m_pScreenItem = kernel->NewScreenItem(pPlane->GetId(), &source, pos.GetZORPoint(), scale);
    GL_ASSERT(m_pScreenItem != 0);
    // kPriorityOnTop leaves the priority the kernel chose for the new record.
    if (iPriority != kPriorityOnTop) {
        m_pScreenItem->priority = iPriority;
        m_pScreenItem->fixedPriority = 1;
    }

    NeedsDoIt(TRUE);
    IsScreenItem(TRUE);
    m_pGLPlane = pPlane;
    pPlane->GetCast()->Add(this);
}

void GLScreenItem::Init(AbsGLPlane* pPlane, const KernelMemBitmap* pKernelMemBitmap, const GLPoint& pos, int iPriority,
                        const ScaleInfo& scale)
{
    GL_ASSERT(iPriority == -9999 || iPriority >= -1);
    GL_ASSERT(pPlane != NULL);
    GL_ASSERT(pPlane->GetId() >= 0);
    GL_ASSERT(m_pScreenItem == 0);
    GL_ASSERT(pKernelMemBitmap != 0);
    GL_ASSERT(kernel->DLLCheckValid(*pKernelMemBitmap->m_pMemIDBitmap));

    m_pKernelMemBitmap = pKernelMemBitmap;
    m_iView = kNoView;
    m_iLoop = kNoView;
    m_iCel = kNoView;
    m_CelRes.Init(static_cast<std::uint32_t>(kNoView), kNoView, kNoView, m_CelRes.mData);
    m_fChangedValue = FALSE;
    m_fVisible = FALSE;

    KernelScreenItemSource source = {};
    SetBitmapSource(&source, pKernelMemBitmap);
    m_pScreenItem = kernel->NewScreenItem(pPlane->GetId(), &source, pos.GetZORPoint(), scale);
    GL_ASSERT(m_pScreenItem != 0);
    m_Position = pos;
    if (iPriority != kPriorityOnTop) {
        m_pScreenItem->priority = iPriority;
        m_pScreenItem->fixedPriority = 1;
    }

    NeedsDoIt(TRUE);
    IsScreenItem(TRUE);
    m_pGLPlane = pPlane;
    pPlane->GetCast()->Add(this);
}

void GLScreenItem::CheckRecord() const
{
    GL_ASSERT(m_pScreenItem != 0);
    GL_ASSERT(m_pKernelMemBitmap == 0 || kernel->DLLCheckValid(*m_pKernelMemBitmap->m_pMemIDBitmap));
}

void GLScreenItem::Changed(int fDoUpdate)
{
    m_fChangedValue = TRUE;
    // Through the virtual Update, so that a derived item sees every change.
    if (fDoUpdate)
        Update();
}

void GLScreenItem::DoIt() {}

void GLScreenItem::Update()
{
    if (m_fChangedValue != TRUE)
        return;
    CheckRecord();
    if (!m_fVisible) {
        kernel->AddScreenItem(m_pScreenItem);
        m_fVisible = TRUE;
    }
    kernel->UpdateScreenItem(m_pScreenItem);
    m_fChangedValue = FALSE;
}

void GLScreenItem::Show()
{
    if (m_fVisible)
        return;
    GL_ASSERT(m_pScreenItem != NULL);
    if (!m_fChangedValue) {
        kernel->AddScreenItem(m_pScreenItem);
        m_fVisible = TRUE;
    } else {
        Update();
    }
}

void GLScreenItem::Hide()
{
    if (!m_fVisible)
        return;
    GL_ASSERT(m_pScreenItem != NULL);

    // The kernel has no "take off the screen but keep" operation: the item
    // gets a fresh record, off the screen, carrying every value of the old one.
    KernelScreenItemRecord* pOld = m_pScreenItem;
    KernelScreenItemSource source = {};
    if (m_iView >= 0)
        SetViewSource(&source, m_iView, m_iLoop, m_iCel);
    else
        SetBitmapSource(&source, m_pKernelMemBitmap);
    ZOR_Point pos = pOld->pos;
    ScaleInfo scale = pOld->scale;
    KernelScreenItemRecord* pNew = kernel->NewScreenItem(pOld->PlaneId(), &source, pos, scale);
    GL_ASSERT(pNew != 0);

    pNew->priority = pOld->priority;
    pNew->fixedPriority = 1;
    pNew->z = pOld->z;
    pNew->useInsetRect = pOld->useInsetRect;
    if (pOld->useInsetRect) {
        pNew->insetRect = pOld->insetRect;
        pNew->useInsetRect = 1;
    }
    pNew->kernelValue = pOld->kernelValue;
    pNew->fixedPriority = pOld->fixedPriority;

    kernel->DeleteScreenItem(pOld);
    m_pScreenItem = pNew;
    m_fVisible = FALSE;
}

AbsGLPlane* GLScreenItem::GetPlane()
{
    return m_pGLPlane;
}

void GLScreenItem::SetPlane(AbsGLPlane* pPlane, int fDoUpdate)
{
    GL_ASSERT(pPlane);
    SetPlaneId(pPlane->GetId(), fDoUpdate);
    if (m_pGLPlane)
        m_pGLPlane->GetCast()->Remove(this);
    m_pGLPlane = pPlane;
    pPlane->GetCast()->Add(this);
}

void GLScreenItem::ForceUpdate()
{
    m_fChangedValue = TRUE;
    Update();
    GL_ASSERT(m_fChangedValue == False);
}

int GLScreenItem::NowSeenRect(ZOR_Rect* pRect)
{
    CheckRecord();
    if (!m_fVisible)
        return 0;
    return kernel->GetNowSeenRect(m_pScreenItem->PlaneId(), m_pScreenItem->id, pRect) ? 1 : 0;
}

int GLScreenItem::OnPoint(const GLPoint& pt, int fCheckSkip)
{
    CheckRecord();
    GL_ASSERT(fCheckSkip == TRUE || fCheckSkip == FALSE);
    GL_ASSERT(m_fVisible == TRUE);
    ZOR_Point point = pt.GetZORPoint();
    return kernel->ScreenItemOnPoint(&point, m_pScreenItem->PlaneId(), m_pScreenItem->id, fCheckSkip);
}

const GLPoint& GLScreenItem::GetPos() const
{
    CheckRecord();
    return m_Position;
}

void GLScreenItem::SetPos(const GLPoint& pos, int fDoUpdate)
{
    CheckRecord();
    m_Position = pos;
    m_pScreenItem->pos = pos.GetZORPoint();
    Changed(fDoUpdate);
}

int GLScreenItem::GetPri() const
{
    CheckRecord();
    return m_pScreenItem->priority;
}

void GLScreenItem::SetPri(int iPriorityNew, int fDoUpdate)
{
    CheckRecord();
    GL_ASSERT(iPriorityNew >= -1);
    m_pScreenItem->priority = iPriorityNew;
    m_pScreenItem->fixedPriority = 1;
    Changed(fDoUpdate);
}

void GLScreenItem::SetFloatPriority(int fDoUpdate)
{
    CheckRecord();
    GL_ASSERT(fDoUpdate == TRUE || fDoUpdate == FALSE);
    m_pScreenItem->fixedPriority = 0;
    Changed(fDoUpdate);
}

const ScaleInfo& GLScreenItem::GetScale()
{
    CheckRecord();
    return m_pScreenItem->scale;
}

void GLScreenItem::SetScale(const ScaleInfo& scale, int fDoUpdate)
{
    CheckRecord();
    m_pScreenItem->scale = scale;
    Changed(fDoUpdate);
}

std::int32_t GLScreenItem::GetPlaneId() const
{
    CheckRecord();
    return m_pScreenItem->PlaneId();
}

void GLScreenItem::SetPlaneId(std::int32_t lPlaneIdNew, int fDoUpdate)
{
    CheckRecord();
    GL_ASSERT(lPlaneIdNew >= 0);
    GL_ASSERT(lPlaneIdNew != m_pScreenItem->PlaneId());

    KernelScreenItemRecord* pOld = m_pScreenItem;
    KernelScreenItemSource source = {};
    if (m_pKernelMemBitmap)
        SetBitmapSource(&source, m_pKernelMemBitmap);
    else
        SetViewSource(&source, m_iView, m_iLoop, m_iCel);
    KernelScreenItemRecord* pNew = kernel->NewScreenItem(lPlaneIdNew, &source, pOld->pos, pOld->scale);
    GL_ASSERT(pNew != 0);
    // Only the priority value goes along; the new plane decides the rest.
    pNew->priority = pOld->priority;

    kernel->DeleteScreenItem(pOld);
    m_pScreenItem = pNew;
    m_fVisible = FALSE;
    Changed(fDoUpdate);
}

std::int32_t GLScreenItem::GetId() const
{
    CheckRecord();
    return m_pScreenItem->id;
}

int GLScreenItem::GetZCoord() const
{
    CheckRecord();
    return m_pScreenItem->z;
}

void GLScreenItem::SetZCoord(int iZ, int fDoUpdate)
{
    CheckRecord();
    m_pScreenItem->z = iZ;
    m_pScreenItem->pos.y -= iZ;
    m_Position = m_pScreenItem->pos;
    Changed(fDoUpdate);
}

const ZOR_Rect& GLScreenItem::GetInsetRect() const
{
    CheckRecord();
    GL_ASSERT(m_pScreenItem->useInsetRect == TRUE);
    return m_pScreenItem->insetRect;
}

void GLScreenItem::SetInsetRect(const ZOR_Rect& ZOR_RectInset, int fDoUpdate)
{
    GL_ASSERT(!ZOR_RectInset.IsEmpty());
    CheckRecord();
    m_pScreenItem->insetRect = ZOR_RectInset;
    m_pScreenItem->useInsetRect = 1;
    Changed(fDoUpdate);
}

int GLScreenItem::GetView() const
{
    GL_ASSERT(m_pScreenItem != 0);
    GL_ASSERT(m_pKernelMemBitmap == 0);
    // The check's text is reported as written, spacing included.
    // clang-format off
    GL_ASSERT(m_iView !=-1 && m_iLoop != -1 && m_iCel != -1);
    // clang-format on
    return m_iView;
}

int GLScreenItem::GetLoop() const
{
    GL_ASSERT(m_pScreenItem != 0);
    GL_ASSERT(m_pKernelMemBitmap == 0);
    // The check's text is reported as written, spacing included.
    // clang-format off
    GL_ASSERT(m_iView !=-1 && m_iLoop != -1 && m_iCel != -1);
    // clang-format on
    return m_iLoop;
}

int GLScreenItem::GetCel() const
{
    GL_ASSERT(m_pScreenItem != 0);
    GL_ASSERT(m_pKernelMemBitmap == 0);
    // The check's text is reported as written, spacing included.
    // clang-format off
    GL_ASSERT(m_iView !=-1 && m_iLoop != -1 && m_iCel != -1);
    // clang-format on
    return m_iCel;
}

// The view, loop or cel changed: the picture triple and the record's source
// follow, and the item is marked changed.
void GLScreenItem::PictureChanged(int fDoUpdate)
{
    m_CelRes.Init(static_cast<std::uint32_t>(m_iView), static_cast<short>(m_iLoop), static_cast<short>(m_iCel),
                  m_CelRes.mData);
    SetViewSource(&m_pScreenItem->source, m_iView, m_iLoop, m_iCel);
    Changed(fDoUpdate);
}

void GLScreenItem::SetView(int iView, int fDoUpdate)
{
    GL_ASSERT(m_pScreenItem != 0);
    GL_ASSERT(iView >= 0);
    GL_ASSERT(m_pKernelMemBitmap == 0);
    m_iView = iView;
    PictureChanged(fDoUpdate);
}

void GLScreenItem::SetLoop(int iLoop, int fDoUpdate)
{
    GL_ASSERT(m_pScreenItem != 0);
    GL_ASSERT(iLoop >= 0);
    GL_ASSERT(m_pKernelMemBitmap == 0);
    m_iLoop = iLoop;
    PictureChanged(fDoUpdate);
}

void GLScreenItem::SetCel(int iCel, int fDoUpdate)
{
    GL_ASSERT(m_pScreenItem != 0);
    GL_ASSERT(iCel >= 0);
    GL_ASSERT(m_pKernelMemBitmap == 0);
    m_iCel = iCel;
    PictureChanged(fDoUpdate);
}

void GLScreenItem::Load(int iView, int iLoop, int iCel, int fDoUpdate)
{
    GL_ASSERT(m_pScreenItem != 0);
    GL_ASSERT(iView >= 0);
    GL_ASSERT(iLoop >= 0);
    GL_ASSERT(iCel >= 0);
    GL_ASSERT(m_pKernelMemBitmap == 0);
    m_iView = iView;
    m_iLoop = iLoop;
    m_iCel = iCel;
    PictureChanged(fDoUpdate);
}

void GLScreenItem::Load(GLCelRes res, int fDoUpdate)
{
    Load(static_cast<int>(res.mView), res.mLoop, res.mCel, fDoUpdate);
}

void GLScreenItem::SetCelRes(GLCelRes& res, int fDoUpdate)
{
    m_CelRes.mData = res.mData;
    Load(static_cast<int>(res.mView), res.mLoop, res.mCel, fDoUpdate);
}

const KernelMemBitmap* GLScreenItem::GetMemBmp() const
{
    GL_ASSERT(m_pScreenItem != 0);
    GL_ASSERT(m_pKernelMemBitmap != 0);
    GL_ASSERT(kernel->DLLCheckValid(*m_pKernelMemBitmap->m_pMemIDBitmap));
    GL_ASSERT(m_iView == -1);
    return m_pKernelMemBitmap;
}

void GLScreenItem::SetMemBmp(const KernelMemBitmap* pKernelMemBitmap, int fDoUpdate)
{
    CheckRecord();
    if (m_iView != kNoView) {
        m_iView = kNoView;
        m_iLoop = kNoView;
        m_iCel = kNoView;
        m_CelRes.Init(static_cast<std::uint32_t>(kNoView), kNoView, kNoView, m_CelRes.mData);
    }
    m_pKernelMemBitmap = pKernelMemBitmap;
    GL_ASSERT(m_pKernelMemBitmap != 0);
    GL_ASSERT(kernel->DLLCheckValid(*m_pKernelMemBitmap->m_pMemIDBitmap));
    SetBitmapSource(&m_pScreenItem->source, m_pKernelMemBitmap);
    Changed(fDoUpdate);
}
