// Glwalk.cpp - walkable areas and their shortest routes.
//
// A shortest route inside polygons bends only at corners that poke into the
// walkable space (a hole's convex corners, the boundary's reflex ones), and
// each of its legs leaves a corner and reaches the next one tangentially. So
// the area keeps those corners as the nodes of a graph whose links are the
// tangent legs that no wall blocks; a query links its two ends to the nodes
// they see and runs A* with the straight-line distance as its estimate.
//
// With a clearance the walkable space shrinks: each edge moves inward by the
// clearance, and each node is the point where a corner's two moved edges
// meet, rounded to a whole pixel that still keeps the clearance.
//
// Corners, nodes and the ends of queries are whole-pixel points, so the tests
// that decide whether a leg meets a wall are exact integer arithmetic; only
// distances (lengths, clearance) are floating point.
#include "glwalk.h"

#include "glplatfm.h"
#include "glpoly.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <new>
#include <vector>

namespace {

// Every block of an area comes from the kernel, like every other block of
// the library, and is checked here.
void* AllocBlock(std::size_t size)
{
    void* pBlock = GL_ALLOC(size);
    GL_ASSERT(pBlock);
    return pBlock;
}

template <class T>
class KernelAllocator {
public:
    typedef T value_type;
    KernelAllocator() {}
    template <class U>
    KernelAllocator(const KernelAllocator<U>&)
    {
    }
    T* allocate(std::size_t n)
    {
        return static_cast<T*>(AllocBlock(n * sizeof(T)));
    }
    void deallocate(T* p, std::size_t) { GL_FREE(p); }
    template <class U>
    bool operator==(const KernelAllocator<U>&) const
    {
        return true;
    }
    template <class U>
    bool operator!=(const KernelAllocator<U>&) const
    {
        return false;
    }
};

template <class T>
using Array = std::vector<T, KernelAllocator<T>>;

typedef long long Wide;

struct Pt {
    int x, y;
    bool operator==(const Pt& o) const { return x == o.x && y == o.y; }
    bool operator!=(const Pt& o) const { return !(*this == o); }
};

inline Wide Cross(Wide ax, Wide ay, Wide bx, Wide by)
{
    return ax * by - ay * bx;
}

// > 0 when c lies left of the line a->b, < 0 right of it, 0 on it.
inline Wide Orient(const Pt& a, const Pt& b, const Pt& c)
{
    return Cross(Wide(b.x) - a.x, Wide(b.y) - a.y, Wide(c.x) - a.x, Wide(c.y) - a.y);
}

inline int Sign(Wide v)
{
    return (v > 0) - (v < 0);
}

// p on the line a->b: TRUE when it also lies within the segment.
inline int Within(const Pt& a, const Pt& b, const Pt& p)
{
    return std::min(a.x, b.x) <= p.x && p.x <= std::max(a.x, b.x) && std::min(a.y, b.y) <= p.y &&
           p.y <= std::max(a.y, b.y);
}

// TRUE when the closed segments a-b and p-q share a point.
int Meet(const Pt& a, const Pt& b, const Pt& p, const Pt& q)
{
    const int d1 = Sign(Orient(a, b, p)), d2 = Sign(Orient(a, b, q));
    const int d3 = Sign(Orient(p, q, a)), d4 = Sign(Orient(p, q, b));
    if (d1 * d2 < 0 && d3 * d4 < 0)
        return TRUE;
    return (d1 == 0 && Within(a, b, p)) || (d2 == 0 && Within(a, b, q)) || (d3 == 0 && Within(p, q, a)) ||
           (d4 == 0 && Within(p, q, b));
}

double Length(double dx, double dy)
{
    return std::sqrt(dx * dx + dy * dy);
}

double Distance(const Pt& a, const Pt& b)
{
    return Length(double(b.x) - a.x, double(b.y) - a.y);
}

// Squared distance from (x, y) to the segment a-b.
double PointSegment2(double x, double y, const Pt& a, const Pt& b)
{
    const double dx = double(b.x) - a.x, dy = double(b.y) - a.y;
    const double len2 = dx * dx + dy * dy;
    double t = len2 > 0 ? ((x - a.x) * dx + (y - a.y) * dy) / len2 : 0;
    t = t < 0 ? 0 : t > 1 ? 1 : t;
    const double ex = a.x + t * dx - x, ey = a.y + t * dy - y;
    return ex * ex + ey * ey;
}

// Squared distance between two segments that do not meet.
double SegmentSegment2(const Pt& a, const Pt& b, const Pt& p, const Pt& q)
{
    return std::min(std::min(PointSegment2(a.x, a.y, p, q), PointSegment2(b.x, b.y, p, q)),
                    std::min(PointSegment2(p.x, p.y, a, b), PointSegment2(q.x, q.y, a, b)));
}

// An integer box, grown by a margin when tested.
struct Box {
    int left, top, right, bottom;
};

Box BoxOf(const Pt& a, const Pt& b)
{
    return {std::min(a.x, b.x), std::min(a.y, b.y), std::max(a.x, b.x), std::max(a.y, b.y)};
}

inline int Apart(const Box& a, const Box& b, int iMargin)
{
    return a.right + iMargin < b.left || b.right + iMargin < a.left || a.bottom + iMargin < b.top ||
           b.bottom + iMargin < a.top;
}

// Where a whole-pixel point is looked for round an ideal one: the offsets of
// the 5 by 5 square, nearest first.
struct Offset {
    int dx, dy;
};
const int kSnapRadius = 2;

struct Candidate {
    double distance;
    double x, y;
    bool operator<(const Candidate& o) const { return distance < o.distance; }
};

struct HeapEntry {
    double f;
    int node;
    bool operator<(const HeapEntry& o) const { return f > o.f; } // smallest on top
};

const double kInfinity = 1e300;

} // namespace

