// The library's own classes on the soft kernel, in one process: what the
// library believes (a cel's clickable rectangle, a robot's cues, a sample's
// end, a narrator's time) agrees with what the kernel does.
#include "SoftTestSupport.h"

#include "glcel.h"
#include "gldll.h"
#include "glgame.h"
#include "glmsg.h"
#include "glplane.h"
#include "glplanes.h"
#include "glrobot.h"
#include "glsound.h"
#include "gltalker.h"
#include "gltimer.h"
#include "gluser.h"

using namespace soft_test;

namespace {

class CueLog : public GLObject {
public:
    void Cue(GLCue* pCue) override { ticks.push_back(theGame->mGameTicks), values.push_back(pCue->mValue); }
    std::vector<std::uint32_t> ticks;
    std::vector<int> values;
};

class SoftLibrary : public ::testing::Test {
protected:
    void SetUp() override
    {
        game.Write("views/7.txt", "cel 0 0 c.png 5 9\n");
        // 10x10, its top-left quarter transparent.
        game.WritePng("views/c.png", 10, 10, [](int x, int y) { return x < 5 && y < 5 ? -1 : 4; });
        game.Write("robots/3.txt", "rate 2\nframe c.png 0 0\nframe c.png 0 0 cue 11\nframe c.png 0 0\n");
        game.WritePng("robots/c.png", 4, 4, [](int, int) { return 6; });
        game.WriteWav("audio/20.wav", 22050, 22050 / 2); // half a second: 30 ticks
        game.Write("messages.txt", "1 0 0 0 1 1 \"Twelve chars\"\n1 0 0 0 2 1 \"Spoken.\" speech s.wav\n");
        game.WriteWav("s.wav", 11025, 11025); // one second: 60 ticks
        ASSERT_TRUE(k.SetGameFolder(game.Dir()));
        DLLInit(&k);
        g = new GLGame();
        GLDLLInit(g);
        g->mpUser->IsHandsOn(TRUE);
        plane = new GLColoredPlane(ZOR_Rect(10, 20, 629, 469), 1, 0, 0, ZOR_Point(0, 0));
        g->mpPlaneManager->Add(plane);
    }
    void TearDown() override
    {
        g->mpPlaneManager->Remove(plane);
        delete plane;
        delete g;
        EXPECT_EQ(k.Ledger().LiveCount(), 0u);
        k.Ledger().ReportLeaks(stderr);
        EXPECT_EQ(k.Fault(), "");
    }
    void Frames(int n)
    {
        for (int i = 0; i < n; i++)
            g->DoIt();
    }

    TempGame game;
    SoftKernel k;
    GLGame* g = nullptr;
    GLColoredPlane* plane = nullptr;
};

TEST_F(SoftLibrary, ACelsClickableRectangleIsWhatTheKernelDraws)
{
    GLCel* cel = new GLCel(plane, 7, 0, 0, GLPoint(100, 50), 5, kFullSizeScale);
    cel->Show();
    cel->SetPos(GLPoint(100, 50), TRUE); // an update: the rectangle comes from the kernel
    const GLRect& r = cel->GetRect();
    EXPECT_EQ(Edges(r), "95,41,104,50");
    Frames(1);
    // Screen = plane origin (10, 20) + plane coordinates.
    EXPECT_EQ(k.Frame()[(20 + 41) * 640 + 10 + 95], 1); // transparent corner
    EXPECT_EQ(k.Frame()[(20 + 50) * 640 + 10 + 104], 4);
    EXPECT_EQ(k.Frame()[(20 + 50) * 640 + 10 + 105], 1);
    EXPECT_TRUE(cel->OnPoint(GLPoint(95, 41), FALSE));
    EXPECT_FALSE(cel->OnPoint(GLPoint(95, 41), TRUE));
    EXPECT_TRUE(cel->OnPoint(GLPoint(100, 46), TRUE));

    cel->SetScale(ScaleInfo{256, 256, 100, 0}, TRUE);
    EXPECT_EQ(Edges(cel->GetRect()), "90,32,109,51");
    ZOR_Rect seen;
    ASSERT_TRUE(cel->NowSeenRect(&seen));
    EXPECT_EQ(seen.right, 109);
    cel->Hide();
    Frames(1);
    EXPECT_EQ(k.Frame()[(20 + 50) * 640 + 10 + 104], 1);
    delete cel;
}

TEST_F(SoftLibrary, ARobotCuesItsCallerAtItsCuePointAndAtItsEndAndAWaitingOneReturnsWhenPlayed)
{
    CueLog caller;
    GLRobot* robot = new GLRobot(3, plane, 5, GLPoint(200, 100));
    robot->SetCaller(&caller);
    robot->Start(FALSE, FALSE, FALSE); // plays from tick 0
    Frames(10);
    // Frame 1 (cue 11) shows from tick 2, the end comes at tick 6 (three
    // frames of two ticks). The robot reads its signal in its plane's pass, and
    // the cue it sends is delivered in the same frame's pass of the object set.
    ASSERT_EQ(caller.ticks.size(), 2u);
    EXPECT_EQ(caller.ticks[0], 2u);
    EXPECT_EQ(caller.ticks[1], 6u);
    EXPECT_EQ(robot->GetSignal(), 0xFFFFFFFFu);
    EXPECT_TRUE(robot->DoneYet());
    delete robot;

    GLRobot* waiting = new GLRobot(3, plane, 5, GLPoint(200, 100));
    waiting->Start(TRUE, FALSE, FALSE);
    EXPECT_EQ(k.GetTicks(), 10u + 6u);
    EXPECT_TRUE(waiting->DoneYet());
    delete waiting;
}

TEST_F(SoftLibrary, TheSoundManagerHearsASampleEndAfterItsLength)
{
    CueLog caller;
    GLSndManager* sound = new GLSndManager();
    sound->Play(20, 0, 100, 0, &caller, 0);
    Frames(31);
    EXPECT_TRUE(caller.ticks.empty());
    Frames(2);
    ASSERT_EQ(caller.ticks.size(), 1u);
    EXPECT_EQ(caller.ticks[0], 31u); // seen ended in the frame of tick 30, delivered on the next
    delete sound;
}

TEST_F(SoftLibrary, ANarratorTalksForTheLengthOfItsSpeech)
{
    CueLog caller;
    GLNarrator* narrator = new GLNarrator();
    class OneNarrator : public GLMessager {
    public:
        explicit OneNarrator(GLNarrator* n) : mNarrator(n) {}
        GLNarrator* FindTalker(int) override { return mNarrator; }
        GLNarrator* mNarrator;
    };
    OneNarrator* says = new OneNarrator(narrator);
    g->mGameTicks = k.GetTicks();
    EXPECT_TRUE(says->Say(1, 0, 0, 0, 2, &caller)); // the spoken one: 60 ticks
    Frames(61);
    EXPECT_TRUE(caller.ticks.empty()); // the talk time is the speech's 60 ticks + 1
    for (int i = 0; i < 10 && caller.ticks.empty(); i++)
        Frames(1);
    ASSERT_EQ(caller.ticks.size(), 1u);
    // The narrator ends in the first frame past its time (tick 62) and cues
    // the messager, which finds no next message and cues its caller.
    EXPECT_GE(caller.ticks[0], 62u);
    EXPECT_LE(caller.ticks[0], 64u);
    EXPECT_EQ(caller.values[0], 0);
    EXPECT_FALSE(k.IsMessageAudioPlaying(1, 0, 0, 0, 2, nullptr));
    delete says;
    delete narrator;
}

} // namespace
