// SoftKernel.cpp - the soft kernel's planes, screen items and polygons, and
// the operations it hands on to its services: the clock and input
// (SoftInput), robots (SoftRobots), audio, messages, memory bitmaps and
// movies. The frame is composed in SoftCompositor.cpp.
#include "SoftKernelParts.h"

#include "SoftCompositor.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

using soft::ClampScale;
using soft::Intersect;
using soft::kScreen;

// Coordinates the kernel computes with are kept within +-2^24, far outside
// anything drawn, so that no sum of them can overflow.
constexpr std::int32_t kFar = 1 << 24;
std::int32_t Safe(long long v)
{
    return static_cast<std::int32_t>(v < -kFar ? -kFar : v > kFar ? kFar : v);
}
ZOR_Point Safe(const ZOR_Point& p)
{
    return ZOR_Point(Safe(p.x), Safe(p.y));
}
ZOR_Rect Safe(const ZOR_Rect& r)
{
    return ZOR_Rect(Safe(r.left), Safe(r.top), Safe(r.right), Safe(r.bottom));
}

} // namespace

SoftKernel::SoftKernel()
    : mPalette(SoftPalette::Default()), mCompositor(std::make_unique<SoftCompositor>(*this))
{
    mResources.SetPaletteForImages(mPalette);
}

SoftKernel::~SoftKernel()
{
    // Records the library never gave back belong to the kernel still.
    for (auto& entry : mItems)
        delete entry.first;
    for (auto& entry : mPlanes)
        delete entry.first;
}

void SoftKernel::Report(const std::string& fault)
{
    if (mFault.empty())
        mFault = fault;
}

void SoftKernel::Trace(const char* format, ...)
{
    if (!mTraceHook)
        return;
    char line[256];
    va_list args;
    va_start(args, format);
    std::vsnprintf(line, sizeof line, format, args);
    va_end(args);
    mTraceHook(line, mTraceHookData);
}

bool SoftKernel::SetGameFolder(const std::string& folder)
{
    mResources.SetFolder(folder);
    SoftPalette palette;
    std::string error;
    if (!mResources.LoadPalette(&palette, &error)) {
        Report(error);
        return false;
    }
    SetPalette(palette);
    return true;
}

void SoftKernel::SetPalette(const SoftPalette& palette)
{
    mPalette = palette;
    mResources.SetPaletteForImages(palette);
}

void SoftKernel::SetScript(const std::vector<SoftInputEvent>& events)
{
    mInput.SetScript(events);
}

void SoftKernel::PushInput(const SoftInputEvent& event)
{
    mInput.Push(event);
}

std::uint32_t SoftKernel::Now() const
{
    return mInput.Now();
}

// ----- memory -----

void* SoftKernel::AllocMemory(std::uint32_t uSize, const char* pFile, int iLine)
{
    return mLedger.Allocate(uSize, pFile, iLine);
}

void SoftKernel::FreeMemory(void* pBlock)
{
    mLedger.Release(pBlock);
}

// ----- planes -----

KernelPlaneRecord* SoftKernel::NewPlane(int iType, int iColor, ZOR_Rect* pRect, int /*iWindowIndex*/,
                                        int iPriority, ZOR_Point* pVanishingPoint, int iPicture, int fMirror)
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

void SoftKernel::TakeOver(Plane& plane)
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

SoftKernel::Plane* SoftKernel::FindPlane(std::int32_t id)
{
    for (auto& entry : mPlanes)
        if (entry.second->id == id)
            return entry.second.get();
    return nullptr;
}

void SoftKernel::AddPlane(KernelPlaneRecord* pRecord)
{
    auto found = mPlanes.find(pRecord);
    if (found == mPlanes.end()) {
        Report("AddPlane: a plane record this kernel did not make");
        return;
    }
    TakeOver(*found->second);
    found->second->added = true;
}

void SoftKernel::PlaneCreated(KernelPlaneRecord* pRecord)
{
    if (!mPlanes.count(pRecord))
        Report("PlaneCreated: a plane record this kernel did not make");
}

