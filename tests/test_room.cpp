// Rooms loaded by number through the system's loader, driven frame by frame
// by a real game, and unloaded; where a room's library is found and where it
// is not.
#include "GameTest.h"
#include "glevent.h"
#include "glrmmgr.h"
#include "room_trace.h"

#if defined(_WIN32)
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#else
#include <dlfcn.h>
#include <link.h>
#endif

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

namespace {

#if defined(_WIN32)
const std::string kExtension = ".dll";
const std::string kSeparator = "\\";

// The file the loader actually mapped for this module.
std::string LibraryPath(void* pLibrary)
{
    char szPath[MAX_PATH];
    const DWORD uLength = pLibrary ? ::GetModuleFileNameA(static_cast<HMODULE>(pLibrary), szPath, MAX_PATH) : 0;
    return std::string(szPath, uLength);
}

void* FindExport(void* pLibrary, const char* pName)
{
    return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(pLibrary), pName));
}

int IsMapped(const std::string& path)
{
    return ::GetModuleHandleA(path.c_str()) != nullptr;
}

std::string ProgramDirectory()
{
    char szPath[MAX_PATH];
    const std::string program(szPath, ::GetModuleFileNameA(nullptr, szPath, MAX_PATH));
    return program.substr(0, program.rfind('\\'));
}

// The build names the rooms' directories relative to the test program: the
// tree Wine sees is the build's under another root.
std::string FromProgram(const char* pRelative)
{
    return (std::filesystem::path(ProgramDirectory()) / pRelative).make_preferred().string();
}

const std::string kRoomDirectory = FromProgram(QUINDLE_ROOM_DIRECTORY);
const std::string kLoaderDirectory = FromProgram(QUINDLE_LOADER_DIRECTORY);
const std::string kWorkingDirectory = FromProgram(QUINDLE_WORKING_DIRECTORY);
#else
const std::string kExtension = ".so";
const std::string kSeparator = "/";

// The file the loader actually mapped for this handle.
std::string LibraryPath(void* pLibrary)
{
    link_map* pMap = nullptr;
    if (!pLibrary || ::dlinfo(pLibrary, RTLD_DI_LINKMAP, &pMap) != 0 || !pMap)
        return "";
    return pMap->l_name;
}

void* FindExport(void* pLibrary, const char* pName)
{
    return ::dlsym(pLibrary, pName);
}

