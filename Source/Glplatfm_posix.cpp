// Glplatfm_posix.cpp - what the platform layer does the same way on every
// system with POSIX files (Linux, and a web page's file system): opening a
// game folder's text files through the one reader of game folder files, the
// default notice, and what a path looks like. See glplatfm.h.
#include "glplatfm.h"

#include "FolderFile.h"

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

const char kGLPathSeparator = '/';

std::FILE* GLPlatformOpenText(const char* pName, char* pWhy, std::size_t uWhySize)
{
    FolderFileError refusal;
    std::uint64_t uSize = 0;
    const int fd = FolderFileOpen(pName, kFolderText, &uSize, &refusal);
    std::FILE* pFile = fd >= 0 ? ::fdopen(fd, "r") : 0;
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

void GLPlatformDefaultNotice(const char* pText, const char* pTitle)
{
    // There is no message box here: the same text goes to the error stream,
    // under its title. A windowed host replaces it with a dialog.
    std::fprintf(stderr, "%s\n%s", pTitle, pText);
    std::fflush(stderr);
}

int GLPlatformIsSeparator(char c)
{
    return c == '/';
}

std::size_t GLPlatformRootLength(const char* pPath)
{
    return pPath[0] == '/' ? 1 : 0;
}

int GLPlatformAbsolutePath(const char* pName, char* pBuffer, std::size_t uSize)
{
    if (pName[0] == '/')
        return std::snprintf(pBuffer, uSize, "%s", pName);
    char szWorking[PATH_MAX];
    if (!::getcwd(szWorking, sizeof szWorking))
        return -1;
    const int iLength = std::snprintf(pBuffer, uSize, "%s/%s", szWorking, pName);
    // Without "." and ".." components when the directory exists already.
    char szResolved[PATH_MAX];
    if (iLength > 0 && static_cast<std::size_t>(iLength) < uSize && ::realpath(pBuffer, szResolved))
        return std::snprintf(pBuffer, uSize, "%s", szResolved);
    return iLength;
}
