// Glsave.cpp - the store of named values and the save file.
#include "glsave.h"

#include "glcursor.h"
#include "gldll.h"
#include "glgame.h"
#include "glkalloc.h"
#include "glplatfm.h"
#include "glsi.h"
#include "glsound.h"
#include "gluser.h"
#include "kernel.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#ifndef QUINDLE_VERSION
#define QUINDLE_VERSION "0"
#endif

namespace {

// A save is small (the demo's is a few hundred bytes): anything larger than
// this is not one, and is refused before it is read.
const long kLargestSave = 1 << 20;
const char kMagic[] = "quindle save";
const int kLongestKey = 63;

template <class T>
T* Make()
{
    void* pBlock = GL_ALLOC(sizeof(T));
    GL_ASSERT(pBlock);
    return new (pBlock) T();
}

template <class T>
void Unmake(T* p)
{
    if (p) {
        p->~T();
        GL_FREE(p);
    }
}

int IsKey(const char* key)
{
    if (!key || !*key || std::strlen(key) > static_cast<std::size_t>(kLongestKey))
        return FALSE;
    for (const char* c = key; *c; c++)
        if (!((*c >= 'a' && *c <= 'z') || (*c >= 'A' && *c <= 'Z') || (*c >= '0' && *c <= '9') || *c == '.' ||
              *c == '-' || *c == '_'))
            return FALSE;
    return TRUE;
}

// Texts are written as one word: a space, a line break, a tab and the
// backslash itself are escaped, and the empty text is "\e".
void PutText(GLKernelText* pOut, const char* text)
{
    if (!*text) {
        *pOut += "\\e";
        return;
    }
    for (const char* c = text; *c; c++) {
        switch (*c) {
        case ' ': *pOut += "\\s"; break;
        case '\n': *pOut += "\\n"; break;
        case '\r': *pOut += "\\r"; break;
        case '\t': *pOut += "\\t"; break;
        case '\\': *pOut += "\\\\"; break;
        default: *pOut += *c;
        }
    }
}

int GetText(const GLKernelText& word, GLKernelText* pText)
{
    pText->clear();
    if (word == "\\e")
        return TRUE;
    for (std::size_t i = 0; i < word.size(); i++) {
        if (word[i] != '\\') {
            *pText += word[i];
            continue;
        }
        if (++i == word.size())
            return FALSE;
        switch (word[i]) {
        case 's': *pText += ' '; break;
        case 'n': *pText += '\n'; break;
        case 'r': *pText += '\r'; break;
        case 't': *pText += '\t'; break;
        case '\\': *pText += '\\'; break;
        default: return FALSE;
        }
    }
    return TRUE;
}

void PutInt(GLKernelText* pOut, long long value)
{
    char number[24];
    std::snprintf(number, sizeof number, "%lld", value);
    *pOut += number;
}

int GetInt(const GLKernelText& word, long long low, long long high, long long* pValue)
{
    if (word.empty() || word.size() > 20)
        return FALSE;
    char* end = 0;
    errno = 0;
    const long long value = std::strtoll(word.c_str(), &end, 10);
    if (errno || *end || value < low || value > high)
        return FALSE;
    *pValue = value;
    return TRUE;
}

// FNV-1a over everything but the checksum's own line, the header first: a
// damaged or hand-edited save is told from a good one.
std::uint32_t Checksum(const char* text, std::size_t length, std::uint32_t hash = 2166136261u)
{
    for (std::size_t i = 0; i < length; i++)
        hash = (hash ^ static_cast<unsigned char>(text[i])) * 16777619u;
    return hash;
}

// The one place a save file is read, through the reader of game folder files
// (a regular file only, never a blocking open), no larger than a save can be,
// whole. FALSE with the reason, in the system's words where it has them.
int ReadSaveFile(const char* fileName, GLKernelText* pText, char* reason, std::size_t reasonSize)
{
    std::FILE* file = GLPlatformOpenText(fileName, reason, reasonSize);
    if (!file)
        return FALSE;
    long size = -1;
    if (std::fseek(file, 0, SEEK_END) == 0)
        size = std::ftell(file);
    if (size < 0 || std::fseek(file, 0, SEEK_SET) != 0) {
        std::snprintf(reason, reasonSize, "cannot be read (%s)", std::strerror(errno));
        std::fclose(file);
        return FALSE;
    }
    if (size > kLargestSave) {
        std::snprintf(reason, reasonSize, "is no save (%ld bytes, more than a save's %ld)", size, kLargestSave);
        std::fclose(file);
        return FALSE;
    }
    pText->resize(static_cast<std::size_t>(size));
    const std::size_t got = size ? std::fread(&(*pText)[0], 1, static_cast<std::size_t>(size), file) : 0;
    const int failed = std::ferror(file);
    std::fclose(file);
    if (failed || got != static_cast<std::size_t>(size)) {
        std::snprintf(reason, reasonSize, "cannot be read (a short read)");
        return FALSE;
    }
    return TRUE;
}

// Splits a line into words at single spaces.
void Words(const char* line, std::size_t length, GLKernelArray<GLKernelText>* pWords)
{
    pWords->clear();
    std::size_t at = 0;
    while (at <= length) {
        std::size_t end = at;
        while (end < length && line[end] != ' ')
            end++;
        pWords->emplace_back(line + at, end - at);
        at = end + 1;
    }
}

GLSaveGame* gpInstalled = 0;
GLSaveGame::ClockFunction gpClock = 0;

} // namespace

