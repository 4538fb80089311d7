// SoftScene.cpp - the soft kernel's planes, screen items and polygons.
#include "SoftScene.h"

#include <algorithm>
#include <cstring>

using soft::ClampScale;
using soft::kScreen;
using soft::Safe;

SoftScene::SoftScene(SoftServiceHost& host, SoftResources& resources, const SoftBitmaps& bitmaps)
    : mHost(host), mResources(resources), mBitmaps(bitmaps)
{
}

SoftScene::~SoftScene()
{
    // Records the library never gave back belong to the kernel still.
    for (auto& entry : mItems)
        delete entry.first;
    for (auto& entry : mPlanes)
        delete entry.first;
}

// ----- planes -----

KernelPlaneRecord* SoftScene::NewPlane(int iType, int iColor, const ZOR_Rect* pRect, int iPriority,
                                       const ZOR_Point* pVanishingPoint, int iPicture, int fMirror)
{
    auto* record = new KernelPlaneRecord();
    std::memset(static_cast<void*>(record), 0, sizeof *record);
    record->id = mNextPlaneId++;
    record->type = iType;
    record->color = iColor;
    record->rect = pRect ? *pRect : kScreen;
    record->mirror = fMirror;
    record->picture = iPicture;
    record->priority = iPriority;
    record->vanishingPoint = pVanishingPoint ? *pVanishingPoint : ZOR_Point(0, 0);
    auto plane = std::make_unique<Plane>();
    plane->record = record;
    plane->serial = ++mSerial;
    TakeOver(*plane);
    mPlanes[record] = std::move(plane);
    return record;
}

void SoftScene::TakeOver(Plane& plane)
{
    KernelPlaneRecord* r = plane.record;
    const bool newPicture = r->pictureChanged != 0 || r->picture != plane.picture;
    plane.id = r->id;
    plane.type = r->type;
    plane.color = r->color;
    plane.rect = Safe(r->rect);
    plane.mirror = r->mirror;
    plane.priority = r->priority;
    plane.vanishingPoint = r->vanishingPoint;
    if (newPicture) {
        // A new picture replaces the pictures added to the old one.
        plane.picture = r->picture;
        plane.extraPics.clear();
        plane.scrolling = false;
        r->pictureChanged = 0;
    }
}

SoftScene::Plane* SoftScene::FindPlane(std::int32_t id)
{
    for (auto& entry : mPlanes)
        if (entry.second->id == id)
            return entry.second.get();
    return nullptr;
}

// What the scene keeps of a record it made, or null with a fault naming the
// operation and the kind of record.
template <class Record, class Kept>
Kept* SoftScene::Own(std::map<Record*, std::unique_ptr<Kept>>& kept, Record* pRecord, const char* operation,
                     const char* kind)
{
    auto found = kept.find(pRecord);
    if (found != kept.end())
        return found->second.get();
    mHost.Report(std::string(operation) + ": a " + kind + " record this kernel did not make");
    return nullptr;
}

SoftScene::Plane* SoftScene::PlaneOf(KernelPlaneRecord* pRecord, const char* operation)
{
    return Own(mPlanes, pRecord, operation, "plane");
}

void SoftScene::AddPlane(KernelPlaneRecord* pRecord)
{
    if (Plane* plane = PlaneOf(pRecord, "AddPlane")) {
        TakeOver(*plane);
        plane->added = true;
    }
}

void SoftScene::PlaneCreated(KernelPlaneRecord* pRecord)
{
    PlaneOf(pRecord, "PlaneCreated");
}

void SoftScene::PlaneRectChanged(KernelPlaneRecord* pRecord)
{
    if (PlaneOf(pRecord, "PlaneRectChanged") && pRecord->rect.IsEmpty())
        mHost.Report("PlaneRectChanged: plane " + std::to_string(pRecord->id) + " was given an empty rectangle");
}

void SoftScene::UpdatePlane(KernelPlaneRecord* pRecord)
{
    if (Plane* plane = PlaneOf(pRecord, "UpdatePlane"))
        TakeOver(*plane);
}

