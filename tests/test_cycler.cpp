// Cel cyclers, as whole frames of the main loop.
#include "GameTest.h"
#include "glcel.h"
#include "glcycler.h"
#include "glgame.h"
#include "glplane.h"
#include "gltimer.h"

#include <vector>

namespace {

// Counts the cues it gets and remembers the last cuer.
class CyclerTest : public GameTest {
protected:
    CyclerTest() { k.SetView(100, {4, 3, 1, 2}); }
    ~CyclerTest() override
    {
        for (GLCel* cel : cels)
            delete cel;
    }
    GLCel* NewCel(int loop, int cel = 0)
    {
        cels.push_back(new GLCel(plane, 100, static_cast<short>(loop), static_cast<short>(cel), GLPoint(10, 10), 5,
                                 kFullSizeScale));
        return cels.back();
    }
    // Runs frames one tick apart and records the cel shown after each.
    std::vector<int> Run(GLCel* cel, std::uint32_t from, std::uint32_t to)
    {
        std::vector<int> shown;
        for (std::uint32_t t = from; t <= to; t++) {
            Frame(t);
            shown.push_back(cel->GetCel());
        }
        return shown;
    }

    std::vector<GLCel*> cels;
};

TEST_F(CyclerTest, EndRulesShowTheirDocumentedSequences)
{
    GLCel* cel = NewCel(0); // four cels
    cel->SetCycleSpeed(0);
    CueRecorder listener;
    GLEndResetCycler reset;
    reset.Add(cel, FALSE);
    reset.Start(&listener);
    EXPECT_EQ(Run(cel, 1, 4), (std::vector<int>{1, 2, 3, 0}));
    EXPECT_TRUE(reset.IsCompleted());
    EXPECT_FALSE(reset.IsCycling());
    EXPECT_EQ(reset.GetCels().NumElements(), 0);
    Frame(5); // the cue arrives a frame later, from nobody in particular
    EXPECT_EQ(listener.cues, 1);
    EXPECT_EQ(listener.lastCuer, nullptr);

    GLCel* three = NewCel(1); // three cels
    three->SetCycleSpeed(0);
    GLEndForwardBackwardCycler round;
    round.Add(three, FALSE);
    round.Start(&listener);
    EXPECT_EQ(Run(three, 10, 14), (std::vector<int>{1, 2, 1, 0, 0}));
    EXPECT_TRUE(round.IsCompleted());
    EXPECT_TRUE(round.CycleForward()); // left forward for a later start
    Frame(15);
    EXPECT_EQ(listener.cues, 2);
}

TEST_F(CyclerTest, OneCelLoopsAndTargetsEndOrHoldAsChosen)
{
    GLCel* single = NewCel(2); // one cel
    single->SetCycleSpeed(0);
    {
        GLPingPongCycler pingPong(single);
        EXPECT_EQ(Run(single, 1, 3), (std::vector<int>{0, 0, 0}));
        EXPECT_TRUE(pingPong.IsCycling()); // never ends
    }
    // A round trip on one cel is over at once and never asks for cel -1.
    GLEndForwardBackwardCycler round(single);
    Frame(4);
    EXPECT_TRUE(round.IsCompleted());

    GLCel* cel = NewCel(0, 2);
    cel->SetCycleSpeed(0);
    GLCycleToCycler to(cel, 2); // already there: done in the first due pass, cel unchanged
    Frame(5);
    EXPECT_TRUE(to.IsCompleted());
    EXPECT_EQ(cel->GetCel(), 2);
    to.SetTargetCel(0);
    to.Add(cel, TRUE);
    EXPECT_EQ(Run(cel, 6, 8), (std::vector<int>{1, 0, 0}));
    EXPECT_TRUE(to.IsCompleted());
    EXPECT_FALSE(to.CycleForward());
}

TEST_F(CyclerTest, CelsStepAtTheirOwnSpeedAndEndTogether)
{
    Frame(100);
    GLCel* slow = NewCel(1);
    GLCel* fast = NewCel(1);
    fast->SetCycleSpeed(2);
    GLEndForwardCycler cycler; // slow keeps the default speed 6
    cycler.Add(slow, TRUE); // the first cel added with fStart starts the cycler
    cycler.Add(fast, FALSE);
    Frame(105);
    EXPECT_EQ(slow->GetCel(), 0); // not due before 106
    EXPECT_EQ(fast->GetCel(), 1); // due since 102: one step, however late the pass
    Frame(106);
    EXPECT_EQ(slow->GetCel(), 1);
    Frame(107);
    Frame(112);
    EXPECT_EQ(slow->GetCel(), 2);
    // fast has been at its end for several passes, but slow reached its end
    // only now, so this is the first pass in which both report it.
    EXPECT_FALSE(cycler.IsCompleted());
    Frame(118);
    EXPECT_TRUE(cycler.IsCompleted());
}

TEST_F(CyclerTest, RandomCelsNeverRepeatAndEmptyCyclersFinish)
{
    GLCel* cel = NewCel(0);
    cel->SetCycleSpeed(0);
    {
        GLRandCycler random;
        random.Add(cel, TRUE);
        int previous = cel->GetCel();
        for (std::uint32_t t = 1; t <= 40; t++) {
            Frame(t);
            EXPECT_NE(cel->GetCel(), previous);
            previous = cel->GetCel();
        }
        EXPECT_GE(k.Count("Random"), 40);
    }
    CueRecorder listener;
    GLEndCycler empty;
    empty.Start(&listener);
    Frame(50);
    EXPECT_TRUE(empty.IsCompleted());
    Frame(51);
    EXPECT_EQ(listener.cues, 1);

    // Releasing the last cel of a cycling cycler makes it done on its next pass.
    GLCycler loop(cel);
    Frame(52);
    EXPECT_TRUE(loop.Release(cel));
    EXPECT_FALSE(loop.Release(cel));
    EXPECT_FALSE(loop.Release(3));
    Frame(53);
    EXPECT_TRUE(loop.IsCompleted());
}

TEST_F(CyclerTest, MisuseEndsWithTheExactReport)
{
    GLCel* cel = NewCel(0);
    GLCycler cycler(cel);
    EXPECT_GL_ASSERT(cycler.Start(), "Source/Glcycler.cpp", "!mCycling");
    EXPECT_GL_ASSERT(cycler.Release(-1), "Source/Glcycler.cpp", "index>=0");
    EXPECT_GL_ASSERT(cycler.Add(cel, FALSE), "include/glset.h", "!\"Item is already in set!\"");
    EXPECT_GL_ASSERT(
        {
            CueRecorder listener;
            GLCycler* waiting = new GLCycler();
            waiting->Start(&listener);
            delete waiting;
        },
        "Source/Glcycler.cpp", "!mpCaller");
    EXPECT_GL_ASSERT(
        {
            GLCycleToCycler to(cel, 9);
            Frame(50);
        },
        "Source/Glcycler.cpp", "mTargetCel <= lastCel");
}

} // namespace