// ----- the store -----

struct GLSaveStore::Entry {
    GLKernelText key;
    Kind kind = kInt;
    int iValue = 0;
    int iDefault = 0;
    GLKernelText text;
    GLKernelText textDefault;
    GLKernelArray<int> ints;
    GLKernelArray<GLKernelText> texts;
};

typedef GLKernelArray<GLSaveStore::Entry> Entries;

namespace {

Entries& TheEntries(void* p)
{
    return *static_cast<Entries*>(p);
}

} // namespace

GLSaveStore::GLSaveStore() : mpEntries(0) {}

GLSaveStore::~GLSaveStore()
{
    Release();
}

void GLSaveStore::Release()
{
    Unmake(static_cast<Entries*>(mpEntries));
    mpEntries = 0;
}

GLSaveStore::Entry* GLSaveStore::Find(const char* key) const
{
    GL_ASSERT(key);
    if (!mpEntries)
        return 0;
    Entries& entries = TheEntries(mpEntries);
    for (std::size_t i = 0; i < entries.size(); i++)
        if (entries[i].key == key)
            return &entries[i];
    return 0;
}

// kind 0 asks for a list of either kind.
GLSaveStore::Entry* GLSaveStore::Need(const char* key, Kind kind) const
{
    Entry* pEntry = Find(key);
    GL_ASSERT(pEntry || !"Key was never declared!");
    const int fList = pEntry->kind == kIntList || pEntry->kind == kTextList;
    GL_ASSERT(pEntry->kind == kind || (kind == 0 && fList) || !"Key is of another kind!");
    return pEntry;
}

void GLSaveStore::DeclareInt(const char* key, int iDefault)
{
    GL_ASSERT(IsKey(key));
    if (Entry* pOld = Find(key)) {
        GL_ASSERT(pOld->kind == kInt);
        pOld->iDefault = iDefault;
        return;
    }
    Entry entry;
    entry.key = key;
    entry.kind = kInt;
    entry.iValue = entry.iDefault = iDefault;
    if (!mpEntries)
        mpEntries = Make<Entries>();
    TheEntries(mpEntries).push_back(entry);
}

void GLSaveStore::DeclareText(const char* key, const char* szDefault)
{
    GL_ASSERT(IsKey(key));
    GL_ASSERT(szDefault);
    if (Entry* pOld = Find(key)) {
        GL_ASSERT(pOld->kind == kText);
        pOld->textDefault = szDefault;
        return;
    }
    Entry entry;
    entry.key = key;
    entry.kind = kText;
    entry.text = entry.textDefault = szDefault;
    if (!mpEntries)
        mpEntries = Make<Entries>();
    TheEntries(mpEntries).push_back(entry);
}

void GLSaveStore::DeclareList(const char* key, Kind kind)
{
    GL_ASSERT(IsKey(key));
    GL_ASSERT(kind == kIntList || kind == kTextList);
    if (Entry* pOld = Find(key)) {
        GL_ASSERT(pOld->kind == kind);
        return;
    }
    Entry entry;
    entry.key = key;
    entry.kind = kind;
    if (!mpEntries)
        mpEntries = Make<Entries>();
    TheEntries(mpEntries).push_back(entry);
}