bool SoftScene::DeletePlane(std::int32_t lPlaneId)
{
    for (auto it = mPlanes.begin(); it != mPlanes.end(); ++it) {
        if (it->second->id != lPlaneId)
            continue;
        // Items still on the plane leave the screen with it; their records stay
        // the library's until it gives them back.
        for (auto& item : mItems) {
            if (item.second->planeId == lPlaneId) {
                item.second->onScreen = false;
                mWatcher->Removed(*item.second);
            }
        }
        delete it->first;
        mPlanes.erase(it);
        return true;
    }
    return false;
}

int SoftScene::TopPlanePriority() const
{
    int top = kPriorityLowest;
    for (auto& entry : mPlanes)
        if (entry.second->added)
            top = std::max(top, entry.second->priority);
    return top;
}

// The plane of that id, when it exists and the picture can be read (null
// otherwise, with the picture's fault reported).
SoftScene::Plane* SoftScene::PlaneForPicture(std::int32_t lPlaneId, int iPicture)
{
    Plane* plane = FindPlane(lPlaneId);
    if (!plane)
        return nullptr;
    std::string error;
    if (!mResources.Picture(iPicture, &error)) {
        mHost.Report(error);
        return nullptr;
    }
    return plane;
}

void SoftScene::AddPicAt(std::int32_t lPlaneId, int iPicture, int x, int y, int fMirror)
{
    Plane* plane = PlaneForPicture(lPlaneId, iPicture);
    if (!plane)
        return;
    plane->extraPics.push_back(Plane::Pic{iPicture, Safe(x), Safe(y), fMirror});
}

void SoftScene::SetShowStyle(std::int32_t lPlaneId, int iStyle, int iSpeed, int iColor, int iToFrom,
                             int iDivisions)
{
    Plane* plane = FindPlane(lPlaneId);
    if (!plane)
        return;
    plane->style = iStyle < 0 || iStyle > 15 ? 0 : iStyle;
    plane->styleSpeed = iSpeed > 0 ? iSpeed : 1;
    plane->styleColor = iColor >= 0 && iColor <= 255 ? iColor : kNoColor;
    plane->styleToFrom = iToFrom;
    plane->styleDivisions = iDivisions > 0 ? iDivisions : 10;
    plane->styleStart = mHost.Now();
    plane->styleActive = true;
    plane->hidden = false;
}

int SoftScene::ShowStylePercent(const Plane& plane) const
{
    if (!plane.styleActive || plane.style == 0)
        return 100;
    const std::uint32_t elapsed = mHost.Now() - plane.styleStart;
    const std::uint64_t steps = elapsed / static_cast<std::uint32_t>(plane.styleSpeed);
    if (steps >= static_cast<std::uint64_t>(plane.styleDivisions))
        return 100;
    return static_cast<int>(steps * 100 / plane.styleDivisions);
}

int SoftScene::ShowStylePercentComplete(std::int32_t lPlaneId)
{
    Plane* plane = FindPlane(lPlaneId);
    return plane ? ShowStylePercent(*plane) : 100;
}

void SoftScene::SetScroll(std::int32_t lPlaneId, int iStepX, int iStepY, int iPicture, int iTicks,
                          int fMirror)
{
    Plane* plane = PlaneForPicture(lPlaneId, iPicture);
    if (!plane)
        return;
    if (iStepX == 0 && iStepY == 0)
        return;
    plane->scrolling = true;
    plane->scrollStepX = iStepX;
    plane->scrollStepY = iStepY;
    plane->scrollPicture = iPicture;
    plane->scrollMirror = fMirror;
    plane->scrollTicks = iTicks > 0 ? iTicks : 1;
    plane->scrollStart = mHost.Now();
    plane->scrollMoved = 0;
}

