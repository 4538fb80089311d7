// quindle_game.h - how a game folder names its game to the player.
//
// A game folder holds a text file game.txt:
//
//   library <file>     the game's shared library, relative to the folder
//                      (or an absolute path); required
//   title <text>       the window's title; optional
//
// The library exports one C function, QuindleGameStart, which
// QUINDLE_GAME_ENTRY (below) writes. The player calls it once, after the
// kernel is ready, with what the game needs; the game hands the kernel to the
// library (DLLInit), makes its game object (GLDLLInit), builds its first
// room, and fills in the loop record. The player then calls
// `step` once per frame until it returns 0 (the game has quit) or the run's
// time is over, and `finish` once at the end, while the kernel still lives,
// so the game can give back everything it took.
//
// A game whose frame is the library's GLGame::DoIt steps like this:
//
//   static int Step(void*) { theGame->DoIt(); return theGame->mQuit ? 0 : 1; }
//
// A game may also draw through the kernel interface alone (the player's
// example does): every frame it must call the kernel's UpdateScreen once.
#ifndef QUINDLE_GAME_H
#define QUINDLE_GAME_H

#include <cstdio>

class KernelServices;
class SoftKernelExtras;

#define QUINDLE_HOST_VERSION 1

// What the player hands the game.
struct QuindleHost {
    int version;               // QUINDLE_HOST_VERSION
    KernelServices* kernel;    // the kernel: hand it to DLLInit
    SoftKernelExtras* extras;  // memory bitmaps and text (SoftExtras.h)
    const char* gameFolder;    // the game folder; also the directory of the room libraries
    int argc;                  // the player's arguments after "--"
    char** argv;
    const char* language;      // the language asked for (--lang, or the locale in a
                               // window): the code of lang/<code>/; "" or null: the default
};

// What the game hands back.
struct QuindleGameLoop {
    void* state;                 // passed back to step and finish
    int (*step)(void* state);    // one frame; 0 once the game has quit
    void (*finish)(void* state); // tears the game down; may be null
};

// The one export of a game library. Returns 0 when the game has started and
// `loop` is filled in; any other value is an error (the game writes why on
// the error stream) and the player exits with a failure.
extern "C" typedef int (*QuindleGameStartFunction)(const QuindleHost* host, QuindleGameLoop* loop);
#define QUINDLE_GAME_START "QuindleGameStart"

// Writes the export for a game: after the host is found to be of this
// version (and to offer the extras), `start(host)` builds the game and returns
// the state that `step` and `finish` get (it may be null); `finish` may be
// null too. A host of another version is refused with "<name>: this player
// speaks another version". In the game library, at namespace scope:
//
//   QUINDLE_GAME_ENTRY("my game", &Start, &Step, &Finish)
#define QUINDLE_GAME_ENTRY(name, start, step, finish)                                                                  \
    extern "C" __attribute__((visibility("default"))) int QuindleGameStart(const QuindleHost* host,                     \
                                                                           QuindleGameLoop* loop)                      \
    {                                                                                                                  \
        return QuindleStartGame(host, loop, name, start, step, finish);                                                \
    }

inline int QuindleStartGame(const QuindleHost* host, QuindleGameLoop* loop, const char* name,
                            void* (*start)(const QuindleHost* host), int (*step)(void* state),
                            void (*finish)(void* state))
{
    if (host->version != QUINDLE_HOST_VERSION || !host->extras) {
        std::fprintf(stderr, "%s: this player speaks another version\n", name);
        return 1;
    }
    loop->state = start(host);
    loop->step = step;
    loop->finish = finish;
    return 0;
}

#endif
