// SoftResources.cpp - see SoftResources.h.
#include "SoftResources.h"

#include "SoftText.h"
#include "kernel.h"

#include <sys/stat.h>

#include <array>
#include <cstring>
#include <unordered_set>
#include <iterator>

namespace {

std::string LineRef(const std::string& name, std::size_t index)
{
    return name + ":" + std::to_string(index + 1) + ": ";
}

std::string DirOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string(".") : path.substr(0, slash);
}

// Something is there by that name: a reader will say what is wrong with it
// if it is not a file.
bool FileExists(const std::string& path)
{
    struct stat st;
    return ::stat(path.c_str(), &st) == 0;
}

std::uint32_t ReadLE(const std::string& b, std::size_t at, int bytes)
{
    std::uint32_t v = 0;
    for (int i = bytes - 1; i >= 0; i--)
        v = (v << 8) | static_cast<std::uint8_t>(b[at + i]);
    return v;
}

} // namespace

// ----- readers of the text forms -----

// Splits line i into words; a fault is reported with the file and line.
static bool LineWords(const std::vector<std::string>& lines, std::size_t i, const std::string& name,
                      std::vector<std::string>* words, std::string* error)
{
    std::string fault;
    if (SoftSplitWords(lines[i], words, &fault))
        return true;
    *error = LineRef(name, i) + fault;
    return false;
}

bool SoftParsePalette(const std::string& text, const std::string& name, SoftPalette* palette, std::string* error)
{
    const auto lines = SoftLines(text);
    std::vector<std::string> w;
    for (std::size_t i = 0; i < lines.size(); i++) {
        if (!LineWords(lines, i, name, &w, error))
            return false;
        if (w.empty())
            continue;
        long long v[4];
        if (w.size() != 4 || !SoftParseInt(w[0], 0, 255, &v[0]) || !SoftParseInt(w[1], 0, 255, &v[1]) ||
            !SoftParseInt(w[2], 0, 255, &v[2]) || !SoftParseInt(w[3], 0, 255, &v[3])) {
            *error = LineRef(name, i) + "expected '<index> <r> <g> <b>', each 0..255";
            return false;
        }
        palette->colors[v[0]] = SoftColor{static_cast<std::uint8_t>(v[1]), static_cast<std::uint8_t>(v[2]),
                                          static_cast<std::uint8_t>(v[3])};
    }
    return true;
}

bool SoftParseViewManifest(const std::string& text, const std::string& name, std::vector<SoftCelEntry>* cels,
                           std::string* error)
{
    cels->clear();
    const auto lines = SoftLines(text);
    std::vector<std::string> w;
    std::map<int, std::map<int, bool>> seen;
    for (std::size_t i = 0; i < lines.size(); i++) {
        if (!LineWords(lines, i, name, &w, error))
            return false;
        if (w.empty())
            continue;
        long long loop, cel, ox, oy;
        if (w.size() != 6 || w[0] != "cel" || !SoftParseInt(w[1], 0, 999, &loop) ||
            !SoftParseInt(w[2], 0, 9999, &cel) || !SoftParseInt(w[4], -4096, 4096, &ox) ||
            !SoftParseInt(w[5], -4096, 4096, &oy) || w[3].empty()) {
            *error = LineRef(name, i) +
                     "expected 'cel <loop 0..999> <cel 0..9999> <file.png> <originX> <originY>'";
            return false;
        }
        if (cels->size() == static_cast<std::size_t>(kSoftMaxViewCels)) {
            *error = LineRef(name, i) + "more than the " + std::to_string(kSoftMaxViewCels) + " cels a view may have";
            cels->clear();
            return false;
        }
        if (seen[static_cast<int>(loop)][static_cast<int>(cel)]) {
            *error = LineRef(name, i) + "loop " + std::to_string(loop) + " cel " + std::to_string(cel) +
                     " is given twice";
            return false;
        }
        seen[static_cast<int>(loop)][static_cast<int>(cel)] = true;
        cels->push_back(SoftCelEntry{static_cast<int>(loop), static_cast<int>(cel), w[3], static_cast<int>(ox),
                                     static_cast<int>(oy), static_cast<int>(i) + 1});
    }
    if (cels->empty()) {
        *error = name + ": the view has no cels";
        return false;
    }
    int expectLoop = 0;
    for (const auto& loop : seen) {
        if (loop.first != expectLoop) {
            *error = name + ": loop " + std::to_string(expectLoop) + " is missing (loops are numbered from 0)";
            cels->clear();
            return false;
        }
        int expectCel = 0;
        for (const auto& cel : loop.second) {
            if (cel.first != expectCel) {
                *error = name + ": loop " + std::to_string(loop.first) + " has no cel " + std::to_string(expectCel) +
                         " (cels are numbered from 0)";
                cels->clear();
                return false;
            }
            expectCel++;
        }
        expectLoop++;
    }
    return true;
}

