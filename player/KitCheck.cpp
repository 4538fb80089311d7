// KitCheck.cpp - see KitCheck.h.
#include "KitCheck.h"

#include "SoftKernel.h"
#include "SoftResources.h"
#include "SoftText.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <vector>

#ifdef QUINDLE_HAVE_KIT
#include "glkitchk.h"
#endif

namespace {

typedef void (*AddFunction)(void*, bool, const std::string&, const std::string&);

std::string Where(const std::string& file, int line)
{
    return line > 0 ? file + ":" + std::to_string(line) : file;
}

// The messages of a file by their five keys, with the line each stands on.
std::map<std::vector<int>, int> MessageKeys(const std::string& path, bool* read)
{
    std::map<std::vector<int>, int> keys;
    std::string text, error;
    std::vector<SoftMessage> messages;
    *read = SoftReadFile(path, &text, &error) && SoftParseMessages(text, path, &messages, &error);
    if (!*read)
        return keys;
    // The parser keeps no line numbers: the n-th message stands on the n-th line that is one.
    int n = 0;
    const std::vector<std::string> lines = SoftLines(text);
    std::vector<int> lineOf;
    for (std::size_t i = 0; i < lines.size(); i++) {
        const std::size_t first = lines[i].find_first_not_of(" \t");
        if (first != std::string::npos && lines[i][first] != '#')
            lineOf.push_back(static_cast<int>(i + 1));
    }
    for (const SoftMessage& m : messages) {
        keys[std::vector<int>(m.keys, m.keys + 5)] = n < static_cast<int>(lineOf.size()) ? lineOf[n] : 0;
        n++;
    }
    return keys;
}

#ifdef QUINDLE_HAVE_KIT
class PlayerCheckHost : public GLKitCheckHost {
public:
    PlayerCheckHost(const std::string& folder, AddFunction add, void* context)
        : mFolder(folder), mResources(folder), mAdd(add), mContext(context)
    {
    }
    int MessageExists(const std::string& language, const int keys[5]) override
    {
        const auto& base = Messages("");
        return Has(base, keys) || (!language.empty() && Has(Messages(language), keys));
    }
    int IconExists(int view, int loop, int cel) override
    {
        std::string error;
        const SoftView* v = mResources.View(view, &error);
        return v && loop >= 0 && loop < static_cast<int>(v->loops.size()) && cel >= 0 &&
               cel < static_cast<int>(v->loops[static_cast<std::size_t>(loop)].size());
    }
    int TextWidth(const std::string& text, int size) override
    {
        return mKernel.TextWidth(text.c_str(), size);
    }
    void Report(const std::string& file, int line, int fError, const std::string& text) override
    {
        mAdd(mContext, fError != 0, Where(file, line), text);
    }

private:
    static bool Has(const std::map<std::vector<int>, int>& messages, const int keys[5])
    {
        // Sequence 0 asks for the run: any message with the four keys.
        auto it = messages.lower_bound(std::vector<int>{keys[0], keys[1], keys[2], keys[3], keys[4] ? keys[4] : -2147483647 - 1});
        return it != messages.end() && std::equal(keys, keys + 4, it->first.begin()) &&
               (keys[4] == 0 || it->first[4] == keys[4]);
    }
    const std::map<std::vector<int>, int>& Messages(const std::string& language)
    {
        auto found = mMessages.find(language);
        if (found == mMessages.end()) {
            bool read = false;
            const std::string path =
                mFolder + (language.empty() ? std::string() : "/lang/" + language) + "/messages.txt";
            found = mMessages.emplace(language, MessageKeys(path, &read)).first;
        }
        return found->second;
    }

    std::string mFolder;
    SoftResources mResources;
    SoftKernel mKernel; // measures text with the font a run draws with
    AddFunction mAdd;
    void* mContext;
    std::map<std::string, std::map<std::vector<int>, int>> mMessages;
};
#endif

} // namespace

void CheckKitFiles(const std::string& folder, AddFunction add, void* context)
{
#ifdef QUINDLE_HAVE_KIT
    PlayerCheckHost host(folder, add, context);
    GLKitCheckFolder(folder, host);
    // What each language's messages lack, the default stands in for.
    bool read = false;
    const std::string base = folder + "/messages.txt";
    const auto defaults = MessageKeys(base, &read);
    for (const std::string& code : GLKitLanguages(folder)) {
        const std::string path = folder + "/lang/" + code + "/messages.txt";
        struct stat st;
        if (::stat(path.c_str(), &st) != 0)
            continue;
        const auto translated = MessageKeys(path, &read);
        if (!read)
            continue; // the file's own fault is the resource check's
        for (const auto& m : defaults)
            if (!translated.count(m.first))
                add(context, false, Where(base, m.second), "language " + code + " lacks this message");
    }
#else
    (void)folder;
    (void)add;
    (void)context;
#endif
}

std::string LocaleLanguage(const std::string& folder)
{
    const char* names[] = {"LC_ALL", "LC_MESSAGES", "LANG"};
    for (const char* name : names) {
        const char* value = std::getenv(name);
        if (!value || !*value)
            continue;
        std::string code(value);
        code = code.substr(0, code.find_first_of("_.@"));
        struct stat st;
        if (code.empty() || code == "C" || code == "POSIX" ||
            ::stat((folder + "/lang/" + code).c_str(), &st) != 0 || !S_ISDIR(st.st_mode))
            return std::string();
        return code;
    }
    return std::string();
}