int IsMapped(const std::string& path)
{
    void* pLibrary = ::dlopen(path.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (pLibrary)
        ::dlclose(pLibrary);
    return pLibrary != nullptr;
}

std::string ProgramDirectory()
{
    return std::filesystem::read_symlink("/proc/self/exe").parent_path().string();
}

const std::string kRoomDirectory = QUINDLE_ROOM_DIRECTORY;
const std::string kLoaderDirectory = QUINDLE_LOADER_DIRECTORY;
const std::string kWorkingDirectory = QUINDLE_WORKING_DIRECTORY;
#endif

// "<directory>/<number>.so", or "<directory>\\<number>.dll" on Windows.
std::string RoomFile(const std::string& directory, const char* pNumber)
{
    return directory + kSeparator + pNumber + kExtension;
}

RoomTrace* Trace(GLRoomManager& manager)
{
    auto pTrace = reinterpret_cast<RoomTraceFunction>(FindExport(manager.GetLibrary(), "roomTrace"));
    return pTrace ? pTrace() : nullptr;
}

class RoomTest : public GameTest {
protected:
    RoomTest() { GLSetRoomDirectory(kRoomDirectory.c_str()); }
    ~RoomTest() override
    {
        if (manager.IsRoomLoaded()) {
            if (game->mpObjects->IsInList(&manager))
                manager.DisposeRoom();
            manager.UnLoadRoom();
        }
        GLSetRoomDirectory(nullptr);
        std::filesystem::current_path(savedWorkingDirectory);
    }

    GLRoomManager manager;
    const std::filesystem::path savedWorkingDirectory = std::filesystem::current_path();
};

// ----- loading by number -----

TEST_F(RoomTest, ARoomIsLoadedByItsNumberStartedWithTheLibrarysKernelAndUnloaded)
{
    EXPECT_EQ(manager.IsRoomLoaded(), FALSE);
    EXPECT_EQ(manager.LoadRoom(120), TRUE);
    EXPECT_EQ(manager.IsRoomLoaded(120), TRUE);
    EXPECT_EQ(manager.IsRoomLoaded(121), FALSE);
    const std::string path = LibraryPath(manager.GetLibrary());
    EXPECT_EQ(path, RoomFile(kRoomDirectory, "120"));
    RoomTrace* trace = Trace(manager);
    ASSERT_NE(trace, nullptr);
    EXPECT_STREQ(trace->origin, "room directory");
    EXPECT_STREQ(trace->calls, "DLLInit ");
    // The room links against the library: it sees the same kernel pointer.
    EXPECT_EQ(trace->kernelSeen, static_cast<void*>(&k));
    // Loading alone does not put the room in the frame.
    EXPECT_FALSE(game->mpObjects->IsInList(&manager));

    // Unloading frees the library and keeps the number.
    ASSERT_TRUE(IsMapped(path));
    EXPECT_EQ(manager.UnLoadRoom(), TRUE);
    EXPECT_EQ(manager.IsRoomLoaded(), FALSE);
    EXPECT_EQ(manager.mRoomNumber, 120u);
    EXPECT_FALSE(IsMapped(path));

    // The same room again: a fresh copy, started once. Then another room.
    manager.LoadRoom(120);
    ASSERT_NE(Trace(manager), nullptr);
    EXPECT_EQ(Trace(manager)->dllInits, 1);
    manager.UnLoadRoom();
    manager.LoadRoom(121);
    EXPECT_EQ(manager.IsRoomLoaded(121), TRUE);
    EXPECT_EQ(LibraryPath(manager.GetLibrary()), RoomFile(kRoomDirectory, "121"));
    manager.UnLoadRoom();

    // The longest room number has seven digits.
    EXPECT_EQ(manager.LoadRoom(9999999), TRUE);
    EXPECT_EQ(LibraryPath(manager.GetLibrary()), RoomFile(kRoomDirectory, "9999999"));
    manager.UnLoadRoom();
}

TEST_F(RoomTest, LoadingIsRefusedForALongerNumberWhileARoomIsInMemoryOrWhenTheLibraryIsMissing)
{
    EXPECT_GL_ASSERT(manager.LoadRoom(10000000), "Source/Glrmmgr.cpp", "uRoomNumber <= 9999999");
    EXPECT_GL_ASSERT(manager.LoadRoom(4294967295u), "Source/Glrmmgr.cpp", "uRoomNumber <= 9999999");
    EXPECT_GL_ASSERT(manager.LoadRoom(4242), "Source/Glrmmgr.cpp", "!\"Library did not load correctly!!\"");
    EXPECT_EQ(manager.IsRoomLoaded(), FALSE);

    // A file of the room's name that is no library is refused, and the host
    // is told which file before the check ends the game.
    std::ofstream(RoomFile(kWorkingDirectory, "123"), std::ios::binary) << "not a library";
    GLSetRoomDirectory(kWorkingDirectory.c_str());
    EXPECT_DEATH(manager.LoadRoom(123),
                 "123\\." + kExtension.substr(1) + ": error: the room library cannot be loaded \\(.*not a .*library.*\\)\n" +
                     quindle_test::AssertPattern("Source/Glrmmgr.cpp", "!\"Library did not load correctly!!\""));
    GLSetRoomDirectory(kRoomDirectory.c_str());

    manager.LoadRoom(120);
    EXPECT_GL_ASSERT(manager.LoadRoom(120), "Source/Glrmmgr.cpp", "!\"This room already loaded!!\"");
    EXPECT_GL_ASSERT(manager.LoadRoom(121), "Source/Glrmmgr.cpp", "!\"There is a room still in memory!!\"");
    // Even a number that could never load is refused first for the room in memory.
    EXPECT_GL_ASSERT(manager.LoadRoom(4242), "Source/Glrmmgr.cpp", "!\"There is a room still in memory!!\"");
}

#ifdef _WIN32
// What stands at a room's name is looked at before the loader sees it: a
// directory, and images that are no DLL for this machine, are refused with
// the reason.
TEST_F(RoomTest, ADirectoryOrAnImageForAnotherMachineOrNoDllIsRefusedWithItsReason)
{
    // The old header's "MZ" with the offset of the new header (64), then
    // "PE\0\0", the machine, the characteristics and the optional header's
    // magic number.
    const auto image = [](unsigned machine, unsigned characteristics, unsigned magic) {
        std::string bytes(64 + 26, '\0');
        bytes[0] = 'M';
        bytes[1] = 'Z';
        bytes[60] = 64;
        bytes.replace(64, 4, std::string("PE\0\0", 4));
        const unsigned fields[][2] = {{68, machine}, {86, characteristics}, {88, magic}};
        for (const auto& f : fields) {
            bytes[f[0]] = static_cast<char>(f[1] & 0xff);
            bytes[f[0] + 1] = static_cast<char>(f[1] >> 8);
        }
        return bytes;
    };
    const struct {
        const char* number;
        std::string bytes; // empty: a directory
        const char* reason;
    } cases[] = {
        {"7001", "", "is a directory, not a file"},
        {"7002", image(0x14c, 0x2102, 0x10b), "not a library for this machine \\(made for PE machine 0x14c, 32-bit\\)"},
        {"7003", image(0x8664, 0x0022, 0x20b), "not a shared library \\(not a DLL\\)"},
        {"7004", std::string("\x7f" "ELF\2\1\1", 7) + std::string(57, '\0'), "not a shared library \\(no PE header\\)"},
    };
    for (const auto& c : cases) {
        const std::string file = RoomFile(kWorkingDirectory, c.number);
        if (c.bytes.empty())
            std::filesystem::create_directory(file);
        else
            std::ofstream(file, std::ios::binary) << c.bytes;
    }
    GLSetRoomDirectory(kWorkingDirectory.c_str());
    for (const auto& c : cases)
        EXPECT_DEATH(manager.LoadRoom(static_cast<std::uint32_t>(std::atoi(c.number))),
                     std::string(c.number) + "\\.dll: " + c.reason + "\\)\n")
            << c.number;
    GLSetRoomDirectory(kRoomDirectory.c_str());
    for (const auto& c : cases)
        std::filesystem::remove(RoomFile(kWorkingDirectory, c.number));
}
#endif

// ----- the room's life, frame by frame -----

TEST_F(RoomTest, ARoomIsCalledInOrderAndEveryFrameOnlyWhileItRunsAndMayRunAgain)
{
    manager.LoadRoom(120);
    RoomTrace* trace = Trace(manager);
    ASSERT_NE(trace, nullptr);

    Frame(1);
    Frame(2);
    EXPECT_EQ(trace->doIts, 0);

    manager.InitRoom();
    EXPECT_EQ(game->mpObjects->Last(), &manager);
    EXPECT_EQ(trace->gameSeen, game);
    EXPECT_EQ(trace->doIts, 0); // started, but the first frame has not come yet
    for (std::uint32_t tick = 3; tick <= 5; tick++)
        Frame(tick);
    EXPECT_EQ(trace->doIts, 3);

    GLEvent event;
    trace->reply = FALSE;
    EXPECT_EQ(manager.HandleEvent(&event), FALSE);
    EXPECT_EQ(trace->lastEvent, &event);
    trace->reply = 7; // whatever the room answers is passed on unchanged
    EXPECT_EQ(manager.HandleEvent(&event), 7);

    manager.DisposeRoom();
    EXPECT_FALSE(game->mpObjects->IsInList(&manager));
    Frame(6);
    Frame(7);
    EXPECT_EQ(trace->doIts, 3);
    EXPECT_STREQ(trace->calls, "DLLInit Init DoIt DoIt DoIt Event Event Dispose ");
    EXPECT_EQ(trace->dllInits, 1);

    EXPECT_EQ(manager.UnLoadRoom(), TRUE);
    Frame(8);

    // A loaded room takes events before it runs; a disposed room may run again.
    manager.LoadRoom(120);
    trace = Trace(manager);
    ASSERT_NE(trace, nullptr);
    trace->reply = TRUE;
    EXPECT_EQ(manager.HandleEvent(&event), TRUE);
    manager.InitRoom();
    Frame(9);
    manager.DisposeRoom();
    manager.InitRoom();
    Frame(10);
    EXPECT_EQ(trace->doIts, 2);
    EXPECT_STREQ(trace->calls, "DLLInit Event Init DoIt Dispose Init DoIt ");
}

TEST_F(RoomTest, MisuseOutsideALoadedRoomIsReported)
{
    GLEvent event;
    EXPECT_GL_ASSERT(manager.InitRoom(), "Source/Glrmmgr.cpp", "IsRoomLoaded()");
    EXPECT_GL_ASSERT(manager.DoIt(), "Source/Glrmmgr.cpp", "IsRoomLoaded()");
    EXPECT_GL_ASSERT(manager.HandleEvent(&event), "Source/Glrmmgr.cpp", "IsRoomLoaded()");
    EXPECT_GL_ASSERT(manager.DisposeRoom(), "Source/Glrmmgr.cpp", "IsRoomLoaded()");
    EXPECT_GL_ASSERT(manager.UnLoadRoom(), "Source/Glrmmgr.cpp", "IsRoomLoaded()");

    manager.LoadRoom(120);
    EXPECT_GL_ASSERT(manager.HandleEvent(nullptr), "Source/Glrmmgr.cpp", "pEvent");
    // Running twice would put the manager in the game's set twice.
    manager.InitRoom();
    EXPECT_GL_ASSERT(manager.InitRoom(), "include/glset.h", "!\"Item is already in set!\"");
    manager.DisposeRoom();
    EXPECT_GL_ASSERT(manager.DisposeRoom(), "include/glset.h", "IsInList(pElementExisting)");
    // Unloading a running room fails on the next frame.
    manager.InitRoom();
    manager.UnLoadRoom();
    EXPECT_GL_ASSERT(Frame(1), "Source/Glrmmgr.cpp", "IsRoomLoaded()");
    game->mpObjects->Remove(&manager);
}

TEST_F(RoomTest, AMissingExportIsReportedWhenTheStepThatNeedsItComes)
{
    EXPECT_GL_ASSERT(manager.LoadRoom(122), "Source/Glrmmgr.cpp", "!\"No such function!\"");

    // 121 has its start-up only.
    manager.LoadRoom(121);
    RoomTrace* trace = Trace(manager);
    ASSERT_NE(trace, nullptr);
    EXPECT_EQ(trace->dllInits, 1);
    GLEvent event;
    EXPECT_GL_ASSERT(manager.InitRoom(), "Source/Glrmmgr.cpp", "!\"No such function!\"");
    EXPECT_GL_ASSERT(manager.DoIt(), "Source/Glrmmgr.cpp", "!\"No such function!\"");
    EXPECT_GL_ASSERT(manager.HandleEvent(&event), "Source/Glrmmgr.cpp", "!\"No such function!\"");
    EXPECT_GL_ASSERT(manager.DisposeRoom(), "Source/Glrmmgr.cpp", "!\"No such function!\"");
    // The missing export of InitRoom is found before the manager joins the set.
    EXPECT_FALSE(game->mpObjects->IsInList(&manager));
}

// ----- where a room is found -----

TEST_F(RoomTest, TheDefaultRoomDirectoryIsTheDirectoryOfTheProgramAndANameMustLeaveRoomForTheFileName)
{
    GLSetRoomDirectory(nullptr);
    manager.LoadRoom(130);
    EXPECT_EQ(LibraryPath(manager.GetLibrary()), RoomFile(ProgramDirectory(), "130"));
    ASSERT_NE(Trace(manager), nullptr);
    EXPECT_STREQ(Trace(manager)->origin, "program directory");
    manager.UnLoadRoom();

    // The named room directory is not searched by default.
    EXPECT_GL_ASSERT(manager.LoadRoom(121), "Source/Glrmmgr.cpp", "!\"Library did not load correctly!!\"");
    GLSetRoomDirectory("");
    EXPECT_GL_ASSERT(manager.LoadRoom(121), "Source/Glrmmgr.cpp", "!\"Library did not load correctly!!\"");

    // A name must leave room for the room's file name: 3999 characters are
    // kept (a room then fails to load: no such directory); 4000 are refused
    // before anything is kept.
#if defined(_WIN32)
    const std::string root = "C:\\";
#else
    const std::string root = "/";
#endif
    const std::string longest = root + std::string(3999 - root.size(), 'd');
    GLSetRoomDirectory(longest.c_str());
    EXPECT_GL_ASSERT(manager.LoadRoom(120), "Source/Glrmmgr.cpp", "!\"Library did not load correctly!!\"");
    const std::string tooLong = longest + "d";
    EXPECT_GL_ASSERT(GLSetRoomDirectory(tooLong.c_str()), "Source/Glrmmgr.cpp", "!\"Room directory name too long!\"");
}

TEST_F(RoomTest, ARelativeRoomDirectoryIsFixedWhenItIsNamedAndTheWorkingDirectoryIsNotSearched)
{
    std::filesystem::current_path(kRoomDirectory.substr(0, kRoomDirectory.rfind(kSeparator)));
    GLSetRoomDirectory("room-directory//");
    std::filesystem::current_path(kWorkingDirectory);
    ASSERT_TRUE(std::filesystem::exists("125" + kExtension));
    EXPECT_GL_ASSERT(manager.LoadRoom(125), "Source/Glrmmgr.cpp", "!\"Library did not load correctly!!\"");

    // A planted copy of a room that the room directory has is passed over.
    ASSERT_TRUE(std::filesystem::exists("120" + kExtension));
    manager.LoadRoom(120);
    EXPECT_EQ(LibraryPath(manager.GetLibrary()), RoomFile(kRoomDirectory, "120"));
    ASSERT_NE(Trace(manager), nullptr);
    EXPECT_STREQ(Trace(manager)->origin, "room directory");
}

#if defined(_WIN32)
// Windows looks for a library named without a path in the working directory
// and along PATH, among other places: neither may supply a room.
TEST_F(RoomTest, ARoomOnPathOrInTheWorkingDirectoryIsNotLoadedButANamedDirectoryIsReadAsGiven)
{
    const std::string savedPath = std::getenv("PATH") ? std::getenv("PATH") : "";
    ::SetEnvironmentVariableA("PATH", (kLoaderDirectory + ";" + savedPath).c_str());
    std::filesystem::current_path(kWorkingDirectory);
    // The system itself would take both...
    for (const char* pPlanted : {"126.dll", "125.dll"}) {
        HMODULE hPlanted = ::LoadLibraryA(pPlanted);
        EXPECT_NE(hPlanted, nullptr) << pPlanted;
        if (hPlanted)
            ::FreeLibrary(hPlanted);
    }
    // ...the room manager takes neither.
    EXPECT_GL_ASSERT(manager.LoadRoom(126), "Source/Glrmmgr.cpp", "!\"Library did not load correctly!!\"");
    EXPECT_GL_ASSERT(manager.LoadRoom(125), "Source/Glrmmgr.cpp", "!\"Library did not load correctly!!\"");
    ::SetEnvironmentVariableA("PATH", savedPath.c_str());

    // The working directory may be the room directory when it is named so,
    // and a name with forward slashes, spaces and letters outside ASCII is
    // loaded by its full path written with backslashes.
    GLSetRoomDirectory(".");
    manager.LoadRoom(125);
    EXPECT_EQ(LibraryPath(manager.GetLibrary()), RoomFile(kWorkingDirectory, "125"));
    manager.UnLoadRoom();

    // "été" when the system's code page, which names files for the library,
    // has those letters.
    std::filesystem::path odd = std::filesystem::path(kWorkingDirectory) / L"odd name \u00e9t\u00e9";
    char szOdd[MAX_PATH];
    BOOL fLost = FALSE;
    if (::WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, odd.c_str(), -1, szOdd, MAX_PATH, nullptr, &fLost) <= 0 ||
        fLost)
        odd = std::filesystem::path(kWorkingDirectory) / L"odd name";
    ASSERT_GT(::WideCharToMultiByte(CP_ACP, 0, odd.c_str(), -1, szOdd, MAX_PATH, nullptr, nullptr), 0);
    std::filesystem::create_directories(odd);
    std::filesystem::remove(odd / L"120.dll");
    std::filesystem::copy_file(RoomFile(kRoomDirectory, "120"), odd / L"120.dll");
    std::string forward = szOdd;
    std::replace(forward.begin(), forward.end(), '\\', '/');
    GLSetRoomDirectory((forward + "/").c_str());
    manager.LoadRoom(120);
    EXPECT_EQ(LibraryPath(manager.GetLibrary()), std::string(szOdd) + "\\120.dll");
    ASSERT_NE(Trace(manager), nullptr);
    EXPECT_STREQ(Trace(manager)->origin, "room directory");
}
#else
// The loader reads its search path once, when the program starts, so these
// cases run in a fresh copy of the test program started with the path set.
class RoomLoaderPathTest : public RoomTest {
protected:
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
    void TearDown() override
    {
        if (savedPath)
            ::setenv("LD_LIBRARY_PATH", savedPath->c_str(), 1);
        else
            ::unsetenv("LD_LIBRARY_PATH");
        GTEST_FLAG_SET(death_test_style, "fast");
    }
    // Loads the room, then ends the process naming the file that was loaded.
    void LoadAndShow(std::uint32_t room)
    {
        manager.LoadRoom(room);
        std::fprintf(stderr, "loaded %s\n", LibraryPath(manager.GetLibrary()).c_str());
        std::fflush(stderr);
        std::abort();
    }
    const char* const pathAtStart = std::getenv("LD_LIBRARY_PATH");
    const std::optional<std::string> savedPath = pathAtStart ? std::optional<std::string>(pathAtStart) : std::nullopt;
};

