// glwalk.h - GLWalkArea, where actors may walk: a boundary polygon with
// holes (obstacles) in it, and the shortest routes between its points.
//
// An area is built from its boundary, in a plane's coordinates, then given
// its holes one by one. Points of a polygon come in order round it, either
// way round; a closing point equal to the first may be given or left out, and
// a point equal to the one before it is ignored. Collinear corners are fine.
// A polygon may touch another at a point or along an edge, but never cross it.
//
// The clearance is how far (in pixels) a walking actor keeps from every edge:
// an area with clearance c lets an actor stand only where no edge is nearer
// than c, so a corridor is passable when it is at least 2c wide. With
// clearance 0 routes run along walls and round obstacles' corners, and two
// obstacles that meet at a corner leave a way through that point.
//
// Routes are exact shortest routes among the corners of the obstacles (each
// corner moved out by the clearance, to the nearest whole pixel that keeps it),
// made of whole-pixel points that a GLPath walks; no leg has zero length.
#ifndef QUINDLE_GLWALK_H
#define QUINDLE_GLWALK_H

#include "glpoint.h"
#include "glset.h"

class GLPoly;
struct GLWalkAreaData;

class QUINDLE_API GLWalkArea {
public:
    GL_DECLARE_ALLOCATION("include/glwalk.h")

    // An area bounded by the points, in order round the boundary. The boundary
    // needs three distinct points and may not cross itself; a clearance is 0
    // or more.
    GLWalkArea(const GLListAsArray<GLPoint>& boundary, int iClearance = 0);
    // An area bounded by the points a polygon of the room already holds.
    GLWalkArea(const GLPoly& boundary, int iClearance = 0);
    // Areas are not copied.
    GLWalkArea(const GLWalkArea&) = delete;
    GLWalkArea& operator=(const GLWalkArea&) = delete;
    ~GLWalkArea();

    // Adds an obstacle. It needs three distinct points, may not cross itself,
    // lies inside the boundary (touching it is allowed) and does not overlap
    // another hole.
    void AddHole(const GLListAsArray<GLPoint>& points);
    void AddHole(const GLPoly& hole);

    // Appends to route the points of the shortest walk from `from` to `to`,
    // after `from` (which is not appended): new points that the caller
    // deletes. Returns how many were appended, 0 when `from` is already where
    // the walk would end.
    //
    // A target where no actor may stand (outside the boundary, in a hole, or
    // nearer a wall than the clearance) is moved to the nearest whole-pixel
    // point where one may; a target that cannot be reached from the start
    // (beyond a gap narrower than twice the clearance) is moved to the nearest
    // point that can. A start where no actor may stand (an actor placed on
    // the edge) is walked in from first: the route's first point is the
    // nearest point where he may stand.
    int FindPath(const GLPoint& from, const GLPoint& to, GLListAsArray<GLPoint>& route) const;

    // TRUE when an actor may stand at the point.
    int Contains(const GLPoint& point) const;
    // Sets nearest to the whole-pixel point nearest to point where an actor
    // may stand (point itself when he may stand there).
    void Nearest(const GLPoint& point, GLPoint& nearest) const;

    int GetClearance() const;
    // The boundary is polygon 0, the holes 1 to GetPolygonCount() - 1, in the
    // order they were added. Points are as given, without repeats; the
    // pointer holds until the next AddHole.
    int GetPolygonCount() const;
    int GetPointCount(int iPolygon) const;
    const ZOR_Point* GetPoints(int iPolygon) const;

    // Makes ready what queries need (done by the first query otherwise), so
    // that the cost falls where the caller chooses.
    void Prepare() const;

    // Reads an area from its text form; null when the file cannot be read or
    // is malformed, and then the host notice (GLSetHostNotice) is told of the
    // error with the file and the line to blame ("a hole is not inside the
    // boundary", line 3).
    //
    // The file holds one item per line; blank lines and lines starting with
    // '#' are ignored. Numbers are whole decimal numbers, separated by spaces,
    // tabs or commas:
    //   clearance c              (optional, before the boundary; default 0)
    //   boundary x y x y x y ... (once, before any hole)
    //   hole x y x y x y ...     (any number)
    // A line holds at most 4,095 characters; a number lies between -1,000,000
    // and 1,000,000. The area holds at most kMaxLoadedHoles holes and
    // kMaxLoadedCorners corners in all, so that its routes are made in a few
    // milliseconds: an area past either is refused at the line that passes it.
    static GLWalkArea* Load(const char* fileName);
    enum { kMaxLoadedCorners = 512, kMaxLoadedHoles = 128 };

private:
    GLWalkArea(int iClearance);
    void AddPolygon(const ZOR_Point* pPoints, int iCount, int fHole);

    GLWalkAreaData* mpData;
};

#endif
