// Glkitdlg.cpp - see glkitdlg.h.
#include "glkitdlg.h"

#include "glevent.h"
#include "glgame.h"
#include "gldll.h"
#include "glkitinv.h"
#include "glmsg.h"
#include "glplane.h"
#include "gltimer.h"
#include "gluser.h"

#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <sstream>

namespace {

// Whitespace-separated words of a line, and where each starts.
std::vector<std::string> Words(const std::string& line, std::vector<std::size_t>* starts)
{
    std::vector<std::string> words;
    std::size_t i = 0;
    while (i < line.size()) {
        while (i < line.size() && (line[i] == ' ' || line[i] == '\t' || line[i] == '\r'))
            i++;
        if (i == line.size())
            break;
        const std::size_t start = i;
        while (i < line.size() && line[i] != ' ' && line[i] != '\t' && line[i] != '\r')
            i++;
        words.push_back(line.substr(start, i - start));
        starts->push_back(start);
    }
    return words;
}

int Number(const std::string& word, int* value)
{
    char* end = 0;
    errno = 0;
    const long n = std::strtol(word.c_str(), &end, 10);
    if (word.empty() || *end || errno || n < -2147483647L - 1 || n > 2147483647L)
        return FALSE;
    *value = static_cast<int>(n);
    return TRUE;
}

int IsName(const std::string& word)
{
    if (word.empty())
        return FALSE;
    for (char c : word)
        if (!(std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '.' || c == '-'))
            return FALSE;
    return TRUE;
}

// "name<op>number" into a condition.
int ParseCompare(const std::string& word, GLKitCondition* cond)
{
    static const struct {
        const char* text;
        GLKitCondition::Op op;
    } ops[] = {{"!=", GLKitCondition::ne}, {"<=", GLKitCondition::le}, {">=", GLKitCondition::ge},
               {"=", GLKitCondition::eq},  {"<", GLKitCondition::lt},  {">", GLKitCondition::gt}};
    const std::size_t at = word.find_first_of("!=<>");
    if (at == std::string::npos || at == 0)
        return FALSE;
    for (const auto& op : ops) {
        const std::string text = op.text;
        if (word.compare(at, text.size(), text) == 0) {
            cond->mName = word.substr(0, at);
            cond->mOp = op.op;
            return IsName(cond->mName) && Number(word.substr(at + text.size()), &cond->mValue);
        }
    }
    return FALSE;
}

// One parser pass over a line's words from index i; what a node and an
// option share: set, give, take, goto, end. Returns the words used (0: none).
int ParseStep(const std::vector<std::string>& w, std::size_t i, std::vector<GLKitEffect>* effects, GLKitLead* lead,
              std::string* error)
{
    const std::string& word = w[i];
    if (word == "set") {
        GLKitEffect e;
        e.mKind = GLKitEffect::set;
        if (i + 2 >= w.size() || !IsName(w[i + 1]) || !Number(w[i + 2], &e.mValue)) {
            *error = "\"set\" takes a name and a number";
            return -1;
        }
        e.mName = w[i + 1];
        effects->push_back(e);
        return 3;
    }
    if (word == "give" || word == "take") {
        if (i + 1 >= w.size() || !IsName(w[i + 1])) {
            *error = "\"" + word + "\" takes an item";
            return -1;
        }
        GLKitEffect e;
        e.mKind = word == "give" ? GLKitEffect::give : GLKitEffect::take;
        e.mName = w[i + 1];
        effects->push_back(e);
        return 2;
    }
    if (word == "goto") {
        if (i + 1 >= w.size() || !IsName(w[i + 1])) {
            *error = "\"goto\" takes a node";
            return -1;
        }
        if (!lead->mGoto.empty() || lead->fEnd) {
            *error = "one \"goto\" or \"end\" only";
            return -1;
        }
        lead->mGoto = w[i + 1];
        return 2;
    }
    if (word == "end") {
        if (!lead->mGoto.empty() || lead->fEnd) {
            *error = "one \"goto\" or \"end\" only";
            return -1;
        }
        lead->fEnd = TRUE;
        if (i + 1 < w.size() && IsName(w[i + 1]) && w[i + 1] != "set" && w[i + 1] != "give" &&
            w[i + 1] != "take" && w[i + 1] != "goto" && w[i + 1] != "once" && w[i + 1] != "if") {
            lead->mHow = w[i + 1];
            return 2;
        }
        return 1;
    }
    return 0;
}

} // namespace

