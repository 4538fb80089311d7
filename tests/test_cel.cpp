// Features and cels: rectangles, event sets, a cel's two object parts, its
// clickable area following what the kernel drew, and moving between planes.
#include "QuindleTest.h"
#include "glcast.h"
#include "glcel.h"
#include "glevent.h"
#include "glfeatur.h"
#include "glplane.h"

#include <string>
#include <vector>

namespace {

using Edges = std::vector<int>;

// Counts the selections made through the select function.
int gSelected = 0;
GLObject* gLastSelected = nullptr;
void CountSelection(GLEvent*, GLObject* pObject)
{
    ++gSelected;
    gLastSelected = pObject;
}

class CelTest : public QuindleTest {
protected:
    CelTest()
    {
        gSelected = 0;
        gLastSelected = nullptr;
    }

    GLColoredPlane plane{ZOR_Rect(0, 0, 639, 479), 0, 1, 0, ZOR_Point(0, 0)};
    GLColoredPlane other{ZOR_Rect(0, 0, 319, 239), 3, 2, 0, ZOR_Point(0, 0)};

    // A click (type 1) at a point in the plane's coordinates, offered to the
    // plane's cast as the plane manager would after localising it.
    int ClickOn(AbsGLPlane& target, int x, int y)
    {
        GLEvent event;
        event.type = kEventPointerDown;
        event.where.SetPoint(x, y);
        event.claimed = FALSE;
        return target.GetCast()->HandleEvent(&event);
    }

