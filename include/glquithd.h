// glquithd.h - GLQuitHandler, the prima donna that ends the main loop.
//
// GLGame::Play adds one at the end of the user's prima donnas for the
// duration of the loop, so it sees every event that no hog and no earlier
// prima donna has claimed, before any plane. It claims only the key whose
// modifiers are 4 and whose message is 0x4F00, of whatever type, and sets the
// game's quit flag. It is on no plane and is never hit by pointer events.
#ifndef QUINDLE_GLQUITHD_H
#define QUINDLE_GLQUITHD_H

#include "gltarget.h"

class QUINDLE_API GLQuitHandler : public GLTarget {
public:
    // No plane, no select function.
    GLQuitHandler();
    GLQuitHandler(const GLQuitHandler& handler);
    GLQuitHandler& operator=(const GLQuitHandler& handler);
    virtual ~GLQuitHandler();

    // Claims the quit key and sets theGame->mQuit to TRUE; returns the
    // event's claimed flag (which may have been set before the call).
    virtual int HandleEvent(GLEvent* pEvent);

    // The quit handler has no shape: both hit tests are FALSE.
    using GLTarget::OnMe;
    virtual int OnMe(GLPoint point);
};

#endif
