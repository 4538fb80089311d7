// RecordingKernel.h - a kernel that performs nothing and records everything.
//
// Every operation appends one line to the call log, "Name(arg,arg,...)", and
// answers from state that a test sets: the clocks, the event queue, the views'
// loop and cel counts, now-seen rectangles, robot signals, samples, the message
// store. Plane and screen item records are real records with real ids, memory
// comes from the allocation ledger, so a test sees leaks and double releases.
//
// How arguments are written in the log:
//   ints and unsigned values     in decimal
//   a plane record pointer       plane:<id>          (null: null)
//   a screen item record         item:<id>
//   a point (pointer or value)   (x,y)
//   a rectangle pointer          (left,top,right,bottom)
//   a ScaleInfo                  [x,y,max,mode]
//   a source descriptor          src:<kind>/<view>/<loop>/<cel>/<memId>
//   a string                     "text"
//   other pointers               ptr or null
// AllocMemory and FreeMemory are not logged (they would drown the rest); the
// ledger keeps them.
#ifndef QUINDLE_RECORDING_KERNEL_H
#define QUINDLE_RECORDING_KERNEL_H

#include "kernel.h"
#include "kernel_ops.h"

#include "AllocationLedger.h"

#include <deque>
#include <map>
#include <string>
#include <utility>
#include <vector>

class RecordingKernel : public KernelServices {
public:
    RecordingKernel();
    ~RecordingKernel() override;

    // ----- the call log -----
    const std::vector<std::string>& Calls() const { return mCalls; }
    // The calls whose name is `name`, in order.
    std::vector<std::string> CallsNamed(const std::string& name) const;
    // How many calls of that name were made.
    int Count(const std::string& name) const;
    // The calls since a mark taken with Mark().
    std::size_t Mark() const { return mCalls.size(); }
    std::vector<std::string> CallsSince(std::size_t mark) const;
    // The names only, since a mark ("UpdatePlane", "AddPlane", ...).
    std::vector<std::string> NamesSince(std::size_t mark) const;
    void ClearCalls() { mCalls.clear(); }
    // With recording off the kernel still answers from its state but logs
    // nothing: a kernel whose calls cost next to nothing, for benchmarks.
    bool recording = true;

    // ----- clocks and random numbers -----
    std::uint32_t ticks = 0;         // GetTicks
    std::uint32_t seconds = 0;       // GetTime
    std::uint32_t ticksPerFrame = 0; // added to ticks by every UpdateScreen
    std::deque<std::uint32_t> randomAnswers; // answered first by Random, in order
    std::uint32_t randomSeed = 1;    // state of the generator behind Random

    // ----- input -----
    // Queues an event; GetEvent hands them out in order and a null event (type
    // 0, at the last pointer position) once the queue is empty.
    void PushEvent(std::uint16_t type, std::uint32_t message = 0, std::uint16_t modifiers = 0, int x = 0, int y = 0,
                   std::uint32_t extra = 0);
    std::deque<KernelEventRecord> events;
    ZOR_Point pointer{0, 0};

    // ----- views -----
    // Sets the cel count of each loop of a view.
    void SetView(int view, const std::vector<int>& celsPerLoop) { views[view] = celsPerLoop; }
    std::map<int, std::vector<int>> views;
    int defaultLoops = 1; // for views that were never set
    int defaultCels = 1;
    // The size of every cel drawn; a screen item covers this many pixels from its position.
    int celWidth = 10;
    int celHeight = 10;
    // Overrides what GetNowSeenRect reports for one screen item id.
    std::map<std::int32_t, ZOR_Rect> nowSeen;

    // ----- planes, screen items, polygons -----
    KernelPlaneRecord* Plane(std::int32_t id) const;       // null when unknown
    KernelScreenItemRecord* Item(std::int32_t id) const;   // null when unknown
    bool ItemOnScreen(std::int32_t id) const;
    std::size_t PlaneCount() const { return mPlanes.size(); }
    std::size_t ItemCount() const { return mItems.size(); }
    int topScreenItemPriority = 0;
    struct Polygon {
        std::int32_t plane;
        std::vector<ZOR_Point> points;
        int priority, color, style, pattern, thickness, closed;
    };
    std::map<std::int32_t, Polygon> polygons;
    int showStylePercent = 100;
    std::map<int, bool> validMemIds; // DLLCheckValid answers true for ids set here

