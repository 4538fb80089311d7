// two_plane_game.h - the start-up and teardown the test games share: a game
// object whose last prima donna is the quit handler, hands on, and two planes
// (one behind, a transparent one in front) added in that order.
#ifndef QUINDLE_TEST_TWO_PLANE_GAME_H
#define QUINDLE_TEST_TWO_PLANE_GAME_H

#include "quindle_game.h"

#include "gldll.h"
#include "glgame.h"
#include "glplane.h"
#include "glplanes.h"
#include "glquithd.h"
#include "gluser.h"

struct TwoPlaneGame {
    GLGame* game = nullptr;
    AbsGLPlane* back = nullptr;
    GLTransparentPlane* front = nullptr;
    GLQuitHandler* quit = nullptr;
};

// What Play would do before its loop, once the kernel is known (DLLInit): the
// game made known, the quit handler last among the prima donnas, hands on.
inline void StartGame(TwoPlaneGame& g)
{
    g.game = new GLGame;
    GLDLLInit(g.game);
    g.quit = new GLQuitHandler;
    g.game->mpUser->mpPrimaDonnas->AddToEnd(g.quit);
    g.game->mpUser->IsHandsOn(TRUE);
}

// Adds the planes the game has made, the one behind first.
inline void AddPlanes(TwoPlaneGame& g)
{
    g.game->mpPlaneManager->Add(g.back);
    g.game->mpPlaneManager->Add(g.front);
}

// After the game's own objects on the planes are gone: the planes leave the
// plane manager before they are deleted, the quit handler leaves the prima
// donnas, and the game goes last.
inline void EndGame(TwoPlaneGame& g)
{
    g.game->mpPlaneManager->Remove(g.front);
    g.game->mpPlaneManager->Remove(g.back);
    delete g.front;
    delete g.back;
    g.game->mpUser->mpPrimaDonnas->Remove(g.quit);
    delete g.quit;
    delete g.game;
}

// One frame of the game; the player stops once it has quit.
inline int StepGame(void*)
{
    theGame->DoIt();
    return theGame->mQuit ? 0 : 1;
}

#endif
