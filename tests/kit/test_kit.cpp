// test_kit.cpp - the adventure kit on the recording kernel: a dialogue run by
// keys and clicks, the inventory's use-on and hover names, the state's named
// values, and the checker of the kit's files.
#include "GameTest.h"

#include "glcel.h"
#include "glcursor.h"
#include "glfeatur.h"
#include "glkitchk.h"
#include "glkitdlg.h"
#include "glkitinv.h"
#include "glmsg.h"
#include "glsave.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace {

// Bitmap text on the recording kernel: every bitmap is a valid memory id,
// letters are 8 pixels wide, and what was drawn is kept by id.
class TestTextOps : public GLKitTextOps {
public:
    explicit TestTextOps(RecordingKernel& k) : mK(k) {}
    std::uint16_t CreateMemBitmap(int, int, int, int) override
    {
        mK.validMemIds[++mNext] = true;
        return mNext;
    }
    void FreeMemBitmap(std::uint16_t id) override
    {
        mK.validMemIds.erase(id);
        drawn.erase(id);
    }
    void FillMemBitmap(std::uint16_t, int, int, int, int, int) override {}
    int DrawText(std::uint16_t id, int, int, const char* text, int, int size, int) override
    {
        drawn[id] = text;
        return size;
    }
    int TextWidth(const char* text, int) override { return 8 * static_cast<int>(std::string(text).size()); }
    // The texts on live bitmaps, in the order they were made.
    std::vector<std::string> Shown() const
    {
        std::vector<std::string> texts;
        for (const auto& d : drawn)
            texts.push_back(d.second);
        return texts;
    }
    std::map<std::uint16_t, std::string> drawn;

private:
    RecordingKernel& mK;
    std::uint16_t mNext = 0;
};

std::vector<std::string> gLog;
void Keep(const char* line)
{
    gLog.push_back(line);
}

// A new, empty folder for each call, under the test's own temporary folder.
std::string TempFolder()
{
    static int made = 0;
    const std::filesystem::path folder = std::filesystem::path(::testing::TempDir()) /
                                         ("quindle-kit-" + std::to_string(++made));
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    return folder.generic_string();
}

