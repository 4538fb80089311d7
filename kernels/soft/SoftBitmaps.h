// SoftBitmaps.h - the soft kernel's memory bitmaps and the text drawn into
// them: the extra services a game gets beside the kernel interface.
//
// A memory bitmap is named by a 16-bit id (never 0) and is at most the
// screen's size; a screen item of kind kSourceMemBitmap shows it. Pixels of
// its skip colour are transparent. Text is drawn with FreeType in one font:
// the file the host named, or else what the system's font configuration
// gives for DejaVu Sans, or else Debian's path for it; with none, text draws
// nothing and the fault says what was looked for. Lines break at '\n' and
// between words that would pass the width.
#ifndef QUINDLE_SOFT_BITMAPS_H
#define QUINDLE_SOFT_BITMAPS_H

#include "SoftHost.h"
#include "SoftImage.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>

class SoftBitmaps {
public:
    SoftBitmaps(SoftServiceHost& host, int maxWidth, int maxHeight)
        : mHost(host), mMaxWidth(maxWidth), mMaxHeight(maxHeight)
    {
    }
    SoftBitmaps(const SoftBitmaps&) = delete;
    SoftBitmaps& operator=(const SoftBitmaps&) = delete;

    // Non-zero exactly when the id names a live bitmap (DLLCheckValid).
    int IsLive(int iMemId) const;
    // The bitmap of that id, or null. Its address holds until it is freed;
    // Epoch() changes whenever a bitmap is made or freed.
    const SoftBitmap* Find(std::uint16_t memId) const;
    std::uint64_t Epoch() const { return mEpoch; }

    // The extra services under their names (SoftExtras.h).
    std::uint16_t CreateMemBitmap(int width, int height, int fillColor, int skipColor);
    void FreeMemBitmap(std::uint16_t memId);
    void FillMemBitmap(std::uint16_t memId, int left, int top, int right, int bottom, int color);
    int DrawText(std::uint16_t memId, int x, int y, const char* text, int color, int pixelSize, int maxWidth);
    int TextWidth(const char* text, int pixelSize);
    // The TrueType file to draw text with; empty: look one up on first use.
    void SetFontPath(const std::string& path);

private:
    struct MemBitmap {
        SoftBitmap bitmap;
        int skip = -1;
    };
    // FreeType's handles, opened on first use.
    struct Font {
        void* library = nullptr; // FT_Library
        void* face = nullptr;    // FT_Face
        bool failed = false;
        // Advances already asked of FreeType, by pixel size and character:
        // measuring a line asks once per character it has not met.
        std::unordered_map<std::uint32_t, int> advances;
        ~Font();
        // The advance of the character at the face's current size, `size`.
        int Advance(std::uint32_t c, int size);
        // The width of the text at that size, summed until it passes `limit`
        // (then some width above the limit).
        int Width(const char* text, std::size_t length, int size, int limit);
    };

    SoftServiceHost& mHost;
    const int mMaxWidth;
    const int mMaxHeight;
    std::map<std::uint16_t, MemBitmap> mMemBitmaps;
    std::uint16_t mNextMemId = 1;
    std::uint64_t mEpoch = 1;
    std::unique_ptr<Font> mFont;
    std::string mFontPath;
};

#endif
