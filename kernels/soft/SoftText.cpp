// SoftText.cpp - see SoftText.h.
#include "SoftText.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

bool SoftSplitWords(const std::string& line, std::vector<std::string>* words, std::string* error)
{
    words->clear();
    std::size_t i = 0;
    const std::size_t n = line.size();
    if (line.find('\0') != std::string::npos) {
        *error = "a NUL byte: this is not a text file";
        return false;
    }
    while (i < n) {
        while (i < n && (line[i] == ' ' || line[i] == '\t'))
            i++;
        if (i >= n || line[i] == '#')
            break;
        std::string word;
        if (line[i] == '"') {
            i++;
            bool closed = false;
            while (i < n) {
                const char c = line[i++];
                if (c == '"') {
                    closed = true;
                    break;
                }
                if (c == '\\' && i < n) {
                    const char e = line[i++];
                    word += e == 'n' ? '\n' : e;
                } else {
                    word += c;
                }
            }
            if (!closed) {
                *error = "unclosed quote";
                return false;
            }
        } else {
            while (i < n && line[i] != ' ' && line[i] != '\t')
                word += line[i++];
        }
        words->push_back(word);
    }
    return true;
}

bool SoftParseInt(const std::string& word, long long low, long long high, long long* value)
{
    if (word.empty() || word.size() > 20)
        return false;
    const char* begin = word.c_str();
    char* end = nullptr;
    errno = 0;
    const bool hex = word.size() > 2 && word[0] == '0' && (word[1] == 'x' || word[1] == 'X');
    const long long v = std::strtoll(begin, &end, hex ? 16 : 10);
    if (errno != 0 || end == begin || *end != '\0' || v < low || v > high)
        return false;
    *value = v;
    return true;
}

bool SoftReadFile(const std::string& path, std::string* bytes, std::string* error, bool* missing, FolderFileKind kind)
{
    return FolderFileRead(path, kind, bytes, error, missing);
}

std::vector<std::string> SoftLines(const std::string& text)
{
    std::vector<std::string> lines;
    std::string current;
    for (char c : text) {
        if (c == '\n') {
            lines.push_back(current);
            current.clear();
        } else if (c != '\r') {
            current += c;
        }
    }
    if (!current.empty())
        lines.push_back(current);
    return lines;
}
