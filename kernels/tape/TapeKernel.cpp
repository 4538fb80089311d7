// TapeKernel.cpp - recording and replaying every kernel operation.
#include "TapeKernel.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <type_traits>

namespace {

const char* const kOpNames[] = {
#define QUINDLE_TAPE_NAME(R, name, ...) #name,
    QUINDLE_KERNEL_OPS(QUINDLE_TAPE_NAME)
#undef QUINDLE_TAPE_NAME
};
#define QUINDLE_TAPE_ARGS(R, name, params, args, encoding, answers, names) names,
const char* const kOpArgs[] = {QUINDLE_KERNEL_OPS(QUINDLE_TAPE_ARGS)};
#undef QUINDLE_TAPE_ARGS

// Lists longer than this keep only their first values: a call's record stays small.
constexpr int kMaxListed = 1024;

} // namespace

std::string TapeDescribeCall(std::uint8_t op, const std::vector<std::int64_t>& args)
{
    if (op >= kTapeOpCount)
        return "operation " + std::to_string(op) + "?";
    std::string out = kOpNames[op];
    out += '(';
    std::size_t at = 0;
    const char* names = kOpArgs[op];
    bool first = true;
    auto next = [&](std::int64_t* v) {
        if (at >= args.size())
            return false;
        *v = args[at++];
        return true;
    };
    while (*names && at < args.size()) {
        const char* comma = std::strchr(names, ',');
        std::string name(names, comma ? static_cast<std::size_t>(comma - names) : std::strlen(names));
        names = comma ? comma + 1 : names + std::strlen(names);
        out += first ? "" : ", ";
        first = false;
        std::int64_t v = 0, count = 0;
        if (name[0] == '$' || name[0] == '*' || name[0] == '#') {
            const char kind = name[0];
            out += name.substr(1) + (kind == '$' ? " \"" : " [");
            next(&count);
            for (std::int64_t i = 0; i < count && at < args.size(); i++) {
                next(&v);
                if (kind == '$') {
                    out += v >= 32 && v < 127 ? static_cast<char>(v) : '?';
                } else if (kind == '*') {
                    std::int64_t y = 0;
                    next(&y);
                    out += (i ? " (" : "(") + std::to_string(v) + "," + std::to_string(y) + ")";
                } else {
                    out += (i ? " " : "") + std::to_string(v);
                }
            }
            out += kind == '$' ? "\"" : "]";
        } else {
            next(&v);
            out += name + " " + std::to_string(v);
        }
    }
    for (; at < args.size(); at++)
        out += (first ? "" : ", ") + std::to_string(args[at]), first = false;
    return out + ")";
}

// One operation on its way through: the arguments are gathered, Go() checks
// them against the tape, the operation is forwarded, and the end of the
// scope files the call.
class TapeKernel::Call {
public:
    Call(TapeKernel& kernel, TapeOp op) : mKernel(kernel) { kernel.Begin(op); }
    ~Call() { mKernel.EndCall(); }

private:
    TapeKernel& mKernel;
};

bool TapeKernel::Record(const std::string& path, const TapeHeader& header, std::string* error)
{
    if (!mWriter.Open(path, header, error))
        return false;
    mMode = Mode::kRecord;
    return true;
}

void TapeKernel::Replay(TapeReader* reader)
{
    mReader = reader;
    mMode = Mode::kReplay;
    mNeedFrame = true;
}

void TapeKernel::Begin(TapeOp op)
{
    mCall.op = op;
    mCall.args.clear();
    mCall.answers.clear();
}

int TapeKernel::V(std::int64_t value)
{
    mCall.args.push_back(value);
    return 0;
}

int TapeKernel::Rect(const ZOR_Rect* rect)
{
    const ZOR_Rect r = rect ? *rect : ZOR_Rect(0, 0, 0, 0);
    return V(r.left), V(r.top), V(r.right), V(r.bottom);
}

int TapeKernel::Source(const KernelScreenItemSource* source)
{
    const KernelScreenItemSource none{};
    const KernelScreenItemSource& s = source ? *source : none;
    return V(s.kind), V(s.view), V(s.loop), V(s.cel), V(s.memId);
}

