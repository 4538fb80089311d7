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
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
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
    const std::string command = std::string(PLAYER) + " " + DEMO_FOLDER + " --no-gif --trace --script " +
                                PLAYTHROUGH + " --ticks 4000 --frame " + KEY_FRAMES + " --out " + run.out + " > " +
                                run.out +
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
         {"dialogue 100 over: goodbye (kit)", "half a second in the gallery", "the swallow passes the window",
          "the chirp is over", "the swallow has flown past", "conversation 200/1 cut short",
          "Pip stands before the television", "gate scene: Pip is at the gate", "gate scene: the gate is open",
          "gate scene: a breath taken", "gate scene: the scene ends"})
        EXPECT_EQ(Lines(run.log, cue).size(), 1u) << cue << "\n" << run.log;
    // Four lines and the two of the bell said in the courtyard; Escape cut
    // the gallery's after one.
    EXPECT_EQ(Lines(run.log, " says: ").size(), 7u) << run.log;
    EXPECT_EQ(Lines(run.log, "3 rooms entered, 2 conversations (7 lines said)").size(), 1u) << run.log;
    EXPECT_EQ(Lines(run.log, "the film is over").size(), 1u) << run.log;
    // The bell rang once: at the gate.
    EXPECT_EQ(Lines(run.log, "the bell rings").size(), 1u) << run.log;
}

// The story of the playthrough, in the order the log tells it: a click
// chose the second option and its branch gave Pip the bell, which he took
// in hand and used on the gate; then he was in the gallery.
const char* const kStory[] = {"dialogue 100 choose 2: May I take the bell?", "dialogue 100 node bell",
                              "pick up bell", "dialogue 100 choose 2: Good night.", "dialogue 100 ends goodbye",
                              "take bell in hand", "use bell on gate", "the bell rings at the gate",
                              "room 200 entered"};

void ExpectStory(const std::string& log, const char* const* story, std::size_t count)
{
    std::size_t at = 0;
    for (std::size_t i = 0; i < count; i++) {
        const std::size_t found = log.find(story[i], at);
        ASSERT_NE(found, std::string::npos) << "no \"" << story[i] << "\" after the one before\n" << log;
        at = found;
    }
}

TEST(DemoPlaythrough, ChoosesByClickAndOpensTheGateWithTheBell)
{
    const PlayRun& run = Playthrough();
    ExpectStory(run.log, kStory, sizeof kStory / sizeof kStory[0]);
}

// The same playthrough in the demo's second language: the lines and the
// options are German, the story the same.
TEST(DemoPlaythrough, SaysItsLinesInTheSecondLanguage)
{
    char dir[] = "/tmp/quindle-demo-de-XXXXXX";
    ASSERT_TRUE(::mkdtemp(dir));
    const std::string out = dir;
    const int status = std::system((std::string(PLAYER) + " " + DEMO_FOLDER + " --lang de --no-gif --script " +
                                    PLAYTHROUGH + " --ticks 4000 --out " + out + " > " + out + "/log.txt 2> " + out +
                                    "/errors.txt")
                                       .c_str());
    const std::string log = ReadAll(out + "/log.txt");
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << ReadAll(out + "/errors.txt");
    EXPECT_EQ(Lines(log, "Pip says: \"Guten Abend, alter Brunnen.").size(), 1u) << log;
    EXPECT_EQ(Lines(log, "says: \"Evening").size(), 0u) << log;
    const char* const story[] = {"dialogue 100 choose 2: Darf ich die Glocke nehmen?", "dialogue 100 node bell",
                                 "use bell on gate", "room 200 entered", "3 rooms entered"};
    ExpectStory(log, story, sizeof story / sizeof story[0]);
    (void)std::system(("rm -rf " + out).c_str());
}

// Heard from outside: the trace shows every sample the ambient track names
// started at least once, and the checker finds nothing wrong in the folder.
TEST(DemoPlaythrough, PlaysEverySampleOfItsTrackAndChecksClean)
{
    const PlayRun& run = Playthrough();
    std::istringstream track(ReadAll(std::string(DEMO_FOLDER) + "/tracks/ambient.txt"));
    std::string keyword;
    int sample = 0, named = 0;
    for (std::string line; std::getline(track, line);) {
        std::istringstream words(line);
        if (!(words >> keyword >> sample) || (keyword != "SOUND" && keyword != "PRS"))
            continue;
        named++;
        const auto starts = Lines(run.log, " sample " + std::to_string(sample) + " starts");
        EXPECT_FALSE(starts.empty()) << "sample " << sample << " never started\n" << run.log;
    }
    EXPECT_EQ(named, 3);

    const std::string out = run.out + "/check.txt";
    const int status = std::system((std::string(PLAYER) + " --check " + DEMO_FOLDER + " --strict > " + out).c_str());
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << ReadAll(out);
    EXPECT_NE(ReadAll(out).find(": 0 errors, 0 warnings"), std::string::npos) << ReadAll(out);
}

