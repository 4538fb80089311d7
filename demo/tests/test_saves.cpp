// test_saves.cpp - the demo saved in one run of the player and restored in
// another: it goes on as if it had never stopped; saves it cannot use are
// refused with the file named; an older save loads into the next version.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

struct PlayRun {
    int status = -1;
    std::string log, errors;
};

std::string ReadAll(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

void WriteAll(const std::string& path, const std::string& text)
{
    std::ofstream(path, std::ios::binary) << text;
}

// A folder of the suite's own, also the user's data folder of every run.
const std::string& Dir()
{
    static std::string dir;
    if (dir.empty()) {
        char name[] = "/tmp/quindle-saves-XXXXXX";
        dir = ::mkdtemp(name) ? name : "/tmp";
        static const std::string remove = "rm -rf " + dir;
        std::atexit([] { (void)std::system(remove.c_str()); });
    }
    return dir;
}

PlayRun Play(const std::string& args, const std::string& folder = DEMO_FOLDER, const std::string& script = PLAYTHROUGH)
{
    const std::string command = "XDG_DATA_HOME=" + Dir() + "/data " + PLAYER + " " + folder +
                                " --quiet --no-gif --ticks 4000 --out " + Dir() + "/out --script " + script + " " +
                                args + " > " + Dir() + "/log.txt 2> " + Dir() + "/errors.txt";
    PlayRun run;
    const int status = std::system(command.c_str());
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.log = ReadAll(Dir() + "/log.txt");
    run.errors = ReadAll(Dir() + "/errors.txt");
    return run;
}

// A save edited by hand and signed again, as another game or a later version
// would have written it: the checksum (FNV-1a) covers every line but its own.
std::string Signed(std::string save)
{
    const std::size_t line = save.find("checksum ");
    const std::size_t next = save.find('\n', line) + 1;
    std::uint32_t hash = 2166136261u;
    for (std::size_t i = 0; i < save.size(); i++)
        if (i < line || i >= next)
            hash = (hash ^ static_cast<unsigned char>(save[i])) * 16777619u;
    char sum[16];
    std::snprintf(sum, sizeof sum, "%08x", hash);
    return save.replace(line + 9, 8, sum);
}

// The log's lines stamped later than tick `after`.
std::string LogAfter(const std::string& log, unsigned after)
{
    std::istringstream in(log);
    std::string line, kept;
    while (std::getline(in, line))
        if (line.size() > 7 && line[0] == '[' && std::strtoul(line.c_str() + 1, nullptr, 10) > after)
            kept += line + "\n";
    return kept;
}

std::string Frame(const std::string& out, unsigned tick)
{
    char name[32];
    std::snprintf(name, sizeof name, "/frame-%06u.png", tick);
    return ReadAll(out + name);
}

// Ticks at which the game is at rest (no walk, talk, dialogue, movie or room
// change, nothing in hand), in both rooms and in both visits of the
// courtyard; from the first on, Pip carries the bell.
const unsigned kAtRest[] = {920, 1360, 1600, 1680, 1720, 1800, 1850};

TEST(DemoSaves, RestoredInAFreshRunGoesOnAsTheRunThatWasSaved)
{
    std::string frames;
    for (unsigned t : kAtRest)
        frames += (frames.empty() ? "" : ",") + std::to_string(t + 1);
    const PlayRun whole = Play("--frame " + frames);
    ASSERT_EQ(whole.status, 0) << whole.errors;
    (void)std::system(("mv " + Dir() + "/out " + Dir() + "/whole").c_str());
    for (unsigned t : kAtRest) {
        SCOPED_TRACE("saved at tick " + std::to_string(t));
        const std::string save = Dir() + "/at-" + std::to_string(t) + ".sav";
        const PlayRun saving = Play("--save-at " + std::to_string(t) + " " + save);
        ASSERT_EQ(saving.status, 0) << saving.errors;
        const std::string saved = ReadAll(save);
        EXPECT_LE(saved.size(), 4096u);
        // The kit's state is in the save: the bell is carried, among the rest.
        const std::size_t names = saved.find("\ntexts kit.names "), values = saved.find("\ntexts kit.values ");
        ASSERT_TRUE(names != std::string::npos && values != std::string::npos) << saved;
        EXPECT_NE(saved.substr(names, values - names).find(" place.bell"), std::string::npos) << saved;
        EXPECT_NE(saved.substr(values, saved.find('\n', values + 1) - values).find(" carried"), std::string::npos);
        const PlayRun restored = Play("--load " + save + " --frame " + std::to_string(t + 1));
        ASSERT_EQ(restored.status, 0) << restored.errors;
        EXPECT_TRUE(Frame(Dir() + "/whole", t + 1) == Frame(Dir() + "/out", t + 1)) << "the first frame differs";
        EXPECT_EQ(LogAfter(restored.log, t), LogAfter(whole.log, t));
    }
}

TEST(DemoSaves, SavesTheGameCannotUseAreRefusedWithTheFileNamed)
{
    const std::string good = Dir() + "/good.sav";
    ASSERT_EQ(Play("--save-at 1360 " + good).status, 0);
    const std::string text = ReadAll(good);
    std::string damaged = text, otherGame = text, later = text;
    damaged[damaged.find("int log.cues") + 13] ^= 1;
    otherGame.replace(otherGame.find("quindle\\sdemo"), 13, "another\\sgame");
    later.replace(later.find("\nversion 1\n"), 11, "\nversion 3\n");
    const std::string directory = Dir() + "/a-directory.sav";
    ::mkdir(directory.c_str(), 0777);
    struct Case {
        const char* name;
        std::string content; // empty: made otherwise
        const char* reason;
    } cases[] = {
        {"damaged.sav", damaged, "is damaged (its checksum does not match)"},
        {"cut.sav", text.substr(0, text.size() / 2), "is damaged"},
        {"other.sav", Signed(otherGame), "is a save of another game"},
        {"later.sav", Signed(later), "is a save of a later version of the game (3; this is 1)"},
        {"a-directory.sav", "", "is a directory, not a file"},
        {"missing.sav", "", "no such file"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string file = Dir() + "/" + c.name;
        if (!c.content.empty())
            WriteAll(file, c.content);
        const PlayRun run = Play("--load " + file);
        EXPECT_EQ(run.status, 2);
        EXPECT_NE(run.errors.find(file + ": " + c.reason), std::string::npos) << run.errors;
        const PlayRun check = Play("--check-save " + file);
        EXPECT_EQ(check.status, 2);
    }
    const PlayRun check = Play("--check-save " + good);
    EXPECT_EQ(check.status, 0) << check.errors;
    EXPECT_NE(check.log.find("a save of \"quindle demo\", version 1"), std::string::npos) << check.log;

    // Asked for by the game itself (the L key), a refused restore is logged
    // and the game goes on as it would have.
    const std::string slot = Dir() + "/data/quindle/quindle demo: the courtyard/saves";
    ASSERT_EQ(std::system(("mkdir -p '" + slot + "'").c_str()), 0);
    WriteAll(slot + "/game.sav", damaged);
    const std::string script = Dir() + "/restore-key.txt";
    std::string events = ReadAll(PLAYTHROUGH);
    events.insert(events.find("\n1370 ") + 1, "1360 key 108\n");
    WriteAll(script, events);
    const PlayRun inGame = Play("", DEMO_FOLDER, script);
    const PlayRun whole = Play("");
    EXPECT_EQ(inGame.status, 0) << inGame.errors;
    const std::string refused = "the game could not be restored: " + slot + "/game.sav: is damaged";
    ASSERT_NE(inGame.log.find(refused), std::string::npos) << inGame.log;
    std::string withoutIt = inGame.log;
    const std::size_t start = withoutIt.rfind('\n', withoutIt.find(refused)) + 1;
    withoutIt.erase(start, withoutIt.find('\n', start) + 1 - start);
    EXPECT_EQ(withoutIt, whole.log);
}

TEST(DemoSaves, AnOlderSaveLoadsIntoTheNextVersion)
{
    const std::string old = Dir() + "/old.sav", again = Dir() + "/again.sav";
    ASSERT_EQ(Play("--save-at 1360 " + old).status, 0);
    const PlayRun next = Play("--load " + old + " --save-at 1365 " + again, DEMO_NEXT_FOLDER);
    ASSERT_EQ(next.status, 0) << next.errors;
    // One notice for the key the next version dropped; the key it added has
    // its default; its upgrade function was told the old version.
    std::size_t notices = 0;
    for (std::size_t at = next.errors.find("no longer keeps"); at != std::string::npos;
         at = next.errors.find("no longer keeps", at + 1))
        notices++;
    EXPECT_EQ(notices, 1u) << next.errors;
    EXPECT_NE(next.errors.find("ignored: bell.rung"), std::string::npos) << next.errors;
    EXPECT_NE(next.log.find("a save of version 1 brought up to version 2"), std::string::npos);
    const std::string saved = ReadAll(again);
    EXPECT_NE(saved.find("\nint bell.tolls 0\n"), std::string::npos) << saved;
    EXPECT_EQ(saved.find("bell.rung"), std::string::npos);
    EXPECT_NE(saved.find("\nversion 2\n"), std::string::npos);
}

} // namespace