bool SoftParseRobotManifest(const std::string& text, const std::string& name, SoftRobot* robot,
                            std::vector<std::string>* files, std::string* error)
{
    robot->frames.clear();
    files->clear();
    const auto lines = SoftLines(text);
    std::vector<std::string> w;
    for (std::size_t i = 0; i < lines.size(); i++) {
        if (!LineWords(lines, i, name, &w, error))
            return false;
        if (w.empty())
            continue;
        long long a, b, c;
        if (w[0] == "rate" && w.size() == 2 && SoftParseInt(w[1], 1, 3600, &a)) {
            robot->ticksPerFrame = static_cast<int>(a);
        } else if (w[0] == "frame" && (w.size() == 4 || w.size() == 6) && SoftParseInt(w[2], -4096, 4096, &a) &&
                   SoftParseInt(w[3], -4096, 4096, &b) &&
                   (w.size() == 4 || (w[4] == "cue" && SoftParseInt(w[5], 1, 0xFFFFFFFEll, &c)))) {
            if (robot->frames.size() == static_cast<std::size_t>(kSoftMaxFrames)) {
                *error =
                    LineRef(name, i) + "more than the " + std::to_string(kSoftMaxFrames) + " frames a robot may have";
                return false;
            }
            SoftRobotFrame frame;
            frame.bitmap.originX = static_cast<int>(a);
            frame.bitmap.originY = static_cast<int>(b);
            frame.cue = w.size() == 6 ? static_cast<std::uint32_t>(c) : 0;
            robot->frames.push_back(frame);
            files->push_back(w[1]);
        } else {
            *error = LineRef(name, i) +
                     "expected 'rate <ticks 1..3600>' or 'frame <file.png> <originX> <originY> [cue <1..0xFFFFFFFE>]'";
            return false;
        }
    }
    if (robot->frames.empty()) {
        *error = name + ": the robot has no frames";
        return false;
    }
    return true;
}

bool SoftParseMovieManifest(const std::string& text, const std::string& name, SoftMovie* movie,
                            std::vector<std::string>* files, std::string* error)
{
    movie->frames.clear();
    files->clear();
    bool sized = false;
    const auto lines = SoftLines(text);
    std::vector<std::string> w;
    for (std::size_t i = 0; i < lines.size(); i++) {
        if (!LineWords(lines, i, name, &w, error))
            return false;
        if (w.empty())
            continue;
        long long a, b;
        if (w[0] == "movie" && w.size() == 3 && SoftParseInt(w[1], 1, 640, &a) && SoftParseInt(w[2], 1, 480, &b)) {
            movie->width = static_cast<int>(a);
            movie->height = static_cast<int>(b);
            sized = true;
        } else if (w[0] == "rate" && w.size() == 2 && SoftParseInt(w[1], 1, 3600, &a)) {
            movie->ticksPerFrame = static_cast<int>(a);
        } else if (w[0] == "frame" && w.size() == 2) {
            if (files->size() == static_cast<std::size_t>(kSoftMaxFrames)) {
                *error =
                    LineRef(name, i) + "more than the " + std::to_string(kSoftMaxFrames) + " frames a movie may have";
                return false;
            }
            files->push_back(w[1]);
        } else if (w[0] == "palette" && w.size() == 2 && movie->paletteFile.empty()) {
            movie->paletteFile = w[1];
        } else {
            *error = LineRef(name, i) +
                     "expected 'movie <width 1..640> <height 1..480>', 'rate <ticks 1..3600>', 'palette <file.txt>' (once) or 'frame <file.png>'";
            return false;
        }
    }
    if (!sized) {
        *error = name + ": no 'movie <width> <height>' line";
        return false;
    }
    if (files->empty()) {
        *error = name + ": the movie has no frames";
        return false;
    }
    return true;
}

