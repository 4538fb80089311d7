// glcel.h - GLCel, the library's animated actor.
//
// A cel is a screen item that is at the same time a feature: one object with
// two GLObject parts, each with its own registration flags. The screen item
// part sits in its plane cast's screen item and per-frame sets; the feature
// part sits in the cast's event set, and its rectangle follows what the kernel
// last drew of the cel (refreshed after every update with a change pending),
// so clicks on the cel's picture reach it. Before the cel is first drawn the
// rectangle is (0, 0, 0, 0).
//
// A cel is built hidden but already takes input; Show() keeps it in the event
// set, Hide() takes it out, so a hidden cel takes no clicks.
//
// Hand a cel to the cast as a GLFeature* (input) or GLScreenItem* (drawing):
// a plain GLObject* would be ambiguous.
//
// A cel also carries what its cycler and mover read: cycle speed, move speed
// and step size. It does not own its cycler or mover and does not tell them
// when it is destroyed.
#ifndef QUINDLE_GLCEL_H
#define QUINDLE_GLCEL_H

#include "glfeatur.h"
#include "glsi.h"

class GLCycler;
class GLMover;

class QUINDLE_API GLCel : public GLScreenItem, public GLFeature {
public:
    // Both bases are GLObjects with their own allocation functions; the cel
    // names the one that holds.
    GL_DECLARE_ALLOCATION("include/glcel.h")

    // A view-based cel on pPlane at pos, hidden, in the plane's event set;
    // cycle and move speed 6, step size (3, 3).
    GLCel(AbsGLPlane* pPlane, std::uint32_t view, short loop, short cel, GLPoint pos, int iPriority,
          const ScaleInfo& scale);
    // The same on a bitmap-based screen item.
    GLCel(AbsGLPlane* pPlane, const KernelMemBitmap* pKernelMemBitmap, GLPoint pos, int iPriority,
          const ScaleInfo& scale);
    // Leaves the event set, then gives the kernel record back and leaves the cast.
    virtual ~GLCel();

    // Cels are not copied: the screen item part holds a kernel record.
    GLCel(const GLCel&) = delete;
    GLCel& operator=(const GLCel&) = delete;

    // Game ticks between two steps of the cel's cycler.
    void SetCycleSpeed(std::uint32_t uSpeed) { mCycleSpeed = uSpeed; }
    std::int32_t GetCycleSpeed() const { return static_cast<std::int32_t>(mCycleSpeed); }
    // Game ticks between two steps of the cel's mover.
    void SetMoveSpeed(std::uint32_t uSpeed) { mMoveSpeed = uSpeed; }
    std::int32_t GetMoveSpeed() const { return static_cast<std::int32_t>(mMoveSpeed); }
    // The largest move per mover step along x and along y.
    const GLPoint& GetStepSize() const { return mStepSize; }
    void SetStepSize(const GLPoint& stepSize) { mStepSize = stepSize; }
    // The cycler and mover that drive the cel, or null.
    GLCycler* GetCycler() const { return mpCycler; }
    GLMover* GetMover() const { return mpMover; }
    // The game links the cel's mover here; the mover's destructor clears it.
    void SetMover(GLMover* pMover) { mpMover = pMover; }

    // The last loop of the cel's view and the last cel of its loop, as the
    // kernel counts them (a view-based cel only).
    std::uint16_t LastLoop() const;
    std::uint16_t LastCel() const;

    // The screen item's plane (the feature part is always on the same one).
    virtual AbsGLPlane* GetPlane();
    // The screen item's update, then the rectangle from what the kernel drew.
    virtual void Update();
    // On the screen and taking input.
    virtual void Show();
    // Off the screen and taking no input.
    virtual void Hide();
    // Moves both parts: the screen item to pPlane's kernel list and cast, the
    // feature to pPlane's event set (taking input there even if it did not).
    virtual void SetPlane(AbsGLPlane* pPlane, int fDoUpdate);

protected:
    // The feature's rectangle := what the kernel reports it last drew of the
    // cel; unchanged when the kernel reports nothing.
    virtual void SetBounds();
    // The cycler sets itself here when it takes the cel and clears it on release.
    void SetCycler(GLCycler* pCycler) { mpCycler = pCycler; }
    friend class GLCycler;
    // The mover reads the step size and clears its link when it goes.
    friend class GLMover;

    std::uint32_t mCycleSpeed;
    std::uint32_t mMoveSpeed;
    GLCycler* mpCycler;
    GLMover* mpMover;
    GLPoint mStepSize;

private:
    // The feature's own SetPlane moves only the feature part: a cel always
    // moves both (SetPlane above).
    using GLFeature::SetPlane;
    // What both constructors do once the two parts are built.
    virtual void CommonMemberInit();
};

#endif
