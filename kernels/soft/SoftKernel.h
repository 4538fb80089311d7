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
//
// Input. Headless, events come from a script (SoftScript.h) as the clock
// reaches their tick; the pointer position of a null event is the cursor's.
//
// Sound. The kernel keeps the full state of every sample as if it played: a
// sample plays for the real duration of its WAV (rounded up to whole ticks), a
// pause stops its time, a fade changes its volume linearly to the target over
// its time and, when asked, stops the sample at the end; speech of a message
// plays for the length of its WAV. Headless, nothing is heard; the player's
// window mixes what AudibleSources() reports into its audio device. The kernel
// answers IsAudioInstalled with 1 either way, because everything the library
// observes behaves as with a device.
//
// FadeSample(sample, target, stepTicks, durationTicks, stopAtEnd, tag): the
// volume moves from where it is to the target in `durationTicks` ticks (at once
// when 0 or less), in steps every `stepTicks` ticks (every tick when 0 or less);
// with stopAtEnd non-zero the sample stops when the fade is over.
// DistortSample / DistortAllSamples set a distortion the window's mixer applies
// (the value n > 0 drops the n lowest bits of each sample). The sample rate,
// bits and channel count, the automatic volume adjustment and the DAC flag are
// kept and answered back; the mixer opens its device at the rate in force
// when the window starts.
// GetGlobalDuration writes the ticks left of the longest sample still playing
// and returns how many samples play. CheckNoise answers how many playing,
// unpaused samples have a volume above 0. ResourceExists knows the sound types
// 12 and 13 only and answers 0 for any other type.
//
// Robots (robots/<n>.txt): a robot shows frame n during ticks n*rate to
// (n+1)*rate-1 after PlayRobot, at (x, y) of its plane with its priority.
// GetRobotSignal hands out each cue point once, in frame order, then
// 0xFFFFFFFF once the last frame's time is over. IsRobotPlaying is non-zero from
// PlayRobot until it ends or is terminated (also while paused).
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
#include "SoftExtras.h"
#include "SoftImage.h"
#include "SoftResources.h"
#include "SoftScript.h"

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

class SoftCompositor;

class SoftKernel : public KernelServices, public SoftKernelExtras {
public:
    static constexpr int kWidth = 640;
    static constexpr int kHeight = 480;

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
    void SetTicksPerFrame(std::uint32_t ticks) { mTicksPerFrame = ticks; }
    // Uses the real clock from now on (the window); the virtual clock otherwise.
    void UseRealClock(bool real);
    // Called after every composed frame (the player writes it out, the window
    // shows it and gathers input).
    void SetFrameHook(void (*hook)(SoftKernel&, void*), void* data)
    {
        mFrameHook = hook;
        mFrameHookData = data;
    }
    // The last composed frame: 640 x 480 palette indices, row by row.
    const std::uint8_t* Frame() const;
    const SoftPalette& Palette() const { return mPalette; }
    void SetPalette(const SoftPalette& palette);
    std::uint32_t FramesComposed() const { return mFramesComposed; }
    // Composes the frame from the current state without advancing the clock.
    void Compose();
    // The first fault met, empty when none.
    const std::string& Fault() const { return mFault; }
    bool HasFault() const { return !mFault.empty(); }
    void ClearFault() { mFault.clear(); }
    // The ledger behind AllocMemory and FreeMemory.
    AllocationLedger& Ledger() { return mLedger; }
    // Where the cursor is and whether it is drawn.
    ZOR_Point CursorPos() const { return ZOR_Point(mCursorX, mCursorY); }
    bool CursorVisible() const { return mCursorVisible; }
    // Path of the TrueType font used by DrawText (DejaVu Sans by default).
    void SetFontPath(const std::string& path);
    // The state of a sample as the kernel keeps it (tests, the mixer).
    struct SampleView {
        bool playing;
        bool paused;
        int volume;
        int pan;
        std::uint32_t elapsedTicks;
        std::uint32_t durationTicks;
        const SoftWav* wav;
    };
    bool GetSampleState(int sample, SampleView* out);
    // What can be heard now: every playing, unpaused sample and speech, for a
    // mixer. `id` tells sources apart (samples by number, speech below 0);
    // `elapsedTicks` is where in the WAV the kernel's clock says it is.
    struct AudibleSource {
        long long id;
        const SoftWav* wav;
        std::uint32_t elapsedTicks;
        int volume;  // 0..127, the global volume applied
        int pan;     // 0..100
        int distort; // 0 none; n > 0 drops the n lowest bits of every sample (at most 15)
    };
    std::vector<AudibleSource> AudibleSources();

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

