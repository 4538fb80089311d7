// SoftImage.cpp - see SoftImage.h.
#include "SoftImage.h"

#include "SoftText.h"

#include <gif_lib.h>
#include <png.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

std::uint8_t SoftPalette::Nearest(int r, int g, int b) const
{
    int best = 0;
    long bestDistance = -1;
    for (int i = 0; i < 256; i++) {
        const long dr = colors[i].r - r, dg = colors[i].g - g, db = colors[i].b - b;
        const long distance = dr * dr + dg * dg + db * db;
        if (bestDistance < 0 || distance < bestDistance) {
            best = i;
            bestDistance = distance;
            if (distance == 0)
                break;
        }
    }
    return static_cast<std::uint8_t>(best);
}

SoftPalette SoftPalette::Default()
{
    SoftPalette p;
    static const std::uint8_t classic[16][3] = {
        {0, 0, 0},       {0, 0, 170},     {0, 170, 0},    {0, 170, 170},  {170, 0, 0},    {170, 0, 170},
        {170, 85, 0},    {170, 170, 170}, {85, 85, 85},   {85, 85, 255},  {85, 255, 85},  {85, 255, 255},
        {255, 85, 85},   {255, 85, 255},  {255, 255, 85}, {255, 255, 255}};
    for (int i = 0; i < 16; i++)
        p.colors[i] = SoftColor{classic[i][0], classic[i][1], classic[i][2]};
    for (int i = 0; i < 216; i++) {
        const int r = i / 36, g = (i / 6) % 6, b = i % 6;
        p.colors[16 + i] = SoftColor{static_cast<std::uint8_t>(r * 51), static_cast<std::uint8_t>(g * 51),
                                     static_cast<std::uint8_t>(b * 51)};
    }
    for (int i = 232; i < 255; i++) {
        const auto v = static_cast<std::uint8_t>((i - 231) * 10 + 8);
        p.colors[i] = SoftColor{v, v, v};
    }
    p.colors[255] = SoftColor{255, 255, 255};
    return p;
}

void SoftBitmap::Resize(int w, int h, std::uint8_t fill, std::uint8_t opaqueFill)
{
    width = w;
    height = h;
    pixels.assign(static_cast<std::size_t>(w) * h, fill);
    opaque.assign(static_cast<std::size_t>(w) * h, opaqueFill);
    Changed();
}

void SoftBitmap::MakeRuns() const
{
    mRowStart.assign(1, 0);
    mRuns.clear();
    mWhollyOpaque = true;
    mFirstRow = height;
    mLastRow = -1;
    const int w = width > 0 ? width : 0;
    for (int y = 0; y < height; y++) {
        const std::uint8_t* row = opaque.data() + static_cast<std::size_t>(y) * w;
        int x = 0;
        while (x < w) {
            while (x < w && !row[x])
                x++;
            const int start = x;
            while (x < w && row[x])
                x++;
            if (x > start)
                mRuns.push_back(SoftRun{static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(x - start)});
        }
        const std::uint32_t rowRuns = static_cast<std::uint32_t>(mRuns.size()) - mRowStart.back();
        if (rowRuns != 1 || mRuns.back().length != static_cast<std::uint32_t>(w))
            mWhollyOpaque = false;
        if (rowRuns) {
            mFirstRow = std::min(mFirstRow, y);
            mLastRow = y;
        }
        mRowStart.push_back(static_cast<std::uint32_t>(mRuns.size()));
    }
    mRunsValid = true;
}

bool SoftReadPngMemory(const void* data, std::size_t size, const std::string& name, const SoftPalette& palette,
                       SoftBitmap* out, std::string* error)
{
    png_image image;
    std::memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_memory(&image, data, size)) {
        *error = name + ": not a readable PNG (" + image.message + ")";
        return false;
    }
    if (image.width == 0 || image.height == 0 || image.width > static_cast<unsigned>(kSoftMaxImageSide) ||
        image.height > static_cast<unsigned>(kSoftMaxImageSide)) {
        *error = name + ": PNG of " + std::to_string(image.width) + "x" + std::to_string(image.height) +
                 " pixels is outside 1.." + std::to_string(kSoftMaxImageSide) + " on a side";
        png_image_free(&image);
        return false;
    }
    image.format = PNG_FORMAT_RGBA;
    std::vector<std::uint8_t> rgba(PNG_IMAGE_SIZE(image));
    if (!png_image_finish_read(&image, nullptr, rgba.data(), 0, nullptr)) {
        *error = name + ": damaged PNG data (" + image.message + ")";
        png_image_free(&image);
        return false;
    }
    const int w = static_cast<int>(image.width), h = static_cast<int>(image.height);
    out->Resize(w, h, 0, 0);
    // Game art uses few colours; remember the last lookups so that mapping a
    // picture does not search the palette for every pixel.
    std::uint32_t lastKey = 0xFFFFFFFFu;
    std::uint8_t lastIndex = 0;
    for (std::size_t i = 0; i < static_cast<std::size_t>(w) * h; i++) {
        const std::uint8_t* px = &rgba[i * 4];
        if (px[3] < 128)
            continue;
        const std::uint32_t key = (px[0] << 16) | (px[1] << 8) | px[2];
        if (key != lastKey) {
            lastKey = key;
            lastIndex = palette.Nearest(px[0], px[1], px[2]);
        }
        out->pixels[i] = lastIndex;
        out->opaque[i] = 1;
    }
    out->Changed();
    return true;
}

