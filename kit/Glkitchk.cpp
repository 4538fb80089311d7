// Glkitchk.cpp - see glkitchk.h.
#include "glkitchk.h"

#include "glcursor.h"
#include "glkitdlg.h"
#include "glkitinv.h"

#include <dirent.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <set>

namespace {

std::vector<std::string> Entries(const std::string& dir)
{
    std::vector<std::string> names;
    DIR* d = ::opendir(dir.c_str());
    if (!d)
        return names;
    while (const dirent* e = ::readdir(d)) {
        const std::string name = e->d_name;
        if (name != "." && name != "..")
            names.push_back(name);
    }
    ::closedir(d);
    std::sort(names.begin(), names.end());
    return names;
}

struct Counter {
    GLKitCheckHost* host;
    int errors = 0;
};

void Relay(void* context, const std::string& file, int line, int fError, const std::string& text)
{
    Counter* c = static_cast<Counter*>(context);
    if (fError)
        c->errors++;
    c->host->Report(file, line, fError, text);
}

// What the whole game knows: items, and the values someone sets.
struct Known {
    std::set<std::string> items;
    std::set<std::string> values;
};

void CheckWidth(Counter& c, const std::string& file, int line, const std::string& text, int width, int size)
{
    const int w = c.host->TextWidth(text, size);
    if (w > width)
        Relay(&c, file, line, TRUE,
              "\"" + text + "\" is " + std::to_string(w) + " pixels wide, over its " + std::to_string(width));
}

void CheckLead(Counter& c, const GLKitScript& script, const GLKitLead& lead)
{
    if (!lead.mGoto.empty() && script.Find(lead.mGoto) < 0)
        Relay(&c, script.mPath, lead.mLine, TRUE, "goes to node \"" + lead.mGoto + "\", which the dialogue lacks");
}

void CheckEffects(Counter& c, const std::string& file, int line, const std::vector<GLKitEffect>& effects,
                  const Known& known)
{
    for (const GLKitEffect& e : effects)
        if (e.mKind != GLKitEffect::set && !known.items.count(e.mName))
            Relay(&c, file, line, TRUE, "no item \"" + e.mName + "\" in items.txt");
}

void CheckScript(Counter& c, const GLKitScript& script, const std::string& language, const Known& known)
{
    for (const GLKitNode& node : script.mNodes) {
        CheckLead(c, script, node.mLead);
        CheckEffects(c, script.mPath, node.mLine, node.mEffects, known);
        for (const GLKitSay& say : node.mSays)
            if (!c.host->MessageExists(language, say.mKeys))
                Relay(&c, script.mPath, say.mLine, TRUE, "no message " + std::to_string(say.mKeys[0]) + " " +
                                                             std::to_string(say.mKeys[1]) + " " +
                                                             std::to_string(say.mKeys[2]) + " " +
                                                             std::to_string(say.mKeys[3]) + " " +
                                                             std::to_string(say.mKeys[4]));
        for (std::size_t i = 0; i < node.mOptions.size(); i++) {
            const GLKitOption& option = node.mOptions[i];
            CheckLead(c, script, option.mLead);
            CheckEffects(c, script.mPath, option.mLine, option.mEffects, known);
            for (const GLKitCondition& cond : option.mConditions) {
                const bool item = cond.mOp == GLKitCondition::has || cond.mOp == GLKitCondition::lacks;
                if (item && !known.items.count(cond.mName))
                    Relay(&c, script.mPath, option.mLine, TRUE, "no item \"" + cond.mName + "\" in items.txt");
                else if (!item && !known.values.count(cond.mName))
                    Relay(&c, script.mPath, option.mLine, TRUE,
                          "a condition on \"" + cond.mName + "\", which nothing sets");
            }
            // Options are shown numbered; a choice holds at most nine.
            CheckWidth(c, script.mPath, option.mLine, std::to_string(i + 1) + ". " + option.mText, script.mWidth,
                       script.mSize);
        }
    }
}

void AddValues(const GLKitScript& script, Known* known)
{
    auto add = [known](const std::vector<GLKitEffect>& effects) {
        for (const GLKitEffect& e : effects)
            if (e.mKind == GLKitEffect::set)
                known->values.insert(e.mName);
    };
    for (const GLKitNode& node : script.mNodes) {
        add(node.mEffects);
        for (const GLKitOption& option : node.mOptions)
            add(option.mEffects);
    }
}

void CheckNames(Counter& c, const GLKitNames& names, const std::string& file)
{
    for (const auto& text : names.mTexts) {
        auto line = names.mLines.find(text.first);
        if (line != names.mLines.end())
            CheckWidth(c, file, line->second, text.second, names.mWidth, names.mSize);
    }
}

} // namespace

