// SoftWindow.h - the soft kernel in an SDL2 window: shows each frame scaled,
// turns the mouse and keyboard into kernel events, and mixes the samples and
// speech the kernel says are playing into SDL2's audio queue.
//
// Input mapping: a left button press / release is kEventPointerDown /
// kEventPointerUp (kModifierFirst with the right button or Shift), mouse
// motion is kEventPointerMove, a key is kEventKeyDown with
// its character code (kKeyEnter, kKeyEscape, kKeyBackspace, kKeyTab, the
// kKeyArrow... codes). Modifiers: Shift kModifierFirst, Ctrl kModifierControl,
// Alt kModifierAlt. Ctrl+Q sends kQuitKey with kQuitModifiers.
// Positions are in the 640x480 screen, whatever the window's scale.
#ifndef QUINDLE_SOFT_WINDOW_H
#define QUINDLE_SOFT_WINDOW_H

#include "SoftKernel.h"

#include <map>
#include <string>

class SoftWindow {
public:
    SoftWindow() = default;
    ~SoftWindow();
    SoftWindow(const SoftWindow&) = delete;
    SoftWindow& operator=(const SoftWindow&) = delete;

    // Opens a window of 640x480 times `scale`; a scale of 0 is the largest
    // whole scale that fits the display. False with `error` set when SDL2 has
    // no display. SDL's own log lines are silenced.
    bool Open(const std::string& title, int scale, std::string* error);
    // Starts the sound. False without an audio device: the game plays on
    // silent, and what the sound system would have printed is kept quiet.
    bool StartAudio(SoftKernel& kernel);
    // Shows the kernel's last frame, or `frame` (640x480 indices in the
    // kernel's palette) in its place; waits so that frames come 60 a second at most.
    void Present(SoftKernel& kernel, const std::uint8_t* frame = nullptr);
    // Hands waiting input to the kernel and feeds the sound. Function keys
    // F1..F12 go to the host's hook instead, never to the game.
    void Pump(SoftKernel& kernel);
    // The game waits for input without drawing (the kernel's idle hook):
    // gathers input as Pump does and gives a moment back to the system (in a
    // web page, to the browser).
    void Idle(SoftKernel& kernel);
    // The host's hook for function keys (n is 1..12).
    void SetFunctionKeyHook(void (*hook)(int n, void* data), void* data)
    {
        mKeyHook = hook;
        mKeyHookData = data;
    }
    // While held, Pump moves the pointer but hands no input to the game, and
    // the sound is silent (what was queued is dropped).
    void Hold(bool hold);
    // True once the window was closed.
    bool Closed() const { return mClosed; }
    // Ctrl+Q was pressed (it is also handed to the game as its quit key).
    bool QuitAsked() const { return mQuitAsked; }
    // A modal message box (the library's assertion notice, in a window).
    static void ShowMessage(const char* title, const char* text);

private:
    void Mix(SoftKernel& kernel);

    void* mWindow = nullptr;   // SDL_Window*
    void* mRenderer = nullptr; // SDL_Renderer*
    void* mTexture = nullptr;  // SDL_Texture*
    int mScale = 2;
    bool mClosed = false;
    bool mQuitAsked = false;
    unsigned mAudio = 0;       // SDL_AudioDeviceID, 0 when none
    int mAudioRate = 22050;
    std::map<long long, double> mCursors; // per source: the position mixed up to, in WAV frames
    std::uint64_t mLastPresent = 0;
    void (*mKeyHook)(int, void*) = nullptr;
    void* mKeyHookData = nullptr;
    bool mHeld = false;
};

#endif
