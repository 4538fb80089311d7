// GameFolder.cpp - see GameFolder.h.
#include "GameFolder.h"

#include "SoftText.h"

#include <vector>

bool ReadGameFile(const std::string& folder, GameFile* g, std::string* error)
{
    const std::string path = folder + "/game.txt";
    std::string text;
    bool missing = false;
    if (!SoftReadFile(path, &text, error, &missing)) {
        if (missing)
            *error += " (a game folder names its game library there)";
        return false;
    }
    const auto lines = SoftLines(text);
    std::vector<std::string> w;
    for (std::size_t i = 0; i < lines.size(); i++) {
        const std::string where = path + ":" + std::to_string(i + 1) + ": ";
        std::string fault;
        if (!SoftSplitWords(lines[i], &w, &fault)) {
            *error = where + fault;
            return false;
        }
        if (w.empty())
            continue;
        if (w[0] == "library" && w.size() == 2 && !w[1].empty())
            g->library = w[1][0] == '/' ? w[1] : folder + "/" + w[1];
        else if (w[0] == "title" && w.size() == 2)
            g->title = w[1];
        else {
            *error = where + "expected 'library <file>' or 'title \"<text>\"'";
            return false;
        }
    }
    if (g->library.empty()) {
        *error = path + ": no 'library <file>' line";
        return false;
    }
    return true;
}
