// The game folder: views, messages, robots, palettes and bad input.
#include "SoftTestSupport.h"

#include "SoftText.h"

#include <cstring>

#include <gif_lib.h>

using namespace soft_test;

namespace {

TEST(SoftResources, ViewsAnswerTheirLoopsAndCelsAndBadOnesAreReportedByFileAndFault)
{
    TempGame game;
    game.Write("views/3.txt", "cel 0 0 a.png 0 0\ncel 0 1 a.png 0 0\ncel 0 2 a.png 0 0\ncel 1 0 a.png 1 1\n");
    game.Write("views/1.txt", "cel 0 0 a.png 0 0\ncel 0 2 a.png 0 0\n");
    game.Write("views/2.txt", "cel 0 0 a.png 0\n");
    game.Write("views/4.txt", "cel 0 0 broken.png 0 0\n");
    game.Write("views/broken.png", "\x89PNG\r\n\x1a\nthis is not a picture");
    game.Write("views/5.txt", "cel 0 0 missing.png 0 0\n");
    game.Write("views/6.txt", "cel 0 0 a.png 0 0\ncel 0 0 a.png 1 1\n");
    game.Write("views/7.txt", "cel 1 0 a.png 0 0\n");
    game.Write("views/8.txt", "# nothing\n");
    game.WriteSolidPng("views/a.png", 2, 2, 4);
    SoftKernel good;
    ASSERT_TRUE(good.SetGameFolder(game.Dir()));
    EXPECT_EQ(good.NumLoops(3), 2);
    EXPECT_EQ(good.NumCels(3, 0), 3);
    EXPECT_EQ(good.NumCels(3, 1), 1);
    EXPECT_EQ(good.Fault(), "");
    EXPECT_EQ(good.NumCels(3, 2), 0);
    EXPECT_EQ(good.Fault(), game.Path("views/3.txt") + ": has no loop 2");

    const std::string v = game.Path("views/");
    struct Case {
        int view;
        std::string fault;
    } cases[] = {
        {1, v + "1.txt: loop 0 has no cel 1 (cels are numbered from 0)"},
        {2, v + "2.txt:1: expected 'cel <loop 0..999> <cel 0..9999> <file.png> <originX> <originY>'"},
        {4, v + "broken.png: not a readable PNG"},
        {5, v + "missing.png: no such file (" + v + "5.txt:1, loop 0 cel 0)"},
        {6, v + "6.txt:2: loop 0 cel 0 is given twice"},
        {7, v + "7.txt: loop 0 is missing (loops are numbered from 0)"},
        {8, v + "8.txt: the view has no cels"},
        {9, v + "9.txt: no such file (view 9)"},
    };
    for (const auto& c : cases) {
        SoftKernel k;
        ASSERT_TRUE(k.SetGameFolder(game.Dir()));
        EXPECT_EQ(k.NumLoops(c.view), 0);
        EXPECT_EQ(k.Fault().rfind(c.fault, 0), 0u) << "view " << c.view << ": " << k.Fault();
        // Drawing an item of that view draws nothing and does not crash.
        KernelPlaneRecord* p = MakePlane(k, -1, 1, ZOR_Rect(0, 0, 639, 479), 0);
        MakeItem(k, p, c.view, 0, 0, 10, 10);
        k.UpdateScreen(1);
        EXPECT_EQ(k.Frame()[10 * 640 + 10], 1);
    }
}

TEST(SoftResources, APaletteFileChangesTheColoursPngsAreMappedTo)
{
    TempGame game;
    game.Write("palette.txt", "# index r g b\n200 1 2 3\n");
    game.Write("pictures/1.png", "");
    SoftKernel k;
    ASSERT_TRUE(k.SetGameFolder(game.Dir()));
    EXPECT_EQ(k.Palette().colors[200].g, 2);
    EXPECT_EQ(k.Palette().Nearest(1, 2, 3), 200);
    EXPECT_EQ(k.Palette().colors[15].r, 255); // untouched entries keep the default

    game.Write("palette.txt", "200 1 2\n");
    SoftKernel bad;
    EXPECT_FALSE(bad.SetGameFolder(game.Dir()));
    EXPECT_EQ(bad.Fault(), game.Path("palette.txt") + ":1: expected '<index> <r> <g> <b>', each 0..255");
}

TEST(SoftResources, PngsOfEveryShapeMapOntoThePalette)
{
    TempGame game;
    game.WritePng("p.png", 3, 1, [](int x, int) { return x == 1 ? -1 : 12; });
    SoftBitmap bmp;
    std::string error;
    ASSERT_TRUE(SoftReadPng(game.Path("p.png"), SoftPalette::Default(), &bmp, &error)) << error;
    EXPECT_EQ(bmp.width, 3);
    EXPECT_TRUE(bmp.OpaqueAt(0, 0));
    EXPECT_FALSE(bmp.OpaqueAt(1, 0));
    EXPECT_EQ(bmp.At(2, 0), 12);
    // Truncated data: a clear message, no crash.
    std::string bytes;
    ASSERT_TRUE(SoftReadFile(game.Path("p.png"), &bytes));
    for (std::size_t cut : {std::size_t(0), std::size_t(8), std::size_t(30), bytes.size() - 16}) {
        const std::string part = bytes.substr(0, cut);
        EXPECT_FALSE(SoftReadPngMemory(part.data(), part.size(), "cut.png", SoftPalette::Default(), &bmp, &error));
        EXPECT_EQ(error.rfind("cut.png: ", 0), 0u) << error;
    }
}

// Frames written out: a PNG holds the frame's indices with its palette and
// reads back as the same frame; the GIF stores only what changed, over the
// frame before, and an unchanged frame only lengthens the one before. Played
// back, the GIF shows every frame it was given, for as long as it was given.
TEST(SoftOutput, PngAndGifFramesReadBackAsTheFramesWritten)
{
    TempGame game;
    constexpr int w = 64, h = 48;
    SoftPalette palette; // distinct colours, so that reading back maps each to its own index
    for (int i = 0; i < 256; i++)
        palette.colors[i] = SoftColor{static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(255 - i), 9};
    std::vector<std::uint8_t> a(w * h);
    for (int i = 0; i < w * h; i++)
        a[i] = static_cast<std::uint8_t>(i * 7 % 253);
    std::vector<std::uint8_t> b = a, c, d;
    for (int y = 10; y < 12; y++)
        for (int x = 20; x < 23; x++)
            b[y * w + x] = 255;
    c = b;
    c[w * h - 1] = 254; // the last pixel only
    SoftPalette other = palette;
    other.colors[1] = SoftColor{1, 2, 3};
    const auto place = [](int left, int top, int width, int height) {
        return std::to_string(left) + "," + std::to_string(top) + " " + std::to_string(width) + "x" +
               std::to_string(height);
    };
    struct Given {
        const std::vector<std::uint8_t>* frame;
        const SoftPalette* palette;
    };
    // a, a again, b, c, c with another palette, a.
    const Given given[] = {{&a, &palette}, {&a, &palette}, {&b, &palette}, {&c, &palette}, {&c, &other}, {&a, &other}};
    SoftGifWriter gif;
    std::string error;
    ASSERT_TRUE(gif.Open(game.Path("run.gif"), w, h, &error)) << error;
    for (const Given& g : given)
        ASSERT_TRUE(gif.AddFrame(g.frame->data(), *g.palette, 3, &error)) << error;
    ASSERT_TRUE(gif.Close(&error)) << error;

    int code = 0;
    GifFileType* file = DGifOpenFileName(game.Path("run.gif").c_str(), &code);
    ASSERT_NE(file, nullptr);
    ASSERT_EQ(DGifSlurp(file), GIF_OK);
    struct Stored {
        int left, top, width, height, delay;
        const std::vector<std::uint8_t>* shows;
    };
    // A new palette stores the whole frame; otherwise the box around what changed.
    const Stored expected[] = {{0, 0, w, h, 6, &a},
                               {20, 10, 3, 2, 3, &b},
                               {63, 47, 1, 1, 3, &c},
                               {0, 0, w, h, 3, &c},
                               {20, 10, 44, 38, 3, &a}};
    ASSERT_EQ(file->ImageCount, 5);
    std::vector<std::uint8_t> shown(w * h, 0);
    for (int i = 0; i < file->ImageCount; i++) {
        const SavedImage& image = file->SavedImages[i];
        const GifImageDesc& desc = image.ImageDesc;
        const Stored& want = expected[i];
        EXPECT_EQ(place(desc.Left, desc.Top, desc.Width, desc.Height),
                  place(want.left, want.top, want.width, want.height))
            << "frame " << i;
        GraphicsControlBlock gcb;
        ASSERT_EQ(DGifSavedExtensionToGCB(file, i, &gcb), GIF_OK);
        EXPECT_EQ(gcb.DelayTime, want.delay) << "frame " << i;
        EXPECT_EQ(gcb.DisposalMode, DISPOSE_DO_NOT);
        for (int y = 0; y < desc.Height; y++)
            for (int x = 0; x < desc.Width; x++)
                shown[(desc.Top + y) * w + desc.Left + x] = image.RasterBits[y * desc.Width + x];
        EXPECT_TRUE(shown == *want.shows) << "frame " << i;
    }
    DGifCloseFile(file, &code);

    ASSERT_TRUE(SoftWritePng(game.Path("c.png"), c.data(), w, h, other, &error)) << error;
    SoftBitmap back;
    ASSERT_TRUE(SoftReadPng(game.Path("c.png"), other, &back, &error)) << error;
    EXPECT_TRUE(back.pixels == c);
    std::string bytes;
    ASSERT_TRUE(SoftReadFile(game.Path("c.png"), &bytes));
    EXPECT_EQ(static_cast<int>(bytes[25]), 3) << "an indexed-colour PNG";
}

class SoftMessages : public ::testing::Test {
protected:
    void SetUp() override
    {
        game.Write("messages.txt", "# k1 k2 k3 k4 seq talker text\n"
                                   "100 1 0 0 1 7 \"Hello there.\"\n"
                                   "100 1 0 0 2 8 \"Say \\\"hi\\\" back.\" speech hi.wav\n"
                                   "100 1 0 0 4 7 \"After a gap.\"\n"
                                   "100 2 0 0 1 9 \"Another conversation.\"\n");
        game.WriteWav("hi.wav", 11025, 11025 * 2); // two seconds
        ASSERT_TRUE(k.SetGameFolder(game.Dir()));
    }
    TempGame game;
    SoftKernel k;
};

TEST_F(SoftMessages, AConversationIsReadByKeysThenByNext)
{
    int size = 0;
    ASSERT_TRUE(k.GetMessageSize(100, 1, 0, 0, 1, &size));
    EXPECT_EQ(size, 13);
    std::vector<char> buffer(static_cast<std::size_t>(size));
    EXPECT_EQ(k.GetMessage(100, 1, 0, 0, 1, buffer.data(), size), 7);
    EXPECT_STREQ(buffer.data(), "Hello there.");
    int keys[5];
    k.GetLastMessageKeys(keys);
    EXPECT_EQ(keys[0], 100);
    EXPECT_EQ(keys[4], 1);

    ASSERT_TRUE(k.GetNextMessageSize(&size));
    buffer.assign(static_cast<std::size_t>(size), 'x');
    EXPECT_EQ(k.GetNextMessage(buffer.data(), size), 8);
    EXPECT_STREQ(buffer.data(), "Say \"hi\" back.");
    ASSERT_TRUE(k.GetNextMessageSize(&size)); // the next sequence there is: 4
    buffer.assign(static_cast<std::size_t>(size), 'x');
    EXPECT_EQ(k.GetNextMessage(buffer.data(), size), 7);
    k.GetLastMessageKeys(keys);
    EXPECT_EQ(keys[4], 4);
    EXPECT_FALSE(k.GetNextMessageSize(&size)); // not into the other conversation

    EXPECT_FALSE(k.GetMessageSize(100, 1, 0, 0, 3, &size));
    EXPECT_EQ(k.GetMessage(100, 1, 0, 0, 3, buffer.data(), size), 0);
    // A short buffer gets a cut, terminated text.
    char small[4];
    EXPECT_EQ(k.GetMessage(100, 2, 0, 0, 1, small, 4), 9);
    EXPECT_STREQ(small, "Ano");
    EXPECT_EQ(k.Fault(), "");
}

TEST_F(SoftMessages, SpeechPlaysForTheLengthOfItsWav)
{
    EXPECT_EQ(k.PlayMessageAudio(100, 1, 0, 0, 1, 0, 127, 0), 0); // no speech
    EXPECT_EQ(k.PlayMessageAudio(100, 1, 0, 0, 2, 0, 127, 0), 120);
    for (int i = 0; i < 119; i++)
        k.UpdateScreen(1);
    EXPECT_TRUE(k.IsMessageAudioPlaying(100, 1, 0, 0, 2, nullptr));
    k.UpdateScreen(1);
    EXPECT_FALSE(k.IsMessageAudioPlaying(100, 1, 0, 0, 2, nullptr));
    EXPECT_EQ(k.PlayMessageAudio(100, 1, 0, 0, 2, 0, 127, 0), 120);
    k.StopMessageAudio(100, 1, 0, 0, 2);
    EXPECT_FALSE(k.IsMessageAudioPlaying(100, 1, 0, 0, 2, nullptr));
    k.StopMessageAudio(100, 1, 0, 0, 1); // a message without speech is fine
    EXPECT_EQ(k.Fault(), "");
}

TEST(SoftMessageFile, ABadLineIsNamed)
{
    TempGame game;
    game.Write("messages.txt", "1 2 3 4 1 1 \"ok\"\n1 2 3 4 2 0 \"talker zero\"\n");
    SoftKernel k;
    ASSERT_TRUE(k.SetGameFolder(game.Dir()));
    int size = 0;
    EXPECT_FALSE(k.GetMessageSize(1, 2, 3, 4, 1, &size));
    EXPECT_EQ(k.Fault().rfind(game.Path("messages.txt") + ":2: expected", 0), 0u) << k.Fault();
    // Another folder, with good messages, forgets the bad file.
    TempGame other;
    other.Write("messages.txt", "1 2 3 4 1 1 \"ok\"\n");
    ASSERT_TRUE(k.SetGameFolder(other.Dir()));
    EXPECT_TRUE(k.GetMessageSize(1, 2, 3, 4, 1, &size));
    std::vector<SoftMessage> messages;
    std::string error;
    EXPECT_FALSE(SoftParseMessages("1 1 1 1 1 1 \"a\"\n1 1 1 1 1 2 \"b\"\n", "m", &messages, &error));
    EXPECT_EQ(error, "m:2: a message with these five keys is already given");
}

class SoftRobots : public ::testing::Test {
protected:
    void SetUp() override
    {
        game.Write("robots/40.txt", "rate 3\n"
                                    "frame f.png 1 1\n"
                                    "frame f.png 1 1 cue 7\n"
                                    "frame g.png 0 0\n"
                                    "frame g.png 0 0 cue 9\n");
        game.WriteSolidPng("robots/f.png", 3, 3, 5);
        game.WriteSolidPng("robots/g.png", 2, 2, 6);
        ASSERT_TRUE(k.SetGameFolder(game.Dir()));
        plane = MakePlane(k, -1, 1, ZOR_Rect(100, 100, 299, 299), 0);
    }
    void Frames(int n)
    {
        for (int i = 0; i < n; i++)
            k.UpdateScreen(1);
    }
    TempGame game;
    SoftKernel k;
    KernelPlaneRecord* plane = nullptr;
};

TEST_F(SoftRobots, CuePointsComeOnceInFrameOrderThenTheEnd)
{
    k.InitRobot(40, plane->id, 5, 10, 20, 128);
    k.PrepareRobot(0, 50000, 50000, 50000);
    EXPECT_EQ(k.GetRobotSignal(), 0u); // not playing yet
    EXPECT_FALSE(k.IsRobotPlaying());
    k.PlayRobot();
    EXPECT_TRUE(k.IsRobotPlaying());
    std::vector<std::uint32_t> signals;
    for (int tick = 0; tick < 14; tick++) {
        signals.push_back(k.GetRobotSignal());
        k.UpdateScreen(1);
    }
    // Frames last 3 ticks: frame 1 (cue 7) from tick 3, frame 3 (cue 9) from
    // tick 9, the end at tick 12.
    const std::vector<std::uint32_t> expected = {0, 0, 0, 7, 0, 0, 0, 0, 0, 9, 0, 0, 0xFFFFFFFFu, 0xFFFFFFFFu};
    EXPECT_EQ(signals, expected);
    EXPECT_TRUE(k.IsRobotDone());
    EXPECT_FALSE(k.IsRobotPlaying());
    EXPECT_EQ(k.Fault(), "");
}

TEST_F(SoftRobots, ARobotIsDrawnOnItsPlaneAndPausesAndTerminates)
{
    k.InitRobot(40, plane->id, 5, 10, 20, 128);
    k.PrepareRobot(0, 50000, 50000, 50000);
    k.PlayRobot();
    k.UpdateScreen(1);
    EXPECT_EQ(k.Frame()[(100 + 19) * 640 + 100 + 9], 5); // origin (1, 1) on (10, 20)
    k.PauseRobot();
    Frames(20);
    EXPECT_TRUE(k.IsRobotPlaying()); // paused is still playing
    EXPECT_FALSE(k.IsRobotDone());
    k.PlayRobot();
    Frames(1); // 2 ticks played: still frame 0
    EXPECT_EQ(k.GetRobotSignal(), 0u);
    k.UpdateScreen(1);
    EXPECT_EQ(k.GetRobotSignal(), 7u);
    k.SetRobotPriority(-1);
    k.TerminateRobot();
    EXPECT_TRUE(k.IsRobotDone());
    EXPECT_EQ(k.GetRobotSignal(), 0xFFFFFFFFu);
    k.UpdateScreen(1);
    EXPECT_EQ(k.Frame()[(100 + 19) * 640 + 100 + 9], 1);
}

TEST_F(SoftRobots, AMissingRobotEndsAtOnceWithAFault)
{
    k.InitRobot(41, plane->id, 5, 10, 20, 128);
    k.PrepareRobot(0, 50000, 50000, 50000);
    k.PlayRobot();
    EXPECT_TRUE(k.IsRobotDone()); // a waiting robot never hangs the game
    EXPECT_EQ(k.Fault(), game.Path("robots/41.txt") + ": no such file (robot 41)");
    SoftRobot robot;
    std::vector<std::string> files;
    std::string error;
    EXPECT_FALSE(SoftParseRobotManifest("rate 0\n", "r", &robot, &files, &error));
    EXPECT_EQ(error.rfind("r:1: expected 'rate", 0), 0u);
    EXPECT_FALSE(SoftParseRobotManifest("frame a.png 0 0 cue 0\n", "r", &robot, &files, &error));
    EXPECT_FALSE(SoftParseRobotManifest("rate 2\n", "r", &robot, &files, &error));
    EXPECT_EQ(error, "r: the robot has no frames");
}

} // namespace
