// Glcursor.cpp - the picture triple and the mouse cursor. See include/glcursor.h.
#include "glcursor.h"

#include "glevent.h"

namespace {

// State bits of the cursor.
const std::uint32_t kHidden = 1u;
const std::uint32_t kWait = 2u;
const std::uint32_t kHandsOff = 4u;
const std::uint32_t kCaged = 8u;
const std::uint32_t kHighlight = 16u;
// The bits that together decide the current mode.
const std::uint32_t kModeBits = kWait | kHandsOff | kHighlight;

} // namespace

// ----- GLCelRes -----

GLCelRes::GLCelRes() : mView(0), mLoop(0), mCel(0), mData(0) {}

GLCelRes::GLCelRes(std::uint32_t view, short loop, short cel, std::int32_t data)
    : mView(view), mLoop(loop), mCel(cel), mData(data)
{
}

GLCelRes::GLCelRes(const GLCelRes& celRes)
    : mView(celRes.mView), mLoop(celRes.mLoop), mCel(celRes.mCel), mData(celRes.mData)
{
}

GLCelRes& GLCelRes::operator=(const GLCelRes& celRes)
{
    mView = celRes.mView;
    mLoop = celRes.mLoop;
    mCel = celRes.mCel;
    mData = celRes.mData;
    return *this;
}

void GLCelRes::Init(std::uint32_t view, short loop, short cel, std::int32_t data)
{
    mView = view;
    mLoop = loop;
    mCel = cel;
    mData = data;
}

// ----- GLCursor -----

GLCursor::GLCursor(GLCelRes& celRes, int fShow)
    : mState(0), mPos(0, 0), mNormCelRes(celRes), mWaitCelRes(celRes), mHandsOffCelRes(celRes), mHighLtCelRes(celRes),
      mCageRect(0, 0, 639, 479)
{
    ShowCelRes(mNormCelRes);
    if (fShow) {
        kernel->ShowCursor();
        NeedsEvent(TRUE);
    }
}

GLCursor::GLCursor(const GLCursor& cursor)
    : GLObject(cursor), mState(cursor.mState), mPos(cursor.mPos), mNormCelRes(cursor.mNormCelRes),
      mWaitCelRes(cursor.mWaitCelRes), mHandsOffCelRes(cursor.mHandsOffCelRes), mHighLtCelRes(cursor.mHighLtCelRes),
      mCageRect(cursor.mCageRect)
{
}

GLCursor& GLCursor::operator=(const GLCursor& cursor)
{
    GLObject::operator=(cursor);
    mState = cursor.mState;
    mPos = cursor.mPos;
    mNormCelRes = cursor.mNormCelRes;
    mWaitCelRes = cursor.mWaitCelRes;
    mHandsOffCelRes = cursor.mHandsOffCelRes;
    mHighLtCelRes = cursor.mHighLtCelRes;
    mCageRect = cursor.mCageRect;
    return *this;
}

GLCursor::~GLCursor() {}

void GLCursor::Init(GLCelRes& celRes, int fShow)
{
    mNormCelRes = celRes;
    mWaitCelRes = celRes;
    mHandsOffCelRes = celRes;
    mHighLtCelRes = celRes;
    mState = 0;
    ShowCelRes(mNormCelRes);
    if (fShow) {
        kernel->ShowCursor();
        NeedsEvent(TRUE);
    }
}

void GLCursor::SetPos(GLPoint& point)
{
    mPos = point;
    // The kernel is handed the cursor's own point, not the caller's.
    kernel->SetCursorPos(const_cast<ZOR_Point*>(&mPos.GetZORPoint()));
}

const GLPoint& GLCursor::GetPos() const
{
    return mPos;
}

int GLCursor::HandleEvent(GLEvent* pEvent)
{
    // The kernel moves its own cursor with the pointer; only the stored
    // position follows. The event is left for the handlers after the cursor.
    mPos = pEvent->where;
    return TRUE;
}

void GLCursor::Show()
{
    mState &= ~kHidden;
    NeedsEvent(TRUE);
    kernel->ShowCursor();
}

void GLCursor::Hide()
{
    mState |= kHidden;
    NeedsEvent(FALSE);
    kernel->HideCursor();
}

void GLCursor::SetState(std::uint32_t) {}

std::uint32_t GLCursor::GetState()
{
    return mState;
}

const GLCelRes& GLCursor::GetCurrCelRes() const
{
    return const_cast<GLCursor*>(this)->CurrCelRes();
}

