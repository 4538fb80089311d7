// glsave.h - saved games: a store of the game's named values, and the save
// file that holds it beside what the library can put back by itself.
//
// A game keeps what matters in a GLSaveStore under stable keys ("bell.rung",
// "inventory"), each declared once with its kind and default. A save holds:
//   - the store (integers, texts, and lists of either);
//   - the number of the room the game is in (rooms keep their own state in the
//     store, under keys of their own: "courtyard.glow.age");
//   - for each screen item the game has named for saving (the hero, an actor):
//     its view, loop, cel, position, priority, scale and whether it is shown;
//   - the cursor: where it stands and its modes (wait, hands off, highlight);
//   - the sound tracks of the sound manager: the node each one has reached;
//   - the game's tick count, and the kernel's clock when it was taken.
//
// Restoring takes the file whole before anything changes: a file that is not
// a save of this game, or is damaged or unreadable, is refused with one line
// naming the file and the reason, and the running game goes on untouched.
// Otherwise the game leaves its room, the store takes the saved values, the
// saved room starts with IsRestoring() TRUE (so its code places things from
// the store instead of playing its entrance), and the named objects are put
// back where they were.
//
// The file is UTF-8 text, one value per line, headed by the game's title, the
// game's save version, the library's version and a checksum of the rest. A
// save of an older version of the same game loads: keys the game has added
// since take their defaults, keys it no longer declares are ignored with one
// notice (GLNotify, a warning), and the game's upgrade function, if it set
// one, is called with the old version once the values are in. A save is
// written beside its file under a temporary name and renamed over it, so a
// crash or a full disk mid-save leaves the previous save whole.
//
// Nothing is taken from the kernel until the first save, restore or check:
// declaring keys waits for Declare(), and the named items have a table of
// their own, so a game that never saves runs exactly as it would without.
//
// Nothing here reaches into a class: everything saved is read and put back
// through the public members of the screen items, the cursor, the user object
// and the sound manager.
#ifndef QUINDLE_GLSAVE_H
#define QUINDLE_GLSAVE_H

#include "gldefs.h"

#include <cstdint>

class GLScreenItem;
class GLSndManager;

// The game's named values. Keys are 1 to 63 characters of letters, digits,
// '.', '-' and '_'. Every key is declared once with its kind and default
// before it is read or written; a key of another kind, or one never declared,
// is a failed check. The values take their blocks when first declared; the
// destructor (or Release) gives them back.
class QUINDLE_API GLSaveStore {
public:
    GL_DECLARE_ALLOCATION("include/glsave.h")

    enum Kind { kInt = 1, kText = 2, kIntList = 3, kTextList = 4 };

    GLSaveStore();
    ~GLSaveStore();
    GLSaveStore(const GLSaveStore&) = delete;
    GLSaveStore& operator=(const GLSaveStore&) = delete;

    // Declares a key with its default, which it holds until it is set. A key
    // declared again keeps its value (the kind must be the same).
    void DeclareInt(const char* key, int iDefault);
    void DeclareText(const char* key, const char* szDefault);
    // A list starts empty.
    void DeclareList(const char* key, Kind kind);

    void SetInt(const char* key, int iValue);
    int GetInt(const char* key) const;
    void SetText(const char* key, const char* szValue);
    // Good until the key is next set, reset or loaded.
    const char* GetText(const char* key) const;

    // Lists: their length, an item, and changes at the end.
    int GetCount(const char* key) const;
    int GetIntAt(const char* key, int index) const;
    const char* GetTextAt(const char* key, int index) const;
    void AddInt(const char* key, int iValue);
    void AddText(const char* key, const char* szValue);
    // Takes the item at index out; the later items move down.
    void RemoveAt(const char* key, int index);
    void ClearList(const char* key);

    // Whether the key was declared, and with which kind (0 when not).
    int IsDeclared(const char* key) const;
    Kind KindOf(const char* key) const;
    // Every key back to its default (a new game).
    void Reset();
    // The declared keys, in the order they were declared.
    int NumKeys() const;
    const char* KeyAt(int index) const;
    // Forgets every key and gives its blocks back.
    void Release();

    // One key and its values; the library's own.
    struct Entry;

private:
    friend class GLSaveGame;
    Entry* Find(const char* key) const;
    Entry* Need(const char* key, Kind kind) const;
    void* mpEntries; // the entries, in a list of the library's own
};

// What a save file says about itself, read without applying anything.
struct GLSaveHeader {
    char szTitle[128];
    int iGameVersion;
    char szLibraryVersion[32];
    std::uint32_t uGameTicks; // the game's tick count when it was saved
    std::uint32_t uClock;     // the kernel's clock when it was saved
    int iRoom;
};

