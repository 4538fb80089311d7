// SoftWindow.cpp - see SoftWindow.h.
#include "SoftWindow.h"

#include "SoftMixer.h"

#include <SDL.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

SoftWindow::~SoftWindow()
{
    if (mAudio)
        SDL_CloseAudioDevice(mAudio);
    if (mTexture)
        SDL_DestroyTexture(static_cast<SDL_Texture*>(mTexture));
    if (mRenderer)
        SDL_DestroyRenderer(static_cast<SDL_Renderer*>(mRenderer));
    if (mWindow)
        SDL_DestroyWindow(static_cast<SDL_Window*>(mWindow));
    if (mWindow || mAudio)
        SDL_Quit();
}

namespace {

// SDL's own log lines are not the player's to print: what matters is said by
// the window's callers, once.
void NoLog(void*, int, SDL_LogPriority, const char*) {}

// The largest whole scale at which the 640x480 frame fits the display's usable
// area (1 when even that does not fit, or the display says nothing).
int FittingScale()
{
    SDL_Rect usable;
    if (SDL_GetDisplayUsableBounds(0, &usable) != 0)
        return 1;
    return std::max(1, std::min(usable.w / SoftKernel::kWidth, usable.h / SoftKernel::kHeight));
}

} // namespace

bool SoftWindow::Open(const std::string& title, int scale, std::string* error)
{
    SDL_LogSetOutputFunction(&NoLog, nullptr);
    if (SDL_Init(SDL_INIT_VIDEO) != 0) {
        *error = std::string("no window: ") + SDL_GetError();
        return false;
    }
    if (scale <= 0)
        scale = FittingScale();
    mScale = scale;
    SDL_Window* window = SDL_CreateWindow(title.c_str(), SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED,
                                          SoftKernel::kWidth * scale, SoftKernel::kHeight * scale, 0);
    if (!window) {
        *error = std::string("no window: ") + SDL_GetError();
        return false;
    }
    mWindow = window;
    SDL_Renderer* renderer = SDL_CreateRenderer(window, -1, 0);
    if (!renderer) {
        *error = std::string("no renderer: ") + SDL_GetError();
        return false;
    }
    mRenderer = renderer;
    SDL_RenderSetLogicalSize(renderer, SoftKernel::kWidth, SoftKernel::kHeight);
    mTexture = SDL_CreateTexture(renderer, SDL_PIXELFORMAT_ARGB8888, SDL_TEXTUREACCESS_STREAMING, SoftKernel::kWidth,
                                 SoftKernel::kHeight);
    if (!mTexture) {
        *error = std::string("no texture: ") + SDL_GetError();
        return false;
    }
    SDL_ShowCursor(SDL_DISABLE); // the kernel draws the game's cursor
    mLastPresent = SDL_GetTicks64();
    return true;
}

bool SoftWindow::StartAudio(SoftKernel& kernel)
{
    // The sound system's libraries write their own complaints to the error
    // stream when there is no device: they are kept out while it starts.
    std::fflush(stderr);
    const int savedError = ::dup(2);
    const int devNull = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (savedError >= 0 && devNull >= 0)
        ::dup2(devNull, 2);
    SDL_AudioSpec want{}, have{};
    want.freq = kernel.GetSampleRate();
    want.format = AUDIO_S16SYS;
    want.channels = 2;
    want.samples = 1024;
    if (SDL_InitSubSystem(SDL_INIT_AUDIO) == 0)
        mAudio = SDL_OpenAudioDevice(nullptr, 0, &want, &have, SDL_AUDIO_ALLOW_FREQUENCY_CHANGE);
    if (savedError >= 0 && devNull >= 0)
        ::dup2(savedError, 2);
    if (savedError >= 0)
        ::close(savedError);
    if (devNull >= 0)
        ::close(devNull);
    if (!mAudio)
        return false;
    mAudioRate = have.freq;
    SDL_PauseAudioDevice(mAudio, 0);
    return true;
}

void SoftWindow::ShowMessage(const char* title, const char* text)
{
    SDL_ShowSimpleMessageBox(SDL_MESSAGEBOX_ERROR, title, text, nullptr);
}

void SoftWindow::Present(SoftKernel& kernel, const std::uint8_t* frame)
{
    if (!mTexture)
        return;
    void* pixels = nullptr;
    int pitch = 0;
    if (SDL_LockTexture(static_cast<SDL_Texture*>(mTexture), nullptr, &pixels, &pitch) == 0) {
        std::uint32_t lut[256];
        const SoftPalette& pal = kernel.Palette();
        for (int i = 0; i < 256; i++)
            lut[i] = 0xFF000000u | (pal.colors[i].r << 16) | (pal.colors[i].g << 8) | pal.colors[i].b;
        if (!frame)
            frame = kernel.Frame();
        for (int y = 0; y < SoftKernel::kHeight; y++) {
            auto* row = reinterpret_cast<std::uint32_t*>(static_cast<std::uint8_t*>(pixels) + y * pitch);
            for (int x = 0; x < SoftKernel::kWidth; x++)
                row[x] = lut[frame[y * SoftKernel::kWidth + x]];
        }
        SDL_UnlockTexture(static_cast<SDL_Texture*>(mTexture));
    }
    SDL_Renderer* renderer = static_cast<SDL_Renderer*>(mRenderer);
    SDL_RenderClear(renderer);
    SDL_RenderCopy(renderer, static_cast<SDL_Texture*>(mTexture), nullptr, nullptr);
    SDL_RenderPresent(renderer);
    // At most 60 frames a second: the game's clock is real, so running faster
    // would only burn the processor.
    const std::uint64_t now = SDL_GetTicks64();
    if (now - mLastPresent < 16)
        SDL_Delay(static_cast<Uint32>(16 - (now - mLastPresent)));
    mLastPresent = SDL_GetTicks64();
}

