// Overlay.h - the player's developer overlay: what the game's planes, screen
// items, polygons and movers are, drawn over a copy of the composed frame.
//
// The game's own frame is never touched: the overlay reads the kernel's last
// frame and what the kernel and the library hold, and draws into a frame of
// its own. It calls no handler and nothing that reaches the game's kernel, so
// a run looks and plays the same with it on or off.
//
// What it shows:
//   - every plane's rectangle (magenta) with its id and priority;
//   - every screen item's rectangle with its id, view/loop/cel and priority:
//     solid yellow when it takes events, dashed cyan when it does not;
//   - every polygon a plane offers events to (green), with its place in the
//     plane's event set;
//   - the walkable area of the running room, as its game folder describes it
//     (walk/<room>.txt): the boundary green, the holes red;
//   - every mover's line from its actor to its destination, and a path's
//     points still to come (orange);
//   - the pointer (a red cross), its place in the screen and in the plane
//     under it, and the planes and targets under it in the order the game's
//     dispatch would offer them an event;
//   - a status line: tick, time, frame time, planes, items, the objects in
//     the game's set and the hogs.
// Text is a small fixed bitmap font of the player's own, the same on every
// machine. Colours are the palette entries nearest to pure ones, each line
// and letter set off by black so that it stays visible over any picture.
#ifndef QUINDLE_PLAYER_OVERLAY_H
#define QUINDLE_PLAYER_OVERLAY_H

#include "SoftKernel.h"
#include "glset.h"
#include "gltarget.h"

#include <cstdint>
#include <string>
#include <vector>

// A member of a plane's event set, as the target it is (null when it is none).
GLTarget* EventMember(const GLSetAsArray<GLTarget>* events, int i);

class PlayerOverlay {
public:
    // What the host knows of the frame, for the status line.
    struct Status {
        double frameMillis = 0; // the frame's time: virtual headless, measured in a window
        bool paused = false;
    };

    PlayerOverlay();
    // Draws the overlay over a copy of the kernel's last frame and returns it
    // (640x480 indices in the kernel's palette); valid until the next Draw.
    const std::uint8_t* Draw(SoftKernel& kernel, const Status& status);
    // The frame the last Draw made.
    const std::uint8_t* Frame() const { return mFrame.data(); }

private:
    void DrawPlanes();
    void DrawLibrary();
    void DrawWalkArea(SoftKernel& kernel);
    void DrawPointer(SoftKernel& kernel);
    void DrawStatus(SoftKernel& kernel, const Status& status);
    void PickColors(const SoftPalette& palette);

    // Drawing into mFrame, clipped to the screen.
    void Pixel(int x, int y, std::uint8_t color);
    void Line(int x0, int y0, int x1, int y1, std::uint8_t color, bool dashed = false);
    void Box(const ZOR_Rect& r, std::uint8_t color, bool dashed = false);
    void Fill(int left, int top, int right, int bottom, std::uint8_t color);
    void Mark(int x, int y, std::uint8_t color); // a small square at a point
    // Text on a black band; returns the x after it.
    int Text(int x, int y, const std::string& text, std::uint8_t color);

    std::vector<std::uint8_t> mFrame;
    std::vector<SoftKernel::InspectedPlane> mPlanes;
    std::vector<std::int32_t> mEventItems; // kernel ids of items whose object takes events
    // The running room's walkable area, read once per room: its polygons
    // (the boundary first, then the holes) and clearance.
    long long mWalkRoom = -1; // the room it was read for; -1 none yet
    std::vector<std::vector<ZOR_Point>> mWalk;
    int mWalkClearance = 0;
    struct Colors {
        std::uint8_t black, white, yellow, cyan, magenta, green, orange, red;
    } mColor{};
};

#endif
