// Saves.h - the player's saved games: --save-at and --load headless, F5 and
// F9 in a window, --check-save, and the folder the game's own saves go to.
//
// The game keeps its saves through the library (glsave.h); the player finds
// them installed once the game has started. It sets the kernel's clock back
// to a save's reading when one is restored, so the game goes on at the tick
// it was saved at, and the script's events up to that tick are taken as
// handled.
#ifndef QUINDLE_PLAYER_SAVES_H
#define QUINDLE_PLAYER_SAVES_H

#include "SoftKernel.h"

#include <cstdint>
#include <string>
#include <vector>

struct SaveOptions {
    bool saveAt = false;
    std::uint32_t saveTick = 0;
    std::string saveFile; // --save-at TICK FILE
    std::string load;     // --load FILE
    std::string check;    // --check-save FILE
};

// Takes the save option at argv[*i] (moving *i past its arguments): 1 when it
// was one, 0 when it is not a save option, -1 with `error` set when it is
// malformed.
int ParseSaveOption(int argc, char** argv, int* i, SaveOptions* options, std::string* error);

class PlayerSaves {
public:
    // With a tape recording or replaying, F5 and F9 are refused (the save
    // would be on the tape, and a replay could not make it).
    PlayerSaves(SoftKernel& kernel, const SaveOptions& options, const std::string& title, bool tape);
    ~PlayerSaves();
    PlayerSaves(const PlayerSaves&) = delete;
    PlayerSaves& operator=(const PlayerSaves&) = delete;

    // Only checking a save: the game starts, the save is read, nothing runs.
    bool Checking() const { return !mOptions.check.empty(); }
    // Once the game has started: names its saves folder and, with --load,
    // restores the save and drops the script's events up to it. Returns 0, or
    // the status to exit with after writing why on the error stream.
    int Started(std::vector<SoftInputEvent>* script);
    // --check-save: reads the save with the started game; prints what it is
    // (status 0), or why it is refused (status 2).
    int Check();
    // After each frame: --save-at's save when its tick has come, and a quick
    // save or restore asked for by F5 (key 5) or F9 (key 9). Returns 0, or 2
    // when --save-at could not write its save.
    int AfterFrame(int key);
    // A window session's own tape (not one asked for with --record) does not
    // refuse F5 and F9: it is ended, whole and replayable up to there, by
    // `end` before the first quick save or restore, since a replay could not
    // make them.
    void EndsSessionTape(void (*end)(void*), void* data)
    {
        mEndSession = end;
        mEndSessionData = data;
    }

private:
    SoftKernel& mKernel;
    SaveOptions mOptions;
    std::string mFolder;
    bool mTape;
    bool mSaved = false;
    void (*mEndSession)(void*) = nullptr;
    void* mEndSessionData = nullptr;
};

#endif
