// Gldllfix.cpp - the second start-up call: the game object.
#include "gldll.h"

void GLDLLInit(void* pGame)
{
    theGame = static_cast<GLGame*>(pGame);
    GL_ASSERT(theGame != 0);
}
