// Fuzz target: the tape reader. Whatever the bytes, the reader either refuses
// them with a message naming the tape and a byte offset, or gives every frame
// it checked, each call of which can be described for a report.
#include "TapeFormat.h"
#include "TapeOps.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    TapeReader reader;
    std::string error;
    if (!reader.Parse(data, size, "fuzz.tape", &error)) {
        if (error.compare(0, 11, "fuzz.tape: ") != 0 || error.find(" at byte ") == std::string::npos)
            std::abort();
        return 0;
    }
    if (!error.empty())
        std::abort();
    TapeFrame frame;
    std::uint32_t frames = 0;
    while (reader.Next(&frame)) {
        for (const TapeCall& call : frame.calls)
            if (TapeDescribeCall(call.op, call.args).empty())
                std::abort();
        frames++;
    }
    // Every checked frame, then the calls after the last one.
    if (frames != reader.FrameCount() + 1)
        std::abort();
    return 0;
}
