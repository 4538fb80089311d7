// Globject.cpp - the root game object. See include/globject.h.
#include "globject.h"

GLObject::GLObject() : m_iObjectFlags(0) {}

GLObject::GLObject(const GLObject& object) : m_iObjectFlags(object.m_iObjectFlags) {}

GLObject& GLObject::operator=(const GLObject& object)
{
    m_iObjectFlags = object.m_iObjectFlags;
    return *this;
}

GLObject::~GLObject() {}

void GLObject::DoIt()
{
    GL_ASSERT(!"DoIt not allowed for this class");
}

int GLObject::HandleEvent(GLEvent*)
{
    GL_ASSERT(!"HandleEvent not allowed for this class");
    return 0;
}

void GLObject::Cue(GLCue*) {}
