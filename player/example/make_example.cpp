// make_example: writes the example game's folder, its art made here in code.
//
//   make_example <folder> <path of the example game library>
#include "SoftImage.h"

#include <sys/stat.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>

namespace {

bool Text(const std::string& path, const std::string& text)
{
    std::ofstream out(path, std::ios::binary);
    out << text;
    return static_cast<bool>(out);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: make_example <folder> <game library>\n");
        return 1;
    }
    const std::string dir = argv[1];
    for (const char* sub : {"", "/views", "/pictures", "/audio"})
        ::mkdir((dir + sub).c_str(), 0777);
    const SoftPalette pal = SoftPalette::Default();
    std::string error;
    bool ok = Text(dir + "/game.txt", std::string("library ") + argv[2] + "\ntitle \"quindle example\"\n");

    // The picture: a sky of blues over a green field.
    SoftBitmap sky;
    sky.Resize(640, 480, 0, 1);
    const std::uint8_t grass[2] = {pal.Nearest(40, 140, 50), pal.Nearest(40, 170, 50)};
    for (int y = 0; y < 480; y++) {
        const std::uint8_t air = pal.Nearest(40 + y / 6, 90 + y / 5, 200);
        for (int x = 0; x < 640; x++)
            sky.pixels[static_cast<std::size_t>(y) * 640 + x] = y < 360 ? air : grass[x / 40 % 2];
    }
    ok = ok && SoftWriteBitmapPng(dir + "/pictures/1.png", sky, pal, &error);

    // The ball: four cels of a 32x32 disc with a stripe that turns.
    std::string manifest;
    for (int cel = 0; cel < 4; cel++) {
        SoftBitmap ball;
        ball.Resize(32, 32, 0, 0);
        for (int y = 0; y < 32; y++) {
            for (int x = 0; x < 32; x++) {
                const int dx = x - 16, dy = y - 16;
                if (dx * dx + dy * dy > 15 * 15)
                    continue;
                const bool stripe = cel % 2 == 0 ? (cel == 0 ? dy > -3 && dy < 3 : dx > -3 && dx < 3)
                                                 : (cel == 1 ? dx - dy > -4 && dx - dy < 4 : dx + dy > -4 && dx + dy < 4);
                const std::size_t i = static_cast<std::size_t>(y) * 32 + x;
                ball.pixels[i] = stripe ? 15 : 12;
                ball.opaque[i] = 1;
            }
        }
        const std::string name = "ball" + std::to_string(cel) + ".png";
        ok = ok && SoftWriteBitmapPng(dir + "/views/" + name, ball, pal, &error);
        manifest += "cel 0 " + std::to_string(cel) + " " + name + " 16 31\n";
    }
    ok = ok && Text(dir + "/views/100.txt", manifest);

    // The marker: a yellow cross, its origin in the middle.
    SoftBitmap cross;
    cross.Resize(15, 15, 14, 0);
    for (int i = 0; i < 15; i++) {
        cross.opaque[static_cast<std::size_t>(7) * 15 + i] = 1;
        cross.opaque[static_cast<std::size_t>(i) * 15 + 7] = 1;
    }
    ok = ok && SoftWriteBitmapPng(dir + "/views/cross.png", cross, pal, &error) &&
         Text(dir + "/views/101.txt", "cel 0 0 cross.png 7 7\n");

    // The blip: a tenth of a second of a falling tone, 16-bit mono PCM.
    {
        const int rate = 22050, frames = rate / 10;
        std::ofstream wav(dir + "/audio/1.wav", std::ios::binary);
        auto put = [&wav](std::uint32_t v, int bytes) {
            for (int i = 0; i < bytes; i++)
                wav.put(static_cast<char>((v >> (8 * i)) & 0xFF));
        };
        wav << "RIFF";
        put(36 + frames * 2, 4);
        wav << "WAVEfmt ";
        put(16, 4);
        put(1, 2);
        put(1, 2);
        put(rate, 4);
        put(rate * 2, 4);
        put(2, 2);
        put(16, 2);
        wav << "data";
        put(frames * 2, 4);
        double phase = 0;
        for (int i = 0; i < frames; i++) {
            phase += 2 * 3.14159265 * (880.0 - 400.0 * i / frames) / rate;
            const double fade = 1.0 - static_cast<double>(i) / frames;
            put(static_cast<std::uint32_t>(static_cast<std::int16_t>(8000 * fade * std::sin(phase))) & 0xFFFF, 2);
        }
        ok = ok && static_cast<bool>(wav);
    }

    // Two clicks, then the quit key.
    ok = ok && Text(dir + "/script.txt", "# tick  event\n"
                                         "60   press   500 200\n"
                                         "62   release 500 200\n"
                                         "120  press   120 300\n"
                                         "122  release 120 300\n"
                                         "200  quit\n");
    if (!ok) {
        std::fprintf(stderr, "make_example: %s\n", error.empty() ? (dir + ": cannot write").c_str() : error.c_str());
        return 1;
    }
    return 0;
}
