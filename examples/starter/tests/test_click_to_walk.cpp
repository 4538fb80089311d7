// The starter's own game code on the recording kernel: no engine, no window.
#include "ClickToWalk.h"

#include "RecordingKernel.h"

#include "glcel.h"
#include "glconst.h"
#include "gldll.h"
#include "glgame.h"
#include "glplane.h"
#include "glplanes.h"
#include "gluser.h"

#include <gtest/gtest.h>

#include <ostream>

// Failures show points as (x, y).
void PrintTo(const GLPoint& point, std::ostream* os)
{
    *os << "(" << point.GetX() << ", " << point.GetY() << ")";
}

namespace {

class ClickToWalkTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        kernel.SetView(100, {1});
        DLLInit(&kernel);
        GLDLLInit(new GLGame);
        theGame->mpUser->IsHandsOn(TRUE); // as the game does at its start
        plane = new GLColoredPlane(ZOR_Rect(0, 0, 639, 479), 2, 1, 0, ZOR_Point(0, 0));
        theGame->mpPlaneManager->Add(plane);
        hero = new GLCel(plane, 100, 0, 0, GLPoint(100, 400), 10, kFullSizeScale);
        hero->Show();
        walk = new ClickToWalk(hero);
        theGame->mpUser->mpOrphans->AddToEnd(walk);
    }

    void TearDown() override
    {
        theGame->mpUser->mpOrphans->Remove(walk);
        delete walk;
        delete hero;
        theGame->mpPlaneManager->Remove(plane);
        delete plane;
        delete theGame;
        EXPECT_EQ(kernel.Ledger().LiveCount(), 0u) << "the game code leaked";
    }

    // Frames, one tick apart.
    void Play(int frames)
    {
        for (int i = 0; i < frames; i++) {
            kernel.ticks++;
            theGame->DoIt();
        }
    }

    RecordingKernel kernel;
    GLColoredPlane* plane = nullptr;
    GLCel* hero = nullptr;
    ClickToWalk* walk = nullptr;
};

TEST_F(ClickToWalkTest, TheHeroWalksToEachPressAndIgnoresOtherInput)
{
    kernel.PushEvent(kEventKeyDown, 'a');
    kernel.PushEvent(kEventPointerUp, 0, 0, 500, 100);
    Play(30);
    EXPECT_EQ(hero->GetPos(), GLPoint(100, 400)) << "only a press sends the hero";

    kernel.PushEvent(kEventPointerDown, 0, 0, 300, 200);
    Play(20);
    const GLPoint midway = hero->GetPos();
    EXPECT_NE(midway, GLPoint(100, 400)) << "the hero set off";
    EXPECT_NE(midway, GLPoint(300, 200)) << "and walks, rather than jumps";

    // A press mid-walk turns the hero towards the new point.
    kernel.PushEvent(kEventPointerDown, 0, 0, 40, 60);
    Play(2000);
    EXPECT_EQ(hero->GetPos(), GLPoint(40, 60));
}

} // namespace