void SoftScene::Advance()
{
    for (auto& entry : mPlanes) {
        Plane& plane = *entry.second;
        if (!plane.added || plane.hidden)
            continue;
        plane.stylePercent = ShowStylePercent(plane);
        if (plane.styleActive && plane.stylePercent >= 100) {
            plane.styleActive = false;
            plane.hidden = plane.styleToFrom == 1;
            if (plane.hidden)
                continue;
        }
        if (plane.type != kPlanePicture || !plane.scrolling || soft::Intersect(plane.rect, kScreen).IsEmpty())
            continue;
        // The scroll moves by its step every scrollTicks ticks, across the
        // plane's width (a step in x) or height (a step in y).
        const long long total = plane.scrollStepX ? plane.rect.right - plane.rect.left + 1
                                                  : plane.rect.bottom - plane.rect.top + 1;
        const long long step = std::abs(plane.scrollStepX ? plane.scrollStepX : plane.scrollStepY);
        const long long steps = (mHost.Now() - plane.scrollStart) / static_cast<std::uint32_t>(plane.scrollTicks);
        if (steps * step >= total)
            FinishScroll(plane);
        else
            plane.scrollMoved = static_cast<int>(steps * step);
    }
}

void SoftScene::FinishScroll(Plane& plane)
{
    plane.scrolling = false;
    plane.picture = plane.scrollPicture;
    plane.mirror = plane.scrollMirror;
    plane.extraPics.clear();
    plane.record->picture = plane.picture;
    plane.record->mirror = plane.mirror;
}

bool SoftScene::MovePlaneItems(std::int32_t lPlaneId, int iDeltaX, int iDeltaY, bool fMovePictures)
{
    Plane* plane = FindPlane(lPlaneId);
    if (!plane)
        return false;
    // The kernel owns the records, so it moves both its copy and the record:
    // the library reads positions back from the record.
    for (auto& entry : mItems) {
        Item& item = *entry.second;
        if (item.planeId != lPlaneId)
            continue;
        item.pos.x = Safe(static_cast<long long>(item.pos.x) + iDeltaX);
        item.pos.y = Safe(static_cast<long long>(item.pos.y) + iDeltaY);
        item.record->pos.x = Safe(static_cast<long long>(item.record->pos.x) + iDeltaX);
        item.record->pos.y = Safe(static_cast<long long>(item.record->pos.y) + iDeltaY);
        mWatcher->Placed(item);
    }
    for (auto& poly : plane->polygons) {
        for (auto& p : poly.points)
            p = Safe(ZOR_Point(Safe(static_cast<long long>(p.x) + iDeltaX), Safe(static_cast<long long>(p.y) + iDeltaY)));
    }
    if (fMovePictures) {
        plane->picOffsetX = Safe(static_cast<long long>(plane->picOffsetX) + iDeltaX);
        plane->picOffsetY = Safe(static_cast<long long>(plane->picOffsetY) + iDeltaY);
    }
    return true;
}

void SoftScene::PlaneToLocal(std::int32_t lPlaneId, ZOR_Point* pPoint)
{
    Plane* plane = FindPlane(lPlaneId);
    if (!plane || !pPoint)
        return;
    // Wrapping arithmetic: the point may hold anything, the unset marker included.
    pPoint->x = static_cast<std::int32_t>(static_cast<std::uint32_t>(pPoint->x) - static_cast<std::uint32_t>(plane->rect.left));
    pPoint->y = static_cast<std::int32_t>(static_cast<std::uint32_t>(pPoint->y) - static_cast<std::uint32_t>(plane->rect.top));
}

void SoftScene::PlaneToGlobal(std::int32_t lPlaneId, ZOR_Point* pPoint)
{
    Plane* plane = FindPlane(lPlaneId);
    if (!plane || !pPoint)
        return;
    pPoint->x = static_cast<std::int32_t>(static_cast<std::uint32_t>(pPoint->x) + static_cast<std::uint32_t>(plane->rect.left));
    pPoint->y = static_cast<std::int32_t>(static_cast<std::uint32_t>(pPoint->y) + static_cast<std::uint32_t>(plane->rect.top));
}

// ----- screen items -----

