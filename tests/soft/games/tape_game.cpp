// tape_game.cpp - a test game for recording and replaying: a click on the
// actor moves it by the length of message (1, 1, 1, 1, 1) and a random step,
// so that input, chance and the game folder all show in where it goes.
//
// Game arguments: "check" makes a click fail a check of the library
// (a cel of priority -5); "sdl" pushes a click on the actor into SDL's event
// queue at the tenth frame, as a window's user would make it; "crash" runs room
// 7, which crashes at tick 30; "modal" makes a quit handler the one modal hog,
// so that the first frame waits for the quit key; "leak" keeps its actor at
// the end; "noupdate" shows the actor without updating it (it takes no clicks).
#include "two_plane_game.h"

#include "glcel.h"
#include "glrmmgr.h"
#ifdef TAPE_GAME_SDL
#include <SDL2/SDL.h>
#endif

#include <cstring>

namespace {

struct TapeGame : TwoPlaneGame {
    GLCel* actor = nullptr;
    bool failCheck = false;
    bool pushClicks = false;
    bool leak = false;
    bool noUpdate = false;
    GLRoomManager* rooms = nullptr;
    GLQuitHandler* hog = nullptr;
    int frames = 0;
};

TapeGame* gGame = nullptr;

void OnActor(GLEvent*, GLObject*)
{
    TapeGame* g = gGame;
    if (g->failCheck)
        new GLCel(g->front, 100, 0, 0, GLPoint(0, 0), -5, kFullSizeScale);
    int size = 0;
    char text[256] = "";
    if (kernel->GetMessageSize(1, 1, 1, 1, 1, &size) && size <= static_cast<int>(sizeof text))
        kernel->GetMessage(1, 1, 1, 1, 1, text, size);
    const int x = 100 + 4 * static_cast<int>(std::strlen(text)) + static_cast<int>(GLRandom(0, 40));
    g->actor->SetPos(GLPoint(x, 300), TRUE);
}

#ifdef TAPE_GAME_SDL
void PushButton(Uint32 type, int x, int y)
{
    SDL_Event e;
    std::memset(&e, 0, sizeof e);
    e.type = type;
    e.button.button = SDL_BUTTON_LEFT;
    e.button.x = x;
    e.button.y = y;
    SDL_PushEvent(&e);
}
#endif

int Step(void*)
{
#ifdef TAPE_GAME_SDL
    if (gGame->pushClicks && ++gGame->frames == 10) {
        PushButton(SDL_MOUSEBUTTONDOWN, 95, 80);
        PushButton(SDL_MOUSEBUTTONUP, 95, 80);
    }
#endif
    return StepGame(nullptr);
}

void Finish(void* state)
{
    TapeGame* g = static_cast<TapeGame*>(state);
    if (g->hog) {
        g->game->mpUser->mpHogs->Remove(g->hog);
        delete g->hog;
    }
    if (!g->leak)
        delete g->actor;
    EndGame(*g);
    delete g;
    gGame = nullptr;
}

void* Start(const QuindleHost* host)
{
    DLLInit(host->kernel);
    TapeGame* g = gGame = new TapeGame;
    for (int i = 1; i < host->argc; i++) {
        g->failCheck = g->failCheck || std::strcmp(host->argv[i], "check") == 0;
        g->pushClicks = g->pushClicks || std::strcmp(host->argv[i], "sdl") == 0;
        if (std::strcmp(host->argv[i], "crash") == 0)
            g->rooms = new GLRoomManager;
        if (std::strcmp(host->argv[i], "modal") == 0)
            g->hog = new GLQuitHandler;
        g->leak = g->leak || std::strcmp(host->argv[i], "leak") == 0;
        g->noUpdate = g->noUpdate || std::strcmp(host->argv[i], "noupdate") == 0;
    }
    StartGame(*g);
    const ZOR_Rect screen(0, 0, 639, 479);
    g->back = new GLPicturePlane(screen, 1, 0, 0, FALSE, ZOR_Point(0, 0));
    g->front = new GLTransparentPlane(screen, 1, 0, ZOR_Point(0, 0));
    AddPlanes(*g);
    g->actor = new GLCel(g->front, 100, 0, 0, GLPoint(100, 100), 10, kFullSizeScale);
    g->actor->SetSelectFunction(&OnActor);
    g->actor->Show();
    if (!g->noUpdate)
        g->actor->ForceUpdate();
    if (g->hog) {
        g->game->mpUser->mpHogs->AddToEnd(g->hog);
        g->game->mpUser->HogsAreModal(TRUE);
        g->game->mpUser->DoesHandleNulls(TRUE);
    }
    if (g->rooms) {
        g->rooms->LoadRoom(7);
        g->rooms->InitRoom();
    }
    return g;
}

} // namespace

QUINDLE_GAME_ENTRY("tape game", &Start, &Step, &Finish)
