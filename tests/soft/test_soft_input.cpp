// The input script and the clock.
#include "SoftTestSupport.h"

using namespace soft_test;

namespace {

TEST(SoftScript, ReadsEveryKindOfEvent)
{
    std::vector<SoftInputEvent> events;
    std::string error;
    ASSERT_TRUE(SoftParseScript("# a comment\n"
                                "\n"
                                "20 press 10 20 mods 1   # shift-click\n"
                                "30 release 10 20\n"
                                "40 key enter\n"
                                "40 key 0x1B mods 0x4\n"
                                "50 pointer 639 479\n"
                                "60 quit\r\n",
                                "s.txt", &events, &error))
        << error;
    ASSERT_EQ(events.size(), 6u);
    EXPECT_EQ(events[0].tick, 20u);
    EXPECT_EQ(events[0].type, kEventPointerDown);
    EXPECT_EQ(events[0].modifiers, 1);
    EXPECT_EQ(events[0].x, 10);
    EXPECT_EQ(events[1].type, kEventPointerUp);
    EXPECT_EQ(events[2].message, 13u);
    EXPECT_EQ(events[3].message, 27u); // same tick: file order kept
    EXPECT_EQ(events[3].modifiers, 4);
    EXPECT_EQ(events[4].type, kEventPointerMove);
    EXPECT_EQ(events[5].message, kQuitKey);
    EXPECT_EQ(events[5].modifiers, kQuitModifiers);
}

TEST(SoftScript, AFaultyLineIsNamedWithItsFileAndLine)
{
    struct Case {
        const char* text;
        const char* message;
    } cases[] = {
        {"10 press 5\n", "s.txt:1: press needs a position x y inside the 640x480 screen"},
        {"\n10 press 640 0\n", "s.txt:2: press needs a position"},
        {"-1 key 13\n", "s.txt:1: '-1' is not a tick"},
        {"10 jump 1 2\n", "s.txt:1: unknown event kind 'jump'"},
        {"10\n", "s.txt:1: an event kind"},
        {"10 key 0x10000\n", "s.txt:1: key needs a key code"},
        {"10 key 13 mods\n", "s.txt:1: only 'mods <0..0xFFFF>'"},
        {"10 key 13 extra 1\n", "s.txt:1: only 'mods"},
        {"10 quit now\n", "s.txt:1: quit takes nothing"},
        {"10 key \"13\n", "s.txt:1: unclosed quote"},
        {"99999999999999999999999 key 1\n", "s.txt:1: '99999999999999999999999' is not a tick"},
        {"20 key 1\n20 key 2\n10 key 3\n", "s.txt:3: tick 10 comes before tick 20 of the line above"},
    };
    for (const auto& c : cases) {
        std::vector<SoftInputEvent> events;
        std::string error;
        EXPECT_FALSE(SoftParseScript(c.text, "s.txt", &events, &error)) << c.text;
        EXPECT_EQ(error.rfind(c.message, 0), 0u) << "for " << c.text << " got: " << error;
        EXPECT_TRUE(events.empty());
    }
    std::vector<SoftInputEvent> events;
    std::string error;
    EXPECT_FALSE(SoftReadScript("/nonexistent/input.txt", &events, &error));
    EXPECT_EQ(error, "/nonexistent/input.txt: no such file");
}

TEST(SoftInput, EventsAreHandedOutWhenTheClockReachesThemAndMatchTheMask)
{
    SoftKernel k;
    std::vector<SoftInputEvent> events;
    std::string error;
    ASSERT_TRUE(SoftParseScript("2 press 100 50\n2 key 65\n3 release 110 60 mods 1\n", "s", &events, &error));
    k.SetScript(events);
    KernelEventRecord rec{};
    k.GetEvent(kEventMaskAll, &rec);
    EXPECT_EQ(rec.type, 0); // tick 0: nothing due
    EXPECT_EQ(rec.where.x, 320);
    k.UpdateScreen(1);
    k.UpdateScreen(1);
    EXPECT_EQ(k.GetTicks(), 2u);
    k.GetEvent(8, &rec); // keys only: the press waits
    EXPECT_EQ(rec.type, 8);
    EXPECT_EQ(rec.message, 65u);
    k.GetEvent(kEventMaskAll, &rec);
    EXPECT_EQ(rec.type, 1);
    EXPECT_EQ(rec.where.x, 100);
    EXPECT_EQ(rec.where.y, 50);
    k.GetEvent(kEventMaskAll, &rec);
    EXPECT_EQ(rec.type, 0);
    EXPECT_EQ(rec.where.x, 100); // the pointer stayed where the press put it
    k.UpdateScreen(1);
    k.GetEvent(kEventMaskAll, &rec);
    EXPECT_EQ(rec.type, 2);
    EXPECT_EQ(rec.modifiers, 1);
    EXPECT_EQ(k.CursorPos().x, 110);

    // The virtual clock steps by the frame, and seconds follow it.
    k.SetTicksPerFrame(30);
    EXPECT_EQ(k.GetTime(1), 0u);
    for (int i = 0; i < 4; i++)
        k.UpdateScreen(1);
    EXPECT_EQ(k.GetTicks(), 123u);
    EXPECT_EQ(k.GetTime(1), 2u);
    EXPECT_EQ(k.FramesComposed(), 7u);
}

// A game waiting for input in a loop of its own, without drawing, reaches the
// host's idle hook; a game that draws between its looks, or finds input, does not.
TEST(SoftInput, LooksForInputWithoutAFrameBetweenReachTheIdleHook)
{
    SoftKernel k;
    int idle = 0;
    k.SetIdleHook([](SoftKernel&, void* n) { ++*static_cast<int*>(n); }, &idle);
    KernelEventRecord rec{};
    for (int i = 0; i < SoftKernel::kIdleLookups - 1; i++)
        k.GetEvent(kEventMaskAll, &rec);
    k.UpdateScreen(1);
    for (int i = 0; i < SoftKernel::kIdleLookups - 1; i++)
        k.GetEvent(kEventMaskAll, &rec);
    EXPECT_EQ(idle, 0);
    k.GetEvent(kEventMaskAll, &rec);
    EXPECT_EQ(idle, 1);
    SoftInputEvent press;
    press.type = kEventPointerDown;
    for (int i = 0; i < 3 * SoftKernel::kIdleLookups; i++) {
        if (i % (SoftKernel::kIdleLookups - 1) == 0)
            k.PushInput(press);
        k.GetEvent(kEventMaskAll, &rec);
    }
    EXPECT_EQ(idle, 1);
}

TEST(SoftInput, RandomNumbersReachBothEndsAndRepeatForTheSameSeed)
{
    SoftKernel a, b;
    a.SeedRandom(1234);
    b.SeedRandom(1234);
    bool sawLow = false, sawHigh = false;
    for (int i = 0; i < 200; i++) {
        const std::uint32_t v = a.Random(3, 7);
        EXPECT_EQ(v, b.Random(3, 7));
        EXPECT_GE(v, 3u);
        EXPECT_LE(v, 7u);
        sawLow |= v == 3;
        sawHigh |= v == 7;
    }
    EXPECT_TRUE(sawLow && sawHigh);
    EXPECT_EQ(a.Random(9, 9), 9u);
    a.Random(0, 0xFFFFFFFFu); // the whole range: its span does not fit 32 bits
}

} // namespace
