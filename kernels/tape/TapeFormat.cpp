// TapeFormat.cpp - writing and reading tape records.
#include "TapeFormat.h"

#include "FolderFile.h"

#include <chrono>
#include <cstring>

namespace {

const char kMagic[8] = {'Q', 'N', 'D', 'L', 'T', 'A', 'P', 'E'};
constexpr std::size_t kMaxString = 4096;
constexpr std::size_t kMaxCalls = 1u << 20;
constexpr std::size_t kMaxValues = 1u << 16;
constexpr std::uint8_t kTagHeader = 'H', kTagFrame = 'F', kTagRepeat = 'R', kTagPartial = 'P', kTagEnd = 'E';

// Call entries of a frame record.
enum : std::uint8_t { kEntryEnd = 0, kEntryCopy, kEntrySkip, kEntryAnswers, kEntryChanged, kEntryLiteral };

// CRC-16/CCITT (polynomial 0x1021, start 0xFFFF), a byte at a time.
struct Check16Table {
    std::uint16_t entry[256];
    Check16Table()
    {
        for (int i = 0; i < 256; i++) {
            std::uint16_t crc = static_cast<std::uint16_t>(i << 8);
            for (int b = 0; b < 8; b++)
                crc = static_cast<std::uint16_t>(crc & 0x8000 ? (crc << 1) ^ 0x1021 : crc << 1);
            entry[i] = crc;
        }
    }
};

std::uint16_t Check16(const std::uint8_t* p, std::size_t n)
{
    static const Check16Table table;
    std::uint16_t crc = 0xFFFF;
    for (std::size_t i = 0; i < n; i++)
        crc = static_cast<std::uint16_t>((crc << 8) ^ table.entry[((crc >> 8) ^ p[i]) & 0xFF]);
    return crc;
}

void PutVar(std::string* out, std::uint64_t v)
{
    while (v >= 0x80) {
        out->push_back(static_cast<char>((v & 0x7F) | 0x80));
        v >>= 7;
    }
    out->push_back(static_cast<char>(v));
}

void PutSigned(std::string* out, std::int64_t v)
{
    PutVar(out, (static_cast<std::uint64_t>(v) << 1) ^ static_cast<std::uint64_t>(v >> 63));
}

void PutString(std::string* out, const std::string& s)
{
    const std::size_t n = s.size() < kMaxString ? s.size() : kMaxString;
    PutVar(out, n);
    out->append(s, 0, n);
}

// Reads values from a bounded span; every read fails (and stays failed) past its end.
struct Cursor {
    const std::uint8_t* p;
    std::size_t n;
    std::size_t at = 0;
    bool ok = true;

    std::uint64_t Var()
    {
        std::uint64_t v = 0;
        for (int shift = 0; ok && shift < 64; shift += 7) {
            if (at >= n)
                break;
            const std::uint8_t b = p[at++];
            v |= static_cast<std::uint64_t>(b & 0x7F) << shift;
            if (!(b & 0x80))
                return v;
        }
        ok = false;
        return 0;
    }
    std::int64_t Signed()
    {
        const std::uint64_t v = Var();
        return static_cast<std::int64_t>(v >> 1) ^ -static_cast<std::int64_t>(v & 1);
    }
    // A count that the remaining bytes can hold (each counted thing takes a byte or more).
    std::size_t Count(std::size_t limit)
    {
        const std::uint64_t v = Var();
        if (v > limit || v > n - at)
            ok = false;
        return ok ? static_cast<std::size_t>(v) : 0;
    }
    std::uint8_t Byte()
    {
        if (at >= n) {
            ok = false;
            return 0;
        }
        return p[at++];
    }
    std::string String()
    {
        const std::size_t len = Count(kMaxString);
        if (!ok)
            return std::string();
        std::string s(reinterpret_cast<const char*>(p + at), len);
        at += len;
        return s;
    }
};

bool SameCall(const TapeCall& a, const TapeCall& b)
{
    return a.op == b.op && a.args == b.args;
}

void PutValues(std::string* out, const std::vector<std::int64_t>& v, const std::vector<std::int64_t>* base)
{
    for (std::size_t i = 0; i < v.size(); i++)
        PutSigned(out, base ? v[i] - (*base)[i] : v[i]);
}

bool GetValues(Cursor& c, std::vector<std::int64_t>* v, std::size_t count, const std::vector<std::int64_t>* base)
{
    v->resize(count);
    for (std::size_t i = 0; i < count && c.ok; i++)
        (*v)[i] = base ? static_cast<std::int64_t>(static_cast<std::uint64_t>((*base)[i]) +
                                                    static_cast<std::uint64_t>(c.Signed()))
                       : c.Signed();
    return c.ok;
}

} // namespace

