// Glmovie.cpp - movies and the movie player. See include/glmovie.h.
#include "glmovie.h"

#include "gldll.h"

#include <cstdio>

// ----- the abstract movie -----

AbsGLMovie::AbsGLMovie(int iMovieNumber, int iMovieKind)
    : mMovieNumber(iMovieNumber), mPos(0, 0), mMovieKind(iMovieKind), mEventFlags(3), mShowFlags(0), mWidth(0),
      mHeight(0), mCacheSize(-1), mEventValue1(iMovieKind == 1 ? 0 : -1), mEventValue2(-1), mRGB{-1, -1, -1},
      mPlayValue1(0), mPlayType(aviPlayType2), mPlayValue4(0)
{
}

AbsGLMovie::AbsGLMovie(const AbsGLMovie& movie)
    : GLObject(movie), mMovieNumber(movie.mMovieNumber), mPos(movie.mPos), mMovieKind(movie.mMovieKind),
      mEventFlags(movie.mEventFlags), mShowFlags(movie.mShowFlags), mWidth(movie.mWidth), mHeight(movie.mHeight),
      mCacheSize(movie.mCacheSize), mEventValue1(movie.mEventValue1), mEventValue2(movie.mEventValue2),
      mRGB(movie.mRGB), mPlayValue1(movie.mPlayValue1), mPlayType(movie.mPlayType), mPlayValue4(movie.mPlayValue4)
{
}

AbsGLMovie& AbsGLMovie::operator=(const AbsGLMovie& movie)
{
    GLObject::operator=(movie);
    mMovieNumber = movie.mMovieNumber;
    mPos = movie.mPos;
    mMovieKind = movie.mMovieKind;
    mEventFlags = movie.mEventFlags;
    mShowFlags = movie.mShowFlags;
    mWidth = movie.mWidth;
    mHeight = movie.mHeight;
    mCacheSize = movie.mCacheSize;
    mEventValue1 = movie.mEventValue1;
    mEventValue2 = movie.mEventValue2;
    mRGB = movie.mRGB;
    mPlayValue1 = movie.mPlayValue1;
    mPlayType = movie.mPlayType;
    mPlayValue4 = movie.mPlayValue4;
    return *this;
}

AbsGLMovie::~AbsGLMovie() {}

int AbsGLMovie::IsOpen()
{
    return static_cast<int>(GetStatus() & 1u);
}

int AbsGLMovie::IsPaused()
{
    return static_cast<int>(GetStatus() & 3u);
}

unsigned AbsGLMovie::Pause() { return 0; }
unsigned AbsGLMovie::Resume() { return 0; }
unsigned AbsGLMovie::Cue(int) { return 0; }
unsigned AbsGLMovie::Seek(int) { return 0; }

// Any 32-bit number fits the 16 characters with its extension.
void AbsGLMovie::FileName(char* pBuffer, const char* pFormat) const
{
    std::snprintf(pBuffer, 16, pFormat, mMovieNumber);
}

// ----- VMD movies -----

GLVmdMovie::GLVmdMovie() : AbsGLMovie(-1, 0) {}
GLVmdMovie::GLVmdMovie(int iMovieNumber) : AbsGLMovie(iMovieNumber, 0) {}
GLVmdMovie::GLVmdMovie(const GLVmdMovie& movie) : AbsGLMovie(movie) {}

GLVmdMovie& GLVmdMovie::operator=(const GLVmdMovie& movie)
{
    AbsGLMovie::operator=(movie);
    return *this;
}

GLVmdMovie::~GLVmdMovie() {}

unsigned GLVmdMovie::Open(int iOpenArgument)
{
    char name[16];
    FileName(name, "%d.VMD");
    return kernel->OpenVmd(name, mCacheSize, iOpenArgument);
}

unsigned GLVmdMovie::Close() { return kernel->CloseVmd(); }

unsigned GLVmdMovie::Play()
{
    if (!IsOpen())
        Open(0);
    return kernel->PlayVmd(mEventFlags, mEventValue1, mEventValue2);
}

unsigned GLVmdMovie::Stop() { return kernel->StopVmd(); }
unsigned GLVmdMovie::Resume() { return kernel->ResumeVmd(); }
unsigned GLVmdMovie::GetStatus() { return kernel->GetVmdStatus(); }
unsigned GLVmdMovie::GetLength() { return kernel->GetVmdLength(); }
void GLVmdMovie::SetPalette() { kernel->SetVmdPalette(); }

void GLVmdMovie::Place()
{
    kernel->SetVmdPlacement(mPos.GetX(), mPos.GetY(), mShowFlags, mRGB.red, mRGB.green, mRGB.blue);
}

void GLVmdMovie::SetPos(const GLPoint& pos, int iFlags, int fApply)
{
    mPos = pos;
    mShowFlags = iFlags;
    if (fApply)
        Place();
}

void GLVmdMovie::SetCacheSize(int iCacheSize) { mCacheSize = iCacheSize; }

