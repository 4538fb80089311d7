// SoftKernel.h - the reference kernel: a software renderer and simulator that
// makes a quindle game run without any other engine.
//
// Picture. Every UpdateScreen composes one 640x480 frame of palette indices.
// Planes are drawn from the lowest priority up (ties: the older plane first):
// coloured and opaque planes fill their rectangle with their colour, picture
// planes fill it with their colour and draw their picture (and those added with
// AddPicAt) from the plane's top-left corner, transparent planes draw only their
// items. On each plane, screen items, polygons and the robot are drawn from the
// lowest priority up (ties: the older first); an item of floating priority has
// the priority y + z of its position. An item's cel is placed so that its origin
// lands on the item's position; ScaleInfo's scaleX and scaleY scale it (128 is
// 100 percent, nearest pixel); the inset rectangle, when in force, is in the
// cel's own pixels (0, 0 the cel's top-left corner) and limits what is drawn.
// Everything is clipped to its plane. The kernel keeps its own copy of the
// values of a record and takes new ones over only at AddScreenItem,
// UpdateScreenItem, AddPlane and UpdatePlane, as the library expects.
// GetNowSeenRect answers with the rectangle the item covers in its plane's
// coordinates (after origin, scale and inset), and ScreenItemOnPoint tests the
// same rectangle and, with the check-skip flag, the cel pixel under the point.
// Planes, items and polygons are kept in SoftScene.h, drawn by
// SoftCompositor.h.
//
// Transitions (SetShowStyle): style 0 is a cut; styles 1..15 reveal the plane
// by a left-to-right wipe (1, 5, 9, 13), a top-down wipe (2, 6, 10, 14), a box
// growing from the centre (3, 7, 11, 15) or a dissolve (4, 8, 12). The
// transition runs in `divisions` steps (10 when -1) of `speed` ticks each; to/from
// 1 makes the plane disappear instead, 0 and 2 make it appear. Where the plane
// is not yet revealed, the colour of the transition is shown, or with colour -1
// what lies below. Scrolling (SetScroll) moves the current picture out and the
// new one in by the step in pixels every `ticks` ticks (every tick with -1): a
// positive x step brings the new picture in from the right, a positive y step
// from the bottom; when done the plane shows the new picture.
//
// Clock. 60 ticks a second. Headless, the clock is virtual: it starts at 0 and
// every UpdateScreen advances it by a fixed step (1 tick by default), so a run
// is the same every time. With a real clock (the player's window) it reads the
// time since the kernel started. GetTime answers whole seconds of that clock.
// The clock and the input queue live in SoftInput.h; headless, events come
// from a script (SoftScript.h) as the clock reaches their tick. A modal input
// loop asks GetEvent again and again with no frame between: from the second
// look in a frame the virtual clock moves on to the next queued event, or by
// one frame's ticks, so that the loop sees the time pass.
//
// Sound: SoftAudio.h.
//
// Robots: SoftRobots.h.
//
// Movies ("%d.VMD", "%d.AVI" in the game folder; form in SoftResources.h).
// Status bits of both kinds: 1 open, 2 playing, 4 paused, 8 played to the end.
// PlayVmd plays the whole movie before it returns, composing and handing out a
// frame per tick; with event flag 2 a press or a key ends it early (the event
// is used up), and it returns 1 then, 0 at the movie's end. VMD blobs are
// rectangles of the movie (left, top, right, bottom, block size) shown in
// blocks of that size; BlackOutVmd blacks out a rectangle of the movie. AVI
// movies play alongside the game, above every plane, at their rectangle
// (scaled to it when SetAviRect gave a size); PlayAvi's first two values are
// the first and last frame (0: to the end), play type 1 loops. With SetAviEvent
// flag 2, a press or key ends every playing AVI movie.
//
// Faults. A resource that is missing or malformed, or a call on a record the
// kernel never made, does not crash: the kernel draws without it, remembers
// the first fault as "<file>: <what is wrong>" (Fault()), and the host decides
// what to do (the player stops and exits with a non-zero status).
#ifndef QUINDLE_SOFT_KERNEL_H
#define QUINDLE_SOFT_KERNEL_H

