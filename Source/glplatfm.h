// glplatfm.h - the library's few direct uses of the operating system, kept
// behind one small internal interface: loading and freeing room libraries,
// looking up their exports, opening the game folder's text files, and the
// blocking notice. Not exported.
#ifndef QUINDLE_GLPLATFM_H
#define QUINDLE_GLPLATFM_H

#include "gldefs.h"

#include <cstddef>
#include <cstdio>

// The extension of a room library on this system, with its dot: ".so", or
// ".dll" on Windows.
extern const char kGLLibraryExtension[];
// The separator between a directory and a name: a slash, or on Windows a
// backslash.
extern const char kGLPathSeparator;
// Whether the character separates directories (on Windows both slashes do).
int GLPlatformIsSeparator(char c);
// The length of the root at the start of an absolute path, whose separators
// are never trimmed: 1 for the slash alone, on Windows 3 for a drive letter,
// its colon and a separator, 2 for the two separators before a server's name.
std::size_t GLPlatformRootLength(const char* pPath);

// Writes pName as an absolute path into the buffer: an absolute name as it
// is, a relative one taken from the working directory now, without "." and
// ".." components when the directory exists already. Returns the length it
// needed (a result of uSize or more did not fit), or -1 when the working
// directory cannot be read.
int GLPlatformAbsolutePath(const char* pName, char* pBuffer, std::size_t uSize);

// Loads the library "<pName>.so". If pDirectory (an absolute path without a
// trailing slash; null means the directory of the running program) holds
// anything of that name, that file is loaded, or refused, and no other. Otherwise the loader's
// own search directories are walked in the loader's order and the first one
// holding the file decides: a relative one (resolved against the working
// directory) is refused without loading anything; an absolute one is loaded
// by its full path. A name in none of them is left to the loader's cache.
// Returns the loader's handle, or null when nothing was loaded.
//
// On Windows the library is "<pName>.dll" and pDirectory is the only place it
// is looked for: no search path stands in for the room directory there, and
// the libraries the room needs come from the directory of the room, the
// program's directory or the system's, never the working directory or PATH.
void* GLPlatformLoadLibrary(const char* pDirectory, const char* pName);
// The address of the library's export of that name, or null.
void* GLPlatformFindExport(void* pLibrary, const char* pName);
// Frees a library that GLPlatformLoadLibrary loaded.
void GLPlatformFreeLibrary(void* pLibrary);

// Why the last GLPlatformLoadLibrary gave null: "<file>: <reason>" in the
// words of the file reader or of the loader; empty when no file was found.
const char* GLPlatformLoadError();

// Opens a file of the game folder to be read as text, through the one
// reader of game folder files: never blocking, a regular file only, within
// the size of a text file. Null, with the reason (without the file's name) in
// the buffer, when it cannot be read. The caller closes the file with fclose.
std::FILE* GLPlatformOpenText(const char* pName, char* pWhy, std::size_t uWhySize);

// Puts the file pFrom in the place of pTo in one step, replacing whatever
// pTo was: a reader sees the old file or the new one, never a part. FALSE,
// with the system's reason in the buffer, when it cannot.
int GLPlatformReplaceFile(const char* pFrom, const char* pTo, char* pWhy, std::size_t uWhySize);

#ifdef __EMSCRIPTEN__
// A web page links its rooms in: each export of room uNumber is registered by
// its name before the game starts, and GLPlatformLoadLibrary then finds the
// room by its number. FALSE for a name that is not a room export, or when the
// table is full.
extern "C" __attribute__((visibility("default"))) int GLPlatformAddRoom(unsigned long uNumber, const char* pExport,
                                                                        void* pFunction);
#endif

// Shows the text under the title through the notice the assertion reporter
// uses (GLSetAssertNotice) and returns once it is dismissed. The notice has no
// styles, so the style (OK button, icon) is not passed on.
void GLPlatformMessageBox(const char* pText, const char* pTitle, unsigned int uStyle);

// The notice the assertion reporter shows now (Source/Glassert.cpp).
GLAssertNotice GLCurrentAssertNotice();

// The notice the reporter shows when the host installed none: the text on the
// error stream under its title, or on Windows a message box with that title.
void GLPlatformDefaultNotice(const char* pText, const char* pTitle);

#endif
