// TapeKernel.cpp - recording and replaying every kernel operation.
#include "TapeKernel.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

static_assert(kTapeOpCount == 131, "every operation of the interface has its place on a tape");

namespace {

const char* const kOpNames[] = {
#define QUINDLE_TAPE_NAME(name, args) #name,
    QUINDLE_TAPE_OPS(QUINDLE_TAPE_NAME)
#undef QUINDLE_TAPE_NAME
};
const char* const kOpArgs[] = {
#define QUINDLE_TAPE_ARGS(name, args) args,
    QUINDLE_TAPE_OPS(QUINDLE_TAPE_ARGS)
#undef QUINDLE_TAPE_ARGS
};

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

#define TAPE_CALL(name) Call call(*this, kTapeOp##name)

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

void TapeKernel::ItemArgs(const KernelScreenItemRecord* r)
{
    if (!r)
        return;
    const std::int32_t values[] = {r->planeId,        r->id,           r->source.kind,    r->source.view,
                                   r->source.loop,    r->source.cel,   r->source.memId,   r->pos.x,
                                   r->pos.y,          r->scale.scaleX, r->scale.scaleY,   r->scale.maxScale,
                                   r->scale.mode,     r->priority,     r->fixedPriority,  r->z,
                                   r->useInsetRect,   r->insetRect.left, r->insetRect.top, r->insetRect.right,
                                   r->insetRect.bottom};
    mCall.args.insert(mCall.args.end(), std::begin(values), std::end(values));
}

void TapeKernel::PlaneArgs(const KernelPlaneRecord* r)
{
    if (!r)
        return;
    const std::int32_t values[] = {r->id,         r->type,           r->color,          r->rect.left,
                                   r->rect.top,   r->rect.right,     r->rect.bottom,    r->mirror,
                                   r->picture,    r->priority,       r->vanishingPoint.x, r->vanishingPoint.y,
                                   r->pictureChanged};
    mCall.args.insert(mCall.args.end(), std::begin(values), std::end(values));
}

void TapeKernel::PointArgs(const ZOR_Point* points, int count)
{
    const int n = points && count > 0 ? (count < kMaxListed ? count : kMaxListed) : 0;
    Arg(n);
    for (int i = 0; i < n; i++) {
        Arg(points[i].x);
        Arg(points[i].y);
    }
}

void TapeKernel::StringArg(const char* text)
{
    const std::size_t n = text ? strnlen(text, kMaxListed) : 0;
    Arg(static_cast<std::int64_t>(n));
    for (std::size_t i = 0; i < n; i++)
        Arg(static_cast<unsigned char>(text[i]));
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

int TapeKernel::GetActiveSampleCount()
{
    TAPE_CALL(GetActiveSampleCount);
    Go();
    return static_cast<int>(Live(mInner.GetActiveSampleCount()));
}

int TapeKernel::IsAudioInstalled()
{
    TAPE_CALL(IsAudioInstalled);
    Go();
    return mInner.IsAudioInstalled();
}

int TapeKernel::PreloadSample(int iSample)
{
    TAPE_CALL(PreloadSample);
    Arg(iSample);
    Go();
    return mInner.PreloadSample(iSample);
}

void TapeKernel::PlaySampleAlternate(int iSample, int iQualifier, int iVolume, int iTag)
{
    TAPE_CALL(PlaySampleAlternate);
    Arg(iSample), Arg(iQualifier), Arg(iVolume), Arg(iTag);
    Go();
    mInner.PlaySampleAlternate(iSample, iQualifier, iVolume, iTag);
}

int TapeKernel::PlayMessageAudio(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, int iUnused1,
                                 int iVolume, int iUnused2)
{
    TAPE_CALL(PlayMessageAudio);
    Arg(iKey1), Arg(iKey2), Arg(iKey3), Arg(iKey4), Arg(iSequence), Arg(iUnused1), Arg(iVolume), Arg(iUnused2);
    Go();
    return mInner.PlayMessageAudio(iKey1, iKey2, iKey3, iKey4, iSequence, iUnused1, iVolume, iUnused2);
}

void TapeKernel::PlaySample(int iSample, int iQualifier, int iVolume, int iTag, int iUnused)
{
    TAPE_CALL(PlaySample);
    Arg(iSample), Arg(iQualifier), Arg(iVolume), Arg(iTag), Arg(iUnused);
    Go();
    mInner.PlaySample(iSample, iQualifier, iVolume, iTag, iUnused);
}

void TapeKernel::StopAllSamples()
{
    TAPE_CALL(StopAllSamples);
    Go();
    mInner.StopAllSamples();
}

void TapeKernel::StopMessageAudio(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence)
{
    TAPE_CALL(StopMessageAudio);
    Arg(iKey1), Arg(iKey2), Arg(iKey3), Arg(iKey4), Arg(iSequence);
    Go();
    mInner.StopMessageAudio(iKey1, iKey2, iKey3, iKey4, iSequence);
}

void TapeKernel::StopSample(int iSample, int iQualifier)
{
    TAPE_CALL(StopSample);
    Arg(iSample), Arg(iQualifier);
    Go();
    mInner.StopSample(iSample, iQualifier);
}

int TapeKernel::PauseAllSamples()
{
    TAPE_CALL(PauseAllSamples);
    Go();
    return static_cast<int>(Live(mInner.PauseAllSamples()));
}

int TapeKernel::PauseSample(int iSample, int iQualifier)
{
    TAPE_CALL(PauseSample);
    Arg(iSample), Arg(iQualifier);
    Go();
    return static_cast<int>(Live(mInner.PauseSample(iSample, iQualifier)));
}

int TapeKernel::ResumeAllSamples()
{
    TAPE_CALL(ResumeAllSamples);
    Go();
    return static_cast<int>(Live(mInner.ResumeAllSamples()));
}

int TapeKernel::ResumeSample(int iSample, int iQualifier)
{
    TAPE_CALL(ResumeSample);
    Arg(iSample), Arg(iQualifier);
    Go();
    return static_cast<int>(Live(mInner.ResumeSample(iSample, iQualifier)));
}

int TapeKernel::GetGlobalDuration(int* piValue)
{
    TAPE_CALL(GetGlobalDuration);
    Arg(piValue != nullptr);
    Go();
    const int result = static_cast<int>(Live(mInner.GetGlobalDuration(piValue)));
    LiveOut(piValue);
    return result;
}

void TapeKernel::GetSampleDuration(int iSample, int* piDuration, int iTag)
{
    TAPE_CALL(GetSampleDuration);
    Arg(iSample), Arg(piDuration != nullptr), Arg(iTag);
    Go();
    mInner.GetSampleDuration(iSample, piDuration, iTag);
}

void TapeKernel::SetSampleRate(int iRate)
{
    TAPE_CALL(SetSampleRate);
    Arg(iRate);
    Go();
    mInner.SetSampleRate(iRate);
}

void TapeKernel::DefaultSampleRate()
{
    TAPE_CALL(DefaultSampleRate);
    Go();
    mInner.DefaultSampleRate();
}

int TapeKernel::GetSampleRate()
{
    TAPE_CALL(GetSampleRate);
    Go();
    return mInner.GetSampleRate();
}

void TapeKernel::SetSampleBits(int iBits)
{
    TAPE_CALL(SetSampleBits);
    Arg(iBits);
    Go();
    mInner.SetSampleBits(iBits);
}

int TapeKernel::GetSampleBits()
{
    TAPE_CALL(GetSampleBits);
    Go();
    return mInner.GetSampleBits();
}

void TapeKernel::SetChannelCount(int iChannels)
{
    TAPE_CALL(SetChannelCount);
    Arg(iChannels);
    Go();
    mInner.SetChannelCount(iChannels);
}

void TapeKernel::DefaultChannelCount()
{
    TAPE_CALL(DefaultChannelCount);
    Go();
    mInner.DefaultChannelCount();
}

int TapeKernel::GetChannelCount()
{
    TAPE_CALL(GetChannelCount);
    Go();
    return mInner.GetChannelCount();
}

int TapeKernel::GetAutoVolAdjust()
{
    TAPE_CALL(GetAutoVolAdjust);
    Go();
    return mInner.GetAutoVolAdjust();
}

void TapeKernel::SetAutoVolAdjust(int iValue)
{
    TAPE_CALL(SetAutoVolAdjust);
    Arg(iValue);
    Go();
    mInner.SetAutoVolAdjust(iValue);
}

void TapeKernel::DistortAllSamples(int iValue)
{
    TAPE_CALL(DistortAllSamples);
    Arg(iValue);
    Go();
    mInner.DistortAllSamples(iValue);
}

void TapeKernel::DistortSample(int iSample, int iValue1, int iValue2)
{
    TAPE_CALL(DistortSample);
    Arg(iSample), Arg(iValue1), Arg(iValue2);
    Go();
    mInner.DistortSample(iSample, iValue1, iValue2);
}

int TapeKernel::GetGlobalVolume()
{
    TAPE_CALL(GetGlobalVolume);
    Go();
    return mInner.GetGlobalVolume();
}

int TapeKernel::IsMessageAudioPlaying(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, int* piUnused)
{
    TAPE_CALL(IsMessageAudioPlaying);
    Arg(iKey1), Arg(iKey2), Arg(iKey3), Arg(iKey4), Arg(iSequence);
    Go();
    return static_cast<int>(Live(mInner.IsMessageAudioPlaying(iKey1, iKey2, iKey3, iKey4, iSequence, piUnused)));
}

int TapeKernel::GetSampleVolume(int iSample, int* piVolume, int iTag)
{
    TAPE_CALL(GetSampleVolume);
    Arg(iSample), Arg(piVolume != nullptr), Arg(iTag);
    Go();
    const int result = static_cast<int>(Live(mInner.GetSampleVolume(iSample, piVolume, iTag)));
    LiveOut(piVolume);
    return result;
}

void TapeKernel::SetGlobalVolume(int iVolume)
{
    TAPE_CALL(SetGlobalVolume);
    Arg(iVolume);
    Go();
    mInner.SetGlobalVolume(iVolume);
}

void TapeKernel::SetSampleVolume(int iSample, int iVolume, int iValue)
{
    TAPE_CALL(SetSampleVolume);
    Arg(iSample), Arg(iVolume), Arg(iValue);
    Go();
    mInner.SetSampleVolume(iSample, iVolume, iValue);
}

int TapeKernel::FadeSample(int iSample, int iTargetVolume, int iValue1, int iValue2, int iValue3, int iTag)
{
    TAPE_CALL(FadeSample);
    Arg(iSample), Arg(iTargetVolume), Arg(iValue1), Arg(iValue2), Arg(iValue3), Arg(iTag);
    Go();
    return static_cast<int>(Live(mInner.FadeSample(iSample, iTargetVolume, iValue1, iValue2, iValue3, iTag)));
}

int TapeKernel::CheckNoise()
{
    TAPE_CALL(CheckNoise);
    Go();
    return static_cast<int>(Live(mInner.CheckNoise()));
}

void TapeKernel::PanSample(int iSample, int iPan, int iValue)
{
    TAPE_CALL(PanSample);
    Arg(iSample), Arg(iPan), Arg(iValue);
    Go();
    mInner.PanSample(iSample, iPan, iValue);
}

void TapeKernel::StopPanSample(int iSample, int iValue)
{
    TAPE_CALL(StopPanSample);
    Arg(iSample), Arg(iValue);
    Go();
    mInner.StopPanSample(iSample, iValue);
}

int TapeKernel::GetDACCritical()
{
    TAPE_CALL(GetDACCritical);
    Go();
    return mInner.GetDACCritical();
}

void TapeKernel::SetDACCritical(int iValue)
{
    TAPE_CALL(SetDACCritical);
    Arg(iValue);
    Go();
    mInner.SetDACCritical(iValue);
}

void TapeKernel::LoadResource(int iType, int* piNumber, int iValue)
{
    TAPE_CALL(LoadResource);
    Arg(iType), Arg(piNumber ? *piNumber : -1), Arg(iValue);
    Go();
    mInner.LoadResource(iType, piNumber, iValue);
}

void TapeKernel::LockResource(int iType, int iNumber)
{
    TAPE_CALL(LockResource);
    Arg(iType), Arg(iNumber);
    Go();
    mInner.LockResource(iType, iNumber);
}

void TapeKernel::UnlockResource(int iType, int iNumber)
{
    TAPE_CALL(UnlockResource);
    Arg(iType), Arg(iNumber);
    Go();
    mInner.UnlockResource(iType, iNumber);
}

int TapeKernel::ResourceExists(int iType, int iNumber)
{
    TAPE_CALL(ResourceExists);
    Arg(iType), Arg(iNumber);
    Go();
    return mInner.ResourceExists(iType, iNumber);
}

int TapeKernel::GetNowSeenRect(std::int32_t lPlaneId, std::int32_t lScreenItemId, ZOR_Rect* pRect)
{
    TAPE_CALL(GetNowSeenRect);
    Arg(lPlaneId), Arg(lScreenItemId);
    Go();
    return mInner.GetNowSeenRect(lPlaneId, lScreenItemId, pRect);
}

int TapeKernel::NumLoops(int iView)
{
    TAPE_CALL(NumLoops);
    Arg(iView);
    Go();
    return mInner.NumLoops(iView);
}

int TapeKernel::NumCels(std::uint32_t uView, int iLoop)
{
    TAPE_CALL(NumCels);
    Arg(uView), Arg(iLoop);
    Go();
    return mInner.NumCels(uView, iLoop);
}

int TapeKernel::TopPlanePriority()
{
    TAPE_CALL(TopPlanePriority);
    Go();
    return mInner.TopPlanePriority();
}

int TapeKernel::TopScreenItemPriority(std::int32_t lPlaneId)
{
    TAPE_CALL(TopScreenItemPriority);
    Arg(lPlaneId);
    Go();
    return mInner.TopScreenItemPriority(lPlaneId);
}

int TapeKernel::ScreenItemOnPoint(ZOR_Point* pPoint, std::int32_t lPlaneId, std::int32_t lScreenItemId,
                                  int fCheckSkip)
{
    TAPE_CALL(ScreenItemOnPoint);
    Arg(pPoint ? pPoint->x : 0), Arg(pPoint ? pPoint->y : 0), Arg(lPlaneId), Arg(lScreenItemId), Arg(fCheckSkip);
    Go();
    return mInner.ScreenItemOnPoint(pPoint, lPlaneId, lScreenItemId, fCheckSkip);
}

void TapeKernel::AddScreenItem(KernelScreenItemRecord* pRecord)
{
    TAPE_CALL(AddScreenItem);
    ItemArgs(pRecord);
    Go();
    mInner.AddScreenItem(pRecord);
}

void TapeKernel::DeleteScreenItem(KernelScreenItemRecord* pRecord)
{
    TAPE_CALL(DeleteScreenItem);
    Arg(pRecord ? pRecord->planeId : 0), Arg(pRecord ? pRecord->id : 0);
    Go();
    mInner.DeleteScreenItem(pRecord);
}

void TapeKernel::UpdateScreenItem(KernelScreenItemRecord* pRecord)
{
    TAPE_CALL(UpdateScreenItem);
    ItemArgs(pRecord);
    Go();
    mInner.UpdateScreenItem(pRecord);
}

std::int32_t TapeKernel::AddPolygon(std::int32_t lPlaneId, ZOR_Point* pPoints, int iCount, int iPriority,
                                    int iColor, int iStyle, int iPattern, int iThickness, int fClosed)
{
    TAPE_CALL(AddPolygon);
    Arg(lPlaneId);
    PointArgs(pPoints, iCount);
    Arg(iPriority), Arg(iColor), Arg(iStyle), Arg(iPattern), Arg(iThickness), Arg(fClosed);
    Go();
    return mInner.AddPolygon(lPlaneId, pPoints, iCount, iPriority, iColor, iStyle, iPattern, iThickness, fClosed);
}

void TapeKernel::DeletePolygon(std::int32_t lPlaneId, std::int32_t lPolygonId)
{
    TAPE_CALL(DeletePolygon);
    Arg(lPlaneId), Arg(lPolygonId);
    Go();
    mInner.DeletePolygon(lPlaneId, lPolygonId);
}

void TapeKernel::UpdatePolygon(std::int32_t lPlaneId, std::int32_t lPolygonId, ZOR_Point* pPoints, int iCount,
                               int iPriority, int iColor, int iStyle, int iPattern, int iThickness, int fClosed)
{
    TAPE_CALL(UpdatePolygon);
    Arg(lPlaneId), Arg(lPolygonId);
    PointArgs(pPoints, iCount);
    Arg(iPriority), Arg(iColor), Arg(iStyle), Arg(iPattern), Arg(iThickness), Arg(fClosed);
    Go();
    mInner.UpdatePolygon(lPlaneId, lPolygonId, pPoints, iCount, iPriority, iColor, iStyle, iPattern, iThickness,
                         fClosed);
}

void TapeKernel::UpdateScreen(int fFlag)
{
    TAPE_CALL(UpdateScreen);
    Arg(fFlag);
    Go();
    mInner.UpdateScreen(fFlag);
}

void TapeKernel::AddPlane(KernelPlaneRecord* pRecord)
{
    TAPE_CALL(AddPlane);
    PlaneArgs(pRecord);
    Go();
    mInner.AddPlane(pRecord);
}

void TapeKernel::DeletePlane(std::int32_t lPlaneId)
{
    TAPE_CALL(DeletePlane);
    Arg(lPlaneId);
    Go();
    mInner.DeletePlane(lPlaneId);
}

void TapeKernel::UpdatePlane(KernelPlaneRecord* pRecord)
{
    TAPE_CALL(UpdatePlane);
    PlaneArgs(pRecord);
    Go();
    mInner.UpdatePlane(pRecord);
}

void TapeKernel::AddPicAt(std::int32_t lPlaneId, int iPicture, int x, int y, int fMirror, int fDeleteCopy)
{
    TAPE_CALL(AddPicAt);
    Arg(lPlaneId), Arg(iPicture), Arg(x), Arg(y), Arg(fMirror), Arg(fDeleteCopy);
    Go();
    mInner.AddPicAt(lPlaneId, iPicture, x, y, fMirror, fDeleteCopy);
}

void TapeKernel::SetShowStyle(std::int32_t lPlaneId, int iStyle, int iSpeed, int iColor, int fAnimate,
                              int fUseReferenceFrame, int iToFrom, int* piArray, int iArraySize, int iDivisions)
{
    TAPE_CALL(SetShowStyle);
    Arg(lPlaneId), Arg(iStyle), Arg(iSpeed), Arg(iColor), Arg(fAnimate), Arg(fUseReferenceFrame), Arg(iToFrom);
    const int listed = piArray && iArraySize > 0 ? (iArraySize < kMaxListed ? iArraySize : kMaxListed) : 0;
    Arg(listed);
    for (int i = 0; i < listed; i++)
        Arg(piArray[i]);
    Arg(iArraySize), Arg(iDivisions);
    Go();
    mInner.SetShowStyle(lPlaneId, iStyle, iSpeed, iColor, fAnimate, fUseReferenceFrame, iToFrom, piArray,
                        iArraySize, iDivisions);
}

int TapeKernel::ShowStylePercentComplete(std::int32_t lPlaneId)
{
    TAPE_CALL(ShowStylePercentComplete);
    Arg(lPlaneId);
    Go();
    return static_cast<int>(Live(mInner.ShowStylePercentComplete(lPlaneId)));
}

void TapeKernel::SetScroll(std::int32_t lPlaneId, int iStepX, int iStepY, int iPicture, int fAnimate, int iTicks,
                           int fMirror)
{
    TAPE_CALL(SetScroll);
    Arg(lPlaneId), Arg(iStepX), Arg(iStepY), Arg(iPicture), Arg(fAnimate), Arg(iTicks), Arg(fMirror);
    Go();
    mInner.SetScroll(lPlaneId, iStepX, iStepY, iPicture, fAnimate, iTicks, fMirror);
}

void TapeKernel::MovePlaneItems(std::int32_t lPlaneId, int iDeltaX, int iDeltaY, int fMovePictures)
{
    TAPE_CALL(MovePlaneItems);
    Arg(lPlaneId), Arg(iDeltaX), Arg(iDeltaY), Arg(fMovePictures);
    Go();
    mInner.MovePlaneItems(lPlaneId, iDeltaX, iDeltaY, fMovePictures);
}

void TapeKernel::InitRobot(std::uint32_t uRobot, std::int32_t lPlaneId, int iPriority, int x, int y, int iValue)
{
    TAPE_CALL(InitRobot);
    Arg(uRobot), Arg(lPlaneId), Arg(iPriority), Arg(x), Arg(y), Arg(iValue);
    Go();
    mInner.InitRobot(uRobot, lPlaneId, iPriority, x, y, iValue);
}

void TapeKernel::PrepareRobot(int iValue1, int iValue2, int iValue3, int iValue4)
{
    TAPE_CALL(PrepareRobot);
    Arg(iValue1), Arg(iValue2), Arg(iValue3), Arg(iValue4);
    Go();
    mInner.PrepareRobot(iValue1, iValue2, iValue3, iValue4);
}

void TapeKernel::PlayRobot()
{
    TAPE_CALL(PlayRobot);
    Go();
    mInner.PlayRobot();
}

void TapeKernel::PauseRobot()
{
    TAPE_CALL(PauseRobot);
    Go();
    mInner.PauseRobot();
}

void TapeKernel::SetRobotPriority(int iPriority)
{
    TAPE_CALL(SetRobotPriority);
    Arg(iPriority);
    Go();
    mInner.SetRobotPriority(iPriority);
}

int TapeKernel::IsRobotDone()
{
    TAPE_CALL(IsRobotDone);
    Go();
    return static_cast<int>(Live(mInner.IsRobotDone()));
}

int TapeKernel::IsRobotPlaying()
{
    TAPE_CALL(IsRobotPlaying);
    Go();
    return static_cast<int>(Live(mInner.IsRobotPlaying()));
}

void TapeKernel::TerminateRobot()
{
    TAPE_CALL(TerminateRobot);
    Go();
    mInner.TerminateRobot();
}

std::uint32_t TapeKernel::GetRobotSignal()
{
    TAPE_CALL(GetRobotSignal);
    Go();
    return static_cast<std::uint32_t>(Live(mInner.GetRobotSignal()));
}

int TapeKernel::GetMessage(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, char* pBuffer,
                           int iBufferSize)
{
    TAPE_CALL(GetMessage);
    Arg(iKey1), Arg(iKey2), Arg(iKey3), Arg(iKey4), Arg(iSequence), Arg(iBufferSize);
    Go();
    return mInner.GetMessage(iKey1, iKey2, iKey3, iKey4, iSequence, pBuffer, iBufferSize);
}

int TapeKernel::GetNextMessage(char* pBuffer, int iBufferSize)
{
    TAPE_CALL(GetNextMessage);
    Arg(iBufferSize);
    Go();
    return mInner.GetNextMessage(pBuffer, iBufferSize);
}

int TapeKernel::GetMessageSize(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, int* piSize)
{
    TAPE_CALL(GetMessageSize);
    Arg(iKey1), Arg(iKey2), Arg(iKey3), Arg(iKey4), Arg(iSequence);
    Go();
    return mInner.GetMessageSize(iKey1, iKey2, iKey3, iKey4, iSequence, piSize);
}

int TapeKernel::GetNextMessageSize(int* piSize)
{
    TAPE_CALL(GetNextMessageSize);
    Go();
    return mInner.GetNextMessageSize(piSize);
}

void TapeKernel::GetLastMessageKeys(int* piKeys)
{
    TAPE_CALL(GetLastMessageKeys);
    Go();
    mInner.GetLastMessageKeys(piKeys);
}

void TapeKernel::GetEvent(std::uint32_t uMask, KernelEventRecord* pRecord)
{
    TAPE_CALL(GetEvent);
    Arg(uMask);
    Go();
    mInner.GetEvent(uMask, pRecord);
    if (!pRecord)
        return;
    pRecord->type = static_cast<std::uint16_t>(Live(pRecord->type));
    pRecord->message = static_cast<std::uint32_t>(Live(pRecord->message));
    pRecord->modifiers = static_cast<std::uint16_t>(Live(pRecord->modifiers));
    pRecord->where.x = static_cast<std::int32_t>(Live(pRecord->where.x));
    pRecord->where.y = static_cast<std::int32_t>(Live(pRecord->where.y));
    pRecord->extra = static_cast<std::uint32_t>(Live(pRecord->extra));
}

void TapeKernel::PlaneToLocal(std::int32_t lPlaneId, ZOR_Point* pPoint)
{
    TAPE_CALL(PlaneToLocal);
    Arg(lPlaneId), Arg(pPoint ? pPoint->x : 0), Arg(pPoint ? pPoint->y : 0);
    Go();
    mInner.PlaneToLocal(lPlaneId, pPoint);
}

void TapeKernel::PlaneToGlobal(std::int32_t lPlaneId, ZOR_Point* pPoint)
{
    TAPE_CALL(PlaneToGlobal);
    Arg(lPlaneId), Arg(pPoint ? pPoint->x : 0), Arg(pPoint ? pPoint->y : 0);
    Go();
    mInner.PlaneToGlobal(lPlaneId, pPoint);
}

void TapeKernel::ShowCursor()
{
    TAPE_CALL(ShowCursor);
    Go();
    mInner.ShowCursor();
}

void TapeKernel::HideCursor()
{
    TAPE_CALL(HideCursor);
    Go();
    mInner.HideCursor();
}

void TapeKernel::SetCursorPos(ZOR_Point* pPoint)
{
    TAPE_CALL(SetCursorPos);
    Arg(pPoint ? pPoint->x : 0), Arg(pPoint ? pPoint->y : 0);
    Go();
    mInner.SetCursorPos(pPoint);
}

void TapeKernel::SetCursorView(std::uint32_t uView, int iLoop, int iCel)
{
    TAPE_CALL(SetCursorView);
    Arg(uView), Arg(iLoop), Arg(iCel);
    Go();
    mInner.SetCursorView(uView, iLoop, iCel);
}

std::uint32_t TapeKernel::Random(std::uint32_t uLow, std::uint32_t uHigh)
{
    TAPE_CALL(Random);
    Arg(uLow), Arg(uHigh);
    Go();
    return static_cast<std::uint32_t>(Live(mInner.Random(uLow, uHigh)));
}

void TapeKernel::SeedRandom(std::uint32_t uSeed)
{
    TAPE_CALL(SeedRandom);
    Arg(uSeed);
    Go();
    mInner.SeedRandom(uSeed);
}

std::uint32_t TapeKernel::GetTime(int iSelector)
{
    TAPE_CALL(GetTime);
    Arg(iSelector);
    Go();
    return static_cast<std::uint32_t>(Live(mInner.GetTime(iSelector)));
}

std::uint32_t TapeKernel::GetTicks()
{
    TAPE_CALL(GetTicks);
    Go();
    mLastTicks = static_cast<std::uint32_t>(Live(mInner.GetTicks()));
    return mLastTicks;
}

unsigned TapeKernel::OpenVmd(const char* pFileName, int iCacheSize, int iOpenArgument)
{
    TAPE_CALL(OpenVmd);
    StringArg(pFileName);
    Arg(iCacheSize), Arg(iOpenArgument);
    Go();
    return mInner.OpenVmd(pFileName, iCacheSize, iOpenArgument);
}

void TapeKernel::SetVmdPlacement(int x, int y, int iFlags, int iRed, int iGreen, int iBlue)
{
    TAPE_CALL(SetVmdPlacement);
    Arg(x), Arg(y), Arg(iFlags), Arg(iRed), Arg(iGreen), Arg(iBlue);
    Go();
    mInner.SetVmdPlacement(x, y, iFlags, iRed, iGreen, iBlue);
}

unsigned TapeKernel::PlayVmd(int iEventFlags, int iEventValue1, int iEventValue2)
{
    TAPE_CALL(PlayVmd);
    Arg(iEventFlags), Arg(iEventValue1), Arg(iEventValue2);
    Go();
    return static_cast<unsigned>(Live(mInner.PlayVmd(iEventFlags, iEventValue1, iEventValue2)));
}

unsigned TapeKernel::StopVmd()
{
    TAPE_CALL(StopVmd);
    Go();
    return static_cast<unsigned>(Live(mInner.StopVmd()));
}

unsigned TapeKernel::ResumeVmd()
{
    TAPE_CALL(ResumeVmd);
    Go();
    return static_cast<unsigned>(Live(mInner.ResumeVmd()));
}

unsigned TapeKernel::CloseVmd()
{
    TAPE_CALL(CloseVmd);
    Go();
    return mInner.CloseVmd();
}

unsigned TapeKernel::GetVmdLength()
{
    TAPE_CALL(GetVmdLength);
    Go();
    return mInner.GetVmdLength();
}

unsigned TapeKernel::GetVmdStatus()
{
    TAPE_CALL(GetVmdStatus);
    Go();
    return static_cast<unsigned>(Live(mInner.GetVmdStatus()));
}

unsigned TapeKernel::GetVmdFramesSkipped()
{
    TAPE_CALL(GetVmdFramesSkipped);
    Go();
    return static_cast<unsigned>(Live(mInner.GetVmdFramesSkipped()));
}

void TapeKernel::SetVmdPalette()
{
    TAPE_CALL(SetVmdPalette);
    Go();
    mInner.SetVmdPalette();
}

void TapeKernel::RestrictVmdPalette(int iValue1, int iValue2)
{
    TAPE_CALL(RestrictVmdPalette);
    Arg(iValue1), Arg(iValue2);
    Go();
    mInner.RestrictVmdPalette(iValue1, iValue2);
}

void TapeKernel::ShowVmdCursor(int fShow)
{
    TAPE_CALL(ShowVmdCursor);
    Arg(fShow);
    Go();
    mInner.ShowVmdCursor(fShow);
}

void TapeKernel::InitVmdBlobs()
{
    TAPE_CALL(InitVmdBlobs);
    Go();
    mInner.InitVmdBlobs();
}

void TapeKernel::StopVmdBlobs()
{
    TAPE_CALL(StopVmdBlobs);
    Go();
    mInner.StopVmdBlobs();
}

int TapeKernel::AddVmdBlob(int iValue1, int iValue2, int iValue3, int iValue4, int iValue5)
{
    TAPE_CALL(AddVmdBlob);
    Arg(iValue1), Arg(iValue2), Arg(iValue3), Arg(iValue4), Arg(iValue5);
    Go();
    return mInner.AddVmdBlob(iValue1, iValue2, iValue3, iValue4, iValue5);
}

void TapeKernel::DeleteVmdBlob(int iBlob)
{
    TAPE_CALL(DeleteVmdBlob);
    Arg(iBlob);
    Go();
    mInner.DeleteVmdBlob(iBlob);
}

void TapeKernel::BlackOutVmd(int iValue1, int iValue2, int iValue3, int iValue4)
{
    TAPE_CALL(BlackOutVmd);
    Arg(iValue1), Arg(iValue2), Arg(iValue3), Arg(iValue4);
    Go();
    mInner.BlackOutVmd(iValue1, iValue2, iValue3, iValue4);
}

unsigned TapeKernel::GetVmdWidth()
{
    TAPE_CALL(GetVmdWidth);
    Go();
    return mInner.GetVmdWidth();
}

unsigned TapeKernel::GetVmdHeight()
{
    TAPE_CALL(GetVmdHeight);
    Go();
    return mInner.GetVmdHeight();
}

int TapeKernel::PointInPolygon(int x, int y, ZOR_Point* pPoints, int iCount)
{
    TAPE_CALL(PointInPolygon);
    Arg(x), Arg(y);
    PointArgs(pPoints, iCount);
    Go();
    return mInner.PointInPolygon(x, y, pPoints, iCount);
}

// A block's address is no value a replay can match; its size is.
void* TapeKernel::AllocMemory(std::uint32_t uSize, const char* pFile, int iLine)
{
    TAPE_CALL(AllocMemory);
    Arg(uSize);
    Go();
    return mInner.AllocMemory(uSize, pFile, iLine);
}

void TapeKernel::FreeMemory(void* pBlock)
{
    TAPE_CALL(FreeMemory);
    Go();
    mInner.FreeMemory(pBlock);
}

KernelPlaneRecord* TapeKernel::NewPlane(int iType, int iColor, ZOR_Rect* pRect, int iWindowIndex, int iPriority,
                                        ZOR_Point* pVanishingPoint, int iPicture, int fMirror)
{
    TAPE_CALL(NewPlane);
    Arg(iType), Arg(iColor);
    const ZOR_Rect r = pRect ? *pRect : ZOR_Rect(0, 0, 0, 0);
    Arg(r.left), Arg(r.top), Arg(r.right), Arg(r.bottom);
    Arg(iWindowIndex), Arg(iPriority);
    Arg(pVanishingPoint ? pVanishingPoint->x : 0), Arg(pVanishingPoint ? pVanishingPoint->y : 0);
    Arg(iPicture), Arg(fMirror);
    Go();
    return mInner.NewPlane(iType, iColor, pRect, iWindowIndex, iPriority, pVanishingPoint, iPicture, fMirror);
}

void TapeKernel::PlaneRectChanged(KernelPlaneRecord* pRecord)
{
    TAPE_CALL(PlaneRectChanged);
    PlaneArgs(pRecord);
    Go();
    mInner.PlaneRectChanged(pRecord);
}

KernelScreenItemRecord* TapeKernel::NewScreenItem(std::int32_t lPlaneId, KernelScreenItemSource* pSource,
                                                  ZOR_Point pos, ScaleInfo scale)
{
    TAPE_CALL(NewScreenItem);
    Arg(lPlaneId);
    Arg(pSource ? pSource->kind : 0), Arg(pSource ? pSource->view : 0), Arg(pSource ? pSource->loop : 0),
        Arg(pSource ? pSource->cel : 0), Arg(pSource ? pSource->memId : 0);
    Arg(pos.x), Arg(pos.y), Arg(scale.scaleX), Arg(scale.scaleY), Arg(scale.maxScale), Arg(scale.mode);
    Go();
    return mInner.NewScreenItem(lPlaneId, pSource, pos, scale);
}

void TapeKernel::DisposeScreenItem(KernelScreenItemRecord* pRecord)
{
    TAPE_CALL(DisposeScreenItem);
    Arg(pRecord ? pRecord->planeId : 0), Arg(pRecord ? pRecord->id : 0);
    Go();
    mInner.DisposeScreenItem(pRecord);
}

int TapeKernel::DLLCheckValid(int iMemId)
{
    TAPE_CALL(DLLCheckValid);
    Arg(iMemId);
    Go();
    return mInner.DLLCheckValid(iMemId);
}

void TapeKernel::PlaneCreated(KernelPlaneRecord* pRecord)
{
    TAPE_CALL(PlaneCreated);
    Arg(pRecord ? pRecord->id : 0);
    Go();
    mInner.PlaneCreated(pRecord);
}

unsigned TapeKernel::OpenAvi(int iMovie, const char* pFileName)
{
    TAPE_CALL(OpenAvi);
    Arg(iMovie);
    StringArg(pFileName);
    Go();
    return mInner.OpenAvi(iMovie, pFileName);
}

unsigned TapeKernel::CloseAvi(int iMovie)
{
    TAPE_CALL(CloseAvi);
    Arg(iMovie);
    Go();
    return mInner.CloseAvi(iMovie);
}

void TapeKernel::SetAviRect(int iMovie, int x, int y, int iWidth, int iHeight)
{
    TAPE_CALL(SetAviRect);
    Arg(iMovie), Arg(x), Arg(y), Arg(iWidth), Arg(iHeight);
    Go();
    mInner.SetAviRect(iMovie, x, y, iWidth, iHeight);
}

void TapeKernel::SetAviPos(int iMovie, int x, int y)
{
    TAPE_CALL(SetAviPos);
    Arg(iMovie), Arg(x), Arg(y);
    Go();
    mInner.SetAviPos(iMovie, x, y);
}

unsigned TapeKernel::PlayAvi(int iMovie, int iValue1, int iValue2, int iPlayType, int iValue4)
{
    TAPE_CALL(PlayAvi);
    Arg(iMovie), Arg(iValue1), Arg(iValue2), Arg(iPlayType), Arg(iValue4);
    Go();
    return static_cast<unsigned>(Live(mInner.PlayAvi(iMovie, iValue1, iValue2, iPlayType, iValue4)));
}

unsigned TapeKernel::StopAvi(int iMovie)
{
    TAPE_CALL(StopAvi);
    Arg(iMovie);
    Go();
    return static_cast<unsigned>(Live(mInner.StopAvi(iMovie)));
}

unsigned TapeKernel::PauseAvi(int iMovie)
{
    TAPE_CALL(PauseAvi);
    Arg(iMovie);
    Go();
    return static_cast<unsigned>(Live(mInner.PauseAvi(iMovie)));
}

unsigned TapeKernel::CueAvi(int iMovie, int iFrame)
{
    TAPE_CALL(CueAvi);
    Arg(iMovie), Arg(iFrame);
    Go();
    return mInner.CueAvi(iMovie, iFrame);
}

unsigned TapeKernel::SeekAvi(int iMovie, int iFrame)
{
    TAPE_CALL(SeekAvi);
    Arg(iMovie), Arg(iFrame);
    Go();
    return mInner.SeekAvi(iMovie, iFrame);
}

unsigned TapeKernel::ResumeAvi(int iMovie)
{
    TAPE_CALL(ResumeAvi);
    Arg(iMovie);
    Go();
    return static_cast<unsigned>(Live(mInner.ResumeAvi(iMovie)));
}

void TapeKernel::SetAviPalette(int iMovie)
{
    TAPE_CALL(SetAviPalette);
    Arg(iMovie);
    Go();
    mInner.SetAviPalette(iMovie);
}

unsigned TapeKernel::GetAviLength(int iMovie)
{
    TAPE_CALL(GetAviLength);
    Arg(iMovie);
    Go();
    return mInner.GetAviLength(iMovie);
}

unsigned TapeKernel::GetAviFrameNum(int iMovie)
{
    TAPE_CALL(GetAviFrameNum);
    Arg(iMovie);
    Go();
    return static_cast<unsigned>(Live(mInner.GetAviFrameNum(iMovie)));
}

unsigned TapeKernel::GetAviStatus(int iMovie)
{
    TAPE_CALL(GetAviStatus);
    Arg(iMovie);
    Go();
    return static_cast<unsigned>(Live(mInner.GetAviStatus(iMovie)));
}

unsigned TapeKernel::SetAviEvent(int iEventFlags)
{
    TAPE_CALL(SetAviEvent);
    Arg(iEventFlags);
    Go();
    return mInner.SetAviEvent(iEventFlags);
}