bool SoftParseMessages(const std::string& text, const std::string& name, std::vector<SoftMessage>* messages,
                       std::string* error)
{
    messages->clear();
    // The five keys of every message read, to find one given twice at once.
    using Keys = std::array<int, 5>;
    struct KeysHash {
        std::size_t operator()(const Keys& k) const
        {
            std::uint64_t h = 1469598103934665603ull;
            for (int key : k)
                h = (h ^ static_cast<std::uint32_t>(key)) * 1099511628211ull;
            return static_cast<std::size_t>(h);
        }
    };
    std::unordered_set<Keys, KeysHash> keys;
    const auto lines = SoftLines(text);
    std::vector<std::string> w;
    for (std::size_t i = 0; i < lines.size(); i++) {
        if (!LineWords(lines, i, name, &w, error)) {
            messages->clear();
            return false;
        }
        if (w.empty())
            continue;
        SoftMessage m;
        long long v = 0;
        bool ok = w.size() == 7 || (w.size() == 9 && w[7] == "speech" && !w[8].empty());
        for (int k = 0; ok && k < 5; k++) {
            ok = SoftParseInt(w[k], -2147483647ll - 1, 2147483647ll, &v);
            m.keys[k] = static_cast<int>(v);
        }
        if (ok) {
            ok = SoftParseInt(w[5], 1, 2147483647ll, &v);
            m.talker = static_cast<int>(v);
        }
        if (!ok) {
            *error = LineRef(name, i) +
                     "expected '<key1> <key2> <key3> <key4> <sequence> <talker 1..> \"<text>\" [speech <file.wav>]'";
            messages->clear();
            return false;
        }
        std::string refusal;
        if (messages->size() == static_cast<std::size_t>(kSoftMaxMessages))
            refusal = "more than the " + std::to_string(kSoftMaxMessages) + " messages the file may have";
        else if (w[6].size() > kSoftMaxMessageBytes)
            refusal = "a message of " + std::to_string(w[6].size()) + " bytes, more than the " +
                      std::to_string(kSoftMaxMessageBytes) + " a message may have";
        else if (!keys.insert(Keys{{m.keys[0], m.keys[1], m.keys[2], m.keys[3], m.keys[4]}}).second)
            refusal = "a message with these five keys is already given";
        if (!refusal.empty()) {
            *error = LineRef(name, i) + refusal;
            messages->clear();
            return false;
        }
        m.text = w[6];
        if (w.size() == 9)
            m.speech = w[8];
        messages->push_back(m);
    }
    return true;
}

std::uint32_t SoftWav::DurationTicks() const
{
    if (rate <= 0)
        return 0;
    const std::uint64_t t = (static_cast<std::uint64_t>(frames) * 60 + rate - 1) / rate;
    return t == 0 ? 1 : static_cast<std::uint32_t>(t > 0xFFFFFFF ? 0xFFFFFFF : t);
}

bool SoftParseWav(const std::string& b, const std::string& name, SoftWav* wav, std::string* error)
{
    if (b.size() < 12 || b.compare(0, 4, "RIFF") != 0 || b.compare(8, 4, "WAVE") != 0) {
        *error = name + ": not a WAV file (no RIFF/WAVE header)";
        return false;
    }
    bool haveFormat = false;
    std::size_t at = 12;
    while (at + 8 <= b.size()) {
        const std::string id = b.substr(at, 4);
        const std::uint32_t size = ReadLE(b, at + 4, 4);
        const std::size_t body = at + 8;
        if (size > b.size() - body) {
            *error = name + ": chunk '" + id + "' runs past the end of the file";
            return false;
        }
        if (id == "fmt ") {
            if (size < 16) {
                *error = name + ": format chunk too short";
                return false;
            }
            const std::uint32_t format = ReadLE(b, body, 2);
            wav->channels = static_cast<int>(ReadLE(b, body + 2, 2));
            wav->rate = static_cast<int>(ReadLE(b, body + 4, 4));
            wav->bits = static_cast<int>(ReadLE(b, body + 14, 2));
            if (format != 1 || (wav->channels != 1 && wav->channels != 2) || (wav->bits != 8 && wav->bits != 16) ||
                wav->rate < 1000 || wav->rate > 192000) {
                *error = name + ": only PCM with 1 or 2 channels, 8 or 16 bits, 1000..192000 Hz is read";
                return false;
            }
            haveFormat = true;
        } else if (id == "data") {
            if (!haveFormat) {
                *error = name + ": data chunk before the format chunk";
                return false;
            }
            const std::uint32_t frameBytes = static_cast<std::uint32_t>(wav->channels * wav->bits / 8);
            wav->frames = size / frameBytes;
            const std::size_t count = static_cast<std::size_t>(wav->frames) * wav->channels;
            wav->samples.resize(count);
            for (std::size_t i = 0; i < count; i++) {
                if (wav->bits == 8)
                    wav->samples[i] = static_cast<std::int16_t>((static_cast<std::uint8_t>(b[body + i]) - 128) << 8);
                else
                    wav->samples[i] = static_cast<std::int16_t>(ReadLE(b, body + i * 2, 2));
            }
            return true;
        }
        at = body + size + (size & 1);
    }
    *error = name + (haveFormat ? ": no data chunk" : ": no format chunk");
    return false;
}

