// Check.h - the game folder checker (quindle-player --check <folder>).
#ifndef QUINDLE_PLAYER_CHECK_H
#define QUINDLE_PLAYER_CHECK_H

#include <cstdio>
#include <string>

// Reads everything in a game folder without running the game: game.txt and
// the file of its game library, the palette, every view manifest with its
// PNGs, the pictures, messages.txt with its speech files, the samples, the
// robots, the movies, every sound track in tracks/ and every walkable area in
// walk/ (by the library's own readers), and the input script when one is given. Prints each problem on
// `out` as "<file>:<line>: error: <what>" (or "<file>: error: <what>" when no
// line is to blame; "warning" for a surprise the game survives), then a count
// line. Returns the player's exit status: 2 when there is an error (or, with
// `strict`, a warning), 0 otherwise.
int CheckGameFolder(const std::string& folder, const std::string& script, bool strict, std::FILE* out);

#endif
