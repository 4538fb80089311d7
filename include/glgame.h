// glgame.h - GLGame, the game object and its main loop.
//
// The game owns the plane manager, the user object, the cursor and a set of
// objects that work every frame without being on a plane (cues, timers,
// scripts, movers, cyclers, narrators, the sound and room managers put
// themselves there). The host hands it to the library with GLDLLInit; library
// code reaches it through `theGame`.
//
// One frame (DoIt), in this order:
//   1. mGameTicks is read from the kernel (GetTicks);
//   2. the plane manager runs every plane's cast, top plane first;
//   3. every member of mpObjects gets DoIt;
//   4. the kernel brings the screen up to date (UpdateScreen(1));
//   5. the user object fetches one event and dispatches it.
// Input therefore acts on what was drawn, and its effects show next frame.
//
// mpObjects is walked by index from 0 with its count read afresh before every
// step, so members may add and remove themselves while it is walked:
//   - a member added at the end runs in the same frame;
//   - a member added at the front moves the others one index up: it waits for
//     the next frame and the member at the current index runs once more;
//   - a member removed at or before the current index moves the later members
//     one index down: the one after it is skipped for this frame.
#ifndef QUINDLE_GLGAME_H
#define QUINDLE_GLGAME_H

#include "globject.h"
#include "glset.h"

class GLPlaneManager;
class GLUser;
class GLCursor;
class GLPoint;

class QUINDLE_API GLGame : public GLObject {
public:
    // A new plane manager, a new user, an empty object set, no cursor, the
    // quit flag clear and mGameTicks read from the kernel.
    GLGame();
    // Takes over the plane manager and user given (null: a new one is made)
    // and the cursor, which must not be null ("curse"). The cursor given is
    // installed as if by SetCursor, so the game owns it; installing the same
    // cursor again with SetCursor afterwards changes nothing.
    GLGame(GLCursor* curse, GLUser* pUser, GLPlaneManager* pPlaneManager);
    // A copy owns copies of what the original owns (plane manager, user,
    // object set, cursor), so that each game deletes only its own. The
    // objects in the object set and the planes are shared, as they are never
    // owned by a game.
    GLGame(const GLGame& game);
    GLGame& operator=(const GLGame& game);
    // Deletes, in this order, the plane manager, the user, the object set
    // (not its members) and the cursor.
    virtual ~GLGame();

    // One frame; see above. Play calls it through the object, so a game class
    // may replace or extend it.
    virtual void DoIt();

    // Runs frames until mQuit is set. For the duration of the loop a quit
    // handler is the last prima donna of the user object (the key with
    // modifiers 4 and message 0x4F00 sets mQuit) and hands are switched on.
    // The library never clears mQuit: once set, Play returns at once.
    void Play();

    // The installed cursor, or null.
    GLCursor* GetCursor();
    // Deletes the installed cursor, if any, and installs pCursor, which must
    // not be null ("pCursor"); the game owns it from then on. Installing the
    // cursor that is already installed does nothing.
    void SetCursor(GLCursor* pCursor);

    // The user object's mouse position, as the last frame's event left it;
    // always the same point object.
    GLPoint& GetMousePos();

    GLPlaneManager* mpPlaneManager;    // owned: the planes, in stacking order
    GLUser* mpUser;                    // owned: input dispatch
    GLCursor* mpCursor;                // owned: the mouse cursor, or null
    GLSetAsArray<GLObject>* mpObjects; // owned; its members are not
    std::int32_t mQuit;                // TRUE ends Play
    std::uint32_t mGameTicks;          // the kernel clock at the start of this frame

private:
    void CopyOwned(const GLGame& game);
    void DeleteOwned();
};

#endif