// ----- the folder -----

void SoftResources::SetFolder(const std::string& folder)
{
    mFolder = folder.empty() ? std::string(".") : folder;
    while (mFolder.size() > 1 && mFolder.back() == '/')
        mFolder.pop_back();
    mGeneration++;
    mViews.clear();
    mPictures.clear();
    mRobots.clear();
    mMovies.clear();
    mWavs.clear();
    mMessagesRead = false;
    mMessages.clear();
    mHeldPixels = 0;
    mMessagesError.clear();
}

void SoftResources::SetLanguage(const std::string& code)
{
    mLanguage = code;
    mMessagesRead = false;
    mMessages.clear();
    mMessagesError.clear();
}

// The language's messages replace those with the same keys; the rest stay
// as the default file has them. A language without a messages file changes
// nothing.
void SoftResources::OverlayLanguage()
{
    const std::string path = PathOf("lang/" + mLanguage + "/messages.txt");
    std::string text;
    bool missing = false;
    std::vector<SoftMessage> translated;
    if (!SoftReadFile(path, &text, &mMessagesError, &missing)) {
        if (missing)
            mMessagesError.clear();
        return;
    }
    if (!SoftParseMessages(text, path, &translated, &mMessagesError))
        return;
    std::map<std::vector<int>, std::size_t> at;
    for (std::size_t i = 0; i < mMessages.size(); i++)
        at[std::vector<int>(mMessages[i].keys, mMessages[i].keys + 5)] = i;
    for (SoftMessage& m : translated) {
        auto found = at.find(std::vector<int>(m.keys, m.keys + 5));
        if (found != at.end())
            mMessages[found->second] = m;
        else
            mMessages.push_back(m);
    }
}

std::string SoftResources::PathOf(const std::string& relative) const
{
    if (!relative.empty() && relative[0] == '/')
        return relative;
    return mFolder + "/" + relative;
}

bool SoftResources::LoadPalette(SoftPalette* palette, std::string* error)
{
    *palette = SoftPalette::Default();
    const std::string path = PathOf("palette.txt");
    std::string text;
    bool missing = false;
    if (!SoftReadFile(path, &text, error, &missing))
        return missing;
    if (!SoftParsePalette(text, path, palette, error))
        return false;
    mPalette = *palette;
    return true;
}

bool SoftResources::ReadBitmap(const std::string& path, SoftBitmap* out, std::string* error,
                               const SoftPalette* palette)
{
    const int ox = out->originX, oy = out->originY;
    if (!SoftReadPng(path, palette ? *palette : mPalette, out, error))
        return false;
    mHeldPixels += static_cast<std::uint64_t>(out->width) * out->height;
    out->originX = ox;
    out->originY = oy;
    return true;
}

bool SoftResources::Reserve(const std::vector<std::string>& paths, std::string* error) const
{
    std::uint64_t held = mHeldPixels;
    for (const std::string& path : paths) {
        std::uint32_t width = 0, height = 0;
        if (!SoftPngSize(path, &width, &height))
            continue; // the decoder says what is wrong with it
        held += static_cast<std::uint64_t>(width) * height;
        if (held > kSoftMaxHeldPixels) {
            *error = path + ": a PNG of " + std::to_string(width) + "x" + std::to_string(height) +
                     " pixels would make " + std::to_string(held) + " held at once, more than the " +
                     std::to_string(kSoftMaxHeldPixels) + " a game may hold";
            return false;
        }
    }
    return true;
}

