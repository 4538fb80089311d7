// KitCheck.h - the checker's part for games that use the adventure kit, and
// the language a run is played in.
#ifndef QUINDLE_PLAYER_KIT_CHECK_H
#define QUINDLE_PLAYER_KIT_CHECK_H

#include <string>

// Checks the kit's files of the folder (dialogues, items, names, each
// language's) and each language's messages.txt against the default one;
// `add` is told of every problem as (error, "<file>[:<line>]", what).
// Without the kit in this build, nothing is checked.
void CheckKitFiles(const std::string& folder, void (*add)(void* context, bool error, const std::string& where,
                                                          const std::string& what),
                   void* context);

// The language of a window's run when none is asked for: the user's locale
// (LC_ALL, LC_MESSAGES, LANG) cut to its language code, when the game folder
// has that language (lang/<code>/); else "".
std::string LocaleLanguage(const std::string& folder);

#endif