std::vector<std::string> GLKitLanguages(const std::string& folder)
{
    std::vector<std::string> codes;
    for (const std::string& name : Entries(folder + "/lang"))
        if (name[0] != '.')
            codes.push_back(name);
    return codes;
}

int GLKitCheckFolder(const std::string& folder, GLKitCheckHost& host)
{
    Counter c;
    c.host = &host;
    const GLKitFolder base(folder, std::string());
    Known known;

    // Items, and their icons.
    const std::string itemsPath = base.Default("items.txt");
    std::vector<GLKitItemLine> items;
    if (GLKitFileExists(itemsPath))
        GLKitReadItems(itemsPath, &items, Relay, &c);
    for (const GLKitItemLine& item : items) {
        known.items.insert(item.mKey);
        if (!host.IconExists(item.mView, item.mLoop, item.mCel))
            Relay(&c, itemsPath, item.mLine, TRUE,
                  "the icon of \"" + item.mKey + "\" (view " + std::to_string(item.mView) + " loop " +
                      std::to_string(item.mLoop) + " cel " + std::to_string(item.mCel) + ") is not there");
    }
    std::string error;
    std::vector<std::string> values;
    if (GLKitFileExists(base.Default("values.txt")) && GLKitReadLines(base.Default("values.txt"), &values, &error))
        for (const std::string& v : values) {
            char name[128];
            if (std::sscanf(v.c_str(), "%127s", name) == 1 && name[0] != '#')
                known.values.insert(name);
        }

    // Dialogues: read all first, for the values they set.
    const std::vector<std::string> files = Entries(folder + "/dialogs");
    std::vector<GLKitScript> scripts(files.size());
    for (std::size_t i = 0; i < files.size(); i++) {
        scripts[i].Read(base.Default("dialogs/" + files[i]), Relay, &c);
        AddValues(scripts[i], &known);
    }
    for (const GLKitScript& script : scripts)
        CheckScript(c, script, std::string(), known);

    // Names.
    GLKitNames names;
    const std::string namesPath = base.Default("names.txt");
    if (GLKitFileExists(namesPath)) {
        names.Read(namesPath, Relay, &c);
        CheckNames(c, names, namesPath);
    }
    for (const GLKitItemLine& item : items)
        if (!names.mLines.count(item.mKey))
            Relay(&c, itemsPath, item.mLine, FALSE, "\"" + item.mKey + "\" has no name in names.txt");

    // Each language: what it has is checked as the default is; what it lacks is a warning.
    for (const std::string& code : GLKitLanguages(folder)) {
        const GLKitFolder lang(folder, code);
        for (const std::string& file : files) {
            const std::string path = lang.InLanguage("dialogs/" + file);
            if (!GLKitFileExists(path)) {
                Relay(&c, base.Default("dialogs/" + file), 0, FALSE, "language " + code + " lacks this dialogue");
                continue;
            }
            GLKitScript script;
            script.Read(path, Relay, &c);
            CheckScript(c, script, code, known);
        }
        GLKitNames translated;
        const std::string path = lang.InLanguage("names.txt");
        if (GLKitFileExists(path)) {
            translated.Read(path, Relay, &c);
            CheckNames(c, translated, path);
        }
        for (const auto& line : names.mLines)
            if (!translated.mLines.count(line.first))
                Relay(&c, namesPath, line.second, FALSE, "language " + code + " lacks \"" + line.first + "\"");
    }
    return c.errors;
}
