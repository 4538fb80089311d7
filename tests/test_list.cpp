// The pointer list and the typed lists and sets over it.
#include "QuindleTest.h"
#include "glset.h"

#include <vector>

namespace {

using ListTest = QuindleTest;
using Items = std::vector<void*>;

int a, b, c, d, e;

Items Contents(const KernelListAsArray& list)
{
    Items items;
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

TEST_F(ListTest, InsertionsMovesAndQueriesKeepTheOrderTheCallerAskedFor)
{
    KernelListAsArray list(2, 2);
    EXPECT_EQ(list.First(), nullptr); // an empty list gives null, not a stale slot
    EXPECT_EQ(list.Last(), nullptr);
    for (int* item : {&a, &b, &c, &d})
        list.AddToEnd(item);
    list.MoveToFront(&c);
    EXPECT_EQ(Contents(list), (Items{&c, &a, &b, &d}));
    list.MoveToFront(&c); // already first: nothing changes
    EXPECT_EQ(Contents(list), (Items{&c, &a, &b, &d}));
    list.MoveToBack(&a);
    EXPECT_EQ(Contents(list), (Items{&c, &b, &d, &a}));
    list.AddAfter(&a, &e);  // after the last element: at the end
    list.AddBefore(&c, &e); // before the first: at the front
    EXPECT_EQ(Contents(list), (Items{&e, &c, &b, &d, &a, &e}));

    // Queries find the first occurrence.
    int absent = 0, index = -5;
    EXPECT_TRUE(list.IndexOf(&e, &index));
    EXPECT_EQ(index, 0);
    EXPECT_TRUE(list.IndexOf(&b, &index));
    EXPECT_EQ(index, 2);
    EXPECT_FALSE(list.IndexOf(&absent, &index));
    EXPECT_EQ(index, 0x7fffffff);
    EXPECT_TRUE(list.IsInList(&b));
    EXPECT_FALSE(list.IsInList(&absent));

    list.AddAfter(&b, &a);
    EXPECT_EQ(Contents(list), (Items{&e, &c, &b, &a, &d, &a, &e}));
    // A plain list keeps duplicates; Remove takes out the first one only.
    list.Remove(&a);
    EXPECT_EQ(Contents(list), (Items{&e, &c, &b, &d, &a, &e}));
    list.RemoveAt(0);
    list.RemoveAt(4);
    EXPECT_EQ(Contents(list), (Items{&c, &b, &d, &a}));
    EXPECT_EQ(list.First(), &c);
    EXPECT_EQ(list.Last(), &a);
    for (int* item : {&c, &b, &d, &a})
        list.Remove(item);
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_TRUE(list.Assert());
}

TEST_F(ListTest, MisuseAndBrokenInvariantsEndWithTheExactReport)
{
    const char* file = "Source/Klist.cpp";
    // A list that was never initialised fails its invariant until Init.
    KernelListAsArray unready; // releases a null array when it goes
    EXPECT_FALSE(unready.Assert());
    EXPECT_GL_ASSERT(unready.NumElements(), "include/klist.h", "Assert()");
    EXPECT_GL_ASSERT(unready.AddToEnd(&a), file, "Assert()");
    unready.Init(3, 2);
    EXPECT_TRUE(unready.Assert());
    KernelListAsArray copy(unready);
    copy.AddToEnd(&a);
    EXPECT_TRUE(unready.IsEmpty()); // the copy has its own array

    EXPECT_GL_ASSERT(KernelListAsArray(1, 0), file, "iGrowBy > 0");
    EXPECT_GL_ASSERT(KernelListAsArray(0, 1), file, "iItemCount > 0");
    ProbeList list(2, 1);
    list.AddToEnd(&a);
    EXPECT_GL_ASSERT(list.AddToEnd(nullptr), file, "pElementNew");
    EXPECT_GL_ASSERT(list.AddToFront(nullptr), file, "pElementNew");
    EXPECT_GL_ASSERT(list.AddBefore(nullptr, &b), file, "pElementExisting");
    EXPECT_GL_ASSERT(list.AddAfter(&c, &b), file, "IsInList(pElementExisting)");
    EXPECT_GL_ASSERT(list.MoveToFront(&c), file, "IsInList(pElement)");
    EXPECT_GL_ASSERT(list.MoveToBack(nullptr), file, "pElement");
    EXPECT_GL_ASSERT(list.Remove(&c), file, "IsInList(pElement)");
    EXPECT_GL_ASSERT(list.RemoveAt(1), file, "iIndex < m_iElementCount");
    EXPECT_GL_ASSERT(list.RemoveAt(-1), file, "iIndex >= 0");
    EXPECT_GL_ASSERT(list[1], file, "iIndex < m_iElementCount");
    EXPECT_GL_ASSERT(list.IndexOf(&a, nullptr), file, "pIndex");
    EXPECT_GL_ASSERT(list.IsInList(nullptr), file, "pElement");

    // A null slot below the count is caught.
    list.Poke(0, nullptr);
    EXPECT_GL_ASSERT(list[0], file, "m_pArray[iIndex]");
#if !defined(NDEBUG)
    // The checked build scans every slot on each invariant check.
    EXPECT_FALSE(list.Assert());
#endif
    list.Poke(0, &a);
}

struct Thing {};

TEST_F(ListTest, SetsRefuseDuplicatesAndCheckRemoval)
{
    Thing one, two, three, absent;
    GLSetAsArray<Thing> set(1, 1);
    set.AddToEnd(&one);
    set.AddToFront(&two);
    set.AddAfter(&two, &three);
    EXPECT_EQ(Contents(set), (Items{&two, &three, &one}));
    EXPECT_GL_ASSERT(set.AddToEnd(&one), "include/glset.h", "!\"Item is already in set!\"");
    EXPECT_GL_ASSERT(set.AddToFront(&one), "include/glset.h", "!\"Item is already in set!\"");
    // The new element is tested first, even when the existing one is absent.
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
