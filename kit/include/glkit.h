// glkit.h - what every part of the adventure kit shares: the text service it
// draws with, the style of its text, the state a game keeps of its story, the
// game folder with its languages, the table of names, and one line of text
// on screen.
//
// The kit is a library of its own on top of quindle. It knows the library's
// public classes and the kernel interface and nothing else, so it runs on any
// kernel; what a kernel offers beyond the interface (memory bitmaps with text
// drawn into them) reaches it through GLKitTextOps, which the game hands over.
#ifndef QUINDLE_GLKIT_H
#define QUINDLE_GLKIT_H

#include "glpoint.h"
#include "glsi.h"

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

class AbsGLPlane;

#define GLKIT_API __attribute__((visibility("default")))

// The bitmap text operations the kit draws with. A game implements them over
// its kernel's own (the soft kernel's extras have exactly these), a test over
// a recorder. A bitmap is named by a 16-bit memory id, 0 for none; a screen
// item shows it through a KernelMemBitmap.
class GLKIT_API GLKitTextOps {
public:
    virtual ~GLKitTextOps() {}
    // A bitmap of width x height filled with fillColor; pixels of skipColor
    // (-1: none) let what lies below show. 0 when none can be made.
    virtual std::uint16_t CreateMemBitmap(int width, int height, int fillColor, int skipColor) = 0;
    virtual void FreeMemBitmap(std::uint16_t memId) = 0;
    // Fills an inclusive rectangle of the bitmap.
    virtual void FillMemBitmap(std::uint16_t memId, int left, int top, int right, int bottom, int color) = 0;
    // Draws text with its top-left corner at (x, y), wrapped at maxWidth when
    // it is above 0; returns the height drawn, -1 on failure.
    virtual int DrawText(std::uint16_t memId, int x, int y, const char* text, int color, int pixelSize,
                         int maxWidth) = 0;
    // The width of one line of text at that size.
    virtual int TextWidth(const char* text, int pixelSize) = 0;
};

// The text operations of any host object that offers them under these names
// and signatures (the soft kernel's SoftKernelExtras does): the game writes
// GLKitTextAdapter<SoftKernelExtras> text(host->extras) and hands &text over.
template <class Host>
class GLKitTextAdapter : public GLKitTextOps {
public:
    explicit GLKitTextAdapter(Host* pHost) : mpHost(pHost) {}
    std::uint16_t CreateMemBitmap(int width, int height, int fillColor, int skipColor) override
    {
        return mpHost->CreateMemBitmap(width, height, fillColor, skipColor);
    }
    void FreeMemBitmap(std::uint16_t memId) override { mpHost->FreeMemBitmap(memId); }
    void FillMemBitmap(std::uint16_t memId, int left, int top, int right, int bottom, int color) override
    {
        mpHost->FillMemBitmap(memId, left, top, right, bottom, color);
    }
    int DrawText(std::uint16_t memId, int x, int y, const char* text, int color, int pixelSize,
                 int maxWidth) override
    {
        return mpHost->DrawText(memId, x, y, text, color, pixelSize, maxWidth);
    }
    int TextWidth(const char* text, int pixelSize) override { return mpHost->TextWidth(text, pixelSize); }

private:
    Host* mpHost;
};

// How the kit's text looks: the font's pixel size, the ink, the colour of the
// box behind it (-1: none), the ink of a line under the pointer, and the
// transparent colour of the game's palette.
struct GLKIT_API GLKitStyle {
    int mSize = 15;
    int mInk = 1;
    int mPaper = -1;
    int mHighlight = 1;
    int mTransparent = 0;
};

// Where the kit writes what happens ("choose 2: ...", "use bell on gate"): a
// game hands it a function of its own log; null (the default) drops it.
typedef void (*GLKitLogFunction)(const char* line);
GLKIT_API void GLKitSetLog(GLKitLogFunction log);
GLKIT_API void GLKitLog(const std::string& line);

// The kit's part of a game's story, in one plain structure so that a saved
// game can hold it: the game's named values, where each item is, and which
// options marked "once" were said. Dialogues and the inventory read and
// change it; game code may too.
struct GLKIT_API GLKitState {
    // Where an item is when it is nowhere: not yet found, or given away.
    static const char* const kNowhere;
    // Where an item is while the player carries it.
    static const char* const kCarried;

    std::map<std::string, int> mValues;        // named values; a missing one reads 0
    std::map<std::string, std::string> mPlaces; // item key -> place (kCarried, or any name the game uses)
    std::set<std::string> mSaid;               // "<dialogue>/<node>/<option>" of each said once-option

    int Get(const std::string& name) const;
    void Set(const std::string& name, int value) { mValues[name] = value; }
    // kNowhere for an item never placed.
    std::string PlaceOf(const std::string& item) const;
    int IsCarried(const std::string& item) const { return PlaceOf(item) == kCarried; }

