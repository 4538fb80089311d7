// Glplatfm_posix.cpp - what the platform layer does the same way on every
// system with POSIX files (Linux, and a web page's file system): replacing a
// file, the default notice, and what a path looks like. See glplatfm.h.
#include "glplatfm.h"

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

const char kGLPathSeparator = '/';

int GLPlatformReplaceFile(const char* pFrom, const char* pTo, char* pWhy, std::size_t uWhySize)
{
    if (std::rename(pFrom, pTo) == 0)
        return TRUE;
    std::snprintf(pWhy, uWhySize, "%s", std::strerror(errno));
    return FALSE;
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
