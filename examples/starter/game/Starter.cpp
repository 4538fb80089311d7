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
const char* gFolder = ".";
const char* gLanguage = "";
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

} // namespace

SoftKernelExtras* StarterExtras()
{
    return gExtras;
}

const char* StarterFolder()
{
    return gFolder;
}

const char* StarterLanguage()
{
    return gLanguage;
}

extern "C" __attribute__((visibility("default"))) int QuindleGameStart(const QuindleHost* host,
                                                                       QuindleGameLoop* loop)
{
    DLLInit(host->kernel);
    gExtras = host->extras;
    gFolder = host->gameFolder;
    gLanguage = host->language ? host->language : "";
    GLDLLInit(new GLGame);
    // The quit key (Ctrl+Q in a window) ends the game.
    gQuit = new GLQuitHandler;
    theGame->mpUser->mpPrimaDonnas->AddToEnd(gQuit);
    theGame->mpUser->IsHandsOn(TRUE);

    // Rooms are found in the game folder, which the player makes the room directory.
    gRooms = new GLRoomManager;
    gRooms->LoadRoom(1);
    gRooms->InitRoom();

    loop->state = nullptr;
    loop->step = &Step;
    loop->finish = &Finish;
    return 0;
}
