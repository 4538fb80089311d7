// The tape's bytes: every kind of call entry, the repeat record, and a tape
// cut at each record boundary (a killed run), read back as written.
#include "TapeFormat.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>

namespace {

TapeCall Call(std::uint8_t op, std::vector<std::int64_t> args, std::vector<std::int64_t> answers = {})
{
    TapeCall c;
    c.op = op;
    c.args = std::move(args);
    c.answers = std::move(answers);
    return c;
}

bool Same(const TapeFrame& a, const TapeFrame& b)
{
    if (a.calls.size() != b.calls.size() || a.clock.size() != b.clock.size() || a.lookups != b.lookups ||
        a.found.size() != b.found.size())
        return false;
    for (std::size_t i = 0; i < a.calls.size(); i++)
        if (a.calls[i].op != b.calls[i].op || a.calls[i].args != b.calls[i].args ||
            a.calls[i].answers != b.calls[i].answers)
            return false;
    for (std::size_t i = 0; i < a.clock.size(); i++)
        if (a.clock[i].count != b.clock[i].count || a.clock[i].value != b.clock[i].value)
            return false;
    for (std::size_t i = 0; i < a.found.size(); i++)
        if (a.found[i].lookup != b.found[i].lookup || a.found[i].event.type != b.found[i].event.type ||
            a.found[i].event.x != b.found[i].event.x || a.found[i].event.y != b.found[i].event.y)
            return false;
    return true;
}

class TapeFormat : public ::testing::Test {
protected:
    void SetUp() override
    {
        const TapeCall a = Call(7, {1, 2}, {100}), b = Call(9, {5, -6, 7}), d = Call(3, {}), e = Call(4, {8});
        TapeFrame f;
        f.calls = {a, b, d, e}; // written whole
        f.clock = {{3, 10}};
        f.lookups = 2;
        f.found = {{1, TapeInputEvent{1, 0, 0, 95, -80}}};
        frames.push_back(f);
        frames.push_back(f); // copies of the frame before
        f.calls = {Call(7, {1, 2}, {130}), Call(9, {5, 60, 7}), Call(11, {-1}, {2}), e}; // answers, changed, new, skip
        f.clock = {{1, 20}, {2, 19}};
        f.found.clear();
        frames.push_back(f);
        f.calls = {Call(7, {1, 2}, {130}), Call(9, {5, 60, 7}), Call(11, {-1}, {2}), e};
        f.clock = {{1, 29}};
        frames.push_back(f);
        f.clock = {{1, 39}};
        frames.push_back(f); // the same record as the one before: a repeat
        partial.calls = {Call(7, {1, 2}, {130})};
        path = ::testing::TempDir() + "format.tape";
        TapeWriter writer;
        std::string error;
        TapeHeader header;
        header.title = "format";
        ASSERT_TRUE(writer.Open(path, header, &error)) << error;
        for (TapeFrame copy : frames)
            ASSERT_TRUE(writer.WriteFrame(copy));
        TapeFrame copy = partial;
        ASSERT_TRUE(writer.WriteEnd(copy, TapeEnding::kFailedCheck, 5, "the report"));
        std::ifstream in(path, std::ios::binary);
        bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
        std::remove(path.c_str());
    }
    // The records' tags, and where each record ends.
    std::string Records(std::vector<std::size_t>* ends) const
    {
        std::string tags;
        for (std::size_t at = 10; at < bytes.size();) {
            tags += static_cast<char>(bytes[at++]);
            std::size_t length = 0;
            for (int shift = 0;; shift += 7) {
                const unsigned char b = static_cast<unsigned char>(bytes[at++]);
                length |= static_cast<std::size_t>(b & 0x7F) << shift;
                if (!(b & 0x80))
                    break;
            }
            at += length + 2;
            ends->push_back(at);
        }
        return tags;
    }
    TapeReader Read(std::size_t size, std::string* error) const
    {
        TapeReader reader;
        if (!reader.Parse(reinterpret_cast<const std::uint8_t*>(bytes.data()), size, "t", error))
            reader = TapeReader();
        return reader;
    }

    std::vector<TapeFrame> frames;
    TapeFrame partial;
    std::string path, bytes;
};

TEST_F(TapeFormat, EveryEntryKindAndTheRepeatRecordReadBackAsWritten)
{
    std::vector<std::size_t> ends;
    EXPECT_EQ(Records(&ends), "HFFFFRPE");
    // Frame 3 against frame 2: new answers (3, +30), a changed argument (4,
    // mask 2, +66), a call written whole (5), one skipped (2, 1) and one copied
    // (1, 1), the end (0); then two clock runs, two looks and nothing found.
    const std::string third("\x03\x3c\x04\x02\x84\x01\x05\x0b\x01\x01\x01\x04\x02\x01\x01\x01\x00"
                            "\x02\x01\x14\x02\x01\x02\x00",
                            24);
    EXPECT_EQ(bytes.substr(ends[2], 2 + third.size()), "F\x18" + third);
    std::string error;
    TapeReader reader = Read(bytes.size(), &error);
    ASSERT_EQ(error, "");
    EXPECT_EQ(reader.Header().title, "format");
    ASSERT_EQ(reader.FrameCount(), 5u);
    EXPECT_TRUE(reader.HasEnd());
    EXPECT_EQ(reader.Ending(), TapeEnding::kFailedCheck);
    EXPECT_EQ(reader.EndReport(), "the report");
    TapeFrame frame;
    for (const TapeFrame& written : frames) {
        ASSERT_TRUE(reader.Next(&frame));
        EXPECT_TRUE(Same(frame, written)) << "frame " << &written - frames.data() + 1;
    }
    ASSERT_TRUE(reader.Next(&frame));
    EXPECT_TRUE(Same(frame, partial));
    EXPECT_FALSE(reader.Next(&frame));
}

TEST_F(TapeFormat, ATapeCutAtAnyRecordIsReadToItsLastWholeFrame)
{
    std::vector<std::size_t> ends;
    const std::string tags = Records(&ends);
    for (std::size_t n = 0; n < ends.size(); n++) {
        for (const std::size_t cut : {ends[n], ends[n] + 1}) {
            if (cut > bytes.size())
                continue;
            SCOPED_TRACE("cut at byte " + std::to_string(cut));
            std::string error;
            const TapeReader reader = Read(cut, &error);
            ASSERT_EQ(error, "");
            const std::string before = tags.substr(1, n);
            const auto whole = std::count(before.begin(), before.end(), 'F') + std::count(before.begin(), before.end(), 'R');
            EXPECT_EQ(reader.FrameCount(), static_cast<std::uint32_t>(whole));
            EXPECT_EQ(reader.HasEnd(), cut == bytes.size());
        }
    }
    // Refused, naming the place: no header, damage, another version.
    std::string error, damaged = bytes, other = bytes;
    damaged[ends[1] + 3] ^= 0x40;
    other[8] = 9;
    const struct {
        std::string bytes;
        std::string error;
    } refused[] = {
        {"", "t: empty: not a tape at byte 0"},
        {bytes.substr(0, ends[0] - 1), "t: the header is cut short at byte 10"},
        {damaged, "t: damaged record (its check does not match) (frame 2) at byte " + std::to_string(ends[1])},
        {other, "t: a tape of version 9, this player reads version 1 at byte 8"},
    };
    for (const auto& r : refused) {
        TapeReader reader;
        EXPECT_FALSE(reader.Parse(reinterpret_cast<const std::uint8_t*>(r.bytes.data()), r.bytes.size(), "t", &error));
        EXPECT_EQ(error, r.error);
    }
}

} // namespace
