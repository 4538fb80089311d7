// Fuzz target: the checker on a generated game folder. The input is cut at
// each "\n=====\n" into the folder's files in a fixed order (game.txt, the
// palette, a view manifest, messages.txt, a robot, a movie, a sound track, an
// input script, then the adventure kit's dialogue, names, items and a
// language's names); the checker reads them all, with the game folder's file
// reader, every manifest reader, the library's track reader and the kit's. Whatever the
// bytes, it must stay inside its buffers, give a status of 0 or 2 with a count
// line, and never call an error what it counted as none.
#include "Check.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

const char* const kFiles[] = {"game.txt",      "palette.txt",   "views/1.txt", "messages.txt",
                              "robots/1.txt",  "1.VMD",         "tracks/1.txt", "script.txt",
                              "dialogs/1.txt", "names.txt",     "items.txt",    "lang/xx/names.txt"};

// The folder's name, kept in a buffer without a destructor: it is still
// there when the folder is removed at exit.
char gFolder[64];

// The folder goes when the fuzzer ends.
void RemoveFolder()
{
    for (const char* name : kFiles)
        std::remove((std::string(gFolder) + "/" + name).c_str());
    for (const char* dir : {"/views", "/robots", "/tracks", "/dialogs", "/lang/xx", "/lang", ""})
        ::rmdir((std::string(gFolder) + dir).c_str());
}

std::string Folder()
{
    if (!gFolder[0]) {
        std::snprintf(gFolder, sizeof gFolder, "/tmp/quindle_fuzz_folder_%d", static_cast<int>(getpid()));
        for (const char* dir : {"", "/views", "/robots", "/tracks", "/dialogs", "/lang", "/lang/xx"})
            ::mkdir((std::string(gFolder) + dir).c_str(), 0777);
        std::atexit(RemoveFolder);
    }
    return gFolder;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::string separator = "\n=====\n";
    std::size_t at = 0;
    for (const char* name : kFiles) {
        const std::string path = Folder() + "/" + name;
        std::remove(path.c_str());
        if (at > input.size())
            continue;
        std::size_t end = input.find(separator, at);
        if (end == std::string::npos)
            end = input.size();
        if (std::FILE* file = std::fopen(path.c_str(), "wb")) {
            std::fwrite(input.data() + at, 1, end - at, file);
            std::fclose(file);
        }
        at = end + separator.size();
    }
    std::FILE* out = std::tmpfile();
    if (!out)
        std::abort();
    const int status = CheckGameFolder(Folder(), Folder() + "/script.txt", false, out);
    std::rewind(out);
    std::string report;
    char buffer[4096];
    for (std::size_t n; (n = std::fread(buffer, 1, sizeof buffer, out)) > 0;)
        report.append(buffer, n);
    std::fclose(out);
    const bool errors = report.find(": error: ") != std::string::npos;
    if ((status != 0 && status != 2) || (status == 2) != errors || report.find(" errors, ") == std::string::npos &&
                                                                       report.find(" error, ") == std::string::npos)
        std::abort();
    return 0;
}
