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

    // ----- KernelServices -----
    int GetActiveSampleCount() override;
    int IsAudioInstalled() override;
    int PreloadSample(int iSample) override;
    void PlaySampleAlternate(int iSample, int iQualifier, int iVolume, int iTag) override;
    int PlayMessageAudio(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, int iUnused1, int iVolume,
                         int iUnused2) override;
    void PlaySample(int iSample, int iQualifier, int iVolume, int iTag, int iUnused) override;
    void StopAllSamples() override;
    void StopMessageAudio(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence) override;
    void StopSample(int iSample, int iQualifier) override;
    int PauseAllSamples() override;
    int PauseSample(int iSample, int iQualifier) override;
    int ResumeAllSamples() override;
    int ResumeSample(int iSample, int iQualifier) override;
    int GetGlobalDuration(int* piValue) override;
    void GetSampleDuration(int iSample, int* piDuration, int iTag) override;
    void SetSampleRate(int iRate) override;
    void DefaultSampleRate() override;
    int GetSampleRate() override;
    void SetSampleBits(int iBits) override;
    int GetSampleBits() override;
    void SetChannelCount(int iChannels) override;
    void DefaultChannelCount() override;
    int GetChannelCount() override;
    int GetAutoVolAdjust() override;
    void SetAutoVolAdjust(int iValue) override;
    void DistortAllSamples(int iValue) override;
    void DistortSample(int iSample, int iValue1, int iValue2) override;
    int GetGlobalVolume() override;
    int IsMessageAudioPlaying(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, int* piUnused) override;
    int GetSampleVolume(int iSample, int* piVolume, int iTag) override;
    void SetGlobalVolume(int iVolume) override;
    void SetSampleVolume(int iSample, int iVolume, int iValue) override;
    int FadeSample(int iSample, int iTargetVolume, int iValue1, int iValue2, int iValue3, int iTag) override;
    int CheckNoise() override;
    void PanSample(int iSample, int iPan, int iValue) override;
    void StopPanSample(int iSample, int iValue) override;
    int GetDACCritical() override;
    void SetDACCritical(int iValue) override;
    void LoadResource(int iType, int* piNumber, int iValue) override;
    void LockResource(int iType, int iNumber) override;
    void UnlockResource(int iType, int iNumber) override;
    int ResourceExists(int iType, int iNumber) override;

    int GetNowSeenRect(std::int32_t lPlaneId, std::int32_t lScreenItemId, ZOR_Rect* pRect) override;
    int NumLoops(int iView) override;
    int NumCels(std::uint32_t uView, int iLoop) override;
    int TopPlanePriority() override;
    int TopScreenItemPriority(std::int32_t lPlaneId) override;
    int ScreenItemOnPoint(ZOR_Point* pPoint, std::int32_t lPlaneId, std::int32_t lScreenItemId,
                          int fCheckSkip) override;
    void AddScreenItem(KernelScreenItemRecord* pRecord) override;
    void DeleteScreenItem(KernelScreenItemRecord* pRecord) override;
    void UpdateScreenItem(KernelScreenItemRecord* pRecord) override;

    std::int32_t AddPolygon(std::int32_t lPlaneId, ZOR_Point* pPoints, int iCount, int iPriority, int iColor,
                            int iStyle, int iPattern, int iThickness, int fClosed) override;
    void DeletePolygon(std::int32_t lPlaneId, std::int32_t lPolygonId) override;
    void UpdatePolygon(std::int32_t lPlaneId, std::int32_t lPolygonId, ZOR_Point* pPoints, int iCount,
                       int iPriority, int iColor, int iStyle, int iPattern, int iThickness, int fClosed) override;

    void UpdateScreen(int fFlag) override;

    void AddPlane(KernelPlaneRecord* pRecord) override;
    void DeletePlane(std::int32_t lPlaneId) override;
    void UpdatePlane(KernelPlaneRecord* pRecord) override;
    void AddPicAt(std::int32_t lPlaneId, int iPicture, int x, int y, int fMirror, int fDeleteCopy) override;
    void SetShowStyle(std::int32_t lPlaneId, int iStyle, int iSpeed, int iColor, int fAnimate,
                      int fUseReferenceFrame, int iToFrom, int* piArray, int iArraySize, int iDivisions) override;
    int ShowStylePercentComplete(std::int32_t lPlaneId) override;
    void SetScroll(std::int32_t lPlaneId, int iStepX, int iStepY, int iPicture, int fAnimate, int iTicks,
                   int fMirror) override;
    void MovePlaneItems(std::int32_t lPlaneId, int iDeltaX, int iDeltaY, int fMovePictures) override;

    void InitRobot(std::uint32_t uRobot, std::int32_t lPlaneId, int iPriority, int x, int y, int iValue) override;
    void PrepareRobot(int iValue1, int iValue2, int iValue3, int iValue4) override;
    void PlayRobot() override;
    void PauseRobot() override;
    void SetRobotPriority(int iPriority) override;
    int IsRobotDone() override;
    int IsRobotPlaying() override;
    void TerminateRobot() override;
    std::uint32_t GetRobotSignal() override;

    int GetMessage(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, char* pBuffer,
                   int iBufferSize) override;
    int GetNextMessage(char* pBuffer, int iBufferSize) override;
    int GetMessageSize(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, int* piSize) override;
    int GetNextMessageSize(int* piSize) override;
    void GetLastMessageKeys(int* piKeys) override;

    void GetEvent(std::uint32_t uMask, KernelEventRecord* pRecord) override;
    void PlaneToLocal(std::int32_t lPlaneId, ZOR_Point* pPoint) override;
    void PlaneToGlobal(std::int32_t lPlaneId, ZOR_Point* pPoint) override;
    void ShowCursor() override;
    void HideCursor() override;
    void SetCursorPos(ZOR_Point* pPoint) override;
    void SetCursorView(std::uint32_t uView, int iLoop, int iCel) override;

    std::uint32_t Random(std::uint32_t uLow, std::uint32_t uHigh) override;
    void SeedRandom(std::uint32_t uSeed) override;
    std::uint32_t GetTime(int iSelector) override;
    std::uint32_t GetTicks() override;

    unsigned OpenVmd(const char* pFileName, int iCacheSize, int iOpenArgument) override;
    void SetVmdPlacement(int x, int y, int iFlags, int iRed, int iGreen, int iBlue) override;
    unsigned PlayVmd(int iEventFlags, int iEventValue1, int iEventValue2) override;
    unsigned StopVmd() override;
    unsigned ResumeVmd() override;
    unsigned CloseVmd() override;
    unsigned GetVmdLength() override;
    unsigned GetVmdStatus() override;
    unsigned GetVmdFramesSkipped() override;
    void SetVmdPalette() override;
    void RestrictVmdPalette(int iValue1, int iValue2) override;
    void ShowVmdCursor(int fShow) override;
    void InitVmdBlobs() override;
    void StopVmdBlobs() override;
    int AddVmdBlob(int iValue1, int iValue2, int iValue3, int iValue4, int iValue5) override;
    void DeleteVmdBlob(int iBlob) override;
    void BlackOutVmd(int iValue1, int iValue2, int iValue3, int iValue4) override;
    unsigned GetVmdWidth() override;
    unsigned GetVmdHeight() override;

    int PointInPolygon(int x, int y, ZOR_Point* pPoints, int iCount) override;

    void* AllocMemory(std::uint32_t uSize, const char* pFile, int iLine) override;
    void FreeMemory(void* pBlock) override;

    KernelPlaneRecord* NewPlane(int iType, int iColor, ZOR_Rect* pRect, int iWindowIndex, int iPriority,
                                ZOR_Point* pVanishingPoint, int iPicture, int fMirror) override;
    void PlaneRectChanged(KernelPlaneRecord* pRecord) override;
    KernelScreenItemRecord* NewScreenItem(std::int32_t lPlaneId, KernelScreenItemSource* pSource, ZOR_Point pos,
                                          ScaleInfo scale) override;
    void DisposeScreenItem(KernelScreenItemRecord* pRecord) override;
    int DLLCheckValid(int iMemId) override;
    void PlaneCreated(KernelPlaneRecord* pRecord) override;

    unsigned OpenAvi(int iMovie, const char* pFileName) override;
    unsigned CloseAvi(int iMovie) override;
    void SetAviRect(int iMovie, int x, int y, int iWidth, int iHeight) override;
    void SetAviPos(int iMovie, int x, int y) override;
    unsigned PlayAvi(int iMovie, int iValue1, int iValue2, int iPlayType, int iValue4) override;
    unsigned StopAvi(int iMovie) override;
    unsigned PauseAvi(int iMovie) override;
    unsigned CueAvi(int iMovie, int iFrame) override;
    unsigned SeekAvi(int iMovie, int iFrame) override;
    unsigned ResumeAvi(int iMovie) override;
    void SetAviPalette(int iMovie) override;
    unsigned GetAviLength(int iMovie) override;
    unsigned GetAviFrameNum(int iMovie) override;
    unsigned GetAviStatus(int iMovie) override;
    unsigned SetAviEvent(int iEventFlags) override;

private:
    enum class Mode { kPass, kRecord, kReplay };
    class Call;
    friend class Call;

    void Begin(TapeOp op);
    void Arg(std::int64_t value) { mCall.args.push_back(value); }
    void ItemArgs(const KernelScreenItemRecord* r);
    void PlaneArgs(const KernelPlaneRecord* r);
    void PointArgs(const ZOR_Point* points, int count);
    void StringArg(const char* text);
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
