// Cues and timers, delivered frame by frame through the game's object set.
#include "GameTest.h"
#include "glset.h"

#include <functional>
#include <utility>
#include <vector>

namespace {

// What a receiver saw of one cue, copied during the call (the cue is gone
// once the call returns).
struct Delivery {
    GLCue* cue;
    GLObject* cuer;
    int value;
    void* data;
    int frame;
};

class Receiver : public GLObject {
public:
    explicit Receiver(const int* pFrame) : mpFrame(pFrame) {}
    void Cue(GLCue* pCue) override { seen.push_back({pCue, pCue->mpCuer, pCue->mValue, pCue->mpData, *mpFrame}); }
    std::vector<Delivery> seen;

private:
    const int* mpFrame;
};

// A test runs whole frames of a real game on the recording kernel.
class CueTest : public GameTest {
protected:
    void Frame()
    {
        ++frame;
        GameTest::Frame();
    }
    GLSetAsArray<GLObject>& Objects() { return *theGame->mpObjects; }

    int frame = 0;
    Receiver receiver{&frame};
};

// A member of the game's object set that runs whatever the test gives it.
class Worker : public GLObject {
public:
    explicit Worker(std::function<void()> work) : mWork(std::move(work)) {}
    void DoIt() override
    {
        ++mRuns;
        mWork();
    }
    int mRuns = 0;

private:
    std::function<void()> mWork;
};

TEST_F(CueTest, ACueIsDeliveredOnTheNextFrameWithWhatItCarriesThenLeavesAndDeletesItself)
{
    GLObject cuer;
    int data = 0;
    const std::size_t gameBlocks = k.Ledger().LiveCount();
    GLCue* cue = new GLCue(&receiver, &cuer, 42, &data);
    ASSERT_EQ(Objects().First(), cue);
    EXPECT_TRUE(receiver.seen.empty());

    Frame();
    ASSERT_EQ(receiver.seen.size(), 1u);
    EXPECT_EQ(receiver.seen[0].cue, cue);
    EXPECT_EQ(receiver.seen[0].cuer, &cuer);
    EXPECT_EQ(receiver.seen[0].value, 42);
    EXPECT_EQ(receiver.seen[0].data, &data);
    EXPECT_EQ(Objects().NumElements(), 0);
    EXPECT_EQ(k.Ledger().LiveCount(), gameBlocks);

    Frame();
    EXPECT_EQ(receiver.seen.size(), 1u);
}

TEST_F(CueTest, ACueCreatedDuringTheWalkWaitsForTheNextFrame)
{
    GLCue* created = nullptr;
    Worker worker([&] {
        if (!created)
            created = new GLCue(&receiver, nullptr, 1);
    });
    Objects().AddToEnd(&worker);

    Frame();
    ASSERT_NE(created, nullptr);
    EXPECT_TRUE(receiver.seen.empty());
    // The cue went in at the front, which moved the worker up under the walk:
    // the worker ran a second time and the cue was not reached.
    EXPECT_EQ(worker.mRuns, 2);

    Frame();
    ASSERT_EQ(receiver.seen.size(), 1u);
    EXPECT_EQ(receiver.seen[0].frame, 2);
    Objects().Remove(&worker);
}

TEST_F(CueTest, AReceiverWithoutItsOwnCueIsLeftAloneAndTheCueStillGoes)
{
    GLObject plain;
    new GLCue(&plain);
    new GLTimer(&plain, GLTimer::CyclesTimer, 1);
    // The timer fires first and leaves the set, which moves the cue down under
    // the walk: it goes on the next frame.
    Frame();
    EXPECT_EQ(Objects().NumElements(), 1);
    Frame();
    EXPECT_EQ(Objects().NumElements(), 0);
    EXPECT_EQ(plain.NeedsDoIt(), 0);
}

TEST_F(CueTest, TheReceiverMayBeFilledInAfterConstructionButMustBeThereWhenTheCueFiresAndTheCueInTheSetOnce)
{
    GLCue* cue = new GLCue;
    cue->mpWhoToCue = &receiver;
    Frame();
    EXPECT_EQ(receiver.seen.size(), 1u);

    GLCue* empty = new GLCue(nullptr, nullptr, 3);
    EXPECT_GL_ASSERT(Frame(), "Source/Gltimer.cpp", "mpWhoToCue");
    // Nor can a cue be put in the set twice.
    EXPECT_GL_ASSERT(empty->Init(), "include/glset.h", "!\"Item is already in set!\"");
    delete empty;
}

TEST_F(CueTest, CopiesAreNotPendingAndGoQuietlyAndAPendingCueOrTimerDeletedFromOutsideLeavesTheSet)
{
    Worker other([] {});
    Objects().AddToEnd(&other);
    int data = 0;
    GLCue* cue = new GLCue(&receiver, &receiver, 9, &data);
    GLTimer* timer = new GLTimer(&receiver, GLTimer::TicksTimer, 5, 4, &data);
    {
        GLCue cueCopy(*cue);
        GLTimer timerCopy(*timer);
        EXPECT_EQ(cueCopy.mpData, &data);
        EXPECT_EQ(timerCopy.mTicksEnd, timer->mTicksEnd);
        EXPECT_EQ(Objects().NumElements(), 3);
    }
    EXPECT_EQ(Objects().NumElements(), 3);
    delete timer;
    Frame();
    EXPECT_EQ(receiver.seen.size(), 1u);

    cue = new GLCue(&receiver);
    timer = new GLTimer(&receiver, GLTimer::CyclesTimer, 2);
    ASSERT_EQ(Objects().NumElements(), 3);
    delete cue;
    delete timer;
    EXPECT_EQ(Objects().NumElements(), 1);
    EXPECT_EQ(Objects().First(), &other);
    Frame();
    Frame();
    EXPECT_EQ(receiver.seen.size(), 1u);
}

// Without a rule a cycles count of 0 would wrap round and wait 2^32 frames;
// like a ticks or seconds wait of 0 it is due on the first check.
TEST_F(CueTest, AWaitOfZeroIsDueOnTheFirstFrameWhateverTheKind)
{
    k.ticks = 500;
    k.seconds = 60;
    Frame();
    const GLTimer::TimerType kinds[] = {GLTimer::CyclesTimer, GLTimer::TicksTimer, GLTimer::SecondsTimer};
    for (GLTimer::TimerType kind : kinds) {
        new GLTimer(&receiver, kind, 0, kind);
        Frame();
        ASSERT_EQ(receiver.seen.size(), static_cast<std::size_t>(kind)) << "kind " << kind;
        EXPECT_EQ(receiver.seen.back().value, kind);
        EXPECT_EQ(receiver.seen.back().frame, frame);
    }
}

TEST_F(CueTest, ATicksTimerComparesWithTheTicksTheFrameStartedWith)
{
    k.ticks = 100;
    Frame();
    GLTimer* timer = new GLTimer(&receiver, GLTimer::TicksTimer, 10);
    EXPECT_EQ(timer->mTicksEnd, 110u);
    // Runs before the timer in each frame and moves the kernel clock on, so a
    // timer that read the clock afresh would fire too early.
    Worker clock([&] { k.ticks += 50; });
    Objects().AddToFront(&clock);

    k.ticks = 109;
    Frame();
    EXPECT_TRUE(receiver.seen.empty());
    k.ticks = 110;
    Frame();
    ASSERT_EQ(receiver.seen.size(), 1u);
    EXPECT_EQ(receiver.seen[0].frame, 3);
    Objects().Remove(&clock);

    // The end is compared unsigned: an end past the signed limit is not already due.
    new GLTimer(&receiver, GLTimer::TicksTimer, 0x7FFFFFFF - 110 + 2); // ends at 0x80000001
    k.ticks = 0x7FFFFFFF;
    Frame();
    EXPECT_EQ(receiver.seen.size(), 1u);
    k.ticks = 0x80000001;
    Frame();
    EXPECT_EQ(receiver.seen.size(), 2u);
}

TEST_F(CueTest, ASecondsTimerReadsTheKernelClockAfreshAtEveryCheck)
{
    k.seconds = 50;
    GLTimer* timer = new GLTimer(&receiver, GLTimer::SecondsTimer, 2);
    EXPECT_EQ(timer->mSecondsEnd, 52u);
    Frame();
    k.seconds = 51;
    Frame();
    EXPECT_TRUE(receiver.seen.empty());
    // The clock reaches 52 during the frame, before the timer is checked.
    Worker clock([&] { k.seconds = 52; });
    Objects().AddToFront(&clock);
    Frame();
    ASSERT_EQ(receiver.seen.size(), 1u);
    EXPECT_EQ(receiver.seen[0].frame, 3);
    Objects().Remove(&clock);
}

TEST_F(CueTest, CyclesTimersFireOnTheFrameThatChecksThemForTheCountthTimeEachAsItself)
{
    new GLTimer(&receiver, GLTimer::CyclesTimer, 3, 8);
    Frame();
    Frame();
    EXPECT_TRUE(receiver.seen.empty());
    Frame();
    ASSERT_EQ(receiver.seen.size(), 1u);
    EXPECT_EQ(receiver.seen[0].frame, 3);
    EXPECT_EQ(receiver.seen[0].value, 8);

    // Two timers for one receiver are both delivered.
    receiver.seen.clear();
    GLTimer* first = new GLTimer(&receiver, GLTimer::CyclesTimer, 1, 1);
    GLTimer* second = new GLTimer(&receiver, GLTimer::CyclesTimer, 1, 2);
    Frame();
    // The first one delivered leaves the set, the other moves down under the
    // walk and is reached on the next frame.
    Frame();
    ASSERT_EQ(receiver.seen.size(), 2u);
    EXPECT_EQ(receiver.seen[0].cue, second); // the newest is at the front
    EXPECT_EQ(receiver.seen[1].cue, first);
    EXPECT_EQ(Objects().NumElements(), 0);
}

TEST_F(CueTest, CheckClearsTheWaitWhenItIsOverAndInitRestartsIt)
{
    GLTimer* timer = new GLTimer(&receiver, GLTimer::CyclesTimer, 2);
    EXPECT_FALSE(timer->Check());
    EXPECT_EQ(timer->mCycles, 1u);
    timer->Init(GLTimer::CyclesTimer, 3); // restarted with a new count
    EXPECT_FALSE(timer->Check());
    EXPECT_FALSE(timer->Check());
    EXPECT_TRUE(timer->Check());
    EXPECT_EQ(timer->mType, GLTimer::UnsetTimer);

    // A timer left without a wait may not stay in the set.
    EXPECT_GL_ASSERT(Frame(), "Source/Gltimer.cpp", "mType!=UnsetTimer");
    timer->Init(GLTimer::TicksTimer, 1);
    k.ticks = theGame->mGameTicks + 1;
    Frame();
    EXPECT_EQ(receiver.seen.size(), 1u);
}

} // namespace
