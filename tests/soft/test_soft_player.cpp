// The player run as a user runs it: the example game headless, its frames,
// the same frames twice, and a clear message and status for bad input.
#include "SoftTestSupport.h"

#include "SoftText.h"

#include <cstdio>
#include <algorithm>
#include <filesystem>

using namespace soft_test;

namespace {

Result Play(const TempGame& game, const std::string& args)
{
    return Shell(std::string(PLAYER) + " " + game.Dir() + " " + args);
}

class SoftPlayer : public ::testing::Test {
protected:
    void SetUp() override
    {
        const Result made = Shell(std::string(MAKE_EXAMPLE) + " " + game.Dir() + " " + EXAMPLE_GAME);
        ASSERT_EQ(made.status, 0) << made.output;
    }
    TempGame game;
};

TEST_F(SoftPlayer, RunsTheExampleHeadlessTakesTheScriptedClicksAndQuitsOrRunsOutOfTime)
{
    const std::string out = game.Path("out");
    const Result r = Play(game, "--script " + game.Path("script.txt") + " --out " + out + " --frame 30,150");
    ASSERT_EQ(r.status, 0) << r.output;
    EXPECT_NE(r.output.find("the game quit after 200 ticks, 200 frames"), std::string::npos) << r.output;
    EXPECT_TRUE(std::filesystem::exists(out + "/run.gif"));

    // Before the first click the marker is in the middle; after the second it
    // is at (120, 300). The marker is colour 14 (yellow).
    SoftBitmap early, late;
    std::string error;
    ASSERT_TRUE(SoftReadPng(out + "/frame-000030.png", SoftPalette::Default(), &early, &error)) << error;
    ASSERT_TRUE(SoftReadPng(out + "/frame-000150.png", SoftPalette::Default(), &late, &error)) << error;
    EXPECT_EQ(early.At(320, 240), 14);
    EXPECT_NE(early.At(120, 300), 14);
    EXPECT_EQ(late.At(120, 300), 14);
    EXPECT_NE(late.At(320, 240), 14);
    // The caption was drawn with the font: some white pixels in its box.
    int white = 0;
    for (int y = 20; y < 60; y++)
        for (int x = 200; x < 600; x++)
            white += late.At(x, y) == 15;
    EXPECT_GT(white, 100);

    // Without a quit the run ends when its time is over.
    const Result timed = Play(game, "--out " + game.Path("o") + " --ticks 30 --step 3");
    EXPECT_EQ(timed.status, 0) << timed.output;
    EXPECT_NE(timed.output.find("reached its tick limit after 30 ticks, 10 frames"), std::string::npos) << timed.output;
}

TEST_F(SoftPlayer, TwoRunsOfTheSameGameAndScriptGiveTheSameFrames)
{
    const std::string args = " --quiet --script " + game.Path("script.txt") + " --every 20";
    ASSERT_EQ(Play(game, "--out " + game.Path("a") + args).status, 0);
    ASSERT_EQ(Play(game, "--out " + game.Path("b") + args).status, 0);
    int compared = 0;
    for (const auto& entry : std::filesystem::directory_iterator(game.Path("a"))) {
        std::string x, y;
        ASSERT_TRUE(SoftReadFile(entry.path().string(), &x));
        ASSERT_TRUE(SoftReadFile(game.Path("b/") + entry.path().filename().string(), &y)) << entry.path();
        EXPECT_TRUE(x == y) << entry.path().filename();
        compared++;
    }
    EXPECT_EQ(compared, 10 + 2); // frames 0, 20, ... 180 (the game quits at 200), run.gif, final.png
}

TEST_F(SoftPlayer, BadInputGivesAMessageNamingTheFileAndAFailingStatus)
{
    const std::string out = " --quiet --out " + game.Path("o");
    struct Case {
        std::function<void()> spoil;
        std::string args;
        int status;
        std::string message;
    } cases[] = {
        {[] {}, "--ticks x", 1, "--ticks needs a number"},
        {[] {}, "--bogus", 1, "unknown option --bogus"},
        {[this] { game.Write("bad.txt", "10 press 1 2\n20 click 3 4\n"); }, "--script " + game.Path("bad.txt"), 2,
         game.Path("bad.txt") + ":2: unknown event kind 'click'"},
        {[this] { std::filesystem::remove(game.Path("views/101.txt")); }, "", 2,
         game.Path("views/101.txt") + ": no such file (view 101)"},
        {[this] { game.Write("palette.txt", "300 0 0 0\n"); }, "", 2, game.Path("palette.txt") + ":1: expected"},
        {[this] { game.Write("game.txt", "library nowhere.so\n"); }, "", 3,
         game.Path("nowhere.so") + ": cannot load the game library"},
        {[this] { game.Write("game.txt", "librar x\n"); }, "", 2, game.Path("game.txt") + ":1: expected 'library"},
        {[this] { std::filesystem::remove(game.Path("game.txt")); }, "", 2, game.Path("game.txt") + ": no such file"},
    };
    for (auto& c : cases) {
        const Result made = Shell(std::string(MAKE_EXAMPLE) + " " + game.Dir() + " " + EXAMPLE_GAME);
        ASSERT_EQ(made.status, 0);
        std::filesystem::remove(game.Path("palette.txt"));
        c.spoil();
        const Result r = Play(game, out + " --ticks 20 " + c.args);
        EXPECT_EQ(r.status, c.status) << c.message << "\n" << r.output;
        EXPECT_NE(r.output.find("quindle-player: " + c.message), std::string::npos) << r.output;
        EXPECT_EQ(r.output.find("Sanitizer"), std::string::npos) << r.output;
    }
#ifdef QUINDLE_HAVE_WINDOW
    ASSERT_EQ(Shell(std::string(MAKE_EXAMPLE) + " " + game.Dir() + " " + EXAMPLE_GAME).status, 0);
    const Result noDisplay = Shell("env -u DISPLAY -u WAYLAND_DISPLAY -u SDL_VIDEODRIVER " + std::string(PLAYER) +
                                   " " + game.Dir() + " --window --no-record");
    EXPECT_EQ(noDisplay.status, 3);
    EXPECT_EQ(noDisplay.output,
              "quindle-player: --window needs a display (neither DISPLAY nor WAYLAND_DISPLAY is set)\n");
#endif
}

#ifdef QUINDLE_HAVE_WINDOW
// The window with SDL's display-less drivers: frames are shown, the real clock
// runs, the sound is mixed, and the run ends by its ticks. The session is
// recorded in the data folder, beside the last nine of before, and replays.
TEST_F(SoftPlayer, PlaysInAWindow)
{
    // Clicks (each plays the example's blip) come at once: the script's ticks
    // are the real clock's here.
    game.Write("clicks.txt", "0 press 100 100\n1 press 200 200\n");
    const std::string sessions = game.Path("data/quindle/quindle example");
    for (int i = 10; i < 21; i++)
        game.Write("data/quindle/quindle example/session-20000101-0000" + std::to_string(i) + ".tape", "old");
    const Result r = Shell("SDL_VIDEODRIVER=dummy SDL_AUDIODRIVER=dummy XDG_DATA_HOME=" + game.Path("data") + " " +
                           PLAYER + " " + game.Dir() + " --window --scale 1 --ticks 20 --script " +
                           game.Path("clicks.txt"));
    EXPECT_EQ(r.status, 0) << r.output;
    EXPECT_NE(r.output.find("reached its tick limit after"), std::string::npos) << r.output;
    std::vector<std::string> kept;
    for (const auto& e : std::filesystem::directory_iterator(sessions))
        kept.push_back(e.path().filename().string());
    std::sort(kept.begin(), kept.end());
    ASSERT_EQ(kept.size(), 10u);
    EXPECT_EQ(kept[0], "session-20000101-000012.tape");
    const Result replayed = Shell(std::string(PLAYER) + " " + game.Dir() + " --quiet --no-gif --out " +
                                  game.Path("re") + " --replay '" + sessions + "/" + kept.back() + "'");
    EXPECT_EQ(replayed.status, 0) << replayed.output;
}
#endif

// The whole way: the library's game loop on the soft kernel, driven by the
// player, a scripted click reaching a cel through the plane manager and the
// cast, and the quit key ending the game. Then the player names the game
// folder as the room directory: a room library there is found and runs.
TEST(SoftPlayerLibrary, AGameOnTheLibraryDrawsTakesAClickAndQuitsAndFindsItsRoomsInTheGameFolder)
{
    TempGame game;
    game.Write("game.txt", std::string("library ") + LIBRARY_GAME + "\n");
    game.WriteSolidPng("pictures/1.png", 640, 480, 3);
    game.Write("views/100.txt", "cel 0 0 actor.png 10 29\n");
    game.WriteSolidPng("views/actor.png", 20, 30, 12);
    // The actor stands at (100, 100) with its origin (10, 29): it covers (90..109, 71..100).
    game.Write("script.txt", "10 press 95 80\n12 release 95 80\n20 press 5 5\n30 quit\n");
    const std::string out = game.Path("out");
    const Result r = Play(game, "--script " + game.Path("script.txt") + " --out " + out + " --frame 5,20");
    ASSERT_EQ(r.status, 0) << r.output;
    EXPECT_NE(r.output.find("the game quit after 30 ticks, 30 frames"), std::string::npos) << r.output;
    EXPECT_EQ(r.output.find("not given back"), std::string::npos) << r.output;

    SoftBitmap before, after;
    std::string error;
    ASSERT_TRUE(SoftReadPng(out + "/frame-000005.png", SoftPalette::Default(), &before, &error)) << error;
    ASSERT_TRUE(SoftReadPng(out + "/frame-000020.png", SoftPalette::Default(), &after, &error)) << error;
    EXPECT_EQ(before.At(90, 71), 12);
    EXPECT_EQ(before.At(109, 100), 12);
    EXPECT_EQ(before.At(110, 100), 3);
    EXPECT_EQ(before.At(400, 290), 3);
    EXPECT_EQ(after.At(95, 80), 3);
    EXPECT_EQ(after.At(390, 271), 12);
    EXPECT_EQ(after.At(409, 300), 12);
    EXPECT_EQ(after.At(410, 300), 3);
    int white = 0;
    for (int y = 400; y < 430; y++)
        for (int x = 20; x < 220; x++)
            white += after.At(x, y) == 15;
    EXPECT_GT(white, 50); // the caption's text

    std::filesystem::copy_file(ROOM_5, game.Path("5.so"));
    const Result room = Play(game, "--quiet --no-gif --ticks 3 --out " + game.Path("room") + " -- room");
    ASSERT_EQ(room.status, 0) << room.output;
    EXPECT_EQ(room.output.find("not given back"), std::string::npos) << room.output;
    SoftBitmap last;
    ASSERT_TRUE(SoftReadPng(game.Path("room/final.png"), SoftPalette::Default(), &last, &error)) << error;
    EXPECT_EQ(last.At(0, 0), 9);
    EXPECT_EQ(last.At(49, 49), 9);
    EXPECT_EQ(last.At(50, 50), 3);
}

} // namespace