    // The state as named values, one call per entry, in a stable order:
    // "value.<name>" with the number in decimal, "place.<item>" with the
    // place, "said.<option>" with "1". ReadValue takes one such pair back and
    // answers FALSE for a name it does not know; Clear empties the state
    // before a restore.
    void WriteValues(void (*write)(void* context, const std::string& name, const std::string& value),
                     void* context) const;
    int ReadValue(const std::string& name, const std::string& value);
    void Clear();
};

// The game folder as the kit reads it. A file named relative to the folder
// ("names.txt", "dialogs/3.txt") is taken from the language's folder
// (lang/<code>/) when it is there, else from the folder itself.
class GLKIT_API GLKitFolder {
public:
    GLKitFolder(const std::string& folder, const std::string& language);
    const std::string& Folder() const { return mFolder; }
    const std::string& Language() const { return mLanguage; }
    // The path of the file to read; in the language's folder when it has one.
    std::string Find(const std::string& name) const;
    // The path in the folder itself, whatever the language.
    std::string Default(const std::string& name) const;
    // The path in the language's folder (empty without a language).
    std::string InLanguage(const std::string& name) const;

private:
    std::string mFolder;
    std::string mLanguage;
};

// Reads a text file of the game folder into lines (ends of line dropped).
// Only regular files are read, up to kMaxKitFile bytes; on failure the error
// names the file and the reason, and FALSE comes back.
const int kMaxKitFile = 1 << 20;
GLKIT_API int GLKitReadLines(const std::string& path, std::vector<std::string>* lines, std::string* error);
// A regular file exists at the path.
GLKIT_API int GLKitFileExists(const std::string& path);

// How the kit tells of a fault in a file: the file, its line (0: the file as
// a whole), whether it is an error (else a warning) and what is wrong.
typedef void (*GLKitReport)(void* context, const std::string& file, int line, int fError, const std::string& text);
// The default report: a host notice (GLNotify) of the same kind.
GLKIT_API void GLKitNotify(void* context, const std::string& file, int line, int fError, const std::string& text);

// The names file (names.txt): one "<key> = <text>" a line; blank lines and
// lines starting with '#' are skipped. A key names a thing on screen or an
// item; "<item>.about" is an item's description; "use", "combine" and
// "nothing" word what the label and the log say while an item is held ("%1"
// and "%2" stand for the two names). A "layout <width> <size>" line gives the
// width a name must fit at that font size. Keys a language's names.txt lacks
// come from the default one.
class GLKIT_API GLKitNames {
public:
    GLKitNames();
    // Reads the default names.txt and then the language's over it. A missing
    // file is no fault (the table is then empty); a malformed line is
    // reported and skipped. FALSE when a file had a fault.
    int Load(const GLKitFolder& folder, GLKitReport report = GLKitNotify, void* context = 0);
    // Reads one names file into the table; lines already there are replaced.
    int Read(const std::string& path, GLKitReport report, void* context);
    // The text of a key, or the key itself when it has none.
    std::string Text(const std::string& key) const;
    int Has(const std::string& key) const { return mTexts.count(key) != 0; }
    // The words for "use X on Y" and "combine X with Y", with the names put in.
    std::string Use(const std::string& item, const std::string& target) const;
    std::string Combine(const std::string& item, const std::string& other) const;
    void Set(const std::string& key, const std::string& text) { mTexts[key] = text; }

    std::map<std::string, std::string> mTexts;
    std::map<std::string, int> mLines; // the line each key was read from
    int mWidth = 600;
    int mSize = 15;
};

// Puts the names in a pattern with "%1" and "%2".
GLKIT_API std::string GLKitFill(const std::string& pattern, const std::string& first, const std::string& second);

// One block of text on a plane, drawn into a memory bitmap of its own and
// shown by a screen item; empty text shows nothing.
class GLKIT_API GLKitText {
public:
    GL_DECLARE_ALLOCATION("kit/include/glkit.h")
    GLKitText(GLKitTextOps* pOps, AbsGLPlane* pPlane, const GLKitStyle& style, int iPriority);
    ~GLKitText();
    GLKitText(const GLKitText&) = delete;
    GLKitText& operator=(const GLKitText&) = delete;
    // Shows the text at pos (plane coordinates), wrapped at maxWidth (0: one
    // line), in the ink given (-1: the style's). Drawing the same again does nothing.
    void Show(const std::string& text, const GLPoint& pos, int maxWidth, int ink = -1);
    void Clear();
    const std::string& GetText() const { return mText; }
    // The rectangle it covers on its plane; empty when nothing is shown.
    ZOR_Rect Rect() const;

private:
    GLKitTextOps* mpOps;
    AbsGLPlane* mpPlane;
    GLKitStyle mStyle;
    int mPriority;
    std::string mText;
    int mInk = -1;
    GLPoint mPos;
    int mWidth = 0;
    int mHeight = 0;
    std::uint16_t mMemId = 0;
    KernelMemBitmap mBitmap;
    GLScreenItem* mpItem = 0;
};

#endif
