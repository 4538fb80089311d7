// Screen items: the kernel calls they make, the update protocol, hiding by a
// replacement record, moving between planes, and the checks on misuse.
#include "QuindleTest.h"
#include "glcast.h"
#include "glplane.h"
#include "glsi.h"

#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

class ScreenItemTest : public QuindleTest {
protected:
    // Planes 20000 and 20001, made before and destroyed after every item.
    GLColoredPlane plane{ZOR_Rect(0, 0, 639, 479), 0, 1, 0, ZOR_Point(0, 0)};
    GLColoredPlane other{ZOR_Rect(100, 100, 299, 199), 5, 2, 0, ZOR_Point(0, 0)};

    KernelScreenItemRecord& Record(GLScreenItem& item) { return *k.Item(item.GetId()); }
    static std::string Self(GLScreenItem& item) { return "item:" + std::to_string(item.GetId()); }
};

TEST_F(ScreenItemTest, CreateShowUpdateHideShowDestroyIsThisExactKernelConversation)
{
    std::size_t mark = k.Mark();
    GLScreenItem* item = new GLScreenItem(&plane, 5, 1, 2, GLPoint(10, 20), 3, kFullSizeScale);
    GLObject* asObject = item;
    EXPECT_EQ(k.CallsSince(mark), Lines({"NewScreenItem(20000,src:0/5/1/2/0,(10,20),[128,128,100,0])"}));
    EXPECT_TRUE(plane.GetCast()->IsInDoItSet(item));
    EXPECT_FALSE(k.ItemOnScreen(item->GetId()));
    const std::string first = Self(*item);

    mark = k.Mark();
    item->Show();
    item->Show(); // visible already: nothing
    item->SetPos(GLPoint(30, 40), TRUE);
    item->Hide();
    item->Hide(); // hidden already: nothing
    const std::string second = Self(*item);
    item->Show();
    EXPECT_EQ(k.CallsSince(mark), Lines({"AddScreenItem(" + first + ")", "UpdateScreenItem(" + first + ")",
                                         "NewScreenItem(20000,src:0/5/1/2/0,(30,40),[128,128,100,0])",
                                         "DeleteScreenItem(" + first + ")", "AddScreenItem(" + second + ")"}));

    // A visible item is taken off the screen; a hidden one is only disposed of.
    mark = k.Mark();
    delete item;
    EXPECT_EQ(k.CallsSince(mark), Lines({"DeleteScreenItem(" + second + ")"}));
    EXPECT_FALSE(plane.GetCast()->IsInCast(asObject));
    item = GL_NEW GLScreenItem(&plane, 5, 0, 0, GLPoint(0, 0), 3, kFullSizeScale);
    item->Show();
    item->Hide();
    const std::string third = Self(*item);
    mark = k.Mark();
    delete item;
    EXPECT_EQ(k.CallsSince(mark), Lines({"DisposeScreenItem(" + third + ")"}));
    EXPECT_EQ(k.ItemCount(), 0u);
}

TEST_F(ScreenItemTest, HideThenShowKeepsPositionPriorityScaleZAndInset)
{
    GLScreenItem item(&plane, 4, 2, 1, GLPoint(50, 60), 7, kFullSizeScale);
    item.SetScale(ScaleInfo{64, 64, 100, 1}, FALSE);
    item.SetZCoord(5, FALSE);
    item.SetInsetRect(ZOR_Rect(1, 2, 30, 40), FALSE);
    item.Show();
    Record(item).kernelValue = 0xBEEF1234u;
    item.Hide();
    item.Show();

    const KernelScreenItemRecord& r = Record(item);
    EXPECT_TRUE(k.ItemOnScreen(item.GetId()));
    EXPECT_EQ(r.pos.y, 55);
    EXPECT_EQ(r.priority, 7);
    EXPECT_EQ(r.fixedPriority, 1);
    EXPECT_EQ(r.scale.mode, 1);
    EXPECT_EQ(r.z, 5);
    EXPECT_EQ(r.insetRect.bottom, 40);
    EXPECT_EQ(r.kernelValue, 0xBEEF1234u);
    EXPECT_EQ(r.source.loop, 2);

    // A floating priority stays floating at the kernel's value; no inset stays none.
    GLScreenItem floating(&plane, 4, 0, 0, GLPoint(0, 0), kPriorityOnTop, kFullSizeScale);
    floating.Show();
    Record(floating).priority = 12;
    floating.Hide();
    floating.Show();
    EXPECT_EQ(Record(floating).fixedPriority, 0);
    EXPECT_EQ(Record(floating).priority, 12);
    EXPECT_EQ(Record(floating).useInsetRect, 0);
}