    static GLTarget* FeaturePart(GLCel& cel) { return static_cast<GLFeature*>(&cel); }
    static GLObject* FeatureObject(GLCel& cel) { return static_cast<GLFeature*>(&cel); }
    static GLScreenItem* ItemPart(GLCel& cel) { return &cel; }
    static GLObject* ItemObject(GLCel& cel) { return static_cast<GLScreenItem*>(&cel); }
    static Edges EdgesOf(const GLRect& rect) { return {rect.left, rect.top, rect.right, rect.bottom}; }
};

TEST_F(CelTest, AFeatureTakesInputInItsRectangleOnceEnteredOnItsPlane)
{
    GLFeature point(&plane);
    EXPECT_EQ(EdgesOf(point.GetRect()), (Edges{0, 0, 0, 0}));
    // OnMe is the rectangle's own test, whose edges the geometry tests cover.
    GLFeature* feature = new GLFeature(&plane, 10, 10, 20, 20);
    EXPECT_EQ(EdgesOf(feature->GetRect()), (Edges{10, 10, 20, 20}));
    EXPECT_EQ(feature->OnMe(GLPoint(20, 20)), 1);

    // Not offered input until entered.
    feature->SetSelectFunction(CountSelection);
    GLCast* cast = plane.GetCast();
    EXPECT_EQ(ClickOn(plane, 15, 15), FALSE);
    feature->Init();
    EXPECT_EQ(feature->NeedsEvent(), 4);
    EXPECT_EQ(ClickOn(plane, 15, 15), TRUE);
    EXPECT_EQ(ClickOn(plane, 25, 15), FALSE);
    EXPECT_EQ(gSelected, 1);
    EXPECT_GL_ASSERT(feature->Init(), "Source/Glcast.cpp", "!(m_pHandleEventSet->IsInList((GLTarget *) pGLObject))");

    // Moving takes it out of the old plane's events and into the new one's,
    // also for a feature that took no input before.
    feature->SetPlane(&other);
    EXPECT_EQ(ClickOn(plane, 15, 15), FALSE);
    EXPECT_EQ(ClickOn(other, 15, 15), TRUE);
    GLFeature idle(&plane, 0, 0, 5, 5);
    idle.SetPlane(&other);
    EXPECT_TRUE(other.GetCast()->IsInEventSet(&idle));

    // Init with a rectangle sets it first; destruction leaves the event set.
    GLRect area;
    area.SetRect(30, 30, 40, 40);
    point.Init(area);
    EXPECT_EQ(EdgesOf(point.GetRect()), (Edges{30, 30, 40, 40}));
    EXPECT_TRUE(cast->IsInEventSet(&point));
    delete feature;
    EXPECT_FALSE(other.GetCast()->IsInEventSet(feature));
    EXPECT_TRUE(other.GetCast()->IsInEventSet(&idle));

    EXPECT_GL_ASSERT(GLFeature(nullptr), "Source/Glfeatur.cpp", "pPlane");
    EXPECT_GL_ASSERT(idle.SetPlane(nullptr), "include/gltarget.h", "pPlane");
}

TEST_F(CelTest, ACelComesAndGoesThroughTheKernelAsTwoPartsInTheRightSets)
{
    std::size_t mark = k.Mark();
    GLCel* cel = new GLCel(&plane, 5, 1, 2, GLPoint(3, 4), 6, kFullSizeScale);
    const std::string self = std::to_string(cel->GetId());
    EXPECT_EQ(k.CallsSince(mark), (std::vector<std::string>{"NewScreenItem(20000,src:0/5/1/2/0,(3,4),[128,128,100,0])",
                                                            "GetNowSeenRect(20000," + self + ")"}));
    // The object itself is one block of the kernel's, named after its header.
    bool found = false;
    for (const auto& block : k.Ledger().LiveBlocks())
        found = found || (block.file == "include/glcel.h" && block.size == sizeof(GLCel));
    EXPECT_TRUE(found);
    EXPECT_EQ(cel->IsVisible(), FALSE);

    // The screen item part draws and works every frame; the feature part takes input.
    GLCast* cast = plane.GetCast();
    GLObject* item = ItemObject(*cel);
    GLTarget* feature = FeaturePart(*cel);
    EXPECT_TRUE(cast->IsInScreenItemSet(ItemPart(*cel)));
    EXPECT_TRUE(cast->IsInDoItSet(item));
    EXPECT_TRUE(cast->IsInEventSet(feature));
    EXPECT_FALSE(cast->IsInDoItSet(FeatureObject(*cel)));
    EXPECT_EQ(cast->GetEventSet()->NumElements(), 1);
    EXPECT_EQ(item->NeedsEvent(), 0);

    // Per-frame work through the cast reaches the screen item part harmlessly.
    cast->DoIt();
    cel->SetMoveSpeed(0xFFFFFFFFu); // set as unsigned, read as signed
    EXPECT_EQ(cel->GetMoveSpeed(), -1);

    cel->Show();
    mark = k.Mark();
    delete cel;
    EXPECT_EQ(k.CallsSince(mark), (std::vector<std::string>{"DeleteScreenItem(item:" + self + ")"}));
    EXPECT_FALSE(cast->IsInCast(item));
    EXPECT_FALSE(cast->IsInEventSet(feature));

    // Through a base pointer the whole cel goes, hidden or not.
    GLScreenItem* asItem = GL_NEW GLCel(&plane, 5, 0, 0, GLPoint(0, 0), 0, kFullSizeScale);
    delete asItem;
    GLFeature* asFeature = GL_NEW GLCel(&plane, 5, 0, 0, GLPoint(0, 0), 0, kFullSizeScale);
    delete asFeature;
    EXPECT_EQ(k.ItemCount(), 0u);
    EXPECT_EQ(cast->GetEventSet()->NumElements(), 0);
    EXPECT_GL_ASSERT(GLCel(&plane, 5, -1, 0, GLPoint(0, 0), 0, kFullSizeScale), "Source/Glsi.cpp", "iLoop >= 0");
}

TEST_F(CelTest, TheClickableAreaFollowsWhatTheKernelDrewAndWhereTheCelIs)
{
    GLCel cel(&plane, 5, 0, 0, GLPoint(100, 100), 2, kFullSizeScale);
    cel.SetSelectFunction(CountSelection);
    GLCast* cast = plane.GetCast();
    const std::int32_t id = cel.GetId();
    k.nowSeen[id] = ZOR_Rect(100, 90, 119, 109);

    // Hidden, the kernel reports nothing: the area stays where it was.
    EXPECT_EQ(ClickOn(plane, 110, 100), FALSE);
    cel.Show();
    cel.Update(); // no change pending, yet the area is asked for afresh
    EXPECT_EQ(EdgesOf(cel.GetRect()), (Edges{100, 90, 119, 109}));
    EXPECT_EQ(ClickOn(plane, 110, 100), TRUE);
    EXPECT_EQ(gSelected, 1);
    EXPECT_EQ(gLastSelected, FeatureObject(cel));

    // Moved with an update: the area is what the kernel reports now.
    k.nowSeen[id] = ZOR_Rect(200, 190, 219, 209);
    cel.SetPos(GLPoint(200, 200), TRUE);
    EXPECT_EQ(EdgesOf(cel.GetRect()), (Edges{200, 190, 219, 209}));
    EXPECT_EQ(ClickOn(plane, 110, 100), FALSE);
    EXPECT_EQ(ClickOn(plane, 219, 209), TRUE);

    // Moved without an update: the kernel still shows the old place.
    k.nowSeen[id] = ZOR_Rect(300, 300, 310, 310);
    cel.SetPos(GLPoint(300, 300), FALSE);
    EXPECT_EQ(EdgesOf(cel.GetRect()), (Edges{200, 190, 219, 209}));
    cel.Update();
    EXPECT_EQ(EdgesOf(cel.GetRect()), (Edges{300, 300, 310, 310}));

    // Without a set answer the recording kernel reports a cel-sized box at
    // the position: the area follows that too.
    k.nowSeen.erase(id);
    cel.SetPos(GLPoint(40, 50), TRUE);
    EXPECT_EQ(EdgesOf(cel.GetRect()), (Edges{40, 50, 40 + k.celWidth - 1, 50 + k.celHeight - 1}));

    // Hidden, the cel takes no clicks; shown again, it does.
    cel.Hide();
    EXPECT_FALSE(k.ItemOnScreen(cel.GetId()));
    EXPECT_FALSE(cast->IsInEventSet(FeaturePart(cel)));
    EXPECT_EQ(ClickOn(plane, 40, 50), FALSE);
    EXPECT_EQ(gSelected, 2);
    cel.Hide(); // hidden already: still out
    cel.Show();
    cel.Show();
    EXPECT_TRUE(k.ItemOnScreen(cel.GetId()));
    EXPECT_EQ(cast->GetEventSet()->NumElements(), 1);
    EXPECT_EQ(ClickOn(plane, 40, 50), TRUE);
    EXPECT_EQ(gSelected, 3);

    // Moving it to another plane moves both parts.
    cel.SetPlane(&other, TRUE);
    EXPECT_EQ(FeaturePart(cel)->GetPlane(), &other);
    EXPECT_EQ(cel.GetPlaneId(), 20001);
    EXPECT_TRUE(k.ItemOnScreen(cel.GetId()));
    EXPECT_FALSE(cast->IsInCast(ItemObject(cel)));
    EXPECT_TRUE(other.GetCast()->IsInDoItSet(ItemObject(cel)));
    EXPECT_EQ(ClickOn(plane, 40, 50), FALSE);
    EXPECT_EQ(ClickOn(other, 40, 50), TRUE);

    // A hidden cel that moves takes input on its new plane.
    cel.Hide();
    cel.SetPlane(&plane, FALSE);
    EXPECT_TRUE(cast->IsInEventSet(FeaturePart(cel)));
    EXPECT_EQ(cel.IsVisible(), FALSE);
}

TEST_F(CelTest, LastLoopAndLastCelComeFromTheKernelsCounts)
{
    k.SetView(7, {8, 3, 0});
    GLCel cel(&plane, 7, 1, 0, GLPoint(0, 0), 0, kFullSizeScale);
    EXPECT_EQ(cel.LastLoop(), 2);
    EXPECT_EQ(cel.LastCel(), 2);
    cel.SetLoop(0, FALSE);
    EXPECT_EQ(cel.LastCel(), 7);
    EXPECT_EQ(k.CallsNamed("NumCels").back(), "NumCels(7,0)");
    // An empty loop wraps to the largest 16-bit index.
    cel.SetLoop(2, FALSE);
    EXPECT_EQ(cel.LastCel(), 0xFFFF);

    std::uint16_t memId = 3;
    KernelMemBitmap bitmap(&memId);
    k.validMemIds[3] = true;
    GLCel drawn(&plane, &bitmap, GLPoint(1, 2), 0, kFullSizeScale);
    EXPECT_TRUE(plane.GetCast()->IsInEventSet(FeaturePart(drawn)));
    EXPECT_GL_ASSERT(drawn.LastCel(), "Source/Glsi.cpp", "m_pKernelMemBitmap == 0");
}

} // namespace
