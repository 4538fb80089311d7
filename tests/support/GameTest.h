// GameTest.h - a game with one full-screen plane, run frame by frame on the
// recording kernel, and an object that records the cues it gets.
#ifndef QUINDLE_GAME_TEST_H
#define QUINDLE_GAME_TEST_H

#include "QuindleTest.h"
#include "glgame.h"
#include "glplane.h"
#include "glplanes.h"
#include "gltimer.h"
#include "gluser.h"

#include <cstdint>
#include <initializer_list>

// Counts the cues it gets and remembers the last cuer and value.
class CueRecorder : public GLObject {
public:
    void Cue(GLCue* pCue) override
    {
        cues++;
        lastCuer = pCue->mpCuer;
        lastValue = pCue->mValue;
    }
    int cues = 0;
    GLObject* lastCuer = nullptr;
    int lastValue = 0;
};

// The game is handed to the library; the plane is in its plane manager; hands
// are on, as Play would leave them.
class GameTest : public QuindleTest {
protected:
    GameTest()
    {
        game = new GLGame();
        GLDLLInit(game);
        plane = new GLColoredPlane(ZOR_Rect(0, 0, 639, 479), 0, 1, 0, ZOR_Point(0, 0));
        game->mpPlaneManager->Add(plane);
        game->mpUser->IsHandsOn(TRUE);
    }
    ~GameTest() override
    {
        game->mpPlaneManager->Remove(plane);
        delete plane;
        delete game;
    }
    // One frame, with the kernel clock at tick.
    void Frame(std::uint32_t tick)
    {
        k.ticks = tick;
        game->DoIt();
    }
    // One frame at the clock as it stands.
    void Frame() { game->DoIt(); }
    // One frame at each of these ticks, in order.
    void Frames(std::initializer_list<std::uint32_t> ticks)
    {
        for (std::uint32_t tick : ticks)
            Frame(tick);
    }

    GLGame* game;
    AbsGLPlane* plane;
};

#endif
