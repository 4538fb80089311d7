// Glkit.cpp - see glkit.h.
#include "glkit.h"

#include "gldefs.h"
#include "glplane.h"

#include "FolderFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {
GLKitLogFunction gLog = 0;

std::string Trim(const std::string& s)
{
    const std::size_t first = s.find_first_not_of(" \t\r");
    if (first == std::string::npos)
        return std::string();
    return s.substr(first, s.find_last_not_of(" \t\r") - first + 1);
}
} // namespace

void GLKitSetLog(GLKitLogFunction log)
{
    gLog = log;
}

void GLKitLog(const std::string& line)
{
    if (gLog)
        gLog(line.c_str());
}

// ----- State -----

const char* const GLKitState::kNowhere = "nowhere";
const char* const GLKitState::kCarried = "carried";

int GLKitState::Get(const std::string& name) const
{
    auto found = mValues.find(name);
    return found == mValues.end() ? 0 : found->second;
}

std::string GLKitState::PlaceOf(const std::string& item) const
{
    auto found = mPlaces.find(item);
    return found == mPlaces.end() ? std::string(kNowhere) : found->second;
}

void GLKitState::WriteValues(void (*write)(void*, const std::string&, const std::string&), void* context) const
{
    for (const auto& value : mValues)
        write(context, "value." + value.first, std::to_string(value.second));
    for (const auto& place : mPlaces)
        write(context, "place." + place.first, place.second);
    for (const std::string& said : mSaid)
        write(context, "said." + said, "1");
}

int GLKitState::ReadValue(const std::string& name, const std::string& value)
{
    const std::size_t dot = name.find('.');
    if (dot == std::string::npos || dot + 1 == name.size())
        return FALSE;
    const std::string kind = name.substr(0, dot), key = name.substr(dot + 1);
    if (kind == "value") {
        char* end = 0;
        errno = 0;
        const long n = std::strtol(value.c_str(), &end, 10);
        if (value.empty() || *end || errno || n < -2147483647L - 1 || n > 2147483647L)
            return FALSE;
        mValues[key] = static_cast<int>(n);
    } else if (kind == "place") {
        mPlaces[key] = value;
    } else if (kind == "said") {
        mSaid.insert(key);
    } else {
        return FALSE;
    }
    return TRUE;
}

void GLKitState::Clear()
{
    mValues.clear();
    mPlaces.clear();
    mSaid.clear();
}

// ----- Folder and files -----

GLKitFolder::GLKitFolder(const std::string& folder, const std::string& language)
    : mFolder(folder.empty() ? std::string(".") : folder), mLanguage(language)
{
}

std::string GLKitFolder::Default(const std::string& name) const
{
    return mFolder + "/" + name;
}

std::string GLKitFolder::InLanguage(const std::string& name) const
{
    return mLanguage.empty() ? std::string() : mFolder + "/lang/" + mLanguage + "/" + name;
}

std::string GLKitFolder::Find(const std::string& name) const
{
    const std::string translated = InLanguage(name);
    return !translated.empty() && GLKitFileExists(translated) ? translated : Default(name);
}

int GLKitFileExists(const std::string& path)
{
    struct stat st;
    return ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

int GLKitReadLines(const std::string& path, std::vector<std::string>* lines, std::string* error)
{
    // Opened as every file of the game folder is: never waiting on a pipe or
    // a device, a regular file only; its size is known before a byte is read.
    std::uint64_t size = 0;
    FolderFileError refused;
    const int fd = FolderFileOpen(path.c_str(), kFolderText, &size, &refused);
    if (fd < 0) {
        *error = refused.text;
        return FALSE;
    }
    if (size > static_cast<std::uint64_t>(kMaxKitFile)) {
        ::close(fd);
        *error = path + ": larger than " + std::to_string(kMaxKitFile) + " bytes";
        return FALSE;
    }
    std::string bytes(static_cast<std::size_t>(size), '\0');
    std::size_t got = 0;
    while (got < bytes.size()) {
        const ssize_t n = ::read(fd, &bytes[got], bytes.size() - got);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0) {
            *error = path + ": " + std::strerror(errno);
            ::close(fd);
            return FALSE;
        }
        if (n == 0)
            break;
        got += static_cast<std::size_t>(n);
    }
    ::close(fd);
    bytes.resize(got);
    lines->clear();
    std::size_t start = 0;
    while (start < bytes.size()) {
        std::size_t end = bytes.find('\n', start);
        if (end == std::string::npos)
            end = bytes.size();
        std::string line = bytes.substr(start, end - start);
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        lines->push_back(line);
        start = end + 1;
    }
    return TRUE;
}

void GLKitNotify(void*, const std::string& file, int line, int fError, const std::string& text)
{
    GLNotify(fError ? GL_NOTICE_ERROR : GL_NOTICE_WARNING, file.c_str(), line, text.c_str());
}

// ----- Names -----

GLKitNames::GLKitNames()
{
    mTexts["use"] = "use %1 on %2";
    mTexts["combine"] = "combine %1 with %2";
    mTexts["nothing"] = "nothing happens";
}

int GLKitNames::Load(const GLKitFolder& folder, GLKitReport report, void* context)
{
    int ok = TRUE;
    const std::string base = folder.Default("names.txt");
    if (GLKitFileExists(base))
        ok = Read(base, report, context);
    const std::string translated = folder.InLanguage("names.txt");
    if (!translated.empty() && GLKitFileExists(translated))
        ok = Read(translated, report, context) && ok;
    return ok;
}