#include "kernel.h"

#include "AllocationLedger.h"
#include "SoftAudio.h"
#include "SoftBitmaps.h"
#include "SoftExtras.h"
#include "SoftImage.h"
#include "SoftInput.h"
#include "SoftMessages.h"
#include "SoftMovies.h"
#include "SoftResources.h"
#include "SoftRobots.h"
#include "SoftScene.h"
#include "SoftScript.h"

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

class SoftCompositor;

class SoftKernel : public KernelServices, public SoftKernelExtras, private SoftServiceHost {
public:
    static constexpr int kWidth = soft::kScreenWidth;
    static constexpr int kHeight = soft::kScreenHeight;

    SoftKernel();
    ~SoftKernel() override;
    SoftKernel(const SoftKernel&) = delete;
    SoftKernel& operator=(const SoftKernel&) = delete;

    // ----- for the host -----

    // Reads resources from this folder from now on and loads its palette.
    // False (with the fault set) when the palette is malformed.
    bool SetGameFolder(const std::string& folder);
    SoftResources& Resources() { return mResources; }
    // The events GetEvent hands out, by tick.
    void SetScript(const std::vector<SoftInputEvent>& events);
    // Adds one event to hand out (a window's input); it is due at once.
    void PushInput(const SoftInputEvent& event);
    // Ticks the virtual clock advances with every UpdateScreen (1 by default).
    void SetTicksPerFrame(std::uint32_t ticks) { mInput.SetTicksPerFrame(ticks); }
    // Uses the real clock from now on (the window); the virtual clock otherwise,
    // which goes on from where the real clock was (so a host can stop the
    // clock by leaving it for a while, and take it up again).
    void UseRealClock(bool real) { mInput.UseRealClock(real); }
    // Sets the clock's reading: a game restored from a save goes on from the
    // tick it was saved at.
    void SetClock(std::uint32_t ticks) { mInput.SetClock(ticks); }
    // Every clock reading and input lookup of the kernel passes through `seam`
    // (null: none). While the frame hook runs, the clock stands at the reading
    // the frame was composed at and nothing passes.
    void SetClockInputSeam(SoftClockInputSeam* seam) { mInput.SetSeam(seam); }
    // Called after every composed frame (the player writes it out, the window
    // shows it and gathers input).
    void SetFrameHook(void (*hook)(SoftKernel&, void*), void* data)
    {
        mFrameHook = hook;
        mFrameHookData = data;
    }
    // Called with one line for each step a developer debugging a game follows:
    // "sample 5 starts", "sample 5 stops", "sample 5 ends", "message 100 1 1 0 1
    // (talker 1): <text>", "robot 10 starts", "movie 300.VMD starts".
    // Called when GetEvent is asked again within one frame with nothing due
    // (a modal input loop), after the virtual clock has moved on: a window
    // gathers its input here (a web page hands control back to the browser,
    // which would otherwise never deliver it), and a host may end the run from here.
    void SetModalHook(void (*hook)(SoftKernel&, void*), void* data)
    {
        mModalHook = hook;
        mModalHookData = data;
    }
    // Called after GetEvent hands out a press or a key, with the event (the
    // player's --trace looks at what the press lands on).
    void SetInputHook(void (*hook)(SoftKernel&, const KernelEventRecord&, void*), void* data)
    {
        mInputHook = hook;
        mInputHookData = data;
    }
    void SetTraceHook(void (*hook)(const char* line, void*), void* data)
    {
        mTraceHook = hook;
        mTraceHookData = data;
    }
    // The last composed frame: 640 x 480 palette indices, row by row.
    const std::uint8_t* Frame() const;
    const SoftPalette& Palette() const { return mPalette; }
    void SetPalette(const SoftPalette& palette);
    std::uint32_t FramesComposed() const { return mFramesComposed; }
    // The clock as the game last read it; reading it so changes nothing (a
    // tape between the kernel and the game sees no call).
    std::uint32_t TicksSeen() const { return mInput.LastSeen(); }
    // The kernel's own clock (a tape may serve the game another); reading it
    // changes nothing.
    std::uint32_t OwnTicks() const { return mInput.OwnTicks(); }
    // Composes the frame without advancing the clock: first what time moves
    // is brought up to the clock (transitions ending, scrolls finishing,
    // movies moving to their frame), then the frame is drawn from that state.
    void Compose();
    // The first fault met, empty when none.
    const std::string& Fault() const { return mFault; }
    bool HasFault() const { return !mFault.empty(); }
    void ClearFault() { mFault.clear(); }
    // The ledger behind AllocMemory and FreeMemory.
    AllocationLedger& Ledger() { return mLedger; }
    // Where the cursor is and whether it is drawn.
    ZOR_Point CursorPos() const { return ZOR_Point(mInput.CursorX(), mInput.CursorY()); }
    bool CursorVisible() const { return mCursorVisible; }
    // What the kernel shows, for a host that inspects it (the player's
    // overlay): planes in drawing order with their items (SoftScene.h).
    using InspectedItem = SoftScene::InspectedItem;
    using InspectedPlane = SoftScene::InspectedPlane;
    // Fills `planes` afresh. Changes nothing the game can observe: a cel that
    // cannot be drawn was reported when the frame was composed.
    void Inspect(std::vector<InspectedPlane>* planes);
    // Path of the TrueType font used by DrawText. By default, on first use,
    // the file the system's font configuration gives for DejaVu Sans, else
    // Debian's path for it; with neither, text draws nothing and the fault
    // says what was looked for.
    void SetFontPath(const std::string& path) { mBitmaps.SetFontPath(path); }
    // The state of a sample, and what can be heard now (SoftAudio.h).
    using SampleView = SoftAudio::SampleView;
    using AudibleSource = SoftAudio::AudibleSource;
    bool GetSampleState(int sample, SampleView* out) { return mAudio.GetSampleState(sample, out); }
    std::vector<AudibleSource> AudibleSources() { return mAudio.AudibleSources(); }

