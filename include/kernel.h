// kernel.h - the kernel service interface and every record that crosses it.
//
// The library draws, plays and reads nothing itself: every picture, sound,
// movie, input event, clock reading, random number and block of memory comes
// through the one object the host hands to DLLInit. This header is the whole
// contract between the library and a kernel; a kernel includes nothing else of
// the library. Records are laid out byte for byte as the kernel keeps them, and
// every documented offset is proven below with static_assert.
#ifndef QUINDLE_KERNEL_H
#define QUINDLE_KERNEL_H

#include "glconst.h"

#include <cstddef>
#include <cstdint>

// A point in pixels; x grows to the right, y downward. A default-constructed
// point holds the marker 0x89ABCDEF in both fields: "not yet set".
struct ZOR_Point {
    std::int32_t x;
    std::int32_t y;

    ZOR_Point() : x(static_cast<std::int32_t>(0x89ABCDEFu)), y(static_cast<std::int32_t>(0x89ABCDEFu)) {}
    ZOR_Point(std::int32_t xNew, std::int32_t yNew) : x(xNew), y(yNew) {}
};

// An inclusive rectangle: (0, 0, 639, 479) covers the 640 by 480 screen. A
// default-constructed rectangle holds the marker 0x89ABCDEF in all four edges.
struct ZOR_Rect {
    std::int32_t left;
    std::int32_t top;
    std::int32_t right;
    std::int32_t bottom;

    ZOR_Rect()
        : left(static_cast<std::int32_t>(0x89ABCDEFu)), top(static_cast<std::int32_t>(0x89ABCDEFu)),
          right(static_cast<std::int32_t>(0x89ABCDEFu)), bottom(static_cast<std::int32_t>(0x89ABCDEFu))
    {
    }
    ZOR_Rect(std::int32_t l, std::int32_t t, std::int32_t r, std::int32_t b) : left(l), top(t), right(r), bottom(b) {}

    // True exactly when right < left or bottom < top; a one-pixel rectangle is not empty.
    bool IsEmpty() const { return right < left || bottom < top; }
};

// The kernel's line styles for polygons and polylines.
struct ZOR_Line {
    enum Style { tSolid = 0, tDashed = 1, tPattern = 2 };
};

// Four values the kernel interprets as a screen item's scaling; the library
// copies them whole and never reads them. The library's own default is
// 128, 128, 100, 0 (128 meaning 100 percent).
struct ScaleInfo {
    std::int32_t scaleX;
    std::int32_t scaleY;
    std::int32_t maxScale;
    std::int32_t mode;
};

// The scale that shows a cel at its own size.
const ScaleInfo kFullSizeScale = {kScaleFull, kScaleFull, kScaleMaxDefault, kScaleModeDefault};

// The 40-byte input event record the kernel fills in GetEvent.
struct KernelEventRecord {
    std::uint16_t type;        // 0: no event; each type is one bit
    std::uint8_t reserved2[2];
    std::uint32_t message;     // key or message code; the library reads the low 16 bits
    std::uint16_t modifiers;   // modifier bits as the kernel reports them
    std::uint8_t reserved10[6];
    ZOR_Point where;           // pointer position in screen coordinates
    std::uint32_t extra;       // passed through to the user object
    std::uint8_t reserved28[12];
};

// The kernel's plane record. The kernel makes it (NewPlane) and the library
// writes the documented fields in place, then calls UpdatePlane.
struct KernelPlaneRecord {
    std::int32_t id;            // 20000 or more for a live plane
    std::int32_t type;          // -1 coloured, -4 picture, -2 transparent, -3 opaque
    std::int32_t color;         // back colour 0..255
    ZOR_Rect rect;              // screen coordinates
    std::int32_t mirror;        // 1 when the picture is shown mirrored
    std::int32_t picture;       // picture number of a picture plane, else 0
    std::int32_t priority;      // higher is nearer the viewer; -1 or more
    ZOR_Point vanishingPoint;
    std::uint8_t kernelOwn48[4136 - 48];
    std::int32_t pictureChanged; // set to 1 by the library when it writes a new picture

    std::int32_t Id() const { return id; }
};

