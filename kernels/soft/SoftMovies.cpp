// SoftMovies.cpp - the soft kernel's VMD and AVI movies (see SoftMovies.h).
#include "SoftMovies.h"

#include "SoftCompositor.h"

#include <algorithm>

// The frame the clock has brought a playing movie to; a movie that does not
// loop stays at its last frame, and `ended` says it got past it.
int SoftMovies::FrameAtClock(const Avi& a, bool* ended) const
{
    long long f = a.startFrame + static_cast<long long>(mHost.Now() - a.start) / a.movie->ticksPerFrame;
    *ended = false;
    if (f > a.last) {
        if (a.loop) {
            f = a.first + (f - a.first) % (a.last - a.first + 1);
        } else {
            f = a.last;
            *ended = true;
        }
    }
    return static_cast<int>(f);
}

void SoftMovies::CatchUp(Avi& a)
{
    if (!a.movie || !(a.status & kOpen) || !(a.status & kPlaying) || (a.status & kPaused))
        return;
    bool ended = false;
    a.frame = FrameAtClock(a, &ended);
    if (ended)
        a.status = (a.status & ~(kPlaying | kPaused)) | kEnded;
}

void SoftMovies::Advance()
{
    for (auto& entry : mAvis)
        CatchUp(*entry.second);
}

// Movies are drawn over every plane: the VMD while it plays, AVIs while open
// and showing a frame.
void SoftMovies::Draw(SoftCompositor& compositor, const SoftPalette& palette) const
{
    const int kWidth = SoftCompositor::kWidth, kHeight = SoftCompositor::kHeight;
    const ZOR_Rect screen(0, 0, kWidth - 1, kHeight - 1);
    for (const auto& entry : mAvis) {
        const Avi& a = *entry.second;
        if (!a.movie || !(a.status & kOpen) || !(a.status & (kPlaying | kPaused | kEnded)))
            continue;
        const SoftBitmap& bmp = a.movie->frames[static_cast<std::size_t>(a.frame)];
        const int sx = a.width > 0 ? a.width * kScaleFull / bmp.width : kScaleFull;
        const int sy = a.height > 0 ? a.height * kScaleFull / bmp.height : kScaleFull;
        compositor.DrawBitmap(bmp, a.x, a.y, sx > 0 ? sx : 1, sy > 0 ? sy : 1, nullptr, screen, false);
    }
    if (!mVmd || !mVmd->showing || !mVmd->movie)
        return;
    const Vmd& v = *mVmd;
    const SoftBitmap& bmp = v.movie->frames[static_cast<std::size_t>(v.frame)];
    if (v.flags & 0x10) {
        // The placement colour fills the screen around the movie.
        const std::uint8_t c = palette.Nearest(v.red, v.green, v.blue);
        std::fill_n(compositor.Frame(), kWidth * kHeight, c);
    }
    compositor.DrawBitmap(bmp, v.x, v.y, kScaleFull, kScaleFull, nullptr, screen, false);
    if (v.blobsOn) {
        for (const auto& blob : v.blobs) {
            const int size = std::max(1, blob.size);
            for (int by = blob.top; by <= blob.bottom; by += size) {
                for (int bx = blob.left; bx <= blob.right; bx += size) {
                    if (bx < 0 || by < 0 || bx >= bmp.width || by >= bmp.height)
                        continue;
                    const std::uint8_t c = bmp.At(bx, by);
                    for (int y = by; y < by + size && y <= blob.bottom; y++)
                        for (int x = bx; x < bx + size && x <= blob.right; x++) {
                            const int fx = v.x + x, fy = v.y + y;
                            if (fx >= 0 && fy >= 0 && fx < kWidth && fy < kHeight && x < bmp.width && y < bmp.height)
                                compositor.Frame()[static_cast<std::size_t>(fy) * kWidth + fx] = c;
                        }
                }
            }
        }
    }
    const std::uint8_t black = palette.Nearest(0, 0, 0);
    for (const auto& r : v.blackouts)
        for (int y = std::max(0, v.y + r.top); y <= std::min(kHeight - 1, v.y + r.bottom); y++)
            for (int x = std::max(0, v.x + r.left); x <= std::min(kWidth - 1, v.x + r.right); x++)
                compositor.Frame()[static_cast<std::size_t>(y) * kWidth + x] = black;
}