void SoftKernel::PlaneRectChanged(KernelPlaneRecord* pRecord)
{
    auto found = mPlanes.find(pRecord);
    if (found == mPlanes.end()) {
        Report("PlaneRectChanged: a plane record this kernel did not make");
        return;
    }
    if (pRecord->rect.IsEmpty())
        Report("PlaneRectChanged: plane " + std::to_string(pRecord->id) + " was given an empty rectangle");
}

void SoftKernel::UpdatePlane(KernelPlaneRecord* pRecord)
{
    auto found = mPlanes.find(pRecord);
    if (found == mPlanes.end()) {
        Report("UpdatePlane: a plane record this kernel did not make");
        return;
    }
    TakeOver(*found->second);
}

void SoftKernel::DeletePlane(std::int32_t lPlaneId)
{
    for (auto it = mPlanes.begin(); it != mPlanes.end(); ++it) {
        if (it->second->id != lPlaneId)
            continue;
        // Items still on the plane leave the screen with it; their records stay
        // the library's until it gives them back.
        for (auto& item : mItems) {
            if (item.second->planeId == lPlaneId) {
                item.second->onScreen = false;
                mCompositor->Remove(*item.second);
            }
        }
        if (mRobots.Current() && mRobots.Current()->planeId == lPlaneId)
            mRobots.Terminate();
        delete it->first;
        mPlanes.erase(it);
        return;
    }
}

int SoftKernel::TopPlanePriority()
{
    int top = kPriorityLowest;
    for (auto& entry : mPlanes)
        if (entry.second->added)
            top = std::max(top, entry.second->priority);
    return top;
}

void SoftKernel::AddPicAt(std::int32_t lPlaneId, int iPicture, int x, int y, int fMirror, int /*fDeleteCopy*/)
{
    Plane* plane = FindPlane(lPlaneId);
    if (!plane)
        return;
    std::string error;
    if (!mResources.Picture(iPicture, &error)) {
        Report(error);
        return;
    }
    plane->extraPics.push_back(Plane::Pic{iPicture, Safe(x), Safe(y), fMirror});
}

void SoftKernel::SetShowStyle(std::int32_t lPlaneId, int iStyle, int iSpeed, int iColor, int /*fAnimate*/,
                              int /*fUseReferenceFrame*/, int iToFrom, int* /*piArray*/, int /*iArraySize*/,
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
    plane->styleStart = Now();
    plane->styleActive = true;
    plane->hidden = false;
}

int SoftKernel::ShowStylePercent(const Plane& plane) const
{
    if (!plane.styleActive || plane.style == 0)
        return 100;
    const std::uint32_t elapsed = Now() - plane.styleStart;
    const std::uint64_t steps = elapsed / static_cast<std::uint32_t>(plane.styleSpeed);
    if (steps >= static_cast<std::uint64_t>(plane.styleDivisions))
        return 100;
    return static_cast<int>(steps * 100 / plane.styleDivisions);
}

int SoftKernel::ShowStylePercentComplete(std::int32_t lPlaneId)
{
    Plane* plane = FindPlane(lPlaneId);
    return plane ? ShowStylePercent(*plane) : 100;
}

void SoftKernel::SetScroll(std::int32_t lPlaneId, int iStepX, int iStepY, int iPicture, int /*fAnimate*/,
                           int iTicks, int fMirror)
{
    Plane* plane = FindPlane(lPlaneId);
    if (!plane)
        return;
    std::string error;
    if (!mResources.Picture(iPicture, &error)) {
        Report(error);
        return;
    }
    if (iStepX == 0 && iStepY == 0)
        return;
    plane->scrolling = true;
    plane->scrollStepX = iStepX;
    plane->scrollStepY = iStepY;
    plane->scrollPicture = iPicture;
    plane->scrollMirror = fMirror;
    plane->scrollTicks = iTicks > 0 ? iTicks : 1;
    plane->scrollStart = Now();
}