TEST_F(RoomLoaderPathTest, ARoomNotInTheRoomDirectoryIsFoundWhereTheLoaderLooks)
{
    ::setenv("LD_LIBRARY_PATH", kLoaderDirectory.c_str(), 1);
    EXPECT_DEATH(LoadAndShow(126), "loaded " + kLoaderDirectory + "/126\\.so");
    // The room directory still comes first.
    EXPECT_DEATH(LoadAndShow(120), "loaded " + kRoomDirectory + "/120\\.so");
}

TEST_F(RoomLoaderPathTest, ALoaderPathThatMeansTheWorkingDirectoryDoesNotPlantARoom)
{
    // An empty entry and "." both mean the working directory to the loader.
    for (const char* path : {".", ":"}) {
        ::setenv("LD_LIBRARY_PATH", path, 1);
        ASSERT_EQ(::chdir(kWorkingDirectory.c_str()), 0);
        // The loader itself would take the planted room...
        EXPECT_DEATH(
            {
                void* planted = ::dlopen("125.so", RTLD_NOW);
                std::fprintf(stderr, "planted %s\n", planted ? "loads" : "does not load");
                std::abort();
            },
            "planted loads");
        // ...the room manager does not.
        EXPECT_GL_ASSERT(manager.LoadRoom(125), "Source/Glrmmgr.cpp", "!\"Library did not load correctly!!\"");
    }
    // Nor when an absolute directory without the room comes first.
    const std::string path = kLoaderDirectory + ":.";
    ::setenv("LD_LIBRARY_PATH", path.c_str(), 1);
    EXPECT_GL_ASSERT(manager.LoadRoom(125), "Source/Glrmmgr.cpp", "!\"Library did not load correctly!!\"");
    // But the room directory may be the working directory when it is named so.
    GLSetRoomDirectory(".");
    EXPECT_DEATH(LoadAndShow(125), "loaded " + kWorkingDirectory + "/125\\.so");
}

#endif

// ----- the room library record -----

std::string gNoticeText;
std::string gNoticeTitle;
int gNotices = 0;

void RecordNotice(const char* text, const char* title)
{
    gNoticeText = text;
    gNoticeTitle = title;
    gNotices++;
}

TEST_F(RoomTest, TheRoomLibraryRecordShowsItsNoticeThroughTheAssertionNotice)
{
    gNotices = 0;
    GLSetAssertNotice(RecordNotice);
    {
        GLRoomDLL record;
        EXPECT_EQ(gNotices, 1);
        EXPECT_EQ(gNoticeText, "From a class");
        EXPECT_EQ(gNoticeTitle, "Test");
        GLRoomDLL copy(record);
        copy = record;
        EXPECT_EQ(gNotices, 1);
    }
    GLSetAssertNotice(nullptr);
}

} // namespace
