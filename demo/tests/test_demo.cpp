// test_demo.cpp - the demo played through headless by the player, as the
// README's first command plays it: it reaches its end, visits every room,
// gives back every block, and draws the key frames it always drew.
#include "SoftImage.h"
#include "SoftResources.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace {

struct PlayRun {
    int status = -1;
    std::string log;    // the game's log (standard output)
    std::string errors; // the player's report (standard error)
    std::string out;    // where the frames went
};

std::string ReadAll(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

// One playthrough for the whole suite: it takes a few seconds.
const PlayRun& Playthrough()
{
    static PlayRun run;
    static bool done = false;
    if (done)
        return run;
    done = true;
    char dir[] = "/tmp/quindle-demo-XXXXXX";
    if (!::mkdtemp(dir))
        return run;
    run.out = dir;
    static const std::string remove = "rm -rf " + run.out;
    std::atexit([] { (void)std::system(remove.c_str()); });
    const std::string command = std::string(PLAYER) + " " + DEMO_FOLDER + " --no-gif --script " + PLAYTHROUGH +
                                " --ticks 4000 --frame " + KEY_FRAMES + " --out " + run.out + " > " + run.out +
                                "/log.txt 2> " + run.out + "/errors.txt";
    const int status = std::system(command.c_str());
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.log = ReadAll(run.out + "/log.txt");
    run.errors = ReadAll(run.out + "/errors.txt");
    return run;
}

std::vector<std::string> Lines(const std::string& text, const std::string& containing)
{
    std::vector<std::string> lines;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line))
        if (line.find(containing) != std::string::npos)
            lines.push_back(line);
    return lines;
}

TEST(DemoPlaythrough, ReachesItsEndThroughEveryRoom)
{
    const PlayRun& run = Playthrough();
    ASSERT_EQ(run.status, 0) << run.errors;
    // The quit key at the end of the script ended the game, not the time limit.
    EXPECT_NE(run.errors.find("the game quit"), std::string::npos) << run.errors;
    EXPECT_NE(run.log.find("the game ends"), std::string::npos) << run.log;

    const auto rooms = Lines(run.log, " entered: ");
    ASSERT_EQ(rooms.size(), 3u) << run.log;
    EXPECT_NE(rooms[0].find("room 100 entered"), std::string::npos);
    EXPECT_NE(rooms[1].find("room 200 entered"), std::string::npos);
    EXPECT_NE(rooms[2].find("room 100 entered"), std::string::npos);
}

TEST(DemoPlaythrough, EveryCueArrives)
{
    const PlayRun& run = Playthrough();
    for (const char* cue :
         {"conversation 100/1 said to its end", "the bell's toll has died away", "half a second in the gallery",
          "the swallow passes the window", "the chirp is over", "the swallow has flown past",
          "conversation 200/1 cut short", "Pip stands before the television", "gate scene: Pip is at the gate",
          "gate scene: the gate is open", "gate scene: a breath taken", "gate scene: the scene ends"})
        EXPECT_EQ(Lines(run.log, cue).size(), 1u) << cue << "\n" << run.log;
    // Four lines said in the courtyard; Escape cut the gallery's after one.
    EXPECT_EQ(Lines(run.log, " says: ").size(), 5u) << run.log;
    EXPECT_EQ(Lines(run.log, "3 rooms entered, 2 conversations (5 lines said)").size(), 1u) << run.log;
    EXPECT_EQ(Lines(run.log, "the film is over").size(), 1u) << run.log;
    // Ring pressed and let go elsewhere rang nothing: the bell rang once.
    EXPECT_EQ(Lines(run.log, "the bell rings").size(), 1u) << run.log;
}

TEST(DemoPlaythrough, GivesBackEveryBlock)
{
    const PlayRun& run = Playthrough();
    EXPECT_EQ(run.errors.find("not given back"), std::string::npos) << run.errors;
}

// The game may end at any moment (the window is closed, the time is over):
// mid-conversation, while the gate opens, in the gallery's greeting, during
// the walk to the television. It still gives back every block.
TEST(DemoPlaythrough, EndsCleanlyAtAnyMoment)
{
    char dir[] = "/tmp/quindle-demo-end-XXXXXX";
    ASSERT_TRUE(::mkdtemp(dir));
    const std::string out = dir;
    for (int ticks : {150, 1050, 1100, 1200, 1380}) {
        const std::string command = std::string(PLAYER) + " " + DEMO_FOLDER + " --no-gif --script " + PLAYTHROUGH +
                                    " --out " + out + " --ticks " + std::to_string(ticks) + " > " + out +
                                    "/log.txt 2> " + out + "/errors.txt";
        const int status = std::system(command.c_str());
        const std::string errors = ReadAll(out + "/errors.txt");
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "ended at tick " << ticks << "\n" << errors;
        EXPECT_NE(errors.find("time over"), std::string::npos) << errors;
        EXPECT_EQ(errors.find("not given back"), std::string::npos) << "ended at tick " << ticks << "\n" << errors;
    }
    (void)std::system(("rm -rf " + out).c_str());
}

