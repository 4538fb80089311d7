// Gltarget.cpp - the object that input can hit. See include/gltarget.h.
#include "gltarget.h"

#include "glevent.h"

GLTarget::GLTarget() : mpPlane(0), mpSelectFunction(0) {}

GLTarget::GLTarget(const GLTarget& target)
    : GLObject(target), mpPlane(target.mpPlane), mpSelectFunction(target.mpSelectFunction)
{
}

GLTarget& GLTarget::operator=(const GLTarget& target)
{
    GLObject::operator=(target);
    mpPlane = target.mpPlane;
    mpSelectFunction = target.mpSelectFunction;
    return *this;
}

GLTarget::~GLTarget() {}

int GLTarget::HandleEvent(GLEvent* pEvent)
{
    GL_ASSERT(pEvent);
    // Only the types that carry a pointer position are hit-tested.
    if (pEvent->type == kEventPointerDown || pEvent->type == kEventPointerUp || pEvent->type == kEventPointerMove) {
        if (OnMe(pEvent->where)) {
            if (mpSelectFunction)
                mpSelectFunction(pEvent, this);
            pEvent->claimed = TRUE;
        }
    }
    return pEvent->claimed;
}

int GLTarget::OnMe(GLPoint) const
{
    return FALSE;
}
