// DemoGame.cpp - the demo's game object and the start of the game library.
#include "DemoGame.h"

#include "Kit.h"

#include "glcursor.h"
#include "gldll.h"
#include "glquithd.h"
#include "glevent.h"
#include "glrmmgr.h"
#include "glsave.h"
#include "glscript.h"
#include "glsound.h"
#include "gltimer.h"
#include "gluser.h"
#include "kernel.h"
#include "quindle_game.h"

#include <cstdarg>
#include <cstring>

// ----- saving -----

namespace {

#ifndef DEMO_NEXT_VERSION
const int kSaveVersion = 1;
#else
// The next version of the demo, which the tests load the first one's saves
// into: it keeps how often the bell tolled instead of whether it was rung.
const int kSaveVersion = 2;
#endif

// The demo's saves, in static storage: they take nothing from the kernel
// until the game is first saved or restored, so a run that never saves makes
// the same calls as before there were saves.
class DemoSaves : public GLSaveGame {
public:
    DemoSaves() : GLSaveGame("quindle demo", kSaveVersion) { SetUpgradeFunction(&Upgrade); }

protected:
    virtual void Declare();
    virtual int CurrentRoom() { return Demo()->Room(); }
    virtual void Keep() { Demo()->Keep(Store()); }
    virtual void StartRoom(int room) { Demo()->StartSavedRoom(room); }

private:
    static void Upgrade(GLSaveStore*, int iOldVersion)
    {
        Demo()->Log("a save of version %d brought up to version %d", iOldVersion, kSaveVersion);
    }
};

// Every key a save of the demo holds, the rooms' with the game's: a room's
// library is not loaded when a save of another room is read.
void DemoSaves::Declare()
{
    GLSaveStore* store = Store();
    store->DeclareInt("came.from", 0);
    store->DeclareInt("log.rooms", 0);
    store->DeclareInt("log.conversations", 0);
    store->DeclareInt("log.lines", 0);
    store->DeclareInt("log.cues", 0);
#ifndef DEMO_NEXT_VERSION
    store->DeclareInt("bell.rung", 0);
#else
    store->DeclareInt("bell.tolls", 0);
#endif
    store->DeclareInt("courtyard.heard", 0);
    store->DeclareInt("courtyard.arch.lit", 0);
    store->DeclareInt("gallery.greeted", 0);
    store->DeclareInt("gallery.swallow.flown", 0);
    store->DeclareInt("gallery.glow.cel", 0);
    store->DeclareInt("gallery.glow.age", 0);
    GLKitDeclareState(store);
}

DemoSaves gSaves;
void (*gpRoomKeeper)(GLSaveStore*) = 0;
int gBellRung = 0;
// 's' or 'l' when a save or restore waits for the end of the frame.
int gSaveAsked = 0;

} // namespace

GLSaveGame* DemoGame::Saves()
{
    return &gSaves;
}

int DemoGame::Restoring()
{
    return gSaves.IsRestoring();
}

void DemoGame::SetRoomKeeper(void (*keep)(GLSaveStore* pStore))
{
    gpRoomKeeper = keep;
}

void DemoGame::BellRung()
{
    gBellRung++;
}

int DemoGame::SaveKey(GLEvent* pEvent)
{
    const unsigned key = pEvent->message | 0x20; // either case
    if (pEvent->type != kEventKeyDown || (key != 's' && key != 'l'))
        return FALSE;
    gSaveAsked = static_cast<int>(key);
    pEvent->claimed = TRUE;
    return TRUE;
}

void DemoGame::Keep(GLSaveStore* pStore)
{
    pStore->SetInt("came.from", mCameFrom);
    pStore->SetInt("log.rooms", mRoomsEntered);
    pStore->SetInt("log.conversations", mConversations);
    pStore->SetInt("log.lines", mLines);
    pStore->SetInt("log.cues", mCues);
#ifndef DEMO_NEXT_VERSION
    pStore->SetInt("bell.rung", gBellRung);
#else
    pStore->SetInt("bell.tolls", gBellRung);
#endif
    GLKitKeepState(mpKit->State(), mpKit->Inventory(), pStore);
    if (gpRoomKeeper)
        gpRoomKeeper(pStore);
}

// The room we were in goes as it does when Pip walks out, but nothing is
// logged: the story goes on from the save, not from here.
void DemoGame::StartSavedRoom(int room)
{
    GLSaveStore* store = gSaves.Store();
    if (mRoom)
        LeaveRoom();
    mNextRoom = 0;
    mCameFrom = store->GetInt("came.from");
    mRoom = room;
    mRoomsEntered = store->GetInt("log.rooms");
    mConversations = store->GetInt("log.conversations");
    mLines = store->GetInt("log.lines");
    mCues = store->GetInt("log.cues");
#ifndef DEMO_NEXT_VERSION
    gBellRung = store->GetInt("bell.rung");
#else
    gBellRung = store->GetInt("bell.tolls");
#endif
    // The kit's story comes back before the room starts, which reads it.
    if (!GLKitRestoreState(*store, &mpKit->State(), mpKit->Inventory()))
        Log("the save's kit state has entries the kit does not know; they are left out");
    StartRoomLibrary(room);
}

void DemoGame::SaveOrRestore()
{
    const int asked = gSaveAsked;
    gSaveAsked = 0;
    const char* file = gSaves.SlotFile("game");
    if (asked == 's' && gSaves.Save(file))
        Log("the game is saved");
    else if (asked == 'l' && gSaves.Restore(file))
        Log("the game is restored: %s", RoomName(mRoom));
    else
        Log("the game could not be %s: %s", asked == 's' ? "saved" : "restored", gSaves.LastError());
}

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
    gSaves.SetSoundManager(mpSound); // a save holds where its tracks stand
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
    gSaves.SetSoundManager(0);
    delete mpSound;
    gSaves.Release();
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
    if (gSaveAsked && !mQuit)
        SaveOrRestore();
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
    StartRoomLibrary(room);
}

void DemoGame::StartRoomLibrary(int room)
{
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

void* Start(const QuindleHost* host)
{
    DLLInit(host->kernel);
    DemoGame* game = new DemoGame(host->extras, host->gameFolder, host->language);
    GLDLLInit(game);
    game->Start();
    return game;
}

} // namespace

QUINDLE_GAME_ENTRY("demo", &Start, &Step, &Finish)
