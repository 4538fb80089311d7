// DemoButton.h - the buttons of the demo's button bar.
//
// A GLButton already shows its enabled, depressed and disabled faces by
// itself. Ours adds the fourth: it lights up (the highlighted face) while the
// pointer is over it. And a button may hold the input while it is pressed: it
// makes itself a hog of the user object, so that it alone sees the events
// until the release, wherever the pointer has gone. Released away from the
// button, the press comes to nothing, as with any button on a desktop. Every
// press clicks (a sound effect).
#ifndef DEMO_BUTTON_H
#define DEMO_BUTTON_H

#include "DemoApi.h"

#include "glbutton.h"

class DEMO_API DemoButton : public GLButton {
public:
    // Loop `loop` of the button view: cels 0 enabled, 1 depressed, 2
    // disabled, 3 highlighted. Shown and enabled; a click calls onClick.
    DemoButton(AbsGLPlane* pPlane, int view, int loop, const GLPoint& pos, GLSelectFunction onClick);

    // While pressed, take every event (see above).
    void HogWhilePressed(int fHog) { mHogWhilePressed = fHog; }

    virtual int HandleEvent(GLEvent* pEvent);

private:
    int mHogWhilePressed;
};

#endif
