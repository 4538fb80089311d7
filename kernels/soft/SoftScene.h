// SoftScene.h - what the soft kernel shows: its planes, their screen items and
// polygons, kept as the kernel's own copy of the library's records.
//
// The scene makes the plane and screen item records the library fills in, and
// takes their values over only at AddPlane/UpdatePlane and AddScreenItem/
// UpdateScreenItem: what the library writes in between is not seen until
// then. It answers the questions the library asks of what is shown (an item's
// rectangle, whether a point is on it, the top priorities, coordinates local
// to a plane), and keeps each plane's transition and scroll, which Advance
// moves on before each frame. It draws nothing: the compositor (SoftCompositor.h) reads the scene, and the scene
// tells it, through a Watcher, when an item was taken over, moved or left
// the screen, so that the compositor files only what changed.
//
// Every plane, item, polygon (and the robot, whose serial the kernel takes
// from here) carries a serial from one counter: among equal priorities the
// older is drawn first. An item of floating priority is drawn at y + z of its
// position. Faults (a record the kernel did not make, an item on a plane
// that does not exist, a cel that cannot be found) go to the host and never
// stop the run.
#ifndef QUINDLE_SOFT_SCENE_H
#define QUINDLE_SOFT_SCENE_H

#include "kernel.h"

#include "SoftBitmaps.h"
#include "SoftGeometry.h"
#include "SoftHost.h"
#include "SoftResources.h"

#include <algorithm>
#include <cstdlib>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>


class SoftScene {
public:
    struct Item {
        KernelScreenItemRecord* record = nullptr;
        bool onScreen = false;
        std::uint64_t serial = 0;
        // The values taken over at the last AddScreenItem / UpdateScreenItem.
        std::int32_t id = 0;
        std::int32_t planeId = 0;
        KernelScreenItemSource source{};
        ZOR_Point pos{0, 0};
        ScaleInfo scale = kFullSizeScale;
        std::int32_t z = 0;
        std::int32_t priority = 0;
        std::int32_t fixedPriority = 0;
        std::int32_t useInsetRect = 0;
        ZOR_Rect insetRect{0, 0, 0, 0};
        // The bitmap it shows, worked out after each take-over (ItemBitmap); good
        // while `bitmapEpoch` is the scene's bitmap epoch (0: not worked out).
        const SoftBitmap* bitmap = nullptr;
        std::uint64_t bitmapEpoch = 0;
    };

    struct Polygon {
        std::int32_t id = 0;
        std::vector<ZOR_Point> points;
        int priority = 0; // kPriorityOnTop: above every item of the plane, decided when drawn
        int color = 0;
        int style = 0;
        int pattern = 0;
        int thickness = 1;
        int closed = 1;
        std::uint64_t serial = 0;
    };

    struct Plane {
        KernelPlaneRecord* record = nullptr;
        bool added = false;
        std::uint64_t serial = 0;
        std::int32_t id = 0;
        std::int32_t type = -1;
        std::int32_t color = 0;
        ZOR_Rect rect{0, 0, 639, 479};
        std::int32_t mirror = 0;
        std::int32_t picture = 0;
        std::int32_t priority = 0;
        ZOR_Point vanishingPoint{0, 0};
        struct Pic {
            int picture;
            int x;
            int y;
            int mirror;
        };
        std::vector<Pic> extraPics;
        int picOffsetX = 0; // the pictures' shift by MovePlaneItems
        int picOffsetY = 0;
        std::vector<Polygon> polygons;
        // A transition.
        bool styleActive = false;
        bool hidden = false; // a disappearing transition has ended
        int style = 0, styleSpeed = 1, styleColor = -1, styleToFrom = 0, styleDivisions = 10;
        std::uint32_t styleStart = 0;
        int stylePercent = 100; // how far it had come when the frame was advanced
        // A scroll.
        bool scrolling = false;
        int scrollStepX = 0, scrollStepY = 0, scrollPicture = 0, scrollMirror = 0, scrollTicks = 1;
        std::uint32_t scrollStart = 0;
        int scrollMoved = 0; // pixels the new picture had come in when the frame was advanced
    };

