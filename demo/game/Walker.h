// Walker.h - Pip, the demo's actor: a cel of his view that walks the room's
// walkable area with the library's walker (GLWalker), at his own pace.
//
// The walking itself is the library's: routes round what stands in the way
// (GLWalkArea), a walk loop per direction, standing on arrival, one cue to
// whoever sent him. What is the demo's own is his picture, his speeds, and
// where his rooms keep their floors: walk/<room>.txt in the game folder.
#ifndef DEMO_WALKER_H
#define DEMO_WALKER_H

#include "DemoApi.h"

#include "glwalker.h"

class AbsGLPlane;
class GLCel;
class GLWalkArea;

// What the walker stands on, made before it and deleted after it: the cel
// and the area must outlive the library's walker, which stands the cel still
// when it goes.
struct WalkerParts {
    WalkerParts(AbsGLPlane* pPlane, int view, const GLPoint& pos, int room);
    ~WalkerParts();
    GLCel* mpCel;
    GLWalkArea* mpFloor; // null when the room's file could not be read
};

class DEMO_API Walker : private WalkerParts, public GLWalker {
public:
    // Shows the walker on the plane at pos, standing, facing the viewer, on
    // the floor of the room (its walk/<room>.txt; without one he walks
    // straight wherever he is sent).
    Walker(AbsGLPlane* pPlane, int view, const GLPoint& pos, int room);
    virtual ~Walker();

    GLCel* Cel() { return mpCel; }
};

#endif