void GLSaveStore::SetInt(const char* key, int iValue)
{
    Need(key, kInt)->iValue = iValue;
}

int GLSaveStore::GetInt(const char* key) const
{
    return Need(key, kInt)->iValue;
}

void GLSaveStore::SetText(const char* key, const char* szValue)
{
    GL_ASSERT(szValue);
    Need(key, kText)->text = szValue;
}

const char* GLSaveStore::GetText(const char* key) const
{
    return Need(key, kText)->text.c_str();
}

int GLSaveStore::GetCount(const char* key) const
{
    Entry* pEntry = Need(key, static_cast<Kind>(0));
    return static_cast<int>(pEntry->kind == kIntList ? pEntry->ints.size() : pEntry->texts.size());
}

int GLSaveStore::GetIntAt(const char* key, int index) const
{
    Entry* pEntry = Need(key, kIntList);
    GL_ASSERT(index >= 0 && index < static_cast<int>(pEntry->ints.size()));
    return pEntry->ints[static_cast<std::size_t>(index)];
}

const char* GLSaveStore::GetTextAt(const char* key, int index) const
{
    Entry* pEntry = Need(key, kTextList);
    GL_ASSERT(index >= 0 && index < static_cast<int>(pEntry->texts.size()));
    return pEntry->texts[static_cast<std::size_t>(index)].c_str();
}

void GLSaveStore::AddInt(const char* key, int iValue)
{
    Need(key, kIntList)->ints.push_back(iValue);
}

void GLSaveStore::AddText(const char* key, const char* szValue)
{
    GL_ASSERT(szValue);
    Need(key, kTextList)->texts.emplace_back(szValue);
}

void GLSaveStore::RemoveAt(const char* key, int index)
{
    Entry* pEntry = Need(key, static_cast<Kind>(0));
    GL_ASSERT(index >= 0 && index < GetCount(key));
    if (pEntry->kind == kIntList)
        pEntry->ints.erase(pEntry->ints.begin() + index);
    else
        pEntry->texts.erase(pEntry->texts.begin() + index);
}

void GLSaveStore::ClearList(const char* key)
{
    Entry* pEntry = Need(key, static_cast<Kind>(0));
    pEntry->ints.clear();
    pEntry->texts.clear();
}

int GLSaveStore::IsDeclared(const char* key) const
{
    return Find(key) != 0;
}

GLSaveStore::Kind GLSaveStore::KindOf(const char* key) const
{
    Entry* pEntry = Find(key);
    return pEntry ? pEntry->kind : static_cast<Kind>(0);
}

void GLSaveStore::Reset()
{
    if (!mpEntries)
        return;
    Entries& entries = TheEntries(mpEntries);
    for (std::size_t i = 0; i < entries.size(); i++) {
        entries[i].iValue = entries[i].iDefault;
        entries[i].text = entries[i].textDefault;
        entries[i].ints.clear();
        entries[i].texts.clear();
    }
}

int GLSaveStore::NumKeys() const
{
    return mpEntries ? static_cast<int>(TheEntries(mpEntries).size()) : 0;
}

const char* GLSaveStore::KeyAt(int index) const
{
    GL_ASSERT(index >= 0 && index < NumKeys());
    return TheEntries(mpEntries)[static_cast<std::size_t>(index)].key.c_str();
}

// ----- the save -----

namespace {

struct SavedItem {
    GLKernelText name;
    long long v[11]; // view, loop, cel, x, y, priority, visible, then the scale's four
};

struct SavedTrack {
    long long v[5]; // number, node reached, sample, stopped, paused
};

// A save's node reached, as its place in the ring (0 the header).
int NodeIndex(GLSndTrack* pTrack)
{
    int index = 0;
    for (GLNode* pNode = pTrack->mpHeader; pNode && pNode != pTrack->mpCurrent; pNode = pNode->mpNext) {
        index++;
        if (pNode->mpNext == pTrack->mpHeader)
            return 0;
    }
    return index;
}

} // namespace

struct GLSaveGame::Parsed {
    GLSaveHeader header;
    Entries values;
    GLKernelArray<GLKernelText> dropped;
    GLKernelArray<SavedItem> items;
    GLKernelArray<SavedTrack> tracks;
    long long cursor[3] = {0, 0, 0};
    long long lastTrack = -1;
    int fCursor = FALSE;
};

