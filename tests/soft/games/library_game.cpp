// library_game.cpp - a test game built on the library, as a game author would
// write one: a picture plane, a transparent plane with one cel, a click on the
// cel moves it, the quit key ends the game. The player runs it headless.
#include "two_plane_game.h"

#include "SoftExtras.h"

#include "glcel.h"
#include "glrmmgr.h"

#include <cstring>

namespace {

struct LibraryGame : TwoPlaneGame {
    GLCel* actor = nullptr;
    SoftKernelExtras* extras = nullptr;
    std::uint16_t captionId = 0; // the memory id of the caption's bitmap
    KernelMemBitmap* captionBitmap = nullptr;
    GLCel* caption = nullptr;
    GLRoomManager* rooms = nullptr; // with the game argument "room": room 5 runs
};

LibraryGame* gGame = nullptr;

// A click on the actor moves it to (400, 300).
void OnActor(GLEvent*, GLObject*)
{
    gGame->actor->SetPos(GLPoint(400, 300), TRUE);
}

void Finish(void* state)
{
    LibraryGame* g = static_cast<LibraryGame*>(state);
    if (g->rooms) {
        g->rooms->DisposeRoom();
        g->rooms->UnLoadRoom();
        delete g->rooms;
    }
    delete g->actor;
    delete g->caption;
    delete g->captionBitmap;
    g->extras->FreeMemBitmap(g->captionId);
    EndGame(*g);
    delete g;
    gGame = nullptr;
}

void* Start(const QuindleHost* host)
{
    DLLInit(host->kernel);
    LibraryGame* g = gGame = new LibraryGame;
    StartGame(*g);
    const ZOR_Rect screen(0, 0, 639, 479);
    g->back = new GLPicturePlane(screen, 1, 0, 0, FALSE, ZOR_Point(0, 0));
    g->front = new GLTransparentPlane(screen, 1, 0, ZOR_Point(0, 0));
    AddPlanes(*g);
    g->actor = new GLCel(g->front, 100, 0, 0, GLPoint(100, 100), 10, kFullSizeScale);
    g->actor->SetSelectFunction(&OnActor);
    g->actor->Show();
    // A cel's clickable rectangle is what the kernel reports after an update;
    // Show alone adds the cel without one.
    g->actor->ForceUpdate();

    // A caption: text drawn by the kernel into a memory bitmap, shown by a cel.
    g->extras = host->extras;
    g->captionId = g->extras->CreateMemBitmap(200, 30, 0, 0);
    g->extras->DrawText(g->captionId, 0, 0, "Click the box", 15, 20, 0);
    g->captionBitmap = new KernelMemBitmap(&g->captionId);
    g->caption = new GLCel(g->front, g->captionBitmap, GLPoint(20, 400), 5, kFullSizeScale);
    g->caption->Show();

    for (int i = 1; i < host->argc; i++) {
        if (std::strcmp(host->argv[i], "room") == 0) {
            // Found in the game folder, which the player named the room directory.
            g->rooms = new GLRoomManager;
            g->rooms->LoadRoom(5);
            g->rooms->InitRoom();
        }
    }

    return g;
}

} // namespace

QUINDLE_GAME_ENTRY("library game", &Start, &StepGame, &Finish)