int TapeKernel::Item(const KernelScreenItemRecord* r)
{
    if (!r)
        return 0;
    const std::int32_t values[] = {r->planeId,        r->id,           r->source.kind,    r->source.view,
                                   r->source.loop,    r->source.cel,   r->source.memId,   r->pos.x,
                                   r->pos.y,          r->scale.scaleX, r->scale.scaleY,   r->scale.maxScale,
                                   r->scale.mode,     r->priority,     r->fixedPriority,  r->z,
                                   r->useInsetRect,   r->insetRect.left, r->insetRect.top, r->insetRect.right,
                                   r->insetRect.bottom};
    mCall.args.insert(mCall.args.end(), std::begin(values), std::end(values));
    return 0;
}

int TapeKernel::Plane(const KernelPlaneRecord* r)
{
    if (!r)
        return 0;
    const std::int32_t values[] = {r->id,         r->type,           r->color,          r->rect.left,
                                   r->rect.top,   r->rect.right,     r->rect.bottom,    r->mirror,
                                   r->picture,    r->priority,       r->vanishingPoint.x, r->vanishingPoint.y,
                                   r->pictureChanged};
    mCall.args.insert(mCall.args.end(), std::begin(values), std::end(values));
    return 0;
}

int TapeKernel::Points(const ZOR_Point* points, int count)
{
    const int n = points && count > 0 ? (count < kMaxListed ? count : kMaxListed) : 0;
    V(n);
    for (int i = 0; i < n; i++)
        V(points[i].x), V(points[i].y);
    return 0;
}

int TapeKernel::Ints(const int* values, int count)
{
    const int n = values && count > 0 ? (count < kMaxListed ? count : kMaxListed) : 0;
    V(n);
    for (int i = 0; i < n; i++)
        V(values[i]);
    return 0;
}

int TapeKernel::Text(const char* text)
{
    const std::size_t n = text ? strnlen(text, kMaxListed) : 0;
    V(static_cast<std::int64_t>(n));
    for (std::size_t i = 0; i < n; i++)
        V(static_cast<unsigned char>(text[i]));
    return 0;
}

std::string TapeKernel::Where() const
{
    std::uint32_t tick = mLastTicks;
    // The tick of a frame is the clock reading its GetTicks answered.
    if (mMode == Mode::kReplay)
        for (const TapeCall& c : mFrame.calls)
            if (c.op == kTapeOpGetTicks && !c.answers.empty()) {
                tick = static_cast<std::uint32_t>(c.answers[0]);
                break;
            }
    return "frame " + std::to_string(mFrameNumber + 1) + " (tick " + std::to_string(tick) + ")";
}

void TapeKernel::Halt(Stop why, const std::string& report)
{
    if (mStop)
        mStop(why, report, mStopData);
    std::fprintf(stderr, "%s\n", report.c_str());
    std::exit(why == Stop::kTapeEnded ? 5 : 4);
}

bool TapeKernel::LoadFrame()
{
    mNeedFrame = false;
    mPos = 0;
    mClockRun = mClockUsed = mFoundAt = 0;
    mLookups = 0;
    if (!mReader->Next(&mFrame)) {
        mFrame.Clear();
        mInPartial = true;
        return false;
    }
    mInPartial = mFrameNumber >= mReader->FrameCount();
    return true;
}

void TapeKernel::Go()
{
    mDepth++;
    if (mMode != Mode::kReplay)
        return;
    if (mNeedFrame)
        LoadFrame();
    const std::string call = std::to_string(mPos + 1);
    if (mPos >= mFrame.calls.size()) {
        if (mInPartial && !mReader->HasEnd())
            Halt(Stop::kTapeEnded, "the tape ends after frame " + std::to_string(mFrameNumber) + " (tick " +
                                       std::to_string(mLastTicks) + "), before its game did");
        Halt(Stop::kDiverged, "replay diverged at " + Where() + ", call " + call + ": expected " +
                                  (mInPartial ? std::string("the end of the run (") +
                                                    TapeEndingText(mReader->Ending()) + ")"
                                              : std::string("no more calls in the frame")) +
                                  ", got " + TapeDescribeCall(mCall.op, mCall.args));
    }
    const TapeCall& expected = mFrame.calls[mPos];
    if (expected.op != mCall.op || expected.args != mCall.args)
        Halt(Stop::kDiverged, "replay diverged at " + Where() + ", call " + call + ": expected " +
                                  TapeDescribeCall(expected.op, expected.args) + ", got " +
                                  TapeDescribeCall(mCall.op, mCall.args));
    mServe = &expected;
    mServeAt = 0;
    mPos++;
}

