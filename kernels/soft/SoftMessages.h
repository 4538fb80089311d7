// SoftMessages.h - the soft kernel's messages: the game folder's
// messages.txt looked up by four keys and a sequence number, and the
// conversation walked from the message last got to the next sequence.
//
// GetMessage answers the talker of the message (0 when there is none) and
// copies its text, cut to the buffer; GetNextMessage goes on with the same
// four keys and the smallest sequence above the last one got. A store that
// cannot be read is a fault, and every lookup then finds nothing. The
// operations are the kernel interface's under the same names.
#ifndef QUINDLE_SOFT_MESSAGES_H
#define QUINDLE_SOFT_MESSAGES_H

#include "SoftHost.h"
#include "SoftResources.h"

class SoftMessages {
public:
    SoftMessages(SoftServiceHost& host, SoftResources& resources) : mHost(host), mResources(resources) {}
    SoftMessages(const SoftMessages&) = delete;
    SoftMessages& operator=(const SoftMessages&) = delete;

    // The message with these five keys, or null.
    const SoftMessage* Find(const int keys[5]);

    int GetMessage(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, char* pBuffer, int iBufferSize);
    int GetNextMessage(char* pBuffer, int iBufferSize);
    int GetMessageSize(int iKey1, int iKey2, int iKey3, int iKey4, int iSequence, int* piSize);
    int GetNextMessageSize(int* piSize);
    void GetLastMessageKeys(int* piKeys);

private:
    const SoftMessage* Next();

    SoftServiceHost& mHost;
    SoftResources& mResources;
    int mLastMessageKeys[5] = {0, 0, 0, 0, 0};
    bool mHaveLastMessage = false;
};

#endif