struct GLWalkAreaData {
    static void* operator new(std::size_t size) { return AllocBlock(size); }
    static void operator delete(void* p) { GL_FREE(p); }

    int clearance;
    double clear2; // the squared clearance, less a hair for rounding

    // The corners of every polygon, polygon after polygon; polygon i holds
    // corners first[i] to first[i + 1] - 1, and its edges run from each
    // corner to the next round the polygon. The boundary runs with the
    // walkable space on its left, the holes the other way round, so the space
    // is on the left of every edge.
    Array<Pt> corner;
    Array<int> next, prev;
    Array<int> first;
    Array<Box> polyBox;
    Array<Box> edgeBox;
    // The order the points were given in, for GetPoints.
    Array<ZOR_Point> given;
    Array<int> reversed;

    // The graph, made when a query needs it after a change.
    int ready;
    Array<Pt> node;
    Array<int> nodeCorner; // the corner a node sits on, -1 when moved off it
    Array<Pt> nodeDirA, nodeDirB; // the directions of the corner's two edges
    Array<int> linkFirst;         // node i's links: linkFirst[i] to linkFirst[i + 1] - 1
    Array<int> link;
    Array<double> linkLength;

    // Scratch of a query, kept to spare the kernel an allocation per query.
    Array<double> dist;
    Array<int> cameFrom;
    Array<double> goalLength; // < 0: not yet tested; kInfinity: not seen
    Array<HeapEntry> heap;
    Array<Pt> path;
    Array<Candidate> candidates;

    int Polygons() const { return static_cast<int>(first.size()) - 1; }

    // ----- where an actor may be -----

    // 1 inside polygon iPoly, 0 on its edge, -1 outside; (x, y) may be any point.
    int Classify(int iPoly, double x, double y) const
    {
        int fInside = FALSE;
        for (int k = first[iPoly]; k < first[iPoly + 1]; k++) {
            const Pt& a = corner[k];
            const Pt& b = corner[next[k]];
            const double ex = double(b.x) - a.x, ey = double(b.y) - a.y;
            const double o = ex * (y - a.y) - ey * (x - a.x);
            if (std::fabs(o) <= 1e-9 * (std::fabs(ex) + std::fabs(ey)) && x >= std::min(a.x, b.x) - 1e-9 &&
                x <= std::max(a.x, b.x) + 1e-9 && y >= std::min(a.y, b.y) - 1e-9 && y <= std::max(a.y, b.y) + 1e-9)
                return 0;
            if ((a.y > y) != (b.y > y)) {
                const double xCross = a.x + (y - a.y) * ex / ey;
                if (xCross > x)
                    fInside = !fInside;
            }
        }
        return fInside ? 1 : -1;
    }

    // TRUE when (x, y) is inside or on the boundary and not inside a hole.
    int InSpace(double x, double y) const
    {
        if (Classify(0, x, y) < 0)
            return FALSE;
        for (int i = 1; i < Polygons(); i++) {
            const Box& b = polyBox[i];
            if (x > b.left && x < b.right && y > b.top && y < b.bottom && Classify(i, x, y) > 0)
                return FALSE;
        }
        return TRUE;
    }

    // TRUE when an actor may stand at p: in the space and, with a clearance,
    // strictly inside it and no nearer any edge than the clearance.
    int Stands(const Pt& p) const
    {
        if (clearance == 0)
            return InSpace(p.x, p.y);
        const Box at = {p.x, p.y, p.x, p.y};
        for (int i = 0; i < Polygons(); i++) {
            if (i > 0 && Apart(polyBox[i], at, clearance))
                continue;
            for (int k = first[i]; k < first[i + 1]; k++)
                if (!Apart(edgeBox[k], at, clearance) &&
                    PointSegment2(p.x, p.y, corner[k], corner[next[k]]) < clear2)
                    return FALSE;
        }
        return InSpace(p.x, p.y);
    }

