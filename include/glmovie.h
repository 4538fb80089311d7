// glmovie.h - movies: the movie player and the two movie kinds.
//
// Movies are played by the kernel; the library gives them an object model. A
// movie (AbsGLMovie) is a number, a screen position and the settings its
// kernel calls need. Its transport operations (open, close, play, stop, pause,
// resume, cue, seek) are private: a GLMoviePlayer is the only way to run them.
// Game code makes a player, gives it a movie or lets it make one by number and
// kind (0: VMD, 1: AVI), and calls the player's operations. A player is not
// driven per frame; whether a movie is open, playing or paused is asked of the
// kernel (GetStatus, bit 0: open).
//
// A VMD movie is played by the kernel's VMD player, which holds one movie at a
// time; an AVI movie is named by its number in every kernel call. Both name
// their file after the number: "%d.VMD" or "%d.AVI", no path.
#ifndef QUINDLE_GLMOVIE_H
#define QUINDLE_GLMOVIE_H

#include "globject.h"
#include "glpoint.h"

// The red, green and blue parameters of a VMD movie's placement.
struct RGBStruct {
    std::int32_t red;
    std::int32_t green;
    std::int32_t blue;
};

// The AVI play type (the kernel knows its meaning; the library passes it).
enum avi_play_type : std::int32_t { aviPlayType0 = 0, aviPlayType1 = 1, aviPlayType2 = 2 };

class GLMoviePlayer;

class QUINDLE_API AbsGLMovie : public GLObject {
public:
    // Movie number and kind (0: VMD, 1: AVI); every setting at its default.
    AbsGLMovie(int iMovieNumber, int iMovieKind);
    AbsGLMovie(const AbsGLMovie& movie);
    AbsGLMovie& operator=(const AbsGLMovie& movie);
    virtual ~AbsGLMovie();

    // The kernel's length and status of the movie.
    virtual unsigned GetLength() = 0;
    virtual unsigned GetStatus() = 0;
    // Stores the position and flags; see each kind for when it reaches the kernel.
    virtual void SetPos(const GLPoint& pos, int iFlags, int fApply) = 0;
    // Puts the movie's palette into effect.
    virtual void SetPalette() = 0;

    // The notification of every game object stays callable beside the
    // movie's private Cue(int frame).
    using GLObject::Cue;

    // Status bit 0.
    int IsOpen();
    // Status bits 0 and 1 together: non-zero also for a movie that is only open.
    int IsPaused();
    const GLPoint& GetPos() { return mPos; }
    int GetMovieNumber() const { return mMovieNumber; }
    int GetMovieKind() const { return mMovieKind; }

private:
    friend class GLMoviePlayer;
    virtual unsigned Open(int iOpenArgument) = 0;
    virtual unsigned Close() = 0;
    virtual unsigned Play() = 0;
    virtual unsigned Stop() = 0;
    virtual unsigned Pause();
    virtual unsigned Resume();
    virtual unsigned Cue(int iFrame);
    virtual unsigned Seek(int iFrame);

protected:
    // "%d.VMD" or "%d.AVI" of the movie number.
    void FileName(char* pBuffer, const char* pFormat) const;

    std::int32_t mMovieNumber;
    GLPoint mPos;
    std::int32_t mMovieKind;
    std::int32_t mEventFlags;
    std::int32_t mShowFlags;
    std::int32_t mWidth;
    std::int32_t mHeight;
    std::int32_t mCacheSize;
    std::int32_t mEventValue1;
    std::int32_t mEventValue2;
    RGBStruct mRGB;
    std::int32_t mPlayValue1;
    avi_play_type mPlayType;
    std::int32_t mPlayValue4;
};

class QUINDLE_API GLVmdMovie : public AbsGLMovie {
public:
    GLVmdMovie();
    explicit GLVmdMovie(int iMovieNumber);
    GLVmdMovie(const GLVmdMovie& movie);
    GLVmdMovie& operator=(const GLVmdMovie& movie);
    virtual ~GLVmdMovie();

    virtual unsigned GetLength();
    virtual unsigned GetStatus();
    // Stores the point and replaces the show flags; with fApply the kernel
    // places the movie at once.
    virtual void SetPos(const GLPoint& pos, int iFlags, int fApply);
    virtual void SetPalette();

