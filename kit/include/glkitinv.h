// glkitinv.h - the inventory, "use X on Y", and names under the pointer.
//
// The items a game knows stand in items.txt, one "<key> <view> <loop> <cel>"
// a line (blank lines and '#' comments skipped); their names and
// descriptions come from the names file ("<key> = ..." and
// "<key>.about = ..."). The items the player carries stand as icons in a row
// on the inventory plane, which the game makes and places.
//
// Things on screen (a cel, a feature, any target) carry a name when the game
// names them with Name, and may have a handler. The inventory is the first
// prima donna of the user object, so it sees input before the planes:
//   - a click on a carried item's icon takes it in hand: the cursor becomes
//     its icon;
//   - a click with an item in hand on a named thing, or on another item,
//     delivers "use X on Y" (or "combine X with Y") to that thing's handler,
//     then to the fallback handler if the first does not take it; then the
//     item goes back;
//   - a right click (modifier bit 0) or Escape puts it back;
//   - a right click on an item with nothing in hand shows its description.
// The label, on a plane the game places, shows the name of what is under the
// pointer, or "use X on Y" while an item is in hand. Which thing that is
// follows the library's own dispatch: nothing while a hog holds the input,
// else the planes top first and on each the first target of its cast whose
// hit test holds, so the name shown is that of what a click would reach.
#ifndef QUINDLE_GLKITINV_H
#define QUINDLE_GLKITINV_H

#include "glcursor.h"
#include "glkit.h"
#include "globject.h"

#include <string>
#include <vector>

class GLCel;
class GLSaveStore;
class GLTarget;

// What the player did with an item: "use" it on a thing, or "combine" it
// with another item. mItem and mTarget are keys.
struct GLKIT_API GLKitAction {
    enum Verb { use, combine };
    Verb mVerb = use;
    std::string mItem;
    std::string mTarget;
    // "use bell on gate" / "combine bell with rope", by key.
    std::string Describe() const;
};

// One line of items.txt, read.
struct GLKIT_API GLKitItemLine {
    std::string mKey;
    int mView = 0;
    int mLoop = 0;
    int mCel = 0;
    int mLine = 0;
};
// Reads items.txt; a malformed line is reported and skipped. FALSE on a fault.
GLKIT_API int GLKitReadItems(const std::string& path, std::vector<GLKitItemLine>* items,
                             GLKitReport report = GLKitNotify, void* context = 0);

// A thing's (or an item's) handler: answers TRUE when it took the action.
class GLKIT_API GLKitHandler {
public:
    virtual ~GLKitHandler() {}
    virtual int KitAction(const GLKitAction& action) = 0;
};

class GLKIT_API GLKitInventory : public GLObject {
public:
    // Icons go on pPlane from `first`, one every `step` pixels to the right;
    // the label goes on pLabelPlane at labelPos. Names, state and text
    // operations are the game's; none is owned. The inventory starts idle:
    // Install puts it among the prima donnas.
    GLKitInventory(GLKitTextOps* pOps, AbsGLPlane* pPlane, const GLPoint& first, int step, AbsGLPlane* pLabelPlane,
                   const GLPoint& labelPos, const GLKitStyle& style, GLKitState* pState, const GLKitNames* pNames);
    // Puts a held item back, leaves the prima donnas, takes the icons away.
    virtual ~GLKitInventory();
    GLKitInventory(const GLKitInventory&) = delete;
    GLKitInventory& operator=(const GLKitInventory&) = delete;

    // The first prima donna from now on; Uninstall leaves.
    void Install();
    void Uninstall();

    // An item the game knows: key, icon, and a handler for what is used on it.
    void AddItem(const std::string& key, const GLCelRes& icon, GLKitHandler* pHandler = 0);
    // Reads items.txt of the folder (a missing file is no fault). FALSE on a fault.
    int LoadItems(const GLKitFolder& folder, GLKitReport report = GLKitNotify, void* context = 0);
    int Knows(const std::string& key) const { return FindItem(key) >= 0; }
    // The player takes the item / gives it away (it goes to `place`).
    void PickUp(const std::string& key);
    void GiveAway(const std::string& key, const std::string& place = GLKitState::kNowhere);
    // Shows the icons of the items carried as the state says (after a restore).
    void Refresh();
    // What the label shows; ShowLabelText puts a text kept before back.
    const std::string& GetLabel() const { return mLabel.GetText(); }
    void ShowLabelText(const std::string& text) { ShowLabel(text); }
    // The keys of the items carried, in the order of their icons.
    std::vector<std::string> Carried() const;

    // Names a thing on screen, with a handler (may be null); naming it again
    // replaces both. Forget before the target goes.
    void Name(GLTarget* pTarget, const std::string& key, GLKitHandler* pHandler = 0);
    void Forget(GLTarget* pTarget);
    // What is told when no thing's handler takes an action (may be null).
    void SetFallback(GLKitHandler* pHandler) { mpFallback = pHandler; }

    // Takes a carried item in hand; the cursor shows its icon.
    void Hold(const std::string& key);
    // Puts the item in hand back; the cursor is as before.
    void PutBack();
    const std::string& Held() const { return mHeld; }

    // The key of the thing a click at this screen point would reach, or "".
    std::string KeyAt(const GLPoint& where) const;
    // What the label says for a screen point.
    std::string LabelAt(const GLPoint& where) const;
    // Delivers "use the held item on key" now, as a click on it would.
    void UseOn(const std::string& key);

    // As the first prima donna: see above.
    virtual int HandleEvent(GLEvent* pEvent);

private:
    struct Item {
        std::string key;
        GLCelRes icon;
        GLKitHandler* handler;
        GLCel* cel; // owned, while carried
    };
    struct Thing {
        GLTarget* target;
        std::string key;
        GLKitHandler* handler;
    };
    int FindItem(const std::string& key) const;
    const Thing* FindThing(const GLTarget* pTarget) const;
    const Thing* ThingAt(const GLPoint& where) const;
    GLKitHandler* HandlerOf(const std::string& key) const;
    void Deliver(const GLKitAction& action);
    void ShowLabel(const std::string& text);

    AbsGLPlane* mpPlane;
    GLPoint mFirst;
    int mStep;
    GLKitState* mpState;
    const GLKitNames* mpNames;
    GLKitText mLabel;
    GLPoint mLabelPos;
    std::vector<Item> mItems;
    std::vector<Thing> mThings;
    GLKitHandler* mpFallback = 0;
    std::string mHeld;
    GLCelRes mCursorBefore;
    int mInstalled = FALSE;
};

// The kit in a saved game. Three keys of the store hold it: "kit.names" and
// "kit.values", lists of texts with the pairs GLKitState::WriteValues gives
// in its order, and "kit.label", the text under the pointer (the label
// follows the pointer's last move, so it is kept rather than worked out
// again). A game declares them from its saves' Declare, keeps them from Keep
// and restores them as its saved room starts. The item in hand is not kept.
GLKIT_API void GLKitDeclareState(GLSaveStore* pStore);
GLKIT_API void GLKitKeepState(const GLKitState& state, const GLKitInventory* pInventory, GLSaveStore* pStore);
// Empties the state and reads the store's pairs into it; the inventory, when
// given, puts its item in hand back, shows the icons of what is carried and
// the kept label. FALSE when a pair is not the kit's or the lists' lengths
// differ; the other pairs are still read.
GLKIT_API int GLKitRestoreState(const GLSaveStore& store, GLKitState* pState, GLKitInventory* pInventory);

#endif
