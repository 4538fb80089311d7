// Glplanes.cpp - the game's planes in stacking order. See include/glplanes.h.
#include "glplanes.h"

#include "glcast.h"
#include "glevent.h"

// Growth by one: a game has a handful of planes.
GLPlaneManager::GLPlaneManager() : moPlanes(1, 1) {}

GLPlaneManager::GLPlaneManager(const GLPlaneManager& manager) : moPlanes(manager.moPlanes) {}

GLPlaneManager& GLPlaneManager::operator=(const GLPlaneManager& manager)
{
    moPlanes = manager.moPlanes;
    return *this;
}

GLPlaneManager::~GLPlaneManager() {}

void GLPlaneManager::Add(AbsGLPlane* pl)
{
    const int iPriority = pl->GetPri();
    // The new plane goes after every plane of higher or equal priority, so
    // that among equals the planes that came first stay on top.
    int i = 0;
    for (; i < moPlanes.NumElements(); i++) {
        if (moPlanes.At(i)->GetPri() < iPriority)
            break;
    }
    if (i == 0)
        moPlanes.AddToFront(pl);
    else
        moPlanes.AddAfter(moPlanes.At(i - 1), pl);
}

void GLPlaneManager::Remove(AbsGLPlane* pl)
{
    moPlanes.Remove(pl);
}

void GLPlaneManager::Update(AbsGLPlane* pl)
{
    GL_ASSERT(moPlanes.IsInList(pl));
    moPlanes.Remove(pl);
    Add(pl);
}

void GLPlaneManager::DoIt()
{
    for (int i = 0; i < moPlanes.NumElements(); i++)
        moPlanes.At(i)->GetCast()->DoIt();
}

int GLPlaneManager::HandleEvent(GLEvent* pEvent)
{
    for (int i = 0; i < moPlanes.NumElements(); i++) {
        AbsGLPlane* pl = moPlanes.At(i);
        // The event arrives in screen coordinates and is put back into them
        // after every plane that declines it.
        if (pl->OnMe(pEvent->where)) {
            pEvent->Localize(pl);
            if (pl->GetCast()->HandleEvent(pEvent))
                break;
            pEvent->Globalize();
        }
    }
    return pEvent->claimed;
}