TEST(DemoPlaythrough, GivesBackEveryBlock)
{
    const PlayRun& run = Playthrough();
    EXPECT_EQ(run.errors.find("not given back"), std::string::npos) << run.errors;
}

// The game may end at any moment (the window is closed, the time is over):
// mid-conversation, while the options are offered, with the bell in hand,
// while the gate opens, in the gallery's greeting, during the walk to the
// television. It still gives back every block.
TEST(DemoPlaythrough, EndsCleanlyAtAnyMoment)
{
    char dir[] = "/tmp/quindle-demo-end-XXXXXX";
    ASSERT_TRUE(::mkdtemp(dir));
    const std::string out = dir;
    for (int ticks : {150, 520, 1010, 1140, 1270, 1400}) {
        const std::string command = std::string(PLAYER) + " " + DEMO_FOLDER + " --no-gif --script " + PLAYTHROUGH +
                                    " --out " + out + " --ticks " + std::to_string(ticks) + " > " + out +
                                    "/log.txt 2> " + out + "/errors.txt";
        const int status = std::system(command.c_str());
        const std::string errors = ReadAll(out + "/errors.txt");
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "ended at tick " << ticks << "\n" << errors;
        EXPECT_NE(errors.find("reached its tick limit"), std::string::npos) << errors;
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

// Broken game folders, each the demo's folder with one fault. The player,
// running the playthrough, exits with 2 naming the file (and line); the
// checker, strict, finds the same fault before anything runs.
enum class Break { Directory, Remove, Write, Truncate, Fifo, Huge, Copy, Png };

// `count` lines, each made from its number.
template <class Line> std::string Repeat(int count, Line line)
{
    std::string text;
    for (int i = 0; i < count; i++)
        text += line(i);
    return text;
}

TEST(BrokenFolder, EveryFaultIsNamedByThePlayerAndTheChecker)
{
    const std::string junk("\x89PNG\r\n\x1a\n\0\0\0\rIHDR junk \0\x01", 24);
    // 129 small triangles in rows: one hole more than an area may have.
    const std::string tooManyHoles =
        "boundary 0 0  640 0  640 480  0 480\n" + Repeat(129, [](int i) {
            const std::string x = std::to_string(10 + i % 60 * 10), y = std::to_string(300 + i / 60 * 10);
            const std::string x2 = std::to_string(14 + i % 60 * 10), y2 = std::to_string(304 + i / 60 * 10);
            return "hole " + x + " " + y + " " + x2 + " " + y + " " + x + " " + y2 + "\n";
        });
    struct Case {
        const char* file; // relative to the folder; script.txt is the input script
        Break how;
        std::string text;  // written, or the length kept when truncated
        const char* where; // the file named, with the line when there is one
        const char* what;  // what the report says is wrong
        const char* options;
    } cases[] = {
        {"game.txt", Break::Directory, "", "game.txt", "is a directory", ""},
        {"game.txt", Break::Remove, "", "game.txt", "no such file", ""},
        {"game.txt", Break::Write, junk, "game.txt:1", "expected 'library <file>'", ""},
        {"palette.txt", Break::Directory, "", "palette.txt", "is a directory", ""},
        {"palette.txt", Break::Write, "7 1 2\n", "palette.txt:1", "expected '<index> <r> <g> <b>'", ""},
        {"views/100.txt", Break::Directory, "", "views/100.txt", "is a directory", ""},
        {"views/110.txt", Break::Write, "cel 0 0 gone.png 0 0\n", "views/gone.png", "no such file", ""},
        {"views/100.txt", Break::Truncate, "20", "views/100.txt:1", "expected 'cel", ""},
        {"views/130.txt", Break::Fifo, "", "views/130.txt", "is a FIFO", ""},
        {"views/120.txt", Break::Huge, "", "views/120.txt", "100000000 bytes", ""},
        {"views/100-0-0.png", Break::Truncate, "60", "views/100-0-0.png", "PNG", ""},
        {"pictures/100.png", Break::Directory, "", "pictures/100.png", "is a directory", ""},
        {"pictures/200.png", Break::Write, junk, "pictures/200.png", "PNG", ""},
        {"messages.txt", Break::Remove, "", "messages.txt", "no such file", ""},
        {"messages.txt", Break::Write, "100 1 1 0 1 1 \"Evening\"\n100 1 1 0\n", "messages.txt:2", "expected", ""},
        {"speech/pip-1.wav", Break::Write, junk, "speech/pip-1.wav", "not a WAV file", ""},
        {"audio/4.wav", Break::Truncate, "100", "audio/4.wav", "runs past the end", ""},
        {"sfx/5.wav", Break::Directory, "", "sfx/5.wav", "is a directory", ""},
        {"robots/10.txt", Break::Truncate, "22", "robots/10.txt:2", "expected", ""},
        {"300.VMD", Break::Directory, "", "300.VMD", "is a directory", ""},
        {"tracks/ambient.txt", Break::Directory, "", "tracks/ambient.txt", "no track", ""},
        {"tracks/ambient.txt", Break::Write, "SOUND 1\nWAIT 0, 1\nPLAY\n", "tracks/ambient.txt:2", "0 seconds", ""},
        {"tracks/ambient.txt", Break::Write, "SOUND 1, 50  # wind\nPLAY\n", "tracks/ambient.txt:1", "reads as 0",
         "--strict"},
        {"tracks/ambient.txt", Break::Write, junk, "tracks/ambient.txt:1", "unknown keyword", "--strict"},
        {"dialogs/100.txt", Break::Write, "node start\n  option goto nowhere : A\n  option goto nowhere : B\n",
         "dialogs/100.txt:3", "goes to node \"nowhere\", which the dialogue lacks", ""},
        {"script.txt", Break::Write, "60 key enter\n30 key enter\n", "script.txt:2", "comes before tick 60", ""},
        {"script.txt", Break::Write, std::string("60 key enter\n7\0", 15), "script.txt:2", "a NUL byte", ""},
        {"script.txt", Break::Directory, "", "script.txt", "is a directory", ""},
        // Hostile files, each just past what a game folder may hold.
        {"walk/100.txt", Break::Fifo, "", "walk/100.txt", "is a FIFO", ""},
        {"walk/100.txt", Break::Directory, "", "walk/100.txt", "is a directory", ""},
        {"walk/100.txt", Break::Write, tooManyHoles, "walk/100.txt:130", "more than the 128 holes", ""},
        {"libquindle_demo.so", Break::Fifo, "", "libquindle_demo.so", "is a FIFO", ""},
        {"libquindle_demo.so", Break::Write, "library\n", "libquindle_demo.so", "not a shared library", ""},
        {"libquindle_demo.so", Break::Copy, "100.so", "libquindle_demo.so", "exports no QuindleGameStart", ""},
        {"200.so", Break::Write, "", "200.so", "not a shared library (an empty file)", ""},
        {"tracks/ambient.txt", Break::Write, "", "tracks/ambient.txt", "the track plays nothing", "--strict"},
        {"pictures/100.png", Break::Png, "4097 1", "pictures/100.png", "outside 1..4096", ""},
        {"views/big.png", Break::Png, "4096 4096", "views/big.png", "more than the 67108864 a game may hold", ""},
        {"views/100.txt", Break::Write,
         Repeat(4097, [](int i) { return "cel 0 " + std::to_string(i) + " 100-0-0.png 14 55\n"; }),
         "views/100.txt:4097", "more than the 4096 cels", ""},
        {"robots/10.txt", Break::Write, "rate 4\n" + Repeat(10001, [](int) { return "frame swallow-0.png -10 -60\n"; }),
         "robots/10.txt:10002", "more than the 10000 frames", ""},
        {"messages.txt", Break::Write, "100 1 1 0 1 1 \"" + std::string(4001, 'a') + "\"\n", "messages.txt:1",
         "more than the 4000 a message may have", ""},
        {"messages.txt", Break::Write,
         Repeat(100001, [](int i) { return "1 " + std::to_string(i) + " 0 0 1 1 \"\"\n"; }), "messages.txt:100001",
         "more than the 100000 messages", ""},
    };
    char dir[] = "/tmp/quindle-broken-XXXXXX";
    ASSERT_TRUE(::mkdtemp(dir));
    const std::string top = dir, folder = top + "/game", script = folder + "/script.txt";
    for (const Case& c : cases) {
        const std::string path = folder + "/" + c.file;
        ASSERT_EQ(std::system(("rm -rf " + folder + " && cp -r " + DEMO_FOLDER + " " + folder + " && cp " +
                               PLAYTHROUGH + " " + script + " && rm -rf " + path)
                                  .c_str()),
                  0);
        std::string original = ReadAll(std::string(DEMO_FOLDER) + "/" + c.file);
        if (c.how == Break::Truncate)
            original.resize(std::stoul(c.text));
        if (c.how == Break::Write)
            original = c.text;
        if (c.how == Break::Directory) {
            ::mkdir(path.c_str(), 0777);
        } else if (c.how == Break::Fifo) {
            ::mkfifo(path.c_str(), 0666);
        } else if (c.how == Break::Huge) {
            std::ofstream{path};
            ASSERT_EQ(::truncate(path.c_str(), 100000000), 0);
        } else if (c.how == Break::Copy) {
            ASSERT_EQ(std::system(("cp " + folder + "/" + c.text + " " + path).c_str()), 0);
        } else if (c.how == Break::Png) {
            // A blank picture of that size; one of 4096x4096 serves as every
            // cel of view 100, five times what a game may hold at once.
            int width = 0, height = 0;
            std::istringstream(c.text) >> width >> height;
            const std::vector<std::uint8_t> blank(static_cast<std::size_t>(width) * height, 0);
            std::string error;
            ASSERT_TRUE(SoftWritePng(path, blank.data(), width, height, SoftPalette::Default(), &error)) << error;
            if (width == height)
                std::ofstream(folder + "/views/100.txt")
                    << Repeat(5, [](int i) { return "cel 0 " + std::to_string(i) + " big.png 0 0\n"; });
        } else if (c.how != Break::Remove) {
            std::ofstream(path, std::ios::binary) << original;
        }

        const std::string run = std::string(PLAYER) + " " + folder + " --no-gif --ticks 4000 --quiet --out " + top +
                                "/out --script " + script + " " + c.options + " > /dev/null 2> " + top + "/errors.txt";
        const int status = std::system(run.c_str());
        const std::string errors = ReadAll(top + "/errors.txt");
        const std::string where = folder + "/" + c.where + ": ";
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 2) << c.where << ": status " << status << "\n" << errors;
        EXPECT_NE(errors.find(where), std::string::npos) << c.where << "\n" << errors;
        EXPECT_NE(errors.find(c.what), std::string::npos) << c.where << ": " << c.what << "\n" << errors;

        const std::string check = std::string(PLAYER) + " --check " + folder + " --strict --script " + script + " > " +
                                  top + "/check.txt";
        const int checked = std::system(check.c_str());
        const std::string report = ReadAll(top + "/check.txt");
        EXPECT_TRUE(WIFEXITED(checked) && WEXITSTATUS(checked) == 2) << c.where << "\n" << report;
        EXPECT_NE(report.find(where), std::string::npos) << c.where << "\n" << report;
        EXPECT_NE(report.find(c.what), std::string::npos) << c.where << ": " << c.what << "\n" << report;
    }
    (void)std::system(("rm -rf " + top).c_str());
}

#ifdef DEMO_WINDOW
// The window mode, on SDL's display-less video driver and with no audio
// device: the game starts, plays a second and a half on the real clock and
// gives everything back; the missing device is one line of the player's, and
// nothing else writes to the error stream.
TEST(DemoWindow, StartsAndEndsCleanly)
{
    char dir[] = "/tmp/quindle-demo-window-XXXXXX";
    ASSERT_TRUE(::mkdtemp(dir));
    const std::string out = dir;
    const std::string command = "SDL_VIDEODRIVER=dummy SDL_AUDIODRIVER=none XDG_DATA_HOME=" + out + " " + PLAYER + " " +
                                DEMO_FOLDER + " --window --ticks 90 > " + out + "/log.txt 2> " + out + "/errors.txt";
    const int status = std::system(command.c_str());
    const std::string log = ReadAll(out + "/log.txt"), errors = ReadAll(out + "/errors.txt");
    (void)std::system(("rm -rf " + out).c_str());
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0) << errors;
    EXPECT_NE(log.find("room 100 entered"), std::string::npos) << log;
    EXPECT_NE(log.find("the game ends"), std::string::npos) << log;
    EXPECT_EQ(errors.find("not given back"), std::string::npos) << errors;
    EXPECT_EQ(Lines(errors, "no audio device: playing without sound").size(), 1u) << errors;
    EXPECT_EQ(Lines(errors, "").size(), Lines(errors, "quindle-player: ").size()) << errors;
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