    // ----- KernelServices -----
    int GetActiveSampleCount() override { return mAudio.GetActiveSampleCount(); }
    int IsAudioInstalled() override { return mAudio.IsAudioInstalled(); }
    int PreloadSample(int iSample) override { return mAudio.PreloadSample(iSample); }
    void PlaySampleAlternate(int iSample, int iQualifier, int iVolume, int iTag) override
    { mAudio.PlaySampleAlternate(iSample, iQualifier, iVolume, iTag); }
    int PlayMessageAudio(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, int iUnused1, int iVolume,
                         int iUnused2) override;
    void PlaySample(int iSample, int iQualifier, int iVolume, int iTag, int iUnused) override
    { mAudio.PlaySample(iSample, iQualifier, iVolume, iTag, iUnused); }
    void StopAllSamples() override { mAudio.StopAllSamples(); }
    void StopMessageAudio(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence) override
    { mAudio.StopMessageAudio(iKey1, iKey2, iKey3, iKey4, iSequence); }
    void StopSample(int iSample, int iQualifier) override { mAudio.StopSample(iSample, iQualifier); }
    int PauseAllSamples() override { return mAudio.PauseAllSamples(); }
    int PauseSample(int iSample, int iQualifier) override { return mAudio.PauseSample(iSample, iQualifier); }
    int ResumeAllSamples() override { return mAudio.ResumeAllSamples(); }
    int ResumeSample(int iSample, int iQualifier) override { return mAudio.ResumeSample(iSample, iQualifier); }
    int GetGlobalDuration(int* piValue) override { return mAudio.GetGlobalDuration(piValue); }
    void GetSampleDuration(int iSample, int* piDuration, int iTag) override
    { mAudio.GetSampleDuration(iSample, piDuration, iTag); }
    void SetSampleRate(int iRate) override { mAudio.SetSampleRate(iRate); }
    void DefaultSampleRate() override { mAudio.DefaultSampleRate(); }
    int GetSampleRate() override { return mAudio.GetSampleRate(); }
    void SetSampleBits(int iBits) override { mAudio.SetSampleBits(iBits); }
    int GetSampleBits() override { return mAudio.GetSampleBits(); }
    void SetChannelCount(int iChannels) override { mAudio.SetChannelCount(iChannels); }
    void DefaultChannelCount() override { mAudio.DefaultChannelCount(); }
    int GetChannelCount() override { return mAudio.GetChannelCount(); }
    int GetAutoVolAdjust() override { return mAudio.GetAutoVolAdjust(); }
    void SetAutoVolAdjust(int iValue) override { mAudio.SetAutoVolAdjust(iValue); }
    void DistortAllSamples(int iValue) override { mAudio.DistortAllSamples(iValue); }
    void DistortSample(int iSample, int iValue1, int iValue2) override
    { mAudio.DistortSample(iSample, iValue1, iValue2); }
    int GetGlobalVolume() override { return mAudio.GetGlobalVolume(); }
    int IsMessageAudioPlaying(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, int* piUnused) override
    { return mAudio.IsMessageAudioPlaying(iKey1, iKey2, iKey3, iKey4, iSequence, piUnused); }
    int GetSampleVolume(int iSample, int* piVolume, int iTag) override
    { return mAudio.GetSampleVolume(iSample, piVolume, iTag); }
    void SetGlobalVolume(int iVolume) override { mAudio.SetGlobalVolume(iVolume); }
    void SetSampleVolume(int iSample, int iVolume, int iValue) override
    { mAudio.SetSampleVolume(iSample, iVolume, iValue); }
    int FadeSample(int iSample, int iTargetVolume, int iValue1, int iValue2, int iValue3, int iTag) override
    { return mAudio.FadeSample(iSample, iTargetVolume, iValue1, iValue2, iValue3, iTag); }
    int CheckNoise() override { return mAudio.CheckNoise(); }
    void PanSample(int iSample, int iPan, int iValue) override { mAudio.PanSample(iSample, iPan, iValue); }
    void StopPanSample(int iSample, int iValue) override { mAudio.StopPanSample(iSample, iValue); }
    int GetDACCritical() override { return mAudio.GetDACCritical(); }
    void SetDACCritical(int iValue) override { mAudio.SetDACCritical(iValue); }
    void LoadResource(int iType, int* piNumber, int iValue) override { mAudio.LoadResource(iType, piNumber, iValue); }
    void LockResource(int iType, int iNumber) override { mAudio.LockResource(iType, iNumber); }
    void UnlockResource(int iType, int iNumber) override { mAudio.UnlockResource(iType, iNumber); }
    int ResourceExists(int iType, int iNumber) override { return mAudio.ResourceExists(iType, iNumber); }

