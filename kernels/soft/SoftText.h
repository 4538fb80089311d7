// SoftText.h - small text helpers shared by the soft kernel's readers.
#ifndef QUINDLE_SOFT_TEXT_H
#define QUINDLE_SOFT_TEXT_H

#include "FolderFile.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// Splits a line into words at blanks; a word in double quotes may hold blanks
// and the escapes \" \\ \n. Returns false (with `error` set) on an unclosed
// quote or a NUL byte (a binary file read as text).
bool SoftSplitWords(const std::string& line, std::vector<std::string>* words, std::string* error);
// A whole decimal or 0x-hexadecimal number in [low, high].
bool SoftParseInt(const std::string& word, long long low, long long high, long long* value);
// Reads a whole file of the game folder through the folder-file reader
// (FolderFile.h): never blocking, regular files only, at most the bytes its
// kind may have. False, with `error` set to "<path>: <what is wrong>", when
// nothing is there by that name, or it is a directory, a FIFO or device,
// unreadable, or too large; `missing` tells the first case from the others.
bool SoftReadFile(const std::string& path, std::string* bytes, std::string* error = nullptr, bool* missing = nullptr,
                  FolderFileKind kind = kFolderText);
// Lines of a text (without their ends), '\r' removed.
std::vector<std::string> SoftLines(const std::string& text);

#endif
