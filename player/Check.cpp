// Check.cpp - see Check.h.
#include "Check.h"

#include "GameFolder.h"
#include "KitCheck.h"
#include "SoftKernel.h"
#include "SoftResources.h"
#include "SoftScript.h"
#include "SoftText.h"
#include "glconst.h"
#include "gldefs.h"
#include "gldll.h"
#include "glsound.h"
#include "glwalk.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <vector>

namespace {

struct Problems {
    std::vector<std::string> lines;
    int errors = 0;
    int warnings = 0;

    void Add(bool error, const std::string& where, const std::string& what)
    {
        (error ? errors : warnings)++;
        lines.push_back(where + ": " + (error ? "error: " : "warning: ") + what);
    }
    // A reader's fault, "<file>[:<line>]: <what>": the kind goes after the place.
    void AddFault(const std::string& fault)
    {
        const std::size_t colon = fault.find(": ");
        if (colon == std::string::npos)
            Add(true, fault, "");
        else
            Add(true, fault.substr(0, colon), fault.substr(colon + 2));
    }
};

Problems* gProblems = nullptr;

void OnTrackNotice(int kind, const char* file, int line, const char* text)
{
    if (kind == GL_NOTICE_TRACE)
        return;
    gProblems->Add(kind == GL_NOTICE_ERROR, line > 0 ? std::string(file) + ":" + std::to_string(line) : file, text);
}

bool IsDirectory(const std::string& path)
{
    struct stat st;
    return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

// The names in a directory, sorted; none when it is missing. A name that is
// there but no directory is a fault.
std::vector<std::string> Names(const std::string& dir, Problems& problems)
{
    std::vector<std::string> names;
    struct stat st;
    if (::stat(dir.c_str(), &st) != 0)
        return names;
    DIR* d = S_ISDIR(st.st_mode) ? ::opendir(dir.c_str()) : nullptr;
    if (!d) {
        problems.Add(true, dir, S_ISDIR(st.st_mode) ? "cannot be listed" : "is not a directory");
        return names;
    }
    while (const dirent* e = ::readdir(d)) {
        const std::string name = e->d_name;
        if (name != "." && name != "..")
            names.push_back(name);
    }
    ::closedir(d);
    std::sort(names.begin(), names.end());
    return names;
}

// The number of a resource named "<number><suffix>", or -1.
long long NumberOf(const std::string& name, const std::string& suffix)
{
    long long n = -1;
    if (name.size() <= suffix.size() || name.compare(name.size() - suffix.size(), suffix.size(), suffix) != 0 ||
        !SoftParseInt(name.substr(0, name.size() - suffix.size()), 0, 0x7FFFFFFF, &n))
        return -1;
    return n;
}

void CheckGame(const std::string& folder, Problems& p)
{
    GameFile game;
    std::string error;
    if (!ReadGameFile(folder, &game, &error)) {
        p.AddFault(error);
        return;
    }
    // Loaded as the player loads it, but never started.
    QuindleGameStartFunction start = nullptr;
    if (LoadGameLibrary(game.library, &start, &error) != 0)
        p.AddFault(error);
}

// Every room library of the folder ("<number>.so"), loaded as the room
// manager loads it, and unloaded again.
void CheckRooms(const std::string& folder, Problems& p)
{
    std::string error;
    for (const std::string& name : Names(folder, p))
        if (NumberOf(name, ".so") >= 0 && !CheckRoomLibrary(folder + "/" + name, &error))
            p.AddFault(error);
}

void CheckResources(const std::string& folder, Problems& p)
{
    SoftResources res(folder);
    std::string error;
    SoftPalette palette;
    if (!res.LoadPalette(&palette, &error))
        p.AddFault(error);
    // Each kind of numbered resource: its directory, its suffix, its reader.
    struct Kind {
        const char* dir;
        const char* suffix;
        bool (*read)(SoftResources&, int, std::string*);
    };
    static const Kind kinds[] = {
        {"views", ".txt", [](SoftResources& r, int n, std::string* e) { return r.View(n, e) != nullptr; }},
        {"pictures", ".png", [](SoftResources& r, int n, std::string* e) { return r.Picture(n, e) != nullptr; }},
        {"audio", ".wav", [](SoftResources& r, int n, std::string* e) { return r.Sound(kResourceAudio, n, e) != nullptr; }},
        {"sfx", ".wav", [](SoftResources& r, int n, std::string* e) { return r.Sound(kResourceSoundEffect, n, e) != nullptr; }},
        {"robots", ".txt",
         [](SoftResources& r, int n, std::string* e) { return r.Robot(static_cast<std::uint32_t>(n), e) != nullptr; }},
    };
    for (const Kind& kind : kinds) {
        const std::string dir = folder + "/" + kind.dir;
        for (const std::string& name : Names(dir, p)) {
            const long long n = NumberOf(name, kind.suffix);
            // Each is read alone, as by a game that holds nothing else, and
            // dropped again: a game never holds all of its pictures at once.
            res.SetFolder(folder);
            if (n >= 0 && !kind.read(res, static_cast<int>(n), &error))
                p.AddFault(error);
        }
    }
    for (const std::string& name : Names(folder, p))
        if ((NumberOf(name, ".VMD") >= 0 || NumberOf(name, ".AVI") >= 0)) {
            res.SetFolder(folder);
            if (!res.Movie(name, &error))
                p.AddFault(error);
        }

    const std::vector<SoftMessage>* messages = res.Messages(&error);
    bool missing = false;
    std::string bytes;
    if (!messages && !SoftReadFile(res.PathOf("messages.txt"), &bytes, nullptr, &missing) && missing)
        p.Add(false, res.PathOf("messages.txt"), "no such file: a game that says a message stops there");
    else if (!messages)
        p.AddFault(error);
    else if (messages->empty())
        p.Add(false, res.PathOf("messages.txt"), "holds no message: every conversation of the game says nothing");
    else
        for (const SoftMessage& m : *messages)
            if (!m.speech.empty() && !res.Wav(m.speech, &error))
                p.AddFault(error);
}

// Reads every file of a subdirectory of the folder with one of the library's
// readers, which tells the host notice of each problem.
void CheckWithLibrary(const std::string& dir, Problems& p, void (*read)(const char* file))
{
    gProblems = &p;
    GLSetHostNotice(&OnTrackNotice);
    for (const std::string& name : Names(dir, p))
        read((dir + "/" + name).c_str());
    GLSetHostNotice(nullptr);
    gProblems = nullptr;
}

void CheckTracks(const std::string& folder, Problems& p)
{
    CheckWithLibrary(folder + "/tracks", p, [](const char* file) { GLCheckSndTrack(file); });
}

// A walkable area is built as it is read, from memory of a kernel: a soft
// kernel of the check's own, kept to the end of the program since the library
// holds on to it.
void CheckWalkAreas(const std::string& folder, Problems& p)
{
    static SoftKernel kernel;
    DLLInit(&kernel);
    CheckWithLibrary(folder + "/walk", p, [](const char* file) { delete GLWalkArea::Load(file); });
}

} // namespace

int CheckGameFolder(const std::string& folder, const std::string& script, bool strict, std::FILE* out)
{
    Problems p;
    if (!IsDirectory(folder)) {
        p.Add(true, folder, "no such directory: a game folder is a directory");
    } else {
        CheckGame(folder, p);
        CheckRooms(folder, p);
        CheckResources(folder, p);
        CheckTracks(folder, p);
        CheckWalkAreas(folder, p);
        CheckKitFiles(
            folder,
            [](void* problems, bool error, const std::string& where, const std::string& what) {
                static_cast<Problems*>(problems)->Add(error, where, what);
            },
            &p);
    }
    std::vector<SoftInputEvent> events;
    std::string error;
    if (!script.empty() && !SoftReadScript(script, &events, &error))
        p.AddFault(error);
    for (const std::string& line : p.lines)
        std::fprintf(out, "%s\n", line.c_str());
    std::fprintf(out, "%s: %d error%s, %d warning%s\n", folder.c_str(), p.errors, p.errors == 1 ? "" : "s",
                 p.warnings, p.warnings == 1 ? "" : "s");
    return p.errors || (strict && p.warnings) ? 2 : 0;
}
