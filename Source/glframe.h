// glframe.h - marks the functions that run for every object in every frame.
// Not exported.
//
// The members those functions call (list access, the screen item's accessors
// and setters, the update, the stepper) are small, but they live in other
// files and carry their checks; the optimiser leaves them out of line, and a
// frame then spends much of its time in calls. Flattening the per-frame
// functions inlines every call the optimiser can see into them, checks
// included, so a check failing still reports the file and line it is written
// at. Only optimised builds do it; the checked build keeps the calls, which
// keeps it quick to build and easy to step through.
#ifndef QUINDLE_GLFRAME_H
#define QUINDLE_GLFRAME_H

#if defined(__OPTIMIZE__)
#define GL_FRAME_PATH __attribute__((flatten))
#else
#define GL_FRAME_PATH
#endif

#endif