// ----- VMD -----

unsigned SoftMovies::OpenVmd(const char* pFileName, int /*iCacheSize*/, int /*iOpenArgument*/)
{
    std::string error;
    const std::string name = pFileName ? pFileName : "";
    const SoftMovie* movie = mResources.Movie(name, &error);
    if (!movie) {
        mHost.Report(error);
        return 1;
    }
    mVmd = std::make_unique<Vmd>();
    mVmd->fileName = name;
    mVmd->movie = movie;
    mVmd->status = kOpen;
    return 0;
}

void SoftMovies::SetVmdPlacement(int x, int y, int iFlags, int iRed, int iGreen, int iBlue)
{
    if (!mVmd)
        return;
    mVmd->x = std::max(-4096, std::min(4096, x));
    mVmd->y = std::max(-4096, std::min(4096, y));
    mVmd->flags = iFlags;
    mVmd->red = std::max(0, std::min(255, iRed));
    mVmd->green = std::max(0, std::min(255, iGreen));
    mVmd->blue = std::max(0, std::min(255, iBlue));
}

int SoftMovies::BeginVmd()
{
    if (!mVmd || !mVmd->movie)
        return 0;
    Vmd& v = *mVmd;
    if (v.status & kEnded)
        v.frame = 0;
    v.status = (v.status | kPlaying) & ~(kPaused | kEnded);
    v.showing = true;
    return v.movie->ticksPerFrame;
}

bool SoftMovies::VmdHasFrame() const
{
    return mVmd && mVmd->frame < static_cast<int>(mVmd->movie->frames.size());
}

void SoftMovies::NextVmdFrame()
{
    mVmd->frame++;
}

void SoftMovies::EndVmd()
{
    Vmd& v = *mVmd;
    const int frames = static_cast<int>(v.movie->frames.size());
    if (v.frame >= frames) {
        v.frame = frames - 1;
        v.status |= kEnded;
    }
    v.status &= ~kPlaying;
    v.showing = false;
}

unsigned SoftMovies::StopVmd()
{
    if (!mVmd)
        return 0;
    mVmd->status &= ~(kPlaying | kPaused);
    mVmd->showing = false;
    mVmd->frame = 0;
    return 0;
}

bool SoftMovies::CanResumeVmd() const
{
    // Play goes on from the frame where it stopped, not past the end.
    return mVmd && (mVmd->status & kOpen) && !(mVmd->status & kEnded);
}

unsigned SoftMovies::CloseVmd()
{
    mVmd.reset();
    return 0;
}

unsigned SoftMovies::GetVmdLength()
{
    return mVmd && mVmd->movie ? static_cast<unsigned>(mVmd->movie->frames.size()) : 0;
}

unsigned SoftMovies::GetVmdStatus()
{
    return mVmd ? mVmd->status : 0;
}

unsigned SoftMovies::GetVmdFramesSkipped()
{
    // Every frame is composed in turn: none is ever skipped.
    return 0;
}

bool SoftMovies::VmdPalette(const SoftPalette& current, SoftPalette* palette) const
{
    if (!mVmd || !mVmd->movie || !mVmd->movie->hasPalette)
        return false;
    *palette = current;
    for (int i = std::max(0, mVmd->restrictLow); i <= std::min(255, mVmd->restrictHigh); i++)
        palette->colors[i] = mVmd->movie->palette.colors[i];
    return true;
}

void SoftMovies::RestrictVmdPalette(int iValue1, int iValue2)
{
    if (!mVmd)
        return;
    mVmd->restrictLow = std::max(0, std::min(iValue1, iValue2));
    mVmd->restrictHigh = std::min(255, std::max(iValue1, iValue2));
}

void SoftMovies::ShowVmdCursor(int fShow)
{
    if (mVmd)
        mVmd->showCursor = fShow != 0;
}

void SoftMovies::InitVmdBlobs()
{
    if (!mVmd)
        return;
    mVmd->blobs.clear();
    mVmd->blobsOn = true;
}

void SoftMovies::StopVmdBlobs()
{
    if (mVmd)
        mVmd->blobsOn = false;
}