    // Told of every change to what an item shows or where it is filed.
    class Watcher {
    public:
        // The item's values were taken over or it moved (or it left the
        // screen: then `onScreen` is false).
        virtual void Placed(Item& item) = 0;
        // The item leaves the screen or is freed.
        virtual void Removed(Item& item) = 0;

    protected:
        ~Watcher() {}
    };

    // What the scene shows, for a host that inspects it (the player's
    // overlay): planes in the order they are drawn (lowest priority first),
    // each with the screen items shown on it in their drawing order; an item's
    // rectangle is the one GetNowSeenRect answers, moved to the screen.
    struct InspectedItem {
        std::int32_t id;
        KernelScreenItemSource source;
        int priority;  // the priority it is drawn with (floating: y + z)
        bool hasRect;  // false when its cel cannot be drawn
        ZOR_Rect rect; // on the screen
    };
    struct InspectedPlane {
        std::int32_t id;
        int type; // kPlaneColored, kPlaneTransparent, kPlaneOpaque or kPlanePicture
        int priority;
        ZOR_Rect rect;
        bool hidden; // a disappearing transition has ended
        std::vector<InspectedItem> items;
    };

    // Cels come from `resources`, memory bitmaps from `bitmaps`; faults and
    // the clock from `host`.
    SoftScene(SoftServiceHost& host, SoftResources& resources, const SoftBitmaps& bitmaps);
    ~SoftScene();
    SoftScene(const SoftScene&) = delete;
    SoftScene& operator=(const SoftScene&) = delete;

    void SetWatcher(Watcher* watcher) { mWatcher = watcher; }
    // The next serial of the drawing order (the robot takes one too).
    std::uint64_t NextSerial() { return ++mSerial; }

    // ----- planes (the kernel operations of the same names) -----
    KernelPlaneRecord* NewPlane(int iType, int iColor, const ZOR_Rect* pRect, int iPriority,
                                const ZOR_Point* pVanishingPoint, int iPicture, int fMirror);
    void AddPlane(KernelPlaneRecord* pRecord);
    void PlaneCreated(KernelPlaneRecord* pRecord);
    void PlaneRectChanged(KernelPlaneRecord* pRecord);
    void UpdatePlane(KernelPlaneRecord* pRecord);
    // False when there is no such plane. Items on it leave the screen.
    bool DeletePlane(std::int32_t lPlaneId);
    int TopPlanePriority() const;
    void AddPicAt(std::int32_t lPlaneId, int iPicture, int x, int y, int fMirror);
    void SetShowStyle(std::int32_t lPlaneId, int iStyle, int iSpeed, int iColor, int iToFrom, int iDivisions);
    int ShowStylePercentComplete(std::int32_t lPlaneId);
    void SetScroll(std::int32_t lPlaneId, int iStepX, int iStepY, int iPicture, int iTicks, int fMirror);
    // Moves the plane's items and polygons (and pictures when asked); false
    // when there is no such plane.
    bool MovePlaneItems(std::int32_t lPlaneId, int iDeltaX, int iDeltaY, bool fMovePictures);
    void PlaneToLocal(std::int32_t lPlaneId, ZOR_Point* pPoint);
    void PlaneToGlobal(std::int32_t lPlaneId, ZOR_Point* pPoint);

    // ----- screen items -----
    KernelScreenItemRecord* NewScreenItem(std::int32_t lPlaneId, const KernelScreenItemSource* pSource, ZOR_Point pos,
                                          ScaleInfo scale);
    void AddScreenItem(KernelScreenItemRecord* pRecord);
    void UpdateScreenItem(KernelScreenItemRecord* pRecord);
    // Taking an item off the screen and freeing its record come to the same
    // here; `operation` names the call in a fault.
    void ForgetItem(KernelScreenItemRecord* pRecord, const char* operation);
    int GetNowSeenRect(std::int32_t lPlaneId, std::int32_t lScreenItemId, ZOR_Rect* pRect);
    int ScreenItemOnPoint(const ZOR_Point* pPoint, std::int32_t lPlaneId, std::int32_t lScreenItemId, int fCheckSkip);
    int TopScreenItemPriority(std::int32_t lPlaneId) const;