// A frame's fingerprint: FNV-1a over the colour of every pixel.
std::uint64_t FrameHash(const std::string& png, const SoftPalette& palette)
{
    SoftBitmap frame;
    std::string error;
    if (!SoftReadPng(png, palette, &frame, &error))
        return 0;
    std::uint64_t h = 1469598103934665603ull;
    for (std::uint8_t index : frame.pixels) {
        const SoftColor& c = palette.colors[index];
        for (std::uint8_t byte : {c.r, c.g, c.b}) {
            h ^= byte;
            h *= 1099511628211ull;
        }
    }
    return h;
}

// golden.txt holds "<tick> <hash>" lines. When the demo changes on purpose,
// the failure prints the new lines to paste there.
TEST(DemoPlaythrough, KeyFramesMatchTheirGoldenHashes)
{
    const PlayRun& run = Playthrough();
    ASSERT_EQ(run.status, 0) << run.errors;
    SoftResources folder(DEMO_FOLDER);
    SoftPalette palette;
    std::string error;
    ASSERT_TRUE(folder.LoadPalette(&palette, &error)) << error;

    std::istringstream golden(ReadAll(GOLDEN));
    std::string line, actual;
    int compared = 0, wrong = 0;
    while (std::getline(golden, line)) {
        if (line.empty() || line[0] == '#')
            continue;
        unsigned tick = 0;
        unsigned long long expected = 0;
        ASSERT_EQ(std::sscanf(line.c_str(), "%u %llx", &tick, &expected), 2) << line;
        char name[32];
        std::snprintf(name, sizeof name, "/frame-%06u.png", tick);
        const std::uint64_t hash = FrameHash(run.out + name, palette);
        char text[64];
        std::snprintf(text, sizeof text, "%u %016llx\n", tick, static_cast<unsigned long long>(hash));
        actual += text;
        compared++;
        if (hash != expected) {
            wrong++;
            ADD_FAILURE() << "frame at tick " << tick << " differs (" << run.out << name << ")";
        }
    }
    EXPECT_GT(compared, 0) << "no golden frames in " << GOLDEN;
    if (wrong)
        std::printf("new golden lines:\n%s", actual.c_str());
}

#ifdef DEMO_WINDOW
// The window mode, on SDL's display-less drivers: the game starts, plays a
// second and a half on the real clock and gives everything back.
TEST(DemoWindow, StartsAndEndsCleanly)
{
    char dir[] = "/tmp/quindle-demo-window-XXXXXX";
    ASSERT_TRUE(::mkdtemp(dir));
    const std::string out = dir;
    const std::string command = "SDL_VIDEODRIVER=dummy SDL_AUDIODRIVER=dummy " + std::string(PLAYER) + " " +
                                DEMO_FOLDER + " --window --ticks 90 > " + out + "/log.txt 2> " + out + "/errors.txt";
    const int status = std::system(command.c_str());
    const std::string log = ReadAll(out + "/log.txt"), errors = ReadAll(out + "/errors.txt");
    (void)std::system(("rm -rf " + out).c_str());
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0) << errors;
    EXPECT_NE(log.find("room 100 entered"), std::string::npos) << log;
    EXPECT_NE(log.find("the game ends"), std::string::npos) << log;
    EXPECT_EQ(errors.find("not given back"), std::string::npos) << errors;
}
#endif

// The playthrough recorded on a tape and replayed from it alone draws the
// same key frames and GIF, byte for byte.
TEST(DemoPlaythrough, ReplaysFromItsTapeToTheSameFramesAndGif)
{
    const PlayRun& run = Playthrough();
    ASSERT_EQ(run.status, 0) << run.errors;
    const std::string outputs = std::string(" --quiet --gif-every 3 --frame ") + KEY_FRAMES + " --out " + run.out;
    const std::string tape = run.out + "/run.tape";
    ASSERT_EQ(std::system((std::string(PLAYER) + " " + DEMO_FOLDER + " --script " + PLAYTHROUGH +
                           " --ticks 4000 --record " + tape + outputs + "/recorded > /dev/null")
                              .c_str()),
              0);
    ASSERT_EQ(std::system((std::string(PLAYER) + " " + DEMO_FOLDER + " --replay " + tape + outputs +
                           "/replayed > /dev/null")
                              .c_str()),
              0);
    std::istringstream ticks(KEY_FRAMES);
    std::vector<std::string> files = {"run.gif", "final.png"};
    for (std::string tick; std::getline(ticks, tick, ',');)
        files.push_back("frame-" + std::string(6 - tick.size(), '0') + tick + ".png");
    for (const std::string& f : files) {
        const std::string recorded = ReadAll(run.out + "/recorded/" + f);
        EXPECT_FALSE(recorded.empty()) << f;
        EXPECT_TRUE(recorded == ReadAll(run.out + "/replayed/" + f)) << f;
    }
}

} // namespace
