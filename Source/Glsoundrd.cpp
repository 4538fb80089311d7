// Glsoundrd.cpp - building a sound track from its text form. See
// GLSndManager::CreateSndTrack in include/glsound.h for the format and for
// what happens to lines that are not well formed, and GLCheckSndTrack for
// what the host is told of them.
//
// The files come from outside the program and are read as untrusted: a line
// is collected byte by byte into a fixed buffer whose bounds are checked on
// every byte, a NUL ends the text of its line, any other byte is an ordinary
// character unless it is a separator or the line end, and numbers saturate
// instead of overflowing.
#include "glplatfm.h"
#include "glsound.h"

#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

// A line is read at most this many characters at a time, its line end
// included: the rest of a longer line is read as a line of its own.
const int kLineMax = 119;

// The most numbers a keyword takes.
const int kNumbersMax = 5;

struct Token {
    const char* text;
    int length;
};

int IsSeparator(char c)
{
    return c == ',' || c == ' ' || c == '\t';
}

// Reads the next line, or the next kLineMax characters of a longer one, into
// pBuffer (kLineMax characters, not terminated); returns how many were read,
// 0 at the end of the file. The line end "\n" (or "\r\n", which is read as
// "\n") stays in the buffer as its last character.
int ReadLine(std::FILE* pFile, char* pBuffer)
{
    int iLength = 0;
    while (iLength < kLineMax) {
        int c = std::getc(pFile);
        if (c == EOF)
            break;
        if (c == '\r') {
            int cNext = std::getc(pFile);
            if (cNext == '\n')
                c = '\n';
            else if (cNext != EOF)
                std::ungetc(cNext, pFile);
        }
        pBuffer[iLength++] = static_cast<char>(c);
        if (c == '\n')
            break;
    }
    return iLength;
}

// Splits a line into at most iMax tokens; returns how many were found. A NUL
// ends the line's text. The line end is no separator: it stays part of the
// last token (and a separator before it makes it a token of its own).
int SplitLine(const char* pLine, int iLength, Token* pTokens, int iMax)
{
    const void* pNul = std::memchr(pLine, '\0', iLength);
    if (pNul)
        iLength = static_cast<int>(static_cast<const char*>(pNul) - pLine);
    int iCount = 0;
    int i = 0;
    while (i < iLength && iCount < iMax) {
        while (i < iLength && IsSeparator(pLine[i]))
            i++;
        if (i == iLength)
            break;
        int iStart = i;
        while (i < iLength && !IsSeparator(pLine[i]))
            i++;
        pTokens[iCount].text = pLine + iStart;
        pTokens[iCount].length = i - iStart;
        iCount++;
    }
    return iCount;
}

int StartsWith(const Token& token, const char* pKeyword)
{
    int iLength = static_cast<int>(std::strlen(pKeyword));
    return token.length >= iLength && std::memcmp(token.text, pKeyword, iLength) == 0;
}

int IsWhiteSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

// Reads a whole number as atoi does: white space, an optional sign, digits,
// up to the first other character; a token without digits gives 0.
// Saturates at the 32-bit limits.
int ParseNumber(const Token& token)
{
    int i = 0;
    while (i < token.length && IsWhiteSpace(token.text[i]))
        i++;
    int fNegative = FALSE;
    if (i < token.length && (token.text[i] == '+' || token.text[i] == '-')) {
        fNegative = token.text[i] == '-';
        i++;
    }
    // Accumulated as a magnitude that stops growing past the largest one
    // that can matter (that of INT_MIN).
    const long long kLimit = 2147483648LL;
    long long lMagnitude = 0;
    while (i < token.length && token.text[i] >= '0' && token.text[i] <= '9') {
        lMagnitude = lMagnitude * 10 + (token.text[i] - '0');
        if (lMagnitude > kLimit)
            lMagnitude = kLimit;
        i++;
    }
    long long lValue = fNegative ? -lMagnitude : lMagnitude;
    if (lValue > INT_MAX)
        lValue = INT_MAX;
    return static_cast<int>(lValue);
}

// The numbers each keyword takes, in order, by the names a notice gives them.
struct Keyword {
    const char* pName;
    int iCount;
    const char* pNumbers[kNumbersMax];
};
const Keyword kSound = {"SOUND", 5, {"sample", "volume", "mode", "pan", "chance"}};
const Keyword kWait = {"WAIT", 4, {"minimum", "maximum", "mode", "chance"}};
const Keyword kPrs = {"PRS", 4, {"sample", "chance", "volume", "pan"}};

// Past this many warnings about one file the rest are summed up in one;
// errors are always told.
const int kWarningsMax = 20;

