// glkitchk.h - reading every file of the kit in a game folder, as a checker
// does before the game runs.
//
// Checked: every dialogue (dialogs/*.txt), items.txt and names.txt, in the
// folder and in each language folder (lang/<code>/):
//   - errors: a line that does not read; an option or node that goes to a
//     node the dialogue lacks; a condition on a value that no dialogue sets
//     and values.txt does not list; an item that items.txt lacks; a line
//     said that the message store lacks; an item's icon that is not there;
//     an option or name wider than its layout allows;
//   - warnings: a dialogue or name a language lacks (the default stands in),
//     an item without a name.
// values.txt lists the values the game's own code sets, one name a line.
#ifndef QUINDLE_GLKITCHK_H
#define QUINDLE_GLKITCHK_H

#include "glkit.h"

#include <string>
#include <vector>

// What the checker asks of the host that runs it.
class GLKIT_API GLKitCheckHost {
public:
    virtual ~GLKitCheckHost() {}
    // The message store of that language ("" the default) has the message
    // (a sequence of 0: any message of the run).
    virtual int MessageExists(const std::string& language, const int keys[5]) = 0;
    // The view has that loop and cel.
    virtual int IconExists(int view, int loop, int cel) = 0;
    // The width of one line at that size; -1 when text cannot be measured.
    virtual int TextWidth(const std::string& text, int size) = 0;
    // A problem, with its file and line (0: the file as a whole).
    virtual void Report(const std::string& file, int line, int fError, const std::string& text) = 0;
};

// Checks the kit's files of the folder; returns the number of errors.
GLKIT_API int GLKitCheckFolder(const std::string& folder, GLKitCheckHost& host);

// The codes of the language folders (lang/<code>/), sorted.
GLKIT_API std::vector<std::string> GLKitLanguages(const std::string& folder);

#endif
