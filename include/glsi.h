// glsi.h - GLScreenItem, one picture on a plane, and KernelMemBitmap, a
// bitmap the game draws itself.
//
// The kernel draws a screen item; the library object holds the kernel's
// record, writes the game's changes into it (position, priority, scale,
// picture, inset rectangle, z) and tells the kernel when to put the item on
// the screen, take its changes over, or remove it.
//
// The update protocol: every setter writes the record at once and marks the
// item changed. With its last argument fDoUpdate non-zero it pushes the change
// through the virtual Update() at once; otherwise the change waits for the
// next Update(), Show() or ForceUpdate(). An update with a change pending also
// puts a hidden item on the screen.
//
// A new item is hidden: call Show(). It belongs to one plane and stays in that
// plane's cast from its initialisation to its destruction, so destroy screen
// items before their plane.
//
// Picture source: either a view, loop and cel (all 0 or more, HasVLC() TRUE)
// or a memory bitmap (view, loop and cel -1). A bitmap-based item asks the
// kernel before every use whether the bitmap still exists; one the kernel no
// longer knows fails every checked member.
#ifndef QUINDLE_GLSI_H
#define QUINDLE_GLSI_H

#include "glcursor.h"
#include "globject.h"
#include "glpoint.h"
#include "kernel.h"

class AbsGLPlane;

// A bitmap in the kernel's memory that the game creates, draws and owns. The
// library reads only the memory id through m_pMemIDBitmap and never frees the
// bitmap.
class QUINDLE_API KernelMemBitmap {
public:
    GL_DECLARE_ALLOCATION("include/glsi.h")

    // No memory id yet.
    KernelMemBitmap() : m_pMemIDBitmap(0) {}
    // Names the bitmap by the address of its 16-bit memory id; the id is read
    // afresh at every use, so the game may change it in place.
    explicit KernelMemBitmap(std::uint16_t* pMemIDBitmap) : m_pMemIDBitmap(pMemIDBitmap) {}

    // The kernel memory manager's handle of the bitmap's block.
    std::uint16_t* m_pMemIDBitmap;
};

class QUINDLE_API GLScreenItem : public GLObject {
public:
    // No kernel record and no plane: only Init and destruction are allowed.
    GLScreenItem();
    // A view-based item on pPlane at pos (in the plane's coordinates). Priority
    // kPriorityOnTop leaves the kernel's own choice, -1 or more is fixed. Built hidden.
    GLScreenItem(AbsGLPlane* pPlane, int iView, int iLoop, int iCel, const GLPoint& pos, int iPriority,
                 const ScaleInfo& scale);
    // A bitmap-based item; the kernel must know the bitmap.
    GLScreenItem(AbsGLPlane* pPlane, const KernelMemBitmap* pKernelMemBitmap, const GLPoint& pos, int iPriority,
                 const ScaleInfo& scale);
    // Gives the record back (DeleteScreenItem when on the screen, else
    // DisposeScreenItem) and leaves the plane's cast. The bitmap is not freed.
    virtual ~GLScreenItem();

    // Screen items are not copied: two objects would share one kernel record.
    GLScreenItem(const GLScreenItem&) = delete;
    GLScreenItem& operator=(const GLScreenItem&) = delete;

    // Make the kernel record of an item built by the default constructor; the
    // arguments are those of the constructors. Once only.
    void Init(AbsGLPlane* pPlane, int iView, int iLoop, int iCel, const GLPoint& pos, int iPriority,
              const ScaleInfo& scale);
    void Init(AbsGLPlane* pPlane, const KernelMemBitmap* pKernelMemBitmap, const GLPoint& pos, int iPriority,
              const ScaleInfo& scale);

    // A screen item's per-frame work is the kernel's: nothing to do here.
    virtual void DoIt();

    // Pushes a pending change to the kernel, first putting a hidden item on the
    // screen. Without a pending change it does nothing, even for a hidden item.
    virtual void Update();
    // Puts a hidden item on the screen, with its pending change if any.
    virtual void Show();
    // Takes a visible item off the screen. The item gets a fresh kernel record
    // that keeps its picture, position, scale, priority (and whether it is
    // fixed), z and inset rectangle, so Show() brings it back unchanged.
    virtual void Hide();
    // The plane the item belongs to.
    virtual AbsGLPlane* GetPlane();
    // Moves the item to pPlane's kernel list and cast. It is hidden there until
    // the next update (at once when fDoUpdate is non-zero).
    virtual void SetPlane(AbsGLPlane* pPlane, int fDoUpdate);

