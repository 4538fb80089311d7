// SoftText.cpp - see SoftText.h.
#include "SoftText.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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

bool SoftReadFile(const std::string& path, std::string* bytes, std::string* error, bool* missing)
{
    std::string scratch;
    if (!error)
        error = &scratch;
    if (missing)
        *missing = false;
    // Non-blocking, so that opening a FIFO does not wait for a writer.
    const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        const int e = errno;
        if (e == ENOENT || e == ENOTDIR) {
            if (missing)
                *missing = true;
            *error = path + ": no such file";
        } else {
            *error = path + ": cannot be read (" + std::strerror(e) + ")";
        }
        return false;
    }
    struct stat st;
    bool ok = false;
    if (::fstat(fd, &st) != 0)
        *error = path + ": cannot be read (" + std::strerror(errno) + ")";
    else if (S_ISDIR(st.st_mode))
        *error = path + ": is a directory, not a file";
    else if (!S_ISREG(st.st_mode))
        *error = path + ": is a FIFO, socket or device, not a file";
    else if (static_cast<unsigned long long>(st.st_size) > kSoftMaxFileBytes)
        *error = path + ": " + std::to_string(st.st_size) + " bytes, more than the " +
                 std::to_string(kSoftMaxFileBytes >> 20) + " MiB a file may have";
    else
        ok = true;
    if (ok) {
        bytes->resize(static_cast<std::size_t>(st.st_size));
        std::size_t got = 0;
        while (got < bytes->size()) {
            const ssize_t n = ::read(fd, &(*bytes)[got], bytes->size() - got);
            if (n < 0 && errno == EINTR)
                continue;
            if (n <= 0) {
                // A read error, or the file shrank while it was read.
                ok = false;
                *error = path + ": cannot be read (" + (n < 0 ? std::strerror(errno) : "it ended early") + ")";
                break;
            }
            got += static_cast<std::size_t>(n);
        }
    }
    ::close(fd);
    if (!ok)
        bytes->clear();
    return ok;
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
