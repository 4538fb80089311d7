// gldll.h - start-up of the library: the two process-wide pointers and the two
// calls through which the host sets them before it uses anything else.
#ifndef QUINDLE_GLDLL_H
#define QUINDLE_GLDLL_H

#include "gldefs.h"
#include "kernel.h"

class GLGame;

// The host's game object; null until GLDLLInit. The library reads it to reach
// the game's object set, tick count, plane manager, user object and quit flag.
extern QUINDLE_API GLGame* theGame;

// Stores the host's kernel interface in `kernel`, then checks "kernel != 0".
// Call it once, before anything else of the library.
QUINDLE_API void DLLInit(void* pKernel);

// Stores the host's game object (a GLGame or a class derived from it) in
// `theGame`, then checks "theGame != 0".
QUINDLE_API void GLDLLInit(void* pGame);

// Random numbers come from the kernel's generator. GLSeedRandom re-seeds it from
// the kernel clock (GetTicks), so two seeds within one clock value restart the
// same sequence. GLRandom returns the kernel's Random(uLow, uHigh) unchanged,
// inclusive at both ends; it makes no checks of its own.
QUINDLE_API void GLSeedRandom();
QUINDLE_API std::uint32_t GLRandom(std::uint32_t uLow, std::uint32_t uHigh);

#endif
