// Composition: plane order, transparency, origin, scale, inset, priorities,
// now-seen rectangles and hits, coordinates, polygons, memory bitmaps.
#include "SoftTestSupport.h"

#include <algorithm>
#include <tuple>

using namespace soft_test;

namespace {

class SoftCompose : public ::testing::Test {
protected:
    void SetUp() override
    {
        // View 10: one 4x3 cel, origin at its bottom middle (2, 2), pixel (0, 0) transparent.
        game.Write("views/10.txt", "cel 0 0 a.png 2 2\ncel 0 1 b.png 0 0\ncel 1 0 b.png 1 1\n");
        game.WritePng("views/a.png", 4, 3, [](int x, int y) { return x == 0 && y == 0 ? -1 : 2 + (x + y) % 3; });
        game.WriteSolidPng("views/b.png", 2, 2, 9);
        // Picture 5: 8x4, left half colour 10, right half colour 12.
        game.WritePng("pictures/5.png", 8, 4, [](int x, int) { return x < 4 ? 10 : 12; });
        ASSERT_TRUE(k.SetGameFolder(game.Dir()));
    }
    void TearDown() override { EXPECT_EQ(k.Fault(), ""); }
    void Frames(int n)
    {
        for (int i = 0; i < n; i++)
            k.UpdateScreen(1);
    }
    int Px(int x, int y) const { return k.Frame()[y * 640 + x]; }
    static std::string XY(const ZOR_Point& p) { return std::to_string(p.x) + "," + std::to_string(p.y); }

