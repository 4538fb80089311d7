// glcast.h - GLCast, the objects that live on one plane.
//
// Every plane owns one cast. The cast sorts each object it is given into up to
// three sets by the object's registration flags: the screen items drawn on the
// plane, the objects that work every frame, and the objects that take input.
// The plane manager runs the cast's DoIt once per frame and hands it input
// events already localised to the plane. The cast never owns its objects:
// they join with Add and must leave with Remove before they are destroyed.
//
// Order within a set is the order of addition, and it is the order in which
// the cast drives its members. Sets are walked by index with the count read
// afresh before every step, so a member added at the end during a pass is
// reached in the same pass.
#ifndef QUINDLE_GLCAST_H
#define QUINDLE_GLCAST_H

#include "globject.h"
#include "glset.h"
#include "gltarget.h"

#include <cstddef>

class GLEvent;
class GLScreenItem;

class QUINDLE_API GLCast {
public:
    GL_DECLARE_ALLOCATION("include/glcast.h")

    // Three empty sets (first size 10, growth 10).
    GLCast();
    // A copy has three sets of its own holding the same objects, in the same
    // order; the objects themselves are shared, as a cast never owns them.
    GLCast(const GLCast& cast);
    GLCast& operator=(const GLCast& cast);
    // Deletes the sets (screen items, per-frame, events); the objects stay.
    virtual ~GLCast();

    // Puts the object at the end of every set its flags ask for: screen item,
    // then per-frame, then events. An object without any flag, or one already
    // in a set its flags name, is refused.
    void Add(GLObject* pGLObject);
    // Takes the object out of whichever sets hold it, whatever its flags say
    // now. An object in no set is accepted and nothing happens. The object must
    // still carry one of the three flags.
    void Remove(GLObject* pGLObject);
    // Calls DoIt on every member of the per-frame set, in order.
    void DoIt();
    // Offers the event to the members of the event set, in order, ignoring
    // their results, until the event's claimed flag is exactly TRUE. The event
    // stays localised to the plane for every member. Returns the claimed flag.
    int HandleEvent(GLEvent* pGLEvent);
    // Switches input on for an object that stays in the cast: sets its
    // needs-event flag and adds it at the end of the event set. It must not be
    // in the event set already.
    void AddToEvents(GLObject* pGLObject);
    // Switches input off: clears the needs-event flag and takes the object out
    // of the event set, which must hold it. The other sets are not touched.
    void RemoveFromEvents(GLObject* pGLObject);

    // Membership of each set, by address.
    int IsInScreenItemSet(GLScreenItem* pScreenItem) const;
    int IsInDoItSet(GLObject* pGLObject) const;
    int IsInEventSet(GLTarget* pTarget) const;
    // TRUE when the object is in any of the three sets.
    int IsInCast(GLObject* pGLObject) const;
    // The objects that take input, in the order they are offered events.
    const GLSetAsArray<GLTarget>* GetEventSet() const { return m_pHandleEventSet; }

protected:
    GLSetAsArray<GLScreenItem>* m_pScreenItemSet; // owned; members are not
    GLSetAsArray<GLObject>* m_pDoItSet;           // owned; members are not
    GLSetAsArray<GLTarget>* m_pHandleEventSet;    // owned; members are not

private:
    void MakeSets();
    void CopySets(const GLCast& cast);
    void DeleteSets();
};

inline int GLCast::IsInScreenItemSet(GLScreenItem* pScreenItem) const
{
    GL_ASSERT(m_pScreenItemSet != 0);
    return m_pScreenItemSet->IsInList(pScreenItem);
}

inline int GLCast::IsInDoItSet(GLObject* pGLObject) const
{
    GL_ASSERT(m_pDoItSet != 0);
    return m_pDoItSet->IsInList(pGLObject);
}

inline int GLCast::IsInEventSet(GLTarget* pTarget) const
{
    GL_ASSERT(m_pHandleEventSet != 0);
    return m_pHandleEventSet->IsInList(pTarget);
}

// Membership is by address, so the object is looked up through the untyped
// list: it need not be of the element type of every set it is looked for in.
inline int GLCast::IsInCast(GLObject* pGLObject) const
{
    GL_ASSERT(m_pScreenItemSet != 0);
    if (m_pScreenItemSet->KernelListAsArray::IsInList(pGLObject))
        return TRUE;
    GL_ASSERT(m_pDoItSet != 0);
    if (m_pDoItSet->IsInList(pGLObject))
        return TRUE;
    GL_ASSERT(m_pHandleEventSet != 0);
    return m_pHandleEventSet->KernelListAsArray::IsInList(pGLObject);
}

#endif
