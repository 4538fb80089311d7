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
// copies them whole and never reads them. kFullSizeScale, below, is a cel at
// its own size (kScaleFull meaning 100 percent).
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
    std::uint16_t type;        // kEventNull, or one of the kEvent... bits
    std::uint8_t reserved2[2];
    std::uint32_t message;     // key or message code; the library reads the low 16 bits
    std::uint16_t modifiers;   // modifier bits as the kernel reports them
    std::uint8_t reserved10[6];
    ZOR_Point where;           // pointer position in screen coordinates, on every event
    std::uint32_t extra;       // passed through to the user object
    std::uint8_t reserved28[12];
};

// The kernel's plane record. The kernel makes it (NewPlane), storing its
// arguments in the documented fields and pictureChanged 0; the library reads
// them back from here, writes them in place, then calls UpdatePlane.
struct KernelPlaneRecord {
    std::int32_t id;            // kFirstPlaneId or more for a live plane
    std::int32_t type;          // kPlaneColored, kPlanePicture, kPlaneTransparent, kPlaneOpaque
    std::int32_t color;         // back colour 0..255
    ZOR_Rect rect;              // screen coordinates
    std::int32_t mirror;        // 1 when the picture is shown mirrored
    std::int32_t picture;       // picture number of a picture plane, else 0
    std::int32_t priority;      // higher is nearer the viewer; -1 or more
    ZOR_Point vanishingPoint;
    std::uint8_t kernelOwn48[4136 - 48];
    std::int32_t pictureChanged; // set to 1 by the library when it writes a new picture;
                                 // the kernel clears it when it takes the picture over

    std::int32_t Id() const { return id; }
};

// What a screen item shows: a view, loop and cel (kSourceView) or a memory
// bitmap named by its id (kSourceMemBitmap).
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
// NewScreenItem fills planeId, source, pos and scale from its arguments, an id
// of its own, z and useInsetRect 0, and priority and fixedPriority as it
// chooses: an item made with kPriorityOnTop keeps those, and an item moved to
// another plane keeps the new record's fixedPriority. The library reads every
// documented field back.
struct KernelScreenItemRecord {
    std::int32_t z;             // height; the library has already taken it off pos.y
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

// The kernel service interface: the manual for writing a kernel.
//
// The library calls these operations from the host's one game thread, in the
// order game code asks it to, and never from inside a call of the kernel. A
// kernel implements every one. The operations stand in the order the library
// was built against; the comment paragraphs group them by service only.
//
// What holds throughout: sample -1 (kAllSamples) means every sample where an
// operation has an all-samples form; time is in ticks (GetTicks) or whole
// seconds (GetTime); volumes are 0..127, pan 0..100 with 50 the centre,
// colours 0..255. The library checks few answers: it takes results as they
// come, so answer within the ranges given here. A name that does not exist (an
// unknown plane, view, sample, movie) is the kernel's to handle; the library
// never relies on such a call failing. Pointers the library passes (points,
// rectangles, sources, arrays, buffers) are good only during the call: copy
// what is kept. Values marked "pass-through" are the
// kernel's to define: the library hands on what game code gave it, and the
// names below say what the reference kernel makes of them.
class KernelServices {
public:
    virtual ~KernelServices() {}

    // ----- Digital audio -----
    // Samples are named by number; the sound manager forwards most of these
    // unchanged from game code and watches GetSampleVolume once a frame to
    // learn when a sample it started or faded has ended.