    // ----- robots -----
    std::deque<std::uint32_t> robotSignals; // GetRobotSignal hands these out, then 0
    int robotDone = 0;
    int robotPlaying = 0;
    int robotDoneAfterPolls = -1; // >= 0: IsRobotDone turns non-zero after this many polls

    // ----- messages -----
    struct Message {
        int keys[4];
        int sequence;
        int talker;
        std::string text;
        int audioTicks; // length of its speech in ticks, 0 for none
    };
    void AddMessage(int k1, int k2, int k3, int k4, int sequence, int talker, const std::string& text,
                    int audioTicks = 0);
    std::vector<Message> messages;

    // ----- sound -----
    std::map<int, int> playingSamples; // sample -> volume
    std::map<std::pair<int, int>, bool> resources; // (type, number) present
    int audioInstalled = 1;
    int globalVolume = 127;

    // ----- movies -----
    unsigned vmdStatus = 0;
    std::map<int, unsigned> aviStatus;
    unsigned vmdLength = 0;
    unsigned vmdFramesSkipped = 0;
    std::map<int, unsigned> aviLength;   // by movie number; 0 for others
    std::map<int, unsigned> aviFrameNum; // by movie number; 0 for others
    // What every VMD and AVI transport operation answers (open, close, play,
    // stop, pause, resume, cue, seek, the AVI event flags).
    unsigned movieResult = 0;

    // ----- memory -----
    AllocationLedger& Ledger() { return mLedger; }
    const AllocationLedger& Ledger() const { return mLedger; }

    // ----- KernelServices -----
    QUINDLE_KERNEL_OPS(QUINDLE_KERNEL_OVERRIDE)

    // Writes one argument into a log line; see the table at the top.
    static std::string Arg(long long value) { return std::to_string(value); }
    static std::string Arg(const ZOR_Point& point);
    static std::string Arg(const ZOR_Point* point);
    static std::string Arg(const ZOR_Rect* rect);
    static std::string Arg(const ScaleInfo& scale);
    static std::string Arg(const KernelPlaneRecord* record);
    static std::string Arg(const KernelScreenItemRecord* record);
    static std::string Arg(const KernelScreenItemSource* source);
    static std::string Arg(const char* text);
    static std::string Arg(const void* pointer) { return pointer ? "ptr" : "null"; }

private:
    template <typename... Args>
    void Log(const char* name, const Args&... args)
    {
        if (!recording)
            return;
        std::string line(name);
        line += '(';
        bool first = true;
        ((line += (first ? "" : ","), line += Arg(args), first = false), ...);
        line += ')';
        mCalls.push_back(std::move(line));
    }
    void Log(const char* name)
    {
        if (recording)
            mCalls.push_back(std::string(name) + "()");
    }
    // Logs a movie operation that answers what every transport operation answers.
    template <typename... Args> unsigned MovieCall(const char* name, const Args&... args)
    {
        Log(name, args...);
        return movieResult;
    }
    const Message* FindMessage(int k1, int k2, int k3, int k4, int sequence) const;
    // The message after the one last got, or null.
    const Message* NextMessage() const;
    // Writes the buffer size a message's text needs; 0 when there is none.
    static int SizeOf(const Message* message, int* piSize);
    // Copies a message's text (cut to the buffer) and makes it the one last
    // got; returns its talker, 0 when there is none.
    int HandOut(const Message* message, char* pBuffer, int iBufferSize);
    void RememberMessage(const Message& message);

    std::vector<std::string> mCalls;
    AllocationLedger mLedger;
    std::map<std::int32_t, KernelPlaneRecord*> mPlanes;
    std::map<std::int32_t, KernelScreenItemRecord*> mItems;
    std::map<std::int32_t, bool> mOnScreen;
    std::int32_t mNextPlaneId = kFirstPlaneId;
    std::int32_t mNextItemId = 1;
    std::int32_t mNextPolygonId = 0;
    // The last message handed out, by its keys: `messages` may grow (and move)
    // between one message and the next.
    bool mHaveLastMessage = false;
    int mLastKeys[5] = {0, 0, 0, 0, 0}; // four keys, then the sequence
    std::map<int, std::uint32_t> mSpeechEnds; // message index -> tick its speech ends
    int mRobotPolls = 0;
};

#endif
