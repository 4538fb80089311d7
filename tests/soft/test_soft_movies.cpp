// VMD and AVI movies: status bits, play, frames.
#include "SoftTestSupport.h"

using namespace soft_test;

namespace {

class SoftMovies : public ::testing::Test {
protected:
    void SetUp() override
    {
        game.Write("42.VMD", "movie 4 4\nrate 2\nframe m/a.png\nframe m/b.png\nframe m/a.png\n");
        game.Write("43.AVI", "movie 4 4\nrate 3\nframe m/a.png\nframe m/b.png\nframe m/c.png\npalette m/pal.txt\n");
        game.Write("m/pal.txt", "3 9 9 9\n");
        game.WriteSolidPng("m/a.png", 4, 4, 2);
        game.WriteSolidPng("m/b.png", 4, 4, 4);
        game.WriteSolidPng("m/c.png", 4, 4, 6);
        ASSERT_TRUE(k.SetGameFolder(game.Dir()));
        MakePlane(k, -1, 1, ZOR_Rect(0, 0, 639, 479), 0);
        k.SetFrameHook(&SoftMovies::Seen, this);
    }
    static void Seen(SoftKernel& kernel, void* self)
    {
        static_cast<SoftMovies*>(self)->seen.push_back(kernel.Frame()[10 * 640 + 10]);
    }
    TempGame game;
    SoftKernel k;
    std::vector<int> seen;
};

TEST_F(SoftMovies, AVmdPlaysWholeBeforePlayReturnsUnlessAClickEndsItWhenTheFlagsAskForIt)
{
    EXPECT_EQ(k.GetVmdStatus(), 0u);
    EXPECT_EQ(k.OpenVmd("42.VMD", -1, 0), 0u);
    EXPECT_EQ(k.GetVmdStatus(), SoftKernel::kMovieOpen);
    EXPECT_EQ(k.GetVmdLength(), 3u);
    EXPECT_EQ(k.GetVmdWidth(), 4u);
    k.SetVmdPlacement(8, 8, 0, 0, 0, 0);
    EXPECT_EQ(k.PlayVmd(3, -1, -1), 0u);
    EXPECT_EQ(seen, (std::vector<int>{2, 2, 4, 4, 2, 2}));
    EXPECT_EQ(k.GetTicks(), 6u);
    EXPECT_EQ(k.GetVmdStatus(), SoftKernel::kMovieOpen | SoftKernel::kMovieEnded);
    EXPECT_EQ(k.GetVmdFramesSkipped(), 0u);
    k.UpdateScreen(1);
    EXPECT_EQ(seen.back(), 1); // off the screen once played
    EXPECT_EQ(k.CloseVmd(), 0u);
    EXPECT_EQ(k.GetVmdStatus(), 0u);

    std::vector<SoftInputEvent> events{{8, kEventPointerDown, 0, 0, 5, 5}};
    k.SetScript(events);
    k.OpenVmd("42.VMD", -1, 0);
    k.SetVmdPlacement(8, 8, 0, 0, 0, 0);
    EXPECT_EQ(k.PlayVmd(1, -1, -1), 0u); // flag 2 not set: plays on
    k.OpenVmd("42.VMD", -1, 0);
    events[0].tick = 15;
    k.SetScript(events);
    seen.clear();
    EXPECT_EQ(k.PlayVmd(3, -1, -1), 1u);
    EXPECT_EQ(seen.size(), 2u);
    KernelEventRecord rec{};
    k.GetEvent(kEventMaskAll, &rec);
    EXPECT_EQ(rec.type, 0); // the click was used up
}

TEST_F(SoftMovies, BlobsAndBlackOutsChangeTheVmdPicture)
{
    k.OpenVmd("42.VMD", -1, 0);
    k.SetVmdPlacement(8, 8, 0, 0, 0, 0);
    k.BlackOutVmd(2, 2, 3, 3);
    const int blob = k.AddVmdBlob(0, 0, 1, 1, 2);
    EXPECT_GT(blob, 0);
    k.PlayVmd(3, -1, -1);
    EXPECT_EQ(seen.front(), 0); // (10, 10) is the movie's (2, 2): blacked out
    k.DeleteVmdBlob(blob);
    k.InitVmdBlobs();
    k.StopVmdBlobs();
    k.ShowVmdCursor(0);
    k.RestrictVmdPalette(0, 255);
    k.SetVmdPalette(); // a movie without its own palette changes nothing
    EXPECT_EQ(k.Palette().colors[3].r, SoftPalette::Default().colors[3].r);
}

TEST_F(SoftMovies, AnAviPlaysAlongsideTheGameAndReportsItsFrameAndEnd)
{
    EXPECT_EQ(k.GetAviStatus(43), 0u);
    EXPECT_EQ(k.OpenAvi(43, "43.AVI"), 0u);
    EXPECT_EQ(k.GetAviStatus(43), SoftKernel::kMovieOpen);
    EXPECT_EQ(k.GetAviLength(43), 3u);
    k.SetAviRect(43, 8, 8, 8, 8); // shown twice the size
    EXPECT_EQ(k.PlayAvi(43, 0, 0, 2, 0), 0u);
    EXPECT_EQ(k.GetAviStatus(43), SoftKernel::kMovieOpen | SoftKernel::kMoviePlaying);
    for (int i = 0; i < 3; i++)
        k.UpdateScreen(1);
    EXPECT_EQ(k.Frame()[15 * 640 + 15], 2); // drawn at ticks 0..2: frame 0
    EXPECT_EQ(k.GetAviFrameNum(43), 1u);     // the clock is at 3
    EXPECT_EQ(k.PauseAvi(43), 0u);           // pauses at the clock's frame, not the one last drawn
    for (int i = 0; i < 30; i++)
        k.UpdateScreen(1);
    EXPECT_EQ(k.GetAviFrameNum(43), 1u);
    EXPECT_EQ(k.Frame()[15 * 640 + 15], 4);
    EXPECT_EQ(k.GetAviStatus(43) & SoftKernel::kMoviePaused, SoftKernel::kMoviePaused);
    k.ResumeAvi(43);
    for (int i = 0; i < 6; i++)
        k.UpdateScreen(1);
    EXPECT_EQ(k.GetAviStatus(43), SoftKernel::kMovieOpen | SoftKernel::kMovieEnded);
    EXPECT_EQ(k.GetAviFrameNum(43), 2u);
    k.CueAvi(43, 0);
    EXPECT_EQ(k.GetAviFrameNum(43), 0u);
    k.SeekAvi(43, 2);
    EXPECT_EQ(k.GetAviFrameNum(43), 2u);
    k.SetAviPalette(43);
    EXPECT_EQ(k.Palette().colors[3].r, 9);
    EXPECT_EQ(k.SetAviEvent(2), 0u);
    EXPECT_EQ(k.SetAviEvent(0), 2u);
    EXPECT_EQ(k.StopAvi(43), 0u);
    EXPECT_EQ(k.CloseAvi(43), 0u);
    EXPECT_EQ(k.GetAviStatus(43), 0u);
    EXPECT_EQ(k.Fault(), "");
}

TEST_F(SoftMovies, ALoopingAviWrapsAndAMissingMovieIsAFault)
{
    k.OpenAvi(43, "43.AVI");
    k.SetAviPos(43, 0, 0);
    k.PlayAvi(43, 1, 2, 1, 0);
    for (int i = 0; i < 6; i++)
        k.UpdateScreen(1);
    EXPECT_EQ(k.GetAviFrameNum(43), 1u);
    EXPECT_TRUE(k.GetAviStatus(43) & SoftKernel::kMoviePlaying);
    EXPECT_EQ(k.OpenVmd("7.VMD", -1, 0), 1u);
    EXPECT_EQ(k.Fault(), game.Path("7.VMD") + ": no such file (movie)");
    EXPECT_EQ(k.GetVmdStatus(), 0u);
    EXPECT_EQ(k.PlayVmd(3, -1, -1), 0u);
    SoftMovie movie;
    std::vector<std::string> files;
    std::string error;
    EXPECT_FALSE(SoftParseMovieManifest("rate 2\nframe a.png\n", "v", &movie, &files, &error));
    EXPECT_EQ(error, "v: no 'movie <width> <height>' line");
    EXPECT_FALSE(SoftParseMovieManifest("movie 700 10\n", "v", &movie, &files, &error));
    EXPECT_EQ(error.rfind("v:1: expected", 0), 0u);
}

} // namespace
