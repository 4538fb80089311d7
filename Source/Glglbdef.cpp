// Glglbdef.cpp - the library's one global object pointer. It is bound to null
// when the library is loaded; the library has no other globals with initialisers.
#include "gldll.h"

GLGame* theGame = 0;