TEST_F(ScreenItemTest, ChangesWaitForTheNextUpdateAndOnlyAVisibleItemAsksWhatIsSeen)
{
    GLScreenItem item(&plane, 1, 0, 0, GLPoint(0, 0), 0, kFullSizeScale);
    const std::string self = Self(item);
    ZOR_Rect rect(1, 2, 3, 4);

    std::size_t mark = k.Mark();
    EXPECT_EQ(item.NowSeenRect(&rect), 0); // hidden: the kernel is not asked
    EXPECT_EQ(rect.right, 3);
    EXPECT_GL_ASSERT(item.OnPoint(GLPoint(0, 0), FALSE), "Source/Glsi.cpp", "m_fVisible == TRUE");
    item.Update(); // nothing pending: does nothing, does not show
    item.SetPos(GLPoint(8, 9), FALSE);
    EXPECT_TRUE(k.CallsSince(mark).empty());
    item.Update(); // pending: shows and pushes
    EXPECT_EQ(k.CallsSince(mark), Lines({"AddScreenItem(" + self + ")", "UpdateScreenItem(" + self + ")"}));

    // The record changes at once; the kernel is told at the update.
    mark = k.Mark();
    item.SetPos(GLPoint(20, 21), FALSE);
    item.SetPri(4, FALSE);
    EXPECT_EQ(Record(item).pos.x, 20);
    EXPECT_TRUE(k.CallsSince(mark).empty());
    item.Update();
    item.Update();
    item.SetPos(GLPoint(1, 1), 2); // any non-zero flag pushes
    item.ForceUpdate();            // pushes with nothing set
    EXPECT_EQ(k.CallsSince(mark), Lines(3, "UpdateScreenItem(" + self + ")"));

    // Show on a hidden item with a change pending adds and updates.
    item.Hide();
    item.SetCel(3, FALSE);
    mark = k.Mark();
    item.Show();
    EXPECT_EQ(k.CallsSince(mark), Lines({"AddScreenItem(" + Self(item) + ")", "UpdateScreenItem(" + Self(item) + ")"}));
    EXPECT_EQ(Record(item).source.cel, 3);

    // Visible, the item asks the kernel.
    k.nowSeen[item.GetId()] = ZOR_Rect(10, 10, 29, 39);
    EXPECT_EQ(item.NowSeenRect(&rect), 1);
    EXPECT_EQ(rect.right, 29);
    EXPECT_EQ(item.OnPoint(GLPoint(29, 39), TRUE), 1);
    EXPECT_EQ(item.OnPoint(GLPoint(30, 39), FALSE), 0);
    EXPECT_EQ(k.CallsNamed("ScreenItemOnPoint").front(),
              "ScreenItemOnPoint((29,39),20000," + std::to_string(item.GetId()) + ",1)");
}

TEST_F(ScreenItemTest, PriorityZAndThePicturesFourthValue)
{
    GLScreenItem item(&plane, 1, 0, 0, GLPoint(100, 100), -1, kFullSizeScale);
    EXPECT_EQ(Record(item).fixedPriority, 1);
    item.SetPri(5, TRUE);
    item.SetFloatPriority(TRUE);
    EXPECT_EQ(Record(item).fixedPriority, 0);

    // Each z lowers y by itself: twice 10 is 20 in all.
    item.SetZCoord(10, FALSE);
    item.SetZCoord(10, FALSE);
    EXPECT_EQ(Record(item).pos.y, 80);

    // SetCelRes takes mData; the other picture setters keep it.
    GLCelRes res(9, 2, 4, 77);
    item.SetCelRes(res, FALSE);
    item.SetView(11, FALSE);
    item.Load(GLCelRes(3, 1, 6, 5), FALSE);
    EXPECT_EQ(item.GetCelRes().mData, 77);
    EXPECT_EQ(Record(item).source.view, 3);
}

