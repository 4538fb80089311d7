// The player's overlay: headless frames of a test game compared with golden
// images, frames that differ from a plain run only by what the overlay draws,
// and pause, step, toggle and snapshot through the window's keys.
#include "SoftTestSupport.h"

#include "SoftText.h"

#ifdef QUINDLE_HAVE_WINDOW
#include "WindowKeys.h"

#include <SDL.h>
#endif

#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <set>
#include <thread>

using namespace soft_test;

namespace {

// Headless: the overlay frames are the golden ones, and apart from the
// overlay's own colours every pixel is the plain run's, so the game played
// the same with the overlay on.
TEST(PlayerOverlay, HeadlessFramesMatchTheirGoldenImagesAndDifferFromAPlainRunOnlyByTheOverlay)
{
    TempGame game;
    game.Write("game.txt", std::string("library ") + OVERLAY_GAME + "\n");
    const int colors[4] = {12, 9, 14, 10};
    for (int v = 0; v < 4; v++) {
        game.Write("views/" + std::to_string(100 + v) + ".txt", "cel 0 0 c" + std::to_string(v) + ".png 20 29\n");
        game.WriteSolidPng("views/c" + std::to_string(v) + ".png", 40, 30, colors[v]);
    }
    std::filesystem::copy_file(ROOM_5, game.Path("5.so"));
    game.Write("walk/5.txt", "clearance 2\nboundary 20 420 620 420 620 470 20 470\nhole 300 430 340 430 340 460\n");
    // The pointer over the two cels' overlap (only the lower takes events),
    // later over the polygon; then the quit key.
    game.Write("script.txt", "0 pointer 200 200\n40 pointer 400 300\n90 quit\n");
    const auto read = [](const std::string& path) {
        SoftBitmap b;
        std::string error;
        EXPECT_TRUE(SoftReadPng(path, SoftPalette::Default(), &b, &error)) << error;
        return b;
    };
    const std::string common = std::string(PLAYER) + " " + game.Dir() + " --quiet --no-gif --frame 20,60 --script " +
                               game.Path("script.txt");
    const Result plain = Shell(common + " --out " + game.Path("plain") + " --record " + game.Path("plain.tape"));
    const Result over = Shell(common + " --out " + game.Path("over") + " --overlay --record " + game.Path("over.tape"));
    ASSERT_EQ(plain.status, 0) << plain.output;
    ASSERT_EQ(over.status, 0) << over.output;
    EXPECT_EQ(plain.output, over.output);
    // Nothing the overlay reads passes the game's kernel: each tape replays with the overlay or without it.
    for (const char* replay : {"plain.tape --overlay", "over.tape"}) {
        const Result r = Shell(std::string(PLAYER) + " " + game.Dir() + " --quiet --no-gif --out " + game.Path("re") +
                               " --replay " + game.Path(replay));
        EXPECT_EQ(r.status, 0) << replay << "\n" << r.output;
    }

    const SoftPalette pal = SoftPalette::Default();
    std::set<int> overlayColors;
    for (int rgb : {0x000000, 0xFFFFFF, 0xFFFF00, 0x00FFFF, 0xFF00FF, 0x00FF00, 0xFF8C00, 0xFF0000})
        overlayColors.insert(pal.Nearest(rgb >> 16, rgb >> 8 & 0xFF, rgb & 0xFF));
    for (const char* name : {"frame-000020.png", "frame-000060.png", "final.png"}) {
        SCOPED_TRACE(name);
        const SoftBitmap a = read(game.Path("plain/") + name), b = read(game.Path("over/") + name);
        ASSERT_EQ(a.pixels.size(), b.pixels.size());
        int drawn = 0, foreign = 0;
        for (std::size_t i = 0; i < a.pixels.size(); i++) {
            drawn += a.pixels[i] != b.pixels[i];
            foreign += a.pixels[i] != b.pixels[i] && !overlayColors.count(b.pixels[i]);
        }
        EXPECT_GT(drawn, 2000);
        EXPECT_EQ(foreign, 0);
    }
    for (const char* tick : {"20", "60"}) {
        const std::string golden = std::string(OVERLAY_GOLDEN) + "/overlay-" + tick + ".png";
        const std::string made = game.Path("over/frame-0000") + tick + ".png";
        if (!std::filesystem::exists(golden)) {
            // A new look: the frame is left here to be looked at and committed.
            std::filesystem::copy_file(made, std::string("overlay-") + tick + ".png",
                                       std::filesystem::copy_options::overwrite_existing);
            ADD_FAILURE() << "no " << golden << "; this run's frame is overlay-" << tick << ".png";
            continue;
        }
        const SoftBitmap actual = read(made);
        const SoftBitmap expected = read(golden);
        ASSERT_EQ(actual.pixels.size(), expected.pixels.size());
        EXPECT_TRUE(FramesMatch(actual.pixels.data(), expected.pixels.data(), pal, std::string("overlay-") + tick));
    }
}

#ifdef QUINDLE_HAVE_WINDOW
void Press(std::initializer_list<SDL_Keycode> keys)
{
    for (SDL_Keycode key : keys) {
        SDL_Event e{};
        e.type = SDL_KEYDOWN;
        e.key.keysym.sym = key;
        EXPECT_EQ(SDL_PushEvent(&e), 1) << SDL_GetError();
    }
}

// In a window with SDL's display-less driver. F2 stops the clock where it is
// and holds the game's input back; F3 lets exactly one frame through; F12
// writes the frame shown, with the overlay once F1 turned it on; F2 again and
// the clock runs on from where it stopped.
TEST(PlayerOverlay, WindowKeysPauseStepToggleAndSnapshot)
{
    ::setenv("SDL_VIDEODRIVER", "dummy", 1);
    TempGame dir;
    SoftKernel k;
    SoftWindow window;
    std::string error;
    ASSERT_TRUE(window.Open("overlay", 1, &error)) << error;
    PlayerWindowKeys keys(k, window, dir.Path("shots"), false);
    k.SetFrameHook([](SoftKernel&, void* keys) { static_cast<PlayerWindowKeys*>(keys)->OnFrame(); }, &keys);
    k.UseRealClock(true);

    Press({SDLK_F2});
    SDL_Event click{};
    click.type = SDL_MOUSEBUTTONDOWN;
    SDL_PushEvent(&click);
    Press({SDLK_F3});
    k.UpdateScreen(1); // paused in this frame; the step lets it end
    ASSERT_TRUE(keys.Paused());
    const std::uint32_t stopped = k.GetTicks();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_EQ(k.GetTicks(), stopped);
    Press({SDLK_F3});
    k.UpdateScreen(1);
    EXPECT_EQ(k.GetTicks(), stopped + 1);
    KernelEventRecord event{};
    k.GetEvent(kEventMaskAll, &event);
    EXPECT_EQ(event.type, kEventNull); // the click made while paused never reached the game

    Press({SDLK_F12, SDLK_F1, SDLK_F12, SDLK_F2});
    k.UpdateScreen(1);
    EXPECT_FALSE(keys.Paused());
    EXPECT_TRUE(keys.OverlayOn());
    std::string plain, over;
    ASSERT_TRUE(SoftReadFile(dir.Path("shots/shot-") + std::to_string(1000000 + stopped + 1).substr(1) + "-1.png",
                             &plain));
    ASSERT_TRUE(SoftReadFile(keys.LastShot(), &over));
    EXPECT_NE(plain, over);
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_GE(k.GetTicks(), stopped + 4);
}
#endif

} // namespace