    // TRUE when an actor walks the straight line a-b without leaving the
    // space or coming nearer an edge than the clearance. Both ends are points
    // where he may stand; iA and iB name the corner an end sits on, or -1.
    int Clear(const Pt& a, int iA, const Pt& b, int iB) const
    {
        const Box leg = BoxOf(a, b);
        int fTouched = FALSE;
        for (int i = 0; i < Polygons(); i++) {
            if (i > 0 && Apart(polyBox[i], leg, clearance))
                continue;
            for (int k = first[i]; k < first[i + 1]; k++) {
                if (Apart(edgeBox[k], leg, clearance))
                    continue;
                const Pt& p = corner[k];
                const Pt& q = corner[next[k]];
                const int d1 = Sign(Orient(a, b, p)), d2 = Sign(Orient(a, b, q));
                if (d1 * d2 > 0) {
                    if (clearance > 0 && SegmentSegment2(a, b, p, q) < clear2)
                        return FALSE;
                    continue;
                }
                const int d3 = Sign(Orient(p, q, a)), d4 = Sign(Orient(p, q, b));
                if (d3 * d4 > 0) {
                    if (clearance > 0 && SegmentSegment2(a, b, p, q) < clear2)
                        return FALSE;
                    continue;
                }
                if (clearance > 0 || (d1 && d2 && d3 && d4))
                    return FALSE; // a crossing, or a touch where there must be none
                // A touch. The two edges of a corner the leg starts from
                // touch it there and nowhere else, unless one runs along it.
                const int fExpected = (iA >= 0 && (k == iA || next[k] == iA) && (k == iA ? d2 : d1) != 0) ||
                                      (iB >= 0 && (k == iB || next[k] == iB) && (k == iB ? d2 : d1) != 0);
                if (!fExpected)
                    fTouched = TRUE;
            }
        }
        // Without a touch on the way the leg lies in one piece of the plane,
        // the space (both ends are in it, and leave their corners outward).
        // With touches it is cut where it touches, and each piece is tested.
        return !fTouched || PiecesInSpace(a, b);
    }

    int PiecesInSpace(const Pt& a, const Pt& b) const
    {
        double cut[512];
        int iCuts = 0;
        cut[iCuts++] = 0;
        cut[iCuts++] = 1;
        const double dx = double(b.x) - a.x, dy = double(b.y) - a.y;
        const double len2 = dx * dx + dy * dy;
        for (int k = 0; k < static_cast<int>(corner.size()); k++) {
            const Pt& p = corner[k];
            if (Orient(a, b, p) == 0 && Within(a, b, p) && iCuts < 512)
                cut[iCuts++] = ((p.x - a.x) * dx + (p.y - a.y) * dy) / len2;
        }
        std::sort(cut, cut + iCuts);
        for (int i = 0; i + 1 < iCuts; i++) {
            if (cut[i + 1] - cut[i] < 1e-12)
                continue;
            const double t = (cut[i] + cut[i + 1]) / 2;
            if (!InSpace(a.x + t * dx, a.y + t * dy))
                return FALSE;
        }
        return TRUE;
    }

    // ----- the graph -----

    // TRUE when a leg from node n toward w leaves n's corner tangentially:
    // both of the corner's edges lie on one side of it. Only such legs can
    // be part of a shortest route. A node moved off its corner was rounded to
    // a whole pixel, so a leg along a moved edge may lean by a pixel or so
    // from the edge's own direction: within that it counts as along it.
    int Tangent(int n, const Pt& w) const
    {
        const Pt& p = node[n];
        const Wide wx = Wide(w.x) - p.x, wy = Wide(w.y) - p.y;
        return Side(wx, wy, nodeDirA[n]) * Side(wx, wy, nodeDirB[n]) >= 0;
    }

    int Side(Wide wx, Wide wy, const Pt& dir) const
    {
        const Wide s = Cross(wx, wy, dir.x, dir.y);
        if (clearance > 0 && double(s) * s <= 2.25 * (double(dir.x) * dir.x + double(dir.y) * dir.y))
            return 0;
        return Sign(s);
    }

    // The whole-pixel point within reach of (x, y) where an actor may stand
    // that is nearest to (tx, ty); FALSE when there is none.
    int Snap(double x, double y, double tx, double ty, Pt& out) const
    {
        const int cx = static_cast<int>(std::floor(x + 0.5)), cy = static_cast<int>(std::floor(y + 0.5));
        double best = kInfinity;
        for (int dy = -kSnapRadius; dy <= kSnapRadius; dy++)
            for (int dx = -kSnapRadius; dx <= kSnapRadius; dx++) {
                const Pt p = {cx + dx, cy + dy};
                const double d = Length(p.x - tx, p.y - ty);
                if (d < best && Stands(p)) {
                    best = d;
                    out = p;
                }
            }
        return best < kInfinity;
    }

