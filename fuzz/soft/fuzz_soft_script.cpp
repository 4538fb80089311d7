// Fuzz target: the input script reader.
#include "SoftScript.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::vector<SoftInputEvent> events;
    std::string error;
    const bool ok = SoftParseScript(text, "fuzz", &events, &error);
    // Either events and no message, or a message that names the input and nothing else.
    if (ok == !error.empty() || (!ok && !events.empty()) || (!ok && error.compare(0, 5, "fuzz:") != 0))
        std::abort();
    for (std::size_t i = 1; i < events.size(); i++)
        if (events[i - 1].tick > events[i].tick)
            std::abort();
    return 0;
}
