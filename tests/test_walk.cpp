// Walkable areas: routes against a slow reference, the awkward places, the
// text form and the checks.
#include "QuindleTest.h"
#include "WalkRooms.h"
#include "glwalk.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <queue>
#include <string>

namespace {

typedef std::vector<ZOR_Point> Ring;

// ----- the reference: every corner, every pair tested, Dijkstra -----

double Orient(double ax, double ay, double bx, double by, double cx, double cy)
{
    return (bx - ax) * (cy - ay) - (by - ay) * (cx - ax);
}

// 1 inside, 0 on an edge, -1 outside.
int Side(const Ring& r, double x, double y)
{
    bool in = false;
    for (std::size_t i = 0; i < r.size(); i++) {
        const ZOR_Point& a = r[i];
        const ZOR_Point& b = r[(i + 1) % r.size()];
        if (std::fabs(Orient(a.x, a.y, b.x, b.y, x, y)) < 1e-9 && x >= std::min(a.x, b.x) - 1e-9 &&
            x <= std::max(a.x, b.x) + 1e-9 && y >= std::min(a.y, b.y) - 1e-9 && y <= std::max(a.y, b.y) + 1e-9)
            return 0;
        if ((a.y > y) != (b.y > y) && a.x + (y - a.y) * (b.x - a.x) / double(b.y - a.y) > x)
            in = !in;
    }
    return in ? 1 : -1;
}

bool Free(const WalkRoom& room, double x, double y)
{
    if (Side(room.polygons[0], x, y) < 0)
        return false;
    for (std::size_t h = 1; h < room.polygons.size(); h++)
        if (Side(room.polygons[h], x, y) > 0)
            return false;
    return true;
}

// Cut at every point where it meets an edge; every piece's middle is free.
bool Walkable(const WalkRoom& room, double ax, double ay, double bx, double by)
{
    std::vector<double> cuts = {0, 1};
    for (const Ring& r : room.polygons)
        for (std::size_t i = 0; i < r.size(); i++) {
            const ZOR_Point& p = r[i];
            const ZOR_Point& q = r[(i + 1) % r.size()];
            const double ex = q.x - p.x, ey = q.y - p.y, dx = bx - ax, dy = by - ay;
            const double den = dx * ey - dy * ex;
            if (std::fabs(den) > 1e-12) {
                const double t = ((p.x - ax) * ey - (p.y - ay) * ex) / den;
                const double u = ((p.x - ax) * dy - (p.y - ay) * dx) / den;
                if (t > 0 && t < 1 && u >= 0 && u <= 1)
                    cuts.push_back(t);
            } else if (dx * dx + dy * dy > 0) {
                for (const ZOR_Point* c : {&p, &q})
                    cuts.push_back(std::clamp(((c->x - ax) * dx + (c->y - ay) * dy) / (dx * dx + dy * dy), 0.0, 1.0));
            }
        }
    std::sort(cuts.begin(), cuts.end());
    for (std::size_t i = 0; i + 1 < cuts.size(); i++) {
        const double t = (cuts[i] + cuts[i + 1]) / 2;
        if (cuts[i + 1] - cuts[i] > 1e-12 && !Free(room, ax + t * (bx - ax), ay + t * (by - ay)))
            return false;
    }
    return true;
}

double ReferenceLength(const WalkRoom& room, const ZOR_Point& s, const ZOR_Point& g)
{
    std::vector<ZOR_Point> v = {s, g};
    for (const Ring& r : room.polygons)
        v.insert(v.end(), r.begin(), r.end());
    std::vector<double> dist(v.size(), 1e300);
    std::priority_queue<std::pair<double, std::size_t>> open;
    dist[0] = 0;
    open.push({0, 0});
    while (!open.empty()) {
        const auto [negative, i] = open.top();
        open.pop();
        if (-negative > dist[i])
            continue;
        for (std::size_t j = 0; j < v.size(); j++) {
            const double d = dist[i] + std::hypot(v[j].x - v[i].x, v[j].y - v[i].y);
            if (d < dist[j] && Walkable(room, v[i].x, v[i].y, v[j].x, v[j].y)) {
                dist[j] = d;
                open.push({-d, j});
            }
        }
    }
    return dist[1];
}

// ----- the library's side -----

class WalkTest : public QuindleTest {
protected:
    ~WalkTest() override
    {
        delete area;
        DeleteWalkPoints(route);
    }
    void Make(const WalkRoom& room, int clearance = 0) { area = MakeWalkArea(room, clearance); }
    // The route from `from` to `to`, from included, as "(x,y)" pieces.
    std::string Walk(int fx, int fy, int tx, int ty)
    {
        DeleteWalkPoints(route);
        const int n = area->FindPath(GLPoint(fx, fy), GLPoint(tx, ty), route);
        EXPECT_EQ(n, route.NumElements());
        std::string text;
        for (int i = 0; i < route.NumElements(); i++)
            text += "(" + std::to_string(route.At(i)->GetX()) + "," + std::to_string(route.At(i)->GetY()) + ")";
        return text;
    }