int SoftMovies::AddVmdBlob(int iValue1, int iValue2, int iValue3, int iValue4, int iValue5)
{
    if (!mVmd)
        return -1;
    // Blobs lie within the movie frame (no frame is larger than the screen).
    auto in = [](int v) { return std::max(0, std::min(v, 639)); };
    Vmd::Blob b{mVmd->nextBlob++, in(std::min(iValue1, iValue3)), in(std::min(iValue2, iValue4)),
                in(std::max(iValue1, iValue3)), in(std::max(iValue2, iValue4)), std::max(1, std::min(iValue5, 64))};
    mVmd->blobs.push_back(b);
    mVmd->blobsOn = true;
    return b.id;
}

void SoftMovies::DeleteVmdBlob(int iBlob)
{
    if (!mVmd)
        return;
    for (std::size_t i = 0; i < mVmd->blobs.size(); i++) {
        if (mVmd->blobs[i].id == iBlob) {
            mVmd->blobs.erase(mVmd->blobs.begin() + static_cast<std::ptrdiff_t>(i));
            return;
        }
    }
}

void SoftMovies::BlackOutVmd(int iValue1, int iValue2, int iValue3, int iValue4)
{
    auto in = [](int v) { return std::max(-1, std::min(v, 640)); };
    if (mVmd)
        mVmd->blackouts.push_back(ZOR_Rect(in(std::min(iValue1, iValue3)), in(std::min(iValue2, iValue4)),
                                           in(std::max(iValue1, iValue3)), in(std::max(iValue2, iValue4))));
}

unsigned SoftMovies::GetVmdWidth()
{
    return mVmd && mVmd->movie ? static_cast<unsigned>(mVmd->movie->width) : 0;
}

unsigned SoftMovies::GetVmdHeight()
{
    return mVmd && mVmd->movie ? static_cast<unsigned>(mVmd->movie->height) : 0;
}

// ----- AVI -----

unsigned SoftMovies::OpenAvi(int iMovie, const char* pFileName)
{
    std::string error;
    const SoftMovie* movie = mResources.Movie(pFileName ? pFileName : "", &error);
    if (!movie) {
        mHost.Report(error);
        return 1;
    }
    auto a = std::make_unique<Avi>();
    a->number = iMovie;
    a->movie = movie;
    a->status = kOpen;
    a->last = static_cast<int>(movie->frames.size()) - 1;
    mAvis[iMovie] = std::move(a);
    return 0;
}

unsigned SoftMovies::CloseAvi(int iMovie)
{
    return mAvis.erase(iMovie) ? 0 : 1;
}

void SoftMovies::SetAviRect(int iMovie, int x, int y, int iWidth, int iHeight)
{
    auto found = mAvis.find(iMovie);
    if (found == mAvis.end())
        return;
    found->second->x = std::max(-4096, std::min(4096, x));
    found->second->y = std::max(-4096, std::min(4096, y));
    found->second->width = std::max(0, std::min(iWidth, 4096));
    found->second->height = std::max(0, std::min(iHeight, 4096));
}

void SoftMovies::SetAviPos(int iMovie, int x, int y)
{
    auto found = mAvis.find(iMovie);
    if (found == mAvis.end())
        return;
    found->second->x = std::max(-4096, std::min(4096, x));
    found->second->y = std::max(-4096, std::min(4096, y));
}

unsigned SoftMovies::PlayAvi(int iMovie, int iValue1, int iValue2, int iPlayType, int /*iValue4*/)
{
    auto found = mAvis.find(iMovie);
    if (found == mAvis.end())
        return 1;
    Avi& a = *found->second;
    const int count = static_cast<int>(a.movie->frames.size());
    a.first = std::max(0, std::min(iValue1, count - 1));
    a.last = iValue2 > 0 ? std::max(a.first, std::min(iValue2, count - 1)) : count - 1;
    a.loop = iPlayType == 1;
    a.frame = a.first;
    a.startFrame = a.first;
    a.start = mHost.Now();
    a.status = kOpen | kPlaying;
    mHost.Trace("movie %d.AVI starts", iMovie);
    return 0;
}

