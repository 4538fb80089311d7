// Planes: what the kernel sees when a plane is made, changed and destroyed,
// and the checks that guard misuse.
#include "QuindleTest.h"
#include "glcast.h"
#include "glplane.h"

#include <string>
#include <vector>

namespace {

using PlaneTest = QuindleTest;
using Calls = std::vector<std::string>;

const ZOR_Point kVanish(320, 100);
const char* kFile = "Source/Glplane.cpp";

TEST_F(PlaneTest, EveryKindAndFormMakesItsKernelPlaneTheSameWay)
{
    std::size_t mark = k.Mark();
    {
        GLColoredPlane colored(ZOR_Rect(0, 0, 639, 479), 5, 3, 1, kVanish);
        EXPECT_EQ(k.CallsSince(mark), (Calls{"NewPlane(-1,5,(0,0,639,479),1,3,(320,100),0,0)", "AddPlane(plane:20000)",
                                             "PlaneCreated(plane:20000)"}));
        mark = k.Mark();
    }
    EXPECT_EQ(k.CallsSince(mark), Calls{"DeletePlane(20000)"});

    GLPicturePlane picture(10, 20, 309, 219, 120, 2, 4, TRUE, kVanish);
    GLTransparentPlane transparent(ZOR_Rect(1, 2, 3, 4), 0, 2, kVanish);
    GLOpaquePlane opaque(5, 6, 7, 8, 255, -1, 3, kVanish);
    EXPECT_EQ(picture.GetId(), 20001);

    // Priority on top goes above the highest plane, not the latest.
    mark = k.Mark();
    GLColoredPlane top(0, 0, 9, 9, 0, kPriorityOnTop, 0, kVanish);
    EXPECT_EQ(k.CallsSince(mark)[0], "TopPlanePriority()");
    EXPECT_EQ(k.CallsSince(mark)[1], "NewPlane(-1,0,(0,0,9,9),0,3,(320,100),0,0)");

    // The Init forms take their arguments in their own order: the rectangle
    // form of the coloured plane's Init takes the window index before the priority.
    GLColoredPlane byRect, byEdges;
    EXPECT_EQ(byRect.GetCast(), nullptr);
    byRect.Init(ZOR_Rect(0, 0, 99, 99), 7, 2, 9, kVanish);
    byEdges.Init(0, 0, 99, 99, 7, 9, 2, kVanish);
    GLPicturePlane pictureRect, pictureEdges;
    pictureRect.Init(ZOR_Rect(0, 0, 99, 99), 30, 9, 2, FALSE, kVanish);
    pictureEdges.Init(0, 0, 99, 99, 31, 9, 2, TRUE, kVanish);
    GLTransparentPlane transparentRect, transparentEdges;
    transparentRect.Init(ZOR_Rect(0, 0, 99, 99), 9, 2, kVanish);
    transparentEdges.Init(0, 0, 99, 99, 9, 2, kVanish);
    GLOpaquePlane opaqueRect, opaqueEdges;
    opaqueRect.Init(ZOR_Rect(0, 0, 99, 99), 7, 9, 2, kVanish);
    opaqueEdges.Init(0, 0, 99, 99, 7, 9, 2, kVanish);
    EXPECT_NE(byRect.GetCast(), nullptr);
    EXPECT_EQ(k.CallsNamed("NewPlane"),
              (Calls{"NewPlane(-1,5,(0,0,639,479),1,3,(320,100),0,0)",
                     "NewPlane(-4,0,(10,20,309,219),4,2,(320,100),120,1)", "NewPlane(-2,0,(1,2,3,4),2,0,(320,100),0,0)",
                     "NewPlane(-3,255,(5,6,7,8),3,-1,(320,100),0,0)", "NewPlane(-1,0,(0,0,9,9),0,3,(320,100),0,0)",
                     "NewPlane(-1,7,(0,0,99,99),2,9,(320,100),0,0)", "NewPlane(-1,7,(0,0,99,99),2,9,(320,100),0,0)",
                     "NewPlane(-4,0,(0,0,99,99),2,9,(320,100),30,0)", "NewPlane(-4,0,(0,0,99,99),2,9,(320,100),31,1)",
                     "NewPlane(-2,0,(0,0,99,99),2,9,(320,100),0,0)", "NewPlane(-2,0,(0,0,99,99),2,9,(320,100),0,0)",
                     "NewPlane(-3,7,(0,0,99,99),2,9,(320,100),0,0)", "NewPlane(-3,7,(0,0,99,99),2,9,(320,100),0,0)"}));
    EXPECT_EQ(k.Count("AddPlane"), 13);
    EXPECT_EQ(k.Count("PlaneCreated"), 13);
    EXPECT_EQ(k.Count("UpdatePlane"), 0);
}

TEST_F(PlaneTest, SettersWriteAtOnceAndPushOnlyWhenAsked)
{
    GLPicturePlane plane(0, 0, 319, 199, 10, 1, 0, FALSE, kVanish);
    KernelPlaneRecord* record = k.Plane(plane.GetId());
    ASSERT_NE(record, nullptr);

    // Several changes, one push.
    std::size_t mark = k.Mark();
    plane.SetPri(-1, FALSE);
    plane.SetBackColor(200, FALSE);
    plane.SetVanishPt(ZOR_Point(5, 6), FALSE);
    plane.SetMirror(TRUE, FALSE);
    EXPECT_TRUE(k.CallsSince(mark).empty());
    EXPECT_EQ(record->priority, -1);
    EXPECT_EQ(record->color, 200);
    EXPECT_EQ(record->vanishingPoint.y, 6);
    EXPECT_EQ(record->mirror, 1);
    plane.Update();
    EXPECT_EQ(k.CallsSince(mark), Calls{"UpdatePlane(plane:20000)"});

    // Any non-zero flag pushes for the setters that do not check it.
    mark = k.Mark();
    plane.SetPri(4, 7);
    plane.SetBackColor(0, -1);
    plane.SetRect(ZOR_Rect(1, 1, 100, 100), 2);
    EXPECT_EQ(k.CallsSince(mark), (Calls{"UpdatePlane(plane:20000)", "UpdatePlane(plane:20000)",
                                         "PlaneRectChanged(plane:20000)", "UpdatePlane(plane:20000)"}));

    // The kernel hears of a new rectangle at once, of the rest at the push.
    mark = k.Mark();
    plane.SetRect(5, 5, 5, 5, FALSE);
    EXPECT_EQ(k.CallsSince(mark), Calls{"PlaneRectChanged(plane:20000)"});
    plane.SetPicture(11, TRUE);
    EXPECT_EQ(record->pictureChanged, 1);
    EXPECT_EQ(k.CallsSince(mark), (Calls{"PlaneRectChanged(plane:20000)", "UpdatePlane(plane:20000)"}));
}

TEST_F(PlaneTest, EdgePixelsAreOnThePlaneAndDirectOperationsGoStraightToTheKernel)
{
    GLPicturePlane plane(100, 50, 399, 249, 3, 1, 0, FALSE, kVanish);
    // The plane's edge pixels are on it.
    EXPECT_EQ(plane.OnMe(GLPoint(100, 50)), 1);
    EXPECT_EQ(plane.OnMe(GLPoint(399, 249)), 1);
    EXPECT_EQ(plane.OnMe(GLPoint(400, 249)), 0);
    EXPECT_EQ(plane.OnMe(GLPoint(100, 49)), 0);

    int styles[3] = {1, 2, 3};
    const std::size_t mark = k.Mark();
    plane.MoveItems(-1200, 800, TRUE);
    plane.MoveItems(1200, -800, FALSE);
    plane.AddPicAt(0, 0, 0, FALSE, TRUE);
    plane.AddPicAt(7, 1200, 800, TRUE, FALSE);
    plane.SetScroll(0, 4, 9, TRUE, -1, FALSE);
    plane.SetScroll(-4, 0, 0, FALSE, 3, TRUE);
    plane.SetShowStyle(AbsGLPlane::showStyle15, 2, -1, 12345, TRUE, FALSE, 2, styles, 3, -1);
    plane.SetShowStyle(AbsGLPlane::showStyle0, 1, 255, 0, FALSE, TRUE, 0, nullptr, 0, 4);
    EXPECT_EQ(
        k.CallsSince(mark),
        (Calls{"MovePlaneItems(20000,-1200,800,1)", "MovePlaneItems(20000,1200,-800,0)", "AddPicAt(20000,0,0,0,0,1)",
               "AddPicAt(20000,7,1200,800,1,0)", "SetScroll(20000,0,4,9,1,-1,0)", "SetScroll(20000,-4,0,0,0,3,1)",
               "SetShowStyle(20000,15,2,-1,1,0,2,ptr,3,-1)", "SetShowStyle(20000,0,1,255,0,1,0,null,0,4)"}));
    // None of them leaves a change pending: the plane can go.
}

TEST_F(PlaneTest, ConstructionChecksComeInTheirOrderAndAnUnmadePlaneRefusesAll)
{
    const ZOR_Rect screen(0, 0, 639, 479);
    const char* pictureAndType = "(iPicture > 0 && planeType == picture) || (iPicture == 0 && planeType != picture)";
    EXPECT_GL_ASSERT(GLPicturePlane(screen, 0, 1, 0, FALSE, kVanish), kFile, pictureAndType);
    EXPECT_GL_ASSERT(AbsGLPlane(AbsGLPlane::colored, screen, 1, 0, kVanish, 0, 4, FALSE), kFile, pictureAndType);
    EXPECT_GL_ASSERT(GLColoredPlane(5, 5, 4, 5, 0, 1, 0, kVanish), kFile, "!ZOR_RectPlane.IsEmpty()");
    EXPECT_GL_ASSERT(GLPicturePlane(screen, 3, 1, 0, 2, kVanish), kFile, "fMirror == True || fMirror == False");
    EXPECT_GL_ASSERT(AbsGLPlane(AbsGLPlane::colored, screen, 1, 0, kVanish, 0, 0, TRUE), kFile,
                     "(iPicture == 0 && fMirror == False) || iPicture > 0");
    EXPECT_GL_ASSERT(GLOpaquePlane(screen, 256, 1, 0, kVanish), kFile, "iColor >=0 && iColor <= 255");
    EXPECT_GL_ASSERT(GLOpaquePlane(screen, 0, -2, 0, kVanish), kFile, "iPriority == -9999 || iPriority >= -1");
    EXPECT_GL_ASSERT(GLTransparentPlane(screen, 1, 5, kVanish), kFile,
                     "0 <= iWindowIndex && iWindowIndex < MaxGameWindowCount");
    EXPECT_GL_ASSERT(GLTransparentPlane(screen, 1, -1, kVanish), kFile,
                     "0 <= iWindowIndex && iWindowIndex < MaxGameWindowCount");
    // The constructor tests the colour first, Init the priority.
    EXPECT_GL_ASSERT(GLOpaquePlane(screen, -1, -5, 0, kVanish), kFile, "iColor >=0 && iColor <= 255");
    GLOpaquePlane later;
    EXPECT_GL_ASSERT(later.Init(screen, -1, -5, 0, kVanish), kFile, "iPriority == -9999 || iPriority >= -1");

    // Window 4, a one-pixel rectangle and priority -1 are all accepted.
    GLTransparentPlane edge(3, 3, 3, 3, -1, 4, kVanish);
    EXPECT_EQ(edge.GetRect().right, 3);
    EXPECT_GL_ASSERT(edge.Init(screen, 1, 0, kVanish), kFile, "m_pPlane == 0");

    // The picture forms without a rectangle are not implemented.
    EXPECT_GL_ASSERT(GLPicturePlane(3, 1, 0, FALSE, kVanish), kFile, "!\"Not yet implemented\"");
    GLPicturePlane picture;
    EXPECT_GL_ASSERT(picture.Init(3, 1, 0, FALSE, kVanish), kFile, "!\"Not yet implemented\"");
    GLPicturePlane made(screen, 3, 1, 0, FALSE, kVanish);
    EXPECT_GL_ASSERT(made.Init(3, 1, 0, FALSE, kVanish), kFile, "m_pPlane == 0");

    // A plane without its kernel plane refuses everything but Init.
    GLOpaquePlane plane;
    ZOR_Point point(0, 0);
    EXPECT_GL_ASSERT(plane.GetId(), kFile, "m_pPlane != 0");
    EXPECT_GL_ASSERT(plane.SetPri(1, TRUE), kFile, "m_pPlane != 0");
    EXPECT_GL_ASSERT(plane.ToLocal(&point), kFile, "m_pPlane != 0");
    EXPECT_GL_ASSERT(plane.Update(), kFile, "m_fChangedValue == True");
    // These check their arguments before the plane.
    EXPECT_GL_ASSERT(picture.AddPicAt(0, 0, 0, TRUE, TRUE), kFile, "m_pPlane != 0");
    EXPECT_GL_ASSERT(picture.SetMirror(TRUE, TRUE), kFile, "m_pPlane != 0");
    EXPECT_GL_ASSERT(picture.SetPicture(3, 3), kFile, "fDoUpdate == True || fDoUpdate == False");
    // Destroying it asks nothing of the kernel.
    const std::size_t mark = k.Mark();
    {
        GLTransparentPlane never;
    }
    EXPECT_TRUE(k.CallsSince(mark).empty());
}

void DestroyWithAChangePending()
{
    GLColoredPlane pending(0, 0, 9, 9, 0, 1, 0, kVanish);
    pending.SetPri(2, FALSE);
}

TEST_F(PlaneTest, MisuseOfAPlaneEndsWithTheExactReport)
{
    GLPicturePlane picture(0, 0, 99, 99, 3, 1, 0, FALSE, kVanish);
    GLTransparentPlane transparent(0, 0, 99, 99, 1, 0, kVanish);

    // Update only with a change pending; destruction only without one.
    picture.SetPri(-1, FALSE);
    picture.Update();
    EXPECT_GL_ASSERT(picture.Update(), kFile, "m_fChangedValue == True");
    EXPECT_GL_ASSERT(DestroyWithAChangePending(), kFile, "m_fChangedValue != True");

    EXPECT_GL_ASSERT(picture.SetPri(-2, TRUE), kFile, "iPriorityNew >= -1");
    EXPECT_GL_ASSERT(picture.SetBackColor(256, TRUE), kFile, "iColor >=0 && iColor <= 255");
    EXPECT_GL_ASSERT(transparent.SetBackColor(1, TRUE), kFile, "m_pPlane->type != -2");
    EXPECT_GL_ASSERT(transparent.GetBackColor(), kFile, "m_pPlane->type != -2");
    EXPECT_GL_ASSERT(picture.SetVanishPt(ZOR_Point(0, 0), 2), kFile, "fDoUpdate == True || fDoUpdate == False");
    EXPECT_GL_ASSERT(picture.SetRect(ZOR_Rect(5, 5, 4, 5), TRUE), kFile, "!ZOR_RectPlane.IsEmpty()");
    EXPECT_GL_ASSERT(picture.SetRect(5, 5, 5, 4, TRUE), kFile, "!(ZOR_Rect(iLeft,iTop,iRight,iBottom)).IsEmpty()");
    EXPECT_GL_ASSERT(picture.SetRect(5, 5, 5, 5, 2), kFile, "fDoUpdate == True || fDoUpdate == False");
    EXPECT_GL_ASSERT(picture.SetMirror(2, TRUE), kFile, "fMirror == True || fMirror == False");
    EXPECT_GL_ASSERT(picture.SetMirror(TRUE, 2), kFile, "fDoUpdate == True || fDoUpdate == False");
    EXPECT_GL_ASSERT(picture.SetPicture(-1, TRUE), kFile, "iNewPicture >= 0");
    EXPECT_GL_ASSERT(picture.SetPicture(4, 2), kFile, "fDoUpdate == True || fDoUpdate == False");
    EXPECT_GL_ASSERT(picture.SetPicture(3, TRUE), kFile,
                     "!\"The picture number you passed is already the current picture\"");

    EXPECT_GL_ASSERT(picture.MoveItems(-1201, 0, TRUE), kFile, "iDeltaX >= -1200 && iDeltaX <= 1200");
    EXPECT_GL_ASSERT(picture.MoveItems(0, 801, TRUE), kFile, "iDeltaY >= -800 && iDeltaY <= 800");
    EXPECT_GL_ASSERT(picture.MoveItems(0, 0, 2), kFile, "fMovePics == True || fMovePics == False");
    EXPECT_GL_ASSERT(picture.AddPicAt(-1, 0, 0, TRUE, TRUE), kFile, "iPicture >= 0");
    EXPECT_GL_ASSERT(picture.AddPicAt(0, 1201, 0, TRUE, TRUE), kFile, "iXPos >= 0 && iXPos <= 1200");
    EXPECT_GL_ASSERT(picture.AddPicAt(0, 0, -1, TRUE, TRUE), kFile, "iYPos >= 0 && iYPos <= 800");
    EXPECT_GL_ASSERT(picture.AddPicAt(0, 0, 0, 2, TRUE), kFile, "fMirror == True || fMirror == False");
    EXPECT_GL_ASSERT(picture.AddPicAt(0, 0, 0, TRUE, 2), kFile, "fDeleteCopy == True || fDeleteCopy == False");
    EXPECT_GL_ASSERT(picture.SetScroll(0, 0, 1, TRUE, 1, TRUE), kFile, "!(iXStepSize == 0 && iYStepSize == 0)");
    EXPECT_GL_ASSERT(picture.SetScroll(2, 2, 1, TRUE, 1, TRUE), kFile, "!(iXStepSize != 0 && iYStepSize != 0)");
    EXPECT_GL_ASSERT(picture.SetScroll(2, 0, -1, TRUE, 1, TRUE), kFile, "iPicture >= 0");
    EXPECT_GL_ASSERT(picture.SetScroll(2, 0, 1, 2, 1, TRUE), kFile, "fWithAnimate == True || fWithAnimate == False");
    EXPECT_GL_ASSERT(picture.SetScroll(2, 0, 1, TRUE, 0, TRUE), kFile, "iTicks == -1 || iTicks > 0");
    EXPECT_GL_ASSERT(picture.SetScroll(2, 0, 1, TRUE, 1, 2), kFile, "fMirror == True || fMirror == False");

    int styles[1] = {0};
    const AbsGLPlane::ShowStyle style = AbsGLPlane::showStyle1;
    EXPECT_GL_ASSERT(picture.SetShowStyle(style, 0, 0, 0, TRUE, TRUE, 0, nullptr, 0, -1), kFile, "iSpeed > 0");
    EXPECT_GL_ASSERT(picture.SetShowStyle(style, 1, -2, 0, TRUE, TRUE, 0, nullptr, 0, -1), kFile,
                     "iColor == -1 || (iColor >= 0 && iColor <= 255)");
    EXPECT_GL_ASSERT(picture.SetShowStyle(style, 1, 0, 0, 2, TRUE, 0, nullptr, 0, -1), kFile,
                     "fAnimateFlag == True || fAnimateFlag == False");
    EXPECT_GL_ASSERT(picture.SetShowStyle(style, 1, 0, 0, TRUE, 2, 0, nullptr, 0, -1), kFile,
                     "fUseReferenceFrame == True || fUseReferenceFrame == False");
    EXPECT_GL_ASSERT(picture.SetShowStyle(style, 1, 0, 0, TRUE, TRUE, 3, nullptr, 0, -1), kFile,
                     "0 <= iToFrom && 2 >= iToFrom");
    EXPECT_GL_ASSERT(picture.SetShowStyle(style, 1, 0, 0, TRUE, TRUE, 0, styles, 0, -1), kFile,
                     "(intArray == 0 && iArraySize == 0) || (intArray !=0 && iArraySize > 0)");
    EXPECT_GL_ASSERT(picture.SetShowStyle(style, 1, 0, 0, TRUE, TRUE, 0, nullptr, 0, 0), kFile,
                     "iDivisionCount == -1 || iDivisionCount > 0");
    EXPECT_GL_ASSERT(
        picture.SetShowStyle(static_cast<AbsGLPlane::ShowStyle>(16), 1, 0, 0, TRUE, TRUE, 0, nullptr, 0, -1), kFile,
        "!\"Unexpected ShowStyle specified\"");
}

} // namespace
