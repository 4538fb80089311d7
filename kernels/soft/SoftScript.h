// SoftScript.h - the headless kernel's input: a text file of timed events.
//
// One event a line; '#' starts a comment; blank lines are skipped:
//
//   <tick> press   <x> <y> [mods <m>]   pointer pressed   (kEventPointerDown)
//   <tick> release <x> <y> [mods <m>]   pointer released  (kEventPointerUp)
//   <tick> key     <code>  [mods <m>]   key pressed       (kEventKeyDown)
//   <tick> pointer <x> <y> [mods <m>]   pointer moved     (kEventPointerMove)
//   <tick> quit                         kQuitKey with kQuitModifiers
//
// <tick> is the clock tick (60 a second) from which the event is handed out;
// numbers are decimal or 0x-prefixed hexadecimal; a key code may also be one
// of the names enter (13), escape (27), space (32), tab (9). Positions are
// screen coordinates 0..639, 0..479. Lines are in tick order (a tick smaller
// than the one above is a fault); lines of the same tick are handed out in
// file order.
#ifndef QUINDLE_SOFT_SCRIPT_H
#define QUINDLE_SOFT_SCRIPT_H

#include "kernel.h"

#include <cstdint>
#include <string>
#include <vector>

struct SoftInputEvent {
    std::uint32_t tick = 0;
    std::uint16_t type = 0;
    std::uint32_t message = 0;
    std::uint16_t modifiers = 0;
    std::int32_t x = 0;
    std::int32_t y = 0;
};

// Parses a script's text. On a fault returns false with `error` set to
// "<name>:<line>: <what is wrong>"; `events` then holds nothing.
bool SoftParseScript(const std::string& text, const std::string& name, std::vector<SoftInputEvent>* events,
                     std::string* error);
// Reads and parses a script file.
bool SoftReadScript(const std::string& path, std::vector<SoftInputEvent>* events, std::string* error);

#endif
