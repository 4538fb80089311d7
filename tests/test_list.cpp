// The pointer list and the typed lists and sets over it.
#include "QuindleTest.h"
#include "glset.h"

#include <vector>

namespace {

using ListTest = QuindleTest;

int a, b, c, d, e;

std::vector<void*> Contents(const KernelListAsArray& list)
{
    std::vector<void*> items;
    for (int i = 0; i < list.NumElements(); i++)
        items.push_back(list[i]);
    return items;
}

// Exposes the array size, which only the list itself reports otherwise.
struct ProbeList : KernelListAsArray {
    using KernelListAsArray::KernelListAsArray;
    int Size() const { return m_iArraySize; }
    void Poke(int index, void* value) { m_pArray[index] = value; }
};

TEST_F(ListTest, GrowsLinearlyByItsStepAndKeepsItsSizeAfterFlush)
{
    ProbeList list(1, 1);
    std::vector<int> sizes;
    int items[5];
    for (int& item : items) {
        list.AddToEnd(&item);
        sizes.push_back(list.Size());
    }
    EXPECT_EQ(sizes, (std::vector<int>{1, 2, 3, 4, 5}));
    // Each growth is one allocation through the kernel, and the old array goes back.
    EXPECT_EQ(k.Ledger().LiveCount(), 1u);
    list.Flush();
    EXPECT_EQ(list.Size(), 5);
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_EQ(list.NumElements(), 0);

    ProbeList wide(10, 10);
    for (int i = 0; i < 11; i++)
        wide.AddToFront(&items[i % 5]);
    EXPECT_EQ(wide.Size(), 20);
    EXPECT_EQ(wide.NumElements(), 11);
}

TEST_F(ListTest, InsertionsAndMovesKeepTheOrderTheCallerAskedFor)
{
    KernelListAsArray list(2, 2);
    list.AddToEnd(&a);
    list.AddToEnd(&b);
    list.AddToEnd(&c);
    list.AddToEnd(&d);
    list.MoveToFront(&c);
    EXPECT_EQ(Contents(list), (std::vector<void*>{&c, &a, &b, &d}));
    list.MoveToFront(&c); // already first: nothing changes
    EXPECT_EQ(Contents(list), (std::vector<void*>{&c, &a, &b, &d}));
    list.MoveToBack(&a);
    EXPECT_EQ(Contents(list), (std::vector<void*>{&c, &b, &d, &a}));
    list.AddAfter(&a, &e); // after the last element: at the end
    list.AddBefore(&c, &e); // before the first: at the front
    EXPECT_EQ(Contents(list), (std::vector<void*>{&e, &c, &b, &d, &a, &e}));
    list.AddAfter(&b, &a);
    EXPECT_EQ(Contents(list), (std::vector<void*>{&e, &c, &b, &a, &d, &a, &e}));
    // A plain list keeps duplicates; Remove takes out the first one only.
    list.Remove(&a);
    EXPECT_EQ(Contents(list), (std::vector<void*>{&e, &c, &b, &d, &a, &e}));
    list.RemoveAt(0);
    list.RemoveAt(4);
    EXPECT_EQ(Contents(list), (std::vector<void*>{&c, &b, &d, &a}));
    EXPECT_EQ(list.First(), &c);
    EXPECT_EQ(list.Last(), &a);
}

TEST_F(ListTest, QueriesFindTheFirstOccurrence)
{
    KernelListAsArray list(4, 1);
    EXPECT_EQ(list.First(), nullptr); // an empty list gives null, not a stale slot
    EXPECT_EQ(list.Last(), nullptr);
    list.AddToEnd(&a);
    list.AddToEnd(&b);
    list.AddToEnd(&a);
    int index = -5;
    EXPECT_TRUE(list.IndexOf(&a, &index));
    EXPECT_EQ(index, 0);
    EXPECT_TRUE(list.IndexOf(&b, &index));
    EXPECT_EQ(index, 1);
    EXPECT_FALSE(list.IndexOf(&c, &index));
    EXPECT_EQ(index, 0x7fffffff);
    EXPECT_TRUE(list.IsInList(&b));
    EXPECT_FALSE(list.IsInList(&c));
    list.Remove(&a);
    list.Remove(&b);
    list.Remove(&a);
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_TRUE(list.Assert());
}

TEST_F(ListTest, AListThatWasNeverInitialisedFailsItsInvariant)
{
    KernelListAsArray list; // releases a null array when it goes
    EXPECT_FALSE(list.Assert());
    EXPECT_GL_ASSERT(list.NumElements(), "include/klist.h", "Assert()");
    EXPECT_GL_ASSERT(list.AddToEnd(&a), "Source/Klist.cpp", "Assert()");
    list.Init(3, 2);
    EXPECT_TRUE(list.Assert());
    KernelListAsArray copy(list);
    copy.AddToEnd(&a);
    EXPECT_TRUE(list.IsEmpty()); // the copy has its own array
}

TEST_F(ListTest, MisuseEndsWithTheExactReport)
{
    EXPECT_GL_ASSERT(KernelListAsArray(1, 0), "Source/Klist.cpp", "iGrowBy > 0");
    EXPECT_GL_ASSERT(KernelListAsArray(0, 1), "Source/Klist.cpp", "iItemCount > 0");
    KernelListAsArray list(2, 1);
    list.AddToEnd(&a);
    EXPECT_GL_ASSERT(list.AddToEnd(nullptr), "Source/Klist.cpp", "pElementNew");
    EXPECT_GL_ASSERT(list.AddToFront(nullptr), "Source/Klist.cpp", "pElementNew");
    EXPECT_GL_ASSERT(list.AddBefore(nullptr, &b), "Source/Klist.cpp", "pElementExisting");
    EXPECT_GL_ASSERT(list.AddAfter(&c, &b), "Source/Klist.cpp", "IsInList(pElementExisting)");
    EXPECT_GL_ASSERT(list.MoveToFront(&c), "Source/Klist.cpp", "IsInList(pElement)");
    EXPECT_GL_ASSERT(list.MoveToBack(nullptr), "Source/Klist.cpp", "pElement");
    EXPECT_GL_ASSERT(list.Remove(&c), "Source/Klist.cpp", "IsInList(pElement)");
    EXPECT_GL_ASSERT(list.RemoveAt(1), "Source/Klist.cpp", "iIndex < m_iElementCount");
    EXPECT_GL_ASSERT(list.RemoveAt(-1), "Source/Klist.cpp", "iIndex >= 0");
    EXPECT_GL_ASSERT(list[1], "Source/Klist.cpp", "iIndex < m_iElementCount");
    EXPECT_GL_ASSERT(list.IndexOf(&a, nullptr), "Source/Klist.cpp", "pIndex");
    EXPECT_GL_ASSERT(list.IsInList(nullptr), "Source/Klist.cpp", "pElement");
}

TEST_F(ListTest, ANullSlotBelowTheCountIsCaught)
{
    ProbeList list(2, 1);
    list.AddToEnd(&a);
    list.Poke(0, nullptr);
    EXPECT_GL_ASSERT(list[0], "Source/Klist.cpp", "m_pArray[iIndex]");
#if !defined(NDEBUG)
    // The checked build scans every slot on each invariant check.
    EXPECT_FALSE(list.Assert());
#endif
    list.Poke(0, &a);
}

class Thing {
};

TEST_F(ListTest, SetsRefuseDuplicatesAndCheckRemoval)
{
    Thing one, two, three;
    GLSetAsArray<Thing> set(1, 1);
    set.AddToEnd(&one);
    set.AddToFront(&two);
    set.AddAfter(&two, &three);
    EXPECT_EQ(set.At(0), &two);
    EXPECT_EQ(set[1], &three);
    EXPECT_EQ(set.At(2), &one);
    for (int i = 0; i < set.NumElements(); i++)
        EXPECT_EQ(set.At(i), set[i]);
    EXPECT_GL_ASSERT(set.AddToEnd(&one), "include/glset.h", "!\"Item is already in set!\"");
    EXPECT_GL_ASSERT(set.AddToFront(&one), "include/glset.h", "!\"Item is already in set!\"");
    // The new element is tested first, even when the existing one is absent.
    Thing absent;
    EXPECT_GL_ASSERT(set.AddBefore(&absent, &one), "include/glset.h", "!\"Item is already in set!\"");
    EXPECT_GL_ASSERT(set.AddAfter(&absent, &two), "include/glset.h", "!\"Item is already in set!\"");
    EXPECT_GL_ASSERT(set.Remove(&absent), "include/glset.h", "IsInList(pElementExisting)");
    set.Remove(&three);
    EXPECT_FALSE(set.IsInList(&three));
    EXPECT_EQ(set.NumElements(), 2);

    GLListAsArray<Thing> list(1, 1);
    list.AddToEnd(&one);
    list.AddToEnd(&one); // plain lists keep duplicates
    EXPECT_EQ(list.NumElements(), 2);
}

} // namespace
