// Recording a run on a tape and replaying it, through the player as a tester
// and a game developer use it: the same frames, a changed game folder caught
// at its frame and call, a failed check reproduced, broken tapes refused, and
// a run played in a window replayed headless.
#include "SoftTestSupport.h"
#include "TapeFormat.h"

#include <sys/wait.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

using namespace soft_test;

namespace {

struct Result {
    int status = -1; // the exit status, or 128 + the signal that ended the player
    std::string output;
};

Result Shell(const std::string& command)
{
    Result r;
    std::FILE* pipe = ::popen((command + " 2>&1").c_str(), "r");
    char buffer[512];
    while (pipe && std::fgets(buffer, sizeof buffer, pipe))
        r.output += buffer;
    const int raw = pipe ? ::pclose(pipe) : -1;
    r.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : WIFSIGNALED(raw) ? 128 + WTERMSIG(raw) : -1;
    return r;
}

std::string Bytes(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

class SoftTape : public ::testing::Test {
protected:
    void SetUp() override
    {
        game.Write("game.txt", std::string("library ") + TAPE_GAME + "\ntitle \"tape test\"\n");
        game.WriteSolidPng("pictures/1.png", 640, 480, 3);
        game.Write("views/100.txt", "cel 0 0 actor.png 10 29\n");
        game.WriteSolidPng("views/actor.png", 20, 30, 12);
        game.Write("messages.txt", "1 1 1 1 1 1 \"Hello\"\n");
        // A click on the actor where it stands at first.
        game.Write("script.txt", "10 press 95 80\n12 release 95 80\n40 quit\n");
        tape = game.Path("run.tape");
    }
    Result Play(const std::string& args, const std::string& env = "")
    {
        return Shell(env + std::string(PLAYER) + " " + game.Dir() + " --quiet " + args);
    }
    Result Record(const std::string& args) { return Play("--script " + game.Path("script.txt") + " --record " + tape + " " + args); }
    TempGame game;
    std::string tape;
};

TEST_F(SoftTape, ARecordedRunReplaysToTheSameFramesAndGif)
{
    const std::string outputs = " --frame 5,11,20 --every 7 --gif-every 1";
    const Result recorded = Record("--out " + game.Path("a") + outputs);
    ASSERT_EQ(recorded.status, 0) << recorded.output;
    const Result replayed = Play("--replay " + tape + " --out " + game.Path("b") + outputs);
    ASSERT_EQ(replayed.status, 0) << replayed.output;
    int files = 0;
    for (const auto& f : std::filesystem::directory_iterator(game.Path("a"))) {
        const std::string name = f.path().filename().string();
        EXPECT_EQ(Bytes(f.path().string()), Bytes(game.Path("b/" + name))) << name;
        files++;
    }
    EXPECT_EQ(files, 11); // run.gif, final.png, frames 5, 11, 20 and every 7th tick to 40
    SoftBitmap last;
    std::string error;
    ASSERT_TRUE(SoftReadPng(game.Path("b/final.png"), SoftPalette::Default(), &last, &error)) << error;
    EXPECT_EQ(last.At(95, 80), 3); // the click moved the actor
}

TEST_F(SoftTape, AGameFolderChangedSinceDivergesAtTheFrameOfTheClickNamingTheCall)
{
    ASSERT_EQ(Record("--no-gif --out " + game.Path("a")).status, 0);
    game.Write("messages.txt", "1 1 1 1 1 1 \"Hello there\"\n");
    const Result r = Play("--replay " + tape + " --no-gif --out " + game.Path("b"));
    EXPECT_EQ(r.status, 4) << r.output;
    // The press reaches the game at tick 10, the eleventh frame, and the game
    // asks for the message's text with a larger buffer.
    EXPECT_NE(r.output.find(tape + ": replay diverged at frame 11 (tick 10), call 8: expected GetMessage(key1 1, "
                                   "key2 1, key3 1, key4 1, sequence 1, size 6), got GetMessage(key1 1, key2 1, "
                                   "key3 1, key4 1, sequence 1, size 12)"),
              std::string::npos)
        << r.output;
}

TEST_F(SoftTape, ARunThatFailedACheckReplaysToTheSameReport)
{
    const Result recorded = Record("--no-gif --out " + game.Path("a") + " -- check");
    const std::string report = "Assertion failed in Source/Glsi.cpp(43): iPriority == -9999 || iPriority >= -1";
    ASSERT_NE(recorded.output.find(report), std::string::npos) << recorded.output;
    const Result replayed = Play("--replay " + tape + " --no-gif --out " + game.Path("b"));
    EXPECT_EQ(replayed.status, recorded.status) << replayed.output;
    EXPECT_NE(replayed.output.find(report), std::string::npos) << replayed.output;
    EXPECT_EQ(replayed.output.find("diverged"), std::string::npos) << replayed.output;
}

TEST_F(SoftTape, BrokenTapesAreRefusedNamingTheFileAndThePlace)
{
    ASSERT_EQ(Record("--no-gif --out " + game.Path("a")).status, 0);
    const std::string good = Bytes(tape);
    struct Case {
        const char* what;
        std::string bytes;
        int status;
        std::string message;
    };
    std::string damaged = good, otherVersion = good;
    damaged[good.size() / 2] ^= 0x40;
    otherVersion[8] = 9;
    const Case cases[] = {
        {"empty", "", 2, ": empty: not a tape at byte 0"},
        {"not a tape", "hello, world", 2, ": not a tape (no tape mark) at byte 0"},
        {"damaged", damaged, 2, "damaged record (its check does not match) (frame "},
        {"other version", otherVersion, 2, ": a tape of version 9, this player reads version 1 at byte 8"},
        {"cut short", good.substr(0, good.size() * 2 / 3), 5, ", before its game did"},
    };
    for (const Case& c : cases) {
        std::ofstream(game.Path("bad.tape"), std::ios::binary) << c.bytes;
        const Result r = Play("--replay " + game.Path("bad.tape") + " --no-gif --out " + game.Path("b"));
        EXPECT_EQ(r.status, c.status) << c.what << ": " << r.output;
        EXPECT_NE(r.output.find(game.Path("bad.tape") + ": "), std::string::npos) << c.what << ": " << r.output;
        EXPECT_NE(r.output.find(c.message), std::string::npos) << c.what << ": " << r.output;
    }
    game.Write("game.txt", std::string("library ") + TAPE_GAME + "\ntitle \"another game\"\n");
    const Result other = Play("--replay " + tape + " --no-gif --out " + game.Path("b"));
    EXPECT_EQ(other.status, 2) << other.output;
    EXPECT_NE(other.output.find(tape + ": a tape of the game \"tape test\""), std::string::npos) << other.output;
}

// A tape names where it was made; one from a platform whose pointers (and so
// the game's allocations) have another size is refused in one line, before
// it could diverge at its first frame.
TEST_F(SoftTape, ATapeFromAPlatformOfAnotherPointerSizeIsRefusedInOneLine)
{
    TapeHeader header;
    header.title = "tape test";
    header.library = std::filesystem::path(TAPE_GAME).filename().string();
    header.libraryVersion = "0";
    header.platform = sizeof(void*) == 8 ? "wasm32-web" : "x86_64-linux";
    header.pointerBytes = sizeof(void*) == 8 ? 4 : 8;
    TapeWriter writer;
    std::string error;
    TapeFrame none;
    ASSERT_TRUE(writer.Open(tape, header, &error)) << error;
    ASSERT_TRUE(writer.WriteEnd(none, TapeEnding::kQuit, 0, ""));
    const Result r = Play("--replay " + tape + " --no-gif --out " + game.Path("b"));
    EXPECT_EQ(r.status, 2) << r.output;
    EXPECT_NE(r.output.find(tape + ": a tape from another platform (" + header.platform), std::string::npos) << r.output;
    EXPECT_EQ(std::count(r.output.begin(), r.output.end(), '\n'), 1) << r.output;
}

#ifdef QUINDLE_HAVE_WINDOW
// Played in a window (SDL's display-less drivers, the click pushed into SDL's
// queue by the game, the real clock), replayed headless: the click is on the tape.
TEST_F(SoftTape, ARunPlayedInAWindowReplaysHeadless)
{
    const Result recorded = Play("--window --scale 1 --ticks 60 --record " + tape + " -- sdl",
                                 "SDL_VIDEODRIVER=dummy SDL_AUDIODRIVER=dummy ");
    ASSERT_EQ(recorded.status, 0) << recorded.output;
    const Result replayed = Play("--replay " + tape + " --no-gif --out " + game.Path("b"));
    ASSERT_EQ(replayed.status, 0) << replayed.output;
    SoftBitmap last;
    std::string error;
    ASSERT_TRUE(SoftReadPng(game.Path("b/final.png"), SoftPalette::Default(), &last, &error)) << error;
    EXPECT_EQ(last.At(95, 80), 3);
    int actor = 0;
    for (int x = 110; x < 180; x++)
        actor += last.At(x, 290) == 12;
    EXPECT_EQ(actor, 20);
}
#endif

} // namespace
