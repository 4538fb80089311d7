// glplatfm.h - the library's few direct uses of the operating system, kept
// behind one small internal interface: loading and freeing room libraries,
// looking up their exports, and the blocking notice. Not exported.
#ifndef QUINDLE_GLPLATFM_H
#define QUINDLE_GLPLATFM_H

#include "gldefs.h"

// Loads the library "<pName>.so". If pDirectory (an absolute path without a
// trailing slash; null means the directory of the running program) holds a
// file of that name, that file is loaded and no other. Otherwise the loader's
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

#ifdef __EMSCRIPTEN__
// A web page links its rooms in: each export of room uNumber is registered by
// its name before the game starts, and GLPlatformLoadLibrary then finds the
// room by its number. FALSE for a name that is not a room export, or when the
// table is full.
extern "C" __attribute__((visibility("default"))) int GLPlatformAddRoom(unsigned long uNumber, const char* pExport,
                                                                        void* pFunction);
#endif

// Whether the name is that of a regular file (not a directory, a FIFO or a
// device, which would fail or block a reader).
int GLPlatformIsRegularFile(const char* pName);

// Shows the text under the title through the notice the assertion reporter
// uses (GLSetAssertNotice) and returns once it is dismissed. The notice has no
// styles, so the style (OK button, icon) is not passed on.
void GLPlatformMessageBox(const char* pText, const char* pTitle, unsigned int uStyle);

// The notice the assertion reporter shows now (Source/Glassert.cpp).
GLAssertNotice GLCurrentAssertNotice();

#endif
