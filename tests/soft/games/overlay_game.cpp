// overlay_game.cpp - a test game for the player's overlay: a coloured plane
// and a smaller transparent plane above it, two overlapping cels of which only
// the lower takes events, a polygon and an actor walking a path of three
// points. Room 5 runs (its walkable area is in the game folder). The quit key
// ends it.
#include "quindle_game.h"

#include "glcast.h"
#include "glcel.h"
#include "gldll.h"
#include "glgame.h"
#include "glmover.h"
#include "glplane.h"
#include "glplanes.h"
#include "glpoly.h"
#include "glquithd.h"
#include "glrmmgr.h"
#include "gluser.h"

#include <initializer_list>

namespace {

struct OverlayGame {
    GLGame* game = nullptr;
    GLColoredPlane* back = nullptr;
    GLTransparentPlane* front = nullptr;
    GLCel* lower = nullptr;       // takes events
    GLCel* upper = nullptr;       // drawn over the lower, taken out of the event set
    GLPoly* pond = nullptr;
    GLCel* walker = nullptr;
    GLListAsArray<GLPoint> route{4, 4};
    GLPath* path = nullptr;
    GLQuitHandler* quit = nullptr;
    GLRoomManager rooms;
};

int Step(void*)
{
    theGame->DoIt();
    return theGame->mQuit ? 0 : 1;
}

void Finish(void* state)
{
    auto* g = static_cast<OverlayGame*>(state);
    g->rooms.DisposeRoom();
    g->rooms.UnLoadRoom();
    delete g->path;
    for (int i = 0; i < g->route.NumElements(); i++)
        delete g->route.At(i);
    delete g->walker;
    delete g->pond;
    delete g->upper;
    delete g->lower;
    g->game->mpPlaneManager->Remove(g->front);
    g->game->mpPlaneManager->Remove(g->back);
    delete g->front;
    delete g->back;
    g->game->mpUser->mpPrimaDonnas->Remove(g->quit);
    delete g->quit;
    delete g->game;
    delete g;
}

} // namespace

extern "C" __attribute__((visibility("default"))) int QuindleGameStart(const QuindleHost* host,
                                                                       QuindleGameLoop* loop)
{
    DLLInit(host->kernel);
    auto* g = new OverlayGame;
    g->game = new GLGame;
    GLDLLInit(g->game);
    g->quit = new GLQuitHandler;
    g->game->mpUser->mpPrimaDonnas->AddToEnd(g->quit);
    g->game->mpUser->IsHandsOn(TRUE);

    const ScaleInfo full{kScaleFull, kScaleFull, kScaleMaxDefault, kScaleModeDefault};
    g->back = new GLColoredPlane(ZOR_Rect(0, 0, 639, 479), 3, 0, 0, ZOR_Point(0, 0));
    // Offset from the screen, so that plane and screen coordinates differ.
    g->front = new GLTransparentPlane(ZOR_Rect(40, 60, 599, 439), 1, 0, ZOR_Point(0, 0));
    g->game->mpPlaneManager->Add(g->back);
    g->game->mpPlaneManager->Add(g->front);

    g->lower = new GLCel(g->front, 100, 0, 0, GLPoint(150, 150), 10, full);
    g->upper = new GLCel(g->front, 101, 0, 0, GLPoint(170, 165), 20, full);
    for (GLCel* cel : {g->lower, g->upper}) {
        cel->Show();
        cel->ForceUpdate();
    }
    g->front->GetCast()->RemoveFromEvents(static_cast<GLFeature*>(g->upper));
    // Hidden (the kernel does not draw it) but taking events.
    GLPoint pond[4] = {GLPoint(300, 200), GLPoint(420, 190), GLPoint(440, 280), GLPoint(310, 300)};
    g->pond = new GLPoly(g->front, pond, 4);
    g->pond->Init();

    g->walker = new GLCel(g->front, 103, 0, 0, GLPoint(60, 320), 30, full);
    g->walker->Show();
    g->walker->SetMoveSpeed(1);
    for (const GLPoint& p : {GLPoint(200, 330), GLPoint(360, 340), GLPoint(480, 120)})
        g->route.AddToEnd(new GLPoint(p));
    g->path = new GLPath(g->walker, g->route);
    g->rooms.LoadRoom(5);
    g->rooms.InitRoom();

    loop->state = g;
    loop->step = &Step;
    loop->finish = &Finish;
    return 0;
}
