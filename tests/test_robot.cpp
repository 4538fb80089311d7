// Robots, as whole frames of the main loop.
#include "GameTest.h"

#include <algorithm>
#include "glcast.h"
#include "glgame.h"
#include "glplane.h"
#include "glplanes.h"
#include "glrobot.h"
#include "glsi.h"
#include "gltimer.h"

namespace {

class RobotTest : public GameTest {
protected:
    RobotTest()
    {
        client = new GLScreenItem(plane, 3, 0, 0, GLPoint(5, 5), 2, kFullSizeScale);
        client->Show();
    }
    ~RobotTest() override
    {
        delete client;
    }

    GLScreenItem* client;
};

TEST_F(RobotTest, CuesAtItsCuePointAndAtItsEndThenLeavesTheCast)
{
    CueRecorder listener;
    GLRobot robot(900, plane, 4, GLPoint(20, 30));
    robot.SetCaller(&listener);
    robot.SetClient(client);
    k.robotSignals = {0, 0, 7, 0, 0xFFFFFFFFu};
    const std::size_t mark = k.Mark();
    robot.Start(FALSE, TRUE, FALSE);
    EXPECT_EQ(k.CallsSince(mark),
              (std::vector<std::string>{"InitRobot(900,20000,4,20,30,128)", "PrepareRobot(0,50000,50000,50000)",
                                        "NewScreenItem(20000,src:0/3/0/0/0,(5,5),[128,128,100,0])", "DeleteScreenItem(item:1)",
                                        "PlayRobot()"}));
    EXPECT_TRUE(plane->GetCast()->IsInDoItSet(&robot));
    EXPECT_FALSE(client->IsVisible());
    int cuesAfter[6];
    for (int frame = 0; frame < 6; frame++) {
        Frame();
        cuesAfter[frame] = listener.cues;
    }
    // The planes run before the game's objects, so a cue made by the robot
    // is delivered in the same frame: the third (cue point) and the fifth (end).
    EXPECT_EQ(cuesAfter[1], 0);
    EXPECT_EQ(cuesAfter[2], 1);
    EXPECT_EQ(cuesAfter[3], 1);
    EXPECT_EQ(cuesAfter[4], 2);
    EXPECT_EQ(cuesAfter[5], 2);
    EXPECT_EQ(robot.GetSignal(), 0xFFFFFFFFu);
    EXPECT_FALSE(plane->GetCast()->IsInCast(&robot));
    EXPECT_TRUE(client->IsVisible());
    EXPECT_EQ(k.Count("TerminateRobot"), 1);
    EXPECT_EQ(k.Count("GetRobotSignal"), 5); // out of the cast: no more reads
}

TEST_F(RobotTest, WaitingStartOnlyUpdatesTheScreenUntilDone)
{
    CueRecorder listener;
    GLRobot robot(901, plane, 4, GLPoint(0, 0));
    robot.SetCaller(&listener);
    k.robotDoneAfterPolls = 3;
    const std::size_t mark = k.Mark();
    robot.Start(TRUE, FALSE, FALSE);
    EXPECT_EQ(k.Count("UpdateScreen"), 3);
    const auto names = k.NamesSince(mark);
    EXPECT_EQ(std::count(names.begin(), names.end(), "GetTicks"), 0); // no frame ran meanwhile
    EXPECT_FALSE(plane->GetCast()->IsInCast(&robot));
    Frame();
    EXPECT_EQ(listener.cues, 1);

    // Started again after its end, the robot is initialised again.
    k.robotDoneAfterPolls = -1;
    robot.Start(FALSE, FALSE, FALSE);
    EXPECT_EQ(k.Count("InitRobot"), 2);
}

TEST_F(RobotTest, PauseResumeAndSettingsTakeEffectWhenTheyShould)
{
    GLRobot robot(902, plane, 4, GLPoint(0, 0));
    robot.Resume(); // not playing: nothing
    robot.Pause();
    EXPECT_EQ(k.Count("PauseRobot"), 0);
    robot.Start(FALSE, FALSE, FALSE);
    robot.Resume(); // playing but never paused: nothing
    EXPECT_EQ(k.Count("PlayRobot"), 1);
    robot.Pause();
    k.robotSignals = {7};
    Frame(); // paused: the signal is not read
    EXPECT_EQ(k.Count("GetRobotSignal"), 0);
    k.robotPlaying = 1; // the kernel still holds the robot as playing while paused
    robot.Resume();
    EXPECT_EQ(k.Count("PlayRobot"), 2);

    robot.SetPri(9);
    EXPECT_EQ(k.CallsNamed("SetRobotPriority").back(), "SetRobotPriority(9)");
    GLPoint elsewhere(50, 60);
    robot.SetPos(elsewhere);
    robot.SetPlane(nullptr); // ignored once started
    EXPECT_EQ(robot.GetPlane(), plane);
    EXPECT_EQ(k.Count("InitRobot"), 1); // the new position waits for the next Start
    robot.Terminate(FALSE);
    robot.Start(FALSE, FALSE, FALSE);
    EXPECT_EQ(k.CallsNamed("InitRobot").back(), "InitRobot(902,20000,9,50,60,128)");
}

TEST_F(RobotTest, AStartWhileAnotherPlaysEndsTheOtherFirst)
{
    CueRecorder first;
    GLRobot one(1, plane, 1, GLPoint(0, 0));
    GLRobot two(2, plane, 1, GLPoint(0, 0));
    one.SetCaller(&first);
    one.Start(FALSE, FALSE, FALSE);
    two.Start(FALSE, FALSE, FALSE);
    EXPECT_FALSE(plane->GetCast()->IsInCast(&one));
    EXPECT_TRUE(plane->GetCast()->IsInCast(&two));
    Frame();
    EXPECT_EQ(first.cues, 1);
}

TEST_F(RobotTest, MisuseEndsWithTheExactReport)
{
    EXPECT_GL_ASSERT(GLRobot(1, nullptr, 0, GLPoint(0, 0)), "Source/Glrobot.cpp", "pPlane != NULL");
    EXPECT_GL_ASSERT(GLRobot(1, plane, -2, GLPoint(0, 0)), "Source/Glrobot.cpp", "iPriority >= -1");
    GLRobot robot(1, plane, 0, GLPoint(0, 0));
    EXPECT_GL_ASSERT(robot.SetPri(-3), "Source/Glrobot.cpp", "iNewPriority >= -1");
    EXPECT_GL_ASSERT(robot.SetClient(nullptr), "Source/Glrobot.cpp", "pNewClient != 0");
    EXPECT_GL_ASSERT(robot.SetCaller(nullptr), "Source/Glrobot.cpp", "pWhoToCue != 0");
    // Started while it still plays, the robot would join its cast twice.
    robot.Start(FALSE, FALSE, FALSE);
    EXPECT_GL_ASSERT(robot.Start(FALSE, FALSE, FALSE), "include/glset.h", "!\"Item is already in set!\"");
}

} // namespace