    int GetNowSeenRect(std::int32_t lPlaneId, std::int32_t lScreenItemId, ZOR_Rect* pRect) override
    { return mScene.GetNowSeenRect(lPlaneId, lScreenItemId, pRect); }
    int NumLoops(int iView) override;
    int NumCels(std::uint32_t uView, int iLoop) override;
    int TopPlanePriority() override { return mScene.TopPlanePriority(); }
    int TopScreenItemPriority(std::int32_t lPlaneId) override { return mScene.TopScreenItemPriority(lPlaneId); }
    int ScreenItemOnPoint(ZOR_Point* pPoint, std::int32_t lPlaneId, std::int32_t lScreenItemId,
                          int fCheckSkip) override
    { return mScene.ScreenItemOnPoint(pPoint, lPlaneId, lScreenItemId, fCheckSkip); }
    void AddScreenItem(KernelScreenItemRecord* pRecord) override { mScene.AddScreenItem(pRecord); }
    void DeleteScreenItem(KernelScreenItemRecord* pRecord) override
    { mScene.ForgetItem(pRecord, "DeleteScreenItem"); }
    void UpdateScreenItem(KernelScreenItemRecord* pRecord) override { mScene.UpdateScreenItem(pRecord); }

    std::int32_t AddPolygon(std::int32_t lPlaneId, ZOR_Point* pPoints, int iCount, int iPriority, int iColor,
                            int iStyle, int iPattern, int iThickness, int fClosed) override
    { return mScene.AddPolygon(lPlaneId, pPoints, iCount, iPriority, iColor, iStyle, iPattern, iThickness, fClosed); }
    void DeletePolygon(std::int32_t lPlaneId, std::int32_t lPolygonId) override
    { mScene.DeletePolygon(lPlaneId, lPolygonId); }
    void UpdatePolygon(std::int32_t lPlaneId, std::int32_t lPolygonId, ZOR_Point* pPoints, int iCount,
                       int iPriority, int iColor, int iStyle, int iPattern, int iThickness, int fClosed) override
    {
        mScene.UpdatePolygon(lPlaneId, lPolygonId, pPoints, iCount, iPriority, iColor, iStyle, iPattern, iThickness,
                             fClosed);
    }

