// A program built against an installed quindle with nothing but
//   c++ one_file.cpp $(pkg-config --cflags --libs quindle quindle-recording)
// It runs one frame of a game on the recording kernel, then breaks a set's rule
// in a template the program instantiates itself, so the failed check is
// compiled here, from the installed header: its report must still name
// include/glset.h, as the library's own reports do.
#include <quindle/glgame.h>
#include <quindle/glset.h>

#include "RecordingKernel.h" // the include/quindle folder is on the path too
#include "gldll.h"

#include <cstdio>
#include <cstdlib>

namespace {

struct Thing {
    int value;
};

void PrintAndEnd(const char* text, const char*)
{
    std::printf("%s", text);
    std::fflush(stdout);
    std::_Exit(0);
}

} // namespace

int main()
{
    RecordingKernel kernel;
    DLLInit(&kernel);
    GLGame* game = new GLGame;
    GLDLLInit(game);
    game->DoIt();
    std::printf("one frame: %zu kernel calls\n", kernel.Calls().size());

    GLSetAsArray<Thing> things(1, 1);
    Thing thing{1};
    things.AddToEnd(&thing);
    GLSetAssertNotice(&PrintAndEnd);
    things.AddToEnd(&thing); // a second time: the failed check ends the program
    std::printf("the second add was not caught\n");
    return 1;
}
