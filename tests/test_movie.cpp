// Movies and the movie player, on the recording kernel.
#include "QuindleTest.h"

#include "glmovie.h"

#include <string>
#include <vector>

namespace {

using Calls = std::vector<std::string>;

class MovieTest : public QuindleTest {
protected:
    // The kernel calls an action makes.
    template <typename Action> Calls CallsOf(Action action)
    {
        const std::size_t mark = k.Mark();
        action();
        return k.CallsSince(mark);
    }
};

TEST_F(MovieTest, VmdMoviePlayedByNumberOpensOnDemandWithTheDefaults)
{
    GLMoviePlayer player(42, 0);
    ASSERT_NE(player.GetMovie(), nullptr);
    EXPECT_EQ(player.GetMovie()->GetMovieKind(), 0);
    // Creating the movie asks nothing of the kernel.
    EXPECT_TRUE(k.Calls().empty());

    k.movieResult = 7;
    EXPECT_EQ(CallsOf([&] { EXPECT_EQ(player.Play(), 7u); }),
              (Calls{"GetVmdStatus()", "OpenVmd(\"42.VMD\",-1,0)", "PlayVmd(3,-1,-1)"}));
    // Open now: played again without reopening.
    EXPECT_EQ(CallsOf([&] { player.Play(); }), (Calls{"GetVmdStatus()", "PlayVmd(3,-1,-1)"}));

    std::size_t mark = k.Mark();
    EXPECT_EQ(player.Stop(), 7u);
    EXPECT_EQ(player.Resume(), 7u);
    EXPECT_EQ(player.Close(), 7u);
    EXPECT_EQ(k.CallsSince(mark), (Calls{"StopVmd()", "ResumeVmd()", "CloseVmd()"}));
    // Close keeps the movie with the player.
    EXPECT_NE(player.GetMovie(), nullptr);
}

TEST_F(MovieTest, VmdMovieHasNoPauseCueOrSeekAndUsesItsSettingsAtOpenAndPlay)
{
    GLVmdMovie movie(120);
    movie.SetCacheSize(4096);
    movie.SetMovieEvent(1, 30, 40);
    GLMoviePlayer player(&movie);
    k.movieResult = 9;

    std::size_t mark = k.Mark();
    EXPECT_EQ(player.Pause(), 0u);
    EXPECT_EQ(player.Cue(15), 0u);
    EXPECT_EQ(player.Seek(15), 0u); // and no call: the list below starts before them
    EXPECT_EQ(player.Open(5), 9u);
    player.Play();
    EXPECT_EQ(k.CallsSince(mark), (Calls{"OpenVmd(\"120.VMD\",4096,5)", "GetVmdStatus()", "PlayVmd(1,30,40)"}));

    // Opened on demand by Play, the movie gets the open argument 0 and the
    // cache size set before.
    k.vmdStatus = 0;
    EXPECT_EQ(CallsOf([&] { player.Play(); }),
              (Calls{"GetVmdStatus()", "OpenVmd(\"120.VMD\",4096,0)", "PlayVmd(1,30,40)"}));
}

TEST_F(MovieTest, AviMoviePlayedByNumberPassesItsNumberAndTheDefaultPlayValues)
{
    GLMoviePlayer player;
    EXPECT_EQ(player.GetMovie(), nullptr);
    k.movieResult = 5;
    EXPECT_EQ(CallsOf([&] { EXPECT_EQ(player.Play(3010, 1), 5u); }),
              (Calls{"GetAviStatus(3010)", "OpenAvi(3010,\"3010.AVI\")", "PlayAvi(3010,0,0,2,0)"}));
    ASSERT_NE(player.GetMovie(), nullptr);
    EXPECT_EQ(player.GetMovie()->GetMovieKind(), 1);

    // Every transport operation names the movie and returns the kernel's answer.
    const std::size_t mark = k.Mark();
    EXPECT_EQ(player.Pause(), 5u);
    EXPECT_EQ(player.Resume(), 5u);
    EXPECT_EQ(player.Cue(12), 5u);
    EXPECT_EQ(player.Seek(340), 5u);
    EXPECT_EQ(player.Stop(), 5u);
    EXPECT_EQ(player.Close(), 5u);
    EXPECT_EQ(k.CallsSince(mark), (Calls{"PauseAvi(3010)", "ResumeAvi(3010)", "CueAvi(3010,12)", "SeekAvi(3010,340)",
                                         "StopAvi(3010)", "CloseAvi(3010)"}));
}

TEST_F(MovieTest, AviOpenIgnoresItsArgumentAndPlayUsesThePlayEvent)
{
    GLAviMovie movie(7);
    movie.SetPlayEvent(11, 22, avi_play_type(5), 44);
    k.movieResult = 3;
    // The event flags go to the kernel at once, not with Play.
    EXPECT_EQ(CallsOf([&] { EXPECT_EQ(movie.SetMovieEvent(9), 3u); }), (Calls{"SetAviEvent(9)"}));

    GLMoviePlayer player;
    const std::size_t mark = k.Mark();
    EXPECT_EQ(player.Open(&movie, 99), 3u);
    EXPECT_EQ(player.GetMovie(), &movie);
    player.Play();
    EXPECT_EQ(k.CallsSince(mark), (Calls{"OpenAvi(7,\"7.AVI\")", "GetAviStatus(7)", "PlayAvi(7,11,22,5,44)"}));
}

TEST_F(MovieTest, FileNamesAreTheNumberWithAnUpperCaseExtensionAndNoPath)
{
    struct Case {
        int number;
        int kind;
        const char* call;
    };
    const Case cases[] = {
        {0, 0, "OpenVmd(\"0.VMD\",-1,0)"},
        {-2147483647 - 1, 0, "OpenVmd(\"-2147483648.VMD\",-1,0)"},
        {2147483647, 1, "OpenAvi(2147483647,\"2147483647.AVI\")"},
        {-2147483647 - 1, 1, "OpenAvi(-2147483648,\"-2147483648.AVI\")"},
    };
    for (const Case& c : cases) {
        GLMoviePlayer player;
        EXPECT_EQ(CallsOf([&] { player.Open(c.number, c.kind, 0); }), (Calls{c.call}));
    }
    // The kinds' default constructors use the number -1.
    GLVmdMovie vmd;
    GLAviMovie avi;
    GLMoviePlayer vmdPlayer(&vmd);
    GLMoviePlayer aviPlayer(&avi);
    const std::size_t mark = k.Mark();
    vmdPlayer.Open(0);
    aviPlayer.Open(0);
    EXPECT_EQ(k.CallsSince(mark), (Calls{"OpenVmd(\"-1.VMD\",-1,0)", "OpenAvi(-1,\"-1.AVI\")"}));
}

TEST_F(MovieTest, VmdPlacementCarriesTheShowFlagsAndTheColourParameters)
{
    GLVmdMovie movie(8);
    const std::size_t mark = k.Mark();
    movie.SetPos(GLPoint(10, 20), 4, FALSE); // stored only
    movie.SetRGBParams(RGBStruct{1, 2, 3}, TRUE);
    // The colour parameters add show flag 0x10 to the 4 already there.
    movie.SetRGBParams(RGBStruct{4, 5, 6}, FALSE);
    // SetPos replaces all the show flags: 0x10 is gone unless given again.
    movie.SetPos(GLPoint(-5, 6), 1, TRUE);
    movie.SetPos(GLPoint(7, 8), 0x11, 2);
    EXPECT_EQ(k.CallsSince(mark), (Calls{"SetVmdPlacement(10,20,20,1,2,3)", "SetVmdPlacement(-5,6,1,4,5,6)",
                                         "SetVmdPlacement(7,8,17,4,5,6)"}));
}

TEST_F(MovieTest, AviPlacementMovesWithFlagBitZeroAndOtherwiseOnlyWhenApplied)
{
    GLAviMovie movie(31);
    std::size_t mark = k.Mark();
    // Flags 0, apply 0: the point and the size are only stored.
    movie.SetPos(GLPoint(3, 4), 0, FALSE);
    movie.SetWidthHeight(160, 120, FALSE);

    // Bit 0 places the movie whatever apply says; the stored size is not used.
    movie.SetPos(GLPoint(50, 60), 1, FALSE);
    movie.SetPos(GLPoint(51, 61), 3, TRUE);
    // Without bit 0, apply places and sizes it with the stored size.
    movie.SetPos(GLPoint(70, 80), 2, TRUE);
    movie.SetWidthHeight(320, 240, TRUE);
    EXPECT_EQ(k.CallsSince(mark), (Calls{"SetAviPos(31,50,60)", "SetAviPos(31,51,61)", "SetAviRect(31,70,80,160,120)",
                                         "SetAviRect(31,70,80,320,240)"}));
}

TEST_F(MovieTest, OpenAndPausedAreReadFromTheKernelsStatusBits)
{
    GLVmdMovie vmd(1);
    GLAviMovie avi(2);
    // IsPaused tests both low bits: an open movie that is not paused counts.
    const struct {
        unsigned status;
        int open;
        int paused;
    } cases[] = {{0, 0, 0}, {1, 1, 1}, {2, 0, 2}, {3, 1, 3}, {4, 0, 0}, {7, 1, 3}};
    for (const auto& c : cases) {
        k.vmdStatus = c.status;
        k.aviStatus[2] = c.status;
        EXPECT_EQ(vmd.GetStatus(), c.status);
        EXPECT_EQ(vmd.IsOpen(), c.open) << c.status;
        EXPECT_EQ(vmd.IsPaused(), c.paused) << c.status;
        EXPECT_EQ(avi.IsOpen(), c.open) << c.status;
        EXPECT_EQ(avi.IsPaused(), c.paused) << c.status;
    }
    // Another AVI movie's status is its own.
    k.aviStatus[2] = 1;
    EXPECT_EQ(GLAviMovie(3).IsOpen(), 0);
}

TEST_F(MovieTest, APlayerDeletesOnlyTheMovieItCreatedAndNeverClosesIt)
{
    const std::size_t baseline = k.Ledger().LiveCount();
    {
        GLMoviePlayer player(60, 1);
        // The movie and its point came from the kernel's allocator.
        EXPECT_EQ(k.Ledger().LiveCount(), baseline + 2);
        bool fromMovies = false;
        for (const auto& block : k.Ledger().LiveBlocks())
            fromMovies = fromMovies || block.file == "Source/Glmovie.cpp";
        EXPECT_TRUE(fromMovies);
        player.Play();
    }
    EXPECT_EQ(k.Ledger().LiveCount(), baseline);
    EXPECT_EQ(k.Count("CloseAvi"), 0);

    {
        GLMoviePlayer player;
        player.Open(61, 0, 2);
        EXPECT_EQ(k.Ledger().LiveCount(), baseline + 2);
    }
    EXPECT_EQ(k.Ledger().LiveCount(), baseline);

    // The caller's movie outlives the player; deleting it here would be a
    // double release, which the ledger reports.
    GLVmdMovie* pMovie = new GLVmdMovie(62);
    {
        GLMoviePlayer player(pMovie);
        player.Play();
    }
    {
        GLMoviePlayer player;
        player.Open(pMovie, 0);
    }
    EXPECT_EQ(pMovie->GetMovieNumber(), 62);
    delete pMovie;
    EXPECT_EQ(k.Count("CloseVmd"), 0);
}

TEST_F(MovieTest, PlayingTheCallersMovieReleasesTheOneThePlayerCreated)
{
    const std::size_t baseline = k.Ledger().LiveCount();
    GLAviMovie* pCallers = new GLAviMovie(71);
    {
        GLMoviePlayer player(70, 1);
        player.Play();
        std::size_t mark = k.Mark();
        player.Play(pCallers);
        // The created movie is deleted (not closed); the caller's is played.
        EXPECT_EQ(k.Ledger().LiveCount(), baseline + 2);
        EXPECT_EQ(player.GetMovie(), pCallers);
        EXPECT_EQ(k.CallsSince(mark), (Calls{"GetAviStatus(71)", "OpenAvi(71,\"71.AVI\")", "PlayAvi(71,0,0,2,0)"}));
    }
    // The caller still has its movie.
    EXPECT_EQ(k.Ledger().LiveCount(), baseline + 2);
    EXPECT_EQ(pCallers->GetMovieNumber(), 71);

    // A movie the player did not create is left alone, and the player goes on
    // not owning.
    GLAviMovie other(72);
    {
        GLMoviePlayer player(&other);
        player.Play(pCallers);
        EXPECT_EQ(player.GetMovie(), pCallers);
    }
    delete pCallers;
    EXPECT_EQ(k.Ledger().LiveCount(), baseline + 1); // other's point
    EXPECT_EQ(other.GetMovieNumber(), 72);

    // Playing its own movie again keeps it the player's to delete.
    {
        GLMoviePlayer player(73, 0);
        player.Play(player.GetMovie());
        EXPECT_EQ(k.Ledger().LiveCount(), baseline + 3);
    }
    EXPECT_EQ(k.Ledger().LiveCount(), baseline + 1);
}

TEST_F(MovieTest, ACopiedPlayerRunsTheSameMovieWhichIsDeletedOnce)
{
    const std::size_t baseline = k.Ledger().LiveCount();
    GLMoviePlayer* pOwner = new GLMoviePlayer(80, 0);
    const std::size_t withOwner = k.Ledger().LiveCount(); // the player, its movie and the movie's point
    EXPECT_EQ(withOwner, baseline + 3);
    {
        GLMoviePlayer copy(*pOwner);
        EXPECT_EQ(copy.GetMovie(), pOwner->GetMovie());
        EXPECT_EQ(CallsOf([&] { copy.Stop(); }), (Calls{"StopVmd()"}));
    }
    // The copy is gone and the owner's movie is still there.
    EXPECT_EQ(pOwner->GetMovie()->GetMovieNumber(), 80);

    {
        // Assigned another player's movie, an owner deletes the one it made.
        GLMoviePlayer assigned(81, 1);
        assigned = *pOwner;
        EXPECT_EQ(assigned.GetMovie(), pOwner->GetMovie());
        EXPECT_EQ(k.Ledger().LiveCount(), withOwner);
        // Assigning the same movie again changes nothing.
        assigned = *pOwner;
        *pOwner = assigned;
        EXPECT_EQ(k.Ledger().LiveCount(), withOwner);
    }
    delete pOwner;
    EXPECT_EQ(k.Ledger().LiveCount(), baseline);
}

TEST_F(MovieTest, ACopiedMovieKeepsEverySettingAndItsOwnPosition)
{
    GLVmdMovie vmd(90);
    vmd.SetCacheSize(64);
    vmd.SetMovieEvent(2, 5, 6);
    vmd.SetPos(GLPoint(11, 12), 8, FALSE);
    vmd.SetRGBParams(RGBStruct{7, 8, 9}, FALSE);
    GLVmdMovie vmdCopy(vmd);
    GLVmdMovie vmdAssigned;
    vmdAssigned = vmd;
    vmd.SetPos(GLPoint(0, 0), 0, FALSE);

    GLAviMovie avi(91);
    avi.SetPlayEvent(1, 2, avi_play_type(3), 4);
    avi.SetWidthHeight(100, 50, FALSE);
    avi.SetPos(GLPoint(21, 22), 0, FALSE);
    GLAviMovie aviCopy(avi);
    GLAviMovie aviAssigned;
    aviAssigned = avi;
    avi.SetPos(GLPoint(0, 0), 0, FALSE);

    for (GLVmdMovie* pMovie : {&vmdCopy, &vmdAssigned}) {
        GLMoviePlayer player(pMovie);
        k.vmdStatus = 0;
        const std::size_t mark = k.Mark();
        player.Play();
        pMovie->SetRGBParams(RGBStruct{7, 8, 9}, TRUE);
        EXPECT_EQ(k.CallsSince(mark), (Calls{"GetVmdStatus()", "OpenVmd(\"90.VMD\",64,0)", "PlayVmd(2,5,6)",
                                             "SetVmdPlacement(11,12,24,7,8,9)"}));
    }
    for (GLAviMovie* pMovie : {&aviCopy, &aviAssigned}) {
        GLMoviePlayer player(pMovie);
        const std::size_t mark = k.Mark();
        player.Play();
        player.Close();
        pMovie->SetPos(pMovie->GetPos(), 0, TRUE);
        EXPECT_EQ(k.CallsSince(mark), (Calls{"GetAviStatus(91)", "OpenAvi(91,\"91.AVI\")", "PlayAvi(91,1,2,3,4)",
                                             "CloseAvi(91)", "SetAviRect(91,21,22,100,50)"}));
    }
}

TEST_F(MovieTest, MisuseIsReported)
{
    GLVmdMovie movie(1);
    GLMoviePlayer empty;
    EXPECT_GL_ASSERT(GLMoviePlayer(static_cast<AbsGLMovie*>(nullptr)), "Source/Glmovie.cpp", "pMovie != NULL");
    EXPECT_GL_ASSERT(empty.Open(nullptr, 0), "Source/Glmovie.cpp", "pMovie != NULL");
    EXPECT_GL_ASSERT(empty.Play(nullptr), "Source/Glmovie.cpp", "pMovie != NULL");
    EXPECT_GL_ASSERT(empty.Open(0), "Source/Glmovie.cpp", "mpGLMovie != NULL");
    EXPECT_GL_ASSERT(empty.Close(), "Source/Glmovie.cpp", "mpGLMovie != NULL");
    EXPECT_GL_ASSERT(empty.Play(), "Source/Glmovie.cpp", "mpGLMovie != NULL");
    EXPECT_GL_ASSERT(empty.Stop(), "Source/Glmovie.cpp", "mpGLMovie != NULL");
    EXPECT_GL_ASSERT(empty.Pause(), "Source/Glmovie.cpp", "mpGLMovie != NULL");
    EXPECT_GL_ASSERT(empty.Resume(), "Source/Glmovie.cpp", "mpGLMovie != NULL");
    EXPECT_GL_ASSERT(empty.Cue(1), "Source/Glmovie.cpp", "mpGLMovie != NULL");
    EXPECT_GL_ASSERT(empty.Seek(1), "Source/Glmovie.cpp", "mpGLMovie != NULL");
    // Only kinds 0 and 1 exist.
    EXPECT_GL_ASSERT(GLMoviePlayer(1, 2), "Source/Glmovie.cpp", "iMovieKind == 0 || iMovieKind == 1");
    EXPECT_GL_ASSERT(GLMoviePlayer(1, -1), "Source/Glmovie.cpp", "iMovieKind == 0 || iMovieKind == 1");
    EXPECT_GL_ASSERT(empty.Open(1, 2, 0), "Source/Glmovie.cpp", "iMovieKind == 0 || iMovieKind == 1");
    EXPECT_GL_ASSERT(empty.Play(1, 5), "Source/Glmovie.cpp", "iMovieKind == 0 || iMovieKind == 1");
    // A player keeps its movie for life, closed or not.
    GLMoviePlayer holding(&movie);
    holding.Close();
    EXPECT_GL_ASSERT(holding.Open(2, 0, 0), "Source/Glmovie.cpp", "mpGLMovie == NULL");
    EXPECT_GL_ASSERT(holding.Play(2, 1), "Source/Glmovie.cpp", "mpGLMovie == NULL");
    EXPECT_GL_ASSERT(holding.Open(&movie, 0), "Source/Glmovie.cpp", "mpGLMovie == NULL");
    EXPECT_GL_ASSERT(holding.Open(nullptr, 0), "Source/Glmovie.cpp", "pMovie != NULL");
}

} // namespace
