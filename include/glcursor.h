// glcursor.h - GLCelRes, the name of one picture, and GLCursor, the library's
// model of the mouse cursor.
//
// The kernel draws the cursor. The cursor object keeps a picture for each of
// four modes (normal, wait, hands off, highlight), whether it is visible and
// where it is, and tells the kernel which view, loop and cel to show whenever
// the mode or the picture of the current mode changes.
//
// The current mode is read from the wait, hands-off and highlight bits taken
// together: exactly one of them set selects that mode's picture; none, or more
// than one, selects the normal picture. Modes are not a stack: beginning a
// mode shows its picture even if another mode is on, and ending one always
// shows the normal picture, even if another mode is still on.
#ifndef QUINDLE_GLCURSOR_H
#define QUINDLE_GLCURSOR_H

#include "globject.h"
#include "glpoint.h"
#include "kernel.h"

// A view, loop and cel with a fourth value carried along. A plain value; the
// cursor, screen items and buttons name their pictures with it.
class QUINDLE_API GLCelRes {
public:
    GL_DECLARE_ALLOCATION("include/glcursor.h")

    // All four values 0.
    GLCelRes();
    GLCelRes(std::uint32_t view, short loop, short cel, std::int32_t data);
    GLCelRes(const GLCelRes& celRes);
    GLCelRes& operator=(const GLCelRes& celRes);

    // Sets all four values.
    void Init(std::uint32_t view, short loop, short cel, std::int32_t data);

    std::uint32_t mView; // view (picture resource) number
    std::int16_t mLoop;  // loop within the view
    std::int16_t mCel;   // cel within the loop
    std::int32_t mData;  // carried with the triple; never passed to the kernel
};

class QUINDLE_API GLCursor : public GLObject {
public:
    // Every mode picture is the given triple, the state 0 (visible, normal),
    // the position (0, 0). The triple is shown; with fShow non-zero the kernel
    // is also told to show the cursor and the cursor takes events.
    GLCursor(GLCelRes& celRes, int fShow);
    GLCursor(const GLCursor& cursor);
    GLCursor& operator=(const GLCursor& cursor);
    // Releases the position; the kernel's cursor is left as it is.
    virtual ~GLCursor();

    // As the constructor, except that the position does not change.
    void Init(GLCelRes& celRes, int fShow);

    // Stores the point and moves the kernel's cursor there.
    void SetPos(GLPoint& point);
    const GLPoint& GetPos() const;

    // Follows the pointer: stores the event's position (the kernel's cursor
    // is not moved) and returns TRUE without claiming the event.
    virtual int HandleEvent(GLEvent* pEvent);
    // Visible again: clears the hidden bit, takes events, ShowCursor.
    virtual void Show();
    // Hidden: sets the hidden bit, takes no events, HideCursor. The mode bits
    // are not changed.
    virtual void Hide();
    // Does nothing: the state changes only through the members below.
    virtual void SetState(std::uint32_t uState);
    // Bit 0 (1): hidden; 2: wait; 4: hands off; 8: caged; 16: highlight.
    std::uint32_t GetState();

    // The picture of the current mode.
    const GLCelRes& GetCurrCelRes() const;
    // Stores the triple as the current mode's picture and shows it.
    void SetCurrCelRes(GLCelRes& celRes);
    // One field of the current mode's picture.
    std::uint32_t GetView() const;
    short GetLoop() const;
    short GetCel() const;
    // Set one field of the current mode's picture and show it.
    void SetView(std::uint32_t uView);
    void SetLoop(short iLoop);
    void SetCel(short iCel);

    // Store one mode's picture. It is shown at once only when its own mode
    // bit is set (for the normal picture: when none of the wait, hands-off
    // and highlight bits is set).
    void SetNormCelRes(GLCelRes& celRes);
    void SetWaitCelRes(GLCelRes& celRes);
    void SetHandsOffCelRes(GLCelRes& celRes);
    void SetHighLtCelRes(GLCelRes& celRes);
    const GLCelRes& GetNormCelRes() const;
    const GLCelRes& GetWaitCelRes() const;
    const GLCelRes& GetHandsOffCelRes() const;
    const GLCelRes& GetHighLtCelRes() const;

    // Mode switches. Each acts only when it changes the mode's bit: it sets
    // or clears the bit and shows the mode's picture (Begin, HandsOff) or the
    // normal picture (End, HandsOn). Otherwise nothing happens.
    void BeginWait();
    void EndWait();
    void HandsOff();
    void HandsOn();
    void BeginHighlight();
    void EndHighlight();

    // TRUE when none of the wait, hands-off and highlight bits is set.
    int IsNormal() const;
    // TRUE when the hidden bit is clear.
    int IsVisible() const;
    // The bit's own value (2, 4, 8, 16) or 0. Nothing in the library cages
    // the cursor; IsCaged only reports the bit.
    int IsWait() const;
    int IsHandsOff() const;
    int IsCaged() const;
    int IsHighlighted() const;

protected:
    std::uint32_t mState;
    GLPoint mPos; // global coordinates
    GLCelRes mNormCelRes;
    GLCelRes mWaitCelRes;
    GLCelRes mHandsOffCelRes;
    GLCelRes mHighLtCelRes;
    ZOR_Rect mCageRect; // 0, 0, 639, 479; kept, not used by the library

private:
    GLCelRes& CurrCelRes();
    void ShowCelRes(const GLCelRes& celRes);
};

#endif