KernelScreenItemRecord* SoftScene::NewScreenItem(std::int32_t lPlaneId, const KernelScreenItemSource* pSource,
                                                 ZOR_Point pos, ScaleInfo scale)
{
    auto* record = new KernelScreenItemRecord();
    std::memset(static_cast<void*>(record), 0, sizeof *record);
    if (pSource)
        record->source = *pSource;
    record->pos = pos;
    record->scale = scale;
    record->id = mNextItemId++;
    record->planeId = lPlaneId;
    record->priority = 0;
    record->fixedPriority = 0; // the kernel's own choice: floating by position
    record->insetRect = ZOR_Rect(0, 0, 0, 0);
    auto item = std::make_unique<Item>();
    item->record = record;
    item->id = record->id;
    item->serial = ++mSerial;
    TakeOver(*item);
    mItemsById[record->id] = item.get();
    mItems[record] = std::move(item);
    return record;
}

void SoftScene::TakeOver(Item& item)
{
    const KernelScreenItemRecord* r = item.record;
    // The id is the kernel's: it stays what NewScreenItem gave, whatever the record says.
    item.planeId = r->planeId;
    item.source = r->source;
    item.pos = Safe(r->pos);
    item.scale = r->scale;
    item.z = Safe(r->z);
    item.priority = r->priority;
    item.fixedPriority = r->fixedPriority;
    item.useInsetRect = r->useInsetRect;
    item.insetRect = Safe(r->insetRect);
    item.bitmapEpoch = 0;
}

SoftScene::Item* SoftScene::FindItem(std::int32_t planeId, std::int32_t itemId)
{
    auto found = mItemsById.find(itemId);
    if (found == mItemsById.end() || found->second->planeId != planeId)
        return nullptr;
    return found->second;
}

SoftScene::Item* SoftScene::ItemOf(KernelScreenItemRecord* pRecord, const char* operation)
{
    return Own(mItems, pRecord, operation, "screen item");
}

void SoftScene::AddScreenItem(KernelScreenItemRecord* pRecord)
{
    Item* found = ItemOf(pRecord, "AddScreenItem");
    if (!found)
        return;
    Item& item = *found;
    TakeOver(item);
    if (!FindPlane(item.planeId)) {
        mHost.Report("AddScreenItem: screen item " + std::to_string(item.id) + " names plane " +
               std::to_string(item.planeId) + ", which does not exist");
        return;
    }
    item.onScreen = true;
    item.serial = ++mSerial; // the newest item on a plane is drawn over older ones of its priority
    mWatcher->Placed(item);
}

void SoftScene::UpdateScreenItem(KernelScreenItemRecord* pRecord)
{
    if (Item* item = ItemOf(pRecord, "UpdateScreenItem")) {
        TakeOver(*item);
        mWatcher->Placed(*item);
    }
}

// Taking an item off the screen and freeing a record that was never shown
// come to the same here: the kernel keeps no list apart from its records.
void SoftScene::ForgetItem(KernelScreenItemRecord* pRecord, const char* operation)
{
    Item* item = ItemOf(pRecord, operation);
    if (!item)
        return;
    mWatcher->Removed(*item);
    mItemsById.erase(item->id);
    mItems.erase(pRecord);
    delete pRecord;
}

const SoftBitmap* SoftScene::ItemBitmap(Item& item)
{
    const std::uint64_t epoch = BitmapEpoch();
    if (item.bitmapEpoch == epoch)
        return item.bitmap;
    // A failure is not kept: the item is looked up (and reported) again next time.
    item.bitmap = ResolveBitmap(item);
    item.bitmapEpoch = item.bitmap ? epoch : 0;
    return item.bitmap;
}

const SoftBitmap* SoftScene::ResolveBitmap(const Item& item)
{
    std::string error;
    if (item.source.kind == kSourceMemBitmap) {
        const SoftBitmap* bitmap = mBitmaps.Find(item.source.memId);
        if (!bitmap) {
            error = "screen item " + std::to_string(item.id) + ": memory bitmap " +
                    std::to_string(item.source.memId) + " does not exist";
            mHost.Report(error);
            return nullptr;
        }
        return bitmap;
    }
    if (item.source.kind != kSourceView) {
        mHost.Report("screen item " + std::to_string(item.id) + ": unknown source kind " +
               std::to_string(item.source.kind));
        return nullptr;
    }
    const SoftView* view = mResources.View(item.source.view, &error);
    if (!view) {
        mHost.Report(error);
        return nullptr;
    }
    const int loop = item.source.loop, cel = item.source.cel;
    if (loop < 0 || loop >= static_cast<int>(view->loops.size()) || cel < 0 ||
        cel >= static_cast<int>(view->loops[loop].size())) {
        mHost.Report(mResources.PathOf("views/" + std::to_string(item.source.view) + ".txt") + ": has no loop " +
               std::to_string(loop) + " cel " + std::to_string(cel) + " (asked for by screen item " +
               std::to_string(item.id) + ")");
        return nullptr;
    }
    return &view->loops[loop][cel];
}