    // Where corner k's two edges, moved into the space by the clearance, meet.
    int Mitre(int k, double& x, double& y) const
    {
        const Pt& v = corner[k];
        const Pt& a = corner[prev[k]];
        const Pt& b = corner[next[k]];
        const double l1 = Distance(a, v), l2 = Distance(v, b);
        const double n1x = -(v.y - a.y) / l1, n1y = (v.x - a.x) / l1;
        const double n2x = -(b.y - v.y) / l2, n2y = (b.x - v.x) / l2;
        const double denom = 1 + n1x * n2x + n1y * n2y;
        if (denom < 1e-9)
            return FALSE; // the edges fold back on each other
        x = v.x + clearance * (n1x + n2x) / denom;
        y = v.y + clearance * (n1y + n2y) / denom;
        return TRUE;
    }

    void Build()
    {
        node.clear();
        nodeCorner.clear();
        nodeDirA.clear();
        nodeDirB.clear();
        for (int k = 0; k < static_cast<int>(corner.size()); k++) {
            const Pt& v = corner[k];
            const Pt& a = corner[prev[k]];
            const Pt& b = corner[next[k]];
            if (Orient(a, v, b) >= 0)
                continue; // the corner turns away from the space, or is straight
            Pt p = v;
            if (clearance > 0) {
                double x, y;
                if (!Mitre(k, x, y) || !Snap(x, y, x, y, p))
                    continue; // no room round this corner
            }
            node.push_back(p);
            nodeCorner.push_back(clearance > 0 ? -1 : k);
            nodeDirA.push_back({a.x - v.x, a.y - v.y});
            nodeDirB.push_back({b.x - v.x, b.y - v.y});
        }
        const int n = static_cast<int>(node.size());
        Array<int> from, to;
        for (int i = 0; i < n; i++)
            for (int j = i + 1; j < n; j++)
                if (node[i] != node[j] && Tangent(i, node[j]) && Tangent(j, node[i]) &&
                    Clear(node[i], nodeCorner[i], node[j], nodeCorner[j])) {
                    from.push_back(i);
                    to.push_back(j);
                }
        linkFirst.assign(n + 1, 0);
        for (std::size_t e = 0; e < from.size(); e++) {
            linkFirst[from[e] + 1]++;
            linkFirst[to[e] + 1]++;
        }
        for (int i = 0; i < n; i++)
            linkFirst[i + 1] += linkFirst[i];
        link.assign(linkFirst[n], 0);
        linkLength.assign(linkFirst[n], 0);
        Array<int> fill(linkFirst.begin(), linkFirst.end() - 1);
        for (std::size_t e = 0; e < from.size(); e++) {
            const double d = Distance(node[from[e]], node[to[e]]);
            link[fill[from[e]]] = to[e];
            linkLength[fill[from[e]]++] = d;
            link[fill[to[e]]] = from[e];
            linkLength[fill[to[e]]++] = d;
        }
        dist.assign(n, kInfinity);
        cameFrom.assign(n, -1);
        goalLength.assign(n, -1);
        ready = TRUE;
    }

    // ----- queries -----

    // The point of edge k nearest to p, moved in by the clearance, as a
    // candidate with its distance from p.
    void AddEdgeCandidate(int k, const Pt& p)
    {
        const Pt& a = corner[k];
        const Pt& b = corner[next[k]];
        const double dx = double(b.x) - a.x, dy = double(b.y) - a.y;
        const double len = Length(dx, dy);
        double t = ((p.x - a.x) * dx + (p.y - a.y) * dy) / (len * len);
        t = t < 0 ? 0 : t > 1 ? 1 : t;
        const double x = a.x + t * dx - clearance * dy / len, y = a.y + t * dy + clearance * dx / len;
        candidates.push_back({Length(x - p.x, y - p.y), x, y});
    }

    // The whole-pixel point nearest to p where an actor may stand: the
    // nearest points of the edges, moved in by the clearance, and the corners'
    // mitres are tried nearest first. FALSE when the area has no such point.
    int NearestStand(const Pt& p, Pt& out)
    {
        candidates.clear();
        for (int k = 0; k < static_cast<int>(corner.size()); k++) {
            AddEdgeCandidate(k, p);
            double mx, my;
            if (clearance > 0 && Mitre(k, mx, my))
                candidates.push_back({Length(mx - p.x, my - p.y), mx, my});
        }
        std::sort(candidates.begin(), candidates.end());
        double best = kInfinity;
        for (std::size_t i = 0; i < candidates.size() && candidates[i].distance < best + 3 * kSnapRadius; i++) {
            Pt q;
            if (Snap(candidates[i].x, candidates[i].y, p.x, p.y, q) && Distance(q, p) < best) {
                best = Distance(q, p);
                out = q;
            }
        }
        return best < kInfinity;
    }

