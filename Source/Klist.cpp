// Klist.cpp - the pointer list. See include/klist.h.
#include "klist.h"

#include <cstring>

KernelListAsArray::KernelListAsArray() : m_pArray(0), m_iArraySize(-1), m_iElementCount(-1), m_iGrowBy(-1) {}

KernelListAsArray::KernelListAsArray(int iItemCount, int iGrowBy)
    : m_pArray(0), m_iArraySize(-1), m_iElementCount(-1), m_iGrowBy(-1)
{
    GL_ASSERT(iGrowBy > 0);
    GL_ASSERT(iItemCount > 0);
    Init(iItemCount, iGrowBy);
    GL_ASSERT(Assert());
}

KernelListAsArray::~KernelListAsArray()
{
    GL_FREE(m_pArray);
}

KernelListAsArray::KernelListAsArray(const KernelListAsArray& other)
    : m_pArray(0), m_iArraySize(-1), m_iElementCount(-1), m_iGrowBy(-1)
{
    CopyFrom(other);
}

KernelListAsArray& KernelListAsArray::operator=(const KernelListAsArray& other)
{
    if (this != &other) {
        GL_FREE(m_pArray);
        m_pArray = 0;
        m_iArraySize = m_iElementCount = m_iGrowBy = -1;
        CopyFrom(other);
    }
    return *this;
}

void KernelListAsArray::CopyFrom(const KernelListAsArray& other)
{
    if (other.m_pArray == 0)
        return;
    Init(other.m_iArraySize, other.m_iGrowBy);
    std::memcpy(m_pArray, other.m_pArray, sizeof(void*) * static_cast<std::size_t>(other.m_iArraySize));
    m_iElementCount = other.m_iElementCount;
    GL_ASSERT(Assert());
}

void KernelListAsArray::Init(int iItemCount, int iGrowBy)
{
    GL_ASSERT(iGrowBy > 0);
    GL_ASSERT(iItemCount > 0);
    m_iArraySize = iItemCount;
    m_iGrowBy = iGrowBy;
    m_iElementCount = 0;
    m_pArray = static_cast<void**>(GL_ALLOC(sizeof(void*) * static_cast<std::size_t>(iItemCount)));
    GL_ASSERT(m_pArray != 0);
    for (int i = 0; i < m_iArraySize; i++)
        m_pArray[i] = 0;
    GL_ASSERT(Assert());
}

// The per-slot scan is the costly part of the invariant; the checked build runs
// it on every test, an optimised build (NDEBUG) keeps the constant-time checks
// only. A build configured without a build type is a checked build.
int KernelListAsArray::Assert() const
{
    if (m_pArray == 0 || m_iArraySize < 1 || m_iGrowBy < 1 || m_iElementCount < 0 ||
        m_iElementCount > m_iArraySize)
        return FALSE;
#if !defined(NDEBUG)
    for (int i = 0; i < m_iElementCount; i++)
        if (m_pArray[i] == 0)
            return FALSE;
#endif
    return TRUE;
}

int KernelListAsArray::IsInList(void* pElement) const
{
    GL_ASSERT(pElement);
    for (int i = 0; i < m_iElementCount; i++)
        if (m_pArray[i] == pElement)
            return TRUE;
    return FALSE;
}

int KernelListAsArray::IndexOf(void* pElement, int* pIndex) const
{
    GL_ASSERT(pElement);
    GL_ASSERT(pIndex);
    for (int i = 0; i < m_iElementCount; i++) {
        if (m_pArray[i] == pElement) {
            *pIndex = i;
            return TRUE;
        }
    }
    *pIndex = 0x7fffffff;
    return FALSE;
}

void* KernelListAsArray::operator[](int iIndex) const
{
    GL_ASSERT(iIndex >= 0);
    GL_ASSERT(iIndex < m_iElementCount);
    GL_ASSERT(m_pArray[iIndex]);
    return m_pArray[iIndex];
}

void KernelListAsArray::AddToFront(void* pElementNew)
{
    GL_ASSERT(pElementNew);
    GL_ASSERT(Assert());
    MakeSpaceInFront();
    m_pArray[0] = pElementNew;
    m_iElementCount++;
    GL_ASSERT(Assert());
    GL_ASSERT(IsInList(pElementNew));
}

void KernelListAsArray::AddToEnd(void* pElementNew)
{
    GL_ASSERT(pElementNew);
    GL_ASSERT(Assert());
    MakeSpaceInBack();
    m_pArray[m_iElementCount] = pElementNew;
    m_iElementCount++;
    GL_ASSERT(Assert());
    GL_ASSERT(IsInList(pElementNew));
}

void KernelListAsArray::AddBefore(void* pElementExisting, void* pElementNew)
{
    AddBeside(pElementExisting, pElementNew, 0);
}

void KernelListAsArray::AddAfter(void* pElementExisting, void* pElementNew)
{
    AddBeside(pElementExisting, pElementNew, 1);
}

// Puts the new element at the index of the first occurrence of the existing
// one (before it) or at the index after it (after it).
void KernelListAsArray::AddBeside(void* pElementExisting, void* pElementNew, int iOffset)
{
    GL_ASSERT(pElementExisting);
    GL_ASSERT(pElementNew);
    GL_ASSERT(Assert());
    GL_ASSERT(IsInList(pElementExisting));
    int iIndex;
    if (IndexOf(pElementExisting, &iIndex)) {
        GL_ASSERT(iIndex >= 0);
        MakeSpaceAt(iIndex + iOffset);
        m_pArray[iIndex + iOffset] = pElementNew;
        m_iElementCount++;
    } else {
        GL_ASSERT(!"Unsuccesful in locating index of existing element");
    }
    GL_ASSERT(Assert());
    GL_ASSERT(IsInList(pElementExisting));
    GL_ASSERT(IsInList(pElementNew));
}

