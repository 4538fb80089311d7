// glplanes.h - GLPlaneManager, the game's planes in stacking order.
//
// The manager holds the planes from the one nearest the viewer (highest
// priority) to the farthest; planes of equal priority stand in the order they
// were added. It does not own them: the game adds each plane after making it,
// calls Update after changing a plane's priority, and removes the plane
// before destroying it.
//
// Once per frame the game calls DoIt, which runs every plane's cast, top plane
// first. The user object hands it each input event, which it offers to the
// planes under the event's position, top plane first, localised to each.
#ifndef QUINDLE_GLPLANES_H
#define QUINDLE_GLPLANES_H

#include "glplane.h"
#include "glset.h"

class GLEvent;

class QUINDLE_API GLPlaneManager {
public:
    GL_DECLARE_ALLOCATION("include/glplanes.h")

    // No planes.
    GLPlaneManager();
    // A copy holds the same planes in the same order; neither owns them.
    GLPlaneManager(const GLPlaneManager& manager);
    GLPlaneManager& operator=(const GLPlaneManager& manager);
    // The planes are left alone.
    ~GLPlaneManager();

    // Inserts an initialised plane below every plane of higher or equal
    // priority and above every plane of lower priority. A plane may be added
    // once only.
    void Add(AbsGLPlane* pl);
    // Takes the plane out; it must be in the manager.
    void Remove(AbsGLPlane* pl);
    // Moves the plane to its place after its priority changed (AbsGLPlane::SetPri):
    // takes it out and adds it again, so among equal priorities it goes last.
    // This only re-sorts; AbsGLPlane::Update pushes values to the kernel.
    void Update(AbsGLPlane* pl);
    // Runs every plane's cast (GLCast::DoIt), top plane first.
    void DoIt();
    // Offers the event to every plane whose rectangle holds its position, top
    // plane first: localised to the plane, through the plane's cast. The first
    // cast that claims the event ends the offer and the event stays localised
    // to that plane; otherwise it is globalised again before the next plane.
    // Returns the event's claimed flag.
    int HandleEvent(GLEvent* pEvent);

    // The planes, highest priority first. Read it; change it only through the
    // members above, which keep the order.
    GLSetAsArray<AbsGLPlane> moPlanes;
};

#endif