void TapeFrame::Clear()
{
    calls.clear();
    clock.clear();
    lookups = 0;
    found.clear();
}

const char* TapePlatform()
{
#if defined(__EMSCRIPTEN__)
    return "wasm32-web";
#else
#if defined(__x86_64__) || defined(_M_X64)
#define QUINDLE_TAPE_CPU "x86_64"
#elif defined(__aarch64__) || defined(_M_ARM64)
#define QUINDLE_TAPE_CPU "aarch64"
#elif defined(__i386__) || defined(_M_IX86)
#define QUINDLE_TAPE_CPU "i686"
#else
#define QUINDLE_TAPE_CPU "unknown"
#endif
#if defined(_WIN32)
    return QUINDLE_TAPE_CPU "-windows";
#elif defined(__linux__)
    return QUINDLE_TAPE_CPU "-linux";
#else
    return QUINDLE_TAPE_CPU "-unknown";
#endif
#undef QUINDLE_TAPE_CPU
#endif
}

const char* TapeEndingText(TapeEnding ending)
{
    switch (ending) {
    case TapeEnding::kQuit:
        return "the game quit";
    case TapeEnding::kTimeOver:
        return "its time was over";
    case TapeEnding::kClosed:
        return "the window was closed";
    case TapeEnding::kFault:
        return "the kernel met a fault";
    case TapeEnding::kFailedCheck:
        return "a check of the library failed";
    case TapeEnding::kCrashed:
        return "the game crashed";
    case TapeEnding::kInterrupted:
        return "it was interrupted";
    case TapeEnding::kCut:
        return "the session's tape was cut before a quick save or restore";
    }
    return "?";
}

// ----- writing -----

TapeWriter::~TapeWriter()
{
    if (mFile)
        std::fclose(mFile);
}

bool TapeWriter::Open(const std::string& path, const TapeHeader& header, std::string* error)
{
    mFile = std::fopen(path.c_str(), "wb");
    if (!mFile) {
        *error = path + ": cannot write the tape";
        return false;
    }
    const std::uint8_t version[2] = {static_cast<std::uint8_t>(kTapeVersion & 0xFF),
                                     static_cast<std::uint8_t>(kTapeVersion >> 8)};
    std::fwrite(kMagic, 1, sizeof kMagic, mFile);
    std::fwrite(version, 1, 2, mFile);
    mBytes = sizeof kMagic + 2;
    std::string payload;
    PutString(&payload, header.title);
    PutString(&payload, header.library);
    PutString(&payload, header.libraryVersion);
    PutVar(&payload, header.step);
    payload.push_back(static_cast<char>(header.realClock));
    PutVar(&payload, header.gameArgs.size());
    for (const auto& a : header.gameArgs)
        PutString(&payload, a);
    PutString(&payload, header.platform);
    payload.push_back(static_cast<char>(header.pointerBytes));
    if (!Record(kTagHeader, payload)) {
        *error = path + ": cannot write the tape";
        return false;
    }
    return true;
}

bool TapeWriter::Record(std::uint8_t tag, const std::string& payload)
{
    if (!mFile)
        return false;
    mRecord.clear();
    mRecord.push_back(static_cast<char>(tag));
    PutVar(&mRecord, payload.size());
    mRecord += payload;
    const std::uint16_t check = Check16(reinterpret_cast<const std::uint8_t*>(mRecord.data()), mRecord.size());
    mRecord.push_back(static_cast<char>(check & 0xFF));
    mRecord.push_back(static_cast<char>(check >> 8));
    mBytes += mRecord.size();
    if (std::fwrite(mRecord.data(), 1, mRecord.size(), mFile) != mRecord.size())
        return false;
    // The records reach the file at least every sixtieth of a second (a run
    // in a window: every frame), so a run that is killed leaves the frames it
    // finished up to then; a headless run's frames come faster, and one write
    // for each would be most of what recording costs.
    const std::uint64_t now = static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch())
            .count());
    if (tag == kTagFrame || tag == kTagRepeat) {
        if (now - mLastFlush < 16)
            return true;
    }
    mLastFlush = now;
    return std::fflush(mFile) == 0;
}

