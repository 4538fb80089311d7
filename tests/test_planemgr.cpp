// The plane manager: stacking order, re-sorting, the per-frame pass and the
// offer of input events to the planes under them.
#include "QuindleTest.h"
#include "glcast.h"
#include "glevent.h"
#include "glplanes.h"

#include <string>
#include <vector>

namespace {

using PlaneManagerTest = QuindleTest;
using Log = std::vector<std::string>;
using Planes = std::vector<AbsGLPlane*>;

const ZOR_Point kVanish(0, 0);

Planes Order(const GLPlaneManager& manager)
{
    Planes planes;
    for (int i = 0; i < manager.moPlanes.NumElements(); i++)
        planes.push_back(manager.moPlanes.At(i));
    return planes;
}

// An object on a plane that logs its frame work and the events it is offered
// (with the position and the plane the event is localised to).
class Actor : public GLTarget {
public:
    Actor(Log* log, const char* name, AbsGLPlane* plane) : mLog(log), mName(name)
    {
        NeedsDoIt(TRUE);
        NeedsEvent(TRUE);
        SetPlane(plane);
        plane->GetCast()->Add(this);
    }
    ~Actor() override { mpPlane->GetCast()->Remove(this); }
    void DoIt() override { mLog->push_back(mName + ".DoIt"); }
    int HandleEvent(GLEvent* pEvent) override
    {
        mLog->push_back(mName + "(" + std::to_string(pEvent->where.GetX()) + "," +
                        std::to_string(pEvent->where.GetY()) + (pEvent->plane == mpPlane ? ")mine" : ")other"));
        if (mClaims)
            pEvent->claimed = TRUE;
        return pEvent->claimed;
    }
    Log* mLog;
    std::string mName;
    int mClaims = FALSE;
};

TEST_F(PlaneManagerTest, PlanesStandByPriorityWithTiesToThoseThatCameFirst)
{
    GLColoredPlane a(0, 0, 9, 9, 0, 5, 0, kVanish);
    GLColoredPlane b(0, 0, 9, 9, 0, 9, 0, kVanish);
    GLColoredPlane c(0, 0, 9, 9, 0, 5, 0, kVanish);
    GLColoredPlane d(0, 0, 9, 9, 0, 1, 0, kVanish);
    GLPlaneManager manager;
    for (AbsGLPlane* plane : Planes{&a, &b, &c, &d})
        manager.Add(plane);
    EXPECT_EQ(Order(manager), (Planes{&b, &a, &c, &d}));

    // The manager only orders: nothing reaches the kernel.
    EXPECT_EQ(k.Count("UpdatePlane"), 0);

    // A priority change takes effect in the order at Update.
    d.SetPri(10, TRUE);
    EXPECT_EQ(manager.moPlanes.At(3), &d);
    manager.Update(&d);
    EXPECT_EQ(Order(manager), (Planes{&d, &b, &a, &c}));
    EXPECT_EQ(k.Count("UpdatePlane"), 1);

    // Re-sorting puts a plane last among its equals.
    manager.Update(&a);
    EXPECT_EQ(Order(manager), (Planes{&d, &b, &c, &a}));

    // A lowest plane goes to the end, a new highest one (priority 11) to the front.
    GLColoredPlane bottom(0, 0, 9, 9, 0, -1, 0, kVanish);
    GLColoredPlane top(0, 0, 9, 9, 0, kPriorityOnTop, 0, kVanish);
    manager.Add(&bottom);
    manager.Add(&top);
    EXPECT_EQ(top.GetPri(), 11);
    EXPECT_EQ(Order(manager), (Planes{&top, &d, &b, &c, &a, &bottom}));

    manager.Remove(&b);
    EXPECT_EQ(Order(manager), (Planes{&top, &d, &c, &a, &bottom}));
    // The planes outlive the manager; the copy and the original hold the same ones.
    {
        GLPlaneManager copy(manager);
        EXPECT_EQ(copy.moPlanes.At(1), &d);
        copy.Remove(&d);
        EXPECT_TRUE(manager.moPlanes.IsInList(&d));
    }
    EXPECT_EQ(k.Count("DeletePlane"), 0);
}

TEST_F(PlaneManagerTest, FrameWorkAndEventsGoToThePlanesTopFirst)
{
    Log log;
    GLColoredPlane back(0, 0, 639, 479, 0, 1, 0, kVanish);
    GLColoredPlane front(100, 50, 299, 249, 0, 5, 0, kVanish);
    GLColoredPlane aside(400, 300, 499, 399, 0, 9, 0, kVanish);
    GLPlaneManager manager;
    for (AbsGLPlane* plane : Planes{&back, &front, &aside})
        manager.Add(plane);
    Actor b(&log, "back", &back), f1(&log, "front1", &front), a(&log, "aside", &aside), f2(&log, "front2", &front);

    // Every cast works, the top plane's first, each in its own order.
    manager.DoIt();
    EXPECT_EQ(log, (Log{"aside.DoIt", "front1.DoIt", "front2.DoIt", "back.DoIt"}));

    // Nobody claims the event: every plane under it is asked, in its own
    // coordinates, and the event comes back global and unclaimed.
    log.clear();
    GLEvent event;
    k.PushEvent(kEventPointerDown, 0, 0, 150, 70);
    event.Refresh();
    EXPECT_EQ(manager.HandleEvent(&event), FALSE);
    EXPECT_EQ(log, (Log{"front1(50,20)mine", "front2(50,20)mine", "back(150,70)mine"}));
    EXPECT_EQ(event.plane, nullptr);
    EXPECT_EQ(event.where, GLPoint(150, 70));

    // The higher plane's cast claims it: the lower one never sees it, and the
    // event stays localised to the higher plane.
    log.clear();
    f2.mClaims = TRUE;
    k.PushEvent(kEventPointerDown, 0, 0, 299, 249);
    event.Refresh();
    EXPECT_EQ(manager.HandleEvent(&event), TRUE);
    EXPECT_EQ(log, (Log{"front1(199,199)mine", "front2(199,199)mine"}));
    EXPECT_EQ(event.plane, &front);
    EXPECT_EQ(event.where.GetX(), 199);

    // Outside every plane: no cast sees it and no conversion is asked for.
    GLPlaneManager upper;
    upper.Add(&aside);
    log.clear();
    k.PushEvent(kEventPointerDown, 0, 0, 600, 20);
    event.Refresh();
    const std::size_t mark = k.Mark();
    EXPECT_EQ(upper.HandleEvent(&event), FALSE);
    EXPECT_TRUE(log.empty());
    EXPECT_TRUE(k.CallsSince(mark).empty());
}

TEST_F(PlaneManagerTest, MisuseEndsWithTheExactReport)
{
    GLColoredPlane plane(0, 0, 9, 9, 0, 5, 0, kVanish);
    GLColoredPlane outside(0, 0, 9, 9, 0, 5, 0, kVanish);
    GLColoredPlane uninitialised;
    GLPlaneManager manager;
    manager.Add(&plane);
    EXPECT_GL_ASSERT(manager.Add(&plane), "include/glset.h", "!\"Item is already in set!\"");
    EXPECT_GL_ASSERT(manager.Remove(&outside), "include/glset.h", "IsInList(pElementExisting)");
    EXPECT_GL_ASSERT(manager.Update(&outside), "Source/Glplanes.cpp", "moPlanes.IsInList(pl)");
    EXPECT_GL_ASSERT(manager.Add(&uninitialised), "Source/Glplane.cpp", "m_pPlane != 0");
}

} // namespace
