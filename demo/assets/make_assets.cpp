// make_assets: writes the demo's game folder. Every picture, view, robot
// frame, movie frame and sound is made here in code; the repository holds no
// art or audio.
//
//   make_assets <game folder> <game library>
//
// What it writes (see docs/KERNEL.md for the forms):
//   palette.txt              our own palette: fifteen ramps of sixteen shades
//   pictures/100.png, 200.png   the courtyard and the gallery
//   views/*.txt + PNGs       Pip (a walk loop per direction), the gate, the
//                            bell, the buttons, the television, the cursor
//   robots/10.txt + PNGs     a swallow crossing the gallery window, with a cue point
//   300.VMD + PNGs           the film shown on the television
//   audio/*.wav, sfx/*.wav   wind, birds, bell, chirp, gate, click (synthesised)
//   speech/*.wav             a voice for one line of the conversation
//   tracks/ambient.txt       the courtyard's ambient sound track
//   (the build writes game.txt and copies the text of demo/text/)
//   walk/100.txt, walk/200.txt   where Pip may walk in each room
#include "Art.h"
#include "Sound.h"

#include <sys/stat.h>
#ifdef _WIN32
#include <direct.h>
#endif

#include <cmath>
#include <cstdio>
#include <fstream>
#include <string>

namespace {

std::string gDir;
std::string gError;
bool gOk = true;

void Text(const std::string& file, const std::string& text)
{
    std::ofstream out(gDir + "/" + file, std::ios::binary);
    out << text;
    if (!out && gOk) {
        gOk = false;
        gError = gDir + "/" + file + ": cannot write";
    }
}

void Png(const std::string& file, const Canvas& c)
{
    if (gOk && !SoftWriteBitmapPng(gDir + "/" + file, c.bitmap, gPalette, &gError))
        gOk = false;
}

void Wav(const std::string& file, const Samples& s)
{
    if (gOk && !WriteWav(gDir + "/" + file, s)) {
        gOk = false;
        gError = gDir + "/" + file + ": cannot write";
    }
}

// A view of several loops: writes each cel's PNG and the manifest.
struct ViewWriter {
    int view;
    std::string manifest;
    void Cel(int loop, int cel, const Canvas& c, int originX, int originY)
    {
        const std::string name = std::to_string(view) + "-" + std::to_string(loop) + "-" + std::to_string(cel) + ".png";
        Png("views/" + name, c);
        manifest += "cel " + std::to_string(loop) + " " + std::to_string(cel) + " " + name + " " +
                    std::to_string(originX) + " " + std::to_string(originY) + "\n";
    }
    void Write() { Text("views/" + std::to_string(view) + ".txt", manifest); }
};

// ----- pictures -----

void Courtyard()
{
    Canvas c(640, 480);
    c.VerticalRamp(0, 0, 639, 200, kDusk, 3, 13); // evening sky, glowing at the horizon
    c.Ellipse(90, 120, 26, 26, Px(kGold, 13));    // the sun going down
    // The back wall with its gothic arch on the right.
    c.Rect(0, 150, 639, 300, Px(kStone, 8));
    c.Bricks(0, 150, 639, 300, Px(kStone, 6));
    c.Rect(0, 290, 639, 300, Px(kStone, 5));
    c.Arch(500, 170, 590, 300, Px(kGrey, 1)); // dark doorway behind the gate
    // Cobbles.
    c.VerticalRamp(0, 301, 639, 479, kStone, 9, 12);
    c.Cobbles(0, 301, 639, 479, Px(kStone, 7));
    // The well in the middle: the obstacle Pip walks around.
    c.Ellipse(320, 372, 62, 20, Px(kStone, 4));
    c.Rect(258, 330, 382, 372, Px(kStone, 7));
    c.Bricks(258, 330, 382, 372, Px(kStone, 5));
    c.Ellipse(320, 330, 62, 16, Px(kStone, 10));
    c.Ellipse(320, 330, 50, 11, Px(kBlue, 3));
    c.Rect(268, 270, 274, 330, Px(kWood, 5));
    c.Rect(366, 270, 372, 330, Px(kWood, 5));
    c.Rect(262, 264, 378, 272, Px(kWood, 7));
    // A tree on the left, its crown against the sky.
    c.Rect(60, 200, 74, 320, Px(kWood, 4));
    c.Ellipse(66, 180, 58, 46, Px(kGrass, 5));
    c.Ellipse(50, 168, 30, 24, Px(kGrass, 8));
    // The button bar.
    c.Rect(0, 436, 639, 479, Px(kWood, 3));
    c.Rect(0, 436, 639, 438, Px(kWood, 8));
    Png("pictures/100.png", c);
}

void Gallery()
{
    Canvas c(640, 480);
    c.Rect(0, 0, 639, 300, Px(kRed, 5)); // panelled walls
    for (int x = 0; x < 640; x += 80)
        c.Rect(x + 6, 30, x + 74, 280, Px(kRed, 6));
    c.Rect(0, 300, 639, 310, Px(kWood, 10));
    c.VerticalRamp(0, 311, 639, 479, kWood, 5, 8); // floorboards
    for (int y = 330; y < 480; y += 24)
        c.Rect(0, y, 639, y, Px(kWood, 3));
    // The window the swallow flies past: sky and hills.
    c.Rect(380, 40, 620, 200, Px(kWood, 3));
    c.VerticalRamp(390, 50, 610, 190, kSky, 14, 9);
    c.Clip(390, 50, 610, 190);
    c.Ellipse(470, 200, 90, 40, Px(kGrass, 7));
    c.Ellipse(580, 205, 80, 30, Px(kGrass, 6));
    c.Clip(0, 0, 639, 479);
    c.Rect(498, 50, 502, 190, Px(kWood, 3));
    // The door back to the courtyard, on the left.
    c.Rect(20, 130, 110, 300, Px(kWood, 4));
    c.Rect(28, 138, 102, 300, Px(kWood, 6));
    c.Ellipse(92, 225, 4, 4, Px(kGold, 12));
    // The television's stand.
    c.Rect(170, 300, 330, 320, Px(kWood, 3));
    c.Rect(180, 320, 190, 380, Px(kWood, 3));
    c.Rect(310, 320, 320, 380, Px(kWood, 3));
    c.Rect(0, 436, 639, 479, Px(kWood, 3));
    c.Rect(0, 436, 639, 438, Px(kWood, 8));
    Png("pictures/200.png", c);
}

// ----- views -----

// Pip: loops 0 right, 1 left, 2 toward the viewer, 3 away; four cels each,
// the origin at the feet.
void Pip()
{
    ViewWriter v{100, ""};
    for (int loop = 0; loop < 4; loop++)
        for (int cel = 0; cel < 4; cel++)
            v.Cel(loop, cel, DrawPip(loop, cel), 14, 55);
    v.Write();
}

// The gate in the arch: four cels from shut to open.
void Gate()
{
    ViewWriter v{110, ""};
    for (int cel = 0; cel < 4; cel++)
        v.Cel(0, cel, DrawGate(cel), 0, 0);
    v.Write();
}

// The bell hanging over the well: swings through five cels.
void Bell()
{
    ViewWriter v{120, ""};
    for (int cel = 0; cel < 5; cel++)
        v.Cel(0, cel, DrawBell(cel - 2), 15, 0);
    v.Write();
}

// Buttons: one loop per button, cels 0 enabled, 1 depressed, 2 disabled,
// 3 highlighted.
void Buttons()
{
    ViewWriter v{130, ""};
    const char* labels[] = {"Talk", "Ring", "Back"};
    for (int loop = 0; loop < 3; loop++)
        for (int face = 0; face < 4; face++)
            v.Cel(loop, face, DrawButton(labels[loop], face), 0, 0);
    v.Write();
}

// The television: cel 0 off, cel 1 glowing (click me).
void Television()
{
    ViewWriter v{140, ""};
    for (int cel = 0; cel < 2; cel++)
        v.Cel(0, cel, DrawTelevision(cel), 0, 0);
    v.Write();
}

// The cursor: cel 0 arrow (normal), 1 hourglass (wait), 2 barred (hands
// off), 3 pointing hand (highlight).
void Cursor()
{
    ViewWriter v{900, ""};
    v.Cel(0, 0, DrawArrow(), 0, 0);
    v.Cel(0, 1, DrawHourglass(), 7, 10);
    v.Cel(0, 2, DrawBarred(), 8, 8);
    v.Cel(0, 3, DrawHand(), 5, 0);
    v.Write();
}

// ----- the robot and the movie -----

// A swallow crossing the gallery window; the frame where it passes the
// middle bar is a cue point (value 1): the game chirps there.
void Swallow()
{
    std::string manifest = "rate 4\n";
    for (int f = 0; f < 24; f++) {
        const std::string name = "swallow-" + std::to_string(f) + ".png";
        Png("robots/" + name, DrawSwallow(f % 4));
        const int x = 10 + f * 8, y = 60 + static_cast<int>(18 * std::sin(f * 0.5));
        manifest += "frame " + name + " " + std::to_string(-x) + " " + std::to_string(-y);
        manifest += f == 11 ? " cue 1\n" : "\n";
    }
    Text("robots/10.txt", manifest);
}

// The film: the sun rises over the sea, 40 frames of 160x120.
void Film()
{
    std::string manifest = "movie 160 120\nrate 3\n";
    for (int f = 0; f < 40; f++) {
        const std::string name = "film-" + std::to_string(f) + ".png";
        Png("movies/" + name, DrawFilmFrame(f));
        manifest += "frame movies/" + name + "\n";
    }
    Text("300.VMD", manifest);
}

// ----- sounds -----

void Sounds()
{
    Wav("audio/1.wav", Wind(3.0));
    Wav("audio/2.wav", Birdsong(1.2, 1));
    Wav("audio/3.wav", Birdsong(0.8, 2));
    Wav("audio/4.wav", BellToll(1.6));
    Wav("sfx/5.wav", Chirp());
    Wav("sfx/6.wav", Creak(0.8));
    Wav("sfx/7.wav", Click());
    Wav("speech/pip-1.wav", Voice(1.4));
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_assets <game folder>\n");
        return 1;
    }
    gDir = argv[1];
    for (const char* sub : {"", "/views", "/pictures", "/robots", "/movies", "/audio", "/sfx", "/speech", "/tracks", "/walk"})
#ifdef _WIN32
        ::_mkdir((gDir + sub).c_str());
#else
        ::mkdir((gDir + sub).c_str(), 0777);
#endif
    gPalette = MakePalette();