    void UpdateScreen(int fFlag) override;

    void AddPlane(KernelPlaneRecord* pRecord) override { mScene.AddPlane(pRecord); }
    void DeletePlane(std::int32_t lPlaneId) override;
    void UpdatePlane(KernelPlaneRecord* pRecord) override { mScene.UpdatePlane(pRecord); }
    // The copy flag is the library's: the kernel keeps no copy to delete.
    void AddPicAt(std::int32_t lPlaneId, int iPicture, int x, int y, int fMirror, int /*fDeleteCopy*/) override
    { mScene.AddPicAt(lPlaneId, iPicture, x, y, fMirror); }
    // Animation, a reference frame and an array of steps are not drawn.
    void SetShowStyle(std::int32_t lPlaneId, int iStyle, int iSpeed, int iColor, int /*fAnimate*/,
                      int /*fUseReferenceFrame*/, int iToFrom, int* /*piArray*/, int /*iArraySize*/,
                      int iDivisions) override
    { mScene.SetShowStyle(lPlaneId, iStyle, iSpeed, iColor, iToFrom, iDivisions); }
    int ShowStylePercentComplete(std::int32_t lPlaneId) override { return mScene.ShowStylePercentComplete(lPlaneId); }
    void SetScroll(std::int32_t lPlaneId, int iStepX, int iStepY, int iPicture, int /*fAnimate*/, int iTicks,
                   int fMirror) override
    { mScene.SetScroll(lPlaneId, iStepX, iStepY, iPicture, iTicks, fMirror); }
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
                   int iBufferSize) override
    { return mMessages.GetMessage(iKey1, iKey2, iKey3, iKey4, iSequence, pBuffer, iBufferSize); }
    int GetNextMessage(char* pBuffer, int iBufferSize) override
    { return mMessages.GetNextMessage(pBuffer, iBufferSize); }
    int GetMessageSize(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, int* piSize) override
    { return mMessages.GetMessageSize(iKey1, iKey2, iKey3, iKey4, iSequence, piSize); }
    int GetNextMessageSize(int* piSize) override { return mMessages.GetNextMessageSize(piSize); }
    void GetLastMessageKeys(int* piKeys) override { mMessages.GetLastMessageKeys(piKeys); }

    void GetEvent(std::uint32_t uMask, KernelEventRecord* pRecord) override;
    void PlaneToLocal(std::int32_t lPlaneId, ZOR_Point* pPoint) override { mScene.PlaneToLocal(lPlaneId, pPoint); }
    void PlaneToGlobal(std::int32_t lPlaneId, ZOR_Point* pPoint) override { mScene.PlaneToGlobal(lPlaneId, pPoint); }
    void ShowCursor() override;
    void HideCursor() override;
    void SetCursorPos(ZOR_Point* pPoint) override;
    void SetCursorView(std::uint32_t uView, int iLoop, int iCel) override;

    std::uint32_t Random(std::uint32_t uLow, std::uint32_t uHigh) override;
    void SeedRandom(std::uint32_t uSeed) override;
    std::uint32_t GetTime(int iSelector) override;
    std::uint32_t GetTicks() override;

    unsigned OpenVmd(const char* pFileName, int iCacheSize, int iOpenArgument) override
    { return mMovies.OpenVmd(pFileName, iCacheSize, iOpenArgument); }
    void SetVmdPlacement(int x, int y, int iFlags, int iRed, int iGreen, int iBlue) override
    { mMovies.SetVmdPlacement(x, y, iFlags, iRed, iGreen, iBlue); }
    unsigned PlayVmd(int iEventFlags, int iEventValue1, int iEventValue2) override;
    unsigned StopVmd() override { return mMovies.StopVmd(); }
    unsigned ResumeVmd() override;
    unsigned CloseVmd() override { return mMovies.CloseVmd(); }
    unsigned GetVmdLength() override { return mMovies.GetVmdLength(); }
    unsigned GetVmdStatus() override { return mMovies.GetVmdStatus(); }
    unsigned GetVmdFramesSkipped() override { return mMovies.GetVmdFramesSkipped(); }
    void SetVmdPalette() override;
    void RestrictVmdPalette(int iValue1, int iValue2) override { mMovies.RestrictVmdPalette(iValue1, iValue2); }
    void ShowVmdCursor(int fShow) override { mMovies.ShowVmdCursor(fShow); }
    void InitVmdBlobs() override { mMovies.InitVmdBlobs(); }
    void StopVmdBlobs() override { mMovies.StopVmdBlobs(); }
    int AddVmdBlob(int iValue1, int iValue2, int iValue3, int iValue4, int iValue5) override
    { return mMovies.AddVmdBlob(iValue1, iValue2, iValue3, iValue4, iValue5); }
    void DeleteVmdBlob(int iBlob) override { mMovies.DeleteVmdBlob(iBlob); }
    void BlackOutVmd(int iValue1, int iValue2, int iValue3, int iValue4) override
    { mMovies.BlackOutVmd(iValue1, iValue2, iValue3, iValue4); }
    unsigned GetVmdWidth() override { return mMovies.GetVmdWidth(); }
    unsigned GetVmdHeight() override { return mMovies.GetVmdHeight(); }

    int PointInPolygon(int x, int y, ZOR_Point* pPoints, int iCount) override
    { return soft::PointInPolygon(x, y, pPoints, iCount); }

    void* AllocMemory(std::uint32_t uSize, const char* pFile, int iLine) override;
    void FreeMemory(void* pBlock) override;

    // One window: the window index is not used.
    KernelPlaneRecord* NewPlane(int iType, int iColor, ZOR_Rect* pRect, int /*iWindowIndex*/, int iPriority,
                                ZOR_Point* pVanishingPoint, int iPicture, int fMirror) override
    { return mScene.NewPlane(iType, iColor, pRect, iPriority, pVanishingPoint, iPicture, fMirror); }
    void PlaneRectChanged(KernelPlaneRecord* pRecord) override { mScene.PlaneRectChanged(pRecord); }
    KernelScreenItemRecord* NewScreenItem(std::int32_t lPlaneId, KernelScreenItemSource* pSource, ZOR_Point pos,
                                          ScaleInfo scale) override
    { return mScene.NewScreenItem(lPlaneId, pSource, pos, scale); }
    void DisposeScreenItem(KernelScreenItemRecord* pRecord) override
    { mScene.ForgetItem(pRecord, "DisposeScreenItem"); }
    int DLLCheckValid(int iMemId) override { return mBitmaps.IsLive(iMemId); }
    void PlaneCreated(KernelPlaneRecord* pRecord) override { mScene.PlaneCreated(pRecord); }

    unsigned OpenAvi(int iMovie, const char* pFileName) override { return mMovies.OpenAvi(iMovie, pFileName); }
    unsigned CloseAvi(int iMovie) override { return mMovies.CloseAvi(iMovie); }
    void SetAviRect(int iMovie, int x, int y, int iWidth, int iHeight) override
    { mMovies.SetAviRect(iMovie, x, y, iWidth, iHeight); }
    void SetAviPos(int iMovie, int x, int y) override { mMovies.SetAviPos(iMovie, x, y); }
    unsigned PlayAvi(int iMovie, int iValue1, int iValue2, int iPlayType, int iValue4) override
    { return mMovies.PlayAvi(iMovie, iValue1, iValue2, iPlayType, iValue4); }
    unsigned StopAvi(int iMovie) override { return mMovies.StopAvi(iMovie); }
    unsigned PauseAvi(int iMovie) override { return mMovies.PauseAvi(iMovie); }
    unsigned CueAvi(int iMovie, int iFrame) override { return mMovies.CueAvi(iMovie, iFrame); }
    unsigned SeekAvi(int iMovie, int iFrame) override { return mMovies.SeekAvi(iMovie, iFrame); }
    unsigned ResumeAvi(int iMovie) override { return mMovies.ResumeAvi(iMovie); }
    void SetAviPalette(int iMovie) override;
    unsigned GetAviLength(int iMovie) override { return mMovies.GetAviLength(iMovie); }
    unsigned GetAviFrameNum(int iMovie) override { return mMovies.GetAviFrameNum(iMovie); }
    unsigned GetAviStatus(int iMovie) override { return mMovies.GetAviStatus(iMovie); }
    unsigned SetAviEvent(int iEventFlags) override { return mMovies.SetAviEvent(iEventFlags); }

    // ----- SoftKernelExtras -----
    std::uint16_t CreateMemBitmap(int width, int height, int fillColor, int skipColor) override
    { return mBitmaps.CreateMemBitmap(width, height, fillColor, skipColor); }
    void FreeMemBitmap(std::uint16_t memId) override { mBitmaps.FreeMemBitmap(memId); }
    void FillMemBitmap(std::uint16_t memId, int left, int top, int right, int bottom, int color) override
    { mBitmaps.FillMemBitmap(memId, left, top, right, bottom, color); }
    int DrawText(std::uint16_t memId, int x, int y, const char* text, int color, int pixelSize,
                 int maxWidth) override
    { return mBitmaps.DrawText(memId, x, y, text, color, pixelSize, maxWidth); }
    int TextWidth(const char* text, int pixelSize) override { return mBitmaps.TextWidth(text, pixelSize); }

    // Movie status bits.
    enum : unsigned {
        kMovieOpen = SoftMovies::kOpen,
        kMoviePlaying = SoftMovies::kPlaying,
        kMoviePaused = SoftMovies::kPaused,
        kMovieEnded = SoftMovies::kEnded
    };

