// Glset.cpp - the typed lists and sets the library exports.
#include "glset.h"

template class GLListAsArray<GLObject>;
template class GLSetAsArray<GLObject>;
template class GLListAsArray<GLTarget>;
template class GLSetAsArray<GLTarget>;
template class GLListAsArray<GLScreenItem>;
template class GLSetAsArray<GLScreenItem>;
template class GLListAsArray<AbsGLPlane>;
template class GLSetAsArray<AbsGLPlane>;
template class GLListAsArray<GLCel>;
template class GLSetAsArray<GLCel>;
template class GLListAsArray<GLNarrator>;
template class GLSetAsArray<GLNarrator>;
template class GLListAsArray<GLPoint>;