    // Marks the item changed and updates it: the kernel takes the record over
    // even when nothing was set.
    void ForceUpdate();
    int IsVisible() { return m_fVisible; }
    // Hidden: 0, rectangle untouched. Visible: 1 when the kernel reports what
    // it last drew of the item (into *pRect), else 0.
    int NowSeenRect(ZOR_Rect* pRect);
    // Whether the kernel finds the visible item's picture under pt (plane
    // coordinates); fCheckSkip TRUE lets the kernel ignore skipped pixels.
    int OnPoint(const GLPoint& pt, int fCheckSkip);

    // Position in the coordinates of the item's plane.
    const GLPoint& GetPos() const;
    void SetPos(const GLPoint& pos, int fDoUpdate);
    // Drawing order within the plane. SetPri fixes the priority (-1 or more);
    // SetFloatPriority lets the kernel choose it and leaves the value stored.
    int GetPri() const;
    void SetPri(int iPriorityNew, int fDoUpdate);
    void SetFloatPriority(int fDoUpdate);
    const ScaleInfo& GetScale();
    void SetScale(const ScaleInfo& scale, int fDoUpdate);
    // The id of the kernel plane the record is on. SetPlaneId moves the record
    // only (the cast stays): it makes a new record on that plane keeping the
    // picture, position, scale and priority value, and leaves it hidden until
    // the next update. Prefer SetPlane.
    std::int32_t GetPlaneId() const;
    void SetPlaneId(std::int32_t lPlaneIdNew, int fDoUpdate);
    // The kernel's id of the item.
    std::int32_t GetId() const;
    // The z coordinate. Setting it raises the item on the screen by the new z:
    // the position's y is lowered by that amount, each time.
    int GetZCoord() const;
    void SetZCoord(int iZ, int fDoUpdate);
    // The part of the picture shown; must have been set before it is read.
    const ZOR_Rect& GetInsetRect() const;
    void SetInsetRect(const ZOR_Rect& ZOR_RectInset, int fDoUpdate);

    // The picture of a view-based item; refused for a bitmap-based one.
    int GetView() const;
    int GetLoop() const;
    int GetCel() const;
    void SetView(int iView, int fDoUpdate);
    void SetLoop(int iLoop, int fDoUpdate);
    void SetCel(int iCel, int fDoUpdate);
    void Load(int iView, int iLoop, int iCel, int fDoUpdate);
    void Load(GLCelRes res, int fDoUpdate);
    // The picture as a value, with a fourth value (mData) the game may carry.
    GLCelRes& GetCelRes() { return m_CelRes; }
    // Takes res.mData, then loads res's view, loop and cel.
    void SetCelRes(GLCelRes& res, int fDoUpdate);
    // TRUE for a view-based item.
    int HasVLC() { return m_pKernelMemBitmap == 0; }

    // The bitmap of a bitmap-based item; refused for a view-based one.
    const KernelMemBitmap* GetMemBmp() const;
    // Switches the item to a bitmap for good: no member switches it back.
    void SetMemBmp(const KernelMemBitmap* pKernelMemBitmap, int fDoUpdate);

protected:
    KernelScreenItemRecord* m_pScreenItem;
    int m_fChangedValue;
    int m_fVisible;
    int m_iView;
    int m_iLoop;
    int m_iCel;
    GLCelRes m_CelRes;
    const KernelMemBitmap* m_pKernelMemBitmap;
    AbsGLPlane* m_pGLPlane;
    GLPoint m_Position;

private:
    // The two checks made first by nearly every member: there is a record, and
    // a bitmap-based item's bitmap is still known to the kernel.
    void CheckRecord() const;
    // Marks the change and pushes it when asked.
    void Changed(int fDoUpdate);
    void PictureChanged(int fDoUpdate);
};

#endif