// What a screen item shows: a view, loop and cel (kind 0) or a memory bitmap (kind 2).
struct KernelScreenItemSource {
    std::int32_t kind;
    std::int32_t view;
    std::int32_t loop;
    std::int32_t cel;
    std::uint16_t memId;
    std::uint8_t padding[2];
};

// The kernel's screen item record. The kernel makes it (NewScreenItem) and the
// library writes the documented fields in place, then calls UpdateScreenItem.
struct KernelScreenItemRecord {
    std::int32_t z;
    KernelScreenItemSource source;
    std::uint8_t kernelOwn24[4];
    ZOR_Point pos;              // in the coordinates of the item's plane
    ScaleInfo scale;
    std::uint8_t kernelOwn52[4];
    std::int32_t id;
    std::uint8_t kernelOwn60[4];
    std::int32_t planeId;
    std::uint8_t kernelOwn68[4];
    std::int32_t priority;      // -1 or more
    std::int32_t fixedPriority; // 1: priority holds; 0: the kernel floats it by position
    std::uint8_t kernelOwn80[16];
    std::int32_t useInsetRect;  // 1 when the inset rectangle is in force
    std::uint8_t kernelOwn100[4];
    std::uint32_t kernelValue;  // not interpreted by the library; carried over by Hide
    std::uint8_t kernelOwn108[960 - 108];
    ZOR_Rect insetRect;

    std::int32_t PlaneId() const { return planeId; }
};

static_assert(sizeof(ZOR_Point) == 8, "ZOR_Point is two 32-bit values");
static_assert(offsetof(ZOR_Point, y) == 4, "ZOR_Point layout");
static_assert(sizeof(ZOR_Rect) == 16, "ZOR_Rect is four 32-bit values");
static_assert(offsetof(ZOR_Rect, top) == 4 && offsetof(ZOR_Rect, right) == 8 && offsetof(ZOR_Rect, bottom) == 12,
              "ZOR_Rect layout");
static_assert(sizeof(ScaleInfo) == 16, "ScaleInfo is four 32-bit values");
static_assert(sizeof(KernelEventRecord) == 40, "the event record is 40 bytes");
static_assert(offsetof(KernelEventRecord, type) == 0 && offsetof(KernelEventRecord, message) == 4 &&
                  offsetof(KernelEventRecord, modifiers) == 8 && offsetof(KernelEventRecord, where) == 16 &&
                  offsetof(KernelEventRecord, extra) == 24,
              "event record layout");
static_assert(offsetof(KernelPlaneRecord, id) == 0 && offsetof(KernelPlaneRecord, type) == 4 &&
                  offsetof(KernelPlaneRecord, color) == 8 && offsetof(KernelPlaneRecord, rect) == 12 &&
                  offsetof(KernelPlaneRecord, mirror) == 28 && offsetof(KernelPlaneRecord, picture) == 32 &&
                  offsetof(KernelPlaneRecord, priority) == 36 && offsetof(KernelPlaneRecord, vanishingPoint) == 40 &&
                  offsetof(KernelPlaneRecord, pictureChanged) == 4136,
              "plane record layout");
static_assert(sizeof(KernelPlaneRecord) == 4140, "the plane record is 4140 bytes");
static_assert(sizeof(KernelScreenItemSource) == 20, "the source descriptor is 20 bytes");
static_assert(offsetof(KernelScreenItemSource, view) == 4 && offsetof(KernelScreenItemSource, loop) == 8 &&
                  offsetof(KernelScreenItemSource, cel) == 12 && offsetof(KernelScreenItemSource, memId) == 16,
              "source descriptor layout");
static_assert(offsetof(KernelScreenItemRecord, z) == 0 && offsetof(KernelScreenItemRecord, source) == 4 &&
                  offsetof(KernelScreenItemRecord, pos) == 28 && offsetof(KernelScreenItemRecord, scale) == 36 &&
                  offsetof(KernelScreenItemRecord, id) == 56 && offsetof(KernelScreenItemRecord, planeId) == 64 &&
                  offsetof(KernelScreenItemRecord, priority) == 72 &&
                  offsetof(KernelScreenItemRecord, fixedPriority) == 76 &&
                  offsetof(KernelScreenItemRecord, useInsetRect) == 96 &&
                  offsetof(KernelScreenItemRecord, kernelValue) == 104 &&
                  offsetof(KernelScreenItemRecord, insetRect) == 960,
              "screen item record layout");
