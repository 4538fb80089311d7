// Glplatfm_win.cpp - loading room libraries, the blocking notice and the
// library's start in the process, on Windows. See glplatfm.h. The build takes
// this file instead of Glplatfm.cpp when it targets Windows.
#include "gldll.h"
#include "glplatfm.h"

#include "FolderFile.h"

// After the library's headers: the system's macros (UnlockResource among
// them) would rename members of the kernel's interface.
#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <cstdio>
#include <cstring>

const char kGLLibraryExtension[] = ".dll";
const char kGLPathSeparator = '\\';

namespace {

// Long enough for any name the room manager passes (its directory is shorter
// than 4000 characters) and for the longest name the system's ANSI calls take.
const std::size_t kPathSize = 4200;

// Every separator a backslash: the loader wants a full path written so.
void UseBackslashes(char* pPath)
{
    for (; *pPath; pPath++)
        if (*pPath == '/')
            *pPath = '\\';
}

// Formats "<directory>\<name>.dll" into the buffer; FALSE when it does not fit.
int MakeLibraryPath(char* pBuffer, std::size_t uSize, const char* pDirectory, const char* pName)
{
    const int iLength = std::snprintf(pBuffer, uSize, "%s\\%s%s", pDirectory, pName, kGLLibraryExtension);
    if (iLength <= 0 || static_cast<std::size_t>(iLength) >= uSize)
        return FALSE;
    UseBackslashes(pBuffer);
    return TRUE;
}

// A file on a disk: not a directory, and not a device (CON, NUL, COM1...) nor
// a pipe, which the file's attributes alone may not tell.
int IsFile(const char* pPath)
{
    const DWORD uAttributes = ::GetFileAttributesA(pPath);
    if (uAttributes == INVALID_FILE_ATTRIBUTES || (uAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_DEVICE)))
        return FALSE;
    HANDLE hFile = ::CreateFileA(pPath, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, 0, OPEN_EXISTING,
                                 FILE_ATTRIBUTE_NORMAL, 0);
    if (hFile == INVALID_HANDLE_VALUE)
        return FALSE;
    const int fDisk = ::GetFileType(hFile) == FILE_TYPE_DISK;
    ::CloseHandle(hFile);
    return fDisk;
}

// The directory of the running program, from the module the process started.
int ProgramDirectory(char* pBuffer, std::size_t uSize)
{
    const DWORD uLength = ::GetModuleFileNameA(0, pBuffer, static_cast<DWORD>(uSize));
    if (uLength == 0 || uLength >= uSize)
        return FALSE;
    char* pSlash = std::strrchr(pBuffer, '\\');
    if (!pSlash)
        return FALSE;
    // A program in a drive's root keeps "C:\" rather than "C:".
    pSlash[pSlash == pBuffer + 2 && pBuffer[1] == ':' ? 1 : 0] = '\0';
    return TRUE;
}

// Why the last load failed.
char gszLoadError[kPathSize + 256];

// Whether anything is there by that name (a file, or something the folder
// reader will refuse as one).
int Exists(const char* pPath)
{
    return ::GetFileAttributesA(pPath) != INVALID_FILE_ATTRIBUTES;
}

int IsFullyAbsolute(const char* pName)
{
    const int fDrive = ((pName[0] >= 'A' && pName[0] <= 'Z') || (pName[0] >= 'a' && pName[0] <= 'z')) &&
                       pName[1] == ':' && GLPlatformIsSeparator(pName[2]);
    return fDrive || (GLPlatformIsSeparator(pName[0]) && GLPlatformIsSeparator(pName[1]));
}

} // namespace

int GLPlatformIsSeparator(char c)
{
    return c == '\\' || c == '/';
}

std::size_t GLPlatformRootLength(const char* pPath)
{
    if (pPath[0] && pPath[1] == ':' && GLPlatformIsSeparator(pPath[2]))
        return 3;
    if (GLPlatformIsSeparator(pPath[0]))
        return GLPlatformIsSeparator(pPath[1]) ? 2 : 1;
    return 0;
}