    // Used by the next Open.
    void SetCacheSize(int iCacheSize);
    // The events that end play and their values; used by the next Play.
    void SetMovieEvent(int iEventFlags, int iEventValue1, int iEventValue2);
    // Sets show flag 0x10 and the RGB parameters; with fApply places the movie.
    void SetRGBParams(RGBStruct rgb, int fApply);
    unsigned GetWidth();
    unsigned GetHeight();
    unsigned GetFramesSkipped();
    void InitBlobs();
    int AddBlob(int iValue1, int iValue2, int iValue3, int iValue4, int iValue5);
    void DeleteBlob(int iBlob);
    void StopBlobs();
    void ShowCursor(int fShow);
    void BlackOut(int iValue1, int iValue2, int iValue3, int iValue4);
    void RestrictPalette(int iValue1, int iValue2);

private:
    virtual unsigned Open(int iOpenArgument);
    virtual unsigned Close();
    virtual unsigned Play();
    virtual unsigned Stop();
    virtual unsigned Resume();
    void Place();
};

class QUINDLE_API GLAviMovie : public AbsGLMovie {
public:
    GLAviMovie();
    explicit GLAviMovie(int iMovieNumber);
    GLAviMovie(const GLAviMovie& movie);
    GLAviMovie& operator=(const GLAviMovie& movie);
    virtual ~GLAviMovie();

    // The notification of every game object (it does nothing), declared here
    // because the private Cue(int frame) would hide it.
    virtual void Cue(GLCue* pCue);

    virtual unsigned GetLength();
    virtual unsigned GetStatus();
    // Flags bit 0 places the movie at once (SetAviPos) whatever fApply says;
    // otherwise fApply places and sizes it (SetAviRect).
    virtual void SetPos(const GLPoint& pos, int iFlags, int fApply);
    virtual void SetPalette();

    unsigned GetFrameNum();
    // With fApply the kernel places and sizes the movie at once.
    void SetWidthHeight(int iWidth, int iHeight, int fApply);
    // The AVI event flags go to the kernel at once.
    unsigned SetMovieEvent(int iEventFlags);
    // The play values; used by the next Play.
    void SetPlayEvent(int iPlayValue1, int iEventValue1, avi_play_type playType, int iPlayValue4);

private:
    virtual unsigned Open(int iOpenArgument);
    virtual unsigned Close();
    virtual unsigned Play();
    virtual unsigned Stop();
    virtual unsigned Pause();
    virtual unsigned Resume();
    virtual unsigned Cue(int iFrame);
    virtual unsigned Seek(int iFrame);
};

// Runs a movie's transport operations. A player holds at most one movie for
// its whole life (Close does not let go of it). It deletes the movie on its
// destruction only when it made the movie itself.
class QUINDLE_API GLMoviePlayer : public GLObject {
public:
    // No movie.
    GLMoviePlayer();
    // Makes a movie of that number and kind (0 or 1), not yet opened.
    GLMoviePlayer(int iMovieNumber, int iMovieKind);
    // Uses the caller's movie, which the caller keeps.
    GLMoviePlayer(AbsGLMovie* pMovie);
    // A copy plays the same movie but never owns it: one movie, one owner.
    GLMoviePlayer(const GLMoviePlayer& player);
    // Takes the other player's movie without owning it; a movie this player
    // made is deleted first, unless it is that same movie, which it keeps
    // owning.
    GLMoviePlayer& operator=(const GLMoviePlayer& player);
    virtual ~GLMoviePlayer();

    unsigned Open(int iOpenArgument);
    // Makes a movie of that number and kind, then opens it; the player must
    // hold no movie yet.
    unsigned Open(int iMovieNumber, int iMovieKind, int iOpenArgument);
    // Takes the caller's movie, then opens it; the player must hold no movie yet.
    unsigned Open(AbsGLMovie* pMovie, int iOpenArgument);
    unsigned Close();
    // Plays the movie, opening it first when it is not open.
    unsigned Play();
    // Makes a movie of that number and kind and plays it.
    unsigned Play(int iMovieNumber, int iMovieKind);
    // Plays the caller's movie. A movie the player made before is deleted
    // first; the caller keeps the new one.
    unsigned Play(AbsGLMovie* pMovie);
    unsigned Stop();
    unsigned Pause();
    unsigned Resume();
    unsigned Cue(int iFrame);
    unsigned Seek(int iFrame);
    AbsGLMovie* GetMovie() { return mpGLMovie; }

    // The notification of every game object stays callable beside Cue(int frame).
    using GLObject::Cue;

private:
    void MakeMovie(int iMovieNumber, int iMovieKind);

    AbsGLMovie* mpGLMovie;
    int mOwnsMovie;
};

#endif