// Tells the host of what reading one file meets; counts errors.
class TrackNotices {
public:
    explicit TrackNotices(const char* pFile) : mpFile(pFile) {}
    void Tell(int iKind, int iLine, const char* pFormat, ...) __attribute__((format(printf, 4, 5)))
    {
        if (iKind == GL_NOTICE_ERROR)
            mErrors++;
        else if (++mWarnings > kWarningsMax) {
            if (mWarnings == kWarningsMax + 1)
                GLNotify(GL_NOTICE_WARNING, mpFile, iLine, "more warnings follow; they are not listed");
            return;
        }
        char text[256];
        va_list args;
        va_start(args, pFormat);
        std::vsnprintf(text, sizeof text, pFormat, args);
        va_end(args);
        GLNotify(iKind, mpFile, iLine, text);
    }
    int Errors() const { return mErrors; }

private:
    const char* mpFile;
    int mWarnings = 0;
    int mErrors = 0;
};

// A token as a notice shows it: at most 16 characters, the line end named,
// other unprintable bytes as '?'.
void Shown(const Token& token, char* pOut, int iOutSize)
{
    if (token.length == 1 && token.text[0] == '\n') {
        std::snprintf(pOut, iOutSize, "the line end");
        return;
    }
    int n = 0;
    pOut[n++] = '\'';
    for (int i = 0; i < token.length && i < 16 && n < iOutSize - 6; i++) {
        char c = token.text[i];
        if (c == '\n')
            break;
        pOut[n++] = c >= 0x20 && c < 0x7F ? c : '?';
    }
    if (token.length > 16)
        pOut[n++] = '.', pOut[n++] = '.', pOut[n++] = '.';
    pOut[n++] = '\'';
    pOut[n] = '\0';
}

int HasDigit(const Token& token)
{
    for (int i = 0; i < token.length; i++)
        if (token.text[i] >= '0' && token.text[i] <= '9')
            return TRUE;
    return FALSE;
}

// Fills pNumbers from the tokens after the keyword; the ones not given keep
// the defaults the caller put there. Returns FALSE when there is no token
// after the keyword, so no first number: the line is malformed. Tells the host
// of numbers that read as 0 for want of digits and of tokens past the last
// number.
int ParseNumbers(const Token* pTokens, int iTokens, int* pNumbers, const Keyword& keyword, int iLine,
                 TrackNotices& notices)
{
    if (iTokens < 2) {
        notices.Tell(GL_NOTICE_WARNING, iLine, "%s without its %s: the line is skipped", keyword.pName,
                     keyword.pNumbers[0]);
        return FALSE;
    }
    char shown[32];
    for (int i = 0; i < keyword.iCount && i + 1 < iTokens; i++) {
        pNumbers[i] = ParseNumber(pTokens[i + 1]);
        if (!HasDigit(pTokens[i + 1])) {
            Shown(pTokens[i + 1], shown, sizeof shown);
            notices.Tell(GL_NOTICE_WARNING, iLine, "%s where %s's %s stands has no digits: it reads as 0", shown,
                         keyword.pName, keyword.pNumbers[i]);
        }
    }
    if (iTokens > keyword.iCount + 1 && !(iTokens == keyword.iCount + 2 && pTokens[iTokens - 1].text[0] == '\n'))
        notices.Tell(GL_NOTICE_WARNING, iLine, "%s takes at most %d numbers: the rest of the line is ignored",
                     keyword.pName, keyword.iCount);
    return TRUE;
}

// Whether the rest of the file holds a line with a token in it.
int MoreLines(std::FILE* pFile, char* pBuffer)
{
    Token token;
    for (;;) {
        int iLength = ReadLine(pFile, pBuffer);
        if (iLength == 0)
            return FALSE;
        if (SplitLine(pBuffer, iLength, &token, 1) && token.text[0] != '\n')
            return TRUE;
    }
}