// ----- Conditions -----

int GLKitCondition::Holds(const GLKitState& state) const
{
    const int v = state.Get(mName);
    switch (mOp) {
    case eq: return v == mValue;
    case ne: return v != mValue;
    case lt: return v < mValue;
    case gt: return v > mValue;
    case le: return v <= mValue;
    case ge: return v >= mValue;
    case has: return state.IsCarried(mName);
    case lacks: return !state.IsCarried(mName);
    }
    return FALSE;
}

// ----- Reading a dialogue -----

int GLKitScript::Read(const std::string& path, GLKitReport report, void* context)
{
    mPath = path;
    mNodes.clear();
    std::vector<std::string> lines;
    std::string error;
    if (!GLKitReadLines(path, &lines, &error)) {
        report(context, path, 0, TRUE, error);
        return FALSE;
    }
    int ok = TRUE;
    auto fault = [&](int line, const std::string& what) {
        report(context, path, line, TRUE, what);
        ok = FALSE;
    };
    for (std::size_t n = 0; n < lines.size(); n++) {
        const int line = static_cast<int>(n + 1);
        std::vector<std::size_t> starts;
        const std::vector<std::string> w = Words(lines[n], &starts);
        if (w.empty() || w[0][0] == '#')
            continue;
        const std::string& key = w[0];
        if (key == "layout") {
            if (w.size() != 3 || !Number(w[1], &mWidth) || !Number(w[2], &mSize) || mWidth < 1 || mSize < 6 ||
                mSize > 96)
                fault(line, "a layout is \"layout <width> <size>\" (size 6..96)");
            continue;
        }
        if (key == "node") {
            if (w.size() != 2 || !IsName(w[1])) {
                fault(line, "a node is \"node <name>\"");
                continue;
            }
            if (Find(w[1]) >= 0) {
                fault(line, "node \"" + w[1] + "\" is there twice");
                continue;
            }
            GLKitNode node;
            node.mName = w[1];
            node.mLine = line;
            mNodes.push_back(node);
            continue;
        }
        if (mNodes.empty()) {
            fault(line, "\"" + key + "\" before the first node");
            continue;
        }
        GLKitNode& node = mNodes.back();
        if (key == "say") {
            GLKitSay say;
            say.mLine = line;
            int good = w.size() == 5 || w.size() == 6;
            for (std::size_t i = 1; good && i < w.size(); i++)
                good = Number(w[i], &say.mKeys[i - 1]);
            if (!good || say.mKeys[4] < 0)
                fault(line, "a line is \"say <key> <key> <key> <key> [<sequence>]\"");
            else
                node.mSays.push_back(say);
            continue;
        }
        if (key == "option") {
            GLKitOption option;
            option.mLine = line;
            option.mLead.mLine = line;
            std::size_t i = 1;
            std::string bad;
            while (i < w.size() && w[i] != ":" && bad.empty()) {
                if (w[i] == "once") {
                    option.fOnce = TRUE;
                    i++;
                } else if (w[i] == "if") {
                    GLKitCondition cond;
                    if (i + 2 < w.size() && (w[i + 1] == "has" || w[i + 1] == "lacks") && IsName(w[i + 2])) {
                        cond.mOp = w[i + 1] == "has" ? GLKitCondition::has : GLKitCondition::lacks;
                        cond.mName = w[i + 2];
                        i += 3;
                    } else if (i + 1 < w.size() && ParseCompare(w[i + 1], &cond)) {
                        i += 2;
                    } else {
                        bad = "a condition is \"if <name><op><number>\", \"if has <item>\" or \"if lacks <item>\"";
                    }
                    if (bad.empty())
                        option.mConditions.push_back(cond);
                } else {
                    const int used = ParseStep(w, i, &option.mEffects, &option.mLead, &bad);
                    if (used == 0)
                        bad = "\"" + w[i] + "\" is no part of an option";
                    else if (used > 0)
                        i += static_cast<std::size_t>(used);
                }
            }
            if (bad.empty() && (i >= w.size() || w[i] != ":"))
                bad = "an option's text follows a lone ':'";
            if (bad.empty()) {
                option.mText = i + 1 < w.size() ? lines[n].substr(starts[i + 1]) : std::string();
                while (!option.mText.empty() && (option.mText.back() == ' ' || option.mText.back() == '\t' ||
                                                 option.mText.back() == '\r'))
                    option.mText.pop_back();
                if (option.mText.empty())
                    bad = "an option has no text";
            }
            if (!bad.empty())
                fault(line, bad);
            else
                node.mOptions.push_back(option);
            continue;
        }
        std::string bad;
        node.mLead.mLine = node.mLead.mLine ? node.mLead.mLine : line;
        const int used = ParseStep(w, 0, &node.mEffects, &node.mLead, &bad);
        if (used == 0)
            bad = "\"" + key + "\" is no line of a dialogue";
        else if (used > 0 && static_cast<std::size_t>(used) != w.size())
            bad = "more after \"" + key + "\" than it takes";
        if (!bad.empty())
            fault(line, bad);
        if (key == "goto" || key == "end")
            node.mLead.mLine = line;
    }
    if (mNodes.empty())
        fault(0, "no node");
    return ok;
}