static_assert(sizeof(KernelScreenItemRecord) == 976, "the screen item record is 976 bytes");

// The kernel service interface. The operations stand in the order the library
// has always called them in; a kernel implements every one. Sample number -1
// means every sample where an operation has an all-samples form; time is in
// ticks (GetTicks) or whole seconds (GetTime); volumes are 0..127; pan 0..100
// with 50 the centre; colours 0..255.
class KernelServices {
public:
    virtual ~KernelServices() {}

    // Digital audio.
    virtual int GetActiveSampleCount() = 0;
    virtual int IsAudioInstalled() = 0;
    virtual int PreloadSample(int iSample) = 0;
    virtual void PlaySampleAlternate(int iSample, int iQualifier, int iVolume, int iTag) = 0;
    // Starts a message's speech; returns its length in ticks, 0 when it has none.
    virtual int PlayMessageAudio(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, int iUnused1,
                                 int iVolume, int iUnused2) = 0;
    virtual void PlaySample(int iSample, int iQualifier, int iVolume, int iTag, int iUnused) = 0;
    virtual void StopAllSamples() = 0;
    virtual void StopMessageAudio(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence) = 0;
    virtual void StopSample(int iSample, int iQualifier) = 0;
    virtual int PauseAllSamples() = 0;
    virtual int PauseSample(int iSample, int iQualifier) = 0;
    virtual int ResumeAllSamples() = 0;
    virtual int ResumeSample(int iSample, int iQualifier) = 0;
    virtual int GetGlobalDuration(int* piValue) = 0;
    virtual void GetSampleDuration(int iSample, int* piDuration, int iTag) = 0;
    virtual void SetSampleRate(int iRate) = 0;
    virtual void DefaultSampleRate() = 0;
    virtual int GetSampleRate() = 0;
    virtual void SetSampleBits(int iBits) = 0;
    virtual int GetSampleBits() = 0;
    virtual void SetChannelCount(int iChannels) = 0;
    virtual void DefaultChannelCount() = 0;
    virtual int GetChannelCount() = 0;
    virtual int GetAutoVolAdjust() = 0;
    virtual void SetAutoVolAdjust(int iValue) = 0;
    virtual void DistortAllSamples(int iValue) = 0;
    virtual void DistortSample(int iSample, int iValue1, int iValue2) = 0;
    virtual int GetGlobalVolume() = 0;
    // Non-zero while the speech of that message is still playing.
    virtual int IsMessageAudioPlaying(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, int* piUnused) = 0;
    // Non-zero while the sample is playing; writes its current volume.
    virtual int GetSampleVolume(int iSample, int* piVolume, int iTag) = 0;
    virtual void SetGlobalVolume(int iVolume) = 0;
    virtual void SetSampleVolume(int iSample, int iVolume, int iValue) = 0;
    virtual int FadeSample(int iSample, int iTargetVolume, int iValue1, int iValue2, int iValue3, int iTag) = 0;
    virtual int CheckNoise() = 0;
    virtual void PanSample(int iSample, int iPan, int iValue) = 0;
    virtual void StopPanSample(int iSample, int iValue) = 0;
    virtual int GetDACCritical() = 0;
    virtual void SetDACCritical(int iValue) = 0;
    // Sound resources are of type 12 or 13.
    virtual void LoadResource(int iType, int* piNumber, int iValue) = 0;
    virtual void LockResource(int iType, int iNumber) = 0;
    virtual void UnlockResource(int iType, int iNumber) = 0;
    virtual int ResourceExists(int iType, int iNumber) = 0;

    // Views and screen items.
    // Non-zero when the item is on screen now; writes the rectangle it covers.
    virtual int GetNowSeenRect(std::int32_t lPlaneId, std::int32_t lScreenItemId, ZOR_Rect* pRect) = 0;
    virtual int NumLoops(int iView) = 0;
    virtual int NumCels(std::uint32_t uView, int iLoop) = 0;
    virtual int TopPlanePriority() = 0;
    virtual int TopScreenItemPriority(std::int32_t lPlaneId) = 0;
    virtual int ScreenItemOnPoint(ZOR_Point* pPoint, std::int32_t lPlaneId, std::int32_t lScreenItemId,
                                  int fCheckSkip) = 0;
    virtual void AddScreenItem(KernelScreenItemRecord* pRecord) = 0;
    // Takes the item off the screen and frees the record; accepts a record never added.
    virtual void DeleteScreenItem(KernelScreenItemRecord* pRecord) = 0;
    virtual void UpdateScreenItem(KernelScreenItemRecord* pRecord) = 0;