// A game's saves: the game derives from it, names its rooms and says how a
// room is started, and hands its objects over by name. One is installed at a
// time (the last one made); a host finds it with Installed(). A game may
// keep it in static storage: it takes nothing from the kernel when made.
class QUINDLE_API GLSaveGame {
public:
    GL_DECLARE_ALLOCATION("include/glsave.h")

    // Called with the store once an older save's values are in.
    typedef void (*UpgradeFunction)(GLSaveStore* pStore, int iOldVersion);
    // Sets the host's clock to the saved reading (a kernel whose clock can be
    // set); without one the clock goes on from where it is.
    typedef void (*ClockFunction)(std::uint32_t uClock);

    // The game's title names its saves (another game's are refused); its save
    // version goes up whenever its keys change. Installs this game's saves.
    GLSaveGame(const char* szTitle, int iVersion);
    virtual ~GLSaveGame();
    GLSaveGame(const GLSaveGame&) = delete;
    GLSaveGame& operator=(const GLSaveGame&) = delete;

    // The game's installed saves, or null.
    static GLSaveGame* Installed();
    // The host's clock setter (see ClockFunction); null removes it.
    static void SetClockFunction(ClockFunction pFunction);

    GLSaveStore* Store() { return &mStore; }
    const char* GetTitle() const { return mTitle; }
    int GetVersion() const { return mVersion; }
    void SetUpgradeFunction(UpgradeFunction pFunction) { mpUpgrade = pFunction; }

    // Names a screen item for saving (a name as a key is spelled; at most
    // kMostNamed names); naming an item again under the same name replaces
    // it. Forget it before it goes.
    enum { kMostNamed = 32 };
    void Name(const char* name, GLScreenItem* pItem);
    void Forget(const char* name);
    void Forget(GLScreenItem* pItem);
    GLScreenItem* Named(const char* name) const;
    // The sound manager whose tracks are saved; null (the default) saves none.
    void SetSoundManager(GLSndManager* pManager) { mpSound = pManager; }

    // Where the game's saves go: the host names the folder (the player's is
    // in the user's data folder), "." until then. SlotFile gives the file of
    // a slot there, "<folder>/<slot>.sav", good until the next call.
    void SetFolder(const char* szFolder);
    const char* GetFolder() const { return mFolder; }
    const char* SlotFile(const char* slot);

    // TRUE while the saved room is being started by Restore.
    int IsRestoring() const { return mRestoring; }

    // Writes the game as it stands to the file. TRUE, or FALSE with the
    // reason in LastError() (the old file, if any, is left whole).
    int Save(const char* fileName);
    // Puts the saved game back (above). TRUE, or FALSE with LastError() and
    // the running game as it was.
    int Restore(const char* fileName);
    // Reads and checks a save of this game without applying it: TRUE, with
    // *pHeader filled (when given) and any keys this game no longer declares
    // reported; FALSE with LastError().
    int Check(const char* fileName, GLSaveHeader* pHeader);
    // "<file>: <reason>" of the last refusal.
    const char* LastError() const { return mError; }
    // Gives back the blocks the store and the last text took; a game whose
    // saves live in static storage calls it before the kernel goes.
    void Release();

    // The save written now, in memory (what Save writes): its length, and
    // the text, good until the next call. For tools and measurements.
    int Write(const char** ppText);

protected:
    // The game's part. Declares the store's keys with their defaults: called
    // before every save, restore and check (declaring again changes nothing).
    virtual void Declare() = 0;
    // The room the game is in now.
    virtual int CurrentRoom() = 0;
    // Called before a save: the game and its room write what they keep into
    // the store.
    virtual void Keep() {}
    // Leaves the room the game is in and starts `room` (IsRestoring() is
    // TRUE meanwhile); the store already holds the saved values.
    virtual void StartRoom(int room) = 0;

private:
    struct Parsed;
    int Refuse(const char* fileName, const char* reason);
    int Parse(const char* fileName, const char* text, int length, Parsed* pParsed);
    void Apply(Parsed* pParsed);

    GLSaveStore mStore;
    char mTitle[128];
    int mVersion;
    UpgradeFunction mpUpgrade;
    GLSndManager* mpSound;
    struct NamedItem {
        char name[64];
        GLScreenItem* pItem;
    };
    NamedItem mNamed[kMostNamed];
    int mNumNamed;
    int mRestoring;
    char mError[512];
    char mFolder[400];
    char mSlotFile[480];
    void* mpText; // the last text written
};

#endif