    // The goal-side length of node n, tested the first time it is asked for.
    double GoalLength(int n, const Pt& g)
    {
        if (goalLength[n] < 0 && node[n] == g)
            goalLength[n] = 0;
        else if (goalLength[n] < 0)
            goalLength[n] = Tangent(n, g) && Clear(node[n], nodeCorner[n], g, -1) ? Distance(node[n], g) : kInfinity;
        return goalLength[n];
    }

    void Push(double f, int n)
    {
        heap.push_back({f, n});
        std::push_heap(heap.begin(), heap.end());
    }

    // Appends the shortest route's points after s, g last, to path: TRUE; FALSE
    // when g cannot be reached from s, with dist set for every node that can.
    int Route(const Pt& s, const Pt& g)
    {
        if (Clear(s, -1, g, -1)) {
            path.push_back(g);
            return TRUE;
        }
        const int n = static_cast<int>(node.size());
        std::fill(dist.begin(), dist.end(), kInfinity);
        std::fill(goalLength.begin(), goalLength.end(), -1.0);
        heap.clear();
        for (int i = 0; i < n; i++)
            if (node[i] == s || (Tangent(i, s) && Clear(s, -1, node[i], nodeCorner[i]))) {
                dist[i] = Distance(s, node[i]);
                cameFrom[i] = -1;
                Push(dist[i] + Distance(node[i], g), i);
            }
        double best = kInfinity;
        int iBest = -1;
        while (!heap.empty()) {
            const HeapEntry top = heap.front();
            std::pop_heap(heap.begin(), heap.end());
            heap.pop_back();
            if (top.f >= best)
                break;
            const int i = top.node;
            if (top.f > dist[i] + Distance(node[i], g) + 1e-9)
                continue; // a stale entry
            const double viaGoal = dist[i] + GoalLength(i, g);
            if (viaGoal < best) {
                best = viaGoal;
                iBest = i;
            }
            for (int e = linkFirst[i]; e < linkFirst[i + 1]; e++) {
                const int j = link[e];
                const double d = dist[i] + linkLength[e];
                if (d < dist[j] - 1e-12) {
                    dist[j] = d;
                    cameFrom[j] = i;
                    Push(d + Distance(node[j], g), j);
                }
            }
        }
        if (iBest < 0)
            return FALSE;
        const std::size_t start = path.size();
        path.push_back(g);
        for (int i = iBest; i >= 0; i = cameFrom[i])
            path.push_back(node[i]);
        std::reverse(path.begin() + start, path.end());
        return TRUE;
    }

    // After Route failed: the point nearest to g that can be reached from s.
    // Dijkstra has run to the end, so dist marks every node that can.
    Pt NearestReachable(const Pt& s, const Pt& g)
    {
        candidates.clear();
        for (int k = 0; k < static_cast<int>(corner.size()); k++) {
            AddEdgeCandidate(k, g);
        }
        for (std::size_t i = 0; i < node.size(); i++)
            if (dist[i] < kInfinity)
                candidates.push_back({Distance(node[i], g), double(node[i].x), double(node[i].y)});
        std::sort(candidates.begin(), candidates.end());
        Pt best = s;
        double bestDistance = Distance(s, g);
        for (std::size_t c = 0; c < candidates.size() && candidates[c].distance < bestDistance + 3 * kSnapRadius; c++) {
            Pt q;
            if (!Snap(candidates[c].x, candidates[c].y, g.x, g.y, q) || Distance(q, g) >= bestDistance)
                continue;
            int fReached = Clear(s, -1, q, -1);
            for (std::size_t i = 0; !fReached && i < node.size(); i++)
                fReached = dist[i] < kInfinity && (node[i] == q || Clear(node[i], nodeCorner[i], q, -1));
            if (fReached) {
                best = q;
                bestDistance = Distance(q, g);
            }
        }
        return best;
    }
};