// Exactly one mode bit selects its mode's picture; none or several select the
// normal one.
GLCelRes& GLCursor::CurrCelRes()
{
    switch (mState & kModeBits) {
    case kWait:
        return mWaitCelRes;
    case kHandsOff:
        return mHandsOffCelRes;
    case kHighlight:
        return mHighLtCelRes;
    default:
        return mNormCelRes;
    }
}

void GLCursor::ShowCelRes(const GLCelRes& celRes)
{
    kernel->SetCursorView(celRes.mView, celRes.mLoop, celRes.mCel);
}

void GLCursor::SetCurrCelRes(GLCelRes& celRes)
{
    GLCelRes& current = CurrCelRes();
    current = celRes;
    ShowCelRes(current);
}

std::uint32_t GLCursor::GetView() const
{
    return GetCurrCelRes().mView;
}

short GLCursor::GetLoop() const
{
    return GetCurrCelRes().mLoop;
}

short GLCursor::GetCel() const
{
    return GetCurrCelRes().mCel;
}

void GLCursor::SetView(std::uint32_t uView)
{
    GLCelRes& current = CurrCelRes();
    current.mView = uView;
    ShowCelRes(current);
}

void GLCursor::SetLoop(short iLoop)
{
    GLCelRes& current = CurrCelRes();
    current.mLoop = iLoop;
    ShowCelRes(current);
}

void GLCursor::SetCel(short iCel)
{
    GLCelRes& current = CurrCelRes();
    current.mCel = iCel;
    ShowCelRes(current);
}

// Each mode's picture is shown on storing when its own bit is set, not by the
// exact-mode rule: with wait and hands off both on, storing either picture
// shows it although the current picture stays the normal one.
void GLCursor::SetNormCelRes(GLCelRes& celRes)
{
    mNormCelRes = celRes;
    if ((mState & kModeBits) == 0)
        ShowCelRes(mNormCelRes);
}

void GLCursor::SetWaitCelRes(GLCelRes& celRes)
{
    mWaitCelRes = celRes;
    if (mState & kWait)
        ShowCelRes(mWaitCelRes);
}

void GLCursor::SetHandsOffCelRes(GLCelRes& celRes)
{
    mHandsOffCelRes = celRes;
    if (mState & kHandsOff)
        ShowCelRes(mHandsOffCelRes);
}

void GLCursor::SetHighLtCelRes(GLCelRes& celRes)
{
    mHighLtCelRes = celRes;
    if (mState & kHighlight)
        ShowCelRes(mHighLtCelRes);
}

const GLCelRes& GLCursor::GetNormCelRes() const
{
    return mNormCelRes;
}

const GLCelRes& GLCursor::GetWaitCelRes() const
{
    return mWaitCelRes;
}

const GLCelRes& GLCursor::GetHandsOffCelRes() const
{
    return mHandsOffCelRes;
}

const GLCelRes& GLCursor::GetHighLtCelRes() const
{
    return mHighLtCelRes;
}

void GLCursor::BeginWait()
{
    if (!(mState & kWait)) {
        mState |= kWait;
        ShowCelRes(mWaitCelRes);
    }
}

void GLCursor::EndWait()
{
    if (mState & kWait) {
        mState &= ~kWait;
        ShowCelRes(mNormCelRes);
    }
}

void GLCursor::HandsOff()
{
    if (!(mState & kHandsOff)) {
        mState |= kHandsOff;
        ShowCelRes(mHandsOffCelRes);
    }
}

void GLCursor::HandsOn()
{
    if (mState & kHandsOff) {
        mState &= ~kHandsOff;
        ShowCelRes(mNormCelRes);
    }
}

void GLCursor::BeginHighlight()
{
    if (!(mState & kHighlight)) {
        mState |= kHighlight;
        ShowCelRes(mHighLtCelRes);
    }
}

void GLCursor::EndHighlight()
{
    if (mState & kHighlight) {
        mState &= ~kHighlight;
        ShowCelRes(mNormCelRes);
    }
}

int GLCursor::IsNormal() const
{
    return (mState & kModeBits) == 0 ? TRUE : FALSE;
}

int GLCursor::IsVisible() const
{
    return (mState & kHidden) == 0 ? TRUE : FALSE;
}

int GLCursor::IsWait() const
{
    return static_cast<int>(mState & kWait);
}

int GLCursor::IsHandsOff() const
{
    return static_cast<int>(mState & kHandsOff);
}

int GLCursor::IsCaged() const
{
    return static_cast<int>(mState & kCaged);
}

int GLCursor::IsHighlighted() const
{
    return static_cast<int>(mState & kHighlight);
}