// The rectangle the item covers, in its plane's coordinates.
bool SoftScene::ItemRect(Item& item, ZOR_Rect* rect)
{
    const SoftBitmap* bmp = ItemBitmap(item);
    if (!bmp)
        return false;
    const int sx = ClampScale(item.scale.scaleX), sy = ClampScale(item.scale.scaleY);
    const ZOR_Point corner = Corner(item, *bmp);
    const int left = corner.x, top = corner.y;
    int x0 = 0, y0 = 0, x1 = bmp->width - 1, y1 = bmp->height - 1;
    if (item.useInsetRect) {
        x0 = std::max(x0, item.insetRect.left);
        y0 = std::max(y0, item.insetRect.top);
        x1 = std::min(x1, item.insetRect.right);
        y1 = std::min(y1, item.insetRect.bottom);
        if (x1 < x0 || y1 < y0)
            return false;
    }
    // Scaled cel pixel x covers [x*s/128, (x+1)*s/128).
    rect->left = left + static_cast<int>(static_cast<long long>(x0) * sx / kScaleFull);
    rect->top = top + static_cast<int>(static_cast<long long>(y0) * sy / kScaleFull);
    rect->right = left + std::max(static_cast<int>(static_cast<long long>(x1 + 1) * sx / kScaleFull),
                                  static_cast<int>(static_cast<long long>(x0) * sx / kScaleFull) + 1) - 1;
    rect->bottom = top + std::max(static_cast<int>(static_cast<long long>(y1 + 1) * sy / kScaleFull),
                                  static_cast<int>(static_cast<long long>(y0) * sy / kScaleFull) + 1) - 1;
    return true;
}

SoftScene::Item* SoftScene::SeenItem(std::int32_t lPlaneId, std::int32_t lScreenItemId, ZOR_Rect* rect)
{
    Item* item = FindItem(lPlaneId, lScreenItemId);
    return item && item->onScreen && ItemRect(*item, rect) ? item : nullptr;
}

int SoftScene::GetNowSeenRect(std::int32_t lPlaneId, std::int32_t lScreenItemId, ZOR_Rect* pRect)
{
    ZOR_Rect r;
    if (!pRect || !SeenItem(lPlaneId, lScreenItemId, &r))
        return 0;
    *pRect = r;
    return 1;
}

int SoftScene::ScreenItemOnPoint(const ZOR_Point* pPoint, std::int32_t lPlaneId, std::int32_t lScreenItemId,
                                 int fCheckSkip)
{
    ZOR_Rect r;
    Item* item = pPoint ? SeenItem(lPlaneId, lScreenItemId, &r) : nullptr;
    if (!item)
        return 0;
    const int x = pPoint->x, y = pPoint->y;
    if (x < r.left || x > r.right || y < r.top || y > r.bottom)
        return 0;
    if (!fCheckSkip)
        return 1;
    const SoftBitmap* bmp = ItemBitmap(*item);
    const int sx = ClampScale(item->scale.scaleX), sy = ClampScale(item->scale.scaleY);
    const ZOR_Point corner = Corner(*item, *bmp);
    const int cx = std::min(bmp->width - 1, static_cast<int>(static_cast<long long>(x - corner.x) * kScaleFull / sx));
    const int cy = std::min(bmp->height - 1, static_cast<int>(static_cast<long long>(y - corner.y) * kScaleFull / sy));
    if (cx < 0 || cy < 0)
        return 0;
    return bmp->OpaqueAt(cx, cy) ? 1 : 0;
}

int SoftScene::TopScreenItemPriority(std::int32_t lPlaneId) const
{
    int top = kPriorityLowest;
    for (auto& entry : mItems)
        if (entry.second->onScreen && entry.second->planeId == lPlaneId)
            top = std::max(top, EffectivePriority(*entry.second));
    return top;
}