namespace {

std::uint16_t Modifiers(Uint16 mod)
{
    std::uint16_t m = 0;
    if (mod & KMOD_SHIFT)
        m |= kModifierFirst;
    if (mod & KMOD_CTRL)
        m |= kModifierControl;
    if (mod & KMOD_ALT)
        m |= kModifierAlt;
    return m;
}

std::uint32_t KeyCode(SDL_Keycode key)
{
    switch (key) {
    case SDLK_RETURN:
    case SDLK_KP_ENTER:
        return kKeyEnter;
    case SDLK_ESCAPE:
        return kKeyEscape;
    case SDLK_BACKSPACE:
        return kKeyBackspace;
    case SDLK_TAB:
        return kKeyTab;
    case SDLK_UP:
        return kKeyArrowUp;
    case SDLK_DOWN:
        return kKeyArrowDown;
    case SDLK_LEFT:
        return kKeyArrowLeft;
    case SDLK_RIGHT:
        return kKeyArrowRight;
    default:
        return key >= 32 && key < 127 ? static_cast<std::uint32_t>(key) : 0;
    }
}

} // namespace

void SoftWindow::Pump(SoftKernel& kernel)
{
    SDL_Event e;
    while (SDL_PollEvent(&e)) {
        SoftInputEvent in;
        switch (e.type) {
        case SDL_QUIT:
            mClosed = true;
            break;
        case SDL_MOUSEBUTTONDOWN:
        case SDL_MOUSEBUTTONUP:
            if (mHeld)
                break;
            in.type = e.type == SDL_MOUSEBUTTONDOWN ? kEventPointerDown : kEventPointerUp;
            in.x = std::clamp(e.button.x, 0, SoftKernel::kWidth - 1);
            in.y = std::clamp(e.button.y, 0, SoftKernel::kHeight - 1);
            in.modifiers = static_cast<std::uint16_t>(Modifiers(static_cast<Uint16>(SDL_GetModState())) |
                                                      (e.button.button == SDL_BUTTON_RIGHT ? kModifierFirst : 0));
            kernel.PushInput(in);
            break;
        case SDL_MOUSEMOTION: {
            in.type = kEventPointerMove;
            in.x = std::clamp(e.motion.x, 0, SoftKernel::kWidth - 1);
            in.y = std::clamp(e.motion.y, 0, SoftKernel::kHeight - 1);
            ZOR_Point at(in.x, in.y);
            kernel.SetCursorPos(&at);
            if (!mHeld)
                kernel.PushInput(in);
            break;
        }
        case SDL_KEYDOWN: {
            const SDL_Keycode sym = e.key.keysym.sym;
            if (sym >= SDLK_F1 && sym <= SDLK_F12) {
                if (mKeyHook && !e.key.repeat)
                    mKeyHook(static_cast<int>(sym - SDLK_F1) + 1, mKeyHookData);
                break;
            }
            if (mHeld)
                break;
            in.type = kEventKeyDown;
            in.modifiers = Modifiers(e.key.keysym.mod);
            if (e.key.keysym.sym == SDLK_q && (e.key.keysym.mod & KMOD_CTRL)) {
                in.message = kQuitKey;
                in.modifiers = kQuitModifiers;
                mQuitAsked = true;
            } else {
                in.message = KeyCode(e.key.keysym.sym);
                if (in.message == 0)
                    break;
            }
            const ZOR_Point at = kernel.CursorPos();
            in.x = at.x;
            in.y = at.y;
            kernel.PushInput(in);
            break;
        }
        default:
            break;
        }
    }
    if (!mHeld)
        Mix(kernel);
}

void SoftWindow::Idle(SoftKernel& kernel)
{
    Pump(kernel);
    SDL_Delay(1);
}

void SoftWindow::Hold(bool hold)
{
    mHeld = hold;
    if (hold && mAudio)
        SDL_ClearQueuedAudio(mAudio);
}

// Keeps about a tenth of a second of sound queued.
void SoftWindow::Mix(SoftKernel& kernel)
{
    if (!mAudio)
        return;
    const Uint32 target = static_cast<Uint32>(mAudioRate / 10) * 4;
    const Uint32 queued = SDL_GetQueuedAudioSize(mAudio);
    if (queued >= target)
        return;
    const int frames = static_cast<int>((target - queued) / 4);
    std::vector<Sint16> out;
    SoftMixSources(kernel.AudibleSources(), mAudioRate, frames, &mCursors, &out);
    SDL_QueueAudio(mAudio, out.data(), static_cast<Uint32>(out.size() * sizeof(Sint16)));
}