GLSaveGame::GLSaveGame(const char* szTitle, int iVersion)
    : mVersion(iVersion), mpUpgrade(0), mpSound(0), mNumNamed(0), mRestoring(FALSE), mpText(0)
{
    GL_ASSERT(szTitle);
    GL_ASSERT(iVersion >= 1);
    std::snprintf(mTitle, sizeof mTitle, "%s", szTitle);
    mError[0] = 0;
    std::snprintf(mFolder, sizeof mFolder, ".");
    mSlotFile[0] = 0;
    gpInstalled = this;
}

GLSaveGame::~GLSaveGame()
{
    if (gpInstalled == this)
        gpInstalled = 0;
    Release();
}

void GLSaveGame::Release()
{
    mStore.Release();
    Unmake(static_cast<GLKernelText*>(mpText));
    mpText = 0;
}

GLSaveGame* GLSaveGame::Installed()
{
    return gpInstalled;
}

void GLSaveGame::SetClockFunction(ClockFunction pFunction)
{
    gpClock = pFunction;
}

void GLSaveGame::SetFolder(const char* szFolder)
{
    GL_ASSERT(szFolder);
    std::snprintf(mFolder, sizeof mFolder, "%s", *szFolder ? szFolder : ".");
}

const char* GLSaveGame::SlotFile(const char* slot)
{
    GL_ASSERT(IsKey(slot));
    std::snprintf(mSlotFile, sizeof mSlotFile, "%s/%s.sav", mFolder, slot);
    return mSlotFile;
}

void GLSaveGame::Name(const char* name, GLScreenItem* pItem)
{
    GL_ASSERT(IsKey(name));
    GL_ASSERT(pItem);
    for (int i = 0; i < mNumNamed; i++)
        if (std::strcmp(mNamed[i].name, name) == 0) {
            mNamed[i].pItem = pItem;
            return;
        }
    GL_ASSERT(mNumNamed < kMostNamed);
    std::snprintf(mNamed[mNumNamed].name, sizeof mNamed[mNumNamed].name, "%s", name);
    mNamed[mNumNamed++].pItem = pItem;
}

// The later names move down, keeping the order items were named in.
void GLSaveGame::Forget(const char* name)
{
    for (int i = 0; i < mNumNamed; i++)
        if (std::strcmp(mNamed[i].name, name) == 0) {
            std::memmove(&mNamed[i], &mNamed[i + 1], sizeof mNamed[0] * static_cast<std::size_t>(mNumNamed - i - 1));
            mNumNamed--;
            return;
        }
}

void GLSaveGame::Forget(GLScreenItem* pItem)
{
    for (int i = 0; i < mNumNamed; i++)
        if (mNamed[i].pItem == pItem) {
            Forget(mNamed[i].name);
            i--;
        }
}

GLScreenItem* GLSaveGame::Named(const char* name) const
{
    for (int i = 0; i < mNumNamed; i++)
        if (std::strcmp(mNamed[i].name, name) == 0)
            return mNamed[i].pItem;
    return 0;
}

int GLSaveGame::Refuse(const char* fileName, const char* reason)
{
    std::snprintf(mError, sizeof mError, "%s: %s", fileName, reason);
    return FALSE;
}