    // ----- SoftKernelExtras -----
    std::uint16_t CreateMemBitmap(int width, int height, int fillColor, int skipColor) override;
    void FreeMemBitmap(std::uint16_t memId) override;
    void FillMemBitmap(std::uint16_t memId, int left, int top, int right, int bottom, int color) override;
    int DrawText(std::uint16_t memId, int x, int y, const char* text, int color, int pixelSize,
                 int maxWidth) override;
    int TextWidth(const char* text, int pixelSize) override;

    // Movie status bits.
    enum : unsigned { kMovieOpen = 1, kMoviePlaying = 2, kMoviePaused = 4, kMovieEnded = 8 };

private:
    friend class SoftCompositor;
    struct Item;
    struct Plane;
    struct Polygon;
    struct Sample;
    struct Robot;
    struct Avi;
    struct Vmd;
    struct Font;

    void Report(const std::string& fault);
    void ForgetItem(KernelScreenItemRecord* pRecord, const char* operation);
    Plane* FindPlane(std::int32_t id);
    Item* FindItem(std::int32_t planeId, std::int32_t itemId);
    void TakeOver(Item& item);
    void TakeOver(Plane& plane);
    // The bitmap an item shows, or null (faults reported once).
    const SoftBitmap* ItemBitmap(const Item& item);
    bool ItemRect(Item& item, ZOR_Rect* rect);
    int EffectivePriority(const Item& item) const;
    void DrawMovies();
    void AdvanceClock();
    std::uint32_t Now() const;
    Sample* FindSample(int sample);
    void UpdateSample(Sample& s);
    void StartSample(int iSample, int iVolume);
    std::uint32_t RobotElapsed() const;
    const SoftMessage* FindMessage(const int keys[5]);
    const SoftMessage* NextMessage();
    bool TakeEndingInput(); // a press or key is waiting: take it (movie ends)
    int ShowStylePercent(const Plane& plane) const;
    void FinishScroll(Plane& plane);

    AllocationLedger mLedger;
    SoftResources mResources;
    SoftPalette mPalette;
    std::unique_ptr<SoftCompositor> mCompositor;
    std::string mFault;

    std::map<KernelPlaneRecord*, std::unique_ptr<Plane>> mPlanes;
    std::map<KernelScreenItemRecord*, std::unique_ptr<Item>> mItems;
    std::map<std::int32_t, Item*> mItemsById; // by the id given at NewScreenItem
    std::int32_t mNextPlaneId = kFirstPlaneId;
    std::int32_t mNextItemId = 1;
    std::int32_t mNextPolygonId = 0;
    std::uint64_t mSerial = 0;

    std::uint32_t mTicks = 0;
    std::uint32_t mTicksPerFrame = 1;
    bool mRealClock = false;
    std::uint64_t mRealStart = 0;
    std::uint32_t mFramesComposed = 0;
    void (*mFrameHook)(SoftKernel&, void*) = nullptr;
    void* mFrameHookData = nullptr;

    std::deque<SoftInputEvent> mInput;
    std::int32_t mCursorX = 320;
    std::int32_t mCursorY = 240;
    bool mCursorVisible = true;
    int mCursorView = -1, mCursorLoop = 0, mCursorCel = 0;
    std::uint64_t mRandom = 1;

    std::map<int, std::unique_ptr<Sample>> mSamples;
    int mGlobalVolume = 127;
    int mSampleRate = 22050;
    int mSampleBits = 16;
    int mChannels = 2;
    int mAutoVolAdjust = 0;
    int mDistortAll = 0;
    int mDACCritical = 0;
    std::map<std::pair<int, int>, int> mLocks;
    struct Speech {
        int keys[5];
        std::uint32_t start;
        std::uint32_t duration;
        const SoftWav* wav;
    };
    std::vector<Speech> mSpeech;

    int mLastMessageKeys[5] = {0, 0, 0, 0, 0};
    bool mHaveLastMessage = false;

    std::unique_ptr<Robot> mRobot;
    std::unique_ptr<Vmd> mVmd;
    std::map<int, std::unique_ptr<Avi>> mAvis;
    unsigned mAviEventFlags = 0;

    struct MemBitmap {
        SoftBitmap bitmap;
        int skip = -1;
    };
    std::map<std::uint16_t, MemBitmap> mMemBitmaps;
    std::uint16_t mNextMemId = 1;
    std::unique_ptr<Font> mFont;
    std::string mFontPath;
};

#endif
