// glevent.h - GLEvent, the one input event record, and GLEventHandlerSet.
//
// The event owns the kernel's 40-byte record, which the kernel fills on
// Refresh, and keeps the position either in screen coordinates (plane null) or
// in the local coordinates of one plane. A handler that consumes the event
// marks it claimed, which stops its dispatch.
#ifndef QUINDLE_GLEVENT_H
#define QUINDLE_GLEVENT_H

#include "glpoint.h"
#include "glset.h"
#include "kernel.h"

class AbsGLPlane;

class QUINDLE_API GLEvent {
public:
    GL_DECLARE_ALLOCATION("include/glevent.h")

    // Unclaimed, at (0, 0), with a kernel record of its own; the other fields
    // start at zero and are set by the first Refresh.
    GLEvent();
    // Copies have their own kernel record holding the same 40 bytes.
    GLEvent(const GLEvent& event);
    GLEvent& operator=(const GLEvent& event);
    // Releases the kernel record, then the position.
    ~GLEvent();

    // Fetches the next event whose type is in the mask from the kernel; the
    // event is then global and unclaimed.
    void Refresh(unsigned int mask);
    // Refresh(0x7FFF): every type.
    void Refresh();
    // Expresses the position in pPlane's coordinates and remembers the plane;
    // an event already localised to another plane is converted through the
    // screen, so the result equals localising the global position.
    void Localize(AbsGLPlane* pPlane);
    // Expresses the position in screen coordinates again and forgets the plane.
    void Globalize();

    std::uint16_t type;             // 0: no event; each type is one bit
    std::uint16_t message;          // key or message code
    std::uint16_t modifiers;        // modifier bits as the kernel reports them
    std::int32_t claimed;           // TRUE once a handler has consumed the event
    std::uint32_t extra;            // the record's word after the position
    GLPoint where;                  // global when plane is null, else local to plane
    AbsGLPlane* plane;              // not owned
    KernelEventRecord* kernelEvent; // owned; filled by the kernel
};

// A set of handlers offered an event one after another, in set order, until
// one claims it. It does not own its members.
class QUINDLE_API GLEventHandlerSet : public GLSetAsArray<GLObject> {
public:
    // The not yet initialised list state; Init before use.
    GLEventHandlerSet();
    // Initialised with that first size and growth step.
    GLEventHandlerSet(int iItemCount, int iGrowBy);
    virtual ~GLEventHandlerSet();

    // Offers the event to each member from the first, re-reading the count
    // before every step; returns TRUE at the first member that claims it. The
    // event is globalised again after each member that declines.
    int HandleEvent(GLEvent* pEvent);
};

#endif