int GLSaveGame::Write(const char** ppText)
{
    GL_ASSERT(theGame);
    Declare();
    Keep();
    GLKernelText body;
    body.reserve(2048);
    body += "ticks ";
    PutInt(&body, theGame->mGameTicks);
    body += "\nclock ";
    PutInt(&body, kernel->GetTicks());
    body += "\nroom ";
    PutInt(&body, CurrentRoom());
    body += "\n";
    if (GLCursor* pCursor = theGame->mpCursor) {
        const GLPoint& at = theGame->mpUser->mMousePos;
        body += "cursor ";
        PutInt(&body, at.GetX());
        body += ' ';
        PutInt(&body, at.GetY());
        body += ' ';
        PutInt(&body, pCursor->GetState());
        body += '\n';
    }
    static const char* const kKindWords[] = {"", "int", "text", "ints", "texts"};
    for (int i = 0; i < mStore.NumKeys(); i++) {
        const GLSaveStore::Entry& e = TheEntries(mStore.mpEntries)[static_cast<std::size_t>(i)];
        body += kKindWords[e.kind];
        body += ' ';
        body += e.key;
        if (e.kind == GLSaveStore::kInt) {
            body += ' ';
            PutInt(&body, e.iValue);
        } else if (e.kind == GLSaveStore::kText) {
            body += ' ';
            PutText(&body, e.text.c_str());
        }
        for (std::size_t j = 0; j < e.ints.size(); j++) {
            body += ' ';
            PutInt(&body, e.ints[j]);
        }
        for (std::size_t j = 0; j < e.texts.size(); j++) {
            body += ' ';
            PutText(&body, e.texts[j].c_str());
        }
        body += '\n';
    }
    for (int i = 0; i < mNumNamed; i++) {
        GLScreenItem* pItem = mNamed[i].pItem;
        const int fPicture = pItem->HasVLC();
        const ScaleInfo& scale = pItem->GetScale();
        const long long v[11] = {fPicture ? pItem->GetView() : -1,
                                 fPicture ? pItem->GetLoop() : -1,
                                 fPicture ? pItem->GetCel() : -1,
                                 pItem->GetPos().GetX(),
                                 pItem->GetPos().GetY(),
                                 pItem->GetPri(),
                                 pItem->IsVisible() ? 1 : 0,
                                 scale.scaleX,
                                 scale.scaleY,
                                 scale.maxScale,
                                 scale.mode};
        body += "item ";
        body += mNamed[i].name;
        for (int j = 0; j < 11; j++) {
            body += ' ';
            PutInt(&body, v[j]);
        }
        body += '\n';
    }
    if (mpSound) {
        body += "sound ";
        PutInt(&body, mpSound->mLastTrackId);
        body += '\n';
        for (GLSndTrack* pTrack = mpSound->mpFirstTrack; pTrack; pTrack = pTrack->mpNextTrack) {
            const long long v[5] = {pTrack->mTrackId, NodeIndex(pTrack), pTrack->mSample, pTrack->mStopped,
                                    pTrack->mPaused};
            body += "track";
            for (int j = 0; j < 5; j++) {
                body += ' ';
                PutInt(&body, v[j]);
            }
            body += '\n';
        }
    }
    body += "end\n";

    if (!mpText)
        mpText = Make<GLKernelText>();
    GLKernelText& text = *static_cast<GLKernelText*>(mpText);
    text.clear();
    text += kMagic;
    text += "\ntitle ";
    PutText(&text, mTitle);
    text += "\nversion ";
    PutInt(&text, mVersion);
    text += "\nlibrary ";
    text += QUINDLE_VERSION;
    text += '\n';
    char sum[24];
    std::snprintf(sum, sizeof sum, "checksum %08x\n",
                  Checksum(body.data(), body.size(), Checksum(text.data(), text.size())));
    text += sum;
    text += body;
    if (ppText)
        *ppText = text.c_str();
    return static_cast<int>(text.size());
}

int GLSaveGame::Save(const char* fileName)
{
    GL_ASSERT(fileName);
    const char* text = 0;
    const int length = Write(&text);
    // Written whole under a name of its own, then renamed over the save: the
    // old save is replaced in one step or not at all.
    GLKernelText temporary(fileName);
    temporary += ".tmp";
    std::FILE* file = std::fopen(temporary.c_str(), "wb");
    if (!file) {
        char reason[300];
        std::snprintf(reason, sizeof reason, "cannot be written (%s)", std::strerror(errno));
        return Refuse(fileName, reason);
    }
    const std::size_t put = std::fwrite(text, 1, static_cast<std::size_t>(length), file);
    int failed = put != static_cast<std::size_t>(length) || std::fflush(file) != 0;
    const int error = errno;
    failed = std::fclose(file) != 0 || failed;
    char why[256];
    if (failed)
        std::snprintf(why, sizeof why, "%s", std::strerror(error));
    if (failed || !GLPlatformReplaceFile(temporary.c_str(), fileName, why, sizeof why)) {
        char reason[300];
        std::snprintf(reason, sizeof reason, "cannot be written (%s)", why);
        std::remove(temporary.c_str());
        return Refuse(fileName, reason);
    }
    mError[0] = 0;
    return TRUE;
}

