// Movies and the movie player, call by call.
#include "QuindleTest.h"
#include "glmovie.h"

namespace {

using MovieTest = QuindleTest;

TEST_F(MovieTest, AVmdMovieIsOpenedByNumberAndPlayedWithItsSettings)
{
    GLMoviePlayer player(42, 0);
    std::size_t mark = k.Mark();
    player.Play(); // not open yet: opened first, with cache size -1 and argument 0
    EXPECT_EQ(k.CallsSince(mark),
              (std::vector<std::string>{"GetVmdStatus()", "OpenVmd(\"42.VMD\",-1,0)", "PlayVmd(3,-1,-1)"}));
    GLVmdMovie* movie = static_cast<GLVmdMovie*>(player.GetMovie());
    movie->SetMovieEvent(5, 7, 9);
    mark = k.Mark();
    player.Play(); // open now (the kernel reports status bit 0)
    EXPECT_EQ(k.CallsSince(mark), (std::vector<std::string>{"GetVmdStatus()", "PlayVmd(5,7,9)"}));

    // Pause, Cue and Seek of a VMD movie ask nothing of the kernel.
    mark = k.Mark();
    EXPECT_EQ(player.Pause(), 0u);
    EXPECT_EQ(player.Cue(3), 0u);
    EXPECT_EQ(player.Seek(3), 0u);
    EXPECT_TRUE(k.CallsSince(mark).empty());

    // Placement: SetPos replaces the show flags, so it drops the RGB bit.
    movie->SetRGBParams(RGBStruct{1, 2, 3}, TRUE);
    movie->SetPos(GLPoint(10, 20), 4, FALSE);
    movie->SetPos(GLPoint(10, 20), 4, TRUE);
    EXPECT_EQ(k.CallsNamed("SetVmdPlacement"),
              (std::vector<std::string>{"SetVmdPlacement(0,0,16,1,2,3)", "SetVmdPlacement(10,20,4,1,2,3)"}));
    player.Close();
    EXPECT_EQ(k.Calls().back(), "CloseVmd()");
    EXPECT_EQ(player.GetMovie(), movie); // Close keeps the movie with the player
}

TEST_F(MovieTest, AnAviMovieNamesItselfInEveryCall)
{
    GLMoviePlayer player;
    const std::size_t mark = k.Mark();
    player.Open(3010, 1, 77); // the open argument is not used by AVI
    EXPECT_EQ(k.CallsSince(mark), (std::vector<std::string>{"OpenAvi(3010,\"3010.AVI\")"}));
    GLAviMovie* movie = static_cast<GLAviMovie*>(player.GetMovie());
    player.Play();
    EXPECT_EQ(k.Calls().back(), "PlayAvi(3010,0,0,2,0)");
    movie->SetPlayEvent(1, 2, aviPlayType1, 4);
    player.Play();
    EXPECT_EQ(k.Calls().back(), "PlayAvi(3010,1,2,1,4)");
    player.Pause();
    player.Resume();
    player.Cue(12);
    player.Seek(13);
    player.Stop();
    EXPECT_EQ(k.CallsSince(k.Mark() - 5), (std::vector<std::string>{"PauseAvi(3010)", "ResumeAvi(3010)",
                                                                    "CueAvi(3010,12)", "SeekAvi(3010,13)",
                                                                    "StopAvi(3010)"}));
    EXPECT_EQ(movie->SetMovieEvent(6), 0u);
    EXPECT_EQ(k.Calls().back(), "SetAviEvent(6)");

    // SetPos: flags bit 0 places at once whatever apply says; else apply sizes too.
    movie->SetPos(GLPoint(5, 6), 0, FALSE);
    EXPECT_EQ(k.Count("SetAviPos") + k.Count("SetAviRect"), 0);
    movie->SetPos(GLPoint(5, 6), 1, FALSE);
    EXPECT_EQ(k.Calls().back(), "SetAviPos(3010,5,6)");
    movie->SetWidthHeight(320, 200, FALSE);
    movie->SetPos(GLPoint(7, 8), 0, TRUE);
    EXPECT_EQ(k.Calls().back(), "SetAviRect(3010,7,8,320,200)");
    movie->SetWidthHeight(100, 50, TRUE);
    EXPECT_EQ(k.Calls().back(), "SetAviRect(3010,7,8,100,50)");
}

TEST_F(MovieTest, StatusBitsAreReadAsDocumented)
{
    GLVmdMovie vmd(1);
    k.vmdStatus = 1; // open, not paused
    EXPECT_TRUE(vmd.IsOpen());
    EXPECT_TRUE(vmd.IsPaused()); // both low bits are tested together
    k.vmdStatus = 2;
    EXPECT_FALSE(vmd.IsOpen());
    EXPECT_TRUE(vmd.IsPaused());
    k.vmdStatus = 0;
    EXPECT_FALSE(vmd.IsPaused());
    GLAviMovie avi(9);
    k.aviStatus[9] = 3;
    EXPECT_TRUE(avi.IsOpen());
    EXPECT_EQ(k.Calls().back(), "GetAviStatus(9)");
    GLAviMovie copy(avi);
    EXPECT_EQ(copy.GetMovieNumber(), 9);
    EXPECT_EQ(copy.GetMovieKind(), 1);
}

TEST_F(MovieTest, ThePlayerDeletesOnlyTheMovieItMade)
{
    GLVmdMovie* mine = new GLVmdMovie(5);
    {
        GLMoviePlayer borrowing(mine);
        borrowing.Play();
    }
    EXPECT_EQ(k.Ledger().LiveCount(), 2u); // the movie and its position are still the caller's
    {
        GLMoviePlayer making(6, 1);
        // Playing the caller's movie in place of its own deletes its own first.
        making.Play(mine);
        GLMoviePlayer copy(making); // a copy never owns
    }
    delete mine;
    EXPECT_EQ(k.Ledger().LiveCount(), 0u);
}

TEST_F(MovieTest, MisuseEndsWithTheExactReport)
{
    GLMoviePlayer empty;
    EXPECT_GL_ASSERT(empty.Play(), "Source/Glmovie.cpp", "mpGLMovie != NULL");
    EXPECT_GL_ASSERT(empty.Close(), "Source/Glmovie.cpp", "mpGLMovie != NULL");
    EXPECT_GL_ASSERT(empty.Open(1), "Source/Glmovie.cpp", "mpGLMovie != NULL");
    EXPECT_GL_ASSERT(GLMoviePlayer(nullptr), "Source/Glmovie.cpp", "pMovie != NULL");
    EXPECT_GL_ASSERT(empty.Play(nullptr), "Source/Glmovie.cpp", "pMovie != NULL");
    EXPECT_GL_ASSERT(empty.Play(1, 2), "Source/Glmovie.cpp", "iMovieKind == 0 || iMovieKind == 1");
    GLMoviePlayer full(1, 0);
    EXPECT_GL_ASSERT(full.Play(2, 0), "Source/Glmovie.cpp", "mpGLMovie == NULL");
    EXPECT_GL_ASSERT(full.Open(2, 1, 0), "Source/Glmovie.cpp", "mpGLMovie == NULL");
    GLAviMovie other(3);
    EXPECT_GL_ASSERT(full.Open(&other, 0), "Source/Glmovie.cpp", "mpGLMovie == NULL");
}

} // namespace
