// SoftWindow_web.cpp - the window of SoftWindow.h in a web page: the frame is
// put on the page's canvas (id "canvas"), the canvas's mouse and the page's
// keys become kernel events, and the mixed sound goes to Web Audio, which a
// browser starts only after the first click or key. Every shown frame hands
// control back to the browser until the next sixtieth of a second is due, so
// the game's own loop runs unchanged.
#include "SoftWindow.h"

#include "SoftMixer.h"

#include <emscripten.h>
#include <emscripten/html5.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

// What the page's event handlers saw since the last Pump: a mouse event, a
// key, or a function key (type 0, `message` its number).
std::vector<SoftInputEvent> gPending;
std::vector<int> gFunctionKeys;

// A position on the canvas, in the 640x480 screen whatever size the page
// shows the canvas at.
void ScreenPosition(const EmscriptenMouseEvent* e, std::int32_t* x, std::int32_t* y)
{
    double w = 0, h = 0;
    emscripten_get_element_css_size("#canvas", &w, &h);
    const double sx = w > 0 ? SoftKernel::kWidth / w : 1.0;
    const double sy = h > 0 ? SoftKernel::kHeight / h : 1.0;
    *x = std::clamp(static_cast<std::int32_t>(e->targetX * sx), 0, SoftKernel::kWidth - 1);
    *y = std::clamp(static_cast<std::int32_t>(e->targetY * sy), 0, SoftKernel::kHeight - 1);
}

std::uint16_t Modifiers(bool shift, bool ctrl, bool alt)
{
    return static_cast<std::uint16_t>((shift ? kModifierFirst : 0) | (ctrl ? kModifierControl : 0) |
                                      (alt ? kModifierAlt : 0));
}

EM_BOOL OnMouse(int type, const EmscriptenMouseEvent* e, void*)
{
    SoftInputEvent in;
    ScreenPosition(e, &in.x, &in.y);
    if (type == EMSCRIPTEN_EVENT_MOUSEMOVE) {
        in.type = kEventPointerMove;
    } else {
        if (e->button != 0 && e->button != 2)
            return EM_FALSE;
        in.type = type == EMSCRIPTEN_EVENT_MOUSEDOWN ? kEventPointerDown : kEventPointerUp;
        in.modifiers = static_cast<std::uint16_t>(Modifiers(e->shiftKey, e->ctrlKey, e->altKey) |
                                                  (e->button == 2 ? kModifierFirst : 0));
    }
    gPending.push_back(in);
    return EM_TRUE;
}

std::uint32_t KeyCode(const char* key)
{
    static const struct {
        const char* name;
        std::uint32_t code;
    } kNamed[] = {{"Enter", kKeyEnter},         {"Escape", kKeyEscape},         {"Backspace", kKeyBackspace},
                  {"Tab", kKeyTab},             {"ArrowUp", kKeyArrowUp},       {"ArrowDown", kKeyArrowDown},
                  {"ArrowLeft", kKeyArrowLeft}, {"ArrowRight", kKeyArrowRight}};
    for (const auto& n : kNamed)
        if (std::strcmp(key, n.name) == 0)
            return n.code;
    // A printable character of one byte.
    const unsigned char c = static_cast<unsigned char>(key[0]);
    return key[1] == '\0' && c >= 32 && c < 127 ? c : 0;
}

EM_BOOL OnKey(int, const EmscriptenKeyboardEvent* e, void*)
{
    if (e->key[0] == 'F' && e->key[1] >= '1' && e->key[1] <= '9') {
        const int n = std::atoi(e->key + 1);
        if (n >= 1 && n <= 12) {
            if (!e->repeat)
                gFunctionKeys.push_back(n);
            return EM_TRUE;
        }
    }
    SoftInputEvent in;
    in.type = kEventKeyDown;
    in.modifiers = Modifiers(e->shiftKey, e->ctrlKey, e->altKey);
    if ((e->key[0] == 'q' || e->key[0] == 'Q') && e->key[1] == '\0' && e->ctrlKey) {
        in.message = kQuitKey;
        in.modifiers = kQuitModifiers;
    } else {
        in.message = KeyCode(e->key);
        if (in.message == 0)
            return EM_FALSE; // the browser's own keys go on working
    }
    in.x = -1; // at the pointer, filled in by Pump
    gPending.push_back(in);
    return EM_TRUE;
}

} // namespace

SoftWindow::~SoftWindow()
{
    emscripten_set_mousedown_callback("#canvas", nullptr, EM_FALSE, nullptr);
    emscripten_set_mouseup_callback("#canvas", nullptr, EM_FALSE, nullptr);
    emscripten_set_mousemove_callback("#canvas", nullptr, EM_FALSE, nullptr);
    emscripten_set_keydown_callback(EMSCRIPTEN_EVENT_TARGET_WINDOW, nullptr, EM_FALSE, nullptr);
}

bool SoftWindow::Open(const std::string& title, int, std::string* error)
{
    if (emscripten_set_canvas_element_size("#canvas", SoftKernel::kWidth, SoftKernel::kHeight) !=
        EMSCRIPTEN_RESULT_SUCCESS) {
        *error = "no window: the page has no canvas with the id 'canvas'";
        return false;
    }
    EM_ASM({ document.title = UTF8ToString($0); }, title.c_str());
    emscripten_set_mousedown_callback("#canvas", nullptr, EM_FALSE, &OnMouse);
    emscripten_set_mouseup_callback("#canvas", nullptr, EM_FALSE, &OnMouse);
    emscripten_set_mousemove_callback("#canvas", nullptr, EM_FALSE, &OnMouse);
    emscripten_set_keydown_callback(EMSCRIPTEN_EVENT_TARGET_WINDOW, nullptr, EM_FALSE, &OnKey);
    mWindow = this;
    mLastPresent = static_cast<std::uint64_t>(emscripten_get_now());
    return true;
}

