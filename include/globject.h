// globject.h - GLObject, the root of every game object.
//
// Three registration flags tell a plane's cast where an object belongs: drawn
// (screen item), worked every frame (DoIt) and offered input (HandleEvent).
// A class sets the flags it needs in its constructor; the cast refuses an
// object with none. The flag getters return the bit's own value (1, 2 or 4),
// not TRUE: compare them against FALSE.
#ifndef QUINDLE_GLOBJECT_H
#define QUINDLE_GLOBJECT_H

#include "gldefs.h"

class GLEvent;
class GLCue;

class QUINDLE_API GLObject {
public:
    GL_DECLARE_ALLOCATION("include/globject.h")

    // No flag set.
    GLObject();
    GLObject(const GLObject& object);
    GLObject& operator=(const GLObject& object);
    virtual ~GLObject();

    // The work of one frame. An object put in a per-frame set must override it:
    // the default reports "!\"DoIt not allowed for this class\"".
    virtual void DoIt();
    // Offers an input event; returns the event's claimed flag. An object put in
    // an event set must override it: the default reports.
    virtual int HandleEvent(GLEvent* pEvent);
    // A deferred notification from something this object waited for. The
    // default does nothing.
    virtual void Cue(GLCue* pCue);

    // Bit 1 (2): the object needs DoIt every frame. fFlag is TRUE or FALSE.
    void NeedsDoIt(int fFlag);
    int NeedsDoIt() const;
    // Bit 2 (4): the object takes input events.
    void NeedsEvent(int fFlag);
    int NeedsEvent() const;
    // Bit 0 (1): the object is a screen item.
    void IsScreenItem(int fFlag);
    int IsScreenItem() const;

protected:
    std::uint32_t m_iObjectFlags;
};

inline void GLObject::NeedsDoIt(int fFlag)
{
    GL_ASSERT(fFlag == TRUE || fFlag == FALSE);
    if (fFlag)
        m_iObjectFlags |= 2u;
    else
        m_iObjectFlags &= ~2u;
}

inline int GLObject::NeedsDoIt() const
{
    return static_cast<int>(m_iObjectFlags & 2u);
}

inline void GLObject::NeedsEvent(int fFlag)
{
    GL_ASSERT(fFlag == TRUE || fFlag == FALSE);
    if (fFlag)
        m_iObjectFlags |= 4u;
    else
        m_iObjectFlags &= ~4u;
}

inline int GLObject::NeedsEvent() const
{
    return static_cast<int>(m_iObjectFlags & 4u);
}

inline void GLObject::IsScreenItem(int fFlag)
{
    GL_ASSERT(fFlag == TRUE || fFlag == FALSE);
    if (fFlag)
        m_iObjectFlags |= 1u;
    else
        m_iObjectFlags &= ~1u;
}

inline int GLObject::IsScreenItem() const
{
    return static_cast<int>(m_iObjectFlags & 1u);
}

#endif