void TapeKernel::EndCall()
{
    mDepth--;
    const bool frameEnds = mCall.op == kTapeOpUpdateScreen;
    if (mMode == Mode::kRecord) {
        // The frame's calls are kept in slots that earlier frames filled, so
        // that a call is copied into storage it already has.
        if (mCallsUsed < mFrame.calls.size()) {
            TapeCall& slot = mFrame.calls[mCallsUsed];
            slot.op = mCall.op;
            slot.args.assign(mCall.args.begin(), mCall.args.end());
            slot.answers.assign(mCall.answers.begin(), mCall.answers.end());
        } else {
            mFrame.calls.push_back(mCall);
        }
        mCallsUsed++;
        if (frameEnds) {
            mFrame.calls.resize(mCallsUsed);
            if (!mWriter.WriteFrame(mFrame) && mWriteError.empty())
                mWriteError = "the tape could not be written after frame " + std::to_string(mFrameNumber);
            StartRecordedFrame();
        }
    }
    mServe = nullptr;
    if (frameEnds) {
        mFrameNumber++;
        mNeedFrame = true;
    }
}

std::int64_t TapeKernel::Live(std::int64_t value)
{
    if (mMode == Mode::kRecord)
        mCall.answers.push_back(value);
    else if (mMode == Mode::kReplay && mServe && mServeAt < mServe->answers.size())
        value = mServe->answers[mServeAt++];
    return value;
}

void TapeKernel::LiveOut(int* value)
{
    if (value)
        *value = static_cast<int>(Live(*value));
}

std::uint32_t TapeKernel::HostClock(std::uint32_t reading)
{
    if (mMode == Mode::kPass || !mDepth)
        return mMode == Mode::kReplay ? mLastClock : reading;
    if (mMode == Mode::kRecord) {
        if (!mFrame.clock.empty() && mFrame.clock.back().value == reading)
            mFrame.clock.back().count++;
        else
            mFrame.clock.push_back(TapeFrame::Run{1, reading});
        mLastClock = reading;
        return reading;
    }
    while (mClockRun < mFrame.clock.size() && mClockUsed >= mFrame.clock[mClockRun].count) {
        mClockRun++;
        mClockUsed = 0;
    }
    if (mClockRun < mFrame.clock.size()) {
        mClockUsed++;
        mLastClock = mFrame.clock[mClockRun].value;
    }
    return mLastClock;
}

bool TapeKernel::HostInput(bool found, TapeInputEvent* event)
{
    if (mMode == Mode::kPass || !mDepth)
        return mMode == Mode::kReplay ? false : found;
    const std::uint32_t lookup = mLookups++;
    if (mMode == Mode::kRecord) {
        mFrame.lookups = mLookups;
        if (found)
            mFrame.found.push_back(TapeFrame::Found{lookup, *event});
        return found;
    }
    if (mFoundAt < mFrame.found.size() && mFrame.found[mFoundAt].lookup == lookup) {
        *event = mFrame.found[mFoundAt++].event;
        return true;
    }
    return false;
}

bool TapeKernel::ReplayAtEnd() const
{
    // A run that ended with a report (a failed check, an error notice, a
    // crash) goes on into the calls after the last frame, to meet it again.
    return mMode == Mode::kReplay && mReader->HasEnd() && mReader->EndReport().empty() &&
           mFrameNumber >= mReader->FrameCount();
}

void TapeKernel::StartRecordedFrame()
{
    mCallsUsed = 0;
    mFrame.clock.clear();
    mFrame.found.clear();
    mFrame.lookups = 0;
    mLookups = 0;
}

