// SoftInput.h - the soft kernel's clock and input queue.
//
// The clock counts ticks, 60 a second: a virtual clock that moves on by a
// fixed number of ticks with every composed frame, or the real clock (a
// window). Input events wait in a queue, each due at its tick; GetEvent takes
// the first due event of the types asked for. The pointer's position is kept
// here, since the events that carry a position move it. Every clock reading
// and every look into the queue passes through the seam when a host has set
// one (a tape records them there, or serves them back).
#ifndef QUINDLE_SOFT_INPUT_H
#define QUINDLE_SOFT_INPUT_H

#include "kernel.h"

#include "SoftScript.h"

#include <cstdint>
#include <deque>
#include <vector>

// Where the kernel's clock readings and input lookups pass, for a host that
// records them or serves them back (a tape). Without one the kernel uses its
// own clock and queue.
class SoftClockInputSeam {
public:
    virtual ~SoftClockInputSeam() {}
    // The kernel read its clock and got `reading`: returns the reading to use.
    virtual std::uint32_t Clock(std::uint32_t reading) = 0;
    // The kernel looked at its input queue and found `*event` (when `found`):
    // returns whether it takes an event, and sets `*event` to it.
    virtual bool Input(bool found, SoftInputEvent* event) = 0;
};

class SoftInput {
public:
    void SetScript(const std::vector<SoftInputEvent>& events);
    // The event is due at once.
    void Push(const SoftInputEvent& event);
    void SetTicksPerFrame(std::uint32_t ticks) { mTicksPerFrame = ticks; }
    void UseRealClock(bool real);
    // Sets the clock's reading (a restored game goes on from its saved tick).
    void SetClock(std::uint32_t ticks);
    void SetSeam(SoftClockInputSeam* seam) { mSeam = seam; }
    bool HasSeam() const { return mSeam != nullptr; }
    // While the frame hook runs, the clock stands at its last reading and
    // nothing passes the seam.
    void SetInFrameHook(bool in) { mInFrameHook = in; }

    std::uint32_t Now() const;
    // The clock as the game last saw it, without reading it again (nothing
    // passes the seam): what a report of a crash names.
    std::uint32_t LastSeen() const { return mSeam ? mLastNow : OwnClock(); }
    // The kernel's own clock, whatever a seam makes of it.
    std::uint32_t OwnTicks() const { return OwnClock(); }
    // A frame was composed: the virtual clock moves on.
    void AdvanceClock();

    // Fills `record` with the first due event of a type in `mask`, or a null
    // event at the pointer. True when a press or a key was handed out.
    bool NextEvent(std::uint32_t mask, KernelEventRecord* record);
    // Asked for an event again within one frame (a modal loop draws no frame
    // between): true, and the virtual clock has moved on to the next queued
    // event or by one frame's ticks, whichever comes first, so that waiting
    // for a later event ends. False for the frame's first look, or when an
    // event of the mask is due.
    bool WaitInFrame(std::uint32_t mask);
    // A press or key is due: takes it (it ends a movie).
    bool TakeEnding();

    std::int32_t CursorX() const { return mCursorX; }
    std::int32_t CursorY() const { return mCursorY; }
    void SetCursor(std::int32_t x, std::int32_t y)
    {
        mCursorX = x;
        mCursorY = y;
    }

private:
    std::uint32_t OwnClock() const;
    bool Take(bool found, SoftInputEvent* event);

    std::uint32_t mTicks = 0;
    std::uint32_t mTicksPerFrame = 1;
    bool mRealClock = false;
    SoftClockInputSeam* mSeam = nullptr;
    bool mInFrameHook = false;
    std::uint32_t mLooks = 0; // GetEvent calls since the last frame
    mutable std::uint32_t mLastNow = 0;
    std::uint64_t mRealStart = 0;
    std::deque<SoftInputEvent> mQueue;
    std::int32_t mCursorX = 320;
    std::int32_t mCursorY = 240;
};

#endif
