// Starter.h - what the game library gives its rooms.
#ifndef STARTER_H
#define STARTER_H

class GLSaveGame;
class SoftKernelExtras;

// The soft kernel's extra services (text), for the rooms' narrators.
SoftKernelExtras* StarterExtras();

// The game's saves: a room names what a save puts back, and asks whether it
// is being restored (then it skips its opening).
GLSaveGame* StarterSaves();

// The room tells the game whether its opening line has been said in full,
// which a save keeps.
void StarterGreeted(int greeted);

#endif
