// Starter.h - what the game library gives its rooms.
#ifndef STARTER_H
#define STARTER_H

class SoftKernelExtras;

// The soft kernel's extra services (text), for the rooms' narrators.
SoftKernelExtras* StarterExtras();

#endif