// Each call is compared with the call at the same place `p` of the frame
// before: a run of equal calls is one count, a call that differs only in its
// answers or some arguments carries the differences; anything else is written
// whole. A call written whole does not move `p`, so an inserted call costs
// only itself; calls of the frame before that are gone are skipped over.
void TapeWriter::EncodeFrame(TapeFrame& frame, std::string* out)
{
    const std::vector<TapeCall>& prev = mPrev;
    std::size_t p = 0;
    std::size_t copies = 0;
    auto flushCopies = [&] {
        if (copies) {
            out->push_back(static_cast<char>(kEntryCopy));
            PutVar(out, copies);
            copies = 0;
        }
    };
    for (const TapeCall& c : frame.calls) {
        if (p < prev.size() && !SameCall(prev[p], c)) {
            for (std::size_t k = 1; k <= 4 && p + k < prev.size(); k++) {
                if (SameCall(prev[p + k], c)) {
                    flushCopies();
                    out->push_back(static_cast<char>(kEntrySkip));
                    PutVar(out, k);
                    p += k;
                    break;
                }
            }
        }
        if (p < prev.size() && SameCall(prev[p], c) && prev[p].answers == c.answers) {
            copies++;
            p++;
            continue;
        }
        flushCopies();
        if (p < prev.size() && prev[p].op == c.op && prev[p].args.size() == c.args.size() &&
            prev[p].answers.size() == c.answers.size() && c.args.size() <= 63) {
            const TapeCall& b = prev[p];
            std::uint64_t mask = 0;
            for (std::size_t i = 0; i < c.args.size(); i++)
                if (c.args[i] != b.args[i])
                    mask |= std::uint64_t(1) << i;
            if (mask == 0) {
                out->push_back(static_cast<char>(kEntryAnswers));
            } else {
                out->push_back(static_cast<char>(kEntryChanged));
                PutVar(out, mask);
                for (std::size_t i = 0; i < c.args.size(); i++)
                    if (mask & (std::uint64_t(1) << i))
                        PutSigned(out, c.args[i] - b.args[i]);
            }
            PutValues(out, c.answers, &b.answers);
            p++;
            continue;
        }
        out->push_back(static_cast<char>(kEntryLiteral));
        out->push_back(static_cast<char>(c.op));
        PutVar(out, c.args.size());
        PutValues(out, c.args, nullptr);
        PutVar(out, c.answers.size());
        PutValues(out, c.answers, nullptr);
    }
    flushCopies();
    out->push_back(static_cast<char>(kEntryEnd));

    PutVar(out, frame.clock.size());
    for (const auto& run : frame.clock) {
        PutVar(out, run.count);
        PutSigned(out, static_cast<std::int64_t>(run.value) - static_cast<std::int64_t>(mLastClock));
        mLastClock = run.value;
    }
    PutVar(out, frame.lookups);
    PutVar(out, frame.found.size());
    std::uint32_t last = 0;
    for (const auto& f : frame.found) {
        PutVar(out, f.lookup - last);
        last = f.lookup;
        PutVar(out, f.event.type);
        PutVar(out, f.event.message);
        PutVar(out, f.event.modifiers);
        PutSigned(out, f.event.x);
        PutSigned(out, f.event.y);
    }
    mPrev.swap(frame.calls);
}

// A frame whose record would repeat the one before byte for byte (an idle
// frame: the same calls, the clock and answers moved as they moved then) is
// written as an empty repeat record.
bool TapeWriter::WriteFrame(TapeFrame& frame)
{
    mPayload.clear();
    EncodeFrame(frame, &mPayload);
    if (mHaveLast && mPayload == mLastPayload)
        return Record(kTagRepeat, std::string());
    mLastPayload = mPayload;
    mHaveLast = true;
    return Record(kTagFrame, mPayload);
}

bool TapeWriter::WriteEnd(TapeFrame& partial, TapeEnding ending, std::uint32_t frames,
                          const std::string& report)
{
    mPayload.clear();
    EncodeFrame(partial, &mPayload);
    bool ok = Record(kTagPartial, mPayload);
    mPayload.clear();
    mPayload.push_back(static_cast<char>(ending));
    PutVar(&mPayload, frames);
    PutString(&mPayload, report);
    ok = Record(kTagEnd, mPayload) && ok;
    ok = std::fclose(mFile) == 0 && ok;
    mFile = nullptr;
    return ok;
}

// ----- reading -----

bool TapeReader::Open(const std::string& path, std::string* error)
{
    std::string bytes;
    if (!FolderFileRead(path, kFolderTape, &bytes, error))
        return false;
    return Parse(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size(), path, error);
}