// Reads a track's text from the file, adding its nodes to pTrack and carrying
// out its PLAY lines; with no track it only reads. Tells the host of every
// surprise in the text and returns the number of errors among them.
int ReadTrack(std::FILE* pFile, const char* fileName, GLSndTrack* pTrack)
{
    TrackNotices notices(fileName);
    char line[kLineMax];
    // One token more than a keyword takes, to see that a line has too many.
    Token tokens[2 + kNumbersMax];
    const int kTokensMax = 2 + kNumbersMax;
    int iLine = 1;        // the file's line the piece read now begins on
    int fWhole = TRUE;    // the piece read now begins a line of the file
    int iNodes = 0;       // the sound, wait and PRS lines read
    for (;;) {
        int iLength = ReadLine(pFile, line);
        if (iLength == 0)
            break;
        const int fEnded = line[iLength - 1] == '\n';
        const int iThisLine = iLine;
        if (fEnded)
            iLine++;
        if (fWhole && !fEnded && iLength == kLineMax)
            notices.Tell(GL_NOTICE_WARNING, iThisLine,
                         "longer than the %d characters read at once: the rest is read as a line of its own",
                         kLineMax);
        fWhole = fEnded;
        if (std::memchr(line, '\0', iLength))
            notices.Tell(GL_NOTICE_WARNING, iThisLine, "a NUL byte ends the line's text");
        int iTokens = SplitLine(line, iLength, tokens, kTokensMax);
        if (iTokens == 0 || tokens[0].text[0] == '\n') {
            // An empty line ends the track.
            if (MoreLines(pFile, line))
                notices.Tell(GL_NOTICE_WARNING, iThisLine,
                             "an empty line ends the track: the lines after it are ignored");
            break;
        }
        const Token& keyword = tokens[0];
        if (StartsWith(keyword, "SOUND")) {
            int numbers[kNumbersMax] = {0, 127, 1, 50, 100};
            if (!ParseNumbers(tokens, iTokens, numbers, kSound, iThisLine, notices))
                continue;
            iNodes++;
            SndByte sndByte = {numbers[0], numbers[1], numbers[2], numbers[3], numbers[4]};
            if (pTrack)
                pTrack->AddSndNode(&sndByte);
        } else if (StartsWith(keyword, "WAIT")) {
            int numbers[kNumbersMax] = {0, 0, 1, 100, 0};
            if (!ParseNumbers(tokens, iTokens, numbers, kWait, iThisLine, notices))
                continue;
            iNodes++;
            // The wait is the minimum plus a draw (0 to 32767) modulo the
            // maximum, so 0 to |maximum| - 1 or 32767, whichever is smaller:
            // it can come out at 0, which the timer refuses.
            const long long lMin = numbers[0];
            long long lSpread = numbers[1] == 0 ? 0 : std::llabs(static_cast<long long>(numbers[1])) - 1;
            if (lSpread > 32767)
                lSpread = 32767;
            if (lMin <= 0 && lMin + lSpread >= 0)
                notices.Tell(GL_NOTICE_ERROR, iThisLine,
                             "this wait can come out at 0 seconds (minimum %d, maximum %d): the track would "
                             "stop the game when it reaches it",
                             numbers[0], numbers[1]);
            if (pTrack)
                pTrack->AddWaitNode(numbers[0], numbers[1], numbers[2], numbers[3]);
        } else if (StartsWith(keyword, "PRS")) {
            int numbers[kNumbersMax] = {0, 100, 127, 50, 0};
            if (!ParseNumbers(tokens, iTokens, numbers, kPrs, iThisLine, notices))
                continue;
            iNodes++;
            SndByte sndByte = {numbers[0], numbers[2], 1, numbers[3], numbers[1]};
            if (pTrack)
                pTrack->AddPRSNode(&sndByte);
        } else if (StartsWith(keyword, "PLAY")) {
            if (pTrack)
                pTrack->Play();
        } else {
            char shown[32];
            Shown(keyword, shown, sizeof shown);
            notices.Tell(GL_NOTICE_WARNING, iThisLine,
                         "unknown keyword %s (SOUND, WAIT, PRS or PLAY): the line is skipped", shown);
        }
    }
    if (iNodes == 0)
        notices.Tell(GL_NOTICE_WARNING, 0, "no SOUND, WAIT or PRS line: the track plays nothing");
    return notices.Errors();
}

// Opens a track file for reading as text; null, with the host told, when it
// is missing, not a regular file (a directory, a FIFO), too large or cannot
// be read.
std::FILE* OpenTrack(const char* fileName)
{
    char szWhy[1024];
    std::FILE* pFile = GLPlatformOpenText(fileName, szWhy, sizeof szWhy);
    if (!pFile) {
        char szText[1100];
        std::snprintf(szText, sizeof szText, "%s: no track", szWhy);
        GLNotify(GL_NOTICE_ERROR, fileName, 0, szText);
        return 0;
    }
    // Some names open but cannot be read: no track either.
    int c = std::getc(pFile);
    if (c == EOF && std::ferror(pFile)) {
        std::fclose(pFile);
        GLNotify(GL_NOTICE_ERROR, fileName, 0, "cannot be read: no track");
        return 0;
    }
    std::ungetc(c, pFile);
    return pFile;
}

} // namespace

GLSndTrack* GLSndManager::CreateSndTrack(const char* fileName)
{
    if (!fileName)
        return 0;
    std::FILE* pFile = OpenTrack(fileName);
    if (!pFile)
        return 0;
    GLSndTrack* pTrack = CreateSndTrack();
    ReadTrack(pFile, fileName, pTrack);
    std::fclose(pFile);
    return pTrack;
}

int GLCheckSndTrack(const char* fileName)
{
    if (!fileName)
        return 1;
    std::FILE* pFile = OpenTrack(fileName);
    if (!pFile)
        return 1;
    int iErrors = ReadTrack(pFile, fileName, 0);
    std::fclose(pFile);
    return iErrors;
}