void SoftKernel::FinishScroll(Plane& plane)
{
    plane.scrolling = false;
    plane.picture = plane.scrollPicture;
    plane.mirror = plane.scrollMirror;
    plane.extraPics.clear();
    plane.record->picture = plane.picture;
    plane.record->mirror = plane.mirror;
}

void SoftKernel::MovePlaneItems(std::int32_t lPlaneId, int iDeltaX, int iDeltaY, int fMovePictures)
{
    Plane* plane = FindPlane(lPlaneId);
    if (!plane)
        return;
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
        mCompositor->Place(item);
    }
    for (auto& poly : plane->polygons) {
        for (auto& p : poly.points)
            p = Safe(ZOR_Point(Safe(static_cast<long long>(p.x) + iDeltaX), Safe(static_cast<long long>(p.y) + iDeltaY)));
    }
    if (SoftRobots::Robot* robot = mRobots.Current(); robot && robot->planeId == lPlaneId) {
        robot->x = Safe(static_cast<long long>(robot->x) + iDeltaX);
        robot->y = Safe(static_cast<long long>(robot->y) + iDeltaY);
    }
    if (fMovePictures) {
        plane->picOffsetX = Safe(static_cast<long long>(plane->picOffsetX) + iDeltaX);
        plane->picOffsetY = Safe(static_cast<long long>(plane->picOffsetY) + iDeltaY);
    }
}

void SoftKernel::PlaneToLocal(std::int32_t lPlaneId, ZOR_Point* pPoint)
{
    Plane* plane = FindPlane(lPlaneId);
    if (!plane || !pPoint)
        return;
    // Wrapping arithmetic: the point may hold anything, the unset marker included.
    pPoint->x = static_cast<std::int32_t>(static_cast<std::uint32_t>(pPoint->x) - static_cast<std::uint32_t>(plane->rect.left));
    pPoint->y = static_cast<std::int32_t>(static_cast<std::uint32_t>(pPoint->y) - static_cast<std::uint32_t>(plane->rect.top));
}

void SoftKernel::PlaneToGlobal(std::int32_t lPlaneId, ZOR_Point* pPoint)
{
    Plane* plane = FindPlane(lPlaneId);
    if (!plane || !pPoint)
        return;
    pPoint->x = static_cast<std::int32_t>(static_cast<std::uint32_t>(pPoint->x) + static_cast<std::uint32_t>(plane->rect.left));
    pPoint->y = static_cast<std::int32_t>(static_cast<std::uint32_t>(pPoint->y) + static_cast<std::uint32_t>(plane->rect.top));
}

// ----- screen items -----

