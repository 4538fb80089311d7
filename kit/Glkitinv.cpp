// Glkitinv.cpp - see glkitinv.h.
#include "glkitinv.h"

#include "glcast.h"
#include "glcel.h"
#include "glevent.h"
#include "glgame.h"
#include "gldll.h"
#include "glplane.h"
#include "glplanes.h"
#include "glsave.h"
#include "gluser.h"

#include <cstdio>

namespace {
const int kIconPriority = 100;
const int kLabelPriority = 950; // above everything else on the label's plane
} // namespace

std::string GLKitAction::Describe() const
{
    return (mVerb == use ? "use " : "combine ") + mItem + (mVerb == use ? " on " : " with ") + mTarget;
}

GLKitInventory::GLKitInventory(GLKitTextOps* pOps, AbsGLPlane* pPlane, const GLPoint& first, int step,
                               AbsGLPlane* pLabelPlane, const GLPoint& labelPos, const GLKitStyle& style,
                               GLKitState* pState, const GLKitNames* pNames)
    : mpPlane(pPlane), mFirst(first), mStep(step), mpState(pState), mpNames(pNames),
      mLabel(pOps, pLabelPlane, style, kLabelPriority), mLabelPos(labelPos)
{
    GL_ASSERT(pPlane);
    GL_ASSERT(pState);
    GL_ASSERT(pNames);
}

GLKitInventory::~GLKitInventory()
{
    if (!mHeld.empty())
        PutBack();
    Uninstall();
    for (Item& item : mItems) {
        delete item.cel;
        item.cel = 0;
    }
}

void GLKitInventory::Install()
{
    if (!mInstalled)
        theGame->mpUser->mpPrimaDonnas->AddToFront(this);
    mInstalled = TRUE;
}

void GLKitInventory::Uninstall()
{
    if (mInstalled && theGame && theGame->mpUser->mpPrimaDonnas->IsInList(this))
        theGame->mpUser->mpPrimaDonnas->Remove(this);
    mInstalled = FALSE;
}

int GLKitInventory::FindItem(const std::string& key) const
{
    for (std::size_t i = 0; i < mItems.size(); i++)
        if (mItems[i].key == key)
            return static_cast<int>(i);
    return -1;
}

void GLKitInventory::AddItem(const std::string& key, const GLCelRes& icon, GLKitHandler* pHandler)
{
    const int at = FindItem(key);
    if (at >= 0) {
        mItems[static_cast<std::size_t>(at)].icon = icon;
        mItems[static_cast<std::size_t>(at)].handler = pHandler;
        return;
    }
    mItems.push_back(Item{key, icon, pHandler, 0});
}

int GLKitReadItems(const std::string& path, std::vector<GLKitItemLine>* items, GLKitReport report, void* context)
{
    items->clear();
    std::vector<std::string> lines;
    std::string error;
    if (!GLKitReadLines(path, &lines, &error)) {
        report(context, path, 0, TRUE, error);
        return FALSE;
    }
    int ok = TRUE;
    for (std::size_t i = 0; i < lines.size(); i++) {
        const std::size_t first = lines[i].find_first_not_of(" \t\r");
        if (first == std::string::npos || lines[i][first] == '#')
            continue;
        char key[64], extra = 0;
        int view = 0, loop = 0, cel = 0;
        if (std::sscanf(lines[i].c_str(), "%63s %d %d %d %c", key, &view, &loop, &cel, &extra) != 4 || view < 0 ||
            loop < 0 || cel < 0 || loop > 32767 || cel > 32767) {
            report(context, path, static_cast<int>(i + 1), TRUE, "an item is \"<key> <view> <loop> <cel>\"");
            ok = FALSE;
            continue;
        }
        GLKitItemLine item;
        item.mKey = key;
        item.mView = view;
        item.mLoop = loop;
        item.mCel = cel;
        item.mLine = static_cast<int>(i + 1);
        items->push_back(item);
    }
    return ok;
}

int GLKitInventory::LoadItems(const GLKitFolder& folder, GLKitReport report, void* context)
{
    const std::string path = folder.Default("items.txt");
    if (!GLKitFileExists(path))
        return TRUE;
    std::vector<GLKitItemLine> items;
    const int ok = GLKitReadItems(path, &items, report, context);
    for (const GLKitItemLine& item : items)
        AddItem(item.mKey, GLCelRes(static_cast<std::uint32_t>(item.mView), static_cast<short>(item.mLoop),
                                    static_cast<short>(item.mCel), 0));
    return ok;
}

void GLKitInventory::PickUp(const std::string& key)
{
    GL_ASSERT(Knows(key));
    mpState->mPlaces[key] = GLKitState::kCarried;
    GLKitLog("pick up " + key);
    Refresh();
}