    // How many samples play now (the sound manager's NumActiveSamples).
    virtual int GetActiveSampleCount() = 0;
    // Non-zero when digital audio is available; answered unchanged to game code.
    virtual int IsAudioInstalled() = 0;
    // Game code asks for a sample to be read ahead of play; the answer goes back unchanged.
    virtual int PreloadSample(int iSample) = 0;
    // Starts a sample; used instead of PlaySample when game code asks for the
    // alternate start. Qualifier and tag are pass-through.
    virtual void PlaySampleAlternate(int iSample, int iQualifier, int iVolume, int iTag) = 0;
    // Starts the recorded speech of the message with these keys, if it has any.
    // The library passes 0, volume 127, 0. Returns the speech's length in ticks,
    // 0 when there is none: a narrator talks for that long + 1 tick.
    virtual int PlayMessageAudio(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, int iZero1,
                                 int iVolume, int iZero2) = 0;
    // Starts a sample at a volume. Called by the sound manager, by Pan (0, 127,
    // 0, 0) and by sound tracks (0, node volume, 0, 0); the last argument is always 0.
    virtual void PlaySample(int iSample, int iQualifier, int iVolume, int iTag, int iZero) = 0;
    // Stops every sample.
    virtual void StopAllSamples() = 0;
    // Stops a message's speech if it still plays; called whenever a narrator is
    // done, also for messages without speech.
    virtual void StopMessageAudio(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence) = 0;
    // Stops one sample (sound tracks pass qualifier 0).
    virtual void StopSample(int iSample, int iQualifier) = 0;
    // Pause and resume every sample or one; the answers go back to game code unchanged.
    virtual int PauseAllSamples() = 0;
    virtual int PauseSample(int iSample, int iQualifier) = 0;
    virtual int ResumeAllSamples() = 0;
    virtual int ResumeSample(int iSample, int iQualifier) = 0;
    // Pass-through: the reference kernel writes the ticks left of the longest
    // playing sample and returns how many play.
    virtual int GetGlobalDuration(int* piTicksLeft) = 0;
    // Writes a sample's length; the library forwards game code's three arguments.
    virtual void GetSampleDuration(int iSample, int* piDuration, int iTag) = 0;
    // Output settings, forwarded from the sound manager: a set with a non-zero
    // value, the Default form for 0 (SetBits(0) also calls DefaultSampleRate),
    // and getters answered back unchanged.
    virtual void SetSampleRate(int iRate) = 0;
    virtual void DefaultSampleRate() = 0;
    virtual int GetSampleRate() = 0;
    virtual void SetSampleBits(int iBits) = 0;
    virtual int GetSampleBits() = 0;
    virtual void SetChannelCount(int iChannels) = 0;
    virtual void DefaultChannelCount() = 0;
    virtual int GetChannelCount() = 0;
    virtual int GetAutoVolAdjust() = 0;
    virtual void SetAutoVolAdjust(int fAdjust) = 0;
    // Pass-through distortion; the reference kernel drops the n lowest bits of
    // each sample for a level n > 0.
    virtual void DistortAllSamples(int iLevel) = 0;
    virtual void DistortSample(int iSample, int iLevel, int iExtra) = 0;
    virtual int GetGlobalVolume() = 0;
    // Non-zero while the speech of that message still plays. A narrator asks
    // once a frame after its talk time is over and ends when it answers 0. The
    // library does not read what is written through the pointer.
    virtual int IsMessageAudioPlaying(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence,
                                      int* piIgnored) = 0;
    // Non-zero while the sample plays; writes its current volume. The sound
    // manager polls it (tag 0) to see a play or a fade end, so a sample must
    // answer 0 once it has ended. What it writes decides a fade, which is
    // over when the volume written equals its target: the reference kernel
    // writes the volume an ended sample ended with, and 0 for one it does not
    // know, so that a fade to silence of a sample gone is over too.
    virtual int GetSampleVolume(int iSample, int* piVolume, int iTag) = 0;
    virtual void SetGlobalVolume(int iVolume) = 0;
    // Sets a sample's volume at once; the third value is pass-through.
    virtual void SetSampleVolume(int iSample, int iVolume, int iExtra) = 0;
    // Moves a sample's volume gradually to the target; the fade ends when
    // GetSampleVolume reports the target. Sound tracks pass (sample, 0, 5, 60,
    // 1, 0). Pass-through as the reference kernel reads them: a step every
    // iStepTicks, over iDurationTicks, and stop the sample at the end when
    // fStopAtEnd is non-zero. The answer goes back to game code.
    virtual int FadeSample(int iSample, int iTargetVolume, int iStepTicks, int iDurationTicks, int fStopAtEnd,
                           int iTag) = 0;
    // Pass-through; the reference kernel counts the audible playing samples.
    virtual int CheckNoise() = 0;
    // Pans a sample (50 the centre). Called before the sample starts when a
    // sound track node pans, so keep the pan for a sample not yet playing.
    virtual void PanSample(int iSample, int iPan, int iExtra) = 0;
    virtual void StopPanSample(int iSample, int iExtra) = 0;
    virtual int GetDACCritical() = 0;
    virtual void SetDACCritical(int fCritical) = 0;
    // Sound resources are of type kResourceAudio or kResourceSoundEffect; the
    // library asks ResourceExists for the audio type first and uses the
    // effects type when it answers 0. LoadResource gets the number by pointer
    // and 1 as its last value. Unlocks need not match locks: a sound track node
    // may unlock a sample it never locked, and game code's unlocks are passed
    // on as asked, so an unlock without a lock must do no harm.
    virtual void LoadResource(int iType, int* piNumber, int iOne) = 0;
    virtual void LockResource(int iType, int iNumber) = 0;
    virtual void UnlockResource(int iType, int iNumber) = 0;
    virtual int ResourceExists(int iType, int iNumber) = 0;