    // Polygons.
    virtual std::int32_t AddPolygon(std::int32_t lPlaneId, ZOR_Point* pPoints, int iCount, int iPriority,
                                    int iColor, int iStyle, int iPattern, int iThickness, int fClosed) = 0;
    virtual void DeletePolygon(std::int32_t lPlaneId, std::int32_t lPolygonId) = 0;
    virtual void UpdatePolygon(std::int32_t lPlaneId, std::int32_t lPolygonId, ZOR_Point* pPoints, int iCount,
                               int iPriority, int iColor, int iStyle, int iPattern, int iThickness, int fClosed) = 0;

    // One frame of output.
    virtual void UpdateScreen(int fFlag) = 0;

    // Planes.
    virtual void AddPlane(KernelPlaneRecord* pRecord) = 0;
    virtual void DeletePlane(std::int32_t lPlaneId) = 0;
    virtual void UpdatePlane(KernelPlaneRecord* pRecord) = 0;
    virtual void AddPicAt(std::int32_t lPlaneId, int iPicture, int x, int y, int fMirror, int fDeleteCopy) = 0;
    virtual void SetShowStyle(std::int32_t lPlaneId, int iStyle, int iSpeed, int iColor, int fAnimate,
                              int fUseReferenceFrame, int iToFrom, int* piArray, int iArraySize,
                              int iDivisions) = 0;
    virtual int ShowStylePercentComplete(std::int32_t lPlaneId) = 0;
    virtual void SetScroll(std::int32_t lPlaneId, int iStepX, int iStepY, int iPicture, int fAnimate, int iTicks,
                           int fMirror) = 0;
    virtual void MovePlaneItems(std::int32_t lPlaneId, int iDeltaX, int iDeltaY, int fMovePictures) = 0;

    // Robots: after InitRobot the operations act on the robot last initialised.
    virtual void InitRobot(std::uint32_t uRobot, std::int32_t lPlaneId, int iPriority, int x, int y,
                           int iValue) = 0;
    virtual void PrepareRobot(int iValue1, int iValue2, int iValue3, int iValue4) = 0;
    virtual void PlayRobot() = 0;
    virtual void PauseRobot() = 0;
    virtual void SetRobotPriority(int iPriority) = 0;
    virtual int IsRobotDone() = 0;
    virtual int IsRobotPlaying() = 0;
    virtual void TerminateRobot() = 0;
    // 0: nothing happened; 0xFFFFFFFF: the robot has ended; else a cue point passed.
    virtual std::uint32_t GetRobotSignal() = 0;

    // Messages, looked up by four keys and a sequence number.
    virtual int GetMessage(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, char* pBuffer,
                           int iBufferSize) = 0;
    virtual int GetNextMessage(char* pBuffer, int iBufferSize) = 0;
    virtual int GetMessageSize(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, int* piSize) = 0;
    virtual int GetNextMessageSize(int* piSize) = 0;
    virtual void GetLastMessageKeys(int* piKeys) = 0;

    // Input, coordinates and the cursor.
    virtual void GetEvent(std::uint32_t uMask, KernelEventRecord* pRecord) = 0;
    virtual void PlaneToLocal(std::int32_t lPlaneId, ZOR_Point* pPoint) = 0;
    virtual void PlaneToGlobal(std::int32_t lPlaneId, ZOR_Point* pPoint) = 0;
    virtual void ShowCursor() = 0;
    virtual void HideCursor() = 0;
    virtual void SetCursorPos(ZOR_Point* pPoint) = 0;
    virtual void SetCursorView(std::uint32_t uView, int iLoop, int iCel) = 0;

    // Random numbers and clocks.
    virtual std::uint32_t Random(std::uint32_t uLow, std::uint32_t uHigh) = 0;
    virtual void SeedRandom(std::uint32_t uSeed) = 0;
    virtual std::uint32_t GetTime(int iSelector) = 0;
    virtual std::uint32_t GetTicks() = 0;

