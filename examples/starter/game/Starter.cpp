// Starter.cpp - the game library: the player calls QuindleGameStart once, then
// steps the game one frame at a time. The game itself is room 1.
#include "Starter.h"

#include "quindle_game.h"

#include "gldll.h"
#include "glgame.h"
#include "glquithd.h"
#include "glrmmgr.h"
#include "gluser.h"

namespace {

SoftKernelExtras* gExtras = nullptr;
GLQuitHandler* gQuit = nullptr;
GLRoomManager* gRooms = nullptr;

int Step(void*)
{
    theGame->DoIt();
    return theGame->mQuit ? 0 : 1;
}

// Gives back everything, in the reverse order of building.
void Finish(void*)
{
    gRooms->DisposeRoom();
    gRooms->UnLoadRoom();
    delete gRooms;
    theGame->mpUser->mpPrimaDonnas->Remove(gQuit);
    delete gQuit;
    delete theGame;
}

void* Start(const QuindleHost* host)
{
    DLLInit(host->kernel);
    gExtras = host->extras;
    GLDLLInit(new GLGame);
    // The quit key (Ctrl+Q in a window) ends the game.
    gQuit = new GLQuitHandler;
    theGame->mpUser->mpPrimaDonnas->AddToEnd(gQuit);
    theGame->mpUser->IsHandsOn(TRUE);

    // Rooms are found in the game folder, which the player makes the room directory.
    gRooms = new GLRoomManager;
    gRooms->LoadRoom(1);
    gRooms->InitRoom();

    return nullptr;
}

} // namespace

SoftKernelExtras* StarterExtras()
{
    return gExtras;
}

QUINDLE_GAME_ENTRY("starter", &Start, &Step, &Finish)
