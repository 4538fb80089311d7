// The walker, frame by frame: the loops he shows, where he turns, his cue,
// being sent elsewhere mid-walk, and his scale by depth.
#include "GameTest.h"
#include "WalkRooms.h"
#include "glcel.h"
#include "glpoly.h"
#include "glwalk.h"
#include "glwalker.h"

#include <tuple>
#include <vector>

namespace {

class WalkerTest : public GameTest {
protected:
    WalkerTest()
    {
        k.SetView(7, std::vector<int>(16, 4)); // 16 loops of 4 cels
        actor = new GLCel(plane, 7, 0, 2, GLPoint(20, 20), 5, kFullSizeScale);
        actor->Show();
        actor->SetMoveSpeed(1);
        actor->SetStepSize(GLPoint(10, 10));
        WalkRoom room;
        room.polygons = {{ZOR_Point(0, 0), ZOR_Point(300, 0), ZOR_Point(300, 300), ZOR_Point(0, 300)}};
        area = MakeWalkArea(room, 0);
        // A square hole from (50, 50) to (150, 150), from a polygon of the room.
        GLPoint corners[] = {GLPoint(50, 50), GLPoint(150, 50), GLPoint(150, 150), GLPoint(50, 150)};
        GLPoly hole(plane, corners, 4);
        area->AddHole(hole);
        walker = new GLWalker(actor, area);
    }
    ~WalkerTest() override
    {
        delete walker;
        delete area;
        delete actor;
    }
    // Runs frames from tick until he stands; each change of loop as
    // (tick, loop, x, y).
    std::vector<std::tuple<int, int, int, int>> WalkFrames(std::uint32_t tick)
    {
        std::vector<std::tuple<int, int, int, int>> turns;
        int loop = -1;
        for (; walker->IsWalking() && tick < 1000; tick++) {
            Frame(tick);
            if (actor->GetLoop() != loop)
                turns.emplace_back(tick, loop = actor->GetLoop(), actor->GetPos().GetX(), actor->GetPos().GetY());
        }
        Frame(tick); // the cue's frame
        return turns;
    }

    GLCel* actor;
    GLWalkArea* area;
    GLWalker* walker;
};

TEST_F(WalkerTest, TurnsAtTheHolesCornerCuesOnlyTheLastCallerOnceAndStands)
{
    CueRecorder first, listener;
    walker->WalkTo(GLPoint(20, 280), &first);
    Frames({1, 2, 3});
    walker->WalkTo(GLPoint(200, 100), &listener); // sent elsewhere mid-walk
    EXPECT_EQ(actor->GetLoop(), GLWalker::kRight);
    // Right to the hole's corner (150, 50); there he turns toward the viewer,
    // since the last leg (50, 50) is as much in depth as across.
    EXPECT_EQ(WalkFrames(4), (std::vector<std::tuple<int, int, int, int>>{{4, 0, 30, 50}, {16, 2, 150, 50}}));
    EXPECT_EQ(actor->GetPos(), GLPoint(200, 100));
    EXPECT_EQ(actor->GetCel(), 0);
    EXPECT_EQ(first.cues, 0);
    EXPECT_EQ(listener.cues, 1);
    EXPECT_EQ(listener.lastCuer, walker);
    // Sent where he stands, he is done at once.
    walker->WalkTo(GLPoint(200, 100), &listener);
    Frame(500);
    EXPECT_EQ(listener.cues, 2);
}

TEST_F(WalkerTest, DirectionsByAngleAndStandingLoops)
{
    const struct {
        int dx, dy, four, eight;
    } moves[] = {
        {10, 0, 0, 0}, {-10, 3, 1, 1},  {10, 10, 2, 4},  {10, -10, 3, 6}, {-9, 10, 2, 5},
        {-9, -10, 3, 7}, {3, 10, 2, 2}, {2, -10, 3, 3},  {10, 4, 0, 0},   {10, 5, 0, 4},
    };
    for (const auto& m : moves) {
        walker->SetDirections(4);
        EXPECT_EQ(walker->DirectionOf(m.dx, m.dy), m.four) << m.dx << "," << m.dy;
        walker->SetDirections(8);
        EXPECT_EQ(walker->DirectionOf(m.dx, m.dy), m.eight) << m.dx << "," << m.dy;
    }
    walker->SetStandLoops(8);
    walker->WalkTo(GLPoint(20, 40), nullptr);
    EXPECT_EQ(actor->GetLoop(), GLWalker::kToward);
    WalkFrames(1);
    EXPECT_EQ(actor->GetLoop(), 8 + GLWalker::kToward);
}

TEST_F(WalkerTest, DepthScalesTheActorAndHisSteps)
{
    walker->SetDepthScale(20, 64, 280, 128); // half size at the top, full at the bottom
    EXPECT_EQ(actor->GetScale().scaleX, 64);
    EXPECT_EQ(actor->GetStepSize(), GLPoint(5, 5));
    walker->WalkTo(GLPoint(20, 280), nullptr);
    std::vector<int> scales, steps;
    for (std::uint32_t tick = 1; walker->IsWalking(); tick++) {
        Frame(tick);
        scales.push_back(actor->GetScale().scaleY);
        steps.push_back(actor->GetPos().GetY());
    }
    // Steps grow from 5 to 10 pixels as he comes near; the scale with them.
    EXPECT_EQ(steps.front(), 25);
    EXPECT_EQ(steps[steps.size() - 2], 273);
    EXPECT_EQ(scales.front(), 65);
    EXPECT_EQ(scales.back(), 128);
    EXPECT_EQ(k.Item(1)->scale.scaleX, 128);
    EXPECT_EQ(actor->GetStepSize(), GLPoint(10, 10));
}

TEST_F(WalkerTest, MisuseIsAFailedCheck)
{
    const char* file = "Source/Glwalker.cpp";
    EXPECT_GL_ASSERT(GLWalker(nullptr, area), file, "pActor");
    EXPECT_GL_ASSERT(walker->SetDirections(6), file, "iDirections == 4 || iDirections == 8");
    EXPECT_GL_ASSERT(walker->SetDepthScale(300, 64, 20, 128), file, "iFarY < iNearY");
    EXPECT_GL_ASSERT(walker->SetDepthScale(20, 0, 280, 128), file, "iFarScale > 0 && iNearScale > 0");
    EXPECT_GL_ASSERT(walker->Face(GLWalker::kAwayLeft), file, "iDirection >= 0 && iDirection < mDirections");
}

} // namespace