// Takes a save apart and checks all of it; nothing of the game changes.
int GLSaveGame::Parse(const char* fileName, const char* text, int length, Parsed* pParsed)
{
    Declare();
    GLSaveHeader& header = pParsed->header;
    std::memset(&header, 0, sizeof header);
    header.iRoom = -1;
    GLKernelArray<GLKernelText> words;
    GLKernelText value;
    char reason[300];
    const char* const end = text + length;
    const char* line = text;
    const char* body = 0;
    std::uint32_t sum = 0;
    const char* headEnd = 0;
    int number = 0, fEnd = FALSE, fOtherGame = FALSE;
    while (line < end && !fEnd) {
        const char* stop = static_cast<const char*>(std::memchr(line, '\n', static_cast<std::size_t>(end - line)));
        if (!stop)
            return Refuse(fileName, "is damaged (cut short)");
        number++;
        Words(line, static_cast<std::size_t>(stop - line), &words);
        const GLKernelText& what = words[0];
        long long v = 0;
        auto bad = [&](const char* why) {
            std::snprintf(reason, sizeof reason, "is damaged (line %d: %s)", number, why);
            return Refuse(fileName, reason);
        };
        if (number == 1) {
            if (GLKernelText(line, static_cast<std::size_t>(stop - line)) != kMagic)
                return Refuse(fileName, "is not a save (its first line is not \"quindle save\")");
        } else if (number == 2) {
            if (what != "title" || words.size() != 2 || !GetText(words[1], &value))
                return bad("no title");
            std::snprintf(header.szTitle, sizeof header.szTitle, "%s", value.c_str());
            fOtherGame = value != mTitle;
        } else if (number == 3) {
            if (what != "version" || words.size() != 2 || !GetInt(words[1], 1, 0x7FFFFFFF, &v))
                return bad("no save version");
            header.iGameVersion = static_cast<int>(v);
        } else if (number == 4) {
            if (what != "library" || words.size() != 2)
                return bad("no library version");
            std::snprintf(header.szLibraryVersion, sizeof header.szLibraryVersion, "%s", words[1].c_str());
        } else if (number == 5) {
            if (what != "checksum" || words.size() != 2 || words[1].size() != 8)
                return bad("no checksum");
            sum = static_cast<std::uint32_t>(std::strtoul(words[1].c_str(), 0, 16));
            headEnd = line;
            body = stop + 1;
        } else if (what == "end" && words.size() == 1) {
            fEnd = TRUE;
        } else if ((what == "ticks" || what == "clock" || what == "room") && words.size() == 2) {
            if (!GetInt(words[1], 0, what == "room" ? 0x7FFFFFFF : 0xFFFFFFFFll, &v))
                return bad("not a number");
            if (what == "ticks")
                header.uGameTicks = static_cast<std::uint32_t>(v);
            else if (what == "clock")
                header.uClock = static_cast<std::uint32_t>(v);
            else
                header.iRoom = static_cast<int>(v);
        } else if (what == "sound" && words.size() == 2) {
            if (!GetInt(words[1], 0, 0x7FFFFFFF, &pParsed->lastTrack))
                return bad("not a number");
        } else if (what == "cursor" && words.size() == 4) {
            for (int j = 0; j < 3; j++)
                if (!GetInt(words[static_cast<std::size_t>(j) + 1], -0x7FFFFFFFll, 0xFFFFFFFFll, &pParsed->cursor[j]))
                    return bad("not a number");
            pParsed->fCursor = TRUE;
        } else if ((what == "int" && words.size() == 3) || (what == "text" && words.size() == 3) ||
                   ((what == "ints" || what == "texts") && words.size() >= 2)) {
            if (!IsKey(words[1].c_str()))
                return bad("not a key");
            GLSaveStore::Entry e;
            e.key = words[1];
            e.kind = what == "int"    ? GLSaveStore::kInt
                     : what == "text" ? GLSaveStore::kText
                     : what == "ints" ? GLSaveStore::kIntList
                                      : GLSaveStore::kTextList;
            for (std::size_t j = 2; j < words.size(); j++) {
                if (e.kind == GLSaveStore::kInt || e.kind == GLSaveStore::kIntList) {
                    if (!GetInt(words[j], -0x80000000ll, 0x7FFFFFFF, &v))
                        return bad("not a number");
                    if (e.kind == GLSaveStore::kInt)
                        e.iValue = static_cast<int>(v);
                    else
                        e.ints.push_back(static_cast<int>(v));
                } else {
                    if (!GetText(words[j], &value))
                        return bad("a text with a broken escape");
                    if (e.kind == GLSaveStore::kText)
                        e.text = value;
                    else
                        e.texts.push_back(value);
                }
            }
            GLSaveStore::Entry* pDeclared = mStore.Find(e.key.c_str());
            if (pDeclared && pDeclared->kind == e.kind)
                pParsed->values.push_back(e);
            else
                pParsed->dropped.push_back(e.key);
        } else if (what == "item" && words.size() == 13) {
            SavedItem item;
            item.name = words[1];
            for (int j = 0; j < 11; j++)
                if (!GetInt(words[static_cast<std::size_t>(j) + 2], -0x80000000ll, 0x7FFFFFFF, &item.v[j]))
                    return bad("not a number");
            pParsed->items.push_back(item);
        } else if (what == "track" && words.size() == 6) {
            SavedTrack track;
            for (int j = 0; j < 5; j++)
                if (!GetInt(words[static_cast<std::size_t>(j) + 1], -0x80000000ll, 0x7FFFFFFF, &track.v[j]))
                    return bad("not a number");
            pParsed->tracks.push_back(track);
        } else {
            return bad("not a line of a save");
        }
        line = stop + 1;
    }
    if (!body || !fEnd)
        return Refuse(fileName, "is damaged (cut short)");
    if (line != end)
        return Refuse(fileName, "is damaged (lines after its end)");
    if (Checksum(body, static_cast<std::size_t>(line - body), Checksum(text, static_cast<std::size_t>(headEnd - text))) !=
        sum)
        return Refuse(fileName, "is damaged (its checksum does not match)");
    // Whole and unharmed: now whether it is this game's.
    if (fOtherGame) {
        std::snprintf(reason, sizeof reason, "is a save of another game (\"%s\", not \"%s\")", header.szTitle,
                      mTitle);
        return Refuse(fileName, reason);
    }
    if (header.iGameVersion > mVersion) {
        std::snprintf(reason, sizeof reason, "is a save of a later version of the game (%d; this is %d)",
                      header.iGameVersion, mVersion);
        return Refuse(fileName, reason);
    }
    if (header.iRoom < 0)
        return Refuse(fileName, "is damaged (no room)");
    if (!pParsed->dropped.empty()) {
        GLKernelText notice("the save's keys that this game no longer keeps are ignored:");
        for (std::size_t i = 0; i < pParsed->dropped.size(); i++) {
            notice += ' ';
            notice += pParsed->dropped[i];
        }
        GLNotify(GL_NOTICE_WARNING, fileName, 0, notice.c_str());
    }
    mError[0] = 0;
    return TRUE;
}

