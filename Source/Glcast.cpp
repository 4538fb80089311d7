// Glcast.cpp - the objects that live on one plane. See include/glcast.h.
#include "glcast.h"

#include "glevent.h"
#include "glframe.h"

// The sets hold addresses and compare them; a screen item derives from
// GLObject alone, so its address as a GLObject is its address as a screen
// item. Going through void keeps this file free of the screen item's
// declaration.
static GLScreenItem* AsScreenItem(GLObject* pGLObject)
{
    return static_cast<GLScreenItem*>(static_cast<void*>(pGLObject));
}

// Objects take input through the virtual HandleEvent of GLObject; the event
// set is typed for targets, which are what take input in practice. The address
// is carried over unchanged for the same reason as above.
static GLTarget* AsTarget(GLObject* pGLObject)
{
    return static_cast<GLTarget*>(static_cast<void*>(pGLObject));
}

GLCast::GLCast() : m_pScreenItemSet(0), m_pDoItSet(0), m_pHandleEventSet(0)
{
    MakeSets();
}

GLCast::GLCast(const GLCast& cast) : m_pScreenItemSet(0), m_pDoItSet(0), m_pHandleEventSet(0)
{
    MakeSets();
    CopySets(cast);
}

GLCast& GLCast::operator=(const GLCast& cast)
{
    if (this == &cast)
        return *this;
    DeleteSets();
    MakeSets();
    CopySets(cast);
    return *this;
}

GLCast::~GLCast()
{
    DeleteSets();
}

void GLCast::MakeSets()
{
    m_pScreenItemSet = GL_NEW GLSetAsArray<GLScreenItem>(10, 10);
    GL_ASSERT(m_pScreenItemSet != 0);
    m_pDoItSet = GL_NEW GLSetAsArray<GLObject>(10, 10);
    GL_ASSERT(m_pDoItSet != 0);
    m_pHandleEventSet = GL_NEW GLSetAsArray<GLTarget>(10, 10);
    GL_ASSERT(m_pHandleEventSet != 0);
}

void GLCast::CopySets(const GLCast& cast)
{
    for (int i = 0; i < cast.m_pScreenItemSet->NumElements(); i++)
        m_pScreenItemSet->AddToEnd(cast.m_pScreenItemSet->At(i));
    for (int i = 0; i < cast.m_pDoItSet->NumElements(); i++)
        m_pDoItSet->AddToEnd(cast.m_pDoItSet->At(i));
    for (int i = 0; i < cast.m_pHandleEventSet->NumElements(); i++)
        m_pHandleEventSet->AddToEnd(cast.m_pHandleEventSet->At(i));
}

void GLCast::DeleteSets()
{
    delete m_pScreenItemSet;
    m_pScreenItemSet = 0;
    delete m_pDoItSet;
    m_pDoItSet = 0;
    delete m_pHandleEventSet;
    m_pHandleEventSet = 0;
}

void GLCast::Add(GLObject* pGLObject)
{
    GL_ASSERT(pGLObject != 0);
    GL_ASSERT(pGLObject->IsScreenItem() != FALSE || pGLObject->NeedsDoIt() != FALSE ||
              pGLObject->NeedsEvent() != FALSE);
    GL_ASSERT(m_pScreenItemSet != 0);
    GL_ASSERT(m_pDoItSet != 0);
    GL_ASSERT(m_pHandleEventSet != 0);

    if (pGLObject->IsScreenItem() != FALSE)
        m_pScreenItemSet->AddToEnd(AsScreenItem(pGLObject));
    if (pGLObject->NeedsDoIt() != FALSE)
        m_pDoItSet->AddToEnd(pGLObject);
    if (pGLObject->NeedsEvent() != FALSE)
        m_pHandleEventSet->AddToEnd(AsTarget(pGLObject));
}

void GLCast::Remove(GLObject* pGLObject)
{
    GL_ASSERT(pGLObject != 0);
    GL_ASSERT(pGLObject->IsScreenItem() != FALSE || pGLObject->NeedsDoIt() != FALSE ||
              pGLObject->NeedsEvent() != FALSE);
    GL_ASSERT(m_pScreenItemSet != 0);
    GL_ASSERT(m_pDoItSet != 0);
    GL_ASSERT(m_pHandleEventSet != 0);

    // The flags may have changed since the object joined: it leaves whatever
    // holds it.
    if (m_pScreenItemSet->IsInList(AsScreenItem(pGLObject)))
        m_pScreenItemSet->Remove(AsScreenItem(pGLObject));
    if (m_pDoItSet->IsInList(pGLObject))
        m_pDoItSet->Remove(pGLObject);
    if (m_pHandleEventSet->IsInList(AsTarget(pGLObject)))
        m_pHandleEventSet->Remove(AsTarget(pGLObject));
}

GL_FRAME_PATH void GLCast::DoIt()
{
    GL_ASSERT(m_pScreenItemSet != 0);
    GL_ASSERT(m_pDoItSet != 0);
    GL_ASSERT(m_pHandleEventSet != 0);

    // Members add and remove themselves while they work: read the count afresh.
    for (int i = 0; i < m_pDoItSet->NumElements(); i++)
        m_pDoItSet->At(i)->DoIt();
}

int GLCast::HandleEvent(GLEvent* pGLEvent)
{
    GL_ASSERT(pGLEvent != NULL);
    GL_ASSERT(m_pScreenItemSet != NULL);
    GL_ASSERT(m_pDoItSet != NULL);
    GL_ASSERT(m_pHandleEventSet != NULL);

    // Only the claimed flag ends the offer, and only when it is exactly TRUE;
    // the members' results are not looked at, and the event stays localised
    // to this cast's plane throughout.
    for (int i = 0; i < m_pHandleEventSet->NumElements(); i++) {
        GLObject* pMember = static_cast<GLObject*>(static_cast<void*>(m_pHandleEventSet->At(i)));
        pMember->HandleEvent(pGLEvent);
        if (pGLEvent->claimed == TRUE)
            break;
    }
    return pGLEvent->claimed;
}

void GLCast::AddToEvents(GLObject* pGLObject)
{
    // The check's text is reported as written, spacing included.
    // clang-format off
    GL_ASSERT(!(m_pHandleEventSet->IsInList((GLTarget *) pGLObject)));
    // clang-format on
    pGLObject->NeedsEvent(TRUE);
    m_pHandleEventSet->AddToEnd(AsTarget(pGLObject));
}

void GLCast::RemoveFromEvents(GLObject* pGLObject)
{
    // The check's text is reported as written, spacing included.
    // clang-format off
    GL_ASSERT(m_pHandleEventSet->IsInList((GLTarget *) pGLObject));
    // clang-format on
    pGLObject->NeedsEvent(FALSE);
    m_pHandleEventSet->Remove(AsTarget(pGLObject));
}
