// SoftMovies.h - the soft kernel's VMD and AVI movies.
//
// Movies are read from "%d.VMD" and "%d.AVI" in the game folder (their form
// is in SoftResources.h).
// Status bits of both kinds: 1 open, 2 playing, 4 paused, 8 played to the end.
// PlayVmd plays the whole movie before it returns, composing and handing out a
// frame per tick; with event flag 2 a press or a key ends it early (the event
// is used up), and it returns 1 then, 0 at the movie's end. VMD blobs are
// rectangles of the movie (left, top, right, bottom, block size) shown in
// blocks of that size; BlackOutVmd blacks out a rectangle of the movie. AVI
// movies play alongside the game, above every plane, at their rectangle
// (scaled to it when SetAviRect gave a size); PlayAvi's first two values are
// the first and last frame (0: to the end), play type 1 loops. With SetAviEvent
// flag 2, a press or key ends every playing AVI movie. An AVI's frame follows
// the clock: Advance moves it there before a frame is drawn, and PauseAvi
// stops it at the clock's frame whether or not that frame was drawn.
//
// The kernel drives a VMD's play: it asks BeginVmd, then composes and hands
// out frames while VmdHasFrame, NextVmdFrame after each, and EndVmd. The
// operations named as in the kernel interface behave as described there.
#ifndef QUINDLE_SOFT_MOVIES_H
#define QUINDLE_SOFT_MOVIES_H

#include "SoftHost.h"
#include "SoftResources.h"
#include "kernel.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

class SoftCompositor;

class SoftMovies {
public:
    // Status bits of both kinds.
    enum : unsigned { kOpen = 1, kPlaying = 2, kPaused = 4, kEnded = 8 };

    SoftMovies(SoftServiceHost& host, SoftResources& resources) : mHost(host), mResources(resources) {}
    SoftMovies(const SoftMovies&) = delete;
    SoftMovies& operator=(const SoftMovies&) = delete;

    // Moves every playing AVI to the frame the clock has reached (one that
    // does not loop ends at its last frame); done before a frame is drawn.
    void Advance();
    // Draws the playing VMD and the showing AVIs over the composed planes.
    void Draw(SoftCompositor& compositor, const SoftPalette& palette) const;
    // A press or a key arrived: with AVI event flag 2, it ends every playing AVI.
    void InputArrived();
    // True while a playing VMD hides the cursor.
    bool HidesCursor() const;

    unsigned OpenVmd(const char* pFileName, int iCacheSize, int iOpenArgument);
    void SetVmdPlacement(int x, int y, int iFlags, int iRed, int iGreen, int iBlue);
    // Starts play from where it stopped (from the start once ended); returns
    // the ticks each frame shows, 0 when no movie is open.
    int BeginVmd();
    bool VmdHasFrame() const;
    void NextVmdFrame();
    // Play is over: the last frame stays, the movie is marked ended when it got there.
    void EndVmd();
    // Whether ResumeVmd has anything to play.
    bool CanResumeVmd() const;
    unsigned StopVmd();
    unsigned CloseVmd();
    unsigned GetVmdLength();
    unsigned GetVmdStatus();
    unsigned GetVmdFramesSkipped();
    // The palette with the movie's colours in the restricted range; false when
    // the movie brings none.
    bool VmdPalette(const SoftPalette& current, SoftPalette* palette) const;
    void RestrictVmdPalette(int iValue1, int iValue2);
    void ShowVmdCursor(int fShow);
    void InitVmdBlobs();
    void StopVmdBlobs();
    int AddVmdBlob(int iValue1, int iValue2, int iValue3, int iValue4, int iValue5);
    void DeleteVmdBlob(int iBlob);
    void BlackOutVmd(int iValue1, int iValue2, int iValue3, int iValue4);
    unsigned GetVmdWidth();
    unsigned GetVmdHeight();

    unsigned OpenAvi(int iMovie, const char* pFileName);
    unsigned CloseAvi(int iMovie);
    void SetAviRect(int iMovie, int x, int y, int iWidth, int iHeight);
    void SetAviPos(int iMovie, int x, int y);
    unsigned PlayAvi(int iMovie, int iValue1, int iValue2, int iPlayType, int iValue4);
    unsigned StopAvi(int iMovie);
    bool IsAviPlaying(int iMovie) const;
    unsigned PauseAvi(int iMovie);
    unsigned CueAvi(int iMovie, int iFrame);
    unsigned SeekAvi(int iMovie, int iFrame);
    unsigned ResumeAvi(int iMovie);
    // The movie's palette, or null when it brings none.
    const SoftPalette* AviPalette(int iMovie) const;
    unsigned GetAviLength(int iMovie);
    unsigned GetAviFrameNum(int iMovie);
    unsigned GetAviStatus(int iMovie);
    unsigned SetAviEvent(int iEventFlags);

private:
    struct Vmd {
        std::string fileName;
        const SoftMovie* movie = nullptr;
        int x = 0, y = 0, flags = 0, red = -1, green = -1, blue = -1;
        unsigned status = 0;
        int frame = 0;
        bool showing = false; // a frame is drawn over the screen while playing
        bool showCursor = true;
        int restrictLow = 0, restrictHigh = 255;
        bool blobsOn = true;
        struct Blob {
            int id;
            int left, top, right, bottom, size;
        };
        std::vector<Blob> blobs;
        int nextBlob = 1;
        std::vector<ZOR_Rect> blackouts;
    };

    struct Avi {
        int number = 0;
        const SoftMovie* movie = nullptr;
        int x = 0, y = 0, width = 0, height = 0;
        unsigned status = 0;
        int first = 0, last = 0, frame = 0;
        bool loop = false;
        std::uint32_t start = 0;  // tick at which `startFrame` showed
        int startFrame = 0;
    };
    Avi* MoveAvi(int iMovie, int iFrame);
    int FrameAtClock(const Avi& a, bool* ended) const;
    void CatchUp(Avi& a);

    SoftServiceHost& mHost;
    SoftResources& mResources;
    std::unique_ptr<Vmd> mVmd;
    std::map<int, std::unique_ptr<Avi>> mAvis;
    unsigned mAviEventFlags = 0;
};

#endif
