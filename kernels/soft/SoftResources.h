// SoftResources.h - the game folder the soft kernel reads its resources from.
//
// Layout of a game folder (every path relative to the folder; names are
// case-sensitive; file names inside a manifest are relative to the manifest's
// own directory):
//
//   palette.txt         optional; lines "<index> <r> <g> <b>" (0..255 each);
//                       entries not given keep the default palette's colour
//   views/<view>.txt    one line per cel: "cel <loop> <cel> <file.png> <originX> <originY>";
//                       loops and the cels of each loop are numbered from 0 without gaps
//   pictures/<n>.png    picture n, drawn with its top-left corner at the plane's origin
//   messages.txt        one line per message:
//                       "<key1> <key2> <key3> <key4> <sequence> <talker> "<text>" [speech <file.wav>]"
//   audio/<n>.wav       sample n as a sound resource of type 13
//   sfx/<n>.wav         sample n as a sound resource of type 12
//   robots/<n>.txt      "rate <ticks a frame>" then one line per frame:
//                       "frame <file.png> <originX> <originY> [cue <value>]"
//   <n>.VMD, <n>.AVI    movies (a text form): "movie <width> <height>", "rate <ticks a frame>",
//                       optionally "palette <file.txt>" (the form of palette.txt),
//                       then one line per frame: "frame <file.png>"
//
// PNG files may be of any colour type: each pixel is mapped to the nearest
// palette colour, and pixels with alpha below 128 are transparent. WAV files are
// PCM, 8 or 16 bits, one or two channels. '#' starts a comment in every text
// file. A resource that is missing or malformed is reported once, as
// "<file>: <what is wrong>" or "<file>:<line>: <what is wrong>".
#ifndef QUINDLE_SOFT_RESOURCES_H
#define QUINDLE_SOFT_RESOURCES_H

#include "SoftImage.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

// A view: loops of cels, each cel a bitmap with its origin.
struct SoftView {
    std::vector<std::vector<SoftBitmap>> loops;
};

// A line of a view manifest, before its PNG is read.
struct SoftCelEntry {
    int loop = 0;
    int cel = 0;
    std::string file;
    int originX = 0;
    int originY = 0;
    int line = 0; // the manifest's line that names it
};

struct SoftRobotFrame {
    SoftBitmap bitmap;
    std::uint32_t cue = 0; // 0: no cue point on this frame
};

struct SoftRobot {
    int ticksPerFrame = 6;
    std::vector<SoftRobotFrame> frames;
};

struct SoftMovie {
    int width = 0;
    int height = 0;
    int ticksPerFrame = 4;
    std::vector<SoftBitmap> frames;
    // A movie may bring its own palette ("palette <file.txt>"); its frames are
    // then mapped onto it, and SetVmdPalette / SetAviPalette put it in force.
    bool hasPalette = false;
    SoftPalette palette;
    std::string paletteFile;
};

struct SoftMessage {
    int keys[5] = {0, 0, 0, 0, 0};
    int talker = 0;
    std::string text;
    std::string speech; // path of the speech WAV, empty when none
};

// What the kernel needs to know of a WAV file, plus its samples for mixing.
struct SoftWav {
    int rate = 0;
    int channels = 0;
    int bits = 0;
    std::uint32_t frames = 0;
    std::vector<std::int16_t> samples; // interleaved, converted to 16 bits
    // Length in ticks, rounded up: a sample of any length plays at least one tick.
    std::uint32_t DurationTicks() const;
};

// What a game folder may hold beyond the size of its files (the table is in
// docs/KERNEL.md), each checked once, before the work it would cause: the
// counts by the reader of their file at the line that passes them, the pixels
// by SoftResources::Reserve from the PNGs' headers.
constexpr std::uint64_t kSoftMaxHeldPixels = 64ull << 20; // pictures', cels' and frames' pixels held decoded
constexpr int kSoftMaxViewCels = 4096;                    // cels in one view
constexpr int kSoftMaxFrames = 10000;                     // frames of one robot or movie
constexpr std::size_t kSoftMaxMessageBytes = 4000;        // the text of one message
constexpr int kSoftMaxMessages = 100000;                  // messages in messages.txt