int GLKitScript::Find(const std::string& name) const
{
    for (std::size_t i = 0; i < mNodes.size(); i++)
        if (mNodes[i].mName == name)
            return static_cast<int>(i);
    return -1;
}

// ----- Running a dialogue -----

GLKitDialog::GLKitDialog(GLMessager* pMessager, GLKitTextOps* pOps, AbsGLPlane* pPlane, const GLKitStyle& style,
                         GLKitState* pState, GLKitInventory* pInventory)
    : mpMessager(pMessager), mpOps(pOps), mpPlane(pPlane), mStyle(style), mpState(pState), mpInventory(pInventory)
{
    GL_ASSERT(pMessager);
    GL_ASSERT(pOps);
    GL_ASSERT(pPlane);
    GL_ASSERT(pState);
}

GLKitDialog::~GLKitDialog()
{
    Withdraw();
}

int GLKitDialog::Start(const GLKitFolder& folder, int iNumber, GLObject* pCaller)
{
    const std::string name = "dialogs/" + std::to_string(iNumber) + ".txt";
    GLKitScript script;
    if (!script.Read(folder.Find(name)) && script.mNodes.empty())
        return FALSE;
    return Start(script, std::to_string(iNumber), pCaller);
}

int GLKitDialog::Start(const GLKitScript& script, const std::string& name, GLObject* pCaller)
{
    GL_ASSERT(!mRunning);
    if (script.mNodes.empty())
        return FALSE;
    mScript = script;
    mName = name;
    mpCaller = pCaller;
    mRunning = TRUE;
    mEnding.clear();
    GLKitLog("dialogue " + mName + " begins");
    Enter(0);
    return TRUE;
}

const std::string& GLKitDialog::GetNode() const
{
    static const std::string none;
    return mNode >= 0 ? mScript.mNodes[static_cast<std::size_t>(mNode)].mName : none;
}

