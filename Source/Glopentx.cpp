// Glopentx.cpp - the game folder's text files opened for the library's
// readers, on every system. See glplatfm.h.
#include "glplatfm.h"

#include "FolderFile.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <unistd.h>

// The bytes come as they are in the file, on every system alike: no line
// ends are changed on the way.
std::FILE* GLPlatformOpenText(const char* pName, char* pWhy, std::size_t uWhySize)
{
    FolderFileError refusal;
    std::uint64_t uSize = 0;
    const int fd = FolderFileOpen(pName, kFolderText, &uSize, &refusal);
    std::FILE* pFile = fd >= 0 ? ::fdopen(fd, "rb") : 0;
    if (fd >= 0 && !pFile) {
        std::snprintf(refusal.text, sizeof refusal.text, "%s: cannot be read (%s)", pName, std::strerror(errno));
        ::close(fd);
    }
    if (!pFile) {
        // The refusal starts with the file's name, which the caller has.
        const std::size_t uName = std::strlen(pName);
        const int fNamed = std::strncmp(refusal.text, pName, uName) == 0 && refusal.text[uName] == ':';
        std::snprintf(pWhy, uWhySize, "%s", refusal.text + (fNamed ? uName + 2 : 0));
    }
    return pFile;
}
