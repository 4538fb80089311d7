// glplane.h - planes: rectangular layers of the screen that hold screen items.
//
// The kernel owns the plane itself (its record, its drawing, its transitions
// and its scrolling). A plane object makes the kernel's record, writes the
// game's changes into it and tells the kernel when to take them over. It also
// owns a GLCast: the objects that live on the plane, which the plane manager
// drives every frame and hands input to.
//
// The update protocol: every setter writes its field into the kernel record at
// once and marks the plane changed. With its last argument fDoUpdate non-zero
// it pushes the change through Update() at once; otherwise the change waits
// until the game calls Update(). Update() may only be called with a change
// pending, and a plane may not be destroyed with one pending, so several
// setters with fDoUpdate FALSE are followed by exactly one Update().
//
// A plane is not entered into the plane manager by itself: the game adds it
// with GLPlaneManager::Add, re-sorts it with GLPlaneManager::Update after a
// priority change and removes it before destroying it. Destroying a plane
// does not touch the screen items still on it: destroy them first.
//
// Four kinds of plane differ only in what they pass to the common set-up: one
// filled with a colour, one showing a background picture (which can scroll
// and be mirrored), a transparent one and an opaque one.
#ifndef QUINDLE_GLPLANE_H
#define QUINDLE_GLPLANE_H

#include "gldefs.h"
#include "glpoint.h"
#include "kernel.h"

#include <cstddef>

class GLCast;

class QUINDLE_API AbsGLPlane {
public:
    GL_DECLARE_ALLOCATION("include/glplane.h")

    // The library's plane kinds. The kernel stores them as the type codes
    // -1 (colored), -4 (picture), -2 (transparent) and -3 (opaque).
    enum PlaneType { colored = 0, picture = 1, transparent = 2, opaque = 3 };
    // The kernel's transitions, 0 to 15. The library passes them through and
    // knows nothing more of them than their range.
    enum ShowStyle : int {
        showStyle0 = 0,
        showStyle1,
        showStyle2,
        showStyle3,
        showStyle4,
        showStyle5,
        showStyle6,
        showStyle7,
        showStyle8,
        showStyle9,
        showStyle10,
        showStyle11,
        showStyle12,
        showStyle13,
        showStyle14,
        showStyle15
    };
    // A plane belongs to one of the game windows 0 to MaxGameWindowCount - 1.
    enum { MaxGameWindowCount = 5 };

    // No kernel plane and no cast yet: only Init, GetCast and destruction are
    // allowed until Init has run.
    AbsGLPlane();
    // Checks the arguments, then makes the kernel plane and the cast (Init).
    // The rectangle is in screen coordinates and must not be empty. Priority
    // kPriorityOnTop puts the plane above every existing plane; otherwise it is -1 or
    // more. A picture plane has a picture above 0 and may be mirrored (fMirror
    // TRUE or FALSE); every other kind has picture 0 and no mirror. The colour
    // is 0..255; the window index 0..4.
    AbsGLPlane(PlaneType planeType, const ZOR_Rect& ZOR_RectPlane, int iPriority, int iWindowIndex,
               const ZOR_Point& vanishPt, int iColor, int iPicture, int fMirror);
    // Planes are not copied: two objects would own one kernel plane.
    AbsGLPlane(const AbsGLPlane&) = delete;
    AbsGLPlane& operator=(const AbsGLPlane&) = delete;
    // No change may be pending. Gives the kernel plane back (DeletePlane) and
    // deletes the cast; the objects on the plane are not touched.
    virtual ~AbsGLPlane();

    // Makes the kernel plane of a plane built by the default constructor, with
    // the constructor's arguments and checks: NewPlane, then AddPlane and
    // PlaneCreated. Once only.
    void Init(PlaneType planeType, const ZOR_Rect& ZOR_RectPlane, int iPriority, int iWindowIndex,
              const ZOR_Point& vanishPt, int iColor, int iPicture, int fMirror);