    GLWalkArea* area = nullptr;
    GLListAsArray<GLPoint> route{4, 4};
};

Ring Rect(int l, int t, int r, int b)
{
    return {ZOR_Point(l, t), ZOR_Point(r, t), ZOR_Point(r, b), ZOR_Point(l, b)};
}

// The distance from (x, y) to the segment a-b.
double ToEdge(const ZOR_Point& a, const ZOR_Point& b, double x, double y)
{
    const double ex = b.x - a.x, ey = b.y - a.y;
    const double u = std::clamp(((x - a.x) * ex + (y - a.y) * ey) / (ex * ex + ey * ey), 0.0, 1.0);
    return std::hypot(a.x + u * ex - x, a.y + u * ey - y);
}

TEST_F(WalkTest, RoutesAreShortestKeepTheClearanceAndNeverCrossAWall)
{
    // Rooms by seed, corners, holes and clearance; with a clearance the
    // reference (which has none) gives no length to compare with.
    for (const auto& [seed, corners, holes, clearance] :
         {std::tuple{1u, 20, 10, 0}, {2u, 20, 10, 0}, {3u, 20, 10, 0}, {7u, 40, 20, 3}}) {
        const WalkRoom room = MakeWalkRoom(seed, corners, holes, 6 + 2 * (seed % 2));
        Make(room, clearance);
        std::mt19937 random(seed);
        for (int q = 0; q < 40; q++) {
            GLPoint s(int(random() % 640), int(random() % 480)), g(int(random() % 640), int(random() % 480)), end;
            if (!clearance && (!Free(room, s.GetX(), s.GetY()) || !Free(room, g.GetX(), g.GetY()))) {
                q--;
                continue;
            }
            area->Nearest(s, s);
            area->Nearest(g, end);
            Walk(s.GetX(), s.GetY(), g.GetX(), g.GetY());
            double length = 0;
            ZOR_Point at = s.GetZORPoint();
            for (int i = 0; i < route.NumElements(); i++) {
                const ZOR_Point& p = route.At(i)->GetZORPoint();
                ASSERT_TRUE(p.x != at.x || p.y != at.y) << "a leg of zero length";
                ASSERT_TRUE(Walkable(room, at.x, at.y, p.x, p.y)) << "seed " << seed << " query " << q;
                for (const Ring& r : room.polygons) // the clearance, at 65 points of the leg
                    for (std::size_t e = 0; clearance && e < r.size(); e++)
                        for (double t = 0; t <= 1; t += 1.0 / 64)
                            ASSERT_GE(ToEdge(r[e], r[(e + 1) % r.size()], at.x + t * (p.x - at.x), at.y + t * (p.y - at.y)),
                                      clearance - 1e-6);
                length += std::hypot(p.x - at.x, p.y - at.y);
                at = p;
            }
            ASSERT_TRUE(at.x == end.GetX() && at.y == end.GetY()) << "seed " << seed << " query " << q;
            if (clearance == 0) {
                ASSERT_NEAR(length, ReferenceLength(room, s.GetZORPoint(), g.GetZORPoint()), 1e-6) << seed << " " << q;
            }
        }
        delete area;
        area = nullptr;
    }
}

TEST_F(WalkTest, AwkwardPlaces)
{
    // A room 400 by 300 with a square hole, and a wall down x = 200 that
    // leaves a corridor 10 wide (y 140 to 150) from the left half to the right.
    WalkRoom room;
    room.polygons = {{ZOR_Point(0, 0), ZOR_Point(200, 0), ZOR_Point(200, 140), ZOR_Point(205, 140),
                      ZOR_Point(205, 0), ZOR_Point(400, 0), ZOR_Point(400, 300), ZOR_Point(205, 300),
                      ZOR_Point(205, 150), ZOR_Point(200, 150), ZOR_Point(200, 300), ZOR_Point(100, 300),
                      ZOR_Point(50, 300), ZOR_Point(0, 300)}, // (100, 300) is a straight corner
                     Rect(50, 50, 100, 100)};
    Make(room);
    EXPECT_EQ(Walk(10, 10, 10, 10), "");                          // already there
    EXPECT_EQ(Walk(60, 75, 10, 75), "(50,75)(10,75)");            // a start in the hole walks out first
    EXPECT_EQ(Walk(10, 75, 60, 75), "(50,75)");                   // a target in the hole: its nearest edge
    EXPECT_EQ(Walk(0, 200, 20, 200), "(20,200)");                 // a start on the boundary
    EXPECT_EQ(Walk(-4, 200, 20, 200), "(0,200)(20,200)");         // ... or just outside it
    EXPECT_EQ(Walk(30, 20, 120, 120), "(100,50)(120,120)");       // round the hole's corner
    EXPECT_EQ(Walk(150, 290, 250, 290), "(200,150)(205,150)(250,290)"); // through the corridor
    EXPECT_EQ(Walk(150, 290, 150, 350), "(150,300)");             // a target outside: the nearest point
    delete area;

    // A clearance of 5 makes the corridor exactly wide enough; 6 shuts it, and
    // a target beyond is then the nearest point that can be reached.
    Make(room, 5);
    EXPECT_EQ(Walk(150, 290, 250, 290), "(195,145)(210,145)(250,290)");
    delete area;
    Make(room, 6);
    EXPECT_EQ(Walk(150, 200, 250, 200), "(194,200)");
    EXPECT_FALSE(area->Contains(GLPoint(202, 145)));
    EXPECT_TRUE(area->Contains(GLPoint(100, 200)));
}

std::string gNotices; // what the host notice was told: "<kind> <file>(<line>): <text>"

void Notice(int kind, const char* file, int line, const char* text)
{
    gNotices += std::to_string(kind) + " " + file + "(" + std::to_string(line) + "): " + text;
}

TEST_F(WalkTest, TheTextFormReadsAnAreaAndTellsTheHostTheLineOfAFault)
{
    const std::string file = ::testing::TempDir() + "walk.txt";
    const struct {
        const char* text;
        const char* notice; // null: read
    } cases[] = {
        {"# a courtyard\nclearance 2\nboundary 0 0, 100 0, 100 100, 0 100\n\nhole 40 40 60 40 60 60\n", nullptr},
        {"boundary 0 0 100 0 100 100\nwall 1 2\n", "(2): unknown keyword"},
        {"boundary 0 0 100 0 100 100 0\n", "(1): a point lacks its y"},
        {"boundary 0 0 100 0 1x0 100\n", "(1): a number was expected"},
        {"hole 0 0 10 0 10 10\n", "(1): a hole before the boundary"},
        {"boundary 0 0 100 0 100 100 0 100\nhole 90 90 120 90 120 120\n", "(2): a hole is not inside the boundary"},
        {"boundary 0 0 100 0 100 100 0 100\nhole 10 10 50 10 50 50\nhole 40 40 60 40 60 60\n",
         "(3): a hole overlaps another hole"},
        {"boundary 0 0 100 100 100 0 0 100\n", "(1): a polygon crosses itself"},
        {"boundary 0 0 100 0 100 0\n", "(1): a polygon needs three distinct points"},
        {"# nothing\n", "(0): no boundary"},
    };
    GLSetHostNotice(&Notice);
    for (const auto& c : cases) {
        std::ofstream(file) << c.text;
        gNotices.clear();
        GLWalkArea* read = GLWalkArea::Load(file.c_str());
        if (c.notice) {
            EXPECT_EQ(read, nullptr) << c.text;
            EXPECT_EQ(gNotices, "1 " + file + c.notice);
        } else {
            ASSERT_NE(read, nullptr) << gNotices;
            EXPECT_EQ(gNotices, "");
            EXPECT_EQ(read->GetClearance(), 2);
            EXPECT_EQ(read->GetPolygonCount(), 2);
            EXPECT_EQ(read->GetPointCount(1), 3);
            EXPECT_FALSE(read->Contains(GLPoint(55, 45)));
        }
        delete read;
    }
    std::remove(file.c_str());
    gNotices.clear();
    EXPECT_EQ(GLWalkArea::Load(file.c_str()), nullptr);
    EXPECT_EQ(gNotices, "1 " + file + "(0): a walkable area that cannot be opened: no such file");
    GLSetHostNotice(nullptr);
}

// A kernel that has no memory for walkable areas.
class StingyKernel : public RecordingKernel {
public:
    void* AllocMemory(std::uint32_t uSize, const char* pFile, int iLine) override
    {
        return std::string(pFile) == "Source/Glwalk.cpp" ? nullptr : RecordingKernel::AllocMemory(uSize, pFile, iLine);
    }
};

TEST_F(WalkTest, MisuseIsAFailedCheck)
{
    WalkRoom room;
    room.polygons = {Rect(0, 0, 100, 100)};
    const auto build = [&](std::vector<Ring> holes, int clearance) {
        room.polygons.resize(1);
        room.polygons.insert(room.polygons.end(), holes.begin(), holes.end());
        Make(room, clearance);
    };
    const char* file = "Source/Glwalk.cpp";
    EXPECT_GL_ASSERT(build({}, -1), file, "iClearance >= 0");
    EXPECT_GL_ASSERT(build({{ZOR_Point(5, 5), ZOR_Point(9, 9), ZOR_Point(5, 5)}}, 0), file, "iDistinctPoints >= 3");
    EXPECT_GL_ASSERT(build({{ZOR_Point(5, 5), ZOR_Point(9, 9), ZOR_Point(9, 5), ZOR_Point(5, 9)}}, 0), file,
                     "!fCrossesItself");
    EXPECT_GL_ASSERT(build({Rect(90, 90, 110, 110)}, 0), file, "fInsideBoundary");
    EXPECT_GL_ASSERT(build({Rect(10, 10, 50, 50), Rect(20, 20, 30, 30)}, 0), file, "!fOverlapsHole");
    build({}, 0);
    EXPECT_GL_ASSERT(area->GetPoints(1), file, "iPolygon >= 0 && iPolygon < GetPolygonCount()");
    EXPECT_GL_ASSERT(
        {
            StingyKernel stingy;
            DLLInit(&stingy);
            build({}, 0);
        },
        file, "pBlock");
}

} // namespace