void GLVmdMovie::SetMovieEvent(int iEventFlags, int iEventValue1, int iEventValue2)
{
    mEventFlags = iEventFlags;
    mEventValue1 = iEventValue1;
    mEventValue2 = iEventValue2;
}

void GLVmdMovie::SetRGBParams(RGBStruct rgb, int fApply)
{
    mShowFlags |= 0x10;
    mRGB = rgb;
    if (fApply)
        Place();
}

unsigned GLVmdMovie::GetWidth() { return kernel->GetVmdWidth(); }
unsigned GLVmdMovie::GetHeight() { return kernel->GetVmdHeight(); }
unsigned GLVmdMovie::GetFramesSkipped() { return kernel->GetVmdFramesSkipped(); }
void GLVmdMovie::InitBlobs() { kernel->InitVmdBlobs(); }

int GLVmdMovie::AddBlob(int iValue1, int iValue2, int iValue3, int iValue4, int iValue5)
{
    return kernel->AddVmdBlob(iValue1, iValue2, iValue3, iValue4, iValue5);
}

void GLVmdMovie::DeleteBlob(int iBlob) { kernel->DeleteVmdBlob(iBlob); }
void GLVmdMovie::StopBlobs() { kernel->StopVmdBlobs(); }
void GLVmdMovie::ShowCursor(int fShow) { kernel->ShowVmdCursor(fShow); }

void GLVmdMovie::BlackOut(int iValue1, int iValue2, int iValue3, int iValue4)
{
    kernel->BlackOutVmd(iValue1, iValue2, iValue3, iValue4);
}

void GLVmdMovie::RestrictPalette(int iValue1, int iValue2) { kernel->RestrictVmdPalette(iValue1, iValue2); }

// ----- AVI movies -----

GLAviMovie::GLAviMovie() : AbsGLMovie(-1, 1) {}
GLAviMovie::GLAviMovie(int iMovieNumber) : AbsGLMovie(iMovieNumber, 1) {}
GLAviMovie::GLAviMovie(const GLAviMovie& movie) : AbsGLMovie(movie) {}

GLAviMovie& GLAviMovie::operator=(const GLAviMovie& movie)
{
    AbsGLMovie::operator=(movie);
    return *this;
}

GLAviMovie::~GLAviMovie() {}

void GLAviMovie::Cue(GLCue* pCue)
{
    GLObject::Cue(pCue);
}

unsigned GLAviMovie::Open(int)
{
    char name[16];
    FileName(name, "%d.AVI");
    return kernel->OpenAvi(mMovieNumber, name);
}

unsigned GLAviMovie::Close() { return kernel->CloseAvi(mMovieNumber); }

unsigned GLAviMovie::Play()
{
    if (!IsOpen())
        Open(0);
    return kernel->PlayAvi(mMovieNumber, mPlayValue1, mEventValue1, mPlayType, mPlayValue4);
}

unsigned GLAviMovie::Stop() { return kernel->StopAvi(mMovieNumber); }
unsigned GLAviMovie::Pause() { return kernel->PauseAvi(mMovieNumber); }
unsigned GLAviMovie::Resume() { return kernel->ResumeAvi(mMovieNumber); }
unsigned GLAviMovie::Cue(int iFrame) { return kernel->CueAvi(mMovieNumber, iFrame); }
unsigned GLAviMovie::Seek(int iFrame) { return kernel->SeekAvi(mMovieNumber, iFrame); }
unsigned GLAviMovie::GetStatus() { return kernel->GetAviStatus(mMovieNumber); }
unsigned GLAviMovie::GetLength() { return kernel->GetAviLength(mMovieNumber); }
void GLAviMovie::SetPalette() { kernel->SetAviPalette(mMovieNumber); }
unsigned GLAviMovie::GetFrameNum() { return kernel->GetAviFrameNum(mMovieNumber); }

void GLAviMovie::SetPos(const GLPoint& pos, int iFlags, int fApply)
{
    mPos = pos;
    if (iFlags & 1) {
        mShowFlags |= 1;
        kernel->SetAviPos(mMovieNumber, mPos.GetX(), mPos.GetY());
    } else if (fApply) {
        kernel->SetAviRect(mMovieNumber, mPos.GetX(), mPos.GetY(), mWidth, mHeight);
    }
}

void GLAviMovie::SetWidthHeight(int iWidth, int iHeight, int fApply)
{
    mWidth = iWidth;
    mHeight = iHeight;
    if (fApply)
        kernel->SetAviRect(mMovieNumber, mPos.GetX(), mPos.GetY(), iWidth, iHeight);
}

unsigned GLAviMovie::SetMovieEvent(int iEventFlags)
{
    mEventFlags = iEventFlags;
    return kernel->SetAviEvent(iEventFlags);
}

void GLAviMovie::SetPlayEvent(int iPlayValue1, int iEventValue1, avi_play_type playType, int iPlayValue4)
{
    mPlayValue1 = iPlayValue1;
    mEventValue1 = iEventValue1;
    mPlayType = playType;
    mPlayValue4 = iPlayValue4;
}

