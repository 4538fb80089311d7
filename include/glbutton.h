// glbutton.h - GLButton, a cel that reacts to the pointer.
//
// It shows one of four faces (enabled, depressed, disabled, highlighted),
// goes down when pressed over it, comes up when released, and calls its
// mouse-up function when a press and its release both happen over it. The
// face is chosen by the state operations alone: the last one to run decides.
// A button can make itself a hog of the game's user object, to see every event
// first (to follow a press that leaves it). A button deleted while hogging
// leaves the hog set itself.
//
// Usage: construct on a plane (hidden and disabled), set faces and functions,
// Show(), Enable(TRUE).
#ifndef QUINDLE_GLBUTTON_H
#define QUINDLE_GLBUTTON_H

#include "glcel.h"
#include "glcursor.h"

class QUINDLE_API GLButton : public GLCel {
public:
    // A view-based button: faces are cels 0 (enabled), 1 (depressed), 2
    // (disabled) and 3 (highlighted) of the view and loop; cel is shown until
    // the first state operation.
    GLButton(AbsGLPlane* pPlane, unsigned long view, short loop, short cel, GLPoint pos, int iPriority);
    // A bitmap-based button: state operations only push the screen item.
    GLButton(AbsGLPlane* pPlane, const KernelMemBitmap* pKernelMemBitmap, GLPoint pos, int iPriority);
    virtual ~GLButton();

    // Pointer events (kEventPointerDown, kEventPointerUp, kEventPointerMove) go to the select function if one
    // is set, else to GeneralSelect. Returns the claimed flag.
    virtual int HandleEvent(GLEvent* pEvent);

    // State operations: each sets its flag and loads its face (pushed to the
    // kernel at once when fDoUpdate is non-zero).
    virtual void Enable(int fDoUpdate);
    virtual void Disable(int fDoUpdate);
    virtual void Depress(int fDoUpdate);
    virtual void UnDepress(int fDoUpdate);
    virtual void Highlight(int fDoUpdate);
    virtual void UnHighlight(int fDoUpdate);
    // Press, release and the mouse-up function; see the header comment.
    // Declared after the state operations: the order of the virtual members
    // is the order of the exported table.
    virtual void GeneralSelect(GLEvent* pEvent);

    // Faces: stored only; a state operation loads them.
    void SetEnabledFace(unsigned long view, short loop, short cel);
    void SetDepressedFace(unsigned long view, short loop, short cel);
    void SetDisabledFace(unsigned long view, short loop, short cel);
    void SetHighlitFace(unsigned long view, short loop, short cel);
    void SetEnabledFace(GLCelRes face) { mEnabledFace = face; }
    void SetDepressedFace(GLCelRes face) { mDepressedFace = face; }
    void SetDisabledFace(GLCelRes face) { mDisabledFace = face; }
    void SetHighlitFace(GLCelRes face) { mHighlitFace = face; }
    GLCelRes GetEnabledFace() { return mEnabledFace; }
    GLCelRes GetDepressedFace() { return mDepressedFace; }
    GLCelRes GetDisabledFace() { return mDisabledFace; }
    GLCelRes GetHighlitFace() { return mHighlitFace; }

    int IsHogging() const { return mHogging; }
    int IsEnabled() const { return mEnabled; }
    int IsDepressed() const { return mDepressed; }
    int IsHighlit() const { return mHighlit; }

    void SetMouseUpFnct(GLSelectFunction pFunction) { mpMouseUpFnct = pFunction; }
    GLSelectFunction GetMouseUpFnct() const { return mpMouseUpFnct; }
    // Puts the button in the user's hog set (non-zero) or takes it out (zero).
    void SetHogging(int fHogging);

protected:
    virtual void CommonMemberInit();

private:
    void LoadFace(GLCelRes& face, int fDoUpdate);

    GLCelRes mDisabledFace;
    GLCelRes mEnabledFace;
    GLCelRes mHighlitFace;
    GLCelRes mDepressedFace;
    int mHogging;
    int mEnabled;
    int mDepressed;
    int mHighlit;
    GLSelectFunction mpMouseUpFnct;
};

#endif
