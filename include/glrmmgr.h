// glrmmgr.h - rooms as libraries: the room manager, the room directory and
// what a room library exports.
//
// Each room of a game is a shared library of its own, named by the room's
// number in decimal: room 120 is the file "120.so". The room manager loads one
// room at a time, hands it the kernel interface, runs its start-up, calls it
// on every frame of the game's main loop, passes it the events it is given,
// runs its disposal and unloads it. It never decides which room comes next:
// game code (the executable, or the room that is ending) calls, in this order,
//
//   LoadRoom(n) -> InitRoom() -> frames (each calls DoIt) and any number of
//   HandleEvent calls -> DisposeRoom() -> UnLoadRoom()
//
// and only then may the next LoadRoom come.
//
// Where a room library is found. The library of room n is looked for, in
// this order:
//   1. in the room directory: the directory of the running program, unless the
//      host has named another with GLSetRoomDirectory (a player names the game's
//      folder). If "n.so" exists there, that file is loaded and no other;
//   2. otherwise where the platform's loader looks for a library given without
//      a path (the directories of LD_LIBRARY_PATH, the library's run path, the
//      system's library directories and cache). Should the loader be unable to
//      list those directories, this step finds nothing.
// Never in the current working directory as such: a room must not be planted
// by whoever controls the working directory. A search directory of the loader
// that is relative (an empty or "." entry of LD_LIBRARY_PATH, for example)
// would be resolved against the working directory, so a room found first in
// such a directory is refused, without being loaded, as a library that did not
// load. The working directory is searched only when it is the room directory
// itself, and a relative room directory is made absolute when it is named, so
// a later change of working directory does not move it.
//
// Room numbers run from 0 to 9,999,999: the name is formatted into a buffer of
// eight characters (seven digits and the terminator). A larger number is
// refused by the check "uRoomNumber <= 9999999" rather than given a larger
// buffer, so that every room name stays the plain decimal number.
#ifndef QUINDLE_GLRMMGR_H
#define QUINDLE_GLRMMGR_H

#include "globject.h"

class GLEvent;

// Names the room directory. A relative name is taken from the working
// directory at the time of the call and kept as an absolute path. Null or ""
// restores the default, the directory of the running program. The absolute
// name must be shorter than 4000 characters ("!\"Room directory name too
// long!\""); a relative one needs a working directory ("!\"No working
// directory!\"").
QUINDLE_API void GLSetRoomDirectory(const char* pDirectory);

// ----- what a room library exports -----
//
// A room defines these five functions with C linkage under exactly these
// names, marked GL_ROOM_EXPORT so that they are visible however the room is
// built:
//
//   GL_ROOM_EXPORT void roomDLLInit(void* pKernel);   // once, right after loading;
//                                                     // the library's own kernel pointer
//   GL_ROOM_EXPORT void roomInit();                   // by InitRoom
//   GL_ROOM_EXPORT void roomDoIt();                   // once per frame while running
//   GL_ROOM_EXPORT int roomHandleEvent(GLEvent* pEvent); // by HandleEvent: TRUE claims it
//   GL_ROOM_EXPORT void roomDispose();                // by DisposeRoom
//
// A room links against this library, so it shares `kernel` and `theGame` with
// the host and may use every exported class.
#if defined(_WIN32)
#define GL_ROOM_EXPORT extern "C" __declspec(dllexport)
#else
#define GL_ROOM_EXPORT extern "C" __attribute__((visibility("default")))
#endif

extern "C" {
typedef void (*GLRoomDLLInitFunction)(void* pKernel);
typedef void (*GLRoomInitFunction)();
typedef void (*GLRoomDoItFunction)();
typedef int (*GLRoomHandleEventFunction)(GLEvent* pEvent);
typedef void (*GLRoomDisposeFunction)();
}

// Loads, drives and unloads the library of one room at a time.
//
// States: empty (nothing loaded) -> LoadRoom -> loaded -> InitRoom -> running
// (in the game's object set, so the game calls DoIt every frame) ->
// DisposeRoom -> disposed (out of the set; InitRoom may run it again) ->
// UnLoadRoom -> empty. A missing export of the room is reported as
// "!\"No such function!\"" when it is first needed; exports are looked up
// afresh on every call.
class QUINDLE_API GLRoomManager : public GLObject {
public:
    // Nothing loaded, room number 0. The manager is not put in any set.
    GLRoomManager();
    // Copies the room number, the loaded flag and the library handle; the copy
    // shares the loaded library, so only one of the two may unload it.
    GLRoomManager(const GLRoomManager& manager);
    GLRoomManager& operator=(const GLRoomManager& manager);
    // Neither unloads the library nor leaves the game's object set: dispose
    // and unload the room first.
    virtual ~GLRoomManager();

    // Calls the room's "roomDoIt". The game does this every frame while the
    // room runs.
    virtual void DoIt();
    // Passes the event (not null) to the room's "roomHandleEvent" and returns
    // its answer unchanged. Nothing in the library offers the manager events:
    // a game that wants its rooms to see them calls this itself or puts the
    // manager in a handler set of its own.
    virtual int HandleEvent(GLEvent* pEvent);

    // Loads the library of room uRoomNumber (see "Where a room library is
    // found" above), then calls its "roomDLLInit" with the kernel interface.
    // No room may be loaded yet. A library that does not load is reported as
    // "!\"Library did not load correctly!!\"". Returns TRUE.
    int LoadRoom(std::uint32_t uRoomNumber);
    // Calls the room's "roomInit", then puts the manager at the end of the
    // game's object set: from then on the room's "roomDoIt" runs every frame.
    void InitRoom();
    // Calls the room's "roomDispose", then takes the manager out of the game's
    // object set: the room is no longer called every frame.
    void DisposeRoom();
    // Frees the room's library; the room number is kept. Dispose the room
    // first: a running room left in the game's object set fails "IsRoomLoaded()"
    // on the next frame. Returns TRUE.
    int UnLoadRoom();

    // TRUE from a successful LoadRoom until UnLoadRoom.
    int IsRoomLoaded();
    // TRUE when a room is loaded and it is room uRoomNumber.
    int IsRoomLoaded(std::uint32_t uRoomNumber);
    // The platform's handle of the loaded library (what dlopen returned), or
    // null when no room is loaded.
    void* GetLibrary();

    std::uint32_t mRoomNumber; // the room last loaded; kept after unloading
    int mLoaded;               // TRUE while a room is loaded
    void* mpLibrary;           // the loaded library, or null

private:
    // The "roomDLLInit" step of LoadRoom.
    void InitRoomDLL();
    // The room's export of that name; a missing one is "!\"No such function!\"".
    void* FindRoomFunction(const char* pName);
};

// A class with no data whose constructor shows a notice with the text "From a
// class" under the title "Test", through the same notice as the assertion
// reporter (GLSetAssertNotice), and waits until it is dismissed.
class QUINDLE_API GLRoomDLL {
public:
    GL_DECLARE_ALLOCATION("include/glrmmgr.h")

    GLRoomDLL();
    GLRoomDLL(const GLRoomDLL& roomDLL);
    GLRoomDLL& operator=(const GLRoomDLL& roomDLL);
};

#endif