    // ----- queries -----
    // The kernel plane's id (20000 or more).
    std::int32_t GetId() const;
    // The stacking priority: higher is nearer the viewer.
    int GetPri() const;
    // The plane's rectangle in screen coordinates, as the kernel record holds it.
    const ZOR_Rect& GetRect() const;
    // The back colour; a transparent plane has none.
    int GetBackColor() const;
    // A copy of the vanishing point.
    ZOR_Point GetVanishPt();
    // The kernel's highest screen item priority on this plane.
    int TopScreenItemPriority();
    // How far the transition started with SetShowStyle has got.
    int ShowStylePercentComplete();
    // 1 when the point, in screen coordinates, lies in the plane's rectangle,
    // edges included.
    int OnMe(const GLPoint& point) const;
    // The objects that live on the plane (null before Init).
    GLCast* GetCast() const { return m_pCast; }

    // ----- setters: write the kernel record now, push it with fDoUpdate -----
    // Priority -1 or more. Re-sort the plane in the plane manager afterwards.
    void SetPri(int iPriorityNew, int fDoUpdate);
    // Colour 0..255; not for a transparent plane.
    void SetBackColor(int iColor, int fDoUpdate);
    // fDoUpdate must be TRUE or FALSE.
    void SetVanishPt(const ZOR_Point& vanishPt, int fDoUpdate);
    // A non-empty rectangle in screen coordinates; the kernel is told at once
    // that the rectangle changed (PlaneRectChanged).
    void SetRect(const ZOR_Rect& ZOR_RectPlane, int fDoUpdate);
    // The same from the four edges; fDoUpdate must be TRUE or FALSE.
    void SetRect(int iLeft, int iTop, int iRight, int iBottom, int fDoUpdate);

    // Pushes the pending changes to the kernel (UpdatePlane). A change must be
    // pending.
    void Update();

    // ----- direct kernel operations (no change flag, no Update) -----
    // Moves every item on the plane by the deltas (-1200..1200, -800..800);
    // fMovePics TRUE moves the pictures too.
    void MoveItems(int iDeltaX, int iDeltaY, int fMovePics);
    // Starts a transition. iSpeed > 0; iColor -1 (none) or 0..255; fAnimateFlag
    // and fUseReferenceFrame TRUE or FALSE; iToFrom 0..2; intArray and
    // iArraySize both given or both 0; iDivisionCount -1 or more than 0. The
    // fourth argument is accepted and ignored.
    void SetShowStyle(ShowStyle style, int iSpeed, int iColor, int iUnused, int fAnimateFlag, int fUseReferenceFrame,
                      int iToFrom, int* intArray, int iArraySize, int iDivisionCount);
    // Converts a point from screen to plane coordinates, in place.
    void ToLocal(ZOR_Point* pPoint);
    // Converts a point from plane to screen coordinates, in place.
    void ToGlobal(ZOR_Point* pPoint);

protected:
    KernelPlaneRecord* m_pPlane; // the kernel's plane, owned; null before Init
    int m_fChangedValue;         // TRUE while a written change awaits Update()
    GLCast* m_pCast;             // owned; null before Init

    // What every setter does after writing its field.
    void Changed(int fDoUpdate);
};

// A plane filled with one colour.
class QUINDLE_API GLColoredPlane : public AbsGLPlane {
public:
    GLColoredPlane();
    GLColoredPlane(const ZOR_Rect& ZOR_RectPlane, int iColor, int iPriority, int iWindowIndex,
                   const ZOR_Point& vanishPt);
    GLColoredPlane(int iLeft, int iTop, int iRight, int iBottom, int iColor, int iPriority, int iWindowIndex,
                   const ZOR_Point& vanishPt);
    virtual ~GLColoredPlane();

    // Mind the order: the window index comes before the priority here, unlike
    // in the constructor.
    void Init(const ZOR_Rect& ZOR_RectPlane, int iColor, int iWindowIndex, int iPriority, const ZOR_Point& vanishPt);
    void Init(int iLeft, int iTop, int iRight, int iBottom, int iColor, int iPriority, int iWindowIndex,
              const ZOR_Point& vanishPt);
};

