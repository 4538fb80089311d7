// Fuzz target: the sound track text reader, and the track it builds played for
// a while. Whatever the bytes, reading and playing must stay inside their
// buffers, end no check, and give back every block.
//
// Built and run by fuzz/run (clang's libFuzzer with AddressSanitizer and
// UndefinedBehaviorSanitizer).
#include "RecordingKernel.h"
#include "gldll.h"
#include "glgame.h"
#include "glsound.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <unistd.h>

namespace {

const std::string& TrackPath()
{
    static const std::string path = "/tmp/quindle_fuzz_track_" + std::to_string(getpid()) + ".txt";
    return path;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::FILE* file = std::fopen(TrackPath().c_str(), "wb");
    if (!file)
        return 0;
    if (size > 0)
        std::fwrite(data, 1, size, file);
    std::fclose(file);

    RecordingKernel k;
    k.recording = false; // the log would only grow
    DLLInit(&k);
    GLGame* game = new GLGame;
    GLDLLInit(game);
    {
        GLSndManager manager;
        GLSndTrack* track = manager.CreateSndTrack(TrackPath().c_str());
        if (!track)
            std::abort();
        track->Play();
        for (int frame = 0; frame < 40; frame++) {
            k.seconds += 1;
            if (frame % 3 == 0)
                k.playingSamples.clear();
            game->DoIt();
        }
        track->Pause();
        game->DoIt();
        game->DoIt();
        track->Resume();
        game->DoIt();
    }
    delete game;
    theGame = nullptr;
    std::remove(TrackPath().c_str());
    if (k.Ledger().LiveCount() != 0)
        std::abort();
    return 0;
}