bool SoftWindow::StartAudio(SoftKernel&)
{
    // The audio context is made at once but runs only from the first gesture.
    const int ok = EM_ASM_INT({
        var AC = window.AudioContext || window.webkitAudioContext;
        if (!AC)
            return 0;
        var audio = ({context : new AC(), end : 0, nodes : []});
        var wake = function() { audio.context.resume(); };
        window.addEventListener('mousedown', wake);
        window.addEventListener('keydown', wake);
        Module.quindleAudio = audio;
        return audio.context.sampleRate | 0;
    });
    if (!ok)
        return false;
    mAudioRate = ok;
    mAudio = 1;
    return true;
}

void SoftWindow::ShowMessage(const char* title, const char* text)
{
    EM_ASM({ window.alert(UTF8ToString($0) + "\n\n" + UTF8ToString($1)); }, title, text);
}

void SoftWindow::Present(SoftKernel& kernel, const std::uint8_t* frame)
{
    static std::vector<std::uint32_t> pixels(static_cast<std::size_t>(SoftKernel::kWidth) * SoftKernel::kHeight);
    std::uint32_t lut[256];
    const SoftPalette& pal = kernel.Palette();
    // The canvas takes bytes R, G, B, A: little-endian words A B G R.
    for (int i = 0; i < 256; i++)
        lut[i] = 0xFF000000u | (pal.colors[i].b << 16) | (pal.colors[i].g << 8) | pal.colors[i].r;
    if (!frame)
        frame = kernel.Frame();
    for (std::size_t i = 0; i < pixels.size(); i++)
        pixels[i] = lut[frame[i]];
    EM_ASM(
        {
            var canvas = document.getElementById('canvas');
            if (!Module.quindleImage) {
                Module.quindleContext = canvas.getContext('2d');
                Module.quindleImage = Module.quindleContext.createImageData($1, $2);
            }
            Module.quindleImage.data.set(HEAPU8.subarray($0, $0 + $1 * $2 * 4));
            Module.quindleContext.putImageData(Module.quindleImage, 0, 0);
        },
        pixels.data(), SoftKernel::kWidth, SoftKernel::kHeight);
    // Back to the browser until the next sixtieth of a second: it draws the
    // canvas, runs the page's handlers and keeps the sound going meanwhile.
    const double now = emscripten_get_now();
    const double due = static_cast<double>(mLastPresent) + 1000.0 / 60.0;
    emscripten_sleep(now < due ? static_cast<unsigned>(due - now) : 0);
    mLastPresent = static_cast<std::uint64_t>(std::max(due, emscripten_get_now() - 1000.0 / 60.0));
}

void SoftWindow::Pump(SoftKernel& kernel)
{
    std::vector<int> keys;
    keys.swap(gFunctionKeys);
    for (int n : keys)
        if (mKeyHook)
            mKeyHook(n, mKeyHookData);
    std::vector<SoftInputEvent> pending;
    pending.swap(gPending);
    for (SoftInputEvent in : pending) {
        if (in.type == kEventPointerMove) {
            ZOR_Point at(in.x, in.y);
            kernel.SetCursorPos(&at);
        } else if (in.type == kEventKeyDown) {
            const ZOR_Point at = kernel.CursorPos();
            in.x = at.x;
            in.y = at.y;
        }
        if (!mHeld)
            kernel.PushInput(in);
    }
    if (!mHeld)
        Mix(kernel);
}

void SoftWindow::Idle(SoftKernel& kernel)
{
    emscripten_sleep(4);
    Pump(kernel);
}

void SoftWindow::Hold(bool hold)
{
    mHeld = hold;
    if (hold && mAudio)
        EM_ASM({
            var audio = Module.quindleAudio;
            audio.nodes.forEach(function(n) { n.stop(); });
            audio.nodes = [];
            audio.end = 0;
        });
}

// Keeps about a tenth of a second of sound scheduled ahead of the audio clock.
void SoftWindow::Mix(SoftKernel& kernel)
{
    if (!mAudio)
        return;
    const int frames = EM_ASM_INT(
        {
            var audio = Module.quindleAudio;
            if (audio.context.state != 'running')
                return 0;
            var ahead = Math.max(0, audio.end - audio.context.currentTime);
            return Math.max(0, Math.floor((0.1 - ahead) * $0));
        },
        mAudioRate);
    if (frames <= 0)
        return;
    std::vector<std::int16_t> out;
    SoftMixSources(kernel.AudibleSources(), mAudioRate, frames, &mCursors, &out);
    EM_ASM(
        {
            var audio = Module.quindleAudio;
            var buffer = audio.context.createBuffer(2, $1, $2);
            var left = buffer.getChannelData(0);
            var right = buffer.getChannelData(1);
            for (var i = 0; i < $1; i++) {
                left[i] = HEAP16[($0 >> 1) + 2 * i] / 32768;
                right[i] = HEAP16[($0 >> 1) + 2 * i + 1] / 32768;
            }
            var node = audio.context.createBufferSource();
            node.buffer = buffer;
            node.connect(audio.context.destination);
            var at = Math.max(audio.end, audio.context.currentTime);
            node.start(at);
            audio.end = at + $1 / $2;
            audio.nodes.push(node);
            node.onended = function() { audio.nodes.splice(audio.nodes.indexOf(node), 1); };
        },
        out.data(), frames, mAudioRate);
}