namespace {

// Why a polygon cannot be part of an area; null when it can.
const char* const kTooFewPoints = "a polygon needs three distinct points";
const char* const kCrossesItself = "a polygon crosses itself";
const char* const kOutside = "a hole is not inside the boundary";
const char* const kOverlaps = "a hole overlaps another hole";

// The points without repeats (a point equal to the one before it, or a last
// point equal to the first).
void Distinct(const ZOR_Point* pPoints, int iCount, Array<Pt>& out)
{
    out.clear();
    for (int i = 0; i < iCount; i++) {
        const Pt p = {pPoints[i].x, pPoints[i].y};
        if (out.empty() || out.back() != p)
            out.push_back(p);
    }
    while (out.size() > 1 && out.back() == out.front())
        out.pop_back();
}

int CrossesItself(const Array<Pt>& p)
{
    const int n = static_cast<int>(p.size());
    for (int i = 0; i < n; i++) {
        const Pt& a = p[i];
        const Pt& b = p[(i + 1) % n];
        // The next edge may not fold back along this one.
        const Pt& c = p[(i + 2) % n];
        if (Orient(a, b, c) == 0 && (Wide(b.x) - a.x) * (Wide(c.x) - b.x) + (Wide(b.y) - a.y) * (Wide(c.y) - b.y) < 0)
            return TRUE;
        // Edges that are not neighbours share no point.
        for (int j = i + 2; j < n; j++) {
            if (i == 0 && j == n - 1)
                continue;
            if (Meet(a, b, p[j], p[(j + 1) % n]))
                return TRUE;
        }
    }
    return FALSE;
}

double SignedArea2(const Array<Pt>& p)
{
    double s = 0;
    for (std::size_t i = 0; i < p.size(); i++) {
        const Pt& a = p[i];
        const Pt& b = p[(i + 1) % p.size()];
        s += double(a.x) * b.y - double(b.x) * a.y;
    }
    return s;
}

int ProperlyCross(const Pt& a, const Pt& b, const Pt& p, const Pt& q)
{
    return Sign(Orient(a, b, p)) * Sign(Orient(a, b, q)) < 0 && Sign(Orient(p, q, a)) * Sign(Orient(p, q, b)) < 0;
}

} // namespace

GLWalkArea::GLWalkArea(int iClearance)
{
    GL_ASSERT(iClearance >= 0);
    mpData = new GLWalkAreaData;
    mpData->clearance = iClearance;
    mpData->clear2 = double(iClearance) * iClearance - 1e-7;
    mpData->first.push_back(0);
    mpData->ready = FALSE;
}

GLWalkArea::GLWalkArea(const GLListAsArray<GLPoint>& boundary, int iClearance) : GLWalkArea(iClearance)
{
    Array<ZOR_Point> points;
    for (int i = 0; i < boundary.NumElements(); i++)
        points.push_back(boundary.At(i)->GetZORPoint());
    AddPolygon(points.data(), static_cast<int>(points.size()), FALSE);
}

GLWalkArea::GLWalkArea(const GLPoly& boundary, int iClearance) : GLWalkArea(iClearance)
{
    AddPolygon(boundary.GetPoints(), boundary.GetPointCount(), FALSE);
}

GLWalkArea::~GLWalkArea()
{
    delete mpData;
    mpData = 0;
}

void GLWalkArea::AddHole(const GLListAsArray<GLPoint>& points)
{
    Array<ZOR_Point> copy;
    for (int i = 0; i < points.NumElements(); i++)
        copy.push_back(points.At(i)->GetZORPoint());
    AddPolygon(copy.data(), static_cast<int>(copy.size()), TRUE);
}

void GLWalkArea::AddHole(const GLPoly& hole)
{
    AddPolygon(hole.GetPoints(), hole.GetPointCount(), TRUE);
}

namespace {

// The reason the polygon cannot join the area as its boundary (no polygon
// yet) or as a hole; null when it can.
const char* Refusal(const GLWalkAreaData& d, const Array<Pt>& p)
{
    if (p.size() < 3)
        return kTooFewPoints;
    if (CrossesItself(p))
        return kCrossesItself;
    if (d.Polygons() == 0)
        return 0;
    const int n = static_cast<int>(p.size());
    for (int i = 0; i < n; i++) {
        const Pt& a = p[i];
        const Pt& b = p[(i + 1) % n];
        // Every corner and the middle of every edge inside or on the boundary,
        // and no edge crossing it.
        if (d.Classify(0, a.x, a.y) < 0 || d.Classify(0, (a.x + b.x) / 2.0, (a.y + b.y) / 2.0) < 0)
            return kOutside;
        for (int k = d.first[0]; k < d.first[1]; k++)
            if (ProperlyCross(a, b, d.corner[k], d.corner[d.next[k]]))
                return kOutside;
    }
    for (int h = 1; h < d.Polygons(); h++) {
        for (int i = 0; i < n; i++) {
            const Pt& a = p[i];
            const Pt& b = p[(i + 1) % n];
            if (d.Classify(h, a.x, a.y) > 0 || d.Classify(h, (a.x + b.x) / 2.0, (a.y + b.y) / 2.0) > 0)
                return kOverlaps;
            for (int k = d.first[h]; k < d.first[h + 1]; k++)
                if (ProperlyCross(a, b, d.corner[k], d.corner[d.next[k]]))
                    return kOverlaps;
        }
        // The other hole's corners may not lie inside the new one either.
        for (int k = d.first[h]; k < d.first[h + 1]; k++) {
            const Pt& c = d.corner[k];
            int fInside = FALSE;
            int fOn = FALSE;
            for (int i = 0; i < n; i++) {
                const Pt& a = p[i];
                const Pt& b = p[(i + 1) % n];
                if (Orient(a, b, c) == 0 && Within(a, b, c))
                    fOn = TRUE;
                if ((a.y > c.y) != (b.y > c.y) && a.x + double(c.y - a.y) * (b.x - a.x) / (b.y - a.y) > c.x)
                    fInside = !fInside;
            }
            if (fInside && !fOn)
                return kOverlaps;
        }
    }
    return 0;
}

} // namespace

