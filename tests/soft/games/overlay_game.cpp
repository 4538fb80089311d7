// overlay_game.cpp - a test game for the player's overlay: a coloured plane
// and a smaller transparent plane above it, two overlapping cels of which only
// the lower takes events, a polygon and an actor walking a path of three
// points. Room 5 runs (its walkable area is in the game folder). The quit key
// ends it.
#include "two_plane_game.h"

#include "glcast.h"
#include "glcel.h"
#include "glmover.h"
#include "glpoly.h"
#include "glrmmgr.h"

#include <initializer_list>

namespace {

struct OverlayGame : TwoPlaneGame {
    GLCel* lower = nullptr;       // takes events
    GLCel* upper = nullptr;       // drawn over the lower, taken out of the event set
    GLPoly* pond = nullptr;
    GLCel* walker = nullptr;
    GLListAsArray<GLPoint> route{4, 4};
    GLPath* path = nullptr;
    GLRoomManager rooms;
};

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
    EndGame(*g);
    delete g;
}

void* Start(const QuindleHost* host)
{
    DLLInit(host->kernel);
    auto* g = new OverlayGame;
    StartGame(*g);
    const ScaleInfo full = kFullSizeScale;
    g->back = new GLColoredPlane(ZOR_Rect(0, 0, 639, 479), 3, 0, 0, ZOR_Point(0, 0));
    // Offset from the screen, so that plane and screen coordinates differ.
    g->front = new GLTransparentPlane(ZOR_Rect(40, 60, 599, 439), 1, 0, ZOR_Point(0, 0));
    AddPlanes(*g);

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

    return g;
}

} // namespace

QUINDLE_GAME_ENTRY("overlay game", &Start, &StepGame, &Finish)