bool SoftReadPng(const std::string& path, const SoftPalette& palette, SoftBitmap* out, std::string* error)
{
    std::string bytes;
    if (!SoftReadFile(path, &bytes, error, nullptr, kFolderPicture))
        return false;
    return SoftReadPngMemory(bytes.data(), bytes.size(), path, palette, out, error);
}

bool SoftPngSize(const std::string& path, std::uint32_t* width, std::uint32_t* height)
{
    // The signature, then the header chunk's length and type, then its
    // width and height, big-endian.
    FolderFileError refusal;
    std::uint64_t size = 0;
    const int fd = FolderFileOpen(path.c_str(), kFolderPicture, &size, &refusal);
    if (fd < 0)
        return false;
    unsigned char head[24];
    ssize_t got;
    do
        got = ::read(fd, head, sizeof head);
    while (got < 0 && errno == EINTR);
    ::close(fd);
    if (got != static_cast<ssize_t>(sizeof head) || std::memcmp(head, "\x89PNG\r\n\x1a\n", 8) != 0 ||
        std::memcmp(head + 12, "IHDR", 4) != 0)
        return false;
    auto word = [&](int at) {
        return static_cast<std::uint32_t>(head[at]) << 24 | head[at + 1] << 16 | head[at + 2] << 8 | head[at + 3];
    };
    *width = word(16);
    *height = word(20);
    return true;
}

namespace {

// Writes rows of pixels of one of libpng's simple formats; a colour-mapped
// format takes its colour map of `entries` RGB triples.
bool WritePng(const std::string& path, const void* pixels, int width, int height, png_uint_32 format,
              png_uint_32 flags, const std::uint8_t* colormap, int entries, std::string* error)
{
    png_image image;
    std::memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.format = format;
    image.flags = flags;
    image.colormap_entries = static_cast<png_uint_32>(entries);
    if (!png_image_write_to_file(&image, path.c_str(), 0, pixels, 0, colormap)) {
        *error = path + ": cannot write PNG (" + image.message + ")";
        return false;
    }
    return true;
}

} // namespace

bool SoftWritePngRgb(const std::string& path, const std::uint8_t* rgb, int width, int height, std::string* error)
{
    return WritePng(path, rgb, width, height, PNG_FORMAT_RGB, 0, nullptr, 0, error);
}

bool SoftWriteBitmapPng(const std::string& path, const SoftBitmap& bitmap, const SoftPalette& palette,
                        std::string* error)
{
    const std::size_t count = static_cast<std::size_t>(bitmap.width) * bitmap.height;
    std::vector<std::uint8_t> rgba(count * 4, 0);
    for (std::size_t i = 0; i < count; i++) {
        if (!bitmap.opaque[i])
            continue;
        const SoftColor& c = palette.colors[bitmap.pixels[i]];
        rgba[i * 4] = c.r;
        rgba[i * 4 + 1] = c.g;
        rgba[i * 4 + 2] = c.b;
        rgba[i * 4 + 3] = 255;
    }
    return WritePng(path, rgba.data(), bitmap.width, bitmap.height, PNG_FORMAT_RGBA, 0, nullptr, 0, error);
}

bool SoftWritePng(const std::string& path, const std::uint8_t* indices, int width, int height,
                  const SoftPalette& palette, std::string* error)
{
    // The frame's own indices with the palette beside them: nothing is
    // expanded, and the file is compressed for speed.
    std::uint8_t colormap[256 * 3];
    for (int i = 0; i < 256; i++) {
        colormap[i * 3] = palette.colors[i].r;
        colormap[i * 3 + 1] = palette.colors[i].g;
        colormap[i * 3 + 2] = palette.colors[i].b;
    }
    return WritePng(path, indices, width, height, PNG_FORMAT_RGB_COLORMAP, PNG_IMAGE_FLAG_FAST, colormap, 256,
                    error);
}

// ----- animated GIF -----

SoftGifWriter::~SoftGifWriter()
{
    std::string ignored;
    if (mFile)
        Close(&ignored);
}

bool SoftGifWriter::Open(const std::string& path, int width, int height, std::string* error)
{
    int code = 0;
    // Opened here rather than by giflib, which would make the file private to its owner.
#ifdef O_BINARY
    // Windows would change the bytes of line ends in a text-mode file.
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_BINARY, 0666);
#else
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
#endif
    if (fd < 0) {
        *error = path + ": cannot create GIF";
        return false;
    }
    GifFileType* gif = EGifOpenFileHandle(fd, &code);
    if (!gif) {
        ::close(fd);
        *error = path + ": cannot create GIF (" + GifErrorString(code) + ")";
        return false;
    }
    EGifSetGifVersion(gif, true);
    if (EGifPutScreenDesc(gif, width, height, 8, 0, nullptr) == GIF_ERROR) {
        *error = path + ": cannot write GIF header";
        EGifCloseFile(gif, &code);
        return false;
    }
    // Loop forever.
    static const unsigned char netscape[] = "NETSCAPE2.0";
    static const unsigned char loop[] = {1, 0, 0};
    EGifPutExtensionLeader(gif, APPLICATION_EXT_FUNC_CODE);
    EGifPutExtensionBlock(gif, 11, netscape);
    EGifPutExtensionBlock(gif, 3, loop);
    EGifPutExtensionTrailer(gif);
    mFile = gif;
    mWidth = width;
    mHeight = height;
    mFrames = 0;
    mHavePending = false;
    mHaveShown = false;
    mPath = path;
    return true;
}

