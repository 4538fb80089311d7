// Glevent.cpp - the input event and sets of event handlers. See include/glevent.h.
#include "glevent.h"

#include "globject.h"
#include "glplane.h"

#include <cstring>
#include <new>

// Only the position and the word after it are the library's to set; the other
// bytes of the record are the kernel's, written by GetEvent.
static void InitKernelEvent(KernelEventRecord* pRecord)
{
    if (pRecord == 0)
        return;
    new (&pRecord->where) ZOR_Point();
    pRecord->extra = 0;
}

GLEvent::GLEvent() : type(0), message(0), modifiers(0), claimed(FALSE), extra(0), where(), plane(0), kernelEvent(0)
{
    kernelEvent = static_cast<KernelEventRecord*>(GL_ALLOC(sizeof(KernelEventRecord)));
    InitKernelEvent(kernelEvent);
}

// A copy gets a record of its own with the same bytes, so that each event
// releases only its own record.
GLEvent::GLEvent(const GLEvent& event)
    : type(event.type), message(event.message), modifiers(event.modifiers), claimed(event.claimed), extra(event.extra),
      where(event.where), plane(event.plane), kernelEvent(0)
{
    kernelEvent = static_cast<KernelEventRecord*>(GL_ALLOC(sizeof(KernelEventRecord)));
    if (kernelEvent && event.kernelEvent)
        std::memcpy(kernelEvent, event.kernelEvent, sizeof(KernelEventRecord));
    else
        InitKernelEvent(kernelEvent);
}

GLEvent& GLEvent::operator=(const GLEvent& event)
{
    if (this == &event)
        return *this;
    type = event.type;
    message = event.message;
    modifiers = event.modifiers;
    claimed = event.claimed;
    extra = event.extra;
    where = event.where;
    plane = event.plane;
    if (kernelEvent && event.kernelEvent)
        std::memcpy(kernelEvent, event.kernelEvent, sizeof(KernelEventRecord));
    return *this;
}

// The record goes first; the position is released with the member after it.
GLEvent::~GLEvent()
{
    GL_FREE(kernelEvent);
    kernelEvent = 0;
}

void GLEvent::Refresh(unsigned int mask)
{
    kernel->GetEvent(mask, kernelEvent);
    type = kernelEvent->type;
    message = static_cast<std::uint16_t>(kernelEvent->message & 0xFFFFu);
    modifiers = kernelEvent->modifiers;
    claimed = FALSE;
    plane = 0;
    where.SetPoint(kernelEvent->where);
    extra = kernelEvent->extra;
}

void GLEvent::Refresh()
{
    Refresh(kEventMaskAll);
}

// The conversion works on a kernel point of its own, so that the event's
// position changes only once the plane is known.
void GLEvent::Localize(AbsGLPlane* pPlane)
{
    ZOR_Point* pPoint = static_cast<ZOR_Point*>(GL_ALLOC(sizeof(ZOR_Point)));
    new (pPoint) ZOR_Point(where.GetX(), where.GetY());
    // Going through the screen means an event can be moved from one plane to
    // another without being globalised in between.
    if (plane)
        plane->ToGlobal(pPoint);
    pPlane->ToLocal(pPoint);
    plane = pPlane;
    where.SetPoint(*pPoint);
    GL_FREE(pPoint);
}

void GLEvent::Globalize()
{
    if (plane == 0)
        return;
    ZOR_Point* pPoint = static_cast<ZOR_Point*>(GL_ALLOC(sizeof(ZOR_Point)));
    new (pPoint) ZOR_Point(where.GetX(), where.GetY());
    plane->ToGlobal(pPoint);
    plane = 0;
    where.SetPoint(*pPoint);
    GL_FREE(pPoint);
}

GLEventHandlerSet::GLEventHandlerSet() {}

GLEventHandlerSet::GLEventHandlerSet(int iItemCount, int iGrowBy) : GLSetAsArray<GLObject>(iItemCount, iGrowBy) {}

GLEventHandlerSet::~GLEventHandlerSet() {}

int GLEventHandlerSet::HandleEvent(GLEvent* pEvent)
{
    // Handlers may leave or join the set while it is offered the event, so the
    // count is read afresh before every step.
    for (int i = 0; i < NumElements(); i++) {
        if (At(i)->HandleEvent(pEvent))
            return TRUE;
        // A handler may have localised the event to its plane: the next one
        // gets it in screen coordinates again.
        pEvent->Globalize();
    }
    return FALSE;
}
