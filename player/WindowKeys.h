// WindowKeys.h - the player's own keys in a window, for a developer looking
// into a running game:
//
//   F1   the overlay on or off (Overlay.h)
//   F2   pause: the game's clock and its sound stop, its input is held back;
//        the window still shows the frame and follows the pointer
//   F3   while paused, one more frame of the game
//   F5   saves the game to its quick slot, F9 restores it (between two
//        frames: the player asks TakeSaveKey after each)
//   F12  writes the frame shown (with the overlay when it is on) as a PNG
//        into the output directory and prints its path
//
// Function keys never reach the game.
#ifndef QUINDLE_PLAYER_WINDOW_KEYS_H
#define QUINDLE_PLAYER_WINDOW_KEYS_H

#include "Overlay.h"
#include "SoftWindow.h"

#include <cstdint>
#include <string>

class PlayerWindowKeys {
public:
    // Snapshots go into `shotDir` (made when the first is written).
    PlayerWindowKeys(SoftKernel& kernel, SoftWindow& window, std::string shotDir, bool overlay);
    ~PlayerWindowKeys();
    PlayerWindowKeys(const PlayerWindowKeys&) = delete;
    PlayerWindowKeys& operator=(const PlayerWindowKeys&) = delete;

    // The frame hook's work in a window: shows the frame, hands input on and,
    // while paused, keeps the window going until the game goes on or steps.
    void OnFrame();
    // What a key does (n is 1..12); the window calls it from Pump.
    void Key(int n);

    // F5 or F9 pressed since the last call (5 or 9), else 0.
    int TakeSaveKey()
    {
        const int key = mSaveKey;
        mSaveKey = 0;
        return key;
    }

    bool OverlayOn() const { return mOverlayOn; }
    bool Paused() const { return mPaused; }
    // The path of the last snapshot written, empty when none.
    const std::string& LastShot() const { return mLastShot; }

private:
    void Show();
    const std::uint8_t* DrawOverlay();
    void Shoot();

    SoftKernel& mKernel;
    SoftWindow& mWindow;
    PlayerOverlay mOverlay;
    std::string mShotDir;
    bool mOverlayOn;
    bool mPaused = false;
    bool mStep = false;
    int mShots = 0;
    int mSaveKey = 0;
    std::string mLastShot;
    double mFrameMillis = 0;
    std::uint64_t mLastFrame = 0; // steady clock, microseconds
};

#endif
