// SoftMessages.cpp - see SoftMessages.h.
#include "SoftMessages.h"

#include <algorithm>
#include <cstring>

const SoftMessage* SoftMessages::Find(const int keys[5])
{
    std::string error;
    const std::vector<SoftMessage>* all = mResources.Messages(&error);
    if (!all) {
        mHost.Report(error);
        return nullptr;
    }
    for (const auto& m : *all)
        if (std::memcmp(m.keys, keys, sizeof m.keys) == 0)
            return &m;
    return nullptr;
}

// The message of the same conversation with the smallest sequence above the last one got.
const SoftMessage* SoftMessages::Next()
{
    if (!mHaveLastMessage)
        return nullptr;
    std::string error;
    const std::vector<SoftMessage>* all = mResources.Messages(&error);
    if (!all)
        return nullptr;
    const SoftMessage* best = nullptr;
    for (const auto& m : *all) {
        if (std::memcmp(m.keys, mLastMessageKeys, 4 * sizeof(int)) != 0 || m.keys[4] <= mLastMessageKeys[4])
            continue;
        if (!best || m.keys[4] < best->keys[4])
            best = &m;
    }
    return best;
}

namespace {
void CopyText(const std::string& text, char* buffer, int size)
{
    if (!buffer || size <= 0)
        return;
    const std::size_t n = std::min(text.size(), static_cast<std::size_t>(size - 1));
    std::memcpy(buffer, text.data(), n);
    buffer[n] = '\0';
}
} // namespace

int SoftMessages::GetMessageSize(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, int* piSize)
{
    const int keys[5] = {iKey1, iKey2, iKey3, iKey4, iSequence};
    const SoftMessage* m = Find(keys);
    if (!m)
        return 0;
    if (piSize)
        *piSize = static_cast<int>(m->text.size() + 1);
    return 1;
}

int SoftMessages::GetMessage(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, char* pBuffer,
                             int iBufferSize)
{
    const int keys[5] = {iKey1, iKey2, iKey3, iKey4, iSequence};
    const SoftMessage* m = Find(keys);
    if (!m)
        return 0;
    CopyText(m->text, pBuffer, iBufferSize);
    std::memcpy(mLastMessageKeys, m->keys, sizeof mLastMessageKeys);
    mHaveLastMessage = true;
    mHost.Trace("message %d %d %d %d %d (talker %d): %s", m->keys[0], m->keys[1], m->keys[2], m->keys[3], m->keys[4],
                m->talker, m->text.c_str());
    return m->talker;
}

int SoftMessages::GetNextMessageSize(int* piSize)
{
    const SoftMessage* m = Next();
    if (!m)
        return 0;
    if (piSize)
        *piSize = static_cast<int>(m->text.size() + 1);
    return 1;
}

int SoftMessages::GetNextMessage(char* pBuffer, int iBufferSize)
{
    const SoftMessage* m = Next();
    if (!m)
        return 0;
    CopyText(m->text, pBuffer, iBufferSize);
    std::memcpy(mLastMessageKeys, m->keys, sizeof mLastMessageKeys);
    mHost.Trace("message %d %d %d %d %d (talker %d): %s", m->keys[0], m->keys[1], m->keys[2], m->keys[3], m->keys[4],
                m->talker, m->text.c_str());
    return m->talker;
}

void SoftMessages::GetLastMessageKeys(int* piKeys)
{
    if (!piKeys)
        return;
    for (int i = 0; i < 5; i++)
        piKeys[i] = mHaveLastMessage ? mLastMessageKeys[i] : -1;
}