    // ----- polygons -----
    std::int32_t AddPolygon(std::int32_t lPlaneId, const ZOR_Point* pPoints, int iCount, int iPriority, int iColor,
                            int iStyle, int iPattern, int iThickness, int fClosed);
    void UpdatePolygon(std::int32_t lPlaneId, std::int32_t lPolygonId, const ZOR_Point* pPoints, int iCount,
                       int iPriority, int iColor, int iStyle, int iPattern, int iThickness, int fClosed);
    void DeletePolygon(std::int32_t lPlaneId, std::int32_t lPolygonId);

    // ----- for the compositor and the host -----
    const std::map<KernelPlaneRecord*, std::unique_ptr<Plane>>& Planes() const { return mPlanes; }
    Plane* FindPlane(std::int32_t id);
    // The priority an item is drawn with.
    static int EffectivePriority(const Item& item)
    {
        return item.fixedPriority ? item.priority : item.pos.y + item.z;
    }
    // Where the top-left corner of `bmp` lands when the item shows it (plane
    // coordinates): its origin on the item's position, at the item's scale.
    static ZOR_Point Corner(const Item& item, const SoftBitmap& bmp)
    {
        const int sx = soft::ClampScale(item.scale.scaleX), sy = soft::ClampScale(item.scale.scaleY);
        return ZOR_Point(item.pos.x - static_cast<int>(static_cast<long long>(bmp.originX) * sx / kScaleFull),
                         item.pos.y - static_cast<int>(static_cast<long long>(bmp.originY) * sy / kScaleFull));
    }
    // The bitmap an item shows, or null (the fault reported). Worked out once
    // after each take-over and kept while the bitmap epoch holds.
    const SoftBitmap* ItemBitmap(Item& item);
    // Changes whenever a bitmap an item points at may have gone: a memory
    // bitmap made or freed, resources replaced.
    std::uint64_t BitmapEpoch() const { return mResources.Generation() + mBitmaps.Epoch(); }
    // How far a plane's transition has come, 0..100 (100: none running).
    int ShowStylePercent(const Plane& plane) const;
    // Moves what time moves, before a frame is composed: a transition that has
    // run its course ends (a disappearing plane is hidden from then on), and a
    // scroll that has brought its picture in whole leaves the plane showing
    // that picture, written back into the plane's record. Each plane shown
    // keeps how far its transition and scroll had come (stylePercent,
    // scrollMoved), which is what the frame draws. Planes not added, hidden,
    // or wholly off the screen stand still.
    void Advance();
    // Fills `planes` afresh (see InspectedPlane). A cel that cannot be drawn
    // is reported as when drawn.
    void Inspect(std::vector<InspectedPlane>* planes);

private:
    // The plane or item of a record this scene made, or null with a fault
    // naming `operation`.
    Plane* PlaneOf(KernelPlaneRecord* pRecord, const char* operation);
    template <class Record, class Kept>
    Kept* Own(std::map<Record*, std::unique_ptr<Kept>>& kept, Record* pRecord, const char* operation,
              const char* kind);
    Item* ItemOf(KernelScreenItemRecord* pRecord, const char* operation);
    Item* FindItem(std::int32_t planeId, std::int32_t itemId);
    Plane* PlaneForPicture(std::int32_t lPlaneId, int iPicture);
    // The scroll has brought its picture in whole: the plane shows it now.
    void FinishScroll(Plane& plane);
    void TakeOver(Item& item);
    void TakeOver(Plane& plane);
    const SoftBitmap* ResolveBitmap(const Item& item);
    bool ItemRect(Item& item, ZOR_Rect* rect);
    // The item of that id on that plane when it is on screen and its cel can
    // be drawn, with the rectangle it covers; null otherwise.
    Item* SeenItem(std::int32_t lPlaneId, std::int32_t lScreenItemId, ZOR_Rect* rect);

    SoftServiceHost& mHost;
    SoftResources& mResources;
    const SoftBitmaps& mBitmaps;
    Watcher* mWatcher = nullptr;

    std::map<KernelPlaneRecord*, std::unique_ptr<Plane>> mPlanes;
    std::map<KernelScreenItemRecord*, std::unique_ptr<Item>> mItems;
    std::map<std::int32_t, Item*> mItemsById; // by the id given at NewScreenItem
    std::int32_t mNextPlaneId = kFirstPlaneId;
    std::int32_t mNextItemId = 1;
    std::int32_t mNextPolygonId = 0;
    std::uint64_t mSerial = 0;
};

#endif
