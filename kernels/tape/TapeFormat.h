// TapeFormat.h - the bytes of a tape: its header, its frame records and their checks.
//
// A tape is a file of records, written as the run goes (docs/TAPE.md has the
// layout byte by byte). Each record carries a 16-bit check of its own bytes,
// so damage is found at the record it is in. A frame record holds every call
// the library made in that frame, with its arguments and, for the operations
// whose answers move with time, input or chance, the answers; the calls are
// written as differences from the frame before, so a frame like the one
// before costs a few bytes.
//
// The reader takes a whole tape into memory (a regular file of at most the
// bytes FolderFile.h allows a tape), checks
// every record and decodes every frame before anything is replayed, so that a
// damaged tape is refused up front, naming the byte offset and the frame.
#ifndef QUINDLE_TAPE_FORMAT_H
#define QUINDLE_TAPE_FORMAT_H

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

constexpr std::uint16_t kTapeVersion = 1;

// One call the library made: the operation (its place in the interface, see
// TapeOps.h), its arguments as values, and the answers the tape serves back.
struct TapeCall {
    std::uint8_t op = 0;
    std::vector<std::int64_t> args;
    std::vector<std::int64_t> answers;
};

// An input event as the host's own queue hands it out.
struct TapeInputEvent {
    std::uint16_t type = 0;
    std::uint32_t message = 0;
    std::uint16_t modifiers = 0;
    std::int32_t x = 0;
    std::int32_t y = 0;
};

// One frame: everything from the call after one UpdateScreen to the next
// UpdateScreen, and what the host read of its own clock and input meanwhile.
struct TapeFrame {
    std::vector<TapeCall> calls;
    // The host's clock readings, in order, as runs of equal values.
    struct Run {
        std::uint32_t count;
        std::uint32_t value;
    };
    std::vector<Run> clock;
    // How many times the host looked at its input queue, and the looks that found an event.
    std::uint32_t lookups = 0;
    struct Found {
        std::uint32_t lookup;
        TapeInputEvent event;
    };
    std::vector<Found> found;

    void Clear();
};

// What the recorded run was.
struct TapeHeader {
    std::string title;          // the game folder's title
    std::string library;        // the game library's file name (no directory)
    std::string libraryVersion; // the quindle library the run was made with
    std::uint32_t step = 1;     // ticks the clock advanced per frame (headless)
    std::uint8_t realClock = 0; // 1: played in a window on the real clock
    std::vector<std::string> gameArgs;
    // Where the run was made (TapePlatform()) and the size of a pointer there,
    // which the sizes of the game's allocations follow. A tape written before
    // tapes named their platform reads as x86_64-linux with 8-byte pointers.
    std::string platform;
    std::uint8_t pointerBytes = 8;
};

// The platform this program runs on, as "<processor>-<system>": x86_64-linux,
// aarch64-linux, wasm32-web, x86_64-windows, ...
const char* TapePlatform();

// How the recorded run ended.
// kFault: the kernel met a fault or the library sent an error notice; kCrashed:
// the game's code crashed (the report names the signal); kInterrupted: the
// run was stopped by SIGINT or SIGTERM; kCut: a window session's own tape was
// ended before a quick save or restore, which a replay cannot make: the run
// went on untaped, and a replay stops there without finishing the game.
enum class TapeEnding : std::uint8_t {
    kQuit = 1,
    kTimeOver = 2,
    kClosed = 3,
    kFault = 4,
    kFailedCheck = 5,
    kCrashed = 6,
    kInterrupted = 7,
    kCut = 8
};
const char* TapeEndingText(TapeEnding ending);

// Writes a tape record by record, each reaching the file within a sixtieth of a
// second; the header and the end at once.
class TapeWriter {
public:
    ~TapeWriter();
    bool Open(const std::string& path, const TapeHeader& header, std::string* error);
    bool IsOpen() const { return mFile != nullptr; }
    // A frame ended by UpdateScreen. The frame's calls are taken over: on
    // return `frame.calls` holds calls of an earlier frame, to be overwritten.
    bool WriteFrame(TapeFrame& frame);
    // The calls after the last frame, then how the run ended. Closes the tape.
    bool WriteEnd(TapeFrame& partial, TapeEnding ending, std::uint32_t frames, const std::string& report);
    std::uint64_t Bytes() const { return mBytes; }

private:
    bool Record(std::uint8_t tag, const std::string& payload);
    void EncodeFrame(TapeFrame& frame, std::string* out);

    std::FILE* mFile = nullptr;
    std::uint64_t mBytes = 0;
    std::uint64_t mLastFlush = 0; // milliseconds of a steady clock
    std::vector<TapeCall> mPrev;
    std::uint32_t mLastClock = 0;
    std::string mPayload;
    std::string mLastPayload;
    bool mHaveLast = false;
    std::string mRecord;
};

// Reads a whole tape, checking it first.
class TapeReader {
public:
    // Reads and checks the file; on a fault returns false with
    // "<path>: <what is wrong> at byte <offset> (frame <n>)".
    bool Open(const std::string& path, std::string* error);
    // The same for bytes in memory; `name` stands for the file in messages.
    bool Parse(const std::uint8_t* data, std::size_t size, const std::string& name, std::string* error);

    const TapeHeader& Header() const { return mHeader; }
    std::uint32_t FrameCount() const { return static_cast<std::uint32_t>(mFrameOffsets.size()); }
    // The run's end was recorded (else the tape stops short: a killed run).
    bool HasEnd() const { return mHasEnd; }
    TapeEnding Ending() const { return mEnding; }
    const std::string& EndReport() const { return mEndReport; }
    // Decodes the frames in order: each call gives the next (frames 1..FrameCount), then the partial frame
    // after the last one (empty without an end). False when every frame has been given.
    bool Next(TapeFrame* frame);

private:
    bool DecodeFrame(const std::uint8_t* p, std::size_t n, std::vector<TapeCall>* prev, std::uint32_t* lastClock,
                     TapeFrame* frame, std::string* what);

    std::vector<std::uint8_t> mBytes;
    TapeHeader mHeader;
    std::vector<std::size_t> mFrameOffsets; // payload offset and length of each frame record
    std::vector<std::size_t> mFrameLengths;
    std::size_t mPartialOffset = 0, mPartialLength = 0;
    bool mHasEnd = false;
    TapeEnding mEnding = TapeEnding::kQuit;
    std::string mEndReport;
    std::size_t mNext = 0;
    std::vector<TapeCall> mPrev;
    std::uint32_t mLastClock = 0;
};

#endif
