// test_save.cpp - the store's values of every kind through a save file and
// back, on the recording kernel; what the store refuses. (The demo's tests
// play saves end to end through the player.)
#include "QuindleTest.h"

#include "glcel.h"
#include "glgame.h"
#include "glplane.h"
#include "glplanes.h"
#include "glsave.h"

#include <cstdio>
#include <string>
#include <unistd.h>

namespace {

class TestSaves : public GLSaveGame {
public:
    TestSaves() : GLSaveGame("test game", 1) {}
    int mStarted = 0;

protected:
    void Declare() override
    {
        Store()->DeclareInt("count", 7);
        Store()->DeclareText("name", "nobody");
        Store()->DeclareList("numbers", GLSaveStore::kIntList);
        Store()->DeclareList("words", GLSaveStore::kTextList);
    }
    int CurrentRoom() override { return 42; }
    void StartRoom(int room) override { mStarted = room; }
};

class SaveTest : public QuindleTest {
protected:
    void SetUp() override { GLDLLInit(mGame = new GLGame); }
    void TearDown() override
    {
        mSaves.Release();
        delete mGame;
        theGame = nullptr;
        std::remove(mFile.c_str());
    }
    GLGame* mGame = nullptr;
    TestSaves mSaves;
    const std::string mFile = "/tmp/quindle_test_save_" + std::to_string(getpid()) + ".sav";
};

TEST_F(SaveTest, EveryKindOfValueComesBackAsItWasSaved)
{
    const char* const texts[] = {"", "two words", "a\nbreak\tand\\slash", "\\s"};
    GLSaveStore* store = mSaves.Store();
    EXPECT_EQ(store->NumKeys(), 0); // nothing of the store is made before it is needed
    ASSERT_TRUE(mSaves.Save(mFile.c_str())) << mSaves.LastError(); // declares the keys
    EXPECT_EQ(store->GetInt("count"), 7);
    EXPECT_STREQ(store->GetText("name"), "nobody");
    store->SetInt("count", -2147483647 - 1);
    store->SetText("name", "Pip the\nsecond");
    for (int i = 0; i < 4; i++) {
        store->AddInt("numbers", i * 1000 - 1);
        store->AddText("words", texts[i]);
    }
    store->RemoveAt("numbers", 1);

    ASSERT_TRUE(mSaves.Save(mFile.c_str())) << mSaves.LastError();
    store->Reset();
    EXPECT_EQ(store->GetCount("words"), 0);
    ASSERT_TRUE(mSaves.Restore(mFile.c_str())) << mSaves.LastError();
    EXPECT_EQ(mSaves.mStarted, 42);
    EXPECT_EQ(store->GetInt("count"), -2147483647 - 1);
    EXPECT_STREQ(store->GetText("name"), "Pip the\nsecond");
    ASSERT_EQ(store->GetCount("numbers"), 3);
    EXPECT_EQ(store->GetIntAt("numbers", 1), 1999);
    ASSERT_EQ(store->GetCount("words"), 4);
    for (int i = 0; i < 4; i++)
        EXPECT_STREQ(store->GetTextAt("words", i), texts[i]);
}

TEST_F(SaveTest, ANamedItemIsPutBackWhereItStood)
{
    GLColoredPlane* plane = new GLColoredPlane(ZOR_Rect(0, 0, 639, 479), 0, 1, 0, ZOR_Point(0, 0));
    GLCel* cel = new GLCel(plane, 100, 2, 3, GLPoint(10, 20), 5, kFullSizeScale);
    cel->Show();
    mSaves.Name("hero", cel);
    ASSERT_TRUE(mSaves.Save(mFile.c_str())) << mSaves.LastError();
    cel->Load(100, 0, 0, FALSE);
    cel->SetPos(GLPoint(300, 400), FALSE);
    cel->Hide();
    ASSERT_TRUE(mSaves.Restore(mFile.c_str())) << mSaves.LastError();
    EXPECT_EQ(cel->GetLoop(), 2);
    EXPECT_EQ(cel->GetCel(), 3);
    EXPECT_EQ(cel->GetPos().GetX(), 10);
    EXPECT_EQ(cel->GetPos().GetY(), 20);
    EXPECT_TRUE(cel->IsVisible());
    mSaves.Forget(cel);
    EXPECT_EQ(mSaves.Named("hero"), nullptr);
    delete cel;
    delete plane;
}

TEST_F(SaveTest, KeysAreCheckedAsTheyAreUsed)
{
    GLSaveStore* store = mSaves.Store();
    store->DeclareInt("count", 0);
    EXPECT_GL_ASSERT(store->GetInt("never"), "Source/Glsave.cpp", "pEntry || !\"Key was never declared!\"");
    EXPECT_GL_ASSERT(store->GetText("count"), "Source/Glsave.cpp",
                     "pEntry->kind == kind || (kind == 0 && fList) || !\"Key is of another kind!\"");
    EXPECT_GL_ASSERT(store->DeclareInt("two words", 0), "Source/Glsave.cpp", "IsKey(key)");
}

} // namespace