    // ----- Views and screen items -----
    // A screen item is a kernel record (NewScreenItem, below) that the library
    // fills and hands back here. Answer from what is drawn: the library asks
    // these to hit-test cels and buttons.

    // Non-zero when the item is on screen now; writes the rectangle it covers,
    // in its plane's coordinates (origin, scale and inset applied).
    virtual int GetNowSeenRect(std::int32_t lPlaneId, std::int32_t lScreenItemId, ZOR_Rect* pRect) = 0;
    // How many loops a view has, and cels a loop has; the library keeps count - 1
    // as the last index, so answer at least 1 for a view that exists.
    virtual int NumLoops(int iView) = 0;
    virtual int NumCels(std::uint32_t uView, int iLoop) = 0;
    // The highest priority of the planes held now; a plane made with
    // kPriorityOnTop gets this + 1, so with no planes answer -2 or more (the
    // reference kernel: kPriorityLowest).
    virtual int TopPlanePriority() = 0;
    // The highest priority among a plane's screen items; a polygon added with
    // kPriorityOnTop gets this + 1 (at least 0).
    virtual int TopScreenItemPriority(std::int32_t lPlaneId) = 0;
    // Non-zero when the point (plane coordinates) lies on the item; with
    // fCheckSkip set only where the cel's pixel there is drawn.
    virtual int ScreenItemOnPoint(ZOR_Point* pPoint, std::int32_t lPlaneId, std::int32_t lScreenItemId,
                                  int fCheckSkip) = 0;
    // Puts a record made by NewScreenItem on screen, taking over its values now.
    virtual void AddScreenItem(KernelScreenItemRecord* pRecord) = 0;
    // Takes the item off the screen and frees the record; must accept a record
    // never added (the library uses it when an item moves to another plane).
    virtual void DeleteScreenItem(KernelScreenItemRecord* pRecord) = 0;
    // Takes over the values the library wrote into the record since the last
    // add or update; until then keep drawing the old ones.
    virtual void UpdateScreenItem(KernelScreenItemRecord* pRecord) = 0;

    // ----- Polygons -----
    // Outlines drawn on a plane. Style is a ZOR_Line style; iPattern is
    // non-zero with tPattern and 0 otherwise (the reference kernel: a 16-bit
    // mask). AddPolygon gets at least 3 points and a priority of -1 or more;
    // an update may pass kPriorityOnTop itself (above every item of the
    // plane) and colour -1. Copy the points: the library may free them while
    // the polygon lives. AddPolygon's id must not be negative.
    virtual std::int32_t AddPolygon(std::int32_t lPlaneId, ZOR_Point* pPoints, int iCount, int iPriority,
                                    int iColor, int iStyle, int iPattern, int iThickness, int fClosed) = 0;
    virtual void DeletePolygon(std::int32_t lPlaneId, std::int32_t lPolygonId) = 0;
    virtual void UpdatePolygon(std::int32_t lPlaneId, std::int32_t lPolygonId, ZOR_Point* pPoints, int iCount,
                               int iPriority, int iColor, int iStyle, int iPattern, int iThickness, int fClosed) = 0;

    // ----- One frame -----
    // Brings the screen up to date with the planes, items and polygons: one
    // frame of output. The library calls it once a frame (always with 1), and
    // a waiting robot calls it in a loop until IsRobotDone: time must move on
    // between calls or the game hangs.
    virtual void UpdateScreen(int fOne) = 0;

    // ----- Planes -----
    // A plane is a kernel record (NewPlane, below) that the library fills and
    // hands back here; planes are named by the record's id (kFirstPlaneId or
    // more).