void GLWalkArea::AddPolygon(const ZOR_Point* pPoints, int iCount, int fHole)
{
    GLWalkAreaData& d = *mpData;
    Array<Pt> p;
    Distinct(pPoints, iCount, p);
    const char* pWhy = Refusal(d, p);
    const int iDistinctPoints = static_cast<int>(p.size());
    GL_ASSERT(iDistinctPoints >= 3);
    const int fCrossesItself = pWhy == kCrossesItself;
    GL_ASSERT(!fCrossesItself);
    const int fInsideBoundary = pWhy != kOutside;
    GL_ASSERT(fInsideBoundary);
    const int fOverlapsHole = pWhy == kOverlaps;
    GL_ASSERT(!fOverlapsHole);

    for (std::size_t i = 0; i < p.size(); i++)
        d.given.push_back({p[i].x, p[i].y});
    // The space lies left of every edge: the boundary runs counterclockwise
    // (with y growing downward, clockwise on the screen), holes the other way.
    const int fReverse = fHole ? SignedArea2(p) > 0 : SignedArea2(p) < 0;
    if (fReverse)
        std::reverse(p.begin(), p.end());
    d.reversed.push_back(fReverse);
    const int iFirst = static_cast<int>(d.corner.size());
    const int n = static_cast<int>(p.size());
    Box box = {p[0].x, p[0].y, p[0].x, p[0].y};
    for (int i = 0; i < n; i++) {
        d.corner.push_back(p[i]);
        d.next.push_back(iFirst + (i + 1) % n);
        d.prev.push_back(iFirst + (i + n - 1) % n);
        d.edgeBox.push_back(BoxOf(p[i], p[(i + 1) % n]));
        box = {std::min(box.left, p[i].x), std::min(box.top, p[i].y), std::max(box.right, p[i].x),
               std::max(box.bottom, p[i].y)};
    }
    d.polyBox.push_back(box);
    d.first.push_back(iFirst + n);
    d.ready = FALSE;
}

int GLWalkArea::GetClearance() const
{
    return mpData->clearance;
}

int GLWalkArea::GetPolygonCount() const
{
    return mpData->Polygons();
}

int GLWalkArea::GetPointCount(int iPolygon) const
{
    GL_ASSERT(iPolygon >= 0 && iPolygon < GetPolygonCount());
    return mpData->first[iPolygon + 1] - mpData->first[iPolygon];
}

const ZOR_Point* GLWalkArea::GetPoints(int iPolygon) const
{
    GL_ASSERT(iPolygon >= 0 && iPolygon < GetPolygonCount());
    return mpData->given.data() + mpData->first[iPolygon];
}

void GLWalkArea::Prepare() const
{
    if (!mpData->ready)
        mpData->Build();
}

int GLWalkArea::Contains(const GLPoint& point) const
{
    return mpData->Stands({point.GetX(), point.GetY()});
}

void GLWalkArea::Nearest(const GLPoint& point, GLPoint& nearest) const
{
    Pt p = {point.GetX(), point.GetY()};
    if (!mpData->Stands(p))
        mpData->NearestStand(p, p);
    nearest.SetPoint(p.x, p.y);
}

int GLWalkArea::FindPath(const GLPoint& from, const GLPoint& to, GLListAsArray<GLPoint>& route) const
{
    Prepare();
    GLWalkAreaData& d = *mpData;
    const Pt origin = {from.GetX(), from.GetY()};
    Pt s = origin;
    Pt g = {to.GetX(), to.GetY()};
    if (!d.Stands(s) && !d.NearestStand(s, s))
        return 0; // no point of the area keeps the clearance
    if (!d.Stands(g))
        d.NearestStand(g, g);
    d.path.clear();
    d.path.push_back(s);
    if (s != g && !d.Route(s, g)) {
        g = d.NearestReachable(s, g);
        if (s != g)
            d.Route(s, g);
    }
    int iAppended = 0;
    Pt last = origin;
    for (std::size_t i = 0; i < d.path.size(); i++)
        if (d.path[i] != last) {
            last = d.path[i];
            route.AddToEnd(GL_NEW GLPoint(last.x, last.y));
            iAppended++;
        }
    return iAppended;
}

// ----- the text form -----