bool TapeReader::Parse(const std::uint8_t* data, std::size_t size, const std::string& name, std::string* error)
{
    *this = TapeReader();
    mBytes.assign(data, data + size);
    const std::uint8_t* p = mBytes.data();
    auto fail = [&](const std::string& what, std::size_t offset) {
        *error = name + ": " + what + " at byte " + std::to_string(offset);
        return false;
    };
    if (size == 0)
        return fail("empty: not a tape", 0);
    if (size < sizeof kMagic + 2 || std::memcmp(p, kMagic, sizeof kMagic) != 0)
        return fail("not a tape (no tape mark)", 0);
    const unsigned version = p[8] | (p[9] << 8);
    if (version != kTapeVersion)
        return fail("a tape of version " + std::to_string(version) + ", this player reads version " +
                        std::to_string(kTapeVersion),
                    8);
    std::size_t at = sizeof kMagic + 2;
    std::vector<TapeCall> prev;
    std::uint32_t lastClock = 0;
    TapeFrame frame;
    bool haveHeader = false, havePartial = false;
    while (at < size) {
        const std::size_t start = at;
        const std::string frameNote = " (frame " + std::to_string(mFrameOffsets.size() + 1) + ")";
        if (mHasEnd)
            return fail("bytes after the end of the run", start);
        Cursor c{p + at, size - at};
        const std::uint8_t tag = c.Byte();
        const std::uint64_t length = c.Var();
        // A record cut short at the end of the file is where a killed run stopped.
        if (!c.ok || length > c.n - c.at || c.n - c.at - length < 2) {
            if (!haveHeader)
                return fail("the header is cut short", start);
            break;
        }
        const std::size_t payload = at + c.at;
        const std::size_t end = payload + static_cast<std::size_t>(length);
        if (Check16(p + start, end - start) != (p[end] | (p[end + 1] << 8)))
            return fail(std::string("damaged record (its check does not match)") + (haveHeader ? frameNote : ""),
                        start);
        at = end + 2;
        std::string what;
        if (!haveHeader) {
            if (tag != kTagHeader)
                return fail("no header", start);
            Cursor h{p + payload, static_cast<std::size_t>(length)};
            mHeader.title = h.String();
            mHeader.library = h.String();
            mHeader.libraryVersion = h.String();
            mHeader.step = static_cast<std::uint32_t>(h.Var());
            mHeader.realClock = h.Byte();
            const std::size_t args = h.Count(256);
            for (std::size_t i = 0; i < args && h.ok; i++)
                mHeader.gameArgs.push_back(h.String());
            mHeader.platform = "x86_64-linux";
            mHeader.pointerBytes = 8;
            if (h.ok && h.at < h.n) {
                mHeader.platform = h.String();
                mHeader.pointerBytes = h.Byte();
            }
            if (!h.ok || h.at != h.n || mHeader.step == 0 || mHeader.step > 3600)
                return fail("damaged header", start);
            haveHeader = true;
        } else if (tag == kTagRepeat && length == 0 && !havePartial && !mFrameOffsets.empty()) {
            if (!DecodeFrame(p + mFrameOffsets.back(), mFrameLengths.back(), &prev, &lastClock, &frame, &what))
                return fail("damaged frame: " + what + frameNote, start);
            mFrameOffsets.push_back(mFrameOffsets.back());
            mFrameLengths.push_back(mFrameLengths.back());
        } else if (tag == kTagFrame || tag == kTagPartial) {
            if (havePartial)
                return fail("a frame after the end of the run" + frameNote, start);
            if (!DecodeFrame(p + payload, static_cast<std::size_t>(length), &prev, &lastClock, &frame, &what))
                return fail("damaged frame: " + what + frameNote, start);
            if (tag == kTagFrame) {
                mFrameOffsets.push_back(payload);
                mFrameLengths.push_back(static_cast<std::size_t>(length));
            } else {
                mPartialOffset = payload;
                mPartialLength = static_cast<std::size_t>(length);
                havePartial = true;
            }
        } else if (tag == kTagEnd && havePartial) {
            Cursor e{p + payload, static_cast<std::size_t>(length)};
            const std::uint8_t ending = e.Byte();
            const std::uint64_t frames = e.Var();
            mEndReport = e.String();
            if (!e.ok || e.at != e.n || ending < 1 || ending > 8 || frames != mFrameOffsets.size())
                return fail("damaged end record", start);
            mEnding = static_cast<TapeEnding>(ending);
            mHasEnd = true;
        } else {
            return fail("unknown record" + frameNote, start);
        }
    }
    if (!haveHeader)
        return fail("the header is cut short", at);
    return true;
}

