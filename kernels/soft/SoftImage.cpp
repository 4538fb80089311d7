// SoftImage.cpp - see SoftImage.h.
#include "SoftImage.h"

#include "SoftText.h"

#include <gif_lib.h>
#include <png.h>

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
    return true;
}

bool SoftReadPng(const std::string& path, const SoftPalette& palette, SoftBitmap* out, std::string* error)
{
    std::string bytes;
    if (!SoftReadFile(path, &bytes, error))
        return false;
    return SoftReadPngMemory(bytes.data(), bytes.size(), path, palette, out, error);
}

bool SoftWritePngRgb(const std::string& path, const std::uint8_t* rgb, int width, int height, std::string* error)
{
    png_image image;
    std::memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.format = PNG_FORMAT_RGB;
    if (!png_image_write_to_file(&image, path.c_str(), 0, rgb, 0, nullptr)) {
        *error = path + ": cannot write PNG (" + image.message + ")";
        return false;
    }
    return true;
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
    png_image image;
    std::memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(bitmap.width);
    image.height = static_cast<png_uint_32>(bitmap.height);
    image.format = PNG_FORMAT_RGBA;
    if (!png_image_write_to_file(&image, path.c_str(), 0, rgba.data(), 0, nullptr)) {
        *error = path + ": cannot write PNG (" + image.message + ")";
        return false;
    }
    return true;
}

bool SoftWritePng(const std::string& path, const std::uint8_t* indices, int width, int height,
                  const SoftPalette& palette, std::string* error)
{
    std::vector<std::uint8_t> rgb(static_cast<std::size_t>(width) * height * 3);
    for (std::size_t i = 0; i < static_cast<std::size_t>(width) * height; i++) {
        const SoftColor& c = palette.colors[indices[i]];
        rgb[i * 3] = c.r;
        rgb[i * 3 + 1] = c.g;
        rgb[i * 3 + 2] = c.b;
    }
    return SoftWritePngRgb(path, rgb.data(), width, height, error);
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
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
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

bool SoftGifWriter::Flush(std::string* error)
{
    auto* gif = static_cast<GifFileType*>(mFile);
    GifColorType colors[256];
    for (int i = 0; i < 256; i++) {
        colors[i].Red = mPendingPalette.colors[i].r;
        colors[i].Green = mPendingPalette.colors[i].g;
        colors[i].Blue = mPendingPalette.colors[i].b;
    }
    ColorMapObject* map = GifMakeMapObject(256, colors);
    GraphicsControlBlock gcb;
    gcb.DisposalMode = DISPOSAL_UNSPECIFIED;
    gcb.UserInputFlag = false;
    gcb.DelayTime = mPendingDelay > 65535 ? 65535 : mPendingDelay;
    gcb.TransparentColor = NO_TRANSPARENT_COLOR;
    GifByteType ext[4];
    EGifGCBToExtension(&gcb, ext);
    bool ok = EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, 4, ext) != GIF_ERROR &&
              EGifPutImageDesc(gif, 0, 0, mWidth, mHeight, false, map) != GIF_ERROR;
    for (int y = 0; ok && y < mHeight; y++)
        ok = EGifPutLine(gif, &mPending[static_cast<std::size_t>(y) * mWidth], mWidth) != GIF_ERROR;
    GifFreeMapObject(map);
    mHavePending = false;
    if (!ok) {
        *error = mPath + ": cannot write GIF frame";
        return false;
    }
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