void GLKitInventory::GiveAway(const std::string& key, const std::string& place)
{
    GL_ASSERT(Knows(key));
    if (mHeld == key)
        PutBack();
    mpState->mPlaces[key] = place;
    GLKitLog("give away " + key);
    Refresh();
}

std::vector<std::string> GLKitInventory::Carried() const
{
    std::vector<std::string> keys;
    for (const Item& item : mItems)
        if (mpState->IsCarried(item.key))
            keys.push_back(item.key);
    return keys;
}

void GLKitInventory::Refresh()
{
    // Icons stand in the order the items were made known, without gaps.
    int slot = 0;
    for (Item& item : mItems) {
        const int carried = mpState->IsCarried(item.key);
        if (!carried && item.cel) {
            Forget(item.cel);
            delete item.cel;
            item.cel = 0;
        }
        if (!carried)
            continue;
        const GLPoint pos(mFirst.GetX() + slot * mStep, mFirst.GetY());
        if (!item.cel) {
            item.cel = GL_NEW GLCel(mpPlane, item.icon.mView, item.icon.mLoop, item.icon.mCel, pos, kIconPriority,
                                    kFullSizeScale);
            GL_ASSERT(item.cel);
            item.cel->Show();
            item.cel->Update(); // the hit test takes the rectangle drawn
            mThings.push_back(Thing{item.cel, item.key, item.handler});
        } else if (item.cel->GetPos().GetX() != pos.GetX() || item.cel->GetPos().GetY() != pos.GetY()) {
            item.cel->SetPos(pos, FALSE);
            item.cel->Update();
        }
        slot++;
    }
}

void GLKitInventory::Name(GLTarget* pTarget, const std::string& key, GLKitHandler* pHandler)
{
    GL_ASSERT(pTarget);
    for (Thing& thing : mThings)
        if (thing.target == pTarget) {
            thing.key = key;
            thing.handler = pHandler;
            return;
        }
    mThings.push_back(Thing{pTarget, key, pHandler});
}

void GLKitInventory::Forget(GLTarget* pTarget)
{
    for (std::size_t i = 0; i < mThings.size(); i++)
        if (mThings[i].target == pTarget) {
            mThings.erase(mThings.begin() + static_cast<std::ptrdiff_t>(i));
            return;
        }
}

const GLKitInventory::Thing* GLKitInventory::FindThing(const GLTarget* pTarget) const
{
    for (const Thing& thing : mThings)
        if (thing.target == pTarget)
            return &thing;
    return 0;
}

const GLKitInventory::Thing* GLKitInventory::ThingAt(const GLPoint& where) const
{
    // What a click would reach: nothing while hogs take the input; else the
    // planes top first, and on each the first target of its cast that the
    // point hits. A target the game has not named hides what lies below it.
    if (!theGame || theGame->mpUser->mpHogs->NumElements() > 0)
        return 0;
    const GLSetAsArray<AbsGLPlane>& planes = theGame->mpPlaneManager->moPlanes;
    for (int i = 0; i < planes.NumElements(); i++) {
        AbsGLPlane* plane = planes.At(i);
        if (!plane->OnMe(where))
            continue;
        ZOR_Point local(where.GetX(), where.GetY());
        plane->ToLocal(&local);
        const GLPoint at(local.x, local.y);
        const GLSetAsArray<GLTarget>* set = plane->GetCast()->GetEventSet();
        for (int j = 0; j < set->NumElements(); j++) {
            GLObject* member = static_cast<GLObject*>(static_cast<void*>(set->At(j)));
            const GLTarget* target = dynamic_cast<const GLTarget*>(member);
            if (target && target->OnMe(at))
                return FindThing(target);
        }
    }
    return 0;
}

std::string GLKitInventory::KeyAt(const GLPoint& where) const
{
    const Thing* thing = ThingAt(where);
    return thing ? thing->key : std::string();
}

std::string GLKitInventory::LabelAt(const GLPoint& where) const
{
    const std::string key = KeyAt(where);
    if (mHeld.empty())
        return key.empty() ? std::string() : mpNames->Text(key);
    if (key.empty() || key == mHeld)
        return mpNames->Text(mHeld);
    return Knows(key) ? mpNames->Combine(mHeld, key) : mpNames->Use(mHeld, key);
}

void GLKitInventory::ShowLabel(const std::string& text)
{
    mLabel.Show(text, mLabelPos, mpNames->mWidth);
}

void GLKitInventory::Hold(const std::string& key)
{
    GL_ASSERT(mpState->IsCarried(key));
    if (!mHeld.empty())
        PutBack();
    mHeld = key;
    GLKitLog("take " + key + " in hand");
    if (theGame && theGame->GetCursor()) {
        // The normal picture only: a wait or highlight the game shows meanwhile stays its own.
        mCursorBefore = theGame->GetCursor()->GetNormCelRes();
        GLCelRes icon = mItems[static_cast<std::size_t>(FindItem(key))].icon;
        theGame->GetCursor()->SetNormCelRes(icon);
    }
}