void GLKitDialog::Apply(const GLKitEffect& effect)
{
    switch (effect.mKind) {
    case GLKitEffect::set:
        mpState->Set(effect.mName, effect.mValue);
        break;
    case GLKitEffect::give:
        if (mpInventory)
            mpInventory->PickUp(effect.mName);
        else
            mpState->mPlaces[effect.mName] = GLKitState::kCarried;
        break;
    case GLKitEffect::take:
        if (mpInventory)
            mpInventory->GiveAway(effect.mName);
        else
            mpState->mPlaces[effect.mName] = GLKitState::kNowhere;
        break;
    }
}

void GLKitDialog::Enter(int iNode)
{
    mNode = iNode;
    const GLKitNode& node = mScript.mNodes[static_cast<std::size_t>(iNode)];
    GLKitLog("dialogue " + mName + " node " + node.mName);
    for (const GLKitEffect& effect : node.mEffects)
        Apply(effect);
    mNextSay = 0;
    SayNext();
}

void GLKitDialog::SayNext()
{
    const GLKitNode& node = mScript.mNodes[static_cast<std::size_t>(mNode)];
    if (mNextSay < node.mSays.size()) {
        const int* k = node.mSays[mNextSay++].mKeys;
        // The messager cues us when the line (or run) is over, found or not.
        mpMessager->Say(k[0], k[1], k[2], k[3], k[4], this);
        return;
    }
    if (!node.mOptions.empty())
        Offer();
    else
        Follow(node.mLead);
}

void GLKitDialog::Cue(GLCue* pCue)
{
    if (!mRunning || pCue->mpCuer != mpMessager || mChoosing)
        return;
    // Cut short (Escape while a line is said) skips the node's other lines.
    if (pCue->mValue)
        mNextSay = mScript.mNodes[static_cast<std::size_t>(mNode)].mSays.size();
    SayNext();
}

void GLKitDialog::Follow(const GLKitLead& lead)
{
    if (!lead.mGoto.empty()) {
        const int next = mScript.Find(lead.mGoto);
        if (next >= 0) {
            Enter(next);
            return;
        }
        GLKitNotify(0, mScript.mPath, lead.mLine, TRUE,
                    "goes to node \"" + lead.mGoto + "\", which the dialogue lacks");
    }
    End(0, lead.mHow);
}

std::string GLKitDialog::SaidKey(int iOption) const
{
    return mName + "/" + GetNode() + "/" + std::to_string(iOption + 1);
}

void GLKitDialog::Offer()
{
    Withdraw();
    const GLKitNode& node = mScript.mNodes[static_cast<std::size_t>(mNode)];
    for (std::size_t i = 0; i < node.mOptions.size(); i++) {
        const GLKitOption& option = node.mOptions[i];
        if (option.fOnce && mpState->mSaid.count(SaidKey(static_cast<int>(i))))
            continue;
        int offered = TRUE;
        for (const GLKitCondition& cond : option.mConditions)
            offered = offered && cond.Holds(*mpState);
        if (offered)
            mShown.push_back(static_cast<int>(i));
    }
    if (mShown.empty()) {
        End(0, std::string());
        return;
    }
    // One option a line, numbered, from the plane's top-left corner down.
    const ZOR_Rect& rect = mpPlane->GetRect();
    const int width = rect.right - rect.left + 1 - 16;
    mMaxWidth = width < mScript.mWidth ? width : mScript.mWidth;
    int y = 8;
    for (std::size_t i = 0; i < mShown.size(); i++) {
        GLKitText* line = GL_NEW GLKitText(mpOps, mpPlane, mStyle, 100);
        GL_ASSERT(line);
        const GLKitOption& option = node.mOptions[static_cast<std::size_t>(mShown[i])];
        line->Show(std::to_string(i + 1) + ". " + option.mText, GLPoint(8, y), mMaxWidth);
        const ZOR_Rect r = line->Rect();
        y += (r.IsEmpty() ? mStyle.mSize : r.bottom - r.top + 1) + 4;
        mLines.push_back(line);
    }
    mHovered = -1;
    mChoosing = TRUE;
    theGame->mpUser->mpHogs->AddToFront(this);
}