int GLSaveGame::Check(const char* fileName, GLSaveHeader* pHeader)
{
    GL_ASSERT(fileName);
    GLKernelText text;
    char reason[300];
    if (!ReadSaveFile(fileName, &text, reason, sizeof reason))
        return Refuse(fileName, reason);
    Parsed parsed;
    if (!Parse(fileName, text.data(), static_cast<int>(text.size()), &parsed))
        return FALSE;
    if (pHeader)
        *pHeader = parsed.header;
    return TRUE;
}

int GLSaveGame::Restore(const char* fileName)
{
    GL_ASSERT(fileName);
    GL_ASSERT(theGame);
    GL_ASSERT(!mRestoring);
    GLKernelText text;
    char reason[300];
    if (!ReadSaveFile(fileName, &text, reason, sizeof reason))
        return Refuse(fileName, reason);
    Parsed* pParsed = Make<Parsed>();
    const int fGood = Parse(fileName, text.data(), static_cast<int>(text.size()), pParsed);
    if (fGood)
        Apply(pParsed);
    Unmake(pParsed);
    return fGood;
}

// From here on nothing can be refused: the save is whole and of this game.
void GLSaveGame::Apply(Parsed* pParsed)
{
    // A host that can set its clock takes it back to the save's reading, and
    // the frame's tick with it, so what is timed runs on as it would have.
    if (gpClock) {
        gpClock(pParsed->header.uClock);
        theGame->mGameTicks = pParsed->header.uGameTicks;
    }
    mStore.Reset();
    for (std::size_t i = 0; i < pParsed->values.size(); i++) {
        GLSaveStore::Entry& saved = pParsed->values[i];
        GLSaveStore::Entry* pEntry = mStore.Find(saved.key.c_str());
        pEntry->iValue = saved.iValue;
        pEntry->text = saved.text;
        pEntry->ints = saved.ints;
        pEntry->texts = saved.texts;
    }
    if (pParsed->header.iGameVersion < mVersion && mpUpgrade)
        mpUpgrade(&mStore, pParsed->header.iGameVersion);

    // The cursor before the room: a room that starts may look at where the
    // pointer is and at the cursor's modes.
    GLCursor* pCursor = theGame->mpCursor;
    if (pCursor && pParsed->fCursor) {
        GLPoint at(static_cast<int>(pParsed->cursor[0]), static_cast<int>(pParsed->cursor[1]));
        pCursor->SetPos(at);
        theGame->mpUser->mMousePos = at;
        const std::uint32_t state = static_cast<std::uint32_t>(pParsed->cursor[2]);
        // The modes do not stack: those that go, go first.
        if (!(state & 2))
            pCursor->EndWait();
        if (!(state & 4))
            pCursor->HandsOn();
        if (!(state & 16))
            pCursor->EndHighlight();
        if (state & 2)
            pCursor->BeginWait();
        if (state & 4)
            pCursor->HandsOff();
        if (state & 16)
            pCursor->BeginHighlight();
    }

    mRestoring = TRUE;
    StartRoom(pParsed->header.iRoom);
    mRestoring = FALSE;

    for (std::size_t i = 0; i < pParsed->items.size(); i++) {
        const SavedItem& saved = pParsed->items[i];
        GLScreenItem* pItem = Named(saved.name.c_str());
        if (!pItem)
            continue; // the room no longer has it: it stays as the room made it
        // Only what differs from what the room made is set: an item the save
        // leaves as it was is not updated (a cel's update also moves the
        // rectangle it takes clicks in).
        const long long* v = saved.v;
        int fChanged = FALSE;
        if (pItem->HasVLC() && v[0] >= 0 &&
            (pItem->GetView() != v[0] || pItem->GetLoop() != v[1] || pItem->GetCel() != v[2])) {
            pItem->Load(static_cast<int>(v[0]), static_cast<int>(v[1]), static_cast<int>(v[2]), FALSE);
            fChanged = TRUE;
        }
        if (pItem->GetPos().GetX() != v[3] || pItem->GetPos().GetY() != v[4]) {
            pItem->SetPos(GLPoint(static_cast<int>(v[3]), static_cast<int>(v[4])), FALSE);
            fChanged = TRUE;
        }
        if (pItem->GetPri() != v[5]) {
            pItem->SetPri(static_cast<int>(v[5]), FALSE);
            fChanged = TRUE;
        }
        ScaleInfo scale = {static_cast<std::int32_t>(v[7]), static_cast<std::int32_t>(v[8]),
                           static_cast<std::int32_t>(v[9]), static_cast<std::int32_t>(v[10])};
        const ScaleInfo& now = pItem->GetScale();
        if (std::memcmp(&now, &scale, sizeof scale) != 0) {
            pItem->SetScale(scale, FALSE);
            fChanged = TRUE;
        }
        if (v[6] && !pItem->IsVisible())
            pItem->Show();
        else if (!v[6] && pItem->IsVisible())
            pItem->Hide();
        else if (v[6] && fChanged)
            pItem->Update();
    }

    // Tracks are matched by their place in the sound manager's list: the
    // room made them again, in the same order; they take their saved numbers
    // back, and the manager its count, so the next track is numbered as it
    // would have been.
    if (mpSound && pParsed->lastTrack >= 0)
        mpSound->mLastTrackId = static_cast<int>(pParsed->lastTrack);
    GLSndTrack* pTrack = mpSound ? mpSound->mpFirstTrack : 0;
    for (std::size_t i = 0; i < pParsed->tracks.size() && pTrack; i++, pTrack = pTrack->mpNextTrack) {
        const long long* v = pParsed->tracks[i].v;
        GLNode* pNode = pTrack->mpHeader;
        for (long long n = 0; n < v[1] && pNode && pNode->mpNext != pTrack->mpHeader; n++)
            pNode = pNode->mpNext;
        pTrack->mTrackId = static_cast<int>(v[0]);
        pTrack->mpCurrent = pNode;
        pTrack->mSample = static_cast<int>(v[2]);
        if (v[3] && !pTrack->mStopped)
            pTrack->Stop();
        if (v[4] && !pTrack->mPaused)
            pTrack->Pause();
    }
}
