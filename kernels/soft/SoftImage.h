// SoftImage.h - the soft kernel's pictures: paletted bitmaps with a coverage
// mask, reading them from PNG files, and writing frames as PNG and animated GIF.
#ifndef QUINDLE_SOFT_IMAGE_H
#define QUINDLE_SOFT_IMAGE_H

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

// One colour of the 256-entry palette.
struct SoftColor {
    std::uint8_t r = 0, g = 0, b = 0;
};

// The 256 colours every frame is drawn with.
struct SoftPalette {
    SoftColor colors[256];
    // Palette index of the colour nearest to (r, g, b); exact matches win,
    // then the smallest squared distance, then the lowest index.
    std::uint8_t Nearest(int r, int g, int b) const;
    // The palette a game folder gets when it brings none: 0 black, 255 white,
    // 16..231 a 6x6x6 colour cube, 232..254 a grey ramp, 1..15 the classic
    // sixteen-colour set.
    static SoftPalette Default();
};

// A stretch of opaque pixels in one row of a bitmap: `length` pixels from `x`.
struct SoftRun {
    std::uint32_t x;
    std::uint32_t length;
};

// A rectangle of palette indices. `opaque` holds 1 where a pixel is drawn and 0
// where what lies below shows through; `originX`/`originY` is the point of the
// bitmap that lands on an item's position.
struct SoftBitmap {
    int width = 0;
    int height = 0;
    int originX = 0;
    int originY = 0;
    std::vector<std::uint8_t> pixels;
    std::vector<std::uint8_t> opaque;

    void Resize(int w, int h, std::uint8_t fill, std::uint8_t opaqueFill);
    std::uint8_t At(int x, int y) const { return pixels[static_cast<std::size_t>(y) * width + x]; }
    bool OpaqueAt(int x, int y) const { return opaque[static_cast<std::size_t>(y) * width + x] != 0; }

    // Whoever writes `opaque` of a bitmap that may have been drawn already
    // (text, a fill) calls this, so that the runs below are made again.
    void Changed() { mRunsValid = false; }
    // The opaque pixels as runs, row by row, left to right: row y's runs are
    // runs[rowStart[y]] up to (not including) runs[rowStart[y + 1]]; a wholly
    // transparent row has none. Made from `opaque` on first use after a change.
    // `firstRow` and `lastRow` are the first and last rows with an opaque
    // pixel (lastRow < firstRow when there is none).
    struct RunTable {
        const std::uint32_t* rowStart;
        const SoftRun* runs;
        int firstRow, lastRow;
    };
    RunTable Runs() const
    {
        if (!mRunsValid)
            MakeRuns();
        return RunTable{mRowStart.data(), mRuns.data(), mFirstRow, mLastRow};
    }
    // Every pixel is opaque (the bitmap is drawn by plain copies).
    bool WhollyOpaque() const
    {
        if (!mRunsValid)
            MakeRuns();
        return mWhollyOpaque;
    }

private:
    void MakeRuns() const;

    mutable bool mRunsValid = false;
    mutable bool mWhollyOpaque = false;
    mutable int mFirstRow = 0, mLastRow = -1;
    mutable std::vector<std::uint32_t> mRowStart; // height + 1 entries into mRuns
    mutable std::vector<SoftRun> mRuns;
};

// Largest picture the kernel reads; a PNG that claims more is refused before
// any memory is taken for it.
constexpr int kSoftMaxImageSide = 4096;

// Reads a PNG (any colour type) and maps it onto the palette: pixels whose
// alpha is below 128 become transparent. On failure returns false and sets
// `error` to "<file>: <what is wrong>".
bool SoftReadPng(const std::string& path, const SoftPalette& palette, SoftBitmap* out, std::string* error);
// The same from bytes in memory; `name` is used in the message.
bool SoftReadPngMemory(const void* data, std::size_t size, const std::string& name, const SoftPalette& palette,
                       SoftBitmap* out, std::string* error);
// The width and height a PNG file's header claims, read without decoding
// anything (24 bytes); false when the file cannot be read or does not start
// as a PNG, which SoftReadPng then says.
bool SoftPngSize(const std::string& path, std::uint32_t* width, std::uint32_t* height);

// Writes a frame of palette indices as an RGB PNG.
bool SoftWritePng(const std::string& path, const std::uint8_t* indices, int width, int height,
                  const SoftPalette& palette, std::string* error);
// Writes a bitmap as an RGBA PNG: transparent pixels get alpha 0, so reading
// it back gives the same bitmap (the origin is not kept: manifests hold it).
bool SoftWriteBitmapPng(const std::string& path, const SoftBitmap& bitmap, const SoftPalette& palette,
                        std::string* error);
// Writes an RGB image (3 bytes a pixel) as a PNG.
bool SoftWritePngRgb(const std::string& path, const std::uint8_t* rgb, int width, int height, std::string* error);

// An animated GIF written frame by frame. A frame equal to the one before only
// lengthens that one's delay, so a still scene costs nothing; any other frame
// stores only the rectangle that changed, drawn over the frame before.
class SoftGifWriter {
public:
    SoftGifWriter() = default;
    ~SoftGifWriter();
    SoftGifWriter(const SoftGifWriter&) = delete;
    SoftGifWriter& operator=(const SoftGifWriter&) = delete;

    bool Open(const std::string& path, int width, int height, std::string* error);
    // Adds a frame shown for `centiseconds` with this palette.
    bool AddFrame(const std::uint8_t* indices, const SoftPalette& palette, int centiseconds, std::string* error);
    // Writes the pending frame and closes the file.
    bool Close(std::string* error);
    bool IsOpen() const { return mFile != nullptr; }
    int FrameCount() const { return mFrames; }

private:
    bool Flush(std::string* error);
    bool Changed(const std::uint8_t* a, const std::uint8_t* b, int* left, int* top, int* right, int* bottom) const;

    void* mFile = nullptr; // GifFileType*
    int mWidth = 0;
    int mHeight = 0;
    int mFrames = 0;
    std::vector<std::uint8_t> mPending;
    SoftPalette mPendingPalette;
    int mPendingDelay = 0;
    bool mHavePending = false;
    std::vector<std::uint8_t> mShown; // what a viewer shows after the last frame stored
    SoftPalette mShownPalette;
    bool mHaveShown = false;
    std::string mPath;
};

#endif
