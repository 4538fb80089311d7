// Kit.h - the adventure kit as the demo uses it, shared by both rooms.
//
// The game keeps what outlives a room: the story's state (values, where the
// bell is, which options were said), the names in the player's language, the
// inventory on a plane along the bottom of the screen with the label that
// names what is under the pointer, and a plane for the options of a
// conversation. The kit draws its text with the soft kernel's bitmap text.
#ifndef DEMO_KIT_H
#define DEMO_KIT_H

#include "DemoApi.h"

#include "glkit.h"
#include "glkitdlg.h"
#include "glkitinv.h"

#include "SoftExtras.h"

class GLTransparentPlane;

class DEMO_API DemoKit {
public:
    // The folder's text in `language` ("" for the default).
    DemoKit(SoftKernelExtras* pExtras, const char* folder, const char* language);
    // Builds the planes and the inventory; the game must be installed.
    void Start();
    ~DemoKit();

    GLKitState& State() { return mState; }
    GLKitNames& Names() { return mNames; }
    GLKitInventory* Inventory() { return mpInventory; }
    const GLKitFolder& Folder() const { return mFolder; }
    // A dialogue that says its lines through pMessager; the caller deletes it.
    GLKitDialog* NewDialog(GLMessager* pMessager);

private:
    GLKitTextAdapter<SoftKernelExtras> mText;
    GLKitFolder mFolder;
    GLKitState mState;
    GLKitNames mNames;
    GLKitStyle mStyle;
    GLTransparentPlane* mpBar;     // the inventory and the label
    GLTransparentPlane* mpChoices; // the options of a conversation
    GLKitInventory* mpInventory;
};

#endif
