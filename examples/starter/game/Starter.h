// Starter.h - what the game library gives its rooms.
#ifndef STARTER_H
#define STARTER_H

class GLKitInventory;
struct GLKitState;
class GLSaveGame;
class SoftKernelExtras;

// The soft kernel's extra services (text), for the rooms' narrators.
SoftKernelExtras* StarterExtras();
// The game folder, and the language the player asked for ("" for the default).
const char* StarterFolder();
const char* StarterLanguage();

// The kit's state of the story, kept by the game so that a save holds it.
GLKitState* StarterKitState();
// The room hands over its inventory (null as it goes), whose label a save keeps.
void StarterSetInventory(GLKitInventory* pInventory);

// The game's saves: a room names what a save puts back, and asks whether it
// is being restored (then it skips its opening).
GLSaveGame* StarterSaves();

// The room tells the game whether its opening line has been said in full,
// which a save keeps.
void StarterGreeted(int greeted);

#endif
