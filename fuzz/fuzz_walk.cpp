// Fuzz target: the walkable area text reader, and routes through what it
// read. Whatever the bytes, reading must refuse what is malformed without a
// failed check, every query must end, and every block must come back.
//
// Built and run by fuzz/run (clang's libFuzzer with AddressSanitizer and
// UndefinedBehaviorSanitizer).
#include "RecordingKernel.h"
#include "gldll.h"
#include "glwalk.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <unistd.h>

namespace {
int gErrors = 0;
void CountErrors(int kind, const char*, int, const char*)
{
    gErrors += kind == GL_NOTICE_ERROR;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const std::string path = "/tmp/quindle_fuzz_walk_" + std::to_string(getpid()) + ".txt";
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (!file)
        std::abort();
    std::fwrite(data, 1, size, file);
    std::fclose(file);

    RecordingKernel k;
    k.recording = false;
    DLLInit(&k);
    GLSetHostNotice(&CountErrors);
    gErrors = 0;
    GLWalkArea* area = GLWalkArea::Load(path.c_str());
    if (!area != (gErrors == 1))
        std::abort(); // a refusal says why, once; an area comes without a word
    if (area) {
        GLListAsArray<GLPoint> route(8, 8);
        const GLPoint ends[] = {GLPoint(0, 0), GLPoint(320, 240), GLPoint(639, 479), GLPoint(-50, 600)};
        for (const GLPoint& from : ends)
            for (const GLPoint& to : ends) {
                area->FindPath(from, to, route);
                while (!route.IsEmpty()) {
                    GLPoint* p = route.At(0);
                    route.RemoveAt(0);
                    delete p;
                }
            }
        delete area;
    }
    std::remove(path.c_str());
    if (k.Ledger().LiveCount() != 0)
        std::abort();
    return 0;
}
