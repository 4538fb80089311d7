// test_walker.cpp - the demo's walker on the recording kernel, frame by frame:
// how a game tests its own classes without an engine.
#include "../game/Walker.h"

#include "GameTest.h"
#include "glcycler.h"

#include <vector>

namespace {

const ZOR_Rect kWell(258, 345, 382, 392);

class WalkerTest : public GameTest {
protected:
    WalkerTest()
    {
        k.SetView(100, {4, 4, 4, 4}); // four walk loops of four cels
        pip = new Walker(plane, 100, GLPoint(150, 420));
        pip->SetFloor(ZOR_Rect(16, 300, 624, 430));
        pip->SetObstacle(kWell);
    }
    ~WalkerTest() override
    {
        delete pip;
        // Cues still on their way when a test stops early.
        while (game->mpObjects->NumElements() > 0)
            delete game->mpObjects->At(0);
    }
    // Runs frames until the walker stands still (or 2000 ticks), noting where
    // he stood after each.
    void WalkOut()
    {
        for (int i = 0; i < 2000 && pip->IsWalking(); i++) {
            Frame(++tick);
            trail.push_back({pip->Cel()->GetPos().GetX(), pip->Cel()->GetPos().GetY(), pip->Cel()->GetLoop()});
        }
        for (int i = 0; i < 3; i++) // the cues of the arrival
            Frame(++tick);
    }
    struct Step {
        int x, y, loop;
    };
    Walker* pip;
    CueRecorder caller;
    std::vector<Step> trail;
    std::uint32_t tick = 0;
};

TEST_F(WalkerTest, GoesRoundTheWellAndCuesOnArrival)
{
    pip->WalkTo(GLPoint(460, 330), &caller); // behind the well, on the far side
    WalkOut();
    ASSERT_FALSE(trail.empty());
    for (const Step& s : trail)
        EXPECT_FALSE(s.x >= kWell.left && s.x <= kWell.right && s.y >= kWell.top && s.y <= kWell.bottom)
            << "stepped into the well at " << s.x << "," << s.y;
    EXPECT_EQ(pip->Cel()->GetPos().GetX(), 460);
    EXPECT_EQ(pip->Cel()->GetPos().GetY(), 330);
    EXPECT_EQ(caller.cues, 1);
    EXPECT_EQ(caller.lastCuer, static_cast<GLObject*>(pip));
    // Round the front: he passed below the well.
    bool below = false;
    for (const Step& s : trail)
        below = below || (s.x > kWell.left && s.x < kWell.right && s.y > kWell.bottom);
    EXPECT_TRUE(below);
}

TEST_F(WalkerTest, FacesEachLegAndStandsAtTheEnd)
{
    pip->WalkTo(GLPoint(460, 330), 0);
    WalkOut();
    // Right along the front of the well, then away from us up the last leg.
    bool right = false, away = false;
    for (const Step& s : trail) {
        right = right || s.loop == Walker::kRight;
        away = away || (right && s.loop == Walker::kAway);
    }
    EXPECT_TRUE(right);
    EXPECT_TRUE(away);
    EXPECT_EQ(pip->Cel()->GetCel(), 0); // standing
    EXPECT_FALSE(pip->Cel()->GetCycler() && pip->Cel()->GetCycler()->IsCycling());
}

TEST_F(WalkerTest, ANewWalkReplacesTheOldAndItsCallerIsNotCued)
{
    CueRecorder second;
    pip->WalkTo(GLPoint(600, 420), &caller);
    for (int i = 0; i < 20; i++)
        Frame(++tick);
    pip->WalkTo(GLPoint(100, 420), &second);
    WalkOut();
    EXPECT_EQ(caller.cues, 0);
    EXPECT_EQ(second.cues, 1);
    EXPECT_EQ(pip->Cel()->GetPos().GetX(), 100);
}

TEST_F(WalkerTest, TargetsOffTheFloorArePulledIn)
{
    pip->WalkTo(GLPoint(150, 100), 0); // up the wall
    WalkOut();
    EXPECT_EQ(pip->Cel()->GetPos().GetX(), 150);
    EXPECT_EQ(pip->Cel()->GetPos().GetY(), 300);
}

} // namespace