// ----- the readers of the text forms (each refuses anything it does not know) -----
bool SoftParsePalette(const std::string& text, const std::string& name, SoftPalette* palette, std::string* error);
bool SoftParseViewManifest(const std::string& text, const std::string& name, std::vector<SoftCelEntry>* cels,
                           std::string* error);
// Frame files and origins of a robot manifest; bitmaps are left empty.
bool SoftParseRobotManifest(const std::string& text, const std::string& name, SoftRobot* robot,
                            std::vector<std::string>* files, std::string* error);
bool SoftParseMovieManifest(const std::string& text, const std::string& name, SoftMovie* movie,
                            std::vector<std::string>* files, std::string* error);
bool SoftParseMessages(const std::string& text, const std::string& name, std::vector<SoftMessage>* messages,
                       std::string* error);
bool SoftParseWav(const std::string& bytes, const std::string& name, SoftWav* wav, std::string* error);

// The resources of one game folder, read on first use and kept.
class SoftResources {
public:
    SoftResources() = default;
    explicit SoftResources(const std::string& folder) { SetFolder(folder); }

    // Reads from that folder from now on, dropping everything read before.
    void SetFolder(const std::string& folder);
    const std::string& Folder() const { return mFolder; }

    // palette.txt, or the default palette when the folder has none.
    bool LoadPalette(SoftPalette* palette, std::string* error);
    // The view, picture, robot or movie; null with `error` set when missing or
    // malformed. A failure is remembered and answered the same way again.
    const SoftView* View(int view, std::string* error);
    const SoftBitmap* Picture(int picture, std::string* error);
    const SoftRobot* Robot(std::uint32_t robot, std::string* error);
    const SoftMovie* Movie(const std::string& fileName, std::string* error);
    // The message store (messages.txt); null with `error` set when the file is
    // missing or malformed: a game that asks for a message needs the file.
    const std::vector<SoftMessage>* Messages(std::string* error);
    // Sound resource of type 12 or 13; null when it does not exist.
    const SoftWav* Sound(int type, int number, std::string* error);
    bool SoundExists(int type, int number) const;
    // A WAV named by path relative to the folder (speech).
    const SoftWav* Wav(const std::string& path, std::string* error);
    // Messages of a language: lang/<code>/messages.txt replaces the default's
    // messages with the same keys (and adds its own); "" is the default only.
    void SetLanguage(const std::string& code);
    const std::string& Language() const { return mLanguage; }
    // Path of a file in the folder.
    std::string PathOf(const std::string& relative) const;
    // Registers a view made in memory (tests, generated games); replaces a cached one.
    void PutView(int view, SoftView v);
    void PutPicture(int picture, SoftBitmap b);
    // The palette pictures read from files are matched to. A different one
    // drops the views and pictures read before (not those put in memory), so
    // that they are read again with it; a robot keeps the frames it has.
    void SetPaletteForImages(const SoftPalette& palette);
    // Grows whenever a view or picture handed out before may have been
    // replaced or dropped (a new folder, PutView, PutPicture).
    std::uint64_t Generation() const { return mGeneration; }

private:
    template <class T> struct Slot {
        std::unique_ptr<T> value;
        std::string error;
        bool put = false; // made in memory (PutView, PutPicture), not read
    };
    // Whether the PNGs of one resource, by their headers, fit beside what is
    // held already; else false with `error` naming the file that passes
    // kSoftMaxHeldPixels. Asked before any of them is decoded.
    bool Reserve(const std::vector<std::string>& paths, std::string* error) const;
    void OverlayLanguage();
    bool ReadBitmap(const std::string& path, SoftBitmap* out, std::string* error, const SoftPalette* palette = nullptr);

    std::string mFolder = ".";
    SoftPalette mPalette = SoftPalette::Default();
    std::map<int, Slot<SoftView>> mViews;
    std::map<int, Slot<SoftBitmap>> mPictures;
    std::map<std::uint32_t, Slot<SoftRobot>> mRobots;
    std::map<std::string, Slot<SoftMovie>> mMovies;
    std::map<std::string, Slot<SoftWav>> mWavs;
    std::string mLanguage;
    bool mMessagesRead = false;
    std::vector<SoftMessage> mMessages;
    std::string mMessagesError;
    std::uint64_t mGeneration = 1;
    // The pixels of the pictures, cels and frames decoded and held.
    std::uint64_t mHeldPixels = 0;
};

#endif