namespace {

// Reads the whole numbers of a line after its keyword; FALSE (with the
// reason) for anything else in it.
int ReadNumbers(const char* pText, Array<int>& numbers, const char*& pWhy)
{
    numbers.clear();
    const char* p = pText;
    for (;;) {
        while (*p == ' ' || *p == '\t' || *p == ',' || *p == '\r' || *p == '\n')
            p++;
        if (!*p)
            return TRUE;
        const int fNegative = *p == '-';
        if (*p == '-' || *p == '+')
            p++;
        if (*p < '0' || *p > '9') {
            pWhy = "a number was expected";
            return FALSE;
        }
        long long v = 0;
        while (*p >= '0' && *p <= '9') {
            v = v * 10 + (*p++ - '0');
            if (v > 1000000) {
                pWhy = "a number is too large";
                return FALSE;
            }
        }
        if (*p && *p != ' ' && *p != '\t' && *p != ',' && *p != '\r' && *p != '\n') {
            pWhy = "a number was expected";
            return FALSE;
        }
        numbers.push_back(static_cast<int>(fNegative ? -v : v));
    }
}

} // namespace

GLWalkArea* GLWalkArea::Load(const char* fileName)
{
    char szWhy[1024] = "no file named";
    std::FILE* pFile = fileName ? GLPlatformOpenText(fileName, szWhy, sizeof szWhy) : 0;
    if (!pFile) {
        char szText[1100];
        std::snprintf(szText, sizeof szText, "a walkable area that cannot be opened: %s", szWhy);
        GLNotify(GL_NOTICE_ERROR, fileName, 0, szText);
        return 0;
    }
    GLWalkArea* pArea = 0;
    int iClearance = 0;
    int iLine = 0;
    // The corners and holes read so far, against the most an area may have.
    int iCorners = 0, iHoles = 0;
    char szLimit[64];
    const char* pWhy = 0;
    Array<int> numbers;
    Array<ZOR_Point> points;
    Array<Pt> distinct;
    char line[4096];
    while (!pWhy && std::fgets(line, sizeof(line), pFile)) {
        iLine++;
        if (!std::strchr(line, '\n') && !std::feof(pFile)) {
            pWhy = "the line is too long";
            break;
        }
        const char* p = line;
        while (*p == ' ' || *p == '\t')
            p++;
        if (*p == '#' || *p == '\n' || *p == '\r' || *p == '\0')
            continue;
        const char* pWord = p;
        while (*p && *p != ' ' && *p != '\t' && *p != ',' && *p != '\r' && *p != '\n')
            p++;
        const std::size_t iWord = static_cast<std::size_t>(p - pWord);
        if (!ReadNumbers(p, numbers, pWhy))
            break;
        if (iWord == 9 && std::strncmp(pWord, "clearance", 9) == 0) {
            if (pArea)
                pWhy = "the clearance comes after the boundary";
            else if (numbers.size() != 1 || numbers[0] < 0)
                pWhy = "the clearance is one number, 0 or more";
            else
                iClearance = numbers[0];
            continue;
        }
        const int fBoundary = iWord == 8 && std::strncmp(pWord, "boundary", 8) == 0;
        const int fHole = iWord == 4 && std::strncmp(pWord, "hole", 4) == 0;
        if (!fBoundary && !fHole) {
            pWhy = "unknown keyword";
            break;
        }
        if (fBoundary && pArea) {
            pWhy = "a second boundary";
            break;
        }
        if (fHole && !pArea) {
            pWhy = "a hole before the boundary";
            break;
        }
        if (numbers.size() % 2 != 0) {
            pWhy = "a point lacks its y";
            break;
        }
        iCorners += static_cast<int>(numbers.size() / 2);
        iHoles += fHole;
        if (iCorners > kMaxLoadedCorners || iHoles > kMaxLoadedHoles) {
            std::snprintf(szLimit, sizeof szLimit, "more than the %d %s a walkable area may have",
                          iHoles > kMaxLoadedHoles ? kMaxLoadedHoles : kMaxLoadedCorners,
                          iHoles > kMaxLoadedHoles ? "holes" : "corners");
            pWhy = szLimit;
            break;
        }
        points.clear();
        for (std::size_t i = 0; i < numbers.size(); i += 2)
            points.push_back({numbers[i], numbers[i + 1]});
        if (fBoundary) {
            pArea = ::new (AllocBlock(sizeof(GLWalkArea))) GLWalkArea(iClearance);
        }
        // Refused here, not by a failed check: the file is outside input.
        Distinct(points.data(), static_cast<int>(points.size()), distinct);
        pWhy = Refusal(*pArea->mpData, distinct);
        if (!pWhy)
            pArea->AddPolygon(points.data(), static_cast<int>(points.size()), fHole);
    }
    std::fclose(pFile);
    if (!pWhy && !pArea) {
        pWhy = "no boundary";
        iLine = 0;
    }
    if (pWhy) {
        GLNotify(GL_NOTICE_ERROR, fileName, iLine, pWhy);
        delete pArea;
        return 0;
    }
    return pArea;
}
