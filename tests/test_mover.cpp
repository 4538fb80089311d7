// Movers and paths, as whole frames of the main loop.
#include "GameTest.h"
#include "glcel.h"
#include "glcycler.h"
#include "glgame.h"
#include "glmover.h"
#include "glplane.h"
#include "gltimer.h"

#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

namespace {

class MoverTest : public GameTest {
protected:
    MoverTest()
    {
        k.SetView(7, {4});
        actor = new GLCel(plane, 7, 0, 0, GLPoint(0, 0), 5, kFullSizeScale);
        actor->Show();
    }
    ~MoverTest() override
    {
        delete actor;
    }
    std::pair<int, int> Pos() const { return {actor->GetPos().GetX(), actor->GetPos().GetY()}; }

    GLCel* actor;
};

TEST_F(MoverTest, StepsOneMoveSpeedIntervalApartAndCuesOnArrival)
{
    Frame(50);
    CueRecorder listener;
    GLMover mover(actor, GLPoint(10, 4), &listener);
    EXPECT_TRUE(game->mpObjects->IsInList(&mover));
    Frame(55);
    EXPECT_EQ(Pos(), std::make_pair(0, 0)); // the first step waits for tick 56
    Frame(56);
    EXPECT_EQ(Pos(), std::make_pair(3, 1));
    // The kernel record takes the position at once.
    EXPECT_EQ(k.Item(1)->pos.x, 3);
    Frame(61);
    EXPECT_EQ(Pos(), std::make_pair(3, 1));
    Frame(62);
    Frame(68);
    Frame(74);
    EXPECT_EQ(Pos(), std::make_pair(10, 4));
    EXPECT_FALSE(mover.IsMoving());
    EXPECT_FALSE(game->mpObjects->IsInList(&mover));
    EXPECT_EQ(listener.cues, 0); // delivered on a later pass, never at once
    Frame(75);
    EXPECT_EQ(listener.cues, 1);
    EXPECT_EQ(listener.lastCuer, &mover);
}

TEST_F(MoverTest, APathWalksItsLegsWhileACyclerAnimatesAndCuesOnceAtTheEnd)
{
    actor->SetMoveSpeed(1);
    actor->SetCycleSpeed(1);
    GLPoint a(6, 0), b(6, 6), c(0, 6);
    GLListAsArray<GLPoint> points(3, 1);
    points.AddToEnd(&a);
    points.AddToEnd(&b);
    points.AddToEnd(&c);
    CueRecorder listener;
    GLCycler walkCycle(actor);
    GLPath path(actor, points, &listener);
    std::vector<std::pair<int, int>> visited;
    for (std::uint32_t t = 1; t <= 8; t++) {
        Frame(t);
        visited.push_back(Pos());
    }
    EXPECT_EQ(visited, (std::vector<std::pair<int, int>>{
                           {3, 0}, {6, 0}, {6, 3}, {6, 6}, {3, 6}, {0, 6}, {0, 6}, {0, 6}}));
    EXPECT_EQ(listener.cues, 1);
    EXPECT_EQ(listener.lastCuer, &path);
    // The cycler stepped on every frame but the seventh: there the cue, at the
    // front of the object set, fired and left it, and the walk skipped the
    // member after it.
    EXPECT_EQ(actor->GetCel(), 7 % 4);
    // A finished path starts again from its first point.
    path.Start(points);
    Frame(9);
    EXPECT_EQ(Pos(), std::make_pair(3, 3));
    walkCycle.Stop();
}

TEST_F(MoverTest, ZeroLengthLegsArriveAndMovingMoversLeaveTheGameWhenDeleted)
{
    CueRecorder listener;
    GLMover* stay = new GLMover(actor, GLPoint(0, 0), &listener);
    Frame(6);
    EXPECT_FALSE(stay->IsMoving());
    Frame(7);
    EXPECT_EQ(listener.cues, 1);
    delete stay;

    GLMover* moving = new GLMover(actor, GLPoint(100, 0));
    EXPECT_TRUE(game->mpObjects->IsInList(moving));
    delete moving;
    EXPECT_EQ(game->mpObjects->NumElements(), 0);
    Frame(20); // nothing dangles in the object set
}

TEST_F(MoverTest, MisuseEndsWithTheExactReport)
{
    GLMover mover(actor);
    EXPECT_GL_ASSERT(mover.Stop(), "Source/Glmover.cpp", "mpBresen");
    EXPECT_GL_ASSERT(mover.DoStep(), "Source/Glmover.cpp", "mpBresen&&mpActor");
    mover.Start(GLPoint(9, 9));
    EXPECT_GL_ASSERT(mover.Start(GLPoint(1, 1)), "Source/Glmover.cpp", "mpActor && !mpBresen");
    mover.Stop();
}

#if defined(__x86_64__) || defined(__i386__)
// Game code built against the exported table calls the added operations by
// slot: Start with a caller, Start without, then NextDest.
TEST(MoverTable, TheAddedOperationsKeepTheirSlots)
{
    const std::ptrdiff_t withCaller =
        quindle_test::VirtualSlot(static_cast<void (GLMover::*)(const GLPoint&, GLObject*)>(&GLMover::Start));
    EXPECT_EQ(quindle_test::VirtualSlot(static_cast<void (GLMover::*)(const GLPoint&)>(&GLMover::Start)), withCaller + 1);
    EXPECT_EQ(quindle_test::VirtualSlot(&GLMover::NextDest), withCaller + 2);
    EXPECT_EQ(quindle_test::VirtualSlot(&GLPath::NextDest), withCaller + 2);
}
#endif

} // namespace