TEST_F(ScreenItemTest, BitmapItemsWorkOnlyWhileTheKernelKnowsTheBitmap)
{
    std::uint16_t memId = 42;
    KernelMemBitmap bitmap(&memId);
    k.validMemIds[42] = true;
    GLScreenItem item(&plane, &bitmap, GLPoint(3, 4), 2, kFullSizeScale);
    EXPECT_EQ(k.CallsNamed("NewScreenItem").back(), "NewScreenItem(20000,src:2/0/0/0/42,(3,4),[128,128,100,0])");
    EXPECT_EQ(item.HasVLC(), FALSE);
    item.Show();
    item.Hide();
    EXPECT_EQ(k.CallsNamed("NewScreenItem").back(), "NewScreenItem(20000,src:2/0/0/0/42,(3,4),[128,128,100,0])");

    // A view-based item switched to a bitmap loses its triple, keeps mData.
    GLScreenItem view(&plane, 6, 1, 1, GLPoint(0, 0), 0, kFullSizeScale);
    GLCelRes res(6, 1, 1, 9);
    view.SetCelRes(res, FALSE);
    memId = 43;
    k.validMemIds[43] = true;
    view.SetMemBmp(&bitmap, TRUE);
    EXPECT_EQ(Record(view).source.memId, 43);
    EXPECT_EQ(view.GetCelRes().mView, 0xFFFFFFFFu);
    EXPECT_EQ(view.GetCelRes().mData, 9);
    EXPECT_GL_ASSERT(view.GetView(), "Source/Glsi.cpp", "m_pKernelMemBitmap == 0");
    EXPECT_GL_ASSERT(view.SetCel(1, FALSE), "Source/Glsi.cpp", "m_pKernelMemBitmap == 0");

    k.validMemIds[43] = false;
    const char* gone = "m_pKernelMemBitmap == 0 || kernel->DLLCheckValid(*m_pKernelMemBitmap->m_pMemIDBitmap)";
    EXPECT_GL_ASSERT(item.GetPos(), "Source/Glsi.cpp", gone);
    EXPECT_GL_ASSERT(item.SetPri(1, FALSE), "Source/Glsi.cpp", gone);
    EXPECT_GL_ASSERT(item.GetMemBmp(), "Source/Glsi.cpp", "kernel->DLLCheckValid(*m_pKernelMemBitmap->m_pMemIDBitmap)");
    k.validMemIds[43] = true;
}

TEST_F(ScreenItemTest, SetPlaneMovesRecordAndCastAndShowsTheItemThere)
{
    GLScreenItem item(&plane, 1, 0, 0, GLPoint(5, 6), 3, kFullSizeScale);
    item.SetZCoord(1, FALSE);
    item.Show();
    const std::string old = Self(item);

    std::size_t mark = k.Mark();
    item.SetPlane(&other, TRUE);
    const std::string moved = Self(item);
    EXPECT_EQ(k.CallsSince(mark),
              Lines({"NewScreenItem(20001,src:0/1/0/0/0,(5,5),[128,128,100,0])", "DeleteScreenItem(" + old + ")",
                     "AddScreenItem(" + moved + ")", "UpdateScreenItem(" + moved + ")"}));
    EXPECT_EQ(item.GetPlane(), &other);
    EXPECT_FALSE(plane.GetCast()->IsInCast(&item));
    EXPECT_TRUE(other.GetCast()->IsInDoItSet(&item));
    // Only the priority value goes along: not its fixedness, not z.
    EXPECT_EQ(Record(item).priority, 3);
    EXPECT_EQ(Record(item).fixedPriority, 0);
    EXPECT_EQ(Record(item).z, 0);

    // SetPlaneId moves the record only, and leaves it hidden until the update.
    item.SetPlaneId(20000, FALSE);
    EXPECT_EQ(item.IsVisible(), FALSE);
    EXPECT_TRUE(other.GetCast()->IsInScreenItemSet(&item));
    item.Update();
    EXPECT_TRUE(k.ItemOnScreen(item.GetId()));
    EXPECT_GL_ASSERT(item.SetPlaneId(20000, FALSE), "Source/Glsi.cpp", "lPlaneIdNew != m_pScreenItem->PlaneId()");
}