bool TapeReader::DecodeFrame(const std::uint8_t* data, std::size_t n, std::vector<TapeCall>* prevCalls,
                             std::uint32_t* lastClock, TapeFrame* frame, std::string* what)
{
    frame->Clear();
    const std::vector<TapeCall>& prev = *prevCalls;
    Cursor c{data, n};
    std::size_t p = 0;
    for (;;) {
        const std::uint8_t entry = c.Byte();
        if (!c.ok)
            return *what = "cut short", false;
        if (entry == kEntryEnd)
            break;
        if (frame->calls.size() >= kMaxCalls)
            return *what = "too many calls", false;
        if (entry == kEntryCopy || entry == kEntrySkip) {
            const std::uint64_t k = c.Var();
            if (!c.ok || k == 0 || k > prev.size() - p)
                return *what = "a run past the frame before", false;
            if (entry == kEntryCopy) {
                if (frame->calls.size() + k > kMaxCalls)
                    return *what = "too many calls", false;
                frame->calls.insert(frame->calls.end(), prev.begin() + static_cast<std::ptrdiff_t>(p),
                                    prev.begin() + static_cast<std::ptrdiff_t>(p + k));
            }
            p += static_cast<std::size_t>(k);
        } else if (entry == kEntryAnswers || entry == kEntryChanged) {
            if (p >= prev.size())
                return *what = "a change past the frame before", false;
            const TapeCall& b = prev[p];
            TapeCall call = b;
            if (entry == kEntryChanged) {
                const std::uint64_t mask = c.Var();
                if (!c.ok || mask == 0 || (b.args.size() < 64 && (mask >> b.args.size()) != 0))
                    return *what = "a change of arguments the call does not have", false;
                for (std::size_t i = 0; i < b.args.size() && i < 64; i++)
                    if (mask & (std::uint64_t(1) << i))
                        call.args[i] = static_cast<std::int64_t>(static_cast<std::uint64_t>(b.args[i]) +
                                                                 static_cast<std::uint64_t>(c.Signed()));
            }
            if (!GetValues(c, &call.answers, b.answers.size(), &b.answers))
                return *what = "cut short", false;
            frame->calls.push_back(std::move(call));
            p++;
        } else if (entry == kEntryLiteral) {
            TapeCall call;
            call.op = c.Byte();
            const std::size_t nargs = c.Count(kMaxValues);
            GetValues(c, &call.args, nargs, nullptr);
            const std::size_t nanswers = c.Count(kMaxValues);
            if (!GetValues(c, &call.answers, nanswers, nullptr))
                return *what = "cut short", false;
            frame->calls.push_back(std::move(call));
        } else {
            return *what = "unknown call entry " + std::to_string(entry), false;
        }
    }
    const std::size_t runs = c.Count(kMaxCalls);
    for (std::size_t i = 0; i < runs && c.ok; i++) {
        TapeFrame::Run run;
        run.count = static_cast<std::uint32_t>(c.Var());
        *lastClock = static_cast<std::uint32_t>(*lastClock + static_cast<std::uint64_t>(c.Signed()));
        run.value = *lastClock;
        frame->clock.push_back(run);
    }
    frame->lookups = static_cast<std::uint32_t>(c.Var());
    const std::size_t found = c.Count(kMaxCalls);
    std::uint64_t lookup = 0;
    for (std::size_t i = 0; i < found && c.ok; i++) {
        TapeFrame::Found f;
        lookup += c.Var();
        if (lookup >= frame->lookups || (i > 0 && lookup == frame->found.back().lookup))
            return *what = "an input event outside the frame's looks", false;
        f.lookup = static_cast<std::uint32_t>(lookup);
        f.event.type = static_cast<std::uint16_t>(c.Var());
        f.event.message = static_cast<std::uint32_t>(c.Var());
        f.event.modifiers = static_cast<std::uint16_t>(c.Var());
        f.event.x = static_cast<std::int32_t>(c.Signed());
        f.event.y = static_cast<std::int32_t>(c.Signed());
        frame->found.push_back(f);
    }
    if (!c.ok)
        return *what = "cut short", false;
    if (c.at != c.n)
        return *what = "bytes after the frame's end", false;
    *prevCalls = frame->calls;
    return true;
}

bool TapeReader::Next(TapeFrame* frame)
{
    std::string what;
    if (mNext < mFrameOffsets.size()) {
        DecodeFrame(mBytes.data() + mFrameOffsets[mNext], mFrameLengths[mNext], &mPrev, &mLastClock, frame, &what);
        mNext++;
        return true;
    }
    if (mNext == mFrameOffsets.size()) {
        mNext++;
        if (mHasEnd)
            DecodeFrame(mBytes.data() + mPartialOffset, mPartialLength, &mPrev, &mLastClock, frame, &what);
        else
            frame->Clear();
        return true;
    }
    return false;
}