void Write(const std::string& path, const std::string& text)
{
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

const char* const kDialogue = "layout 300 15\n"
                              "node start\n"
                              "  say 1 1 0 0\n"
                              "  option once : Who are you?\n"
                              "  option if rung=0 set asked 1 goto gate : Open the gate?\n"
                              "  option if has bell goto bell : I have a bell.\n"
                              "  option end bye : Goodbye.\n"
                              "node gate\n"
                              "  give bell\n"
                              "  say 1 2 0 0 1\n"
                              "  end given\n"
                              "node bell\n"
                              "  end\n";

class KitTest : public GameTest {
protected:
    KitTest() : text(k)
    {
        gLog.clear();
        GLKitSetLog(Keep);
        k.AddMessage(1, 1, 0, 0, 1, 1, "Hello.");
        k.AddMessage(1, 2, 0, 0, 1, 1, "Take this bell.");
        GLCelRes arrow(900, 0, 0, 0);
        game->SetCursor(new GLCursor(arrow, TRUE));
        names.Set("bell", "the bell");
        names.Set("gate", "the gate");
        names.Set("rope", "a rope");
    }
    ~KitTest() override { GLKitSetLog(nullptr); }

    // Frames until the dialogue offers a choice or ends.
    void RunLines(GLKitDialog& d)
    {
        for (int i = 0; i < 400 && d.IsRunning() && !d.IsChoosing(); i++)
            Frame(k.ticks + 10);
    }
    GLKitScript Script(const std::string& body)
    {
        const std::string folder = TempFolder();
        Write(folder + "/d.txt", body);
        GLKitScript script;
        script.Read(folder + "/d.txt");
        return script;
    }

    TestTextOps text;
    GLKitStyle style;
    GLKitState state;
    GLKitNames names;
    GLMessager messager;
};

// A handler that keeps what it got and takes what it is told to.
class Taker : public GLKitHandler {
public:
    explicit Taker(int take) : mTake(take) {}
    int KitAction(const GLKitAction& action) override
    {
        got.push_back(action.Describe());
        return mTake;
    }
    std::vector<std::string> got;
    int mTake;
};

TEST_F(KitTest, DialogueOffersChoosesAndEnds)
{
    GLKitDialog dialog(&messager, &text, plane, style, &state, nullptr);
    CueRecorder caller;
    ASSERT_TRUE(dialog.Start(Script(kDialogue), "7", &caller));
    RunLines(dialog);
    ASSERT_TRUE(dialog.IsChoosing());
    EXPECT_EQ(dialog.Offered(), (std::vector<std::string>{"Who are you?", "Open the gate?", "Goodbye."}));
    EXPECT_EQ(text.Shown(), (std::vector<std::string>{"1. Who are you?", "2. Open the gate?", "3. Goodbye."}));

    // Key 1: a once-option with no lead offers the node again, without it.
    k.PushEvent(kEventKeyDown, '1');
    Frame(k.ticks + 1);
    EXPECT_EQ(dialog.Offered(), (std::vector<std::string>{"Open the gate?", "Goodbye."}));
    EXPECT_EQ(state.mSaid.count("7/start/1"), 1u);

    // A click on the first line shown: its effects, its node's effects and lines, its end.
    k.PushEvent(kEventPointerDown, 0, 0, 20, 10);
    Frame(k.ticks + 1);
    EXPECT_TRUE(dialog.IsChoosing()); // chosen as the button comes up
    k.PushEvent(kEventPointerUp, 0, 0, 20, 10);
    Frame(k.ticks + 1);
    EXPECT_EQ(dialog.GetNode(), "gate");
    EXPECT_EQ(state.Get("asked"), 1);
    EXPECT_TRUE(state.IsCarried("bell"));
    RunLines(dialog);
    Frame(k.ticks + 1);
    EXPECT_FALSE(dialog.IsRunning());
    EXPECT_EQ(dialog.GetEnding(), "given");
    EXPECT_EQ(caller.cues, 1);
    EXPECT_EQ(caller.lastCuer, &dialog);
    EXPECT_EQ(caller.lastValue, 0);
    EXPECT_TRUE(text.Shown().empty());
    EXPECT_EQ(game->mpUser->mpHogs->NumElements(), 0);
    EXPECT_EQ(gLog, (std::vector<std::string>{"dialogue 7 begins", "dialogue 7 node start",
                                              "dialogue 7 choose 1: Who are you?", "dialogue 7 choose 1: Open the gate?",
                                              "dialogue 7 node gate", "dialogue 7 ends given"}));

    // Said once stays said; the bell now carried changes what is offered.
    ASSERT_TRUE(dialog.Start(Script(kDialogue), "7", &caller));
    RunLines(dialog);
    EXPECT_EQ(dialog.Offered(), (std::vector<std::string>{"Open the gate?", "I have a bell.", "Goodbye."}));
    // Escape at a choice cuts the dialogue short.
    k.PushEvent(kEventKeyDown, kKeyEscape);
    Frame(k.ticks + 1);
    Frame(k.ticks + 1);
    EXPECT_EQ(caller.cues, 2);
    EXPECT_EQ(caller.lastValue, 1);
    EXPECT_EQ(dialog.GetEnding(), "cut");
}

TEST_F(KitTest, ScriptFaultsNameTheirLine)
{
    struct Case {
        const char* body;
        int line;
        const char* says;
    } cases[] = {
        {"say 1 1 0 0\nnode a\n", 1, "before the first node"},
        {"node a\nnode a\n", 2, "there twice"},
        {"node a\n  say 1 x 0 0\n", 2, "a line is"},
        {"node a\n  option goto b\n", 2, "lone ':'"},
        {"node a\n  option if x~1 : Hi\n", 2, "a condition is"},
        {"node a\n  option goto b end : Hi\n", 2, "one \"goto\" or \"end\" only"},
        {"node a\n  option jump : Hi\n", 2, "no part of an option"},
        {"node a\n  set x\n", 2, "takes a name and a number"},
        {"node a\n  goto b c\n", 2, "more after"},
        {"layout 10 200\nnode a\n", 1, "a layout is"},
        {"", 0, "no node"},
    };
    for (const Case& c : cases) {
        std::vector<std::pair<int, std::string>> faults;
        const std::string folder = TempFolder();
        Write(folder + "/d.txt", c.body);
        GLKitScript script;
        EXPECT_FALSE(script.Read(folder + "/d.txt",
                                 [](void* ctx, const std::string&, int line, int, const std::string& text) {
                                     static_cast<std::vector<std::pair<int, std::string>>*>(ctx)->push_back({line, text});
                                 },
                                 &faults))
            << c.body;
        ASSERT_EQ(faults.size(), 1u) << c.body;
        EXPECT_EQ(faults[0].first, c.line) << c.body;
        EXPECT_NE(faults[0].second.find(c.says), std::string::npos) << faults[0].second;
    }
}

TEST_F(KitTest, ItemsAreHeldUsedAndCombined)
{
    GLKitInventory inv(&text, plane, GLPoint(400, 440), 40, plane, GLPoint(10, 450), style, &state, &names);
    inv.Install();
    Taker gate(TRUE), rope(FALSE), fallback(TRUE);
    inv.AddItem("bell", GLCelRes(120, 0, 0, 0));
    inv.AddItem("rope", GLCelRes(121, 0, 0, 0), &rope);
    inv.SetFallback(&fallback);
    GLFeature gateArea(plane);
    gateArea.Init(100, 100, 199, 199);
    inv.Name(&gateArea, "gate", &gate);
    inv.PickUp("bell");
    inv.PickUp("rope");
    EXPECT_EQ(inv.Carried(), (std::vector<std::string>{"bell", "rope"}));

    // A click on the bell's icon (10 x 10 at 400, 440) takes it in hand and the cursor shows it.
    k.PushEvent(kEventPointerDown, 0, 0, 405, 445);
    Frame(1);
    EXPECT_EQ(inv.Held(), "bell");
    EXPECT_EQ(k.CallsNamed("SetCursorView").back(), "SetCursorView(120,0,0)");
    // Moving over the gate names the use; a click delivers it to the gate's handler.
    k.PushEvent(kEventPointerMove, 0, 0, 150, 150);
    Frame(2);
    EXPECT_EQ(text.Shown(), (std::vector<std::string>{"use the bell on the gate"}));
    k.PushEvent(kEventPointerDown, 0, 0, 150, 150);
    Frame(3);
    EXPECT_EQ(gate.got, (std::vector<std::string>{"use bell on gate"}));
    EXPECT_EQ(inv.Held(), "");
    EXPECT_EQ(k.CallsNamed("SetCursorView").back(), "SetCursorView(900,0,0)");

    // Bell on rope: the rope's handler declines, so the fallback gets it.
    inv.Hold("bell");
    k.PushEvent(kEventPointerDown, 0, 0, 445, 445);
    Frame(4);
    EXPECT_EQ(rope.got, (std::vector<std::string>{"combine bell with rope"}));
    EXPECT_EQ(fallback.got, (std::vector<std::string>{"combine bell with rope"}));

    // A right click or Escape puts the item back and claims nothing else.
    for (int escape = 0; escape < 2; escape++) {
        inv.Hold("bell");
        if (escape)
            k.PushEvent(kEventKeyDown, kKeyEscape);
        else
            k.PushEvent(kEventPointerDown, 0, kModifierFirst, 150, 150);
        Frame(5 + escape);
        EXPECT_EQ(inv.Held(), "");
        EXPECT_EQ(gate.got.size(), 1u);
    }
    // Given away, its icon goes and the rope moves up.
    inv.GiveAway("bell", "gate");
    EXPECT_EQ(state.PlaceOf("bell"), "gate");
    EXPECT_EQ(inv.KeyAt(GLPoint(405, 445)), "rope");
    inv.Forget(&gateArea);
}

TEST_F(KitTest, NamesFollowTheDispatchOrder)
{
    GLKitInventory inv(&text, plane, GLPoint(400, 440), 40, plane, GLPoint(10, 450), style, &state, &names);
    inv.Install();
    GLFeature gate(plane);
    gate.Init(100, 100, 199, 199);
    inv.Name(&gate, "gate");
    GLColoredPlane top(ZOR_Rect(0, 0, 639, 139), 0, 5, 0, ZOR_Point(0, 0));
    game->mpPlaneManager->Add(&top);
    GLFeature cover(&top); // unnamed, on the plane above
    cover.Init(0, 0, 639, 139);

    EXPECT_EQ(inv.LabelAt(GLPoint(150, 150)), "the gate"); // below the top plane
    EXPECT_EQ(inv.LabelAt(GLPoint(150, 120)), "");         // the cover takes that click
    EXPECT_EQ(inv.LabelAt(GLPoint(300, 300)), "");         // nothing there
    GLObject hog;
    game->mpUser->mpHogs->AddToEnd(&hog);
    EXPECT_EQ(inv.LabelAt(GLPoint(150, 150)), ""); // a hog takes every click
    game->mpUser->mpHogs->Remove(&hog);

    game->mpPlaneManager->Remove(&top);
    inv.Forget(&gate);
}

// The state through a save's store and back: values, places and said
// options; the inventory shows what is carried, holds nothing, and its label
// is the one kept. Entries of no kind the kit knows are refused, the others read.
TEST_F(KitTest, StateComesBackFromASaveStore)
{
    GLKitInventory inv(&text, plane, GLPoint(400, 440), 40, plane, GLPoint(10, 450), style, &state, &names);
    inv.AddItem("bell", GLCelRes(120, 0, 0, 0));
    inv.AddItem("rope", GLCelRes(121, 0, 0, 0));
    state.Set("rung", -2);
    state.mSaid.insert("7/start/1");
    inv.PickUp("bell");
    inv.ShowLabelText("the bell");
    GLSaveStore store;
    GLKitDeclareState(&store);
    GLKitKeepState(state, &inv, &store);

    const GLKitState saved = state;
    state.Clear();
    state.Set("asked", 1);
    inv.Refresh(); // the bell's icon goes
    inv.PickUp("rope");
    inv.Hold("rope");
    inv.ShowLabelText("");
    EXPECT_TRUE(GLKitRestoreState(store, &state, &inv));
    EXPECT_EQ(state.mValues, saved.mValues);
    EXPECT_EQ(state.mPlaces, saved.mPlaces);
    EXPECT_EQ(state.mSaid, saved.mSaid);
    EXPECT_EQ(inv.Carried(), (std::vector<std::string>{"bell"}));
    EXPECT_EQ(inv.Held(), "");
    EXPECT_EQ(inv.GetLabel(), "the bell");

    store.AddText("kit.names", "colour.x");
    store.AddText("kit.values", "1");
    store.AddText("kit.names", "value.x");
    store.AddText("kit.values", "12z");
    store.AddText("kit.names", "value.y");
    EXPECT_FALSE(GLKitRestoreState(store, &state, nullptr));
    EXPECT_EQ(state.mValues, saved.mValues);
    EXPECT_EQ(state.mPlaces, saved.mPlaces);
}

// The checker's host: every message of keys 1 1 and view 120 exist; text is 8 pixels a letter.
class CheckHost : public GLKitCheckHost {
public:
    int MessageExists(const std::string&, const int keys[5]) override { return keys[0] == 1 && keys[1] == 1; }
    int IconExists(int view, int, int) override { return view == 120; }
    int TextWidth(const std::string& text, int) override { return 8 * static_cast<int>(text.size()); }
    void Report(const std::string& file, int line, int fError, const std::string& text) override
    {
        lines.push_back(file.substr(folder.size() + 1) + ":" + std::to_string(line) + (fError ? ": error: " : ": warning: ") + text);
    }
    std::string folder;
    std::vector<std::string> lines;
};

TEST_F(KitTest, CheckerNamesFileAndLine)
{
    const std::string f = TempFolder();
    Write(f + "/items.txt", "bell 120 0 0\nrope 99 0 0\n\nhat x\n");
    Write(f + "/values.txt", "rung\n");
    Write(f + "/names.txt", "layout 100 15\nbell = the bell\ngate = a gate far too long to fit\n");
    Write(f + "/lang/de/names.txt", "bell = die Glocke\n");
    Write(f + "/dialogs/1.txt", "layout 200 15\n"
                                "node start\n"
                                "  say 1 1 0 0\n"
                                "  say 1 5 0 0\n"
                                "  option if rung=0 if seen=1 goto nowhere : Hi\n"
                                "  option give hat end : A line of text much too long for two hundred\n"
                                "  option set seen 1 : Look\n");
    CheckHost host;
    host.folder = f;
    EXPECT_EQ(GLKitCheckFolder(f, host), 7);
    EXPECT_EQ(host.lines, (std::vector<std::string>{
                              "items.txt:4: error: an item is \"<key> <view> <loop> <cel>\"",
                              "items.txt:2: error: the icon of \"rope\" (view 99 loop 0 cel 0) is not there",
                              "dialogs/1.txt:4: error: no message 1 5 0 0 0",
                              "dialogs/1.txt:5: error: goes to node \"nowhere\", which the dialogue lacks",
                              "dialogs/1.txt:6: error: no item \"hat\" in items.txt",
                              "dialogs/1.txt:6: error: \"2. A line of text much too long for two hundred\" is 376 "
                              "pixels wide, over its 200",
                              "names.txt:3: error: \"a gate far too long to fit\" is 208 pixels wide, over its 100",
                              "items.txt:2: warning: \"rope\" has no name in names.txt",
                              "dialogs/1.txt:0: warning: language de lacks this dialogue",
                              "names.txt:3: warning: language de lacks \"gate\"",
                          }));
}

TEST_F(KitTest, LanguageFilesStandInForTheDefault)
{
    const std::string f = TempFolder();
    Write(f + "/names.txt", "bell = the bell\ngate = the gate\nuse = use %1 on %2\n");
    Write(f + "/lang/de/names.txt", "bell = die Glocke\nuse = %1 an %2 benutzen\n");
    Write(f + "/dialogs/1.txt", "node a\n");
    Write(f + "/lang/de/dialogs/1.txt", "node b\n");
    GLKitNames de;
    ASSERT_TRUE(de.Load(GLKitFolder(f, "de")));
    EXPECT_EQ(de.Use("bell", "gate"), "die Glocke an the gate benutzen");
    EXPECT_EQ(GLKitFolder(f, "de").Find("dialogs/1.txt"), f + "/lang/de/dialogs/1.txt");
    EXPECT_EQ(GLKitFolder(f, "fr").Find("dialogs/1.txt"), f + "/dialogs/1.txt");
    EXPECT_EQ(GLKitLanguages(f), (std::vector<std::string>{"de"}));
}

} // namespace
