// TapeKernel.h - a kernel that wraps another and records a run on a tape, or
// replays a tape through it.
//
// Recording, every operation is forwarded and written down: its arguments as
// values (what a record holds, never its address) and, for the operations
// whose answers depend on time, input or chance, the answers (clock readings,
// events, random numbers, and the states that move with real time: samples,
// speech, robots, transitions, movies). A frame ends with UpdateScreen; each
// frame reaches the tape before the next begins, so a run that is killed
// leaves a tape of every frame it finished.
//
// Replaying, every operation is still forwarded (whatever follows from the
// game folder and the calls, drawing among it, comes from the wrapped kernel)
// and compared with the tape's call at the same place of the same frame; the
// answers that moved with time, input or chance are served from the tape. At
// the first call that differs, the replay stops with a report naming the
// frame, its tick, the call's place in the frame, the call expected and the
// call made.
//
// The wrapped kernel's own clock and input (a host that reads its clock or
// its input queue inside an operation: a movie played to its end inside one
// call, transitions and robots on the host's clock) are recorded and served
// through HostClock and HostInput, which the host calls for every reading.
#ifndef QUINDLE_TAPE_KERNEL_H
#define QUINDLE_TAPE_KERNEL_H

#include "kernel.h"

#include "TapeFormat.h"
#include "TapeOps.h"

#include <initializer_list>
#include <string>

class TapeKernel : public KernelServices {
public:
    enum class Stop { kDiverged, kTapeEnded };
    // Called when a replay cannot go on; it ends the process (by default the
    // report goes to the error stream and the process exits with 4 for a
    // divergence, 5 for a tape that ended).
    typedef void (*StopHandler)(Stop why, const std::string& report, void* data);

    explicit TapeKernel(KernelServices& inner) : mInner(inner) {}
    TapeKernel(const TapeKernel&) = delete;
    TapeKernel& operator=(const TapeKernel&) = delete;

    // Starts recording to a new tape. False (with `error`) when it cannot be written.
    bool Record(const std::string& path, const TapeHeader& header, std::string* error);
    // Starts replaying a tape that `reader` has read; the reader must outlive the replay.
    void Replay(TapeReader* reader);
    void SetStopHandler(StopHandler handler, void* data)
    {
        mStop = handler;
        mStopData = data;
    }
    bool Recording() const { return mMode == Mode::kRecord; }
    bool Replaying() const { return mMode == Mode::kReplay; }

    // ----- the host's own clock and input -----
    // True while an operation is being forwarded.
    bool InCall() const { return mDepth > 0; }
    // The host read its clock and got `reading`: the reading to use.
    std::uint32_t HostClock(std::uint32_t reading);
    // The host looked at its input queue and found `*event` (when `found`):
    // whether to take an event, and which.
    bool HostInput(bool found, TapeInputEvent* event);

    // ----- the end of a run -----
    // Replaying: every frame of the tape has been played (the run may end here).
    bool ReplayAtEnd() const;
    // The run is over. Recording: writes the calls after the last frame and
    // how the run ended; returns 0, or 2 with `report` set when the tape could
    // not be written. Replaying: returns 0 when the run ended where and as the
    // recorded one did, 4 when it did not and 5 when the tape stops short,
    // with `report` set.
    int Finish(TapeEnding ending, std::string* report);
    // A check of the library failed with this report. Recording: ends the
    // tape there. Replaying: true when the recorded run failed the same check
    // at the same call.
    bool FailedCheck(const std::string& report) { return EndNow(TapeEnding::kFailedCheck, report); }
    // The run ends now, in the middle of a frame perhaps (a failed check, an
    // error notice, a crash, a kill), with this report. Recording: writes the
    // calls so far and the end, and closes the tape. Replaying: true when the
    // recorded run ended the same way, with the same report, at the same call.
    bool EndNow(TapeEnding ending, const std::string& report);

    std::uint32_t Frames() const { return mFrameNumber; }
    std::uint32_t LastTick() const { return mLastTicks; }

    // ----- KernelServices: each forwarded as its row in kernel_ops.h says -----
    QUINDLE_KERNEL_OPS(QUINDLE_KERNEL_OVERRIDE)

private:
    enum class Mode { kPass, kRecord, kReplay };
    class Call;
    friend class Call;

    void Begin(TapeOp op);
    // The tape encodings of kernel_ops.h: each appends the values it keeps to
    // the call (the int returned lets a row's encodings be listed in order).
    int V(std::int64_t value);
    int Given(const void* pointer) { return V(pointer != nullptr); }
    int Pointee(const int* value) { return V(value ? *value : -1); }
    int At(const ZOR_Point* point) { return point ? At(*point) : (V(0), V(0)); }
    int At(ZOR_Point point) { return V(point.x), V(point.y); }
    int Rect(const ZOR_Rect* rect);
    int Source(const KernelScreenItemSource* source);
    int Scale(ScaleInfo scale) { return V(scale.scaleX), V(scale.scaleY), V(scale.maxScale), V(scale.mode); }
    int Plane(const KernelPlaneRecord* r);
    int PlaneId(const KernelPlaneRecord* r) { return V(r ? r->id : 0); }
    int Item(const KernelScreenItemRecord* r);
    int ItemIds(const KernelScreenItemRecord* r) { return V(r ? r->planeId : 0), V(r ? r->id : 0); }
    int Points(const ZOR_Point* points, int count);
    int Ints(const int* values, int count);
    int Text(const char* text);
    // The answers of kernel_ops.h, taken from the wrapped kernel's call and
    // kept (recording) or served from the tape (replaying).
    struct AnswerPart {
        enum Kind { kResult, kTick, kOut, kEvent } kind;
        void* at;
    };
    static constexpr AnswerPart Result{AnswerPart::kResult, nullptr};
    static constexpr AnswerPart Tick{AnswerPart::kTick, nullptr};
    static AnswerPart Out(int* value) { return {AnswerPart::kOut, value}; }
    static AnswerPart Event(KernelEventRecord* record) { return {AnswerPart::kEvent, record}; }
    template <typename R, typename Forward> R Answer(Forward forward, std::initializer_list<AnswerPart> answers);
    void Serve(const AnswerPart& answer);
    void Go();
    void EndCall();
    std::int64_t Live(std::int64_t value);
    void LiveOut(int* value);
    bool LoadFrame();
    void StartRecordedFrame();
    std::string Where() const;
    [[noreturn]] void Halt(Stop why, const std::string& report);

    KernelServices& mInner;
    Mode mMode = Mode::kPass;
    int mDepth = 0;
    TapeCall mCall;
    TapeFrame mFrame;                // recording: the frame so far; replaying: the frame expected
    std::size_t mCallsUsed = 0;      // recording: calls of the frame so far
    std::uint32_t mFrameNumber = 0;  // frames finished (UpdateScreen calls)
    std::uint32_t mLastTicks = 0;
    std::uint32_t mLastClock = 0;
    std::string mWriteError;
    TapeWriter mWriter;
    TapeReader* mReader = nullptr;
    bool mNeedFrame = true;          // replaying: the next call starts a frame
    bool mInPartial = false;         // replaying: the frame is the calls after the tape's last frame
    std::size_t mPos = 0;            // replaying: calls of the frame done
    const TapeCall* mServe = nullptr;
    std::size_t mServeAt = 0;
    std::size_t mClockRun = 0, mClockUsed = 0, mFoundAt = 0;
    std::uint32_t mLookups = 0;
    StopHandler mStop = nullptr;
    void* mStopData = nullptr;
};

#endif
