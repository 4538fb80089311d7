// FolderFile.h - the one way anything of a game folder is opened and read: by
// the library (walkable areas, sound tracks, room libraries, through its
// platform layer), the kernels (pictures, manifests, messages, samples, tapes)
// and the player (game.txt, the game library, input scripts).
//
// It belongs to neither side of the kernel interface: it includes only the
// system's headers and knows nothing of the library or of a kernel, so both
// may depend on it as they depend on the system.
//
// A game folder comes from anyone. Whatever stands at a name, opening it never
// waits (a FIFO without a writer, a device), only a regular file is read, and
// a file larger than the limit of its kind is refused before a byte of it is.
// A refusal reads "<path>: <reason>", with the system's own words in brackets
// where the system gave a reason.
#ifndef QUINDLE_FOLDER_FILE_H
#define QUINDLE_FOLDER_FILE_H

#include <cstddef>
#include <cstdint>
#include <string>

// What a file holds, which sets the most bytes it may have.
enum FolderFileKind {
    kFolderText,    // manifests, palettes, messages, tracks, walkable areas, game.txt, scripts
    kFolderPicture, // PNG files
    kFolderSound,   // WAV files
    kFolderLibrary, // the game library and the room libraries
    kFolderTape,    // recorded runs
    kFolderKinds
};

// The most bytes a file of each kind may have.
constexpr std::uint64_t kFolderFileMaxBytes[kFolderKinds] = {
    16ull << 20,  // text
    64ull << 20,  // picture
    64ull << 20,  // sound
    256ull << 20, // library
    256ull << 20, // tape
};

// A refusal: the text, and whether nothing at all is there by that name (a
// reader may treat a missing optional file as absent rather than wrong).
struct FolderFileError {
    char text[640];
    int missing;
};

// Opens a regular file of the folder for reading, without ever blocking: the
// descriptor (blocking again, so a reader may use it as it likes), with the
// file's size in `size`. -1, with `error` filled in, when nothing is there, or
// it is a directory, a FIFO, socket or device, unreadable, or larger than its
// kind allows. The caller closes the descriptor.
int FolderFileOpen(const char* path, FolderFileKind kind, std::uint64_t* size, FolderFileError* error);

// Reads a whole file through FolderFileOpen. False, with `error` set to the
// refusal and `missing` (when given) telling whether nothing is there.
bool FolderFileRead(const std::string& path, FolderFileKind kind, std::string* bytes, std::string* error,
                    bool* missing = nullptr);

// Checks a shared library before the loader sees it: a regular file within
// the limit whose header says it is a shared object for this machine. The
// loader itself blocks on a FIFO and maps whatever it is given, so this is
// asked first.
bool FolderFileIsLibrary(const char* path, FolderFileError* error);

#ifdef _WIN32
// The system's words for an error code of GetLastError, without the line
// break and full stop the system ends them with, as strerror gives them.
void FolderFileSystemWords(unsigned long uError, char* pBuffer, std::size_t uSize);
#endif

#endif
