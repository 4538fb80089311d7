// SoftText.h - small text helpers shared by the soft kernel's readers.
#ifndef QUINDLE_SOFT_TEXT_H
#define QUINDLE_SOFT_TEXT_H

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
// The most bytes a file of a game folder may have.
constexpr std::size_t kSoftMaxFileBytes = 64u << 20;
// Reads a whole regular file without ever blocking or throwing. False, with
// `error` set to "<path>: <what is wrong>", when nothing is there by that name,
// or it is a directory, a FIFO or device, unreadable, or larger than
// kSoftMaxFileBytes; `missing` tells the first case from the others.
bool SoftReadFile(const std::string& path, std::string* bytes, std::string* error = nullptr,
                  bool* missing = nullptr);
// Lines of a text (without their ends), '\r' removed.
std::vector<std::string> SoftLines(const std::string& text);

#endif
