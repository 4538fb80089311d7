// Starter.h - what the game library gives its rooms.
#ifndef STARTER_H
#define STARTER_H

class SoftKernelExtras;

// The soft kernel's extra services (text), for the rooms' narrators.
SoftKernelExtras* StarterExtras();
// The game folder, and the language the player asked for ("" for the default).
const char* StarterFolder();
const char* StarterLanguage();

#endif