// ----- the player -----

GLMoviePlayer::GLMoviePlayer() : mpGLMovie(0), mOwnsMovie(FALSE) {}

GLMoviePlayer::GLMoviePlayer(int iMovieNumber, int iMovieKind) : mpGLMovie(0), mOwnsMovie(FALSE)
{
    MakeMovie(iMovieNumber, iMovieKind);
}

GLMoviePlayer::GLMoviePlayer(AbsGLMovie* pMovie) : mpGLMovie(0), mOwnsMovie(FALSE)
{
    GL_ASSERT(pMovie != NULL);
    mpGLMovie = pMovie;
}

// A copy plays the same movie but never owns it: one movie, one owner.
GLMoviePlayer::GLMoviePlayer(const GLMoviePlayer& player)
    : GLObject(player), mpGLMovie(player.mpGLMovie), mOwnsMovie(FALSE)
{
}

GLMoviePlayer& GLMoviePlayer::operator=(const GLMoviePlayer& player)
{
    GLObject::operator=(player);
    // Assigned the movie it already holds (from itself or from a copy), a
    // player that owns it keeps owning it: clearing the flag would leave the
    // movie to nobody.
    if (mpGLMovie == player.mpGLMovie)
        return *this;
    if (mpGLMovie && mOwnsMovie)
        delete mpGLMovie;
    mpGLMovie = player.mpGLMovie;
    mOwnsMovie = FALSE;
    return *this;
}

GLMoviePlayer::~GLMoviePlayer()
{
    if (mpGLMovie && mOwnsMovie)
        delete mpGLMovie;
}

// A kind other than VMD (0) or AVI (1) would leave the player without a movie.
void GLMoviePlayer::MakeMovie(int iMovieNumber, int iMovieKind)
{
    GL_ASSERT(iMovieKind == 0 || iMovieKind == 1);
    if (iMovieKind == 0)
        mpGLMovie = GL_NEW GLVmdMovie(iMovieNumber);
    else
        mpGLMovie = GL_NEW GLAviMovie(iMovieNumber);
    GL_ASSERT(mpGLMovie != NULL);
    mOwnsMovie = TRUE;
}

unsigned GLMoviePlayer::Open(int iOpenArgument)
{
    GL_ASSERT(mpGLMovie != NULL);
    return mpGLMovie->Open(iOpenArgument);
}

unsigned GLMoviePlayer::Open(int iMovieNumber, int iMovieKind, int iOpenArgument)
{
    GL_ASSERT(mpGLMovie == NULL);
    MakeMovie(iMovieNumber, iMovieKind);
    return mpGLMovie->Open(iOpenArgument);
}

unsigned GLMoviePlayer::Open(AbsGLMovie* pMovie, int iOpenArgument)
{
    GL_ASSERT(pMovie != NULL);
    GL_ASSERT(mpGLMovie == NULL);
    mpGLMovie = pMovie;
    return mpGLMovie->Open(iOpenArgument);
}

unsigned GLMoviePlayer::Close()
{
    GL_ASSERT(mpGLMovie != NULL);
    return mpGLMovie->Close();
}

unsigned GLMoviePlayer::Play()
{
    GL_ASSERT(mpGLMovie != NULL);
    return mpGLMovie->Play();
}

unsigned GLMoviePlayer::Play(int iMovieNumber, int iMovieKind)
{
    GL_ASSERT(mpGLMovie == NULL);
    MakeMovie(iMovieNumber, iMovieKind);
    return mpGLMovie->Play();
}

// The player's own movie, if it is replaced, is deleted here rather than
// leaving the destructor to delete the caller's movie in its place.
unsigned GLMoviePlayer::Play(AbsGLMovie* pMovie)
{
    GL_ASSERT(pMovie != NULL);
    if (mpGLMovie && mOwnsMovie && mpGLMovie != pMovie) {
        delete mpGLMovie;
        mOwnsMovie = FALSE;
    }
    mpGLMovie = pMovie;
    return mpGLMovie->Play();
}

unsigned GLMoviePlayer::Stop()
{
    GL_ASSERT(mpGLMovie != NULL);
    return mpGLMovie->Stop();
}

unsigned GLMoviePlayer::Pause()
{
    GL_ASSERT(mpGLMovie != NULL);
    return mpGLMovie->Pause();
}

unsigned GLMoviePlayer::Resume()
{
    GL_ASSERT(mpGLMovie != NULL);
    return mpGLMovie->Resume();
}

unsigned GLMoviePlayer::Cue(int iFrame)
{
    GL_ASSERT(mpGLMovie != NULL);
    return mpGLMovie->Cue(iFrame);
}

unsigned GLMoviePlayer::Seek(int iFrame)
{
    GL_ASSERT(mpGLMovie != NULL);
    return mpGLMovie->Seek(iFrame);
}