int TapeKernel::Finish(TapeEnding ending, std::string* report)
{
    if (mMode == Mode::kRecord) {
        mFrame.calls.resize(mCallsUsed);
        const bool ok = mWriter.IsOpen() && mWriter.WriteEnd(mFrame, ending, mFrameNumber, "");
        mMode = Mode::kPass;
        if (!ok || !mWriteError.empty()) {
            *report = mWriteError.empty() ? "the tape could not be written at its end" : mWriteError;
            return 2;
        }
        return 0;
    }
    if (mMode != Mode::kReplay)
        return 0;
    if (mNeedFrame)
        LoadFrame();
    mMode = Mode::kPass;
    if (!mInPartial) {
        *report = "replay diverged at " + Where() + ": the run ended (" + TapeEndingText(ending) +
                  ") where the tape goes on to frame " + std::to_string(mReader->FrameCount());
        return 4;
    }
    if (mPos < mFrame.calls.size()) {
        *report = "replay diverged at " + Where() + ", call " + std::to_string(mPos + 1) + ": expected " +
                  TapeDescribeCall(mFrame.calls[mPos].op, mFrame.calls[mPos].args) + ", got the end of the run (" +
                  TapeEndingText(ending) + ")";
        return 4;
    }
    if (!mReader->HasEnd()) {
        *report = "the tape ends after frame " + std::to_string(mFrameNumber) + " (tick " +
                  std::to_string(mLastTicks) + "), before its game did";
        return 5;
    }
    const TapeEnding recorded = mReader->Ending();
    // A run that ended with a report (a failed check, an error notice, a
    // crash) must end with it again.
    const bool reported = !mReader->EndReport().empty();
    if (reported || (recorded == TapeEnding::kQuit) != (ending == TapeEnding::kQuit)) {
        *report = "replay diverged at " + Where() + ": the recorded run ended because " +
                  TapeEndingText(recorded) + (reported ? " (" + mReader->EndReport() + ")" : std::string()) +
                  ", the replay because " + TapeEndingText(ending);
        return 4;
    }
    return 0;
}

bool TapeKernel::EndNow(TapeEnding ending, const std::string& report)
{
    if (mMode == Mode::kRecord) {
        mFrame.calls.resize(mCallsUsed);
        // Ended inside an operation (a modal loop's GetEvent, a crash in the
        // kernel): that call is on the tape too, as a replay has made it when
        // it gets here.
        if (mDepth > 0)
            mFrame.calls.push_back(mCall);
        mWriter.WriteEnd(mFrame, ending, mFrameNumber, report);
        mMode = Mode::kPass;
        return true;
    }
    if (mMode != Mode::kReplay)
        return false;
    if (mNeedFrame)
        LoadFrame();
    return mInPartial && mPos == mFrame.calls.size() && mReader->HasEnd() && mReader->Ending() == ending &&
           mReader->EndReport() == report;
}

// ----- the operations -----

template <typename R, typename Forward>
R TapeKernel::Answer(Forward forward, std::initializer_list<AnswerPart> answers)
{
    if constexpr (std::is_void<R>::value) {
        forward();
        for (const AnswerPart& answer : answers)
            Serve(answer);
    } else {
        R result = forward();
        for (const AnswerPart& answer : answers) {
            if constexpr (std::is_arithmetic<R>::value) {
                if (answer.kind == AnswerPart::kResult)
                    result = static_cast<R>(Live(result));
                else if (answer.kind == AnswerPart::kTick)
                    mLastTicks = static_cast<std::uint32_t>(result);
            }
            Serve(answer);
        }
        return result;
    }
}

void TapeKernel::Serve(const AnswerPart& answer)
{
    if (answer.kind == AnswerPart::kOut) {
        LiveOut(static_cast<int*>(answer.at));
    } else if (answer.kind == AnswerPart::kEvent && answer.at) {
        KernelEventRecord* r = static_cast<KernelEventRecord*>(answer.at);
        r->type = static_cast<std::uint16_t>(Live(r->type));
        r->message = static_cast<std::uint32_t>(Live(r->message));
        r->modifiers = static_cast<std::uint16_t>(Live(r->modifiers));
        r->where.x = static_cast<std::int32_t>(Live(r->where.x));
        r->where.y = static_cast<std::int32_t>(Live(r->where.y));
        r->extra = static_cast<std::uint32_t>(Live(r->extra));
    }
}

// Every operation: its arguments are encoded, checked against the tape
// (replaying), forwarded, and its answers kept or served.
#define QUINDLE_TAPE_WRAP(R, name, params, args, encoding, answers, names)                                            \
    R TapeKernel::name params                                                                                          \
    {                                                                                                                  \
        Call call(*this, kTapeOp##name);                                                                               \
        (void)std::initializer_list<int>{QUINDLE_KERNEL_UNPAREN encoding};                                             \
        Go();                                                                                                          \
        return Answer<R>([&] { return mInner.name args; }, {QUINDLE_KERNEL_UNPAREN answers});                          \
    }
QUINDLE_KERNEL_OPS(QUINDLE_TAPE_WRAP)
#undef QUINDLE_TAPE_WRAP