    TempGame game;
    SoftKernel k;
};

Expected Filled(int left, int top, int right, int bottom, int color)
{
    Expected e;
    e.Fill(left, top, right, bottom, color);
    return e;
}

// The cel of view 10 drawn by hand: top-left at (left, top).
void DrawCel(Expected& e, int left, int top)
{
    for (int y = 0; y < 3; y++)
        for (int x = 0; x < 4; x++)
            if (!(x == 0 && y == 0))
                e.Set(left + x, top + y, 2 + (x + y) % 3);
}

TEST_F(SoftCompose, PlanesDrawInPriorityOrderAndTransparentPlanesShowWhatIsBelow)
{
    MakePlane(k, -1, 1, ZOR_Rect(0, 0, 639, 479), 0);
    MakePlane(k, -3, 6, ZOR_Rect(150, 120, 300, 200), 7);
    MakePlane(k, -1, 4, ZOR_Rect(100, 100, 199, 149), 3);
    KernelPlaneRecord* glass = MakePlane(k, -2, 13, ZOR_Rect(0, 0, 639, 479), 9);
    MakeItem(k, glass, 10, 0, 0, 20, 30);
    k.UpdateScreen(1);

    Expected e = Filled(0, 0, 639, 479, 1);
    e.Fill(100, 100, 199, 149, 4);
    e.Fill(150, 120, 300, 200, 6);
    DrawCel(e, 18, 28);
    EXPECT_TRUE(FrameMatches(k, e, "planes_in_order"));
}

TEST_F(SoftCompose, RecordValuesAreTakenOverOnlyAtTheirUpdate)
{
    MakePlane(k, -1, 1, ZOR_Rect(0, 0, 99, 99), 1);
    KernelPlaneRecord* p = MakePlane(k, -1, 2, ZOR_Rect(50, 50, 149, 149), 2);
    KernelScreenItemRecord* r = MakeItem(k, p, 10, 0, 1, 60, 60); // the 2x2 cel at (110, 110) on the screen
    p->priority = 0;                                              // written, not yet taken over
    r->pos = ZOR_Point(80, 80);
    k.UpdateScreen(1);
    EXPECT_EQ(Px(60, 60), 2);
    EXPECT_EQ(Px(110, 110), 9);
    EXPECT_EQ(Px(130, 130), 2);
    ZOR_Rect seen;
    ASSERT_TRUE(k.GetNowSeenRect(p->id, r->id, &seen));
    EXPECT_EQ(seen.left, 60);
    k.UpdatePlane(p);
    k.UpdateScreenItem(r);
    k.UpdateScreen(1);
    EXPECT_EQ(Px(60, 60), 1);
    EXPECT_EQ(Px(110, 110), 2);
    EXPECT_EQ(Px(130, 130), 9);
    EXPECT_EQ(k.TopPlanePriority(), 1);
}

TEST_F(SoftCompose, ItemsSitByTheirOriginInPlaneCoordinatesAndAreClippedToThePlane)
{
    // Also: plane coordinates convert both ways, and a new rectangle counts from its UpdatePlane on.
    KernelPlaneRecord* p = MakePlane(k, -1, 1, ZOR_Rect(100, 20, 199, 119), 0);
    MakeItem(k, p, 10, 0, 0, 50, 60);
    // Half outside the plane's left edge, and one outside the screen altogether.
    MakeItem(k, p, 10, 0, 0, 1, 10);
    MakeItem(k, p, 10, 0, 0, -5000, 90000);
    k.UpdateScreen(1);
    Expected e = Filled(100, 20, 199, 119, 1);
    DrawCel(e, 148, 78);
    DrawCel(e, 99, 28);
    e.Fill(99, 28, 99, 30, 0); // the column left of the plane stays black
    EXPECT_TRUE(FrameMatches(k, e, "origin_and_clip"));

    ZOR_Point pt(150, 50);
    k.PlaneToLocal(p->id, &pt);
    EXPECT_EQ(XY(pt), "50,30");
    k.PlaneToGlobal(p->id, &pt);
    EXPECT_EQ(XY(pt), "150,50");
    p->rect = ZOR_Rect(0, 0, 639, 479);
    k.PlaneRectChanged(p);
    k.UpdatePlane(p);
    k.PlaneToLocal(p->id, &pt);
    EXPECT_EQ(XY(pt), "150,50");
}

TEST_F(SoftCompose, FixedPriorityOrdersItemsFloatingPriorityFollowsYAndTheCursorIsOnTop)
{
    KernelPlaneRecord* p = MakePlane(k, -1, 1, ZOR_Rect(0, 0, 639, 479), 0);
    // Two overlapping 2x2 cels of colour 9 and a 4x3 cel: the later-drawn one wins.
    KernelScreenItemRecord* front = MakeItem(k, p, 10, 0, 1, 10, 10, 5);
    MakeItem(k, p, 10, 0, 0, 12, 12, 4); // covers (10..13, 10..12) under the 2x2 at (10,10)
    k.UpdateScreen(1);
    EXPECT_EQ(Px(11, 10), 9);
    front->priority = 3;
    k.UpdateScreenItem(front);
    k.UpdateScreen(1);
    EXPECT_EQ(Px(11, 10), 2 + 1);

    // Floating: the item further down (greater y + z) is in front.
    MakeItem(k, p, 10, 0, 1, 200, 200, kPriorityOnTop);
    KernelScreenItemRecord* b = MakeItem(k, p, 10, 0, 0, 202, 202, kPriorityOnTop);
    k.UpdateScreen(1);
    EXPECT_EQ(Px(201, 200), 3);
    b->pos.y = 201;
    b->z = -100; // y + z = 101 < 200: now behind
    k.UpdateScreenItem(b);
    k.UpdateScreen(1);
    EXPECT_EQ(Px(201, 200), 9);
    EXPECT_EQ(k.TopScreenItemPriority(p->id), 200);

    // The cursor is kept on the screen and drawn where it was put.
    k.SetCursorView(10, 0, 1);
    ZOR_Point at(700, -3), mid(200, 100);
    k.SetCursorPos(&at);
    EXPECT_EQ(XY(k.CursorPos()), "639,0");
    k.SetCursorPos(&mid);
    k.UpdateScreen(1);
    EXPECT_EQ(Px(200, 100), 9);
    k.HideCursor();
    k.UpdateScreen(1);
    EXPECT_EQ(Px(200, 100), 1);
}

TEST_F(SoftCompose, ScaleAndInsetShapeBothTheDrawingAndTheNowSeenRect)
{
    KernelPlaneRecord* p = MakePlane(k, -1, 1, ZOR_Rect(10, 10, 629, 469), 0);
    KernelScreenItemRecord* r = MakeItem(k, p, 10, 0, 0, 100, 100);
    ZOR_Rect seen;
    ASSERT_TRUE(k.GetNowSeenRect(p->id, r->id, &seen));
    EXPECT_EQ(Edges(seen), "98,98,101,100");

    r->scale = ScaleInfo{256, 384, 100, 0}; // twice as wide, three times as high
    k.UpdateScreenItem(r);
    ASSERT_TRUE(k.GetNowSeenRect(p->id, r->id, &seen));
    EXPECT_EQ(Edges(seen), "96,94,103,102");
    k.UpdateScreen(1);
    Expected e = Filled(10, 10, 629, 469, 1);
    for (int y = 0; y < 9; y++)
        for (int x = 0; x < 8; x++)
            if (!(x / 2 == 0 && y / 3 == 0))
                e.Set(10 + 96 + x, 10 + 94 + y, 2 + (x / 2 + y / 3) % 3);
    EXPECT_TRUE(FrameMatches(k, e, "scaled"));

    // The inset keeps cel columns 1..2 and rows 1..2 only.
    r->scale = kFullSizeScale;
    r->useInsetRect = 1;
    r->insetRect = ZOR_Rect(1, 1, 2, 5);
    k.UpdateScreenItem(r);
    ASSERT_TRUE(k.GetNowSeenRect(p->id, r->id, &seen));
    EXPECT_EQ(Edges(seen), "99,99,100,100");
    k.UpdateScreen(1);
    Expected f = Filled(10, 10, 629, 469, 1);
    for (int y = 1; y <= 2; y++)
        for (int x = 1; x <= 2; x++)
            f.Set(10 + 98 + x, 10 + 98 + y, 2 + (x + y) % 3);
    EXPECT_TRUE(FrameMatches(k, f, "inset"));
}

TEST_F(SoftCompose, NowSeenAndHitsAnswerOnlyForItemsOnTheScreen)
{
    KernelPlaneRecord* p = MakePlane(k, -1, 1, ZOR_Rect(0, 0, 639, 479), 0);
    KernelScreenItemSource src{0, 10, 0, 0, 0, {0, 0}};
    KernelScreenItemRecord* r = k.NewScreenItem(p->id, &src, ZOR_Point(50, 50), kFullSizeScale);
    ZOR_Rect seen(1, 2, 3, 4);
    EXPECT_FALSE(k.GetNowSeenRect(p->id, r->id, &seen));
    EXPECT_EQ(seen.left, 1); // left alone
    k.AddScreenItem(r);
    ASSERT_TRUE(k.GetNowSeenRect(p->id, r->id, &seen));
    EXPECT_FALSE(k.GetNowSeenRect(p->id + 1, r->id, &seen)); // wrong plane

    ZOR_Point corner(48, 48); // the transparent pixel (0, 0) of the cel
    EXPECT_TRUE(k.ScreenItemOnPoint(&corner, p->id, r->id, 0));
    EXPECT_FALSE(k.ScreenItemOnPoint(&corner, p->id, r->id, 1));
    ZOR_Point inside(49, 48), outside(52, 48), below(48, 51);
    EXPECT_TRUE(k.ScreenItemOnPoint(&inside, p->id, r->id, 1));
    EXPECT_FALSE(k.ScreenItemOnPoint(&outside, p->id, r->id, 0));
    EXPECT_FALSE(k.ScreenItemOnPoint(&below, p->id, r->id, 0));

    k.DeleteScreenItem(r);
    // A record never added is accepted.
    k.DeleteScreenItem(k.NewScreenItem(p->id, &src, ZOR_Point(0, 0), kFullSizeScale));
    k.DisposeScreenItem(k.NewScreenItem(p->id, &src, ZOR_Point(0, 0), kFullSizeScale));
    EXPECT_EQ(k.TopScreenItemPriority(p->id), -1);
}

TEST_F(SoftCompose, PicturesMirrorAddAtAndMoveWithTheirPlane)
{
    KernelPlaneRecord* p = MakePlane(k, -4, 7, ZOR_Rect(20, 20, 59, 39), 0, 5, 0);
    k.AddPicAt(p->id, 5, 10, 2, 1, 0);
    k.UpdateScreen(1);
    Expected e = Filled(20, 20, 59, 39, 7);
    e.Fill(20, 20, 23, 23, 10);
    e.Fill(24, 20, 27, 23, 12);
    e.Fill(30, 22, 33, 25, 12); // mirrored: right half first
    e.Fill(34, 22, 37, 25, 10);
    EXPECT_TRUE(FrameMatches(k, e, "pictures"));
    {
        // A new palette maps a picture read before it afresh: colour 12's
        // shade is now at 200, and 12 is another colour.
        SoftKernel fresh;
        ASSERT_TRUE(fresh.SetGameFolder(game.Dir()));
        KernelPlaneRecord* q = MakePlane(fresh, -4, 7, ZOR_Rect(0, 0, 9, 9), 0, 5, 0);
        fresh.UpdateScreen(1);
        ASSERT_EQ(fresh.Frame()[5], 12);
        SoftPalette palette = fresh.Palette();
        palette.colors[200] = palette.colors[12];
        palette.colors[12] = SoftColor{1, 2, 3};
        fresh.SetPalette(palette);
        q->picture = 5;
        fresh.UpdatePlane(q);
        fresh.UpdateScreen(1);
        EXPECT_EQ(fresh.Frame()[5], 200);
    }

    KernelScreenItemRecord* r = MakeItem(k, p, 10, 0, 1, 0, 10);
    k.MovePlaneItems(p->id, 5, 1, 1);
    EXPECT_EQ(XY(r->pos), "5,11");
    k.UpdateScreen(1);
    Expected f = Filled(20, 20, 59, 39, 7);
    f.Fill(25, 21, 28, 24, 10);
    f.Fill(29, 21, 32, 24, 12);
    f.Fill(35, 23, 38, 26, 12);
    f.Fill(39, 23, 42, 26, 10);
    f.Fill(25, 31, 26, 32, 9);
    EXPECT_TRUE(FrameMatches(k, f, "pictures_moved"));

    // A new picture drops the added ones.
    p->picture = 6;
    p->pictureChanged = 1;
    game.WriteSolidPng("pictures/6.png", 2, 2, 14);
    k.UpdatePlane(p);
    EXPECT_EQ(p->pictureChanged, 0);
    k.UpdateScreen(1);
    EXPECT_EQ(Px(30, 23), 7);
}

TEST_F(SoftCompose, TransitionsReportTheirProgressAndEndShown)
{
    KernelPlaneRecord* p = MakePlane(k, -1, 3, ZOR_Rect(0, 0, 99, 99), 0);
    k.SetShowStyle(p->id, 1, 2, 8, 0, 0, 0, nullptr, 0, 4); // 4 steps of 2 ticks
    EXPECT_EQ(k.ShowStylePercentComplete(p->id), 0);
    k.UpdateScreen(1); // drawn at tick 0, the clock moves to 1
    EXPECT_EQ(Px(50, 50), 8);
    k.UpdateScreen(1);
    EXPECT_EQ(k.ShowStylePercentComplete(p->id), 25);
    Frames(3);
    EXPECT_EQ(k.ShowStylePercentComplete(p->id), 50);
    // Left to right: half of the plane is shown, the rest is the transition's colour.
    EXPECT_EQ(Px(10, 10), 3);
    EXPECT_EQ(Px(80, 10), 8);
    Frames(4);
    EXPECT_EQ(k.ShowStylePercentComplete(p->id), 100);
    EXPECT_EQ(Px(80, 10), 3);

    // Disappearing: once over, the plane is gone.
    k.SetShowStyle(p->id, 4, 1, -1, 0, 0, 1, nullptr, 0, -1);
    Frames(12);
    EXPECT_EQ(Px(10, 10), 0);
}

// Each kind of transition, frame by frame (4 steps of a tick, colour -1: what
// lies below shows where the plane is not yet revealed).
TEST_F(SoftCompose, EachKindOfTransitionRevealsThePlaneAsBefore)
{
    const struct {
        int style;
        const char* kind;
        std::uint64_t hashes[3]; // the frames at 25, 50 and 75 percent
    } kinds[] = {
        {1, "left to right", {0x77b7b0c9ab3755f3u, 0x72a1962b2be20703u, 0x2c240b8abf85de73u}},
        {2, "top down", {0xb54ca3544fb2743u, 0x1fc39a140c12db03u, 0x158bf5abc0af0ec3u}},
        {3, "box", {0xf8a54b3bc4b36675u, 0xc300eaf7a030f81u, 0x1a52a2d7e60af5c1u}},
        {4, "dissolve", {0xc646c0cb24307153u, 0x1cb20547d6c4b76du, 0x1322f92ff41e3999u}},
    };
    for (const auto& t : kinds) {
        SCOPED_TRACE(t.kind);
        SoftKernel kernel;
        ASSERT_TRUE(kernel.SetGameFolder(game.Dir()));
        MakePlane(kernel, -1, 1, ZOR_Rect(0, 0, 639, 479), 0);
        KernelPlaneRecord* p = MakePlane(kernel, -1, 3, ZOR_Rect(10, 10, 49, 29), 1);
        kernel.SetShowStyle(p->id, t.style, 1, -1, 0, 0, 0, nullptr, 0, 4);
        kernel.UpdateScreen(1);
        for (int step = 0; step < 3; step++) {
            kernel.UpdateScreen(1);
            EXPECT_EQ(FrameHash(kernel.Frame(), 640 * 480), t.hashes[step]) << "frame " << step + 1;
        }
    }
}

TEST_F(SoftCompose, ScrollingBringsTheNewPictureInAndThenShowsIt)
{
    game.WriteSolidPng("pictures/7.png", 8, 4, 14);
    KernelPlaneRecord* p = MakePlane(k, -4, 0, ZOR_Rect(0, 0, 7, 3), 0, 5, 0);
    k.SetScroll(p->id, 2, 0, 7, 0, 1, 0);
    k.UpdateScreen(1); // tick 0: nothing moved yet
    EXPECT_EQ(k.Frame()[0], 10);
    k.UpdateScreen(1); // tick 1: moved by 2
    EXPECT_EQ(k.Frame()[0], 10);
    EXPECT_EQ(k.Frame()[2], 12);
    EXPECT_EQ(k.Frame()[6], 14);
    Frames(4);
    EXPECT_EQ(k.Frame()[0], 14);
    EXPECT_EQ(p->picture, 7);
}

TEST_F(SoftCompose, PointInPolygonCountsTheEdgeAsInside)
{
    ZOR_Point l[] = {{0, 0}, {10, 0}, {10, 4}, {4, 4}, {4, 10}, {0, 10}}; // a concave "L"
    ZOR_Point tri[] = {{0, 0}, {100, 50}, {0, 100}};
    struct Case {
        ZOR_Point* polygon;
        int count, x, y;
        bool inside;
    };
    // The L's upright and arm, its notch, a vertex, its right edge, its inner horizontal and vertical edges, two
    // points outside it; the triangle's slanted edge, a point right of that, its tip; and no polygon at all.
    const Case cases[] = {{l, 6, 2, 2, true},       {l, 6, 8, 2, true},      {l, 6, 8, 8, false},
                          {l, 6, 0, 0, true},       {l, 6, 10, 2, true},     {l, 6, 7, 4, true},
                          {l, 6, 4, 7, true},       {l, 6, 11, 2, false},    {l, 6, -1, 5, false},
                          {tri, 3, 50, 25, true},   {tri, 3, 51, 25, false}, {tri, 3, 99, 50, true},
                          {nullptr, 0, 5, 5, false}};
    for (const Case& c : cases)
        EXPECT_EQ(k.PointInPolygon(c.x, c.y, c.polygon, c.count) != 0, c.inside) << c.x << "," << c.y;
}

TEST_F(SoftCompose, PolygonsDrawWithTheirStyleAndCanBeUpdatedAndDeleted)
{
    KernelPlaneRecord* p = MakePlane(k, -1, 1, ZOR_Rect(10, 10, 109, 109), 0);
    ZOR_Point pts[] = {{0, 0}, {20, 0}, {20, 10}};
    const std::int32_t solid = k.AddPolygon(p->id, pts, 3, 5, 11, ZOR_Line::tSolid, 0, 1, 1);
    EXPECT_GE(solid, 0);
    k.UpdateScreen(1);
    Expected e = Filled(10, 10, 109, 109, 1);
    e.Fill(10, 10, 30, 10, 11);
    e.Fill(30, 10, 30, 20, 11);
    for (int i = 0; i <= 20; i++) // the closing edge from (20,10) back to (0,0)
        e.Set(10 + 20 - i, 10 + 10 - (i + 1) / 2, 11);
    EXPECT_TRUE(FrameMatches(k, e, "polygon_solid"));

    ZOR_Point line[] = {{0, 50}, {15, 50}, {15, 50}};
    k.UpdatePolygon(p->id, solid, line, 2, 5, 12, ZOR_Line::tDashed, 0, 1, 0);
    k.UpdateScreen(1);
    for (int x = 0; x <= 15; x++)
        EXPECT_EQ(Px(10 + x, 60), (x / 4) % 2 == 0 ? 12 : 1) << x;
    k.DeletePolygon(p->id, solid);
    k.UpdateScreen(1);
    EXPECT_EQ(Px(10, 60), 1);
}

TEST_F(SoftCompose, MemoryBitmapsLiveBehindTheirIdsAndShowTextAndBlocksComeFromTheLedger)
{
    EXPECT_FALSE(k.DLLCheckValid(0));
    const std::uint16_t id = k.CreateMemBitmap(120, 30, 5, 5);
    ASSERT_NE(id, 0);
    EXPECT_TRUE(k.DLLCheckValid(id));
    EXPECT_FALSE(k.DLLCheckValid(id + 1));
    EXPECT_EQ(k.CreateMemBitmap(641, 10, 0, -1), 0);
    const int height = k.DrawText(id, 2, 2, "Hello", 15, 16, 0);
    EXPECT_GT(height, 10);
    EXPECT_GT(k.TextWidth("Hello", 16), k.TextWidth("Hi", 16));

    KernelPlaneRecord* p = MakePlane(k, -1, 1, ZOR_Rect(0, 0, 639, 479), 0);
    KernelScreenItemSource src{2, 0, 0, 0, id, {0, 0}};
    KernelScreenItemRecord* r = k.NewScreenItem(p->id, &src, ZOR_Point(100, 100), kFullSizeScale);
    k.AddScreenItem(r);
    k.UpdateScreen(1);
    int white = 0, below = 0;
    for (int y = 100; y < 130; y++)
        for (int x = 100; x < 220; x++) {
            white += Px(x, y) == 15;
            below += Px(x, y) == 1; // the skip colour shows the plane
        }
    EXPECT_GT(white, 20);
    EXPECT_EQ(white + below, 120 * 30);
    ZOR_Rect seen;
    ASSERT_TRUE(k.GetNowSeenRect(p->id, r->id, &seen));
    EXPECT_EQ(seen.right, 219);
    EXPECT_EQ(seen.bottom, 129);
    k.DeleteScreenItem(r);
    k.FreeMemBitmap(id);
    EXPECT_FALSE(k.DLLCheckValid(id));

    void* a = k.AllocMemory(24, "Source/Glcast.cpp", 37);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(static_cast<unsigned char*>(a)[23], 0);
    EXPECT_EQ(k.Ledger().LiveCount(), 1u);
    k.FreeMemory(nullptr);
    k.FreeMemory(a);
    EXPECT_EQ(k.Ledger().LiveCount(), 0u);
}

// The drawing order each plane keeps is mended item by item; here it is held
// against the order worked out afresh: random adds, moves, priority changes,
// removals and moves to the other plane, frame after frame, with 2x2 cels that
// overlap, each item drawn in a colour of its own.
TEST_F(SoftCompose, TheKeptDrawingOrderIsTheOrderWorkedOutAfresh)
{
    KernelPlaneRecord* planes[2] = {MakePlane(k, -1, 1, ZOR_Rect(0, 0, 319, 479), 0),
                                    MakePlane(k, -2, 0, ZOR_Rect(0, 0, 319, 479), 1)};
    SoftView view;
    view.loops.resize(1);
    for (int color = 0; color < 256; color++) {
        view.loops[0].emplace_back();
        view.loops[0].back().Resize(2, 2, static_cast<std::uint8_t>(color), 1);
    }
    k.Resources().PutView(20, view);
    struct Shown {
        KernelScreenItemRecord* r;
        int plane;
        std::uint64_t added; // the order of AddScreenItem, which breaks ties
    };
    std::vector<Shown> items;
    std::uint64_t adds = 0;
    unsigned seed = 7;
    const auto random = [&seed](int n) {
        seed = seed * 1103515245u + 12345u;
        return static_cast<int>((seed >> 16) % static_cast<unsigned>(n));
    };
    for (int frame = 0; frame < 60; frame++) {
        for (int step = 0; step < 8; step++) {
            const int what = items.empty() ? 0 : random(5);
            if (what == 0 && items.size() < 200) {
                const int plane = random(2);
                KernelScreenItemRecord* r = MakeItem(k, planes[plane], 20, 0, 10 + static_cast<int>(adds % 240),
                                                     random(6), random(6), random(2) ? random(4) : kPriorityOnTop);
                items.push_back(Shown{r, plane, adds++});
                continue;
            }
            Shown& s = items[static_cast<std::size_t>(random(static_cast<int>(items.size())))];
            if (what == 1) {
                s.r->pos = ZOR_Point(random(6), random(6));
            } else if (what == 2) {
                s.r->fixedPriority = random(2);
                s.r->priority = random(4);
            } else if (what == 3) {
                s.plane = 1 - s.plane;
                s.r->planeId = planes[s.plane]->id;
            } else {
                k.DeleteScreenItem(s.r);
                s = items.back();
                items.pop_back();
                continue;
            }
            k.UpdateScreenItem(s.r);
        }
        k.UpdateScreen(1);
        std::vector<Shown> order = items;
        std::stable_sort(order.begin(), order.end(), [](const Shown& a, const Shown& b) {
            const auto key = [](const Shown& s) {
                const long long p = s.r->fixedPriority ? s.r->priority : s.r->pos.y + s.r->z;
                return std::make_tuple(s.plane, p, s.added);
            };
            return key(a) < key(b);
        });
        Expected e = Filled(0, 0, 319, 479, 1);
        for (const Shown& s : order)
            e.Fill(s.r->pos.x, s.r->pos.y, s.r->pos.x + 1, s.r->pos.y + 1, s.r->source.cel);
        ASSERT_TRUE(FrameMatches(k, e, "kept_order_" + std::to_string(frame)));
    }
}

// Cels are drawn by runs of opaque pixels made once per bitmap; a memory
// bitmap that game code draws into after it was shown must be drawn as it is
// now, in each direction: transparent pixels made opaque and opaque ones made
// transparent, by a fill and by text.
TEST_F(SoftCompose, AMemoryBitmapRedrawnAfterItWasShownIsDrawnAsItIsNow)
{
    KernelPlaneRecord* p = MakePlane(k, -1, 1, ZOR_Rect(0, 0, 639, 479), 0);
    const std::uint16_t id = k.CreateMemBitmap(40, 20, 0, 0); // all skip colour: transparent
    KernelScreenItemSource src{2, 0, 0, 0, id, {0, 0}};
    KernelScreenItemRecord* r = k.NewScreenItem(p->id, &src, ZOR_Point(100, 100), kFullSizeScale);
    k.AddScreenItem(r);
    struct Step {
        int left, top, right, bottom, color; // a fill; colour 0 is the skip colour
    };
    const Step steps[] = {{0, 0, 39, 19, 7}, {5, 2, 30, 9, 0}, {10, 5, 12, 15, 8}, {0, 0, 39, 19, 0}};
    Expected e = Filled(0, 0, 639, 479, 1);
    k.UpdateScreen(1);
    ASSERT_TRUE(FrameMatches(k, e, "membitmap_empty"));
    for (const Step& s : steps) {
        k.FillMemBitmap(id, s.left, s.top, s.right, s.bottom, s.color);
        e.Fill(100 + s.left, 100 + s.top, 100 + s.right, 100 + s.bottom, s.color ? s.color : 1);
        k.UpdateScreen(1);
        ASSERT_TRUE(FrameMatches(k, e, "membitmap_fill_" + std::to_string(s.color)));
    }
    k.DrawText(id, 0, 0, "Hi", 15, 16, 0);
    k.UpdateScreen(1);
    int white = 0;
    for (int y = 100; y < 120; y++)
        for (int x = 100; x < 140; x++)
            white += Px(x, y) == 15;
    EXPECT_GT(white, 10);
    k.DeleteScreenItem(r);
    k.FreeMemBitmap(id);
}

// Narrow cels are merged with the frame 16 pixels at a time, the last block
// overlapping: bitmaps of each width class with a hole, flush against the
// right edge of the screen, are drawn as by hand.
TEST_F(SoftCompose, BitmapsOfEachWidthAreDrawnAsByHand)
{
    KernelPlaneRecord* p = MakePlane(k, -1, 1, ZOR_Rect(0, 0, 639, 479), 0);
    Expected e = Filled(0, 0, 639, 479, 1);
    int top = 0;
    for (const int w : {15, 16, 17, 40, 64, 65}) {
        const std::uint16_t id = k.CreateMemBitmap(w, 6, 0, 0); // transparent but rows 1 to 4, with a hole
        k.FillMemBitmap(id, 0, 1, w - 1, 4, w % 13 + 2);
        k.FillMemBitmap(id, 3, 2, w - 4, 3, 0);
        KernelScreenItemSource src{2, 0, 0, 0, id, {0, 0}};
        k.AddScreenItem(k.NewScreenItem(p->id, &src, ZOR_Point(640 - w, top), kFullSizeScale));
        e.Fill(640 - w, top + 1, 639, top + 4, w % 13 + 2);
        e.Fill(643 - w, top + 2, 636, top + 3, 1);
        top += 8;
    }
    k.UpdateScreen(1);
    EXPECT_TRUE(FrameMatches(k, e, "bitmap_widths"));
}

// Values far outside the screen, the unset marker among them, are drawn (or
// not) without any arithmetic going wrong; the sanitizer build watches.
TEST(SoftExtremes, FarCoordinatesAreSafe)
{
    soft_test::TempGame game;
    game.Write("views/1.txt", "cel 0 0 a.png 4096 -4096\n");
    game.WriteSolidPng("views/a.png", 3, 3, 4);
    SoftKernel k;
    ASSERT_TRUE(k.SetGameFolder(game.Dir()));
    const std::int32_t far[] = {INT32_MIN, INT32_MAX, static_cast<std::int32_t>(0x89ABCDEFu), -1, 0};
    KernelPlaneRecord* p = soft_test::MakePlane(k, -1, 1, ZOR_Rect(INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX), 0);
    for (std::int32_t a : far) {
        for (std::int32_t b : far) {
            KernelScreenItemRecord* r = soft_test::MakeItem(k, p, 1, 0, 0, a, b, a);
            r->z = b;
            r->scale = ScaleInfo{a, b, 100, 0};
            r->useInsetRect = 1;
            r->insetRect = ZOR_Rect(a, b, b, a);
            k.UpdateScreenItem(r);
            ZOR_Point pt(a, b);
            k.ScreenItemOnPoint(&pt, p->id, r->id, 1);
            ZOR_Rect seen;
            k.GetNowSeenRect(p->id, r->id, &seen);
            k.PlaneToLocal(p->id, &pt);
            k.PlaneToGlobal(p->id, &pt);
            ZOR_Point poly[] = {{a, b}, {b, a}, {0, 0}};
            k.PointInPolygon(a, b, poly, 3);
            k.AddPolygon(p->id, poly, 3, 1, 5, ZOR_Line::tPattern, 0x5555, 3, 0);
        }
    }
    k.MovePlaneItems(p->id, INT32_MAX, INT32_MIN, 1);
    k.AddPicAt(p->id, 1, INT32_MAX, INT32_MIN, 0, 0);
    k.UpdateScreen(1);
    k.ClearFault(); // the picture does not exist
    EXPECT_EQ(k.Frame()[0], 1);
}

} // namespace
