// Starter.cpp - the game library: the player calls QuindleGameStart once, then
// steps the game one frame at a time. The game itself is room 1.
#include "Starter.h"

#include "quindle_game.h"

#include "gldll.h"
#include "glgame.h"
#include "glquithd.h"
#include "glrmmgr.h"
#include "glkitinv.h"
#include "glsave.h"
#include "gluser.h"

namespace {

SoftKernelExtras* gExtras = nullptr;
const char* gFolder = ".";
const char* gLanguage = "";
GLQuitHandler* gQuit = nullptr;
GLRoomManager* gRooms = nullptr;
int gGreeted = FALSE;
// The kit's story (the choice made, where the badge is), which outlives the
// room and goes into a save.
GLKitState gKitState;
GLKitInventory* gInventory = nullptr; // the room's, while it is there

// The starter's saves: the room, the hero (by name: the library puts him
// back where he stood), one fact of the story and the kit's state in the
// store. Kept in
// static storage, they take nothing from the kernel until the first save.
class Saves : public GLSaveGame {
public:
    Saves() : GLSaveGame("starter", 1) {}

protected:
    void Declare() override
    {
        Store()->DeclareInt("meadow.greeted", FALSE);
        GLKitDeclareState(Store());
    }
    void Keep() override
    {
        Store()->SetInt("meadow.greeted", gGreeted);
        GLKitKeepState(gKitState, gInventory, Store());
    }
    int CurrentRoom() override { return 1; }
    // Restoring: the room goes and comes back; the store already holds the
    // saved values, which the room reads as it starts.
    void StartRoom(int room) override
    {
        gGreeted = Store()->GetInt("meadow.greeted");
        gRooms->DisposeRoom();
        gRooms->UnLoadRoom();
        gRooms->LoadRoom(static_cast<unsigned long>(room));
        gRooms->InitRoom();
    }
};

Saves gSaves;

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
    gSaves.Release(); // while the kernel is still there
    delete theGame;
}

void* Start(const QuindleHost* host)
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

    return nullptr;
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

GLKitState* StarterKitState()
{
    return &gKitState;
}

void StarterSetInventory(GLKitInventory* pInventory)
{
    gInventory = pInventory;
}

GLSaveGame* StarterSaves()
{
    return &gSaves;
}

void StarterGreeted(int greeted)
{
    gGreeted = greeted;
}

QUINDLE_GAME_ENTRY("starter", &Start, &Step, &Finish)