private:
    void Report(const std::string& fault) override;
    __attribute__((format(printf, 2, 3))) void Trace(const char* format, ...) override;
    std::uint32_t Now() const override;

    AllocationLedger mLedger;
    SoftResources mResources;
    SoftPalette mPalette;
    std::string mFault;

    std::uint32_t mFramesComposed = 0;
    void (*mFrameHook)(SoftKernel&, void*) = nullptr;
    void* mFrameHookData = nullptr;
    void (*mModalHook)(SoftKernel&, void*) = nullptr;
    void (*mInputHook)(SoftKernel&, const KernelEventRecord&, void*) = nullptr;
    void* mInputHookData = nullptr;
    void* mModalHookData = nullptr;
    void (*mTraceHook)(const char*, void*) = nullptr;
    void* mTraceHookData = nullptr;

    SoftInput mInput;
    bool mCursorVisible = true;
    int mCursorView = -1, mCursorLoop = 0, mCursorCel = 0;
    std::uint64_t mRandom = 1;

    SoftAudio mAudio{*this, mResources};

    SoftMessages mMessages{*this, mResources};

    SoftRobots mRobots{*this, mResources};
    SoftMovies mMovies{*this, mResources};

    SoftBitmaps mBitmaps{*this, kWidth, kHeight};

    // Planes, items and polygons, and the compositor that draws them (which
    // reads the services above, so it comes after them).
    SoftScene mScene{*this, mResources, mBitmaps};
    std::unique_ptr<SoftCompositor> mCompositor;
};

#endif
