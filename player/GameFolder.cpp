// GameFolder.cpp - see GameFolder.h.
#include "GameFolder.h"
#include "Portable.h"

#include "FolderFile.h"
#include "SoftText.h"

#ifdef _WIN32
#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#else
#include <dlfcn.h>
#include <link.h>
#endif

#include <cstring>

#include <vector>

bool ReadGameFile(const std::string& folder, GameFile* g, std::string* error)
{
    const std::string path = folder + "/game.txt";
    std::string text;
    bool missing = false;
    if (!SoftReadFile(path, &text, error, &missing)) {
        if (missing)
            *error += " (a game folder names its game library there)";
        return false;
    }
    const auto lines = SoftLines(text);
    std::vector<std::string> w;
    for (std::size_t i = 0; i < lines.size(); i++) {
        const std::string where = path + ":" + std::to_string(i + 1) + ": ";
        std::string fault;
        if (!SoftSplitWords(lines[i], &w, &fault)) {
            *error = where + fault;
            return false;
        }
        if (w.empty())
            continue;
        if (w[0] == "library" && w.size() == 2 && !w[1].empty())
            g->library = PortableIsAbsolute(w[1]) ? w[1] : folder + "/" + w[1];
        else if (w[0] == "title" && w.size() == 2)
            g->title = w[1];
        else {
            *error = where + "expected 'library <file>' or 'title \"<text>\"'";
            return false;
        }
    }
    if (g->library.empty()) {
        *error = path + ": no 'library <file>' line";
        return false;
    }
    return true;
}

#ifdef _WIN32

namespace {

// The loader's last words, in the system's own.
std::string LoaderError()
{
    char words[512];
    FolderFileSystemWords(::GetLastError(), words, sizeof words);
    return words;
}

// Loads by the full path; the libraries it needs come from its own folder,
// the program's and the system's.
HMODULE Load(const std::string& path)
{
    DWORD mode = 0;
    ::SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &mode);
    HMODULE library = ::LoadLibraryExA(path.c_str(), nullptr,
                                       LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
    const DWORD error = ::GetLastError();
    ::SetThreadErrorMode(mode, nullptr);
    ::SetLastError(error);
    return library;
}

} // namespace

int LoadGameLibrary(const std::string& path, QuindleGameStartFunction* start, std::string* error)
{
    FolderFileError refusal;
    if (!FolderFileIsLibrary(path.c_str(), &refusal)) {
        *error = refusal.missing ? path + ": cannot load the game library (no such file)"
                                 : std::string(refusal.text) + " (the game library)";
        return refusal.missing ? 3 : 2;
    }
    HMODULE library = Load(path);
    if (!library) {
        *error = path + ": cannot load the game library (" + LoaderError() + ")";
        return 3;
    }
    // A module's own export table is all GetProcAddress looks at: the entry
    // found is the file's own.
    *start = reinterpret_cast<QuindleGameStartFunction>(
        reinterpret_cast<void*>(::GetProcAddress(library, QUINDLE_GAME_START)));
    if (!*start) {
        *error = path + ": exports no " QUINDLE_GAME_START ": not a game library";
        return 2;
    }
    return 0;
}

// A room library's handle, its exports and its release on this system.
static void* OpenRoom(const std::string& path)
{
    return Load(path);
}

static bool HasExport(void* library, const char* name)
{
    return ::GetProcAddress(static_cast<HMODULE>(library), name) != nullptr;
}

static void CloseRoom(void* library)
{
    ::FreeLibrary(static_cast<HMODULE>(library));
}

#else

namespace {

// The loader's last words, or a plain reason when it gave none.
std::string LoaderError()
{
    const char* why = ::dlerror();
    return why ? why : "the loader refused it";
}

} // namespace

int LoadGameLibrary(const std::string& path, QuindleGameStartFunction* start, std::string* error)
{
    FolderFileError refusal;
    if (!FolderFileIsLibrary(path.c_str(), &refusal)) {
        // A library that is not there leaves nothing to start; one that is
        // there and no library is a fault of the folder.
        *error = refusal.missing ? path + ": cannot load the game library (no such file)"
                                 : std::string(refusal.text) + " (the game library)";
        return refusal.missing ? 3 : 2;
    }
    void* library = ::dlopen(path.c_str(), RTLD_NOW | RTLD_GLOBAL);
    if (!library) {
        *error = path + ": cannot load the game library (" + LoaderError() + ")";
        return 3;
    }
    // The entry point must be the file's own: a lookup by handle also finds
    // it in the libraries this one needs (a room library needs the game's).
    void* entry = ::dlsym(library, QUINDLE_GAME_START);
#ifndef __EMSCRIPTEN__ // a page links its one game in and loads none
    link_map* map = nullptr;
    Dl_info found;
    if (entry && (::dlinfo(library, RTLD_DI_LINKMAP, &map) != 0 || !::dladdr(entry, &found) || !map ||
                  std::strcmp(found.dli_fname, map->l_name) != 0))
        entry = nullptr;
#endif
    *start = reinterpret_cast<QuindleGameStartFunction>(entry);
    if (!*start) {
        *error = path + ": exports no " QUINDLE_GAME_START ": not a game library";
        return 2;
    }
    // The game library stays loaded: objects of the game may still be referred
    // to by the library's statics at exit.
    return 0;
}

static void* OpenRoom(const std::string& path)
{
    return ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
}

static bool HasExport(void* library, const char* name)
{
    return ::dlsym(library, name) != nullptr;
}

static void CloseRoom(void* library)
{
    ::dlclose(library);
}

#endif

bool CheckRoomLibrary(const std::string& path, std::string* error)
{
    FolderFileError refusal;
    if (!FolderFileIsLibrary(path.c_str(), &refusal)) {
        *error = std::string(refusal.text) + " (a room library)";
        return false;
    }
    void* library = OpenRoom(path);
    if (!library) {
        *error = path + ": the room library cannot be loaded (" + LoaderError() + ")";
        return false;
    }
    static const char* const kExports[] = {"roomDLLInit", "roomInit", "roomDoIt", "roomHandleEvent", "roomDispose"};
    std::string lacking;
    for (const char* name : kExports)
        if (!HasExport(library, name))
            lacking += (lacking.empty() ? "" : ", ") + std::string(name);
    CloseRoom(library);
    if (!lacking.empty())
        *error = path + ": a room library without " + lacking;
    return lacking.empty();
}


