// Glsoundrd.cpp - building a sound track from its text form. See
// GLSndManager::CreateSndTrack in include/glsound.h for the format and for
// what happens to lines that are not well formed.
//
// The files come from outside the program and are read as untrusted: a line
// is collected byte by byte into a fixed buffer whose bounds are checked on
// every byte, a NUL ends the text of its line, any other byte is an ordinary
// character unless it is a separator or the line end, and numbers saturate
// instead of overflowing.
#include "glsound.h"

#include <climits>
#include <cstdio>
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

// Fills pNumbers from the tokens after the keyword; the ones not given keep
// the defaults the caller put there. Returns FALSE when there is no token
// after the keyword, so no first number: the line is malformed.
int ParseNumbers(const Token* pTokens, int iTokens, int* pNumbers, int iWanted)
{
    if (iTokens < 2)
        return FALSE;
    for (int i = 0; i < iWanted && i + 1 < iTokens; i++)
        pNumbers[i] = ParseNumber(pTokens[i + 1]);
    return TRUE;
}

} // namespace

GLSndTrack* GLSndManager::CreateSndTrack(const char* fileName)
{
    if (!fileName)
        return 0;
    std::FILE* pFile = std::fopen(fileName, "r");
    if (!pFile)
        return 0;
    // Some names open but cannot be read (a directory): no track either.
    int c = std::getc(pFile);
    if (c == EOF && std::ferror(pFile)) {
        std::fclose(pFile);
        return 0;
    }
    std::ungetc(c, pFile);

    GLSndTrack* pTrack = CreateSndTrack();
    char line[kLineMax];
    Token tokens[1 + kNumbersMax];
    for (;;) {
        int iLength = ReadLine(pFile, line);
        if (iLength == 0)
            break;
        int iTokens = SplitLine(line, iLength, tokens, 1 + kNumbersMax);
        if (iTokens == 0 || tokens[0].text[0] == '\n')
            break; // an empty line ends the track
        const Token& keyword = tokens[0];
        if (StartsWith(keyword, "SOUND")) {
            int numbers[kNumbersMax] = {0, 127, 1, 50, 100};
            if (!ParseNumbers(tokens, iTokens, numbers, 5))
                continue;
            SndByte sndByte = {numbers[0], numbers[1], numbers[2], numbers[3], numbers[4]};
            pTrack->AddSndNode(&sndByte);
        } else if (StartsWith(keyword, "WAIT")) {
            int numbers[kNumbersMax] = {0, 0, 1, 100, 0};
            if (!ParseNumbers(tokens, iTokens, numbers, 4))
                continue;
            pTrack->AddWaitNode(numbers[0], numbers[1], numbers[2], numbers[3]);
        } else if (StartsWith(keyword, "PRS")) {
            int numbers[kNumbersMax] = {0, 100, 127, 50, 0};
            if (!ParseNumbers(tokens, iTokens, numbers, 4))
                continue;
            SndByte sndByte = {numbers[0], numbers[2], 1, numbers[3], numbers[1]};
            pTrack->AddPRSNode(&sndByte);
        } else if (StartsWith(keyword, "PLAY")) {
            pTrack->Play();
        }
    }
    std::fclose(pFile);
    return pTrack;
}
