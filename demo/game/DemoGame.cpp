// DemoGame.cpp - the demo's game object and the start of the game library.
#include "DemoGame.h"

#include "Kit.h"

#include "glcursor.h"
#include "gldll.h"
#include "glquithd.h"
#include "glrmmgr.h"
#include "glscript.h"
#include "glsound.h"
#include "gltimer.h"
#include "gluser.h"
#include "kernel.h"
#include "quindle_game.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

DemoGame::DemoGame(SoftKernelExtras* pExtras, const char* gameFolder, const char* language)
    : mpExtras(pExtras), mpQuitHandler(0), mpSound(0), mpRooms(0), mpKit(new DemoKit(pExtras, gameFolder, language)),
      mRoom(0), mCameFrom(0), mNextRoom(0),
      mRoomsEntered(0), mCues(0), mLines(0), mConversations(0)
{
    std::snprintf(mFolder, sizeof mFolder, "%s", gameFolder);
    mPath[0] = 0;
}

void DemoGame::Start()
{
    // The cursor: cel 0 of view 900 is the arrow; the other modes have their
    // own pictures, and the cursor switches between them by itself.
    GLCelRes arrow(kCursorView, 0, 0, 0);
    GLCursor* cursor = new GLCursor(arrow, TRUE);
    GLCelRes hourglass(kCursorView, 0, 1, 0), barred(kCursorView, 0, 2, 0), hand(kCursorView, 0, 3, 0);
    cursor->SetWaitCelRes(hourglass);
    cursor->SetHandsOffCelRes(barred);
    cursor->SetHighLtCelRes(hand);
    SetCursor(cursor); // the game owns it from now on

    mpSound = new GLSndManager;
    mpRooms = new GLRoomManager;

    // What Play does before its loop: the quit key ends the game.
    mpQuitHandler = new GLQuitHandler;
    mpUser->mpPrimaDonnas->AddToEnd(mpQuitHandler);
    mpUser->IsHandsOn(TRUE);

    // The inventory and the label stay from room to room.
    mpKit->Start();
    EnterRoom(kCourtyard);
}

DemoGame::~DemoGame()
{
    if (mRoom)
        LeaveRoom();
    Log("the game ends: %d rooms entered, %d conversations (%d lines said), %d cues delivered", mRoomsEntered,
        mConversations, mLines, mCues);
    delete mpKit;
    mpUser->mpPrimaDonnas->Remove(mpQuitHandler);
    delete mpQuitHandler;
    delete mpRooms;
    delete mpSound;
    // Cues and timers still on their way when the game ended are ours to
    // delete. Anything else left in the object set is a room's that forgot to
    // give it back: the player's report of blocks not given back names it.
    for (int i = 0; i < mpObjects->NumElements(); i++) {
        GLCue* cue = dynamic_cast<GLCue*>(mpObjects->At(i));
        if (cue && !dynamic_cast<GLScript*>(cue)) {
            delete cue; // it leaves the set itself
            i--;
        }
    }
}

void DemoGame::DoIt()
{
    GLGame::DoIt();
    if (mNextRoom && !mQuit) {
        const int next = mNextRoom;
        mNextRoom = 0;
        LeaveRoom();
        EnterRoom(next);
    }
}

const char* DemoGame::RoomName(int room)
{
    return room == kCourtyard ? "the courtyard" : room == kGallery ? "the gallery" : "a room with no name";
}

// A room's library is loaded and started; from then on the room manager,
// being in the game's object set, calls the room every frame, and being an
// orphan it hands the room the input nobody else took (a click on the floor).
void DemoGame::EnterRoom(int room)
{
    mCameFrom = mRoom;
    mRoom = room;
    mRoomsEntered++;
    Log("room %d entered: %s", room, RoomName(room));
    mpRooms->LoadRoom(room);
    mpRooms->InitRoom();
    mpUser->mpOrphans->AddToEnd(mpRooms);
}

void DemoGame::LeaveRoom()
{
    mpUser->mpOrphans->Remove(mpRooms);
    mpRooms->DisposeRoom();
    mpRooms->UnLoadRoom();
    // Whatever mode a scene left the cursor in, the next room starts normal.
    HandsOn();
    mpCursor->EndWait();
    mpCursor->EndHighlight();
}

void DemoGame::HandsOff()
{
    mpUser->IsHandsOn(FALSE);
    mpCursor->HandsOff();
}

void DemoGame::HandsOn()
{
    mpUser->IsHandsOn(TRUE);
    mpCursor->HandsOn();
}

void DemoGame::Log(const char* format, ...)
{
    char line[256];
    va_list args;
    va_start(args, format);
    std::vsnprintf(line, sizeof line, format, args);
    va_end(args);
    // The kernel's clock, not the frame's: a movie plays inside one frame.
    std::printf("[%5u] %s\n", kernel->GetTicks(), line);
    std::fflush(stdout);
}

void DemoGame::CancelCuesTo(GLObject* pObject)
{
    // Walked by index with the count read afresh: deleting a cue takes it out.
    // Scripts (and sound tracks) are cues too, but long-lived ones: not ours.
    for (int i = 0; i < mpObjects->NumElements(); i++) {
        GLCue* cue = dynamic_cast<GLCue*>(mpObjects->At(i));
        if (cue && !dynamic_cast<GLScript*>(cue) && cue->mpWhoToCue == pObject) {
            delete cue;
            i--;
        }
    }
}

void DemoGame::Cued(const char* format, ...)
{
    char text[200];
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    mCues++;
    Log("cue: %s", text);
}

void DemoGame::Said(const char* talker, const char* line)
{
    mLines++;
    Log("%s says: \"%s\"", talker, line);
}

void DemoGame::ConversationOver(int room, int cutShort)
{
    mConversations++;
    Cued("conversation %d/1 %s (messager)", room, cutShort ? "cut short" : "said to its end");
}

void DemoGame::DialogueOver(int room, int cutShort, const char* how)
{
    mConversations++;
    Cued("dialogue %d %s%s%s (kit)", room, cutShort ? "cut short" : "over", *how ? ": " : "", how);
}

const char* DemoGame::FolderFile(const char* name)
{
    std::snprintf(mPath, sizeof mPath, "%s/%s", mFolder, name);
    return mPath;
}

// ----- the game library's one export: the player starts us here -----

namespace {

int Step(void*)
{
    theGame->DoIt();
    return theGame->mQuit ? 0 : 1;
}

void Finish(void* state)
{
    delete static_cast<DemoGame*>(state);
}

} // namespace

extern "C" __attribute__((visibility("default"))) int QuindleGameStart(const QuindleHost* host, QuindleGameLoop* loop)
{
    if (host->version != QUINDLE_HOST_VERSION || !host->extras) {
        std::fprintf(stderr, "demo: this player speaks another version\n");
        return 1;
    }
    DLLInit(host->kernel);
    DemoGame* game = new DemoGame(host->extras, host->gameFolder, host->language);
    GLDLLInit(game);
    game->Start();
    loop->state = game;
    loop->step = &Step;
    loop->finish = &Finish;
    return 0;
}
