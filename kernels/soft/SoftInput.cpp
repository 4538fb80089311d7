// SoftInput.cpp - the soft kernel's clock and input queue.
#include "SoftInput.h"

#include <chrono>

namespace {

std::uint64_t RealMillis()
{
    using namespace std::chrono;
    return static_cast<std::uint64_t>(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

} // namespace

void SoftInput::SetScript(const std::vector<SoftInputEvent>& events)
{
    mQueue.assign(events.begin(), events.end());
}

void SoftInput::Push(const SoftInputEvent& event)
{
    SoftInputEvent e = event;
    e.tick = OwnClock();
    mQueue.push_back(e);
}

void SoftInput::UseRealClock(bool real)
{
    if (real && !mRealClock)
        mRealStart = RealMillis() - static_cast<std::uint64_t>(mTicks) * 1000 / 60;
    if (!real && mRealClock)
        mTicks = Now();
    mRealClock = real;
}

void SoftInput::SetClock(std::uint32_t ticks)
{
    mTicks = ticks;
    if (mRealClock)
        mRealStart = RealMillis() - static_cast<std::uint64_t>(ticks) * 1000 / 60;
}

std::uint32_t SoftInput::Now() const
{
    if (!mSeam)
        return OwnClock();
    if (!mInFrameHook)
        mLastNow = mSeam->Clock(OwnClock());
    return mLastNow;
}

bool SoftInput::Take(bool found, SoftInputEvent* event)
{
    return mSeam ? mSeam->Input(found, event) : found;
}

std::uint32_t SoftInput::OwnClock() const
{
    if (mRealClock)
        return static_cast<std::uint32_t>((RealMillis() - mRealStart) * 60 / 1000);
    return mTicks;
}

void SoftInput::AdvanceClock()
{
    mLooks = 0;
    if (!mRealClock)
        mTicks += mTicksPerFrame;
}

bool SoftInput::WaitInFrame(std::uint32_t uMask)
{
    if (mLooks++ == 0)
        return false;
    const std::uint32_t now = OwnClock();
    std::uint32_t next = now + mTicksPerFrame;
    for (const SoftInputEvent& e : mQueue) {
        if ((e.type & uMask) == 0)
            continue;
        if (e.tick <= now)
            return false;
        next = e.tick < next ? e.tick : next;
    }
    if (!mRealClock)
        mTicks = next;
    return true;
}

bool SoftInput::NextEvent(std::uint32_t uMask, KernelEventRecord* pRecord)
{
    const std::uint32_t now = Now();
    SoftInputEvent e;
    bool found = false;
    for (std::size_t i = 0; i < mQueue.size() && mQueue[i].tick <= now; i++) {
        if ((mQueue[i].type & uMask) == 0)
            continue;
        e = mQueue[i];
        mQueue.erase(mQueue.begin() + static_cast<std::ptrdiff_t>(i));
        found = true;
        break;
    }
    if (Take(found, &e)) {
        pRecord->type = e.type;
        pRecord->message = e.message;
        pRecord->modifiers = e.modifiers;
        if (e.type == kEventKeyDown) {
            pRecord->where = ZOR_Point(mCursorX, mCursorY);
        } else {
            mCursorX = e.x;
            mCursorY = e.y;
            pRecord->where = ZOR_Point(e.x, e.y);
        }
        pRecord->extra = 0;
        return e.type == kEventPointerDown || e.type == kEventKeyDown;
    }
    pRecord->type = kEventNull;
    pRecord->message = 0;
    pRecord->modifiers = 0;
    pRecord->where = ZOR_Point(mCursorX, mCursorY);
    pRecord->extra = 0;
    return false;
}

bool SoftInput::TakeEnding()
{
    const std::uint32_t now = Now();
    SoftInputEvent e;
    bool found = false;
    for (std::size_t i = 0; i < mQueue.size() && mQueue[i].tick <= now; i++) {
        if (mQueue[i].type == kEventPointerDown || mQueue[i].type == kEventKeyDown) {
            e = mQueue[i];
            mQueue.erase(mQueue.begin() + static_cast<std::ptrdiff_t>(i));
            found = true;
            break;
        }
    }
    return Take(found, &e);
}
