// GameFolder.h - what the player reads of a game folder before the game runs.
#ifndef QUINDLE_PLAYER_GAME_FOLDER_H
#define QUINDLE_PLAYER_GAME_FOLDER_H

#include "quindle_game.h"

#include <string>

// game.txt: "library <file>" (required; relative to the folder) and
// "title "<text>"".
struct GameFile {
    std::string library;
    std::string title = "quindle";
};

// Reads <folder>/game.txt. False with `error` set to "<file>[:<line>]: <what is
// wrong>" when it is missing, unreadable or malformed.
bool ReadGameFile(const std::string& folder, GameFile* game, std::string* error);

// Loads the game library as the player runs it: looked at first (a regular
// file, a shared library for this machine), then every symbol bound at once,
// global so that room libraries see it. Returns 0 with `start` set to its
// entry point, or the player's exit status with `error` set to "<file>:
// <what is wrong>": 2 for a file that is no library for this machine or lacks
// the entry point, 3 for a missing file or a library the loader refuses (a
// missing dependency), in the loader's own words.
int LoadGameLibrary(const std::string& path, QuindleGameStartFunction* start, std::string* error);

// Loads a room library as the room manager does, looks up the five functions
// a room exports, and unloads it. False with `error` set when it is no
// library, the loader refuses it, or an export is missing.
bool CheckRoomLibrary(const std::string& path, std::string* error);

#endif