KernelScreenItemRecord* SoftKernel::NewScreenItem(std::int32_t lPlaneId, KernelScreenItemSource* pSource,
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

void SoftKernel::TakeOver(Item& item)
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

SoftKernel::Item* SoftKernel::FindItem(std::int32_t planeId, std::int32_t itemId)
{
    auto found = mItemsById.find(itemId);
    if (found == mItemsById.end() || found->second->planeId != planeId)
        return nullptr;
    return found->second;
}

void SoftKernel::AddScreenItem(KernelScreenItemRecord* pRecord)
{
    auto found = mItems.find(pRecord);
    if (found == mItems.end()) {
        Report("AddScreenItem: a screen item record this kernel did not make");
        return;
    }
    Item& item = *found->second;
    TakeOver(item);
    if (!FindPlane(item.planeId)) {
        Report("AddScreenItem: screen item " + std::to_string(item.id) + " names plane " +
               std::to_string(item.planeId) + ", which does not exist");
        return;
    }
    item.onScreen = true;
    item.serial = ++mSerial; // the newest item on a plane is drawn over older ones of its priority
    mCompositor->Place(item);
}

void SoftKernel::UpdateScreenItem(KernelScreenItemRecord* pRecord)
{
    auto found = mItems.find(pRecord);
    if (found == mItems.end()) {
        Report("UpdateScreenItem: a screen item record this kernel did not make");
        return;
    }
    TakeOver(*found->second);
    mCompositor->Place(*found->second);
}

void SoftKernel::DeleteScreenItem(KernelScreenItemRecord* pRecord)
{
    ForgetItem(pRecord, "DeleteScreenItem");
}

void SoftKernel::DisposeScreenItem(KernelScreenItemRecord* pRecord)
{
    ForgetItem(pRecord, "DisposeScreenItem");
}

// Taking an item off the screen and freeing a record that was never shown
// come to the same here: the kernel keeps no list apart from its records.
void SoftKernel::ForgetItem(KernelScreenItemRecord* pRecord, const char* operation)
{
    auto found = mItems.find(pRecord);
    if (found == mItems.end()) {
        Report(std::string(operation) + ": a screen item record this kernel did not make");
        return;
    }
    mCompositor->Remove(*found->second);
    mItemsById.erase(found->second->id);
    mItems.erase(found);
    delete pRecord;
}

const SoftBitmap* SoftKernel::ItemBitmap(Item& item)
{
    const std::uint64_t epoch = BitmapEpoch();
    if (item.bitmapEpoch == epoch)
        return item.bitmap;
    // A failure is not kept: the item is looked up (and reported) again next time.
    item.bitmap = ResolveBitmap(item);
    item.bitmapEpoch = item.bitmap ? epoch : 0;
    return item.bitmap;
}

const SoftBitmap* SoftKernel::ResolveBitmap(const Item& item)
{
    std::string error;
    if (item.source.kind == kSourceMemBitmap) {
        const SoftBitmap* bitmap = mBitmaps.Find(item.source.memId);
        if (!bitmap) {
            error = "screen item " + std::to_string(item.id) + ": memory bitmap " +
                    std::to_string(item.source.memId) + " does not exist";
            Report(error);
            return nullptr;
        }
        return bitmap;
    }
    if (item.source.kind != kSourceView) {
        Report("screen item " + std::to_string(item.id) + ": unknown source kind " +
               std::to_string(item.source.kind));
        return nullptr;
    }
    const SoftView* view = mResources.View(item.source.view, &error);
    if (!view) {
        Report(error);
        return nullptr;
    }
    const int loop = item.source.loop, cel = item.source.cel;
    if (loop < 0 || loop >= static_cast<int>(view->loops.size()) || cel < 0 ||
        cel >= static_cast<int>(view->loops[loop].size())) {
        Report(mResources.PathOf("views/" + std::to_string(item.source.view) + ".txt") + ": has no loop " +
               std::to_string(loop) + " cel " + std::to_string(cel) + " (asked for by screen item " +
               std::to_string(item.id) + ")");
        return nullptr;
    }
    return &view->loops[loop][cel];
}

// The rectangle the item covers, in its plane's coordinates.
bool SoftKernel::ItemRect(Item& item, ZOR_Rect* rect)
{
    const SoftBitmap* bmp = ItemBitmap(item);
    if (!bmp)
        return false;
    const int sx = ClampScale(item.scale.scaleX), sy = ClampScale(item.scale.scaleY);
    const int left = item.pos.x - static_cast<int>(static_cast<long long>(bmp->originX) * sx / kScaleFull);
    const int top = item.pos.y - static_cast<int>(static_cast<long long>(bmp->originY) * sy / kScaleFull);
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

int SoftKernel::EffectivePriority(const Item& item) const
{
    return item.fixedPriority ? item.priority : item.pos.y + item.z;
}

int SoftKernel::GetNowSeenRect(std::int32_t lPlaneId, std::int32_t lScreenItemId, ZOR_Rect* pRect)
{
    Item* item = FindItem(lPlaneId, lScreenItemId);
    if (!item || !item->onScreen || !pRect)
        return 0;
    ZOR_Rect r;
    if (!ItemRect(*item, &r))
        return 0;
    *pRect = r;
    return 1;
}

int SoftKernel::ScreenItemOnPoint(ZOR_Point* pPoint, std::int32_t lPlaneId, std::int32_t lScreenItemId,
                                  int fCheckSkip)
{
    Item* item = FindItem(lPlaneId, lScreenItemId);
    if (!item || !item->onScreen || !pPoint)
        return 0;
    ZOR_Rect r;
    if (!ItemRect(*item, &r))
        return 0;
    const int x = pPoint->x, y = pPoint->y;
    if (x < r.left || x > r.right || y < r.top || y > r.bottom)
        return 0;
    if (!fCheckSkip)
        return 1;
    const SoftBitmap* bmp = ItemBitmap(*item);
    const int sx = ClampScale(item->scale.scaleX), sy = ClampScale(item->scale.scaleY);
    const int left = item->pos.x - static_cast<int>(static_cast<long long>(bmp->originX) * sx / kScaleFull);
    const int top = item->pos.y - static_cast<int>(static_cast<long long>(bmp->originY) * sy / kScaleFull);
    const int cx = std::min(bmp->width - 1, static_cast<int>(static_cast<long long>(x - left) * kScaleFull / sx));
    const int cy = std::min(bmp->height - 1, static_cast<int>(static_cast<long long>(y - top) * kScaleFull / sy));
    if (cx < 0 || cy < 0)
        return 0;
    return bmp->OpaqueAt(cx, cy) ? 1 : 0;
}

int SoftKernel::TopScreenItemPriority(std::int32_t lPlaneId)
{
    int top = kPriorityLowest;
    for (auto& entry : mItems)
        if (entry.second->onScreen && entry.second->planeId == lPlaneId)
            top = std::max(top, EffectivePriority(*entry.second));
    return top;
}

int SoftKernel::NumLoops(int iView)
{
    std::string error;
    const SoftView* view = mResources.View(iView, &error);
    if (!view) {
        Report(error);
        return 0;
    }
    return static_cast<int>(view->loops.size());
}

int SoftKernel::NumCels(std::uint32_t uView, int iLoop)
{
    std::string error;
    const SoftView* view = mResources.View(static_cast<int>(uView), &error);
    if (!view) {
        Report(error);
        return 0;
    }
    if (iLoop < 0 || iLoop >= static_cast<int>(view->loops.size())) {
        Report(mResources.PathOf("views/" + std::to_string(uView) + ".txt") + ": has no loop " +
               std::to_string(iLoop));
        return 0;
    }
    return static_cast<int>(view->loops[iLoop].size());
}

// ----- polygons -----

std::int32_t SoftKernel::AddPolygon(std::int32_t lPlaneId, ZOR_Point* pPoints, int iCount, int iPriority, int iColor,
                                    int iStyle, int iPattern, int iThickness, int fClosed)
{
    Plane* plane = FindPlane(lPlaneId);
    if (!plane) {
        Report("AddPolygon: plane " + std::to_string(lPlaneId) + " does not exist");
        return mNextPolygonId++;
    }
    Polygon poly;
    poly.id = mNextPolygonId++;
    poly.serial = ++mSerial;
    plane->polygons.push_back(poly);
    UpdatePolygon(lPlaneId, poly.id, pPoints, iCount, iPriority, iColor, iStyle, iPattern, iThickness, fClosed);
    return poly.id;
}

void SoftKernel::UpdatePolygon(std::int32_t lPlaneId, std::int32_t lPolygonId, ZOR_Point* pPoints, int iCount,
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

void SoftKernel::DeletePolygon(std::int32_t lPlaneId, std::int32_t lPolygonId)
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

int SoftKernel::PointInPolygon(int x, int y, ZOR_Point* pPoints, int iCount)
{
    if (!pPoints || iCount < 1)
        return 0;
    // On an edge (or a vertex) counts as inside.
    for (int i = 0; i < iCount; i++) {
        const ZOR_Point& a = pPoints[i];
        const ZOR_Point& b = pPoints[(i + 1) % iCount];
        const long long cross = (static_cast<long long>(b.x) - a.x) * (static_cast<long long>(y) - a.y) -
                                (static_cast<long long>(b.y) - a.y) * (static_cast<long long>(x) - a.x);
        if (cross == 0 && x >= std::min(a.x, b.x) && x <= std::max(a.x, b.x) && y >= std::min(a.y, b.y) &&
            y <= std::max(a.y, b.y))
            return 1;
    }
    bool inside = false;
    for (int i = 0, j = iCount - 1; i < iCount; j = i++) {
        const ZOR_Point& a = pPoints[i];
        const ZOR_Point& b = pPoints[j];
        if ((a.y > y) != (b.y > y)) {
            // x of the edge at height y, compared without division.
            const long long lhs = (static_cast<long long>(x) - a.x) * (static_cast<long long>(b.y) - a.y);
            const long long rhs = (static_cast<long long>(b.x) - a.x) * (static_cast<long long>(y) - a.y);
            if ((static_cast<long long>(b.y) - a.y > 0) ? lhs < rhs : lhs > rhs)
                inside = !inside;
        }
    }
    return inside ? 1 : 0;
}

// ----- composition -----

const std::uint8_t* SoftKernel::Frame() const
{
    return mCompositor->Frame();
}

void SoftKernel::Compose()
{
    mCompositor->ComposePlanes();
    mMovies.Draw(*mCompositor, mPalette);
    bool cursorShown = mCursorVisible && mCursorView >= 0;
    if (mMovies.HidesCursor())
        cursorShown = false;
    if (cursorShown) {
        std::string error;
        const SoftView* view = mResources.View(mCursorView, &error);
        if (!view) {
            Report(error);
        } else if (mCursorLoop >= 0 && mCursorLoop < static_cast<int>(view->loops.size()) && mCursorCel >= 0 &&
                   mCursorCel < static_cast<int>(view->loops[mCursorLoop].size())) {
            const SoftBitmap& bmp = view->loops[mCursorLoop][mCursorCel];
            mCompositor->DrawBitmap(bmp, mInput.CursorX() - bmp.originX, mInput.CursorY() - bmp.originY, kScaleFull, kScaleFull, nullptr, kScreen, false);
        }
    }
    mFramesComposed++;
}

void SoftKernel::UpdateScreen(int /*fFlag*/)
{
    Compose();
    if (mFrameHook) {
        if (mInput.HasSeam())
            Now(); // the hook sees the clock as the frame was composed
        mInput.SetInFrameHook(true);
        mFrameHook(*this, mFrameHookData);
        mInput.SetInFrameHook(false);
    }
    mInput.AdvanceClock();
}

// ----- input and cursor -----

void SoftKernel::GetEvent(std::uint32_t uMask, KernelEventRecord* pRecord)
{
    if (pRecord && mInput.NextEvent(uMask, pRecord))
        mMovies.InputArrived();
}

void SoftKernel::ShowCursor()
{
    mCursorVisible = true;
}

void SoftKernel::HideCursor()
{
    mCursorVisible = false;
}

void SoftKernel::SetCursorPos(ZOR_Point* pPoint)
{
    if (!pPoint)
        return;
    mInput.SetCursor(std::max(0, std::min(kWidth - 1, static_cast<int>(pPoint->x))),
                     std::max(0, std::min(kHeight - 1, static_cast<int>(pPoint->y))));
}

void SoftKernel::SetCursorView(std::uint32_t uView, int iLoop, int iCel)
{
    std::string error;
    if (!mResources.View(static_cast<int>(uView), &error)) {
        Report(error);
        return;
    }
    mCursorView = static_cast<int>(uView);
    mCursorLoop = iLoop;
    mCursorCel = iCel;
}

// ----- random numbers and clocks -----

std::uint32_t SoftKernel::Random(std::uint32_t uLow, std::uint32_t uHigh)
{
    if (uLow > uHigh)
        std::swap(uLow, uHigh);
    // xorshift64*: fast, and the same sequence on every platform.
    mRandom ^= mRandom >> 12;
    mRandom ^= mRandom << 25;
    mRandom ^= mRandom >> 27;
    const std::uint64_t r = mRandom * 2685821657736338717ull;
    const std::uint64_t span = static_cast<std::uint64_t>(uHigh) - uLow + 1;
    return uLow + static_cast<std::uint32_t>((r >> 11) % span);
}

void SoftKernel::SeedRandom(std::uint32_t uSeed)
{
    mRandom = (static_cast<std::uint64_t>(uSeed) << 1) ^ 0x9E3779B97F4A7C15ull;
    if (mRandom == 0)
        mRandom = 1;
}

std::uint32_t SoftKernel::GetTime(int /*iSelector*/)
{
    return Now() / 60;
}

std::uint32_t SoftKernel::GetTicks()
{
    return Now();
}

// ----- messages -----

// Speech belongs to a message: looked up by the messages, played by the audio.
int SoftKernel::PlayMessageAudio(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, int /*iUnused1*/,
                                 int /*iVolume*/, int /*iUnused2*/)
{
    const int keys[5] = {iKey1, iKey2, iKey3, iKey4, iSequence};
    return mAudio.PlaySpeech(keys, mMessages.Find(keys));
}

// ----- robots -----

void SoftKernel::InitRobot(std::uint32_t uRobot, std::int32_t lPlaneId, int iPriority, int x, int y, int /*iValue*/)
{
    mRobots.Init(uRobot, lPlaneId, FindPlane(lPlaneId) != nullptr, iPriority, Safe(x), Safe(y), ++mSerial);
}

void SoftKernel::PrepareRobot(int, int, int, int)
{
    mRobots.Prepare();
}

void SoftKernel::PlayRobot()
{
    mRobots.Play();
}

void SoftKernel::PauseRobot()
{
    mRobots.Pause();
}

void SoftKernel::SetRobotPriority(int iPriority)
{
    mRobots.SetPriority(iPriority);
}

int SoftKernel::IsRobotDone()
{
    return mRobots.IsDone();
}

int SoftKernel::IsRobotPlaying()
{
    return mRobots.IsPlaying();
}

void SoftKernel::TerminateRobot()
{
    mRobots.Terminate();
}

std::uint32_t SoftKernel::GetRobotSignal()
{
    return mRobots.Signal();
}

// ----- movies: the kernel drives what needs the screen, the input or the palette -----

unsigned SoftKernel::PlayVmd(int iEventFlags, int, int)
{
    const int ticksPerFrame = mMovies.BeginVmd();
    if (ticksPerFrame == 0)
        return 0;
    unsigned result = 0;
    // The movie plays to its end before the call returns; every tick is a frame
    // of output, so a headless run records it as it would be seen.
    while (mMovies.VmdHasFrame()) {
        for (int t = 0; t < ticksPerFrame; t++) {
            if ((iEventFlags & 2) && mInput.TakeEnding()) {
                result = 1;
                break;
            }
            UpdateScreen(1);
        }
        if (result)
            break;
        mMovies.NextVmdFrame();
    }
    mMovies.EndVmd();
    return result;
}

unsigned SoftKernel::ResumeVmd()
{
    return mMovies.CanResumeVmd() ? PlayVmd(3, -1, -1) : 0;
}

void SoftKernel::SetVmdPalette()
{
    SoftPalette palette;
    if (mMovies.VmdPalette(mPalette, &palette))
        SetPalette(palette);
}

unsigned SoftKernel::PauseAvi(int iMovie)
{
    if (!mMovies.IsAviPlaying(iMovie))
        return 1;
    Compose(); // brings the frame number up to the clock
    return mMovies.PauseAvi(iMovie);
}

void SoftKernel::SetAviPalette(int iMovie)
{
    if (const SoftPalette* palette = mMovies.AviPalette(iMovie))
        SetPalette(*palette);
}
