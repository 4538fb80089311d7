// SoftCompositor.h - the soft kernel's compositor: it owns the 640x480 frame
// of palette indices and draws the kernel's planes, their pictures, screen
// items, polygons and robot into it, with transitions and scrolls.
//
// What a frame costs. Each plane keeps its items in drawing order: an add, an
// update or a removal files only that item again, and the order is mended
// before the plane is next drawn (the changed items sorted among themselves,
// then merged in). An item's bitmap and its corner are worked out once after
// each take-over, not every frame. Bitmaps are drawn by their runs of opaque
// pixels (SoftBitmap::Runs), so transparent rows and gaps cost nothing and a
// wholly opaque bitmap is a copy per row; a narrow cel (16 to 64 pixels) not
// cut left or right is merged with the frame row by row under its mask, 16
// pixels at a time, which costs less than a branch on each run's length. The frame is cleared only where no
// opaque plane will be drawn, a picture plane is filled with its colour only
// around a wholly opaque picture, and a plane that a later opaque plane hides
// entirely is not drawn (what it cannot draw is still reported). Composing
// reads the scene and writes only the frame: what time moves (transitions,
// scrolls) the scene has advanced before.
#ifndef QUINDLE_SOFT_COMPOSITOR_H
#define QUINDLE_SOFT_COMPOSITOR_H

#include "SoftRobots.h"
#include "SoftScene.h"

#include <cstdint>
#include <map>
#include <unordered_map>
#include <vector>

class SoftCompositor : public SoftScene::Watcher {
public:
    static constexpr int kWidth = soft::kScreenWidth;
    static constexpr int kHeight = soft::kScreenHeight;

    // The compositor draws `scene` with the pictures of `resources` and the
    // robot of `robots`; faults and the clock come from `host`.
    SoftCompositor(SoftServiceHost& host, SoftScene& scene, SoftResources& resources, const SoftRobots& robots);
    SoftCompositor(const SoftCompositor&) = delete;
    SoftCompositor& operator=(const SoftCompositor&) = delete;

    // The frame: kWidth x kHeight palette indices, row by row.
    const std::uint8_t* Frame() const { return mFrame.data(); }
    std::uint8_t* Frame() { return mFrame.data(); }

    // Draws every added plane from the lowest priority up, each with its
    // transition, over a black frame.
    void ComposePlanes();
    // Draws a bitmap with its top-left corner at (left, top): scaled by
    // scaleX/128 and scaleY/128 (nearest pixel), limited to the inset (in the
    // bitmap's own pixels) when given, mirrored left to right when asked, and
    // clipped to `clip`. Transparent pixels leave the frame as it is.
    void DrawBitmap(const SoftBitmap& bmp, int left, int top, int scaleX, int scaleY, const ZOR_Rect* inset,
                    const ZOR_Rect& clip, bool mirror);

private:
    using Plane = SoftScene::Plane;
    using Polygon = SoftScene::Polygon;
    using Item = SoftScene::Item;

    // The scene tells of an item whose values were taken over or that moved
    // (Placed), and of one that leaves the screen or is freed (Removed).
    void Placed(Item& item) override;
    void Removed(Item& item) override;

    // An item in its plane's drawing order, with what drawing it needs.
    struct Entry {
        long long priority;
        std::uint64_t serial;
        Item* item;                // null: the item has left this place
        const SoftBitmap* bitmap;  // valid while `epoch` is the kernel's bitmap epoch
        std::uint64_t epoch;       // 0: work the bitmap and corner out again
        int left, top;             // the bitmap's corner in plane coordinates
        int scaleX, scaleY;
        const ZOR_Rect* inset;     // the item's inset when in force
    };
    // The items of one plane id (whether or not such a plane exists).
    struct Layer {
        std::vector<Entry> order;   // by priority, then serial
        std::vector<Item*> waiting; // filed since the order was last mended
        std::size_t holes = 0;      // entries whose item has left
    };

    // Where an item is filed: in its plane's order, or waiting to be put there.
    struct Filing {
        bool inOrder;
        std::int32_t plane;
        long long priority; // in order: the priority and serial it is sorted by
        std::uint64_t serial;
    };

    void MendOrder(Layer& layer);
    Entry* FindEntry(Layer& layer, const Item& item, const Filing& filing);
    bool Refresh(Entry& e);
    void DrawPlane(const Plane& plane, bool hidden);
    void DrawPolygon(const Polygon& poly, const Plane& plane, const ZOR_Rect& clip);
    void Fill(const ZOR_Rect& r, std::uint8_t color);
    void FillAround(const ZOR_Rect& area, const ZOR_Rect& hole, std::uint8_t color);

    SoftServiceHost& mHost;
    SoftScene& mScene;
    SoftResources& mResources;
    const SoftRobots& mRobots;
    std::vector<std::uint8_t> mFrame;
    std::vector<std::uint8_t> mScratch;
    std::map<std::int32_t, Layer> mLayers;
    std::unordered_map<const Item*, Filing> mFiled; // the items filed, and where
};

#endif
