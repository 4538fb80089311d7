// SoftBitmaps.cpp - memory bitmaps, and text drawn into them with FreeType
// (see SoftBitmaps.h).
#include "SoftBitmaps.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#if defined(QUINDLE_HAVE_FONTCONFIG)
#include <fontconfig/fontconfig.h>
#endif

#include <sys/stat.h>
#ifdef _WIN32
#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
// The system's macro would rename the kernel's DrawText.
#undef DrawText
#endif

#include <algorithm>
#include <climits>
#include <cstring>

SoftBitmaps::Font::~Font()
{
    if (face)
        FT_Done_Face(static_cast<FT_Face>(face));
    if (library)
        FT_Done_FreeType(static_cast<FT_Library>(library));
}

namespace {

// Decodes one UTF-8 character; a broken sequence yields '?' and moves on by one byte.
std::uint32_t NextChar(const char*& p)
{
    const auto* s = reinterpret_cast<const unsigned char*>(p);
    std::uint32_t c = s[0];
    int extra = c < 0x80 ? 0 : (c >> 5) == 6 ? 1 : (c >> 4) == 14 ? 2 : (c >> 3) == 30 ? 3 : -1;
    if (extra < 0) {
        p++;
        return '?';
    }
    c &= extra == 0 ? 0x7F : extra == 1 ? 0x1F : extra == 2 ? 0x0F : 0x07;
    for (int i = 1; i <= extra; i++) {
        if ((s[i] & 0xC0) != 0x80) {
            p++;
            return '?';
        }
        c = (c << 6) | (s[i] & 0x3F);
    }
    p += extra + 1;
    return c;
}

// The pixel size FreeType is set to for a size asked for.
int ClampSize(int pixelSize)
{
    return std::max(6, std::min(96, pixelSize));
}

[[maybe_unused]] const char* const kFontName = "DejaVu Sans";
const char* const kDebianFontPath = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

bool IsFile(const std::string& path)
{
    struct stat st;
    return !path.empty() && ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

#if defined(QUINDLE_HAVE_FONTCONFIG)
// The file the system's font configuration gives for the name, as a font
// lookup on the command line would; empty when it gives none.
std::string FontconfigMatch(const char* name)
{
    std::string path;
    FcConfig* config = FcInitLoadConfigAndFonts();
    FcPattern* pattern = config ? FcNameParse(reinterpret_cast<const FcChar8*>(name)) : nullptr;
    if (pattern) {
        FcConfigSubstitute(config, pattern, FcMatchPattern);
        FcDefaultSubstitute(pattern);
        FcResult result = FcResultNoMatch;
        if (FcPattern* match = FcFontMatch(config, pattern, &result)) {
            FcChar8* file = nullptr;
            if (FcPatternGetString(match, FC_FILE, 0, &file) == FcResultMatch && file)
                path = reinterpret_cast<const char*>(file);
            FcPatternDestroy(match);
        }
        FcPatternDestroy(pattern);
    }
    if (config)
        FcConfigDestroy(config);
    return path;
}
#endif

#ifdef _WIN32
// Windows has no font configuration to ask: the program's package carries the
// font, in fonts/ beside the program.
std::string PackagedFont()
{
    char path[MAX_PATH + 1];
    const DWORD length = ::GetModuleFileNameA(nullptr, path, sizeof path);
    if (length == 0 || length >= sizeof path)
        return std::string();
    std::string folder(path, length);
    const std::size_t slash = folder.find_last_of("\\/");
    folder.resize(slash == std::string::npos ? 0 : slash + 1);
    return folder + "fonts\\DejaVuSans.ttf";
}
#endif

// The font behind DrawText when the host named none: what the system's font
// configuration finds for DejaVu Sans, else Debian's own path for it (on
// Windows, the one the package carries). Empty, with `error` set, when
// neither gives a readable file.
std::string FindFont(std::string* error)
{
    std::string tried;
#ifdef _WIN32
    const std::string packaged = PackagedFont();
    if (IsFile(packaged))
        return packaged;
    *error = "no font for text: " + packaged + " does not exist (name a font with SetFontPath)";
    return std::string();
#endif
#if defined(QUINDLE_HAVE_FONTCONFIG)
    const std::string matched = FontconfigMatch(kFontName);
    if (IsFile(matched))
        return matched;
    tried = "fontconfig has no font file for \"" + std::string(kFontName) + "\", and ";
#endif
    if (IsFile(kDebianFontPath))
        return kDebianFontPath;
    *error = std::string("no font for text: ") + tried + kDebianFontPath +
             " does not exist (install fonts-dejavu-core, or name a font with SetFontPath)";
    return std::string();
}

} // namespace

int SoftBitmaps::IsLive(int iMemId) const
{
    if (iMemId <= 0 || iMemId > 0xFFFF)
        return 0;
    return mMemBitmaps.count(static_cast<std::uint16_t>(iMemId)) ? 1 : 0;
}

std::uint16_t SoftBitmaps::CreateMemBitmap(int width, int height, int fillColor, int skipColor)
{
    if (width < 1 || width > mMaxWidth || height < 1 || height > mMaxHeight || fillColor < 0 || fillColor > 255 ||
        skipColor < -1 || skipColor > 255)
        return 0;
    if (mMemBitmaps.size() >= 0xFFFF)
        return 0;
    while (mNextMemId == 0 || mMemBitmaps.count(mNextMemId))
        mNextMemId++;
    const std::uint16_t id = mNextMemId++;
    mEpoch++;
    MemBitmap& m = mMemBitmaps[id];
    m.bitmap.Resize(width, height, static_cast<std::uint8_t>(fillColor), fillColor == skipColor ? 0 : 1);
    m.skip = skipColor;
    return id;
}

void SoftBitmaps::FreeMemBitmap(std::uint16_t memId)
{
    if (mMemBitmaps.erase(memId))
        mEpoch++;
}

void SoftBitmaps::FillMemBitmap(std::uint16_t memId, int left, int top, int right, int bottom, int color)
{
    auto found = mMemBitmaps.find(memId);
    if (found == mMemBitmaps.end() || color < 0 || color > 255)
        return;
    MemBitmap& m = found->second;
    const int x0 = std::max(left, 0), x1 = std::min(right, m.bitmap.width - 1);
    const int y0 = std::max(top, 0), y1 = std::min(bottom, m.bitmap.height - 1);
    for (int y = y0; y <= y1; y++) {
        for (int x = x0; x <= x1; x++) {
            const std::size_t i = static_cast<std::size_t>(y) * m.bitmap.width + x;
            m.bitmap.pixels[i] = static_cast<std::uint8_t>(color);
            m.bitmap.opaque[i] = color == m.skip ? 0 : 1;
        }
    }
    m.bitmap.Changed();
}

const SoftBitmap* SoftBitmaps::Find(std::uint16_t memId) const
{
    auto found = mMemBitmaps.find(memId);
    return found == mMemBitmaps.end() ? nullptr : &found->second.bitmap;
}

void SoftBitmaps::SetFontPath(const std::string& path)
{
    mFontPath = path;
    mFont.reset();
}

int SoftBitmaps::Font::Advance(std::uint32_t c, int size)
{
    // Sizes are 6..96 and characters below 2^21: one key holds both.
    const std::uint32_t key = static_cast<std::uint32_t>(size) << 21 | (c & 0x1FFFFF);
    auto found = advances.find(key);
    if (found != advances.end())
        return found->second;
    FT_Face f = static_cast<FT_Face>(face);
    const int advance = FT_Load_Char(f, c, FT_LOAD_DEFAULT) != 0 ? 0 : static_cast<int>(f->glyph->advance.x >> 6);
    advances.emplace(key, advance);
    return advance;
}

int SoftBitmaps::Font::Width(const char* text, std::size_t length, int size, int limit)
{
    int w = 0;
    const char* p = text;
    const char* end = text + length;
    while (p < end && *p && w <= limit)
        w += Advance(NextChar(p), size);
    return w;
}

int SoftBitmaps::TextWidth(const char* text, int pixelSize)
{
    if (!text)
        return 0;
    if (!mFont) {
        mFont = std::make_unique<Font>();
        std::string error;
        if (mFontPath.empty())
            mFontPath = FindFont(&error);
        FT_Library library = nullptr;
        FT_Face face = nullptr;
        const bool ok = !mFontPath.empty() && FT_Init_FreeType(&library) == 0 &&
                        FT_New_Face(library, mFontPath.c_str(), 0, &face) == 0;
        mFont->library = library;
        mFont->face = face;
        if (!ok) {
            mFont->failed = true;
            mHost.Report(mFontPath.empty() ? error : mFontPath + ": cannot read the font");
        }
    }
    if (mFont->failed)
        return 0;
    const int size = ClampSize(pixelSize);
    FT_Set_Pixel_Sizes(static_cast<FT_Face>(mFont->face), 0, static_cast<FT_UInt>(size));
    return mFont->Width(text, std::strlen(text), size, INT_MAX);
}

int SoftBitmaps::DrawText(std::uint16_t memId, int x, int y, const char* text, int color, int pixelSize, int maxWidth)
{
    auto found = mMemBitmaps.find(memId);
    if (found == mMemBitmaps.end() || !text || color < 0 || color > 255)
        return -1;
    TextWidth("", pixelSize); // opens the font and sets the size
    if (mFont->failed)
        return -1;
    FT_Face face = static_cast<FT_Face>(mFont->face);
    const int size = ClampSize(pixelSize);
    FT_Set_Pixel_Sizes(face, 0, static_cast<FT_UInt>(size));
    SoftBitmap& bmp = found->second.bitmap;
    const int skip = found->second.skip;

    // Break into lines: at '\n', and between words when a line would be too
    // wide. A line's width is kept as it grows, and a word is measured only
    // until it passes the width: the text is gone through once.
    std::vector<std::string> lines;
    const int space = maxWidth > 0 ? mFont->Advance(' ', size) : 0;
    const char* const all = text;
    const std::size_t length = std::strlen(all);
    std::size_t start = 0;
    while (start <= length) {
        std::size_t stop = start;
        while (stop < length && all[stop] != '\n')
            stop++;
        std::string line;
        int lineWidth = 0;
        std::size_t i = start;
        while (i <= stop) {
            std::size_t j = i;
            while (j < stop && all[j] != ' ')
                j++;
            const int wordWidth = maxWidth > 0 ? mFont->Width(all + i, j - i, size, maxWidth) : 0;
            const int width = line.empty() ? wordWidth : lineWidth + space + wordWidth;
            if (maxWidth > 0 && !line.empty() && width > maxWidth) {
                lines.push_back(line);
                line.assign(all + i, j - i);
                lineWidth = wordWidth;
            } else {
                if (!line.empty())
                    line += ' ';
                line.append(all + i, j - i);
                lineWidth = width;
            }
            i = j + 1;
        }
        lines.push_back(line);
        start = stop + 1;
    }

    const int lineHeight = static_cast<int>(face->size->metrics.height >> 6);
    const int ascender = static_cast<int>(face->size->metrics.ascender >> 6);
    int baseline = y + ascender;
    // A glyph reaches at most a few of its sizes beyond its pen position:
    // what lies past the bitmap by more is not drawn, nor looked up.
    const int reach = 4 * size;
    for (const auto& line : lines) {
        if (baseline - reach > bmp.height)
            break;
        int penX = x;
        const char* p = line.c_str();
        while (*p && penX - reach <= bmp.width) {
            const std::uint32_t c = NextChar(p);
            if (FT_Load_Char(face, c, FT_LOAD_RENDER) != 0)
                continue;
            const FT_GlyphSlot g = face->glyph;
            const FT_Bitmap& gb = g->bitmap;
            for (unsigned gy = 0; gy < gb.rows; gy++) {
                for (unsigned gx = 0; gx < gb.width; gx++) {
                    if (gb.buffer[gy * static_cast<unsigned>(std::abs(gb.pitch)) + gx] < 128)
                        continue;
                    const int bx = penX + g->bitmap_left + static_cast<int>(gx);
                    const int by = baseline - g->bitmap_top + static_cast<int>(gy);
                    if (bx < 0 || by < 0 || bx >= bmp.width || by >= bmp.height)
                        continue;
                    const std::size_t i = static_cast<std::size_t>(by) * bmp.width + bx;
                    bmp.pixels[i] = static_cast<std::uint8_t>(color);
                    bmp.opaque[i] = color == skip ? 0 : 1;
                }
            }
            penX += static_cast<int>(g->advance.x >> 6);
        }
        baseline += lineHeight;
    }
    bmp.Changed();
    return static_cast<int>(lines.size()) * lineHeight;
}