const SoftView* SoftResources::View(int view, std::string* error)
{
    auto found = mViews.find(view);
    if (found == mViews.end()) {
        Slot<SoftView>& slot = mViews[view];
        const std::string path = PathOf("views/" + std::to_string(view) + ".txt");
        std::string text;
        std::vector<SoftCelEntry> cels;
        bool missing = false;
        if (!SoftReadFile(path, &text, &slot.error, &missing)) {
            if (missing)
                slot.error += " (view " + std::to_string(view) + ")";
        } else if (SoftParseViewManifest(text, path, &cels, &slot.error)) {
            auto v = std::make_unique<SoftView>();
            std::vector<std::string> files;
            for (const auto& c : cels)
                files.push_back(DirOf(path) + "/" + c.file);
            bool ok = Reserve(files, &slot.error);
            for (std::size_t i = 0; ok && i < cels.size(); i++) {
                const SoftCelEntry& c = cels[i];
                if (static_cast<int>(v->loops.size()) <= c.loop)
                    v->loops.resize(c.loop + 1);
                auto& loop = v->loops[c.loop];
                if (static_cast<int>(loop.size()) <= c.cel)
                    loop.resize(c.cel + 1);
                SoftBitmap& bmp = loop[c.cel];
                bmp.originX = c.originX;
                bmp.originY = c.originY;
                ok = ReadBitmap(files[i], &bmp, &slot.error);
                if (!ok) // the manifest's line tells which cel wanted the picture
                    slot.error += " (" + path + ":" + std::to_string(c.line) + ", loop " + std::to_string(c.loop) +
                                  " cel " + std::to_string(c.cel) + ")";
            }
            if (ok)
                slot.value = std::move(v);
        }
        found = mViews.find(view);
    }
    if (!found->second.value)
        *error = found->second.error;
    return found->second.value.get();
}

void SoftResources::SetPaletteForImages(const SoftPalette& palette)
{
    if (std::memcmp(&palette, &mPalette, sizeof palette) == 0)
        return;
    mPalette = palette;
    const auto dropRead = [](auto& slots) {
        for (auto i = slots.begin(); i != slots.end();)
            i = i->second.put ? std::next(i) : slots.erase(i);
    };
    dropRead(mViews);
    dropRead(mPictures);
    mGeneration++;
}

void SoftResources::PutView(int view, SoftView v)
{
    mGeneration++;
    Slot<SoftView>& slot = mViews[view];
    slot.value = std::make_unique<SoftView>(std::move(v));
    slot.error.clear();
    slot.put = true;
}

void SoftResources::PutPicture(int picture, SoftBitmap b)
{
    mGeneration++;
    Slot<SoftBitmap>& slot = mPictures[picture];
    slot.value = std::make_unique<SoftBitmap>(std::move(b));
    slot.put = true;
    slot.error.clear();
}

const SoftBitmap* SoftResources::Picture(int picture, std::string* error)
{
    auto found = mPictures.find(picture);
    if (found == mPictures.end()) {
        Slot<SoftBitmap>& slot = mPictures[picture];
        auto b = std::make_unique<SoftBitmap>();
        const std::string path = PathOf("pictures/" + std::to_string(picture) + ".png");
        if (Reserve({path}, &slot.error) && ReadBitmap(path, b.get(), &slot.error))
            slot.value = std::move(b);
        found = mPictures.find(picture);
    }
    if (!found->second.value)
        *error = found->second.error;
    return found->second.value.get();
}

const SoftRobot* SoftResources::Robot(std::uint32_t robot, std::string* error)
{
    auto found = mRobots.find(robot);
    if (found == mRobots.end()) {
        Slot<SoftRobot>& slot = mRobots[robot];
        const std::string path = PathOf("robots/" + std::to_string(robot) + ".txt");
        std::string text;
        auto r = std::make_unique<SoftRobot>();
        std::vector<std::string> files;
        bool missing = false;
        if (!SoftReadFile(path, &text, &slot.error, &missing)) {
            if (missing)
                slot.error += " (robot " + std::to_string(robot) + ")";
        } else if (SoftParseRobotManifest(text, path, r.get(), &files, &slot.error)) {
            for (std::string& file : files)
                file = DirOf(path) + "/" + file;
            bool ok = Reserve(files, &slot.error);
            for (std::size_t i = 0; ok && i < files.size(); i++)
                ok = ReadBitmap(files[i], &r->frames[i].bitmap, &slot.error);
            if (ok)
                slot.value = std::move(r);
        }
        found = mRobots.find(robot);
    }
    if (!found->second.value)
        *error = found->second.error;
    return found->second.value.get();
}

