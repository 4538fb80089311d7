// Kernel polygons and clickable polygon regions.
#include "QuindleTest.h"
#include "glcast.h"
#include "glevent.h"
#include "glplane.h"
#include "glpoly.h"

namespace {

class PolyTest : public QuindleTest {
protected:
    PolyTest()
    {
        plane = new GLColoredPlane(ZOR_Rect(0, 0, 639, 479), 0, 1, 0, ZOR_Point(0, 0));
        other = new GLColoredPlane(ZOR_Rect(100, 100, 300, 300), 0, 2, 0, ZOR_Point(0, 0));
    }
    ~PolyTest() override
    {
        delete other;
        delete plane;
    }
    AbsGLPlane* plane;
    AbsGLPlane* other;
    ZOR_Point square[4] = {ZOR_Point(0, 0), ZOR_Point(10, 0), ZOR_Point(10, 10), ZOR_Point(0, 10)};
};

TEST_F(PolyTest, OnTopPriorityIsResolvedWhenThePolygonIsMade)
{
    k.topScreenItemPriority = 40;
    {
        KernelPolygon polygon(plane->GetId(), square, 4, kPriorityOnTop, 7, ZOR_Line::tSolid, 0, 1, True);
        EXPECT_EQ(k.CallsNamed("AddPolygon").back(), "AddPolygon(20000,4,41,7,0,0,1,1)");
        // An update passes the priority as it is, and accepts colour -1.
        polygon.Update(square, 3, kPriorityOnTop, -1, ZOR_Line::tPattern, 2, 3, False);
        EXPECT_EQ(k.CallsNamed("UpdatePolygon").back(), "UpdatePolygon(20000,0,3,-9999,-1,2,2,3,0)");
    }
    EXPECT_EQ(k.CallsNamed("DeletePolygon").back(), "DeletePolygon(20000,0)");
    k.topScreenItemPriority = -5;
    KernelPolygon low;
    low.Init(plane->GetId(), square, 4, kPriorityOnTop, 7, ZOR_Line::tDashed, 0, 2, False);
    EXPECT_EQ(k.CallsNamed("AddPolygon").back(), "AddPolygon(20000,4,0,7,1,0,2,0)");
    // A copy names no kernel polygon, so the kernel polygon is deleted once.
    {
        KernelPolygon copy(low);
        EXPECT_EQ(copy.GetPolygonId(), -1);
    }
    EXPECT_EQ(k.Count("DeletePolygon"), 1);
}

TEST_F(PolyTest, ParameterChecksComeInOrder)
{
    const std::int32_t id = plane->GetId();
    const char* file = "Source/Kpoly.cpp";
    EXPECT_GL_ASSERT(KernelPolygon(-1, square, 4, 0, 0, 0, 0, 1, True), file, "lPlaneId >= 0");
    EXPECT_GL_ASSERT(KernelPolygon(id, nullptr, 4, 0, 0, 0, 0, 1, True), file, "pointArray != 0");
    EXPECT_GL_ASSERT(KernelPolygon(id, square, 2, 0, 0, 0, 0, 1, True), file, "iSize > 2");
    EXPECT_GL_ASSERT(KernelPolygon(id, square, 4, 0, -1, 0, 0, 1, True), file, "iColor >= 0 && iColor <= 255");
    EXPECT_GL_ASSERT(KernelPolygon(id, square, 4, -2, 0, 0, 0, 1, True), file, "iPriority == -9999 || iPriority >= -1");
    EXPECT_GL_ASSERT(KernelPolygon(id, square, 4, 0, 0, 3, 0, 1, True), file,
                     "iStyle == ZOR_Line::tSolid || iStyle == ZOR_Line::tDashed || iStyle == ZOR_Line::tPattern");
    EXPECT_GL_ASSERT(
        KernelPolygon(id, square, 4, 0, 0, ZOR_Line::tPattern, 0, 1, True), file,
        "(iStyle == ZOR_Line::tPattern && iPattern > 0) || (iStyle != ZOR_Line::tPattern && iPattern == 0)");
    EXPECT_GL_ASSERT(
        KernelPolygon(id, square, 4, 0, 0, ZOR_Line::tSolid, 3, 1, True), file,
        "(iStyle == ZOR_Line::tPattern && iPattern > 0) || (iStyle != ZOR_Line::tPattern && iPattern == 0)");
    EXPECT_GL_ASSERT(KernelPolygon(id, square, 4, 0, 0, 0, 0, 0, True), file, "iThickness > 0");
    EXPECT_GL_ASSERT(KernelPolygon(id, square, 4, 0, 0, 0, 0, 1, 2), file, "fClosePoly == True || fClosePoly == False");
    KernelPolygon made(id, square, 4, 0, 0, 0, 0, 1, True);
    EXPECT_GL_ASSERT(made.Init(id, square, 4, 0, 0, 0, 0, 1, True), file, "m_lPlaneId < 0");
    KernelPolygon none;
    EXPECT_GL_ASSERT(none.Update(square, 4, 0, 0, 0, 0, 1, True), file, "m_lPlaneId >= 0");
    EXPECT_GL_ASSERT(made.Update(square, 4, 0, 256, 0, 0, 1, True), file, "iColor >= -1 && iColor <= 255");
}

TEST_F(PolyTest, InputAndDisplayAreSeparateSwitches)
{
    GLPoint points[3] = {GLPoint(0, 0), GLPoint(20, 0), GLPoint(0, 20)};
    GLPoly poly(plane, points, 3);
    // Never shown, never initialised: the hit test still asks the kernel.
    EXPECT_TRUE(poly.OnMe(GLPoint(5, 5)));
    EXPECT_TRUE(poly.OnMe(GLPoint(10, 10))); // on the edge counts as inside
    EXPECT_FALSE(poly.OnMe(GLPoint(15, 15)));
    EXPECT_FALSE(plane->GetCast()->IsInEventSet(&poly));
    poly.Init();
    EXPECT_TRUE(plane->GetCast()->IsInEventSet(&poly));

    int selected = 0;
    static int* counter;
    counter = &selected;
    poly.SetSelectFunction([](GLEvent*, GLObject*) { (*counter)++; });
    k.PushEvent(kEventPointerDown, 0, 0, 4, 4);
    GLEvent event;
    event.Refresh();
    EXPECT_TRUE(plane->GetCast()->HandleEvent(&event));
    EXPECT_EQ(selected, 1);

    EXPECT_FALSE(poly.IsVisible());
    poly.SetColor(300, TRUE); // stored only while hidden
    poly.SetColor(9, TRUE);
    poly.SetPri(3, FALSE);
    poly.Show();
    EXPECT_TRUE(poly.IsVisible());
    EXPECT_EQ(k.CallsNamed("AddPolygon").back(), "AddPolygon(20000,3,3,9,0,0,1,1)");
    poly.SetPri(4, TRUE);
    EXPECT_EQ(k.CallsNamed("UpdatePolygon").back(), "UpdatePolygon(20000,0,3,4,9,0,0,1,1)");

    // Moving a shown polygon draws it on the new plane, with input there only.
    poly.SetPlane(other);
    EXPECT_EQ(k.CallsNamed("DeletePolygon").back(), "DeletePolygon(20000,0)");
    EXPECT_EQ(k.CallsNamed("AddPolygon").back(), "AddPolygon(20001,3,4,9,0,0,1,1)");
    EXPECT_FALSE(plane->GetCast()->IsInEventSet(&poly));
    EXPECT_TRUE(other->GetCast()->IsInEventSet(&poly));
    EXPECT_GL_ASSERT(poly.SetPlane(other), "Source/Glpoly.cpp", "pPlane != mpPlane");
    EXPECT_GL_ASSERT(poly.Show(), "Source/Glpoly.cpp", "NULL == mpKPolygon");
    poly.Hide();
    EXPECT_GL_ASSERT(poly.Hide(), "Source/Glpoly.cpp", "mpKPolygon");
    EXPECT_GL_ASSERT(poly.Update(), "Source/Glpoly.cpp", "mpKPolygon");
    poly.Show();
}

TEST_F(PolyTest, PointsAreCopiedAndChecked)
{
    GLPoint a(1, 1), b(9, 1), c(5, 8);
    GLListAsArray<GLPoint> list(3, 1);
    list.AddToEnd(&a);
    list.AddToEnd(&b);
    list.AddToEnd(&c);
    GLPoly poly(plane, list);
    a.SetX(100); // the polygon keeps its own copy
    EXPECT_TRUE(poly.OnMe(GLPoint(5, 3)));
    EXPECT_EQ(poly.GetPointCount(), 3);
    GLPoly copy(poly); // a copy has its own points, hidden, without input
    EXPECT_TRUE(copy.OnMe(GLPoint(5, 3)));
    EXPECT_FALSE(plane->GetCast()->IsInEventSet(&copy));

    GLPoly empty(plane);
    EXPECT_GL_ASSERT(empty.Init(), "Source/Glpoly.cpp", "miPointCount");
    GLListAsArray<GLPoint> none(1, 1);
    EXPECT_GL_ASSERT(GLPoly(plane, none), "Source/Kdllfix.cpp", "size > 0");
    EXPECT_GL_ASSERT(GLPoly(nullptr), "Source/Glpoly.cpp", "pPlane");
    EXPECT_GL_ASSERT(GLPoly(plane, nullptr, 3), "Source/Glpoly.cpp", "pPointArray");
    GLPoint one(0, 0);
    EXPECT_GL_ASSERT(GLPoly(plane, &one, 0), "Source/Glpoly.cpp", "iPointCount");
    GLPoly two(plane, &one, 1);
    EXPECT_GL_ASSERT(two.Show(), "Source/Kpoly.cpp", "iSize > 2");
}

} // namespace