    // Puts a new plane among the kernel's planes; called once, right after NewPlane.
    virtual void AddPlane(KernelPlaneRecord* pRecord) = 0;
    // Removes the plane and frees its record; called by the plane's destructor.
    virtual void DeletePlane(std::int32_t lPlaneId) = 0;
    // Takes over the values the library wrote into the record (priority,
    // colour, rectangle, vanishing point, picture, mirror; pictureChanged says
    // the picture is new).
    virtual void UpdatePlane(KernelPlaneRecord* pRecord) = 0;
    // Adds a further picture to a picture plane at (x, y) of the plane, x
    // 0..1200, y 0..800; fDeleteCopy is pass-through.
    virtual void AddPicAt(std::int32_t lPlaneId, int iPicture, int x, int y, int fMirror, int fDeleteCopy) = 0;
    // Starts a transition in which the plane appears or disappears. Style
    // 0..15, speed > 0, colour kNoColor or 0..255, iToFrom 0..2, an optional
    // int array and its size, iDivisions -1 or > 0; what each value draws is
    // the kernel's (the reference kernel documents its choice).
    virtual void SetShowStyle(std::int32_t lPlaneId, int iStyle, int iSpeed, int iColor, int fAnimate,
                              int fUseReferenceFrame, int iToFrom, int* piArray, int iArraySize,
                              int iDivisions) = 0;
    // How far the plane's transition has got, in percent.
    virtual int ShowStylePercentComplete(std::int32_t lPlaneId) = 0;
    // Scrolls a picture plane toward a new picture step by step; exactly one
    // step is non-zero, iTicks is -1 or > 0.
    virtual void SetScroll(std::int32_t lPlaneId, int iStepX, int iStepY, int iPicture, int fAnimate, int iTicks,
                           int fMirror) = 0;
    // Moves every item of the plane (and its pictures with fMovePictures) by
    // the deltas. The library reads positions back from the records, so move
    // them in the records too.
    virtual void MovePlaneItems(std::int32_t lPlaneId, int iDeltaX, int iDeltaY, int fMovePictures) = 0;

    // ----- Robots -----
    // Animations the kernel plays by itself on a plane. After InitRobot every
    // operation acts on the robot last initialised: one plays at a time.

    // Loads robot uRobot onto the plane at (x, y) and a priority of -1 or
    // more. The library always passes 128 last (pass-through).
    virtual void InitRobot(std::uint32_t uRobot, std::int32_t lPlaneId, int iPriority, int x, int y,
                           int iValue128) = 0;
    // Called by every robot start before play; the library always passes 0,
    // 50000, 50000, 50000 (pass-through). The reference kernel rewinds the robot.
    virtual void PrepareRobot(int iValue0, int iValue50000a, int iValue50000b, int iValue50000c) = 0;
    // Sets the robot playing; also resumes it after PauseRobot.
    virtual void PlayRobot() = 0;
    virtual void PauseRobot() = 0;
    // May come at any time, with no robot initialised too.
    virtual void SetRobotPriority(int iPriority) = 0;
    // Non-zero once the robot has played to its end; a waiting start polls it.
    virtual int IsRobotDone() = 0;
    // Non-zero from PlayRobot until the robot ends or is stopped, paused or
    // not: the library pauses and resumes only a robot that answers non-zero.
    virtual int IsRobotPlaying() = 0;
    // Stops the robot and takes it off the screen; may come again after the
    // robot has ended or been stopped.
    virtual void TerminateRobot() = 0;
    // Read once a frame by a playing robot: 0 when nothing happened,
    // kRobotEnded once it has ended, any other value a cue point it passed.
    // Report each cue point once: every such value sends the game a cue.
    virtual std::uint32_t GetRobotSignal() = 0;

    // ----- Messages -----
    // Text looked up by four keys and a sequence number, always in that order.
    // The library asks for the size first and then for the text with a buffer
    // of exactly that size; "next" means the same conversation, next sequence.

    // Copies the text into the buffer; returns its talker, 0 when not found.
    // A message that exists has a talker other than 0: 0 reads as "no
    // message" and ends a conversation.
    virtual int GetMessage(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, char* pBuffer,
                           int iBufferSize) = 0;
    // Copies the text of the message after the one last got; returns its talker.
    virtual int GetNextMessage(char* pBuffer, int iBufferSize) = 0;
    // Non-zero when the message exists; writes the buffer size its text needs,
    // the terminating NUL counted (so at least 1): the library puts a NUL in
    // the last byte.
    virtual int GetMessageSize(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, int* piSize) = 0;
    // Non-zero when the message last got has a successor; writes its size.
    virtual int GetNextMessageSize(int* piSize) = 0;
    // Writes the five keys of the message GetMessage or GetNextMessage last returned.
    virtual void GetLastMessageKeys(int* piKeys) = 0;

    // ----- Input, coordinates and the cursor -----