unsigned SoftMovies::StopAvi(int iMovie)
{
    auto found = mAvis.find(iMovie);
    if (found == mAvis.end())
        return 1;
    found->second->status = kOpen;
    return 0;
}

bool SoftMovies::IsAviPlaying(int iMovie) const
{
    auto found = mAvis.find(iMovie);
    return found != mAvis.end() && (found->second->status & kPlaying);
}

unsigned SoftMovies::PauseAvi(int iMovie)
{
    if (!IsAviPlaying(iMovie))
        return 1;
    // It stops at the frame the clock has reached, drawn or not.
    Avi& a = *mAvis[iMovie];
    CatchUp(a);
    if (!(a.status & kPlaying))
        return 1;
    a.status |= kPaused;
    return 0;
}

// Puts an open movie at a frame (clamped to its frames) from now on; null
// when it is not open.
SoftMovies::Avi* SoftMovies::MoveAvi(int iMovie, int iFrame)
{
    auto found = mAvis.find(iMovie);
    if (found == mAvis.end())
        return nullptr;
    Avi& a = *found->second;
    a.frame = std::max(0, std::min(iFrame, static_cast<int>(a.movie->frames.size()) - 1));
    a.startFrame = a.frame;
    a.start = mHost.Now();
    return &a;
}

unsigned SoftMovies::CueAvi(int iMovie, int iFrame)
{
    Avi* a = MoveAvi(iMovie, iFrame);
    if (!a)
        return 1;
    a->status = kOpen | kPaused; // shown, waiting to play on
    return 0;
}

unsigned SoftMovies::SeekAvi(int iMovie, int iFrame)
{
    Avi* a = MoveAvi(iMovie, iFrame);
    if (!a)
        return 1;
    a->status &= ~kEnded;
    return 0;
}

unsigned SoftMovies::ResumeAvi(int iMovie)
{
    auto found = mAvis.find(iMovie);
    if (found == mAvis.end() || !(found->second->status & kPaused))
        return 1;
    Avi& a = *found->second;
    a.startFrame = a.frame;
    a.start = mHost.Now();
    a.status = (a.status & ~kPaused) | kPlaying;
    return 0;
}

const SoftPalette* SoftMovies::AviPalette(int iMovie) const
{
    auto found = mAvis.find(iMovie);
    return found != mAvis.end() && found->second->movie->hasPalette ? &found->second->movie->palette : nullptr;
}

unsigned SoftMovies::GetAviLength(int iMovie)
{
    auto found = mAvis.find(iMovie);
    return found == mAvis.end() ? 0 : static_cast<unsigned>(found->second->movie->frames.size());
}

unsigned SoftMovies::GetAviFrameNum(int iMovie)
{
    auto found = mAvis.find(iMovie);
    if (found == mAvis.end())
        return 0;
    if ((found->second->status & kPlaying) && !(found->second->status & kPaused)) {
        // The frame number follows the clock, whether or not a frame was composed.
        bool ended = false;
        return static_cast<unsigned>(FrameAtClock(*found->second, &ended));
    }
    return static_cast<unsigned>(found->second->frame);
}

unsigned SoftMovies::GetAviStatus(int iMovie)
{
    auto found = mAvis.find(iMovie);
    if (found == mAvis.end())
        return 0;
    Avi& a = *found->second;
    if ((a.status & kPlaying) && !(a.status & kPaused) && !a.loop) {
        bool ended = false;
        FrameAtClock(a, &ended);
        if (ended) {
            a.frame = a.last;
            a.status = (a.status & ~kPlaying) | kEnded;
        }
    }
    return a.status;
}

unsigned SoftMovies::SetAviEvent(int iEventFlags)
{
    const unsigned previous = mAviEventFlags;
    mAviEventFlags = static_cast<unsigned>(iEventFlags);
    return previous;
}

void SoftMovies::InputArrived()
{
    // With event flag 2, a press or a key ends every playing AVI movie.
    if (mAviEventFlags & 2)
        for (auto& avi : mAvis)
            avi.second->status &= ~(kPlaying | kPaused);
}

bool SoftMovies::HidesCursor() const
{
    return mVmd && mVmd->showing && !mVmd->showCursor;
}