const SoftMovie* SoftResources::Movie(const std::string& fileName, std::string* error)
{
    auto found = mMovies.find(fileName);
    if (found == mMovies.end()) {
        Slot<SoftMovie>& slot = mMovies[fileName];
        const std::string path = PathOf(fileName);
        std::string text;
        auto m = std::make_unique<SoftMovie>();
        std::vector<std::string> files;
        bool missing = false;
        if (fileName.empty() || fileName.find('/') != std::string::npos) {
            slot.error = "movie '" + fileName + "': a movie is named by a bare file name in the game folder";
        } else if (!SoftReadFile(path, &text, &slot.error, &missing)) {
            if (missing)
                slot.error += " (movie)";
        } else if (SoftParseMovieManifest(text, path, m.get(), &files, &slot.error)) {
            bool ok = true;
            if (!m->paletteFile.empty()) {
                const std::string palPath = DirOf(path) + "/" + m->paletteFile;
                std::string palText;
                m->palette = mPalette;
                bool missing = false;
                if (!SoftReadFile(palPath, &palText, &slot.error, &missing)) {
                    if (missing)
                        slot.error += " (palette of " + path + ")";
                    ok = false;
                } else {
                    ok = SoftParsePalette(palText, palPath, &m->palette, &slot.error);
                }
                m->hasPalette = ok;
            }
            m->frames.resize(files.size());
            for (std::string& file : files)
                file = DirOf(path) + "/" + file;
            ok = ok && Reserve(files, &slot.error);
            for (std::size_t i = 0; ok && i < files.size(); i++)
                ok = ReadBitmap(files[i], &m->frames[i], &slot.error, m->hasPalette ? &m->palette : nullptr);
            if (ok)
                slot.value = std::move(m);
        }
        found = mMovies.find(fileName);
    }
    if (!found->second.value)
        *error = found->second.error;
    return found->second.value.get();
}

const std::vector<SoftMessage>* SoftResources::Messages(std::string* error)
{
    if (!mMessagesRead) {
        mMessagesRead = true;
        const std::string path = PathOf("messages.txt");
        std::string text;
        if (SoftReadFile(path, &text, &mMessagesError))
            SoftParseMessages(text, path, &mMessages, &mMessagesError);
        else
            mMessagesError += " (the game asks for a message)";
        if (mMessagesError.empty() && !mLanguage.empty())
            OverlayLanguage();
    }
    if (!mMessagesError.empty()) {
        *error = mMessagesError;
        return nullptr;
    }
    return &mMessages;
}

const SoftWav* SoftResources::Wav(const std::string& relative, std::string* error)
{
    const std::string path = PathOf(relative);
    auto found = mWavs.find(path);
    if (found == mWavs.end()) {
        Slot<SoftWav>& slot = mWavs[path];
        std::string bytes;
        auto w = std::make_unique<SoftWav>();
        if (SoftReadFile(path, &bytes, &slot.error, nullptr, kFolderSound) &&
            SoftParseWav(bytes, path, w.get(), &slot.error))
            slot.value = std::move(w);
        found = mWavs.find(path);
    }
    if (!found->second.value)
        *error = found->second.error;
    return found->second.value.get();
}

bool SoftResources::SoundExists(int type, int number) const
{
    if ((type != kResourceSoundEffect && type != kResourceAudio) || number < 0)
        return false;
    return FileExists(PathOf((type == kResourceAudio ? "audio/" : "sfx/") + std::to_string(number) + ".wav"));
}

const SoftWav* SoftResources::Sound(int type, int number, std::string* error)
{
    if ((type != kResourceSoundEffect && type != kResourceAudio) || number < 0) {
        *error = "sound resource " + std::to_string(number) + " of type " + std::to_string(type) +
                 ": sounds are of type 12 or 13 with a number of 0 or more";
        return nullptr;
    }
    return Wav((type == kResourceAudio ? "audio/" : "sfx/") + std::to_string(number) + ".wav", error);
}