TEST_F(ScreenItemTest, MisuseEndsWithTheExactReport)
{
    const char* file = "Source/Glsi.cpp";
    std::uint16_t memId = 7;
    KernelMemBitmap unknown(&memId); // the kernel does not know id 7
    const GLPoint origin;
    EXPECT_GL_ASSERT(GLScreenItem(&plane, -1, 0, 0, origin, 0, kFullSizeScale), file, "iView >= 0");
    EXPECT_GL_ASSERT(GLScreenItem(&plane, 0, 0, -1, origin, 0, kFullSizeScale), file, "iCel >= 0");
    EXPECT_GL_ASSERT(GLScreenItem(&plane, 0, 0, 0, origin, -2, kFullSizeScale), file, "iPriority == -9999 || iPriority >= -1");
    EXPECT_GL_ASSERT(GLScreenItem(nullptr, 0, 0, 0, origin, 0, kFullSizeScale), file, "pPlane != NULL");
    EXPECT_GL_ASSERT(GLScreenItem(&plane, static_cast<KernelMemBitmap*>(nullptr), origin, 0, kFullSizeScale), file,
                     "pKernelMemBitmap != 0");
    EXPECT_GL_ASSERT(GLScreenItem(&plane, &unknown, origin, 0, kFullSizeScale), file,
                     "kernel->DLLCheckValid(*pKernelMemBitmap->m_pMemIDBitmap)");

    GLScreenItem empty; // no record until Init: only Init and destruction
    EXPECT_GL_ASSERT(empty.GetPos(), file, "m_pScreenItem != 0");
    empty.Init(&plane, 2, 1, 0, origin, 4, kFullSizeScale);
    EXPECT_TRUE(plane.GetCast()->IsInScreenItemSet(&empty));
    EXPECT_GL_ASSERT(empty.Init(&plane, 2, 1, 0, origin, 4, kFullSizeScale), file, "m_pScreenItem == 0");

    GLScreenItem item(&plane, 1, 0, 0, origin, 0, kFullSizeScale);
    EXPECT_GL_ASSERT(item.SetPri(-2, TRUE), file, "iPriorityNew >= -1");
    EXPECT_GL_ASSERT(item.SetFloatPriority(2), file, "fDoUpdate == TRUE || fDoUpdate == FALSE");
    EXPECT_GL_ASSERT(item.OnPoint(origin, 2), file, "fCheckSkip == TRUE || fCheckSkip == FALSE");
    EXPECT_GL_ASSERT(item.GetInsetRect(), file, "m_pScreenItem->useInsetRect == TRUE");
    EXPECT_GL_ASSERT(item.SetInsetRect(ZOR_Rect(5, 0, 4, 0), FALSE), file, "!ZOR_RectInset.IsEmpty()");
    EXPECT_GL_ASSERT(item.SetLoop(-1, FALSE), file, "iLoop >= 0");
    EXPECT_GL_ASSERT(item.GetMemBmp(), file, "m_pKernelMemBitmap != 0");
    EXPECT_GL_ASSERT(item.SetMemBmp(nullptr, FALSE), file, "m_pKernelMemBitmap != 0");
    EXPECT_GL_ASSERT(item.SetPlaneId(-1, FALSE), file, "lPlaneIdNew >= 0");
    EXPECT_GL_ASSERT(item.SetPlane(nullptr, FALSE), file, "pPlane");
}

} // namespace