    // Fills the record with the next event whose type bit is in the mask (the
    // library passes kEventMaskAll), or type kEventNull. Fill every field
    // every time: the library reuses one record and reads type, message,
    // modifiers, where and extra after each call. `where` is the pointer's
    // position in screen coordinates on every event, null and key events too
    // (the library keeps it as the mouse position and hands the event to the
    // plane under it); kEventKeyDown carries a key in `message`. kQuitKey with
    // exactly kQuitModifiers ends the game. Called once a frame, and by modal
    // hogs in a loop with no UpdateScreen between: GetEvent itself must take
    // in new input from the host, or the game waits for ever.
    virtual void GetEvent(std::uint32_t uMask, KernelEventRecord* pRecord) = 0;
    // Converts a point in place between screen and plane coordinates.
    virtual void PlaneToLocal(std::int32_t lPlaneId, ZOR_Point* pPoint) = 0;
    virtual void PlaneToGlobal(std::int32_t lPlaneId, ZOR_Point* pPoint) = 0;
    // Shows or hides the cursor. Not counted: the library may show it several
    // times in a row, and one HideCursor hides it.
    virtual void ShowCursor() = 0;
    virtual void HideCursor() = 0;
    // Moves the cursor to a point in screen coordinates.
    virtual void SetCursorPos(ZOR_Point* pPoint) = 0;
    // Gives the cursor the picture of that cel (loop and cel are 16-bit values, widened).
    virtual void SetCursorView(std::uint32_t uView, int iLoop, int iCel) = 0;

    // ----- Random numbers and clocks -----

    // A value from uLow to uHigh inclusive; uHigh must be reachable (a random
    // cycler asks again until the value differs from the current cel).
    virtual std::uint32_t Random(std::uint32_t uLow, std::uint32_t uHigh) = 0;
    // Re-seeds the generator; the library passes the current GetTicks value.
    virtual void SeedRandom(std::uint32_t uSeed) = 0;
    // Whole seconds of the kernel clock (the library passes 1); seconds timers
    // add their delay to it and compare against it.
    virtual std::uint32_t GetTime(int iSelector) = 0;
    // The clock in ticks, 60 a second. Read once a frame into the game's tick
    // count, which every timer, cycler and mover compares against; compared
    // unsigned, so it may wrap.
    virtual std::uint32_t GetTicks() = 0;

    // ----- VMD movies -----
    // The operations act on the one open movie. Status bits: bit 0 open; a
    // movie is paused when bits 0 and 1 are both set. The library reads bit 0
    // to open a movie before playing it; every other answer goes back to game
    // code unchanged.

    // Opens "<number>.VMD"; the cache size is -1 unless game code set one, and
    // the last value is game code's (pass-through), 0 when Play opens it.
    virtual unsigned OpenVmd(const char* pFileName, int iCacheSize, int iOpenArgument) = 0;
    // Places the movie on screen; flags and colour are pass-through, except
    // that the library adds flag 0x10 when game code gives a colour (each
    // -1 until then).
    virtual void SetVmdPlacement(int x, int y, int iShowFlags, int iRed, int iGreen, int iBlue) = 0;
    // Plays until one of the events in the flags (default 3, values -1).
    virtual unsigned PlayVmd(int iEventFlags, int iEventValue1, int iEventValue2) = 0;
    virtual unsigned StopVmd() = 0;
    virtual unsigned ResumeVmd() = 0;
    virtual unsigned CloseVmd() = 0;
    virtual unsigned GetVmdLength() = 0;
    virtual unsigned GetVmdStatus() = 0;
    virtual unsigned GetVmdFramesSkipped() = 0;
    // Puts the movie's palette into effect.
    virtual void SetVmdPalette() = 0;
    // Limits the palette entries the movie may change (the reference kernel:
    // a range of indices, in either order).
    virtual void RestrictVmdPalette(int iFirstIndex, int iLastIndex) = 0;
    virtual void ShowVmdCursor(int fShow) = 0;
    // Blobs are areas of the movie treated specially; their values are
    // pass-through (the reference kernel: a rectangle and a block size, shown in
    // blocks). AddVmdBlob returns the number DeleteVmdBlob gets.
    virtual void InitVmdBlobs() = 0;
    virtual void StopVmdBlobs() = 0;
    virtual int AddVmdBlob(int iLeft, int iTop, int iRight, int iBottom, int iBlockSize) = 0;
    virtual void DeleteVmdBlob(int iBlob) = 0;
    // Blacks out an area of the movie (pass-through; the reference kernel: a rectangle).
    virtual void BlackOutVmd(int iLeft, int iTop, int iRight, int iBottom) = 0;
    virtual unsigned GetVmdWidth() = 0;
    virtual unsigned GetVmdHeight() = 0;

