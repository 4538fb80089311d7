// Points and rectangles.
#include "QuindleTest.h"
#include "glpoint.h"
#include "glrect.h"

namespace {

using GeometryTest = QuindleTest;

TEST_F(GeometryTest, KernelRecordsStartWithTheNotSetMarker)
{
    ZOR_Point point;
    EXPECT_EQ(point.x, -1985229329);
    EXPECT_EQ(point.y, -1985229329);
    ZOR_Rect rect;
    EXPECT_EQ(rect.left, -1985229329);
    EXPECT_EQ(rect.bottom, -1985229329);
    EXPECT_FALSE(ZOR_Rect(5, 5, 5, 5).IsEmpty());
    EXPECT_TRUE(ZOR_Rect(5, 5, 4, 5).IsEmpty());
    EXPECT_TRUE(ZOR_Rect(5, 5, 5, 4).IsEmpty());
}

TEST_F(GeometryTest, PointsOwnTheirKernelPoint)
{
    GLPoint source(2, 3);
    GLPoint copy(source);
    copy.SetX(9);
    EXPECT_EQ(source.GetX(), 2);
    EXPECT_NE(&source.GetZORPoint(), &copy.GetZORPoint());
    copy = source; // assignment copies into the existing kernel point
    EXPECT_EQ(copy.GetX(), 2);
    EXPECT_EQ(k.Ledger().LiveCount(), 2u);
    // Each point's block carries the header it was allocated in.
    EXPECT_EQ(k.Ledger().LiveBlocks()[0].file, "include/glpoint.h");

    GLPoint* heap = new GLPoint(ZOR_Point(4, 5)); // a plain new still goes through the kernel
    EXPECT_EQ(k.Ledger().LiveCount(), 4u);
    delete heap;
    EXPECT_EQ(k.Ledger().LiveCount(), 2u);
}

TEST_F(GeometryTest, ArithmeticLeavesTheOperandOrChangesItAsTheOperatorSays)
{
    GLPoint p(2, 3);
    const std::uint64_t before = k.Ledger().TotalAllocations();
    GLPoint sum = p + 1;
    EXPECT_EQ(k.Ledger().TotalAllocations() - before, 1u); // the result's own point, nothing more
    EXPECT_TRUE(sum == GLPoint(3, 4));
    EXPECT_TRUE(p == ZOR_Point(2, 3));
    p += 1;
    EXPECT_TRUE(p == GLPoint(3, 4));
    p -= ZOR_Point(1, 1);
    p *= 3;
    EXPECT_TRUE(p == GLPoint(6, 9));
    EXPECT_TRUE((GLPoint(7, -7) / 2) == GLPoint(3, -3));
    GLPoint q(7, 7);
    q /= -2;
    EXPECT_TRUE(q == GLPoint(-3, -3));
    EXPECT_TRUE((q - GLPoint(1, 2)) == GLPoint(-4, -5));
    EXPECT_TRUE((q + ZOR_Point(3, 3)) == ZOR_Point(0, 0));
    EXPECT_EQ(q != GLPoint(-3, -2), 1);
    EXPECT_EQ(q != ZOR_Point(-3, -3), 0);
    EXPECT_EQ(q == GLPoint(-3, -2), 0);
}

TEST_F(GeometryTest, RectangleEdgesAreInclusive)
{
    GLRect screen;
    EXPECT_EQ(screen.OnMe(639, 479), 1);
    EXPECT_EQ(screen.OnMe(640, 0), 0);
    EXPECT_EQ(screen.OnMe(0, -1), 0);
    EXPECT_EQ(screen.OnMe(GLPoint(0, 0)), 1);
    GLRect left;
    left.SetRect(0, 0, 10, 10);
    GLRect right(ZOR_Rect(10, 5, 20, 6));
    EXPECT_EQ(left.OnMe(right), 1); // touching along one column overlaps
    right.SetRect(11, 0, 20, 10);
    EXPECT_EQ(left.OnMe(right), 0);
    right = ZOR_Rect(0, 11, 10, 12);
    EXPECT_EQ(left.OnMe(right), 0);

    ZOR_Rect* made = left.MakeZOR();
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->right, 10);
    EXPECT_EQ(k.Ledger().LiveBlocks()[0].file, "include/glrect.h");
    GLFreeMemory(made);
}

} // namespace
