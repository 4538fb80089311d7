// klist.h - KernelListAsArray, the one container of the library.
//
// An ordered list of non-null untyped pointers in a contiguous array that
// grows by a fixed step (never doubling: callers choose the first size and the
// step for the use). It does not own what it points to. The same pointer may
// stand in a plain list more than once; the sets of glset.h forbid it.
//
// Every change checks the invariant before and after itself, and every
// violation ends the process with the failed condition's text. A list made
// with the default constructor is not usable until Init.
//
// Lists are walked by index from 0 with NumElements() read afresh before every
// step, because objects add and remove themselves while a list is walked.
#ifndef QUINDLE_KLIST_H
#define QUINDLE_KLIST_H

#include "gldefs.h"

class QUINDLE_API KernelListAsArray {
public:
    GL_DECLARE_ALLOCATION("include/klist.h")

    // The empty, not yet usable state: no array, every count -1.
    KernelListAsArray();
    // A usable list of iItemCount empty slots that grows by iGrowBy; both > 0.
    KernelListAsArray(int iItemCount, int iGrowBy);
    // Releases the slot array (also when it is null); the elements are untouched.
    virtual ~KernelListAsArray();
    // Copies have their own array with the same slots, size and step; a copy
    // of a list that was never initialised is not initialised either.
    KernelListAsArray(const KernelListAsArray& other);
    KernelListAsArray& operator=(const KernelListAsArray& other);

    // Gives a default-constructed list its first iItemCount slots and its step.
    // It does not release an earlier array.
    void Init(int iItemCount, int iGrowBy);

    // The number of elements held, in slots 0 to NumElements() - 1.
    int NumElements() const;
    // The element at index 0 (null for an empty list).
    void* First() const;
    // The last element (null for an empty list).
    void* Last() const;
    // TRUE when the list holds no element.
    int IsEmpty() const;

    // TRUE when some element is exactly this pointer.
    int IsInList(void* pElement) const;
    // Stores the index of the first occurrence in *pIndex and returns TRUE; for
    // an absent element stores 0x7fffffff and returns FALSE.
    int IndexOf(void* pElement, int* pIndex) const;
    // The element at iIndex, which must be below NumElements().
    void* operator[](int iIndex) const;
    // TRUE when the invariant holds. Reports nothing: callers check "Assert()".
    int Assert() const;

    // Insertions: at index 0, after the last element, before or after the
    // first occurrence of an element that must be in the list.
    void AddToFront(void* pElementNew);
    void AddToEnd(void* pElementNew);
    void AddBefore(void* pElementExisting, void* pElementNew);
    void AddAfter(void* pElementExisting, void* pElementNew);
    // Moves the first occurrence to index 0 (the elements before it move up one
    // slot) or to the last slot (the elements after it move down one slot).
    void MoveToFront(void* pElement);
    void MoveToBack(void* pElement);
    // Takes out the first occurrence, closing the gap.
    void Remove(void* pElement);
    // Takes out the element at iIndex, closing the gap.
    void RemoveAt(int iIndex);
    // Empties the list; the array keeps its size.
    void Flush();

protected:
    void** m_pArray;
    std::int32_t m_iArraySize;
    std::int32_t m_iElementCount;
    std::int32_t m_iGrowBy;

private:
    void GrowArray();
    void MakeSpaceInFront();
    void MakeSpaceInBack();
    void MakeSpaceAt(int iIndex);
    void AddBeside(void* pElementExisting, void* pElementNew, int iOffset);
    int RemoveNulls();
    void CopyFrom(const KernelListAsArray& other);
};

inline int KernelListAsArray::NumElements() const
{
    GL_ASSERT(Assert());
    return m_iElementCount;
}

// First and Last of an empty list give null rather than a stale slot.
inline void* KernelListAsArray::First() const
{
    GL_ASSERT(Assert());
    return m_iElementCount > 0 ? m_pArray[0] : 0;
}

inline void* KernelListAsArray::Last() const
{
    GL_ASSERT(Assert());
    return m_iElementCount > 0 ? m_pArray[m_iElementCount - 1] : 0;
}

inline int KernelListAsArray::IsEmpty() const
{
    GL_ASSERT(Assert());
    return m_iElementCount == 0 ? TRUE : FALSE;
}

#endif