int GLKitNames::Read(const std::string& path, GLKitReport report, void* context)
{
    std::vector<std::string> lines;
    std::string error;
    if (!GLKitReadLines(path, &lines, &error)) {
        report(context, path, 0, TRUE, error);
        return FALSE;
    }
    int ok = TRUE;
    for (std::size_t i = 0; i < lines.size(); i++) {
        const std::string line = Trim(lines[i]);
        const int number = static_cast<int>(i + 1);
        if (line.empty() || line[0] == '#')
            continue;
        int width = 0, size = 0;
        char extra = 0;
        if (line.compare(0, 7, "layout ") == 0) {
            if (std::sscanf(line.c_str() + 7, "%d %d %c", &width, &size, &extra) != 2 || width < 1 || size < 6 ||
                size > 96) {
                report(context, path, number, TRUE, "a layout is \"layout <width> <size>\" (size 6..96)");
                ok = FALSE;
            } else {
                mWidth = width;
                mSize = size;
            }
            continue;
        }
        const std::size_t eq = line.find('=');
        const std::string key = eq == std::string::npos ? std::string() : Trim(line.substr(0, eq));
        if (key.empty() || key.find_first_of(" \t") != std::string::npos) {
            report(context, path, number, TRUE, "a name is \"<key> = <text>\"");
            ok = FALSE;
            continue;
        }
        mTexts[key] = Trim(line.substr(eq + 1));
        mLines[key] = number;
    }
    return ok;
}

std::string GLKitNames::Text(const std::string& key) const
{
    auto found = mTexts.find(key);
    return found == mTexts.end() ? key : found->second;
}

std::string GLKitFill(const std::string& pattern, const std::string& first, const std::string& second)
{
    std::string out;
    for (std::size_t i = 0; i < pattern.size(); i++) {
        if (pattern[i] == '%' && i + 1 < pattern.size() && (pattern[i + 1] == '1' || pattern[i + 1] == '2')) {
            out += pattern[i + 1] == '1' ? first : second;
            i++;
        } else {
            out += pattern[i];
        }
    }
    return out;
}

std::string GLKitNames::Use(const std::string& item, const std::string& target) const
{
    return GLKitFill(Text("use"), Text(item), Text(target));
}

std::string GLKitNames::Combine(const std::string& item, const std::string& other) const
{
    return GLKitFill(Text("combine"), Text(item), Text(other));
}

// ----- A block of text on screen -----

GLKitText::GLKitText(GLKitTextOps* pOps, AbsGLPlane* pPlane, const GLKitStyle& style, int iPriority)
    : mpOps(pOps), mpPlane(pPlane), mStyle(style), mPriority(iPriority), mBitmap(&mMemId)
{
    GL_ASSERT(pOps);
    GL_ASSERT(pPlane);
}

GLKitText::~GLKitText()
{
    Clear();
}

void GLKitText::Clear()
{
    // The screen item goes before its bitmap: it checks the bitmap at every use.
    delete mpItem;
    mpItem = 0;
    if (mMemId)
        mpOps->FreeMemBitmap(mMemId);
    mMemId = 0;
    mText.clear();
    mWidth = mHeight = 0;
}

void GLKitText::Show(const std::string& text, const GLPoint& pos, int maxWidth, int ink)
{
    if (ink < 0)
        ink = mStyle.mInk;
    if (mpItem && text == mText && ink == mInk && pos.GetX() == mPos.GetX() && pos.GetY() == mPos.GetY())
        return;
    Clear();
    if (text.empty())
        return;
    const int pad = mStyle.mPaper >= 0 ? 4 : 0;
    int width = mpOps->TextWidth(text.c_str(), mStyle.mSize);
    if (maxWidth > 0 && width > maxWidth)
        width = maxWidth;
    // The wrapped height is learnt by drawing once into a bitmap of full height.
    const int tall = 480;
    std::uint16_t scratch = mpOps->CreateMemBitmap(width + 2 * pad, tall, mStyle.mTransparent, -1);
    int height = scratch ? mpOps->DrawText(scratch, pad, pad, text.c_str(), ink, mStyle.mSize, maxWidth) : -1;
    if (scratch)
        mpOps->FreeMemBitmap(scratch);
    if (height <= 0)
        height = mStyle.mSize;
    mWidth = width + 2 * pad;
    mHeight = height + 2 * pad;
    if (mHeight > tall)
        mHeight = tall;
    mMemId = mpOps->CreateMemBitmap(mWidth, mHeight, mStyle.mPaper >= 0 ? mStyle.mPaper : mStyle.mTransparent,
                                    mStyle.mTransparent);
    if (!mMemId)
        return;
    mpOps->DrawText(mMemId, pad, pad, text.c_str(), ink, mStyle.mSize, maxWidth);
    mText = text;
    mInk = ink;
    mPos = pos;
    mpItem = GL_NEW GLScreenItem(mpPlane, &mBitmap, pos, mPriority, kFullSizeScale);
    GL_ASSERT(mpItem);
    mpItem->Show();
}

ZOR_Rect GLKitText::Rect() const
{
    if (!mpItem)
        return ZOR_Rect(0, 0, -1, -1);
    return ZOR_Rect(mPos.GetX(), mPos.GetY(), mPos.GetX() + mWidth - 1, mPos.GetY() + mHeight - 1);
}