bool SoftGifWriter::AddFrame(const std::uint8_t* indices, const SoftPalette& palette, int centiseconds,
                             std::string* error)
{
    if (!mFile) {
        *error = "GIF writer: no file open";
        return false;
    }
    const std::size_t size = static_cast<std::size_t>(mWidth) * mHeight;
    if (mHavePending && std::memcmp(mPending.data(), indices, size) == 0 &&
        std::memcmp(mPendingPalette.colors, palette.colors, sizeof palette.colors) == 0) {
        mPendingDelay += centiseconds;
        return true;
    }
    if (mHavePending && !Flush(error))
        return false;
    mPending.assign(indices, indices + size);
    mPendingPalette = palette;
    mPendingDelay = centiseconds;
    mHavePending = true;
    return true;
}

// The rectangle where two frames of the same size differ; false when they do not.
bool SoftGifWriter::Changed(const std::uint8_t* a, const std::uint8_t* b, int* left, int* top, int* right,
                            int* bottom) const
{
    const std::size_t w = static_cast<std::size_t>(mWidth);
    *left = mWidth;
    *right = -1;
    *top = -1;
    for (int y = 0; y < mHeight; y++) {
        const std::uint8_t* p = a + y * w;
        const std::uint8_t* q = b + y * w;
        if (std::memcmp(p, q, w) == 0)
            continue;
        if (*top < 0)
            *top = y;
        *bottom = y;
        int x = 0;
        while (x < *left && p[x] == q[x])
            x++;
        *left = std::min(*left, x);
        x = mWidth - 1;
        while (x > *right && p[x] == q[x])
            x--;
        *right = std::max(*right, x);
    }
    return *top >= 0;
}

bool SoftGifWriter::Flush(std::string* error)
{
    auto* gif = static_cast<GifFileType*>(mFile);
    // Only what changed since the frame shown before is stored; it stays in
    // place under the next one. The first frame, and one with a new palette,
    // is stored whole.
    int left = 0, top = 0, right = mWidth - 1, bottom = mHeight - 1;
    const bool whole = !mHaveShown || std::memcmp(mShownPalette.colors, mPendingPalette.colors,
                                                  sizeof mPendingPalette.colors) != 0;
    if (!whole && !Changed(mShown.data(), mPending.data(), &left, &top, &right, &bottom)) {
        // The same picture as shown: it only stays longer (a palette that
        // changed back and forth between equal frames comes here too).
        left = right = top = bottom = 0;
    }
    GifColorType colors[256];
    for (int i = 0; i < 256; i++) {
        colors[i].Red = mPendingPalette.colors[i].r;
        colors[i].Green = mPendingPalette.colors[i].g;
        colors[i].Blue = mPendingPalette.colors[i].b;
    }
    ColorMapObject* map = GifMakeMapObject(256, colors);
    GraphicsControlBlock gcb;
    gcb.DisposalMode = DISPOSE_DO_NOT;
    gcb.UserInputFlag = false;
    gcb.DelayTime = mPendingDelay > 65535 ? 65535 : mPendingDelay;
    gcb.TransparentColor = NO_TRANSPARENT_COLOR;
    GifByteType ext[4];
    EGifGCBToExtension(&gcb, ext);
    const int w = right - left + 1;
    bool ok = EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, 4, ext) != GIF_ERROR &&
              EGifPutImageDesc(gif, left, top, w, bottom - top + 1, false, map) != GIF_ERROR;
    for (int y = top; ok && y <= bottom; y++)
        ok = EGifPutLine(gif, &mPending[static_cast<std::size_t>(y) * mWidth + left], w) != GIF_ERROR;
    GifFreeMapObject(map);
    mHavePending = false;
    if (!ok) {
        *error = mPath + ": cannot write GIF frame";
        return false;
    }
    mShown.swap(mPending);
    mShownPalette = mPendingPalette;
    mHaveShown = true;
    mFrames++;
    return true;
}

bool SoftGifWriter::Close(std::string* error)
{
    if (!mFile)
        return true;
    bool ok = true;
    if (mHavePending)
        ok = Flush(error);
    int code = 0;
    if (EGifCloseFile(static_cast<GifFileType*>(mFile), &code) == GIF_ERROR && ok) {
        *error = mPath + ": cannot close GIF (" + GifErrorString(code) + ")";
        ok = false;
    }
    mFile = nullptr;
    return ok;
}