// A plane showing a background picture, which can scroll and be mirrored.
class QUINDLE_API GLPicturePlane : public AbsGLPlane {
public:
    GLPicturePlane();
    GLPicturePlane(const ZOR_Rect& ZOR_RectPlane, int iPicture, int iPriority, int iWindowIndex, int fMirror,
                   const ZOR_Point& vanishPt);
    GLPicturePlane(int iLeft, int iTop, int iRight, int iBottom, int iPicture, int iPriority, int iWindowIndex,
                   int fMirror, const ZOR_Point& vanishPt);
    // Not implemented: makes a plane of (0, 0, 1, 1) and then reports
    // "Not yet implemented".
    GLPicturePlane(int iPicture, int iPriority, int iWindowIndex, int fMirror, const ZOR_Point& vanishPt);
    virtual ~GLPicturePlane();

    void Init(const ZOR_Rect& ZOR_RectPlane, int iPicture, int iPriority, int iWindowIndex, int fMirror,
              const ZOR_Point& vanishPt);
    void Init(int iLeft, int iTop, int iRight, int iBottom, int iPicture, int iPriority, int iWindowIndex, int fMirror,
              const ZOR_Point& vanishPt);
    // Not implemented: reports "Not yet implemented".
    void Init(int iPicture, int iPriority, int iWindowIndex, int fMirror, const ZOR_Point& vanishPt);

    // 1 when the picture is shown mirrored.
    int IsMirror() const;
    // The picture number.
    int GetPicture() const;
    // fMirror and fDoUpdate TRUE or FALSE.
    void SetMirror(int fMirror, int fDoUpdate);
    // A picture 0 or more that differs from the one shown; fDoUpdate TRUE or
    // FALSE. The kernel is told the picture changed.
    void SetPicture(int iNewPicture, int fDoUpdate);

    // Adds a copy of a picture at a position (0..1200, 0..800) of the plane.
    void AddPicAt(int iPicture, int iXPos, int iYPos, int fMirror, int fDeleteCopy);
    // Scrolls to a new picture; exactly one of the two steps is non-zero.
    // iTicks is -1 or more than 0; fWithAnimate and fMirror TRUE or FALSE.
    void SetScroll(int iXStepSize, int iYStepSize, int iPicture, int fWithAnimate, int iTicks, int fMirror);
};

// A plane through which what lies below shows; it has no back colour.
class QUINDLE_API GLTransparentPlane : public AbsGLPlane {
public:
    GLTransparentPlane();
    GLTransparentPlane(const ZOR_Rect& ZOR_RectPlane, int iPriority, int iWindowIndex, const ZOR_Point& vanishPt);
    GLTransparentPlane(int iLeft, int iTop, int iRight, int iBottom, int iPriority, int iWindowIndex,
                       const ZOR_Point& vanishPt);
    virtual ~GLTransparentPlane();

    void Init(const ZOR_Rect& ZOR_RectPlane, int iPriority, int iWindowIndex, const ZOR_Point& vanishPt);
    void Init(int iLeft, int iTop, int iRight, int iBottom, int iPriority, int iWindowIndex, const ZOR_Point& vanishPt);
};

// An opaque plane.
class QUINDLE_API GLOpaquePlane : public AbsGLPlane {
public:
    GLOpaquePlane();
    GLOpaquePlane(const ZOR_Rect& ZOR_RectPlane, int iColor, int iPriority, int iWindowIndex,
                  const ZOR_Point& vanishPt);
    GLOpaquePlane(int iLeft, int iTop, int iRight, int iBottom, int iColor, int iPriority, int iWindowIndex,
                  const ZOR_Point& vanishPt);
    virtual ~GLOpaquePlane();

    void Init(const ZOR_Rect& ZOR_RectPlane, int iColor, int iPriority, int iWindowIndex, const ZOR_Point& vanishPt);
    void Init(int iLeft, int iTop, int iRight, int iBottom, int iColor, int iPriority, int iWindowIndex,
              const ZOR_Point& vanishPt);
};

#endif
