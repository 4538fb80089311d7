// Fuzz target: every reader of the game folder. The first byte picks the
// reader, the rest is the file.
#include "SoftResources.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 1)
        return 0;
    const std::string text(reinterpret_cast<const char*>(data) + 1, size - 1);
    std::string error;
    bool ok = false;
    switch (data[0] % 7) {
    case 0: {
        SoftPalette palette = SoftPalette::Default();
        ok = SoftParsePalette(text, "f", &palette, &error);
        break;
    }
    case 1: {
        std::vector<SoftCelEntry> cels;
        ok = SoftParseViewManifest(text, "f", &cels, &error);
        // A view that is accepted has loops and cels numbered without gaps.
        for (const auto& c : cels)
            if (c.loop < 0 || c.cel < 0 || c.file.empty())
                std::abort();
        break;
    }
    case 2: {
        SoftRobot robot;
        std::vector<std::string> files;
        ok = SoftParseRobotManifest(text, "f", &robot, &files, &error);
        if (ok && (files.size() != robot.frames.size() || robot.ticksPerFrame < 1))
            std::abort();
        break;
    }
    case 3: {
        SoftMovie movie;
        std::vector<std::string> files;
        ok = SoftParseMovieManifest(text, "f", &movie, &files, &error);
        if (ok && (movie.width < 1 || movie.width > 640 || movie.height < 1 || movie.height > 480 || files.empty()))
            std::abort();
        break;
    }
    case 4: {
        std::vector<SoftMessage> messages;
        ok = SoftParseMessages(text, "f", &messages, &error);
        break;
    }
    case 5: {
        SoftWav wav;
        ok = SoftParseWav(text, "f", &wav, &error);
        if (ok && wav.samples.size() != static_cast<std::size_t>(wav.frames) * wav.channels)
            std::abort();
        break;
    }
    default: {
        SoftBitmap bitmap;
        ok = SoftReadPngMemory(text.data(), text.size(), "f", SoftPalette::Default(), &bitmap, &error);
        if (ok && bitmap.pixels.size() != static_cast<std::size_t>(bitmap.width) * bitmap.height)
            std::abort();
        break;
    }
    }
    if (ok == !error.empty() || (!ok && error.compare(0, 1, "f") != 0))
        std::abort();
    return 0;
}
