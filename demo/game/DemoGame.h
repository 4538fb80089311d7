// DemoGame.h - the demo's game object.
//
// A game is a GLGame, or a class derived from it, handed to the library with
// GLDLLInit. Ours adds what every room of the demo shares:
//   - the sound manager (ambient tracks and sound effects);
//   - the cursor with its four pictures;
//   - the room manager: every room is a library of its own (100.so, 200.so in
//     the game folder). A room asks for the next one with GoTo, and the game
//     makes the change between two frames, never inside one, so that no
//     object of the old room is deleted while the library is still walking it;
//   - its saves (glsave.h): what the story has come to, the room, where Pip
//     stands. The S key saves the game to its slot, L restores it;
//   - the log of what happened (rooms entered, conversations said, cues
//     delivered), printed with the tick at which it happened.
#ifndef DEMO_GAME_H
#define DEMO_GAME_H

#include "DemoApi.h"

#include "gldll.h"
#include "glgame.h"
#include "kernel.h"

class DemoKit;
class GLEvent;
class GLQuitHandler;
class GLSaveGame;
class GLSaveStore;
class GLRoomManager;
class GLSndManager;
class SoftKernelExtras;

// The numbers of the demo's resources, shared by the rooms and the asset maker.
enum DemoRooms { kCourtyard = 100, kGallery = 200 };
enum DemoViews {
    kPipView = 100,
    kGateView = 110,
    kBellView = 120,
    kButtonView = 130,
    kTelevisionView = 140,
    kCursorView = 900
};
// Each button has a loop of its own in the button view.
enum DemoButtonLoops { kTalkButton = 0, kRingButton = 1, kBackButton = 2 };
// The wind and the two birds are played by the ambient track (tracks/ambient.txt).
enum DemoSounds { kWind = 1, kBirdLeft = 2, kBirdRight = 3, kBellToll = 4, kChirp = 5, kGateCreak = 6, kClick = 7 };

// Names for the arguments the rooms pass the same way every time, so that a
// call reads as what it asks for.
// Planes: the picture at the back, everything that moves in front of it, all
// in the game's one window. The demo has no use for a vanishing point.
const int kBackPriority = 0;
const int kFrontPriority = 1;
const int kMainWindow = 0;
const int kNotMirrored = FALSE;
const ZOR_Point kNoVanishingPoint(0, 0);
// The sound manager's Play: every sound plays whole, with the plain start,
// and a sound nobody waits for cues no one.
const int kWholeSample = 0; // the qualifier
const int kPlainStart = FALSE;
const int kNoTag = 0;
GLObject* const kNobodyToCue = 0;
// The keys after the room of each room's conversation in messages.txt (noun
// 1, verb 1, condition 0), and sequence 0: say all of it, not one line.
const int kTalkNoun = 1;
const int kTalkVerb = 1;
const int kNoCondition = 0;
const int kWholeConversation = 0;
// A cycler's Add: the cel joins without being started (Start starts them all).
const int kJoinStopped = FALSE;
// Views of one loop.
const int kOnlyLoop = 0;

class DEMO_API DemoGame : public GLGame {
public:
    // The game's text is in `language` (the code of lang/<code>/, "" for the default).
    DemoGame(SoftKernelExtras* pExtras, const char* gameFolder, const char* language);
    // Leaves the room we are in and gives back what Start made.
    virtual ~DemoGame();

    // Once the game is installed (GLDLLInit): builds the cursor and the sound
    // manager, does what GLGame::Play does before its loop (the quit handler
    // joins the prima donnas, hands go on) and enters the first room. The
    // player runs our frames one by one, so we never call Play.
    void Start();

    // One frame of the library (GLGame::DoIt), then the room change asked for
    // during it, if any.
    virtual void DoIt();

    // Asks for a room change at the end of this frame.
    void GoTo(int room) { mNextRoom = room; }
    // The room we are in, and the one we came from (0 at the start).
    int Room() const { return mRoom; }
    int CameFrom() const { return mCameFrom; }

    // Deletes the cues and timers still on their way to pObject: a room calls
    // it for its objects as it goes, since a cue must never reach an object
    // that is gone (nor code of a room library that is unloaded).
    void CancelCuesTo(GLObject* pObject);

    // The name of a room, for the log.
    static const char* RoomName(int room);

    // Puts the player's hands off (input is swallowed, the cursor shows the
    // hands-off picture) for a scripted sequence, or back on.
    void HandsOff();
    void HandsOn();

    // Prints one line of the log: "[tick] text".
    void Log(const char* format, ...) __attribute__((format(printf, 2, 3)));
    // The same for a cue that arrived ("cue: text"), counted for the summary.
    void Cued(const char* format, ...) __attribute__((format(printf, 2, 3)));
    // A line of a conversation said, and a conversation over (cut short or
    // said to its end), logged and counted.
    void Said(const char* talker, const char* line);
    void ConversationOver(int room, int cutShort);
    // A dialogue of the kit over, with how it ended ("" when it just ended).
    void DialogueOver(int room, int cutShort, const char* how);

    // ----- saving -----
    // The game's saves. A room names the items a save puts back (Name) and
    // hands over the function that writes what it keeps into the store.
    GLSaveGame* Saves();
    void SetRoomKeeper(void (*keep)(GLSaveStore* pStore));
    // TRUE while a saved room starts: the room takes its state from the store
    // instead of playing its entrance.
    int Restoring();
    // The S and L keys, which a room hands over when nobody took them: the
    // save or restore is made at the end of the frame. TRUE when taken.
    int SaveKey(GLEvent* pEvent);
    // The story's facts that outlive a room.
    void BellRung();
    // For the saves: the game's own state into the store, and the saved room
    // started with the state the store holds.
    void Keep(GLSaveStore* pStore);
    void StartSavedRoom(int room);

    GLSndManager* Sound() { return mpSound; }
    // Memory bitmaps and text, for the narrator's speech balloons.
    SoftKernelExtras* Extras() { return mpExtras; }
    // The adventure kit: the inventory, names, dialogues and the story's state.
    DemoKit* Kit() { return mpKit; }
    // A file of the game folder, for things the library reads by file name.
    const char* FolderFile(const char* name);

private:
    void EnterRoom(int room);
    void StartRoomLibrary(int room);
    void SaveOrRestore();
    void LeaveRoom();

    SoftKernelExtras* mpExtras;
    char mFolder[512];
    char mPath[640];
    GLQuitHandler* mpQuitHandler;
    GLSndManager* mpSound;
    GLRoomManager* mpRooms;
    DemoKit* mpKit;
    int mRoom;
    int mCameFrom;
    int mNextRoom;
    // For the summary at the end.
    int mRoomsEntered;
    int mCues;
    int mLines;
    int mConversations;
};

// The game, as the rooms see it.
inline DemoGame* Demo()
{
    return static_cast<DemoGame*>(theGame);
}

#endif
