// Fuzz target: the sound track text reader, and the track it builds played for
// a while. Whatever the bytes, reading and playing must stay inside their
// buffers, end no check, and give back every block. The one check a track
// ends by design, a wait that comes out at 0 seconds, is kept out: a track
// that has such a wait is read but not played.
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

void WriteTrack(const std::string& text)
{
    std::FILE* file = std::fopen(TrackPath().c_str(), "wb");
    if (!file)
        std::abort();
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
}

// Whether a wait of the ring can come out at 0 seconds (the minimum plus a
// draw mod the maximum), which ends the game by design when it is reached.
bool CanWaitNoTime(GLSndTrack* track)
{
    for (GLNode* node = track->mpHeader->mpNext; node != track->mpHeader; node = node->mpNext) {
        if (node->mNodeType != GLNode::WaitNode)
            continue;
        GLWaitNode* wait = static_cast<GLWaitNode*>(node);
        long long range = wait->mMaxSeconds < 0 ? -static_cast<long long>(wait->mMaxSeconds) : wait->mMaxSeconds;
        long long most = range == 0 ? 0 : (range - 1 < 32767 ? range - 1 : 32767);
        if (wait->mMinSeconds <= 0 && -static_cast<long long>(wait->mMinSeconds) <= most)
            return true;
    }
    return false;
}

// The reader's error notices: it must call a track an error exactly when it
// has a wait of no time.
int gErrors = 0;
void CountErrors(int kind, const char*, int, const char*)
{
    if (kind == GL_NOTICE_ERROR)
        gErrors++;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string text(reinterpret_cast<const char*>(data), size);

    RecordingKernel k;
    k.recording = false; // the log would only grow
    DLLInit(&k);
    GLGame* game = new GLGame;
    GLDLLInit(game);
    bool waitsNoTime;
    {
        // A first reading with every PLAY disabled (same length, so the
        // lines are cut the same way) tells whether the track has a wait of
        // no time; such a track is not played.
        std::string quiet = text;
        for (std::size_t at = quiet.find("PLAY"); at != std::string::npos; at = quiet.find("PLAY", at + 1))
            quiet[at] = 'X';
        WriteTrack(quiet);
        GLSndManager manager;
        gErrors = 0;
        GLSetHostNotice(&CountErrors);
        GLSndTrack* track = manager.CreateSndTrack(TrackPath().c_str());
        if (!track)
            std::abort();
        waitsNoTime = CanWaitNoTime(track);
        if ((gErrors != 0) != waitsNoTime || (GLCheckSndTrack(TrackPath().c_str()) != 0) != waitsNoTime)
            std::abort();
    }
    if (!waitsNoTime) {
        WriteTrack(text);
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