// Taking the element out and closing the gap moves the elements before it one
// slot toward the end; only slots 0 to its old index change.
void KernelListAsArray::MoveToFront(void* pElement)
{
    GL_ASSERT(pElement);
    GL_ASSERT(Assert());
    GL_ASSERT(IsInList(pElement));
    int iIndex;
    if (IndexOf(pElement, &iIndex)) {
        GL_ASSERT(iIndex >= 0);
        for (int i = iIndex; i > 0; i--)
            m_pArray[i] = m_pArray[i - 1];
        m_pArray[0] = 0;
        int nullCount = 0;
        for (int i = 0; i <= iIndex; i++)
            if (m_pArray[i] == 0)
                nullCount++;
        GL_ASSERT(nullCount == 1);
        m_pArray[0] = pElement;
    } else {
        GL_ASSERT(!"Unsuccesful in locating index of existing element");
    }
    GL_ASSERT(Assert());
    GL_ASSERT(IsInList(pElement));
}

void KernelListAsArray::MoveToBack(void* pElement)
{
    GL_ASSERT(pElement);
    GL_ASSERT(Assert());
    GL_ASSERT(IsInList(pElement));
    int iIndex;
    if (IndexOf(pElement, &iIndex)) {
        for (int i = iIndex; i < m_iElementCount - 1; i++)
            m_pArray[i] = m_pArray[i + 1];
        m_pArray[m_iElementCount - 1] = pElement;
    } else {
        GL_ASSERT(!"Unsuccesful in locating index of existing element");
    }
    GL_ASSERT(Assert());
    GL_ASSERT(IsInList(pElement));
}

void KernelListAsArray::Remove(void* pElement)
{
    GL_ASSERT(pElement);
    GL_ASSERT(Assert());
    GL_ASSERT(IsInList(pElement));
    int iIndex;
    if (IndexOf(pElement, &iIndex)) {
        GL_ASSERT(iIndex >= 0);
        m_pArray[iIndex] = 0;
        int nullCount = RemoveNulls();
        GL_ASSERT(nullCount == 1);
        m_iElementCount--;
    }
    GL_ASSERT(Assert());
}

void KernelListAsArray::RemoveAt(int iIndex)
{
    GL_ASSERT(iIndex >= 0);
    GL_ASSERT(iIndex < m_iElementCount);
    GL_ASSERT(Assert());
    m_pArray[iIndex] = 0;
    int nullCount = RemoveNulls();
    GL_ASSERT(nullCount == 1);
    m_iElementCount--;
    GL_ASSERT(Assert());
}

void KernelListAsArray::Flush()
{
    GL_ASSERT(Assert());
    for (int i = 0; i < m_iElementCount; i++)
        m_pArray[i] = 0;
    m_iElementCount = 0;
    GL_ASSERT(Assert());
}

// Linear growth: the array gains m_iGrowBy slots each time it is full.
void KernelListAsArray::GrowArray()
{
    const int iNewSize = m_iArraySize + m_iGrowBy;
    void** tmp = static_cast<void**>(GL_ALLOC(sizeof(void*) * static_cast<std::size_t>(iNewSize)));
    GL_ASSERT(tmp);
    for (int i = 0; i < iNewSize; i++)
        tmp[i] = 0;
    for (int i = 0; i < m_iArraySize; i++)
        tmp[i] = m_pArray[i];
    GL_FREE(m_pArray);
    m_pArray = tmp;
    m_iArraySize = iNewSize;
}

void KernelListAsArray::MakeSpaceInBack()
{
    if (m_iElementCount == m_iArraySize)
        GrowArray();
}

void KernelListAsArray::MakeSpaceInFront()
{
    if (m_iElementCount == m_iArraySize)
        GrowArray();
    for (int i = m_iElementCount; i > 0; i--) {
        GL_ASSERT(i >=1);
        m_pArray[i] = m_pArray[i - 1];
    }
    m_pArray[0] = 0;
}

void KernelListAsArray::MakeSpaceAt(int iIndex)
{
    GL_ASSERT(iIndex >= 0);
    GL_ASSERT(iIndex <= m_iElementCount);
    if (m_iElementCount == m_iArraySize)
        GrowArray();
    for (int i = m_iElementCount; i > iIndex; i--) {
        GL_ASSERT(i >=1);
        m_pArray[i] = m_pArray[i - 1];
    }
    m_pArray[iIndex] = 0;
}

// Closes every gap among the counted slots and returns how many there were;
// callers null exactly one slot first and lower the count themselves.
int KernelListAsArray::RemoveNulls()
{
    int iElements = m_iElementCount;
    int iNullCount = 0;
    int i = 0;
    while (i < iElements) {
        if (m_pArray[i] == 0) {
            for (int j = i; j < iElements - 1; j++)
                m_pArray[j] = m_pArray[j + 1];
            m_pArray[iElements - 1] = 0;
            iElements--;
            GL_ASSERT(iElements >= 0);
            iNullCount++;
        } else {
            i++;
        }
    }
    GL_ASSERT(iNullCount > 0);
    return iNullCount;
}