    // VMD movies: the operations act on the one open movie.
    virtual unsigned OpenVmd(const char* pFileName, int iCacheSize, int iOpenArgument) = 0;
    virtual void SetVmdPlacement(int x, int y, int iFlags, int iRed, int iGreen, int iBlue) = 0;
    virtual unsigned PlayVmd(int iEventFlags, int iEventValue1, int iEventValue2) = 0;
    virtual unsigned StopVmd() = 0;
    virtual unsigned ResumeVmd() = 0;
    virtual unsigned CloseVmd() = 0;
    virtual unsigned GetVmdLength() = 0;
    virtual unsigned GetVmdStatus() = 0;
    virtual unsigned GetVmdFramesSkipped() = 0;
    virtual void SetVmdPalette() = 0;
    virtual void RestrictVmdPalette(int iValue1, int iValue2) = 0;
    virtual void ShowVmdCursor(int fShow) = 0;
    virtual void InitVmdBlobs() = 0;
    virtual void StopVmdBlobs() = 0;
    virtual int AddVmdBlob(int iValue1, int iValue2, int iValue3, int iValue4, int iValue5) = 0;
    virtual void DeleteVmdBlob(int iBlob) = 0;
    virtual void BlackOutVmd(int iValue1, int iValue2, int iValue3, int iValue4) = 0;
    virtual unsigned GetVmdWidth() = 0;
    virtual unsigned GetVmdHeight() = 0;

    // Non-zero when the point lies on or inside the polygon.
    virtual int PointInPolygon(int x, int y, ZOR_Point* pPoints, int iCount) = 0;

    // Memory. FreeMemory accepts null.
    virtual void* AllocMemory(std::uint32_t uSize, const char* pFile, int iLine) = 0;
    virtual void FreeMemory(void* pBlock) = 0;

    // Kernel-side records.
    virtual KernelPlaneRecord* NewPlane(int iType, int iColor, ZOR_Rect* pRect, int iWindowIndex, int iPriority,
                                        ZOR_Point* pVanishingPoint, int iPicture, int fMirror) = 0;
    virtual void PlaneRectChanged(KernelPlaneRecord* pRecord) = 0;
    virtual KernelScreenItemRecord* NewScreenItem(std::int32_t lPlaneId, KernelScreenItemSource* pSource,
                                                  ZOR_Point pos, ScaleInfo scale) = 0;
    virtual void DisposeScreenItem(KernelScreenItemRecord* pRecord) = 0;
    // Non-zero when the 16-bit memory id names a live block.
    virtual int DLLCheckValid(int iMemId) = 0;
    virtual void PlaneCreated(KernelPlaneRecord* pRecord) = 0;

    // AVI movies, named by their number.
    virtual unsigned OpenAvi(int iMovie, const char* pFileName) = 0;
    virtual unsigned CloseAvi(int iMovie) = 0;
    virtual void SetAviRect(int iMovie, int x, int y, int iWidth, int iHeight) = 0;
    virtual void SetAviPos(int iMovie, int x, int y) = 0;
    virtual unsigned PlayAvi(int iMovie, int iValue1, int iValue2, int iPlayType, int iValue4) = 0;
    virtual unsigned StopAvi(int iMovie) = 0;
    virtual unsigned PauseAvi(int iMovie) = 0;
    virtual unsigned CueAvi(int iMovie, int iFrame) = 0;
    virtual unsigned SeekAvi(int iMovie, int iFrame) = 0;
    virtual unsigned ResumeAvi(int iMovie) = 0;
    virtual void SetAviPalette(int iMovie) = 0;
    virtual unsigned GetAviLength(int iMovie) = 0;
    virtual unsigned GetAviFrameNum(int iMovie) = 0;
    virtual unsigned GetAviStatus(int iMovie) = 0;
    virtual unsigned SetAviEvent(int iEventFlags) = 0;
};

// The interface the host handed to DLLInit; null until then, never cleared.
#if defined(QUINDLE_BUILDING_LIBRARY)
extern __attribute__((visibility("default"))) KernelServices* kernel;
#else
extern KernelServices* kernel;
#endif

#endif