    // ----- Geometry -----
    // Non-zero when (x, y) lies on or inside the polygon of iCount points.
    virtual int PointInPolygon(int x, int y, ZOR_Point* pPoints, int iCount) = 0;

    // ----- Memory -----
    // Every block of the library, with the file and line of the allocating
    // expression; the library asserts the block is not null. FreeMemory must
    // accept null.
    virtual void* AllocMemory(std::uint32_t uSize, const char* pFile, int iLine) = 0;
    virtual void FreeMemory(void* pBlock) = 0;

    // ----- Kernel-side records -----
    // The kernel makes and frees the plane and screen item records; the library
    // writes the documented fields in place and hands the record back. Every
    // byte the record does not document is the kernel's.

    // Makes a plane record of a type (kPlaneColored, kPlanePicture,
    // kPlaneTransparent, kPlaneOpaque) with its colour, rectangle, window index
    // 0..4, priority (-1 or more), vanishing point, picture and mirror, stored
    // in the record (the library reads them back from it); never null for
    // valid arguments. AddPlane and PlaneCreated follow.
    virtual KernelPlaneRecord* NewPlane(int iType, int iColor, ZOR_Rect* pRect, int iWindowIndex, int iPriority,
                                        ZOR_Point* pVanishingPoint, int iPicture, int fMirror) = 0;
    // The library wrote a new rectangle into the record.
    virtual void PlaneRectChanged(KernelPlaneRecord* pRecord) = 0;
    // Makes a screen item record on a plane showing the source at a position
    // and scale, with an id the kernel chooses, filled as the record's comment
    // says. Ids must differ among live records: when an item is hidden the
    // library makes its replacement before it deletes the old record.
    // AddScreenItem puts it on screen; DisposeScreenItem frees one that never was.
    virtual KernelScreenItemRecord* NewScreenItem(std::int32_t lPlaneId, KernelScreenItemSource* pSource,
                                                  ZOR_Point pos, ScaleInfo scale) = 0;
    virtual void DisposeScreenItem(KernelScreenItemRecord* pRecord) = 0;
    // Non-zero exactly when the 16-bit memory id names a live bitmap; the
    // library asserts it before every use of a bitmap-based item.
    virtual int DLLCheckValid(int iMemId) = 0;
    // The plane is complete: called right after AddPlane.
    virtual void PlaneCreated(KernelPlaneRecord* pRecord) = 0;

    // ----- AVI movies -----
    // Named by their number; status bit 0 is "open". Every answer goes back to
    // game code unchanged.

    // Opens "<number>.AVI" under its number.
    virtual unsigned OpenAvi(int iMovie, const char* pFileName) = 0;
    virtual unsigned CloseAvi(int iMovie) = 0;
    // Places and sizes the movie.
    virtual void SetAviRect(int iMovie, int x, int y, int iWidth, int iHeight) = 0;
    virtual void SetAviPos(int iMovie, int x, int y) = 0;
    // Plays the movie (defaults 0, 0, play type 2, 0). Pass-through as the
    // reference kernel reads them: the first and last frame (0: to the end);
    // play type 1 loops; the last value unused.
    virtual unsigned PlayAvi(int iMovie, int iFirstFrame, int iLastFrame, int iPlayType, int iPlayValue4) = 0;
    virtual unsigned StopAvi(int iMovie) = 0;
    virtual unsigned PauseAvi(int iMovie) = 0;
    virtual unsigned CueAvi(int iMovie, int iFrame) = 0;
    virtual unsigned SeekAvi(int iMovie, int iFrame) = 0;
    virtual unsigned ResumeAvi(int iMovie) = 0;
    virtual void SetAviPalette(int iMovie) = 0;
    virtual unsigned GetAviLength(int iMovie) = 0;
    virtual unsigned GetAviFrameNum(int iMovie) = 0;
    virtual unsigned GetAviStatus(int iMovie) = 0;
    // Sets the events that end AVI play (pass-through flags).
    virtual unsigned SetAviEvent(int iEventFlags) = 0;
};

// The interface the host handed to DLLInit; null until then, never cleared.
#if defined(_WIN32) && defined(QUINDLE_BUILDING_LIBRARY)
extern __declspec(dllexport) KernelServices* kernel;
#elif defined(_WIN32)
extern __declspec(dllimport) KernelServices* kernel;
#elif defined(QUINDLE_BUILDING_LIBRARY)
extern __attribute__((visibility("default"))) KernelServices* kernel;
#else
extern KernelServices* kernel;
#endif

#endif
