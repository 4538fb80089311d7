// SoftText.h - small text helpers shared by the soft kernel's readers.
#ifndef QUINDLE_SOFT_TEXT_H
#define QUINDLE_SOFT_TEXT_H

#include <cstdint>
#include <string>
#include <vector>

// Splits a line into words at blanks; a word in double quotes may hold blanks
// and the escapes \" \\ \n. Returns false (with `error` set) on an unclosed quote.
bool SoftSplitWords(const std::string& line, std::vector<std::string>* words, std::string* error);
// A whole decimal or 0x-hexadecimal number in [low, high].
bool SoftParseInt(const std::string& word, long long low, long long high, long long* value);
// The file's bytes; false when it cannot be opened.
bool SoftReadFile(const std::string& path, std::string* text);
// Lines of a text (without their ends), '\r' removed.
std::vector<std::string> SoftLines(const std::string& text);

#endif