    Text("palette.txt", PaletteText(gPalette));
    Courtyard();
    Gallery();
    Pip();
    Gate();
    Bell();
    Buttons();
    Television();
    Cursor();
    Swallow();
    Film();
    Sounds();

    // The courtyard's ambience, in the track's own form (it has no comments):
    // the wind at volume 50; a pause of a second; then a bird picked at
    // random, the one on the left (pan 30) four times in five, the one on the
    // right (pan 70) three times in five; and round again.
    Text("tracks/ambient.txt", "SOUND 1, 50\n"
                               "WAIT 1\n"
                               "PRS 2, 80, 90, 30\n"
                               "PRS 3, 60, 80, 70\n"
                               "PLAY\n");
    // Where Pip may walk: each room's floor, less what stands on it, with the
    // room's clearance (how far his feet keep from every edge).
    Text("walk/100.txt", "# The courtyard: the cobbles from the wall to the button bar, with a way\n"
                         "# into the arch; the well's foot and the tree's trunk stand in the way.\n"
                         "clearance 6\n"
                         "boundary 10 294  504 294  504 282  586 282  586 294  630 294  630 436  10 436\n"
                         "hole 258 345  382 345  382 380  360 392  280 392  258 380\n"
                         "hole 54 310  80 310  80 326  54 326\n");
    Text("walk/200.txt", "# The gallery: the floorboards; the television's stand stands on two legs.\n"
                         "clearance 6\n"
                         "boundary 24 324  616 324  616 436  24 436\n"
                         "hole 176 368  194 368  194 384  176 384\n"
                         "hole 306 368  324 368  324 384  306 384\n");
    if (!gOk) {
        std::fprintf(stderr, "make_assets: %s\n", gError.c_str());
        return 1;
    }
    return 0;
}
