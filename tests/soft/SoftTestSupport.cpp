// SoftTestSupport.cpp - see SoftTestSupport.h.
#include "SoftTestSupport.h"

#include "SoftImage.h"

#include <png.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace soft_test {

TempGame::TempGame()
{
    char pattern[] = "/tmp/soft_game_XXXXXX";
    const char* made = ::mkdtemp(pattern);
    mDir = made ? made : "/tmp";
}

TempGame::~TempGame()
{
    std::error_code ignored;
    std::filesystem::remove_all(mDir, ignored);
}

void TempGame::Write(const std::string& relative, const std::string& text) const
{
    const std::filesystem::path p(Path(relative));
    std::filesystem::create_directories(p.parent_path());
    std::ofstream out(p, std::ios::binary);
    out << text;
}

void TempGame::WritePng(const std::string& relative, int width, int height,
                        const std::function<int(int, int)>& pixel) const
{
    const std::filesystem::path p(Path(relative));
    std::filesystem::create_directories(p.parent_path());
    const SoftPalette palette = SoftPalette::Default();
    std::vector<std::uint8_t> rgba(static_cast<std::size_t>(width) * height * 4, 0);
    for (int y = 0; y < height; y++) {
        for (int x = 0; x < width; x++) {
            const int c = pixel(x, y);
            std::uint8_t* px = &rgba[(static_cast<std::size_t>(y) * width + x) * 4];
            if (c < 0)
                continue;
            px[0] = palette.colors[c].r;
            px[1] = palette.colors[c].g;
            px[2] = palette.colors[c].b;
            px[3] = 255;
        }
    }
    png_image image;
    std::memset(&image, 0, sizeof image);
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.format = PNG_FORMAT_RGBA;
    png_image_write_to_file(&image, p.c_str(), 0, rgba.data(), 0, nullptr);
}

void TempGame::WriteSolidPng(const std::string& relative, int width, int height, int color) const
{
    WritePng(relative, width, height, [color](int, int) { return color; });
}

void TempGame::WriteWav(const std::string& relative, int rate, int frames) const
{
    const std::filesystem::path p(Path(relative));
    std::filesystem::create_directories(p.parent_path());
    std::ofstream out(p, std::ios::binary);
    auto u32 = [&out](std::uint32_t v) { for (int i = 0; i < 4; i++) out.put(static_cast<char>((v >> (8 * i)) & 0xFF)); };
    auto u16 = [&out](std::uint32_t v) { for (int i = 0; i < 2; i++) out.put(static_cast<char>((v >> (8 * i)) & 0xFF)); };
    const std::uint32_t data = static_cast<std::uint32_t>(frames) * 2;
    out << "RIFF";
    u32(36 + data);
    out << "WAVEfmt ";
    u32(16);
    u16(1);
    u16(1);
    u32(static_cast<std::uint32_t>(rate));
    u32(static_cast<std::uint32_t>(rate) * 2);
    u16(2);
    u16(16);
    out << "data";
    u32(data);
    for (int i = 0; i < frames; i++)
        u16(static_cast<std::uint32_t>((i * 97) & 0x3FFF));
}

void Expected::Fill(int left, int top, int right, int bottom, int color)
{
    for (int y = std::max(0, top); y <= std::min(479, bottom); y++)
        for (int x = std::max(0, left); x <= std::min(639, right); x++)
            Set(x, y, color);
}

std::uint64_t FrameHash(const std::uint8_t* pixels, std::size_t size)
{
    std::uint64_t h = 1469598103934665603ull;
    for (std::size_t i = 0; i < size; i++) {
        h ^= pixels[i];
        h *= 1099511628211ull;
    }
    return h;
}

Result Shell(const std::string& command)
{
    Result r;
    std::FILE* pipe = ::popen((command + " 2>&1").c_str(), "r");
    if (!pipe)
        return r;
    char buffer[512];
    while (std::fgets(buffer, sizeof buffer, pipe))
        r.output += buffer;
    const int raw = ::pclose(pipe);
    r.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    return r;
}

::testing::AssertionResult FrameMatches(const SoftKernel& k, const Expected& expected, const std::string& name)
{
    return FramesMatch(k.Frame(), expected.pixels.data(), k.Palette(), name);
}

::testing::AssertionResult FramesMatch(const std::uint8_t* actual, const std::uint8_t* expectedPixels,
                                       const SoftPalette& pal, const std::string& name)
{
    const std::size_t size = 640 * 480;
    if (FrameHash(actual, size) == FrameHash(expectedPixels, size) && std::memcmp(actual, expectedPixels, size) == 0)
        return ::testing::AssertionSuccess();
    std::string error;
    SoftWritePng(name + ".actual.png", actual, 640, 480, pal, &error);
    SoftWritePng(name + ".expected.png", expectedPixels, 640, 480, pal, &error);
    std::vector<std::uint8_t> rgb(size * 3);
    int differing = 0, firstX = -1, firstY = -1;
    for (std::size_t i = 0; i < size; i++) {
        const SoftColor& c = pal.colors[expectedPixels[i]];
        const std::uint8_t grey = static_cast<std::uint8_t>((c.r + c.g + c.b) / 6 + 40);
        if (actual[i] != expectedPixels[i]) {
            if (differing++ == 0) {
                firstX = static_cast<int>(i % 640);
                firstY = static_cast<int>(i / 640);
            }
            rgb[i * 3] = 255;
            rgb[i * 3 + 1] = 0;
            rgb[i * 3 + 2] = 0;
        } else {
            rgb[i * 3] = rgb[i * 3 + 1] = rgb[i * 3 + 2] = grey;
        }
    }
    SoftWritePngRgb(name + ".diff.png", rgb.data(), 640, 480, &error);
    return ::testing::AssertionFailure()
           << name << ": " << differing << " pixels differ, the first at (" << firstX << ", " << firstY << "): is "
           << int(actual[static_cast<std::size_t>(firstY) * 640 + firstX]) << ", expected "
           << int(expectedPixels[static_cast<std::size_t>(firstY) * 640 + firstX]) << "; see " << name
           << ".diff.png, " << name << ".actual.png and " << name << ".expected.png";
}

KernelPlaneRecord* MakePlane(SoftKernel& k, int type, int color, ZOR_Rect rect, int priority, int picture, int mirror)
{
    ZOR_Point vanish(0, 0);
    KernelPlaneRecord* p = k.NewPlane(type, color, &rect, 0, priority, &vanish, picture, mirror);
    k.AddPlane(p);
    k.PlaneCreated(p);
    return p;
}

KernelScreenItemRecord* MakeItem(SoftKernel& k, KernelPlaneRecord* plane, int view, int loop, int cel, int x, int y,
                                 int priority)
{
    KernelScreenItemSource src{};
    src.kind = kSourceView;
    src.view = view;
    src.loop = loop;
    src.cel = cel;
    KernelScreenItemRecord* r = k.NewScreenItem(plane->id, &src, ZOR_Point(x, y), kFullSizeScale);
    if (priority != kPriorityOnTop) {
        r->priority = priority;
        r->fixedPriority = 1;
    }
    k.AddScreenItem(r);
    k.UpdateScreenItem(r);
    return r;
}

} // namespace soft_test