// ----- polygons -----

std::int32_t SoftScene::AddPolygon(std::int32_t lPlaneId, const ZOR_Point* pPoints, int iCount, int iPriority,
                                   int iColor, int iStyle, int iPattern, int iThickness, int fClosed)
{
    Plane* plane = FindPlane(lPlaneId);
    if (!plane) {
        mHost.Report("AddPolygon: plane " + std::to_string(lPlaneId) + " does not exist");
        return mNextPolygonId++;
    }
    Polygon poly;
    poly.id = mNextPolygonId++;
    poly.serial = ++mSerial;
    plane->polygons.push_back(poly);
    UpdatePolygon(lPlaneId, poly.id, pPoints, iCount, iPriority, iColor, iStyle, iPattern, iThickness, fClosed);
    return poly.id;
}

void SoftScene::UpdatePolygon(std::int32_t lPlaneId, std::int32_t lPolygonId, const ZOR_Point* pPoints, int iCount,
                              int iPriority, int iColor, int iStyle, int iPattern, int iThickness, int fClosed)
{
    Plane* plane = FindPlane(lPlaneId);
    if (!plane)
        return;
    for (auto& poly : plane->polygons) {
        if (poly.id != lPolygonId)
            continue;
        if (pPoints && iCount > 0) {
            poly.points.assign(pPoints, pPoints + std::min(iCount, 4096));
            for (auto& p : poly.points)
                p = Safe(p);
        }
        // kPriorityOnTop asks for a place above every item of the plane, decided when drawn.
        poly.priority = iPriority;
        poly.color = iColor;
        poly.style = iStyle;
        poly.pattern = iPattern;
        poly.thickness = iThickness > 0 ? std::min(iThickness, 64) : 1;
        poly.closed = fClosed;
        return;
    }
}

void SoftScene::DeletePolygon(std::int32_t lPlaneId, std::int32_t lPolygonId)
{
    Plane* plane = FindPlane(lPlaneId);
    if (!plane)
        return;
    for (std::size_t i = 0; i < plane->polygons.size(); i++) {
        if (plane->polygons[i].id == lPolygonId) {
            plane->polygons.erase(plane->polygons.begin() + static_cast<std::ptrdiff_t>(i));
            return;
        }
    }
}

// ----- for a host that inspects the scene -----

void SoftScene::Inspect(std::vector<InspectedPlane>* planes)
{
    planes->clear();
    std::vector<const Plane*> order;
    for (const auto& entry : mPlanes)
        if (entry.second->added)
            order.push_back(entry.second.get());
    // Ties of priority go to the older plane first, items likewise: the
    // drawing order.
    std::sort(order.begin(), order.end(), [](const Plane* a, const Plane* b) {
        return a->priority != b->priority ? a->priority < b->priority : a->serial < b->serial;
    });
    for (const Plane* plane : order) {
        InspectedPlane view{plane->id, plane->type, plane->priority, plane->rect, plane->hidden, {}};
        std::vector<std::pair<std::uint64_t, Item*>> items;
        for (auto& entry : mItems)
            if (entry.second->onScreen && entry.second->planeId == plane->id)
                items.emplace_back(entry.second->serial, entry.second.get());
        std::sort(items.begin(), items.end(), [](const auto& a, const auto& b) {
            const int pa = EffectivePriority(*a.second), pb = EffectivePriority(*b.second);
            return pa != pb ? pa < pb : a.first < b.first;
        });
        for (const auto& entry : items) {
            Item& item = *entry.second;
            InspectedItem seen{item.id, item.source, EffectivePriority(item), false, ZOR_Rect(0, 0, 0, 0)};
            seen.hasRect = ItemRect(item, &seen.rect);
            if (seen.hasRect) {
                seen.rect.left += plane->rect.left;
                seen.rect.right += plane->rect.left;
                seen.rect.top += plane->rect.top;
                seen.rect.bottom += plane->rect.top;
            }
            view.items.push_back(seen);
        }
        planes->push_back(std::move(view));
    }
}