void GLKitDialog::Withdraw()
{
    for (GLKitText* line : mLines)
        delete line;
    mLines.clear();
    mShown.clear();
    if (mChoosing && theGame && theGame->mpUser->mpHogs->IsInList(this))
        theGame->mpUser->mpHogs->Remove(this);
    mChoosing = FALSE;
}

std::vector<std::string> GLKitDialog::Offered() const
{
    std::vector<std::string> texts;
    if (mNode >= 0)
        for (int i : mShown)
            texts.push_back(mScript.mNodes[static_cast<std::size_t>(mNode)].mOptions[static_cast<std::size_t>(i)].mText);
    return texts;
}

int GLKitDialog::HandleEvent(GLEvent* pEvent)
{
    if (!mChoosing)
        return pEvent->claimed;
    pEvent->claimed = TRUE;
    if (pEvent->type == kEventKeyDown) {
        const int key = pEvent->message;
        if (key >= '1' && key <= '9' && key - '1' < static_cast<int>(mShown.size()))
            Choose(key - '1');
        else if (static_cast<std::uint32_t>(key) == kKeyEscape)
            End(1, "cut");
        return TRUE;
    }
    if (pEvent->type != kEventPointerUp && pEvent->type != kEventPointerMove)
        return TRUE;
    // The event reaches a hog in screen coordinates.
    ZOR_Point at(pEvent->where.GetX(), pEvent->where.GetY());
    mpPlane->ToLocal(&at);
    int over = -1;
    for (std::size_t i = 0; i < mLines.size(); i++) {
        const ZOR_Rect r = mLines[i]->Rect();
        if (at.y >= r.top && at.y <= r.bottom && at.x >= r.left && at.x <= r.left + mMaxWidth)
            over = static_cast<int>(i);
    }
    // An option is chosen as the button comes up, so the release reaches no
    // one else (a narrator of the next line would take it as "go on").
    if (pEvent->type == kEventPointerUp) {
        if (over >= 0)
            Choose(over);
        return TRUE;
    }
    if (over != mHovered) {
        const GLKitNode& node = mScript.mNodes[static_cast<std::size_t>(mNode)];
        for (std::size_t i = 0; i < mLines.size(); i++) {
            const GLKitOption& option = node.mOptions[static_cast<std::size_t>(mShown[i])];
            const ZOR_Rect r = mLines[i]->Rect();
            mLines[i]->Show(std::to_string(i + 1) + ". " + option.mText, GLPoint(r.left, r.top), mMaxWidth,
                            static_cast<int>(i) == over ? mStyle.mHighlight : mStyle.mInk);
        }
        mHovered = over;
    }
    return TRUE;
}

void GLKitDialog::Choose(int iShown)
{
    GL_ASSERT(mChoosing);
    GL_ASSERT(iShown >= 0 && iShown < static_cast<int>(mShown.size()));
    const int index = mShown[static_cast<std::size_t>(iShown)];
    const GLKitOption& option = mScript.mNodes[static_cast<std::size_t>(mNode)].mOptions[static_cast<std::size_t>(index)];
    std::ostringstream log;
    log << "dialogue " << mName << " choose " << iShown + 1 << ": " << option.mText;
    GLKitLog(log.str());
    if (option.fOnce)
        mpState->mSaid.insert(SaidKey(index));
    Withdraw();
    for (const GLKitEffect& effect : option.mEffects)
        Apply(effect);
    if (option.mLead.mGoto.empty() && !option.mLead.fEnd)
        Offer();
    else
        Follow(option.mLead);
}

void GLKitDialog::End(int iValue, const std::string& how)
{
    Withdraw();
    mRunning = FALSE;
    mNode = -1;
    mEnding = how;
    GLKitLog("dialogue " + mName + " ends" + (how.empty() ? std::string() : " " + how));
    if (mpCaller)
        GL_NEW GLCue(mpCaller, this, iValue, 0);
}
