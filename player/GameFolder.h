// GameFolder.h - what the player reads of a game folder before the game runs.
#ifndef QUINDLE_PLAYER_GAME_FOLDER_H
#define QUINDLE_PLAYER_GAME_FOLDER_H

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

#endif