int GLPlatformAbsolutePath(const char* pName, char* pBuffer, std::size_t uSize)
{
    int iLength = 0;
    if (IsFullyAbsolute(pName)) {
        iLength = std::snprintf(pBuffer, uSize, "%s", pName);
    } else {
        // A name relative to the working directory, to the current drive's
        // root ("\games") or to a drive's working directory ("D:games"): the
        // system resolves each against the working directories it keeps.
        const DWORD uNeeded = ::GetFullPathNameA(pName, static_cast<DWORD>(uSize), pBuffer, 0);
        if (uNeeded == 0)
            return -1;
        // Too small a buffer gets the size needed with its terminator, which
        // is at least uSize: the caller sees that it did not fit.
        iLength = static_cast<int>(uNeeded);
    }
    if (iLength > 0 && static_cast<std::size_t>(iLength) < uSize)
        UseBackslashes(pBuffer);
    return iLength;
}

void* GLPlatformLoadLibrary(const char* pDirectory, const char* pName)
{
    gszLoadError[0] = '\0';
    char szDirectory[kPathSize];
    if (!pDirectory) {
        if (!ProgramDirectory(szDirectory, sizeof szDirectory))
            return 0;
        pDirectory = szDirectory;
    }
    // The room is loaded by its full path or not at all: neither the working
    // directory nor PATH may supply it.
    char szPath[kPathSize];
    if (!MakeLibraryPath(szPath, sizeof szPath, pDirectory, pName) || !Exists(szPath))
        return 0;
    // Whatever stands there decides: a directory, a device or a file that is
    // no library for this machine is refused before the loader sees it.
    FolderFileError refusal;
    if (!FolderFileIsLibrary(szPath, &refusal)) {
        std::snprintf(gszLoadError, sizeof gszLoadError, "%s", refusal.text);
        return 0;
    }
    // The libraries the room itself needs are looked for beside it, beside the
    // program and in the system's directory, and a file that is no library is
    // refused here rather than with a dialog of the system's.
    DWORD uErrorMode = 0;
    ::SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &uErrorMode);
    HMODULE hLibrary = ::LoadLibraryExA(szPath, 0, LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
    const DWORD uError = ::GetLastError();
    ::SetThreadErrorMode(uErrorMode, 0);
    if (!hLibrary) {
        // The loader's reason after the file's name.
        char szWords[512];
        FolderFileSystemWords(uError, szWords, sizeof szWords);
        std::snprintf(gszLoadError, sizeof gszLoadError, "%s: %s", szPath, szWords);
    }
    return reinterpret_cast<void*>(hLibrary);
}

void* GLPlatformFindExport(void* pLibrary, const char* pName)
{
    return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(pLibrary), pName));
}

const char* GLPlatformLoadError()
{
    return gszLoadError;
}

void GLPlatformFreeLibrary(void* pLibrary)
{
    ::FreeLibrary(static_cast<HMODULE>(pLibrary));
}

int GLPlatformReplaceFile(const char* pFrom, const char* pTo, char* pWhy, std::size_t uWhySize)
{
    // A rename alone would refuse a name that is taken.
    if (::MoveFileExA(pFrom, pTo, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return TRUE;
    FolderFileSystemWords(::GetLastError(), pWhy, uWhySize);
    return FALSE;
}

void GLPlatformMessageBox(const char* pText, const char* pTitle, unsigned int)
{
    GLCurrentAssertNotice()(pText, pTitle);
}

void GLPlatformDefaultNotice(const char* pText, const char* pTitle)
{
    ::MessageBoxA(0, pText, pTitle, MB_OK | MB_ICONERROR | MB_TASKMODAL | MB_SETFOREGROUND);
}

int GLPlatformIsRegularFile(const char* pName)
{
    return pName && IsFile(pName);
}

// The library's whole work at process attach: no game yet, and no calls for
// the threads the process starts and ends.
extern "C" BOOL WINAPI DllMain(HINSTANCE hInstance, DWORD uReason, LPVOID)
{
    if (uReason == DLL_PROCESS_ATTACH) {
        theGame = 0;
        ::DisableThreadLibraryCalls(hInstance);
    }
    return TRUE;
}
