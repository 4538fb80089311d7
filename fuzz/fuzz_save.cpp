// Fuzz target: the save reader. Whatever the bytes, checking and restoring a
// save must stay inside their buffers, end no check, give back every block,
// and either refuse the file with a reason or put it back whole.
//
// Built and run by fuzz/run (clang's libFuzzer with AddressSanitizer and
// UndefinedBehaviorSanitizer).
#include "RecordingKernel.h"
#include "gldll.h"
#include "glgame.h"
#include "glsave.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <unistd.h>

namespace {

// A game with a key of every kind and no rooms: restoring starts nothing.
class FuzzSaves : public GLSaveGame {
public:
    FuzzSaves() : GLSaveGame("quindle demo", 2) {}
    int mStarted = 0;

protected:
    void Declare() override
    {
        Store()->DeclareInt("log.cues", 0);
        Store()->DeclareText("hero.name", "Pip");
        Store()->DeclareList("inventory", GLSaveStore::kIntList);
        Store()->DeclareList("names", GLSaveStore::kTextList);
    }
    int CurrentRoom() override { return 100; }
    void StartRoom(int) override { mStarted++; }
};

void Ignore(int, const char*, int, const char*) {}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string path = "/tmp/quindle_fuzz_save_" + std::to_string(getpid()) + ".sav";
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file)
        std::abort();
    std::fwrite(data, 1, size, file);
    std::fclose(file);

    RecordingKernel k;
    k.recording = false;
    DLLInit(&k);
    GLGame* game = new GLGame;
    GLDLLInit(game);
    GLSetHostNotice(&Ignore);
    {
        FuzzSaves saves;
        GLSaveHeader header;
        const int good = saves.Check(path.c_str(), &header);
        if (good != (saves.LastError()[0] == 0))
            std::abort();
        // A restore refuses what the check refused, and starts the room once
        // for what it accepted.
        if (saves.Restore(path.c_str()) != good || saves.mStarted != (good ? 1 : 0))
            std::abort();
        // What was put back is saved again and read back the same.
        if (good && (!saves.Save(path.c_str()) || !saves.Check(path.c_str(), nullptr)))
            std::abort();
        saves.Release();
    }
    delete game;
    theGame = nullptr;
    std::remove(path.c_str());
    if (k.Ledger().LiveCount() != 0)
        std::abort();
    return 0;
}