void GLKitInventory::PutBack()
{
    if (mHeld.empty())
        return;
    GLKitLog("put " + mHeld + " back");
    mHeld.clear();
    if (theGame && theGame->GetCursor())
        theGame->GetCursor()->SetNormCelRes(mCursorBefore);
    ShowLabel(std::string());
}

GLKitHandler* GLKitInventory::HandlerOf(const std::string& key) const
{
    const int item = FindItem(key);
    if (item >= 0)
        return mItems[static_cast<std::size_t>(item)].handler;
    for (const Thing& thing : mThings)
        if (thing.key == key)
            return thing.handler;
    return 0;
}

void GLKitInventory::Deliver(const GLKitAction& action)
{
    GLKitLog(action.Describe());
    GLKitHandler* handler = HandlerOf(action.mTarget);
    // Combining asks the item in hand too, should the other not take it.
    if (handler && handler->KitAction(action))
        return;
    if (action.mVerb == GLKitAction::combine) {
        GLKitHandler* own = HandlerOf(action.mItem);
        if (own && own->KitAction(action))
            return;
    }
    if (mpFallback && mpFallback->KitAction(action))
        return;
    GLKitLog(mpNames->Text("nothing"));
}

void GLKitInventory::UseOn(const std::string& key)
{
    GL_ASSERT(!mHeld.empty());
    GLKitAction action;
    action.mVerb = Knows(key) ? GLKitAction::combine : GLKitAction::use;
    action.mItem = mHeld;
    action.mTarget = key;
    // The item goes back first, so that a handler may give it away.
    PutBack();
    Deliver(action);
}

int GLKitInventory::HandleEvent(GLEvent* pEvent)
{
    // Prima donnas get the event in screen coordinates.
    const GLPoint where(pEvent->where.GetX(), pEvent->where.GetY());
    const int right = (pEvent->modifiers & kModifierFirst) != 0;
    switch (pEvent->type) {
    case kEventPointerMove:
        ShowLabel(LabelAt(where));
        return FALSE;
    case kEventKeyDown:
        if (pEvent->message == kKeyEscape && !mHeld.empty()) {
            PutBack();
            pEvent->claimed = TRUE;
        }
        return pEvent->claimed;
    case kEventPointerDown:
        break;
    default:
        return FALSE;
    }
    const std::string key = KeyAt(where);
    if (!mHeld.empty()) {
        if (right || key.empty() || key == mHeld)
            PutBack();
        else
            UseOn(key);
        pEvent->claimed = TRUE;
    } else if (!key.empty() && Knows(key) && mpState->IsCarried(key)) {
        if (right) {
            GLKitLog("look at " + key + ": " + mpNames->Text(key + ".about"));
            mLabel.Show(mpNames->Text(key + ".about"), mLabelPos, mpNames->mWidth);
        } else {
            Hold(key);
            ShowLabel(LabelAt(where));
        }
        pEvent->claimed = TRUE;
    }
    return pEvent->claimed;
}

// ----- In a saved game -----

namespace {

const char* const kStateNames = "kit.names";
const char* const kStateValues = "kit.values";
const char* const kStateLabel = "kit.label";

void KeepPair(void* context, const std::string& name, const std::string& value)
{
    GLSaveStore* store = static_cast<GLSaveStore*>(context);
    store->AddText(kStateNames, name.c_str());
    store->AddText(kStateValues, value.c_str());
}

} // namespace

void GLKitDeclareState(GLSaveStore* pStore)
{
    pStore->DeclareList(kStateNames, GLSaveStore::kTextList);
    pStore->DeclareList(kStateValues, GLSaveStore::kTextList);
    pStore->DeclareText(kStateLabel, "");
}

void GLKitKeepState(const GLKitState& state, const GLKitInventory* pInventory, GLSaveStore* pStore)
{
    pStore->ClearList(kStateNames);
    pStore->ClearList(kStateValues);
    state.WriteValues(&KeepPair, pStore);
    pStore->SetText(kStateLabel, pInventory ? pInventory->GetLabel().c_str() : "");
}

int GLKitRestoreState(const GLSaveStore& store, GLKitState* pState, GLKitInventory* pInventory)
{
    pState->Clear();
    const int count = store.GetCount(kStateNames);
    int whole = count == store.GetCount(kStateValues);
    for (int i = 0; i < count && i < store.GetCount(kStateValues); i++) {
        if (!pState->ReadValue(store.GetTextAt(kStateNames, i), store.GetTextAt(kStateValues, i)))
            whole = FALSE;
    }
    if (pInventory) {
        pInventory->PutBack();
        pInventory->Refresh();
        pInventory->ShowLabelText(store.GetText(kStateLabel));
    }
    return whole;
}
