// glplatfm.h - the library's few direct uses of the operating system, kept
// behind one small internal interface: loading and freeing room libraries,
// looking up their exports, opening the game folder's text files, and the
// blocking notice. Not exported.
#ifndef QUINDLE_GLPLATFM_H
#define QUINDLE_GLPLATFM_H

#include "gldefs.h"

#include <cstddef>
#include <cstdio>

// Loads the library "<pName>.so". If pDirectory (an absolute path without a
// trailing slash; null means the directory of the running program) holds
// anything of that name, that file is loaded, or refused, and no other. Otherwise the loader's
// own search directories are walked in the loader's order and the first one
// holding the file decides: a relative one (resolved against the working
// directory) is refused without loading anything; an absolute one is loaded
// by its full path. A name in none of them is left to the loader's cache.
// Returns the loader's handle, or null when nothing was loaded.
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

// Shows the text under the title through the notice the assertion reporter
// uses (GLSetAssertNotice) and returns once it is dismissed. The notice has no
// styles, so the style (OK button, icon) is not passed on.
void GLPlatformMessageBox(const char* pText, const char* pTitle, unsigned int uStyle);

// The notice the assertion reporter shows now (Source/Glassert.cpp).
GLAssertNotice GLCurrentAssertNotice();

#endif
