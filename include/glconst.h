// glconst.h - the values that game code, kernels and the library share.
//
// Every number that means something on both sides of the kernel interface has
// its name here: event types and modifier bits, the keys the library tests,
// the full-size scale, the priority sentinels, "none" for views and colours,
// plane types, screen-item source kinds and sound resource types. kernel.h
// includes this header, so a kernel that includes only kernel.h has them too.
// Standard headers only.
#ifndef QUINDLE_GLCONST_H
#define QUINDLE_GLCONST_H

#include <cstdint>

// Event types of the kernel event record. Each is one bit, so a set of types
// is a mask; the library always asks GetEvent for every type.
const std::uint16_t kEventNull = 0;           // GetEvent had nothing to give
const std::uint16_t kEventPointerDown = 1;    // a button pressed; carries a position
const std::uint16_t kEventPointerUp = 2;      // a button released; carries a position
const std::uint16_t kEventKeyDown = 8;        // a key, its code in `message`
const std::uint16_t kEventPointerMove = 0x800; // the pointer moved; carries a position
const std::uint32_t kEventMaskAll = 0x7FFF;

// Modifier bits of the event record. The library reads only the first (a
// narrator cut short) and the whole field against the quit modifiers; the
// others are what the soft kernel reports.
const std::uint16_t kModifierFirst = 0x0001; // the soft kernel: Shift, or the right button
const std::uint16_t kModifierControl = 0x0004;
const std::uint16_t kModifierAlt = 0x0008;

// The key that ends GLGame::Play: this message with exactly these modifiers,
// whatever the event type.
const std::uint32_t kQuitKey = 0x4F00;
const std::uint16_t kQuitModifiers = kModifierControl;

// Key codes in `message` that the library and the kernels name.
const std::uint32_t kKeyBackspace = 8;
const std::uint32_t kKeyTab = 9;
const std::uint32_t kKeyEnter = 13;
const std::uint32_t kKeyEscape = 27;
const std::uint32_t kKeySpace = 32;
const std::uint32_t kKeyArrowUp = 0x4800;
const std::uint32_t kKeyArrowDown = 0x5000;
const std::uint32_t kKeyArrowLeft = 0x4B00;
const std::uint32_t kKeyArrowRight = 0x4D00;

// Scaling: 128 is 100 percent. The full-size ScaleInfo (kFullSizeScale, in
// kernel.h beside the record) is 128, 128, 100, 0.
const std::int32_t kScaleFull = 128;
const std::int32_t kScaleMaxDefault = 100;
const std::int32_t kScaleModeDefault = 0;

// Priorities: higher is nearer the viewer. kPriorityOnTop asks for a place
// above everything there is when the plane, item or polygon is made (for a
// screen item: the kernel's own choice); -1 is the lowest real priority.
const int kPriorityOnTop = -9999;
const int kPriorityLowest = -1;

// "None": a view, loop or cel of -1 is no view; a colour of -1 is no colour,
// where an operation allows one; sample -1 names every sample.
const int kNoView = -1;
const int kNoColor = -1;
const int kAllSamples = -1;

// Kernel plane types (KernelPlaneRecord::type).
const int kPlaneColored = -1;     // filled with its colour
const int kPlaneTransparent = -2; // only its items are drawn
const int kPlaneOpaque = -3;      // filled with its colour, hides what is below
const int kPlanePicture = -4;     // draws its picture

// What a screen item shows (KernelScreenItemSource::kind).
const std::int32_t kSourceView = 0;      // a view, loop and cel
const std::int32_t kSourceMemBitmap = 2; // a memory bitmap named by its 16-bit id

// Sound resource types. The library asks for the audio type first and falls
// back to the effects type.
const int kResourceSoundEffect = 12;
const int kResourceAudio = 13;

// Plane ids the kernel hands out start here.
const std::int32_t kFirstPlaneId = 20000;

// GetRobotSignal's answer once the robot has ended; 0 means nothing happened.
const std::uint32_t kRobotEnded = 0xFFFFFFFFu;

#endif
