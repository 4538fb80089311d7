// Recording a run on a tape and replaying it, through the player as a tester
// and a game developer use it: a changed game folder caught at its frame and
// call, a failed check reproduced, broken tapes refused, and a run played in
// a window replayed headless. (That a replay draws the same frames is the
// demo's test, on its playthrough.)
#include "SoftTestSupport.h"
#include "TapeFormat.h"

#include <sys/wait.h>

#include <algorithm>
#include <csignal>
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

// A room that crashes at tick 30: one report naming the signal, the tick, the
// room and the room's line, exit 6, and the tape finished, so that its replay
// ends in the same report at the same frame.
TEST_F(SoftTape, ACrashIsReportedWhereItHappenedAndItsTapeReplaysToIt)
{
    std::filesystem::copy_file(CRASH_ROOM, game.Path("7.so"));
    const std::string where = "quindle-player: the game crashed: segmentation fault (SIGSEGV) at tick 30, frame 31, room 7\n";
    const std::string line = "roomDoIt at tests/soft/games/crash_room.cpp:23 (7.so)";
    const Result recorded = Record("--no-gif --out " + game.Path("a") + " -- crash");
    EXPECT_EQ(recorded.status, 6) << recorded.output;
    EXPECT_NE(recorded.output.find(where), std::string::npos) << recorded.output;
    EXPECT_NE(recorded.output.find("  #0 " + line), std::string::npos) << recorded.output;
    EXPECT_NE(recorded.output.find("the run's tape: " + tape), std::string::npos) << recorded.output;

    const Result replayed = Play("--replay " + tape + " --no-gif --out " + game.Path("b"));
    EXPECT_EQ(replayed.status, 6) << replayed.output;
    EXPECT_NE(replayed.output.find(where), std::string::npos) << replayed.output;
    EXPECT_NE(replayed.output.find("  #0 " + line), std::string::npos) << replayed.output;
    EXPECT_EQ(replayed.output.find("diverged"), std::string::npos) << replayed.output;
}

// How a run ends, said in one line with its status, and recorded so that its
// tape replays to the same end. A modal hog waits for the quit key inside the
// first frame: the virtual clock moves on there, so the key ends the game at
// its tick, and without it the tick limit ends the run inside the loop.
TEST_F(SoftTape, EachEndOfARunIsSaidWithItsStatusAndReplays)
{
    game.Write("quit.txt", "50 quit\n");
    const std::string quitAt50 = "--script " + game.Path("quit.txt");
    const struct {
        std::string args;
        int status;
        std::string said;
    } cases[] = {
        {quitAt50 + " -- modal", 0, "the game quit after 50 ticks, 1 frames"},
        {"-- modal", 0, "ended inside a modal input loop\nquindle-player: reached its tick limit after 100 ticks"},
        {"", 0, "reached its tick limit after 100 ticks, 100 frames"},
        {"-- leak", 0, " blocks were not given back:\n"},
        {"--strict -- leak", 2, " blocks were not given back (a fault with --strict):\n"},
        {"--trace --script " + game.Path("script.txt") + " -- noupdate", 0, "press at (95, 80) goes through cel"},
    };
    for (const auto& c : cases) {
        const Result r = Shell(std::string(PLAYER) + " " + game.Dir() + " --no-gif --out " + game.Path("a") +
                               " --ticks 100 --record " + tape + " " + c.args);
        EXPECT_EQ(r.status, c.status) << c.args << "\n" << r.output;
        EXPECT_NE(r.output.find(c.said), std::string::npos) << r.output;
        const Result replayed = Play("--replay " + tape + " --no-gif --out " + game.Path("b"));
        EXPECT_EQ(replayed.status, 0) << c.args << "\n" << replayed.output;
    }
    // SIGTERM stops the run between frames, after the tape is finished.
    const Result killed = Shell("(" + std::string(PLAYER) + " " + game.Dir() + " --no-gif --out " + game.Path("a") +
                                " --ticks 2000000000 --record " + tape + " & p=$!; sleep 1; kill -TERM $p; wait $p)");
    EXPECT_EQ(killed.status, 128 + SIGTERM) << killed.output;
    EXPECT_NE(killed.output.find("stopped by a signal after"), std::string::npos) << killed.output;
    EXPECT_EQ(Play("--replay " + tape + " --no-gif --out " + game.Path("b")).status, 0);
}


// How the tape reader refuses a tape is tested on its own; here the player's
// exit statuses: 2 for a damaged tape or one of another game, 5 for one that stops short.
TEST_F(SoftTape, BrokenTapesAreRefusedNamingTheFileAndThePlace)
{
    ASSERT_EQ(Record("--no-gif --out " + game.Path("a")).status, 0);
    const std::string good = Bytes(tape);
    std::string damaged = good;
    damaged[good.size() / 2] ^= 0x40;
    const struct {
        std::string bytes;
        int status;
        std::string message;
    } cases[] = {
        {damaged, 2, game.Path("bad.tape") + ": damaged record (its check does not match) (frame "},
        {good.substr(0, good.size() * 2 / 3), 5, ", before its game did"},
    };
    for (const auto& c : cases) {
        std::ofstream(game.Path("bad.tape"), std::ios::binary) << c.bytes;
        const Result r = Play("--replay " + game.Path("bad.tape") + " --no-gif --out " + game.Path("b"));
        EXPECT_EQ(r.status, c.status) << r.output;
        EXPECT_NE(r.output.find(c.message), std::string::npos) << r.output;
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
