// gltarget.h - GLTarget, an object that input can hit.
//
// A target lives on a plane, has a hit test (OnMe, FALSE unless a subclass
// gives it a shape) and an optional select function. A pointer event
// (kEventPointerDown, kEventPointerUp or kEventPointerMove) that hits it calls
// the select function and is claimed.
#ifndef QUINDLE_GLTARGET_H
#define QUINDLE_GLTARGET_H

#include "globject.h"
#include "glpoint.h"

class AbsGLPlane;

typedef void (*GLSelectFunction)(GLEvent*, GLObject*);

class QUINDLE_API GLTarget : public GLObject {
public:
    // No plane, no select function.
    GLTarget();
    GLTarget(const GLTarget& target);
    GLTarget& operator=(const GLTarget& target);
    virtual ~GLTarget();

    // A pointer event whose position (in whatever coordinates the event holds,
    // normally localised to this target's plane) lies on the target calls the
    // select function, if any, and claims the event. Returns the claimed flag.
    virtual int HandleEvent(GLEvent* pEvent);
    // The hit test, in the coordinates of the target's plane.
    virtual int OnMe(GLPoint point) const;
    // The plane the target lives on; must not be null.
    virtual void SetPlane(AbsGLPlane* pPlane);
    AbsGLPlane* GetPlane() const { return mpPlane; }

    // Any function, null included, is accepted.
    void SetSelectFunction(GLSelectFunction pSelectFunction) { mpSelectFunction = pSelectFunction; }
    GLSelectFunction GetSelectFunction() const { return mpSelectFunction; }

protected:
    AbsGLPlane* mpPlane;
    GLSelectFunction mpSelectFunction;
};

inline void GLTarget::SetPlane(AbsGLPlane* pPlane)
{
    GL_ASSERT(pPlane);
    mpPlane = pPlane;
}

#endif
