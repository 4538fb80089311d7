// SoftScript.cpp - see SoftScript.h.
#include "SoftScript.h"

#include "SoftText.h"

namespace {

bool KeyCode(const std::string& word, long long* code)
{
    if (word == "enter") *code = kKeyEnter;
    else if (word == "escape") *code = kKeyEscape;
    else if (word == "space") *code = kKeySpace;
    else if (word == "tab") *code = kKeyTab;
    else return SoftParseInt(word, 0, 0xFFFF, code);
    return true;
}

} // namespace

bool SoftParseScript(const std::string& text, const std::string& name, std::vector<SoftInputEvent>* events,
                     std::string* error)
{
    events->clear();
    std::vector<SoftInputEvent> parsed;
    const std::vector<std::string> lines = SoftLines(text);
    std::vector<std::string> w;
    for (std::size_t li = 0; li < lines.size(); li++) {
        const std::string where = name + ":" + std::to_string(li + 1) + ": ";
        std::string fault;
        if (!SoftSplitWords(lines[li], &w, &fault)) {
            *error = where + fault;
            return false;
        }
        if (w.empty())
            continue;
        SoftInputEvent e;
        long long v = 0;
        if (!SoftParseInt(w[0], 0, 0xFFFFFFFFll, &v)) {
            *error = where + "'" + w[0] + "' is not a tick (a whole number 0..4294967295)";
            return false;
        }
        e.tick = static_cast<std::uint32_t>(v);
        if (!parsed.empty() && e.tick < parsed.back().tick) {
            *error = where + "tick " + std::to_string(e.tick) + " comes before tick " +
                     std::to_string(parsed.back().tick) + " of the line above (events are listed in tick order)";
            return false;
        }
        if (w.size() < 2) {
            *error = where + "an event kind (press, release, key, pointer, quit) must follow the tick";
            return false;
        }
        const std::string& kind = w[1];
        std::size_t next = 2;
        if (kind == "press" || kind == "release" || kind == "pointer") {
            e.type = kind == "press" ? kEventPointerDown : kind == "release" ? kEventPointerUp : kEventPointerMove;
            long long x = 0, y = 0;
            if (w.size() < 4 || !SoftParseInt(w[2], 0, 639, &x) || !SoftParseInt(w[3], 0, 479, &y)) {
                *error = where + kind + " needs a position x y inside the 640x480 screen";
                return false;
            }
            e.x = static_cast<std::int32_t>(x);
            e.y = static_cast<std::int32_t>(y);
            next = 4;
        } else if (kind == "key") {
            e.type = kEventKeyDown;
            if (w.size() < 3 || !KeyCode(w[2], &v)) {
                *error = where + "key needs a key code 0..0xFFFF or one of enter, escape, space, tab";
                return false;
            }
            e.message = static_cast<std::uint32_t>(v);
            next = 3;
        } else if (kind == "quit") {
            e.type = kEventKeyDown;
            e.message = kQuitKey;
            e.modifiers = kQuitModifiers;
            if (w.size() > 2) {
                *error = where + "quit takes nothing after it";
                return false;
            }
        } else {
            *error = where + "unknown event kind '" + kind + "' (press, release, key, pointer, quit)";
            return false;
        }
        if (next < w.size()) {
            if (w[next] != "mods" || next + 2 != w.size() || !SoftParseInt(w[next + 1], 0, 0xFFFF, &v)) {
                *error = where + "only 'mods <0..0xFFFF>' may follow the event";
                return false;
            }
            e.modifiers = static_cast<std::uint16_t>(v);
        }
        parsed.push_back(e);
    }
    *events = std::move(parsed);
    return true;
}

bool SoftReadScript(const std::string& path, std::vector<SoftInputEvent>* events, std::string* error)
{
    std::string text;
    if (!SoftReadFile(path, &text, error))
        return false;
    return SoftParseScript(text, path, events, error);
}
