// WalkRooms.h - rooms for walking, made from a seed: a star-shaped boundary
// (its inner corners are reflex) and octagonal obstacles scattered inside it
// without overlapping. Used by the walk tests and the walk benchmark.
#ifndef QUINDLE_WALK_ROOMS_H
#define QUINDLE_WALK_ROOMS_H

#include "glpoint.h"
#include "glset.h"
#include "glwalk.h"

#include <cmath>
#include <random>
#include <vector>

struct WalkRoom {
    std::vector<std::vector<ZOR_Point>> polygons; // the boundary first, then the holes
};

// iCorners corners round the boundary, iHoles holes of iHoleCorners corners.
inline WalkRoom MakeWalkRoom(unsigned seed, int iCorners, int iHoles, int iHoleCorners)
{
    std::mt19937 random(seed);
    auto uniform = [&](double lo, double hi) { return std::uniform_real_distribution<double>(lo, hi)(random); };
    const double cx = 320, cy = 240, kPi = 3.14159265358979;
    WalkRoom room;
    std::vector<ZOR_Point> boundary;
    for (int i = 0; i < iCorners; i++) {
        const double a = 2 * kPi * i / iCorners, r = i % 2 ? 200 : 235;
        boundary.push_back(ZOR_Point(int(cx + r * 1.35 * std::cos(a)), int(cy + r * std::sin(a))));
    }
    room.polygons.push_back(boundary);
    std::vector<double> placed; // x, y, radius of each hole
    for (int tries = 0; int(placed.size()) < 3 * iHoles && tries < 100000; tries++) {
        const double r = uniform(10, 22), a = uniform(0, 2 * kPi), d = uniform(0, 170 - r);
        const double x = cx + 1.35 * d * std::cos(a), y = cy + d * std::sin(a);
        bool apart = true;
        for (std::size_t h = 0; h < placed.size(); h += 3)
            apart = apart && std::hypot(x - placed[h], y - placed[h + 1]) > r + placed[h + 2] + 4;
        if (!apart)
            continue;
        placed.insert(placed.end(), {x, y, r});
        std::vector<ZOR_Point> hole;
        const double turn = uniform(0, kPi);
        for (int i = 0; i < iHoleCorners; i++) {
            const double b = turn + 2 * kPi * i / iHoleCorners;
            hole.push_back(ZOR_Point(int(std::lround(x + r * std::cos(b))), int(std::lround(y + r * std::sin(b)))));
        }
        room.polygons.push_back(hole);
    }
    return room;
}

// Fills a list with new points (the caller deletes them).
inline void WalkPoints(const std::vector<ZOR_Point>& points, GLListAsArray<GLPoint>& list)
{
    for (const ZOR_Point& p : points)
        list.AddToEnd(new GLPoint(p));
}

inline void DeleteWalkPoints(GLListAsArray<GLPoint>& list)
{
    while (!list.IsEmpty()) {
        GLPoint* p = list.At(list.NumElements() - 1);
        list.RemoveAt(list.NumElements() - 1);
        delete p;
    }
}

// The area of a room: its boundary and its holes.
inline GLWalkArea* MakeWalkArea(const WalkRoom& room, int clearance)
{
    GLListAsArray<GLPoint> points(8, 8);
    WalkPoints(room.polygons[0], points);
    GLWalkArea* area = new GLWalkArea(points, clearance);
    DeleteWalkPoints(points);
    for (std::size_t h = 1; h < room.polygons.size(); h++) {
        WalkPoints(room.polygons[h], points);
        area->AddHole(points);
        DeleteWalkPoints(points);
    }
    return area;
}

#endif
