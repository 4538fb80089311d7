// Screen items: the kernel calls they make, the update protocol, hiding by a
// replacement record, moving between planes, and the checks on misuse.
#include "QuindleTest.h"
#include "glcast.h"
#include "glplane.h"
#include "glsi.h"

#include <ostream>
#include <string>
#include <vector>

// Positions print as (x,y) in failure messages.
void PrintTo(const GLPoint& point, std::ostream* os)
{
    *os << "(" << point.GetX() << "," << point.GetY() << ")";
}

namespace {

const ScaleInfo kScale = {128, 128, 100, 0};

class ScreenItemTest : public QuindleTest {
protected:
    // Two planes, ids 20000 and 20001, made before and destroyed after every item.
    GLColoredPlane plane{ZOR_Rect(0, 0, 639, 479), 0, 1, 0, ZOR_Point(0, 0)};
    GLColoredPlane other{ZOR_Rect(100, 100, 299, 199), 5, 2, 0, ZOR_Point(0, 0)};

    KernelScreenItemRecord& Record(GLScreenItem& item) { return *k.Item(item.GetId()); }
    static std::vector<std::string> Lines(std::initializer_list<std::string> lines) { return lines; }
};

TEST_F(ScreenItemTest, LifeOfAnItemIsThisExactKernelConversation)
{
    std::size_t mark = k.Mark();
    GLScreenItem* item = new GLScreenItem(&plane, 5, 1, 2, GLPoint(10, 20), 3, kScale);
    GLObject* asObject = item;
    EXPECT_EQ(k.CallsSince(mark), Lines({"NewScreenItem(20000,src:0/5/1/2/0,(10,20),[128,128,100,0])"}));
    const std::int32_t first = item->GetId();
    EXPECT_FALSE(k.ItemOnScreen(first));
    EXPECT_EQ(item->IsVisible(), FALSE);
    EXPECT_TRUE(plane.GetCast()->IsInScreenItemSet(item));
    EXPECT_TRUE(plane.GetCast()->IsInDoItSet(item));
    EXPECT_EQ(item->IsScreenItem(), 1);
    EXPECT_EQ(item->NeedsDoIt(), 2);
    EXPECT_EQ(item->NeedsEvent(), 0);

    mark = k.Mark();
    item->Show();
    item->Show(); // already visible: nothing more
    item->SetPos(GLPoint(30, 40), TRUE);
    item->Hide();
    item->Hide(); // already hidden: nothing more
    const std::int32_t second = item->GetId();
    item->Show();
    const std::string a = std::to_string(first), b = std::to_string(second);
    EXPECT_EQ(k.CallsSince(mark), Lines({"AddScreenItem(item:" + a + ")", "UpdateScreenItem(item:" + a + ")",
                                         "NewScreenItem(20000,src:0/5/1/2/0,(30,40),[128,128,100,0])",
                                         "DeleteScreenItem(item:" + a + ")", "AddScreenItem(item:" + b + ")"}));
    EXPECT_NE(first, second);
    EXPECT_TRUE(k.ItemOnScreen(second));

    mark = k.Mark();
    delete item; // visible: taken off the screen
    EXPECT_EQ(k.CallsSince(mark), Lines({"DeleteScreenItem(item:" + b + ")"}));
    EXPECT_EQ(k.ItemCount(), 0u);
    EXPECT_EQ(plane.GetCast()->IsInCast(asObject), FALSE);

    // One that never reached the screen, or was hidden again, is only disposed of.
    item = new GLScreenItem(&plane, 5, 0, 0, GLPoint(0, 0), 3, kScale);
    asObject = item;
    item->Show();
    item->Hide();
    const std::string c = std::to_string(item->GetId());
    mark = k.Mark();
    delete item;
    EXPECT_EQ(k.CallsSince(mark), Lines({"DisposeScreenItem(item:" + c + ")"}));
    EXPECT_EQ(k.ItemCount(), 0u);
    EXPECT_EQ(plane.GetCast()->IsInCast(asObject), FALSE);
}

TEST_F(ScreenItemTest, HideThenShowKeepsEveryValueOfTheRecord)
{
    GLScreenItem item(&plane, 4, 2, 1, GLPoint(50, 60), 7, kScale);
    const ScaleInfo half = {64, 64, 100, 1};
    item.SetScale(half, FALSE);
    item.SetZCoord(5, FALSE);
    item.SetInsetRect(ZOR_Rect(1, 2, 30, 40), FALSE);
    item.Show();
    Record(item).kernelValue = 0xBEEF1234u;

    item.Hide();
    EXPECT_EQ(item.IsVisible(), FALSE);
    item.Show();
    EXPECT_EQ(item.IsVisible(), TRUE);

    KernelScreenItemRecord& r = Record(item);
    EXPECT_EQ(r.pos.x, 50);
    EXPECT_EQ(r.pos.y, 55);
    EXPECT_EQ(item.GetPos(), GLPoint(50, 55));
    EXPECT_EQ(r.priority, 7);
    EXPECT_EQ(r.fixedPriority, 1);
    EXPECT_EQ(r.scale.scaleX, 64);
    EXPECT_EQ(r.scale.mode, 1);
    EXPECT_EQ(r.z, 5);
    EXPECT_EQ(item.GetZCoord(), 5);
    EXPECT_EQ(r.useInsetRect, 1);
    EXPECT_EQ(r.insetRect.left, 1);
    EXPECT_EQ(r.insetRect.bottom, 40);
    EXPECT_EQ(item.GetInsetRect().right, 30);
    EXPECT_EQ(r.kernelValue, 0xBEEF1234u);
    EXPECT_EQ(r.source.kind, 0);
    EXPECT_EQ(r.source.view, 4);
    EXPECT_EQ(r.source.loop, 2);
    EXPECT_EQ(r.source.cel, 1);
    EXPECT_EQ(r.planeId, 20000);

    // A floating priority stays floating; an item without an inset gets none.
    GLScreenItem floating(&plane, 4, 0, 0, GLPoint(0, 0), -9999, kScale);
    floating.Show();
    Record(floating).priority = 12; // the kernel's own choice
    floating.Hide();
    floating.Show();
    EXPECT_EQ(Record(floating).fixedPriority, 0);
    EXPECT_EQ(Record(floating).priority, 12);
    EXPECT_EQ(Record(floating).useInsetRect, 0);
}

TEST_F(ScreenItemTest, ChangesWaitForTheNextUpdateUnlessAskedToPushAtOnce)
{
    GLScreenItem item(&plane, 1, 0, 0, GLPoint(0, 0), 0, kScale);
    const std::int32_t id = item.GetId();
    const std::string self = "item:" + std::to_string(id);

    // No change pending: Update does nothing, not even show the item.
    std::size_t mark = k.Mark();
    item.Update();
    EXPECT_TRUE(k.CallsSince(mark).empty());
    EXPECT_EQ(item.IsVisible(), FALSE);

    // A pending change: Update shows the hidden item and pushes the change.
    item.SetPos(GLPoint(8, 9), FALSE);
    EXPECT_TRUE(k.CallsSince(mark).empty());
    EXPECT_EQ(item.GetPos(), GLPoint(8, 9));
    item.Update();
    EXPECT_EQ(k.CallsSince(mark), Lines({"AddScreenItem(" + self + ")", "UpdateScreenItem(" + self + ")"}));
    EXPECT_TRUE(k.ItemOnScreen(id));

    // On a visible item the record changes at once, the kernel is told later.
    mark = k.Mark();
    item.SetPos(GLPoint(20, 21), FALSE);
    item.SetPri(4, FALSE);
    EXPECT_EQ(item.GetPos(), GLPoint(20, 21));
    EXPECT_EQ(Record(item).pos.x, 20);
    EXPECT_TRUE(k.CallsSince(mark).empty());
    item.Update();
    item.Update(); // nothing pending any more
    EXPECT_EQ(k.CallsSince(mark), Lines({"UpdateScreenItem(" + self + ")"}));

    // Any non-zero flag pushes at once; ForceUpdate pushes with nothing set.
    mark = k.Mark();
    item.SetPos(GLPoint(1, 1), 2);
    item.ForceUpdate();
    EXPECT_EQ(k.CallsSince(mark), Lines({"UpdateScreenItem(" + self + ")", "UpdateScreenItem(" + self + ")"}));

    // Show on a hidden item with a change pending adds and updates.
    item.Hide();
    const std::string moved = "item:" + std::to_string(item.GetId());
    item.SetCel(3, FALSE);
    mark = k.Mark();
    item.Show();
    EXPECT_EQ(k.CallsSince(mark), Lines({"AddScreenItem(" + moved + ")", "UpdateScreenItem(" + moved + ")"}));
    EXPECT_EQ(Record(item).source.cel, 3);
}

TEST_F(ScreenItemTest, PriorityZAndPictureSetters)
{
    GLScreenItem chosen(&plane, 1, 0, 0, GLPoint(0, 0), -9999, kScale);
    EXPECT_EQ(Record(chosen).fixedPriority, 0); // the kernel's own choice stays
    EXPECT_EQ(Record(chosen).priority, 0);
    GLScreenItem lowest(&plane, 1, 0, 0, GLPoint(0, 0), -1, kScale);
    EXPECT_EQ(lowest.GetPri(), -1);
    EXPECT_EQ(Record(lowest).fixedPriority, 1);

    lowest.SetPri(5, TRUE);
    lowest.SetFloatPriority(TRUE);
    EXPECT_EQ(lowest.GetPri(), 5);
    EXPECT_EQ(Record(lowest).fixedPriority, 0);

    // Each z lowers y by itself: twice 10 is 20 in all.
    GLScreenItem raised(&plane, 1, 0, 0, GLPoint(100, 100), 0, kScale);
    raised.SetZCoord(10, FALSE);
    raised.SetZCoord(10, FALSE);
    EXPECT_EQ(Record(raised).pos.y, 80);
    EXPECT_EQ(raised.GetPos(), GLPoint(100, 80));
    EXPECT_EQ(raised.GetZCoord(), 10);

    // The picture setters keep the triple, the record's source and mData together.
    GLCelRes res(9, 2, 4, 77);
    raised.SetCelRes(res, FALSE);
    EXPECT_EQ(raised.GetView(), 9);
    EXPECT_EQ(raised.GetLoop(), 2);
    EXPECT_EQ(raised.GetCel(), 4);
    EXPECT_EQ(raised.GetCelRes().mData, 77);
    raised.SetView(11, FALSE);
    raised.SetLoop(1, FALSE);
    raised.SetCel(6, FALSE);
    EXPECT_EQ(raised.GetCelRes().mView, 11u);
    EXPECT_EQ(raised.GetCelRes().mLoop, 1);
    EXPECT_EQ(raised.GetCelRes().mCel, 6);
    EXPECT_EQ(raised.GetCelRes().mData, 77);
    KernelScreenItemSource& src = Record(raised).source;
    EXPECT_EQ(src.kind, 0);
    EXPECT_EQ(src.view, 11);
    EXPECT_EQ(src.loop, 1);
    EXPECT_EQ(src.cel, 6);
    raised.Load(GLCelRes(3, 0, 1, 5), FALSE); // Load keeps the item's mData
    EXPECT_EQ(raised.GetCelRes().mView, 3u);
    EXPECT_EQ(raised.GetCelRes().mData, 77);
    EXPECT_EQ(src.view, 3);
    EXPECT_EQ(raised.HasVLC(), TRUE);
}

TEST_F(ScreenItemTest, BitmapItemsShowTheBitmapWhileTheKernelKnowsIt)
{
    std::uint16_t memId = 42;
    KernelMemBitmap bitmap(&memId);
    k.validMemIds[42] = true;

    GLScreenItem item(&plane, &bitmap, GLPoint(3, 4), 2, kScale);
    EXPECT_EQ(k.CallsNamed("NewScreenItem").back(), "NewScreenItem(20000,src:2/0/0/0/42,(3,4),[128,128,100,0])");
    EXPECT_GE(k.Count("DLLCheckValid"), 2); // asked before each use
    EXPECT_EQ(item.HasVLC(), FALSE);
    EXPECT_EQ(item.GetMemBmp(), &bitmap);
    EXPECT_EQ(item.GetCelRes().mLoop, -1);
    item.Show();
    item.Hide();
    EXPECT_EQ(k.CallsNamed("NewScreenItem").back(), "NewScreenItem(20000,src:2/0/0/0/42,(3,4),[128,128,100,0])");

    // A view-based item switched to a bitmap keeps its mData and loses its triple.
    GLScreenItem view(&plane, 6, 1, 1, GLPoint(0, 0), 0, kScale);
    GLCelRes res(6, 1, 1, 9);
    view.SetCelRes(res, FALSE);
    memId = 43;
    k.validMemIds[43] = true;
    view.SetMemBmp(&bitmap, TRUE);
    EXPECT_EQ(Record(view).source.kind, 2);
    EXPECT_EQ(Record(view).source.memId, 43);
    EXPECT_EQ(Record(view).source.view, 0);
    EXPECT_EQ(view.GetCelRes().mView, 0xFFFFFFFFu);
    EXPECT_EQ(view.GetCelRes().mCel, -1);
    EXPECT_EQ(view.GetCelRes().mData, 9);
    EXPECT_EQ(view.IsVisible(), TRUE);
    EXPECT_GL_ASSERT(view.GetView(), "Source/Glsi.cpp", "m_pKernelMemBitmap == 0");
    EXPECT_GL_ASSERT(view.SetCel(1, FALSE), "Source/Glsi.cpp", "m_pKernelMemBitmap == 0");
    EXPECT_GL_ASSERT(view.Load(1, 1, 1, FALSE), "Source/Glsi.cpp", "m_pKernelMemBitmap == 0");

    // Once the kernel forgets the bitmap every checked member refuses.
    k.validMemIds[43] = false;
    const char* gone = "m_pKernelMemBitmap == 0 || kernel->DLLCheckValid(*m_pKernelMemBitmap->m_pMemIDBitmap)";
    EXPECT_GL_ASSERT(item.GetPos(), "Source/Glsi.cpp", gone);
    EXPECT_GL_ASSERT(item.SetPri(1, FALSE), "Source/Glsi.cpp", gone);
    EXPECT_GL_ASSERT(item.GetMemBmp(), "Source/Glsi.cpp",
                     "kernel->DLLCheckValid(*m_pKernelMemBitmap->m_pMemIDBitmap)");
    k.validMemIds[43] = true;
}

TEST_F(ScreenItemTest, MovingToAnotherPlaneMovesRecordAndCast)
{
    GLScreenItem item(&plane, 1, 0, 0, GLPoint(5, 6), 3, kScale);
    item.SetZCoord(1, FALSE);
    item.Show();
    const std::string old = "item:" + std::to_string(item.GetId());

    std::size_t mark = k.Mark();
    item.SetPlane(&other, TRUE);
    const std::string moved = "item:" + std::to_string(item.GetId());
    EXPECT_EQ(k.CallsSince(mark), Lines({"NewScreenItem(20001,src:0/1/0/0/0,(5,5),[128,128,100,0])",
                                         "DeleteScreenItem(" + old + ")", "AddScreenItem(" + moved + ")",
                                         "UpdateScreenItem(" + moved + ")"}));
    EXPECT_EQ(item.GetPlane(), &other);
    EXPECT_EQ(item.GetPlaneId(), 20001);
    EXPECT_EQ(item.IsVisible(), TRUE);
    EXPECT_TRUE(k.ItemOnScreen(item.GetId()));
    EXPECT_FALSE(plane.GetCast()->IsInScreenItemSet(&item));
    EXPECT_FALSE(plane.GetCast()->IsInDoItSet(&item));
    EXPECT_TRUE(other.GetCast()->IsInScreenItemSet(&item));
    EXPECT_TRUE(other.GetCast()->IsInDoItSet(&item));
    // Only the priority value goes along: not its fixedness, not z.
    EXPECT_EQ(Record(item).priority, 3);
    EXPECT_EQ(Record(item).fixedPriority, 0);
    EXPECT_EQ(Record(item).z, 0);

    // SetPlaneId alone moves the record, hidden until the next update, and
    // leaves the casts alone; a hidden record is deleted all the same.
    item.SetPlaneId(20000, FALSE);
    EXPECT_EQ(item.IsVisible(), FALSE);
    EXPECT_EQ(item.GetPlaneId(), 20000);
    EXPECT_TRUE(other.GetCast()->IsInScreenItemSet(&item));
    const std::string hidden = "item:" + std::to_string(item.GetId());
    mark = k.Mark();
    item.SetPlaneId(20001, FALSE);
    EXPECT_EQ(k.CallsSince(mark)[1], "DeleteScreenItem(" + hidden + ")");
    item.Update();
    EXPECT_EQ(item.IsVisible(), TRUE);

    EXPECT_GL_ASSERT(item.SetPlaneId(20001, FALSE), "Source/Glsi.cpp", "lPlaneIdNew != m_pScreenItem->PlaneId()");
    EXPECT_GL_ASSERT(item.SetPlaneId(-1, FALSE), "Source/Glsi.cpp", "lPlaneIdNew >= 0");
    EXPECT_GL_ASSERT(item.SetPlane(nullptr, FALSE), "Source/Glsi.cpp", "pPlane");
}

TEST_F(ScreenItemTest, NowSeenAndOnPointAskTheKernelOnlyForAVisibleItem)
{
    GLScreenItem item(&plane, 1, 0, 0, GLPoint(10, 10), 0, kScale);
    ZOR_Rect rect(1, 2, 3, 4);
    std::size_t mark = k.Mark();
    EXPECT_EQ(item.NowSeenRect(&rect), 0);
    EXPECT_TRUE(k.CallsSince(mark).empty());
    EXPECT_EQ(rect.left, 1);
    EXPECT_EQ(rect.bottom, 4);
    EXPECT_GL_ASSERT(item.OnPoint(GLPoint(10, 10), FALSE), "Source/Glsi.cpp", "m_fVisible == TRUE");

    item.Show();
    k.nowSeen[item.GetId()] = ZOR_Rect(10, 10, 29, 39);
    EXPECT_EQ(item.NowSeenRect(&rect), 1);
    EXPECT_EQ(rect.right, 29);
    EXPECT_EQ(rect.bottom, 39);
    EXPECT_EQ(item.OnPoint(GLPoint(29, 39), TRUE), 1);
    EXPECT_EQ(item.OnPoint(GLPoint(30, 39), FALSE), 0);
    EXPECT_EQ(k.CallsNamed("ScreenItemOnPoint").front(),
              "ScreenItemOnPoint((29,39),20000," + std::to_string(item.GetId()) + ",1)");
    EXPECT_GL_ASSERT(item.OnPoint(GLPoint(0, 0), 2), "Source/Glsi.cpp", "fCheckSkip == TRUE || fCheckSkip == FALSE");
}

TEST_F(ScreenItemTest, AnItemBuiltLaterByInitIsTheSame)
{
    GLScreenItem* item = new GLScreenItem;
    EXPECT_EQ(item->GetPlane(), nullptr);
    EXPECT_EQ(item->IsVisible(), FALSE);
    EXPECT_GL_ASSERT(item->GetPos(), "Source/Glsi.cpp", "m_pScreenItem != 0");
    item->Init(&plane, 2, 1, 0, GLPoint(7, 8), 4, kScale);
    EXPECT_EQ(item->GetPri(), 4);
    EXPECT_EQ(item->GetPlane(), &plane);
    EXPECT_TRUE(plane.GetCast()->IsInScreenItemSet(item));
    EXPECT_GL_ASSERT(item->Init(&plane, 2, 1, 0, GLPoint(7, 8), 4, kScale), "Source/Glsi.cpp",
                     "m_pScreenItem == 0");
    // Objects and kernel records both come back.
    EXPECT_EQ(k.ItemCount(), 1u);
    delete item;
    EXPECT_EQ(k.ItemCount(), 0u);
    GLScreenItem empty; // never initialised: nothing to give back
}

TEST_F(ScreenItemTest, MisuseEndsWithTheExactReport)
{
    const char* file = "Source/Glsi.cpp";
    std::uint16_t memId = 7;
    KernelMemBitmap unknown(&memId); // the kernel does not know id 7
    EXPECT_GL_ASSERT(GLScreenItem(&plane, -1, 0, 0, GLPoint(0, 0), 0, kScale), file, "iView >= 0");
    EXPECT_GL_ASSERT(GLScreenItem(&plane, 0, -1, 0, GLPoint(0, 0), 0, kScale), file, "iLoop >= 0");
    EXPECT_GL_ASSERT(GLScreenItem(&plane, 0, 0, -1, GLPoint(0, 0), 0, kScale), file, "iCel >= 0");
    EXPECT_GL_ASSERT(GLScreenItem(&plane, 0, 0, 0, GLPoint(0, 0), -2, kScale), file,
                     "iPriority == -9999 || iPriority >= -1");
    EXPECT_GL_ASSERT(GLScreenItem(nullptr, 0, 0, 0, GLPoint(0, 0), 0, kScale), file, "pPlane != NULL");
    EXPECT_GL_ASSERT(GLScreenItem(nullptr, &unknown, GLPoint(0, 0), 0, kScale), file, "pPlane != NULL");
    EXPECT_GL_ASSERT(GLScreenItem(&plane, static_cast<KernelMemBitmap*>(nullptr), GLPoint(0, 0), 0, kScale), file,
                     "pKernelMemBitmap != 0");
    EXPECT_GL_ASSERT(GLScreenItem(&plane, &unknown, GLPoint(0, 0), 0, kScale), file,
                     "kernel->DLLCheckValid(*pKernelMemBitmap->m_pMemIDBitmap)");

    GLScreenItem item(&plane, 1, 0, 0, GLPoint(0, 0), 0, kScale);
    EXPECT_GL_ASSERT(item.SetPri(-2, TRUE), file, "iPriorityNew >= -1");
    EXPECT_GL_ASSERT(item.SetFloatPriority(2), file, "fDoUpdate == TRUE || fDoUpdate == FALSE");
    EXPECT_GL_ASSERT(item.GetInsetRect(), file, "m_pScreenItem->useInsetRect == TRUE");
    EXPECT_GL_ASSERT(item.SetInsetRect(ZOR_Rect(5, 0, 4, 0), FALSE), file, "!ZOR_RectInset.IsEmpty()");
    EXPECT_GL_ASSERT(item.SetView(-1, FALSE), file, "iView >= 0");
    EXPECT_GL_ASSERT(item.SetLoop(-1, FALSE), file, "iLoop >= 0");
    EXPECT_GL_ASSERT(item.SetCel(-1, FALSE), file, "iCel >= 0");
    EXPECT_GL_ASSERT(item.Load(0, 0, -1, FALSE), file, "iCel >= 0");
    EXPECT_GL_ASSERT(item.GetMemBmp(), file, "m_pKernelMemBitmap != 0");
    EXPECT_GL_ASSERT(item.SetMemBmp(nullptr, FALSE), file, "m_pKernelMemBitmap != 0");
    EXPECT_GL_ASSERT(item.SetMemBmp(&unknown, FALSE), file,
                     "kernel->DLLCheckValid(*m_pKernelMemBitmap->m_pMemIDBitmap)");
    // A one-pixel inset is not empty.
    item.SetInsetRect(ZOR_Rect(4, 4, 4, 4), FALSE);
    EXPECT_EQ(item.GetInsetRect().left, 4);
}

} // namespace
