// Saves.cpp - the player's saved games (Saves.h).
#include "Saves.h"

#include "gldll.h"
#include "glgame.h"
#include "glsave.h"

#include "Portable.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

SoftKernel* gKernel = nullptr;

void SetClock(std::uint32_t ticks)
{
    gKernel->SetClock(ticks);
}

// $XDG_DATA_HOME/quindle/<title>/saves, the data folder defaulting to
// ~/.local/share; a '/' in the title would make a folder of its own.
std::string SavesFolder(const std::string& title)
{
    std::string data;
    if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg && *xdg == '/')
        data = xdg;
    else if (const char* home = std::getenv("HOME"); home && *home)
        data = std::string(home) + "/.local/share";
    else
        data = ".";
    std::string name = title;
    for (char& c : name)
        if (c == '/')
            c = '_';
    return data + "/quindle/" + name + "/saves";
}

bool MakeFolders(const std::string& path)
{
    for (std::size_t at = 1; at <= path.size(); at++) {
        if (at < path.size() && path[at] != '/')
            continue;
        const std::string part = path.substr(0, at);
        if (PortableMakeDirectory(part.c_str()) != 0 && errno != EEXIST)
            return false;
    }
    return true;
}

GLSaveGame* Saves(const std::string& file)
{
    GLSaveGame* saves = GLSaveGame::Installed();
    if (!saves)
        std::fprintf(stderr, "quindle-player: %s: the game keeps no saves\n", file.c_str());
    return saves;
}

} // namespace

int ParseSaveOption(int argc, char** argv, int* i, SaveOptions* o, std::string* error)
{
    const std::string a = argv[*i];
    const int needs = a == "--save-at" ? 2 : a == "--load" || a == "--check-save" ? 1 : 0;
    if (!needs)
        return 0;
    if (*i + needs >= argc) {
        *error = a + (needs == 2 ? " needs a tick and a file" : " needs a save file");
        return -1;
    }
    if (a == "--save-at") {
        char* end = nullptr;
        const unsigned long tick = std::strtoul(argv[*i + 1], &end, 10);
        if (!*argv[*i + 1] || *end || tick > 0x7FFFFFFFul) {
            *error = "--save-at needs a tick 0..2147483647, not '" + std::string(argv[*i + 1]) + "'";
            return -1;
        }
        o->saveAt = true;
        o->saveTick = static_cast<std::uint32_t>(tick);
        o->saveFile = argv[*i + 2];
    } else {
        (a == "--load" ? o->load : o->check) = argv[*i + 1];
    }
    *i += needs;
    return 1;
}

PlayerSaves::PlayerSaves(SoftKernel& kernel, const SaveOptions& options, const std::string& title, bool tape)
    : mKernel(kernel), mOptions(options), mFolder(SavesFolder(title)), mTape(tape)
{
    gKernel = &kernel;
}

PlayerSaves::~PlayerSaves()
{
    GLSaveGame::SetClockFunction(nullptr);
    gKernel = nullptr;
}

int PlayerSaves::Started(std::vector<SoftInputEvent>* script)
{
    GLSaveGame* saves = GLSaveGame::Installed();
    if (saves) {
        saves->SetFolder(mFolder.c_str());
        GLSaveGame::SetClockFunction(&SetClock);
    }
    if (mOptions.load.empty())
        return 0;
    if (!Saves(mOptions.load))
        return 2;
    if (!saves->Restore(mOptions.load.c_str())) {
        std::fprintf(stderr, "quindle-player: %s\n", saves->LastError());
        return 2;
    }
    // The events the saved run had taken by its clock's reading are behind us.
    const std::uint32_t now = mKernel.GetTicks();
    std::vector<SoftInputEvent> ahead;
    for (const SoftInputEvent& e : *script)
        if (e.tick > now)
            ahead.push_back(e);
    script->swap(ahead);
    mKernel.SetScript(*script);
    return 0;
}

int PlayerSaves::Check()
{
    GLSaveGame* saves = Saves(mOptions.check);
    if (!saves)
        return 2;
    GLSaveHeader header;
    if (!saves->Check(mOptions.check.c_str(), &header)) {
        std::fprintf(stderr, "quindle-player: %s\n", saves->LastError());
        return 2;
    }
    std::printf("%s: a save of \"%s\", version %d (quindle %s), in room %d at tick %u\n", mOptions.check.c_str(),
                header.szTitle, header.iGameVersion, header.szLibraryVersion, header.iRoom, header.uGameTicks);
    return 0;
}

int PlayerSaves::AfterFrame(int key)
{
    if (mOptions.saveAt && !mSaved && theGame && theGame->mGameTicks >= mOptions.saveTick) {
        mSaved = true;
        GLSaveGame* saves = Saves(mOptions.saveFile);
        if (!saves)
            return 2;
        if (!saves->Save(mOptions.saveFile.c_str())) {
            std::fprintf(stderr, "quindle-player: %s\n", saves->LastError());
            return 2;
        }
    }
    GLSaveGame* saves = GLSaveGame::Installed();
    if (!key || !saves)
        return 0;
    if (mTape) {
        std::fprintf(stderr, "quindle-player: no saves while a tape records or replays\n");
        return 0;
    }
    if (mEndSession) {
        mEndSession(mEndSessionData);
        mEndSession = nullptr;
    }
    const std::string quick = saves->SlotFile("quick");
    if (key == 5) {
        if (!MakeFolders(mFolder))
            std::fprintf(stderr, "quindle-player: %s: cannot make the saves folder (%s)\n", mFolder.c_str(),
                         std::strerror(errno));
        else if (saves->Save(quick.c_str()))
            std::fprintf(stderr, "quindle-player: saved to %s\n", quick.c_str());
        else
            std::fprintf(stderr, "quindle-player: %s\n", saves->LastError());
    } else if (key == 9) {
        if (saves->Restore(quick.c_str()))
            std::fprintf(stderr, "quindle-player: restored %s\n", quick.c_str());
        else
            std::fprintf(stderr, "quindle-player: %s\n", saves->LastError());
    }
    return 0;
}
