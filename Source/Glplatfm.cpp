// Glplatfm.cpp - loading room libraries, and the blocking notice, on a system
// with the dynamic loader of glibc. See glplatfm.h.
#include "glplatfm.h"

#include "FolderFile.h"

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

const char kGLLibraryExtension[] = ".so";
const char kGLPathSeparator = '/';

namespace {

// Formats "<directory>/<name>.so" into the buffer; FALSE when it does not fit.
int MakeLibraryPath(char* pBuffer, std::size_t uSize, const char* pDirectory, const char* pName)
{
    const int iLength = std::snprintf(pBuffer, uSize, "%s/%s%s", pDirectory, pName, kGLLibraryExtension);
    return iLength > 0 && static_cast<std::size_t>(iLength) < uSize;
}

// Whether anything is there by that name (a file, or something a reader will
// refuse as one).
int Exists(const char* pPath)
{
    struct stat info;
    return ::stat(pPath, &info) == 0;
}

int IsFile(const char* pPath)
{
    struct stat info;
    return ::stat(pPath, &info) == 0 && S_ISREG(info.st_mode);
}

// The directory of the running program, from the system's own link to it.
int ProgramDirectory(char* pBuffer, std::size_t uSize)
{
    const ssize_t iLength = ::readlink("/proc/self/exe", pBuffer, uSize - 1);
    if (iLength <= 0 || static_cast<std::size_t>(iLength) >= uSize - 1)
        return FALSE;
    pBuffer[iLength] = '\0';
    char* pSlash = std::strrchr(pBuffer, '/');
    if (!pSlash)
        return FALSE;
    // The program in the root directory keeps "/" rather than an empty name.
    pSlash[pSlash == pBuffer ? 1 : 0] = '\0';
    return TRUE;
}

// Why the last load failed.
char gszLoadError[PATH_MAX + 256];

void* Open(const char* pPath)
{
    // The loader would block on a FIFO and map whatever it is given: a file
    // named by its path is looked at first. A bare name is the loader's to
    // find in its cache, never a file of the working directory.
    FolderFileError refusal;
    if (std::strchr(pPath, '/') && !FolderFileIsLibrary(pPath, &refusal)) {
        std::snprintf(gszLoadError, sizeof gszLoadError, "%s", refusal.text);
        return 0;
    }
    // Every symbol is bound now, so that a room missing one fails to load here
    // rather than in the middle of a frame.
    void* pLibrary = ::dlopen(pPath, RTLD_NOW | RTLD_LOCAL);
    if (!pLibrary) {
        const char* pWhy = ::dlerror();
        // The loader's words name the file already.
        if (pWhy)
            std::snprintf(gszLoadError, sizeof gszLoadError, "%s", pWhy);
        else
            std::snprintf(gszLoadError, sizeof gszLoadError, "%s: the loader refused it", pPath);
    }
    return pLibrary;
}

// The loader's search directories for a name without a path, asked of the
// loader itself for this library (the object that calls dlopen), so that the
// walk below sees LD_LIBRARY_PATH as the loader read it at start-up, not as the
// environment may say now. The directories come back in search order, with an
// empty entry as ".", $ORIGIN expanded and no trailing slash. Null when the
// loader cannot say; release the result with GL_FREE.
Dl_serinfo* LoaderSearchPath()
{
    Dl_info self;
    if (!::dladdr(reinterpret_cast<void*>(&GLPlatformLoadLibrary), &self) || !self.dli_fname)
        return 0;
    void* pSelf = ::dlopen(self.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
    if (!pSelf)
        return 0;
    Dl_serinfo size;
    Dl_serinfo* pSearch = 0;
    if (::dlinfo(pSelf, RTLD_DI_SERINFOSIZE, &size) == 0 && size.dls_size > 0) {
        pSearch = static_cast<Dl_serinfo*>(GL_ALLOC(size.dls_size));
        GL_ASSERT(pSearch != 0);
        // The size request fills in the two counts that the full request needs.
        if (::dlinfo(pSelf, RTLD_DI_SERINFOSIZE, pSearch) != 0 || ::dlinfo(pSelf, RTLD_DI_SERINFO, pSearch) != 0) {
            GL_FREE(pSearch);
            pSearch = 0;
        }
    }
    ::dlclose(pSelf);
    return pSearch;
}

// Where the loader would find "<name>.so" given without a path. The first
// search directory holding the file decides, as it would for the loader.
void* OpenFromLoaderPath(const char* pName)
{
    char szPath[PATH_MAX];
    Dl_serinfo* pSearch = LoaderSearchPath();
    // Without the list, the loader's own search could look in a relative
    // directory that the walk below would have refused: no room is loaded.
    if (!pSearch)
        return 0;
    for (unsigned int i = 0; i < pSearch->dls_cnt; i++) {
        const char* pDirectory = pSearch->dls_serpath[i].dls_name;
        if (!MakeLibraryPath(szPath, sizeof szPath, pDirectory, pName) || !IsFile(szPath))
            continue;
        // A relative directory is the working directory by another name:
        // whoever controls that directory must not choose the room.
        const int fRelative = pDirectory[0] != '/';
        GL_FREE(pSearch);
        if (fRelative)
            std::snprintf(gszLoadError, sizeof gszLoadError,
                          "%s: found in a relative directory of the loader's search path: not loaded", szPath);
        return fRelative ? 0 : Open(szPath);
    }
    GL_FREE(pSearch);
    // In no search directory: only the loader's cache of system libraries is
    // left, which holds absolute paths only.
    std::snprintf(szPath, sizeof szPath, "%s%s", pName, kGLLibraryExtension);
    return Open(szPath);
}

} // namespace

void* GLPlatformLoadLibrary(const char* pDirectory, const char* pName)
{
    gszLoadError[0] = '\0';
    char szDirectory[PATH_MAX];
    if (!pDirectory) {
        if (!ProgramDirectory(szDirectory, sizeof szDirectory))
            return OpenFromLoaderPath(pName);
        pDirectory = szDirectory;
    }
    char szPath[PATH_MAX];
    // Whatever stands in the room directory under the name decides: a FIFO or
    // a text file there is refused rather than passed over.
    if (MakeLibraryPath(szPath, sizeof szPath, pDirectory, pName) && Exists(szPath))
        return Open(szPath);
    return OpenFromLoaderPath(pName);
}

void* GLPlatformFindExport(void* pLibrary, const char* pName)
{
    return ::dlsym(pLibrary, pName);
}

void GLPlatformFreeLibrary(void* pLibrary)
{
    ::dlclose(pLibrary);
}

void GLPlatformMessageBox(const char* pText, const char* pTitle, unsigned int)
{
    GLCurrentAssertNotice()(pText, pTitle);
}

const char* GLPlatformLoadError()
{
    return gszLoadError;
}

int GLPlatformReplaceFile(const char* pFrom, const char* pTo, char* pWhy, std::size_t uWhySize)
{
    if (std::rename(pFrom, pTo) == 0)
        return TRUE;
    std::snprintf(pWhy, uWhySize, "%s", std::strerror(errno));
    return FALSE;
}

void GLPlatformDefaultNotice(const char* pText, const char* pTitle)
{
    // Linux has no message box: the same text goes to the error stream, under
    // its title. A windowed host replaces it with a dialog.
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
