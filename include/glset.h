// glset.h - typed lists and sets over the pointer list.
//
// GLListAsArray<T> is an ordered list of non-null T*; GLSetAsArray<T> is the
// same list in which no pointer stands twice. Elements are compared by
// address; neither owns its elements. Every check of the pointer list applies
// unchanged. The instantiations the library uses are built into the library
// (see the end of this header); game code uses the same ones.
#ifndef QUINDLE_GLSET_H
#define QUINDLE_GLSET_H

#include "klist.h"

template <class T>
class GLListAsArray : public KernelListAsArray {
public:
    // The not yet initialised state; Init before use.
    GLListAsArray() {}
    // A usable list with that first size and growth step.
    GLListAsArray(int iItemCount, int iGrowBy) : KernelListAsArray(iItemCount, iGrowBy) {}
    virtual ~GLListAsArray() {}

    void AddToFront(T* pElementNew) { KernelListAsArray::AddToFront(pElementNew); }
    void AddToEnd(T* pElementNew) { KernelListAsArray::AddToEnd(pElementNew); }
    void AddBefore(T* pElementExisting, T* pElementNew) { KernelListAsArray::AddBefore(pElementExisting, pElementNew); }
    void AddAfter(T* pElementExisting, T* pElementNew) { KernelListAsArray::AddAfter(pElementExisting, pElementNew); }
    void MoveToFront(T* pElement) { KernelListAsArray::MoveToFront(pElement); }
    void MoveToBack(T* pElement) { KernelListAsArray::MoveToBack(pElement); }
    void Remove(T* pElement) { KernelListAsArray::Remove(pElement); }

    int IsInList(T* pElement) const { return KernelListAsArray::IsInList(pElement); }
    int IndexOf(T* pElement, int* pIndex) const { return KernelListAsArray::IndexOf(pElement, pIndex); }

    T* First() const { return static_cast<T*>(KernelListAsArray::First()); }
    T* Last() const { return static_cast<T*>(KernelListAsArray::Last()); }
    // The element at iIndex, bounds-checked.
    T* At(int iIndex) const { return static_cast<T*>(KernelListAsArray::operator[](iIndex)); }
    T* operator[](int iIndex) const { return static_cast<T*>(KernelListAsArray::operator[](iIndex)); }
};

template <class T>
class GLSetAsArray : public GLListAsArray<T> {
public:
    GLSetAsArray() {}
    GLSetAsArray(int iItemCount, int iGrowBy) : GLListAsArray<T>(iItemCount, iGrowBy) {}
    virtual ~GLSetAsArray() {}

    // Adding a pointer that is already in the set is a programming error.
    void AddToFront(T* pElementNew);
    void AddToEnd(T* pElementNew);
    void AddBefore(T* pElementExisting, T* pElementNew);
    void AddAfter(T* pElementExisting, T* pElementNew);
    // The element must be in the set; afterwards no copy of it is left.
    void Remove(T* pElementExisting);

    using GLListAsArray<T>::IsInList;
};

template <class T>
inline void GLSetAsArray<T>::AddToFront(T* pElementNew)
{
    if (IsInList(pElementNew))
        GL_ASSERT(!"Item is already in set!");
    GLListAsArray<T>::AddToFront(pElementNew);
    GL_ASSERT(IsInList(pElementNew));
}

template <class T>
inline void GLSetAsArray<T>::AddToEnd(T* pElementNew)
{
    if (IsInList(pElementNew))
        GL_ASSERT(!"Item is already in set!");
    GLListAsArray<T>::AddToEnd(pElementNew);
    GL_ASSERT(IsInList(pElementNew));
}

template <class T>
inline void GLSetAsArray<T>::AddBefore(T* pElementExisting, T* pElementNew)
{
    if (IsInList(pElementNew))
        GL_ASSERT(!"Item is already in set!");
    GLListAsArray<T>::AddBefore(pElementExisting, pElementNew);
    GL_ASSERT(IsInList(pElementNew));
}

template <class T>
inline void GLSetAsArray<T>::AddAfter(T* pElementExisting, T* pElementNew)
{
    if (IsInList(pElementNew))
        GL_ASSERT(!"Item is already in set!");
    GLListAsArray<T>::AddAfter(pElementExisting, pElementNew);
    GL_ASSERT(IsInList(pElementNew));
}

template <class T>
inline void GLSetAsArray<T>::Remove(T* pElementExisting)
{
    GL_ASSERT(IsInList(pElementExisting));
    GLListAsArray<T>::Remove(pElementExisting);
    GL_ASSERT(!IsInList(pElementExisting));
}

// The instantiations the library provides. Their members are built once, in
// the library, and exported from it. A DLL cannot export what its header
// writes inline, so on Windows a game instantiates its own copies.
class GLObject;
class GLTarget;
class GLScreenItem;
class AbsGLPlane;
class GLCel;
class GLNarrator;
class GLPoint;

#if !defined(_WIN32)
extern template class QUINDLE_API GLListAsArray<GLObject>;
extern template class QUINDLE_API GLSetAsArray<GLObject>;
extern template class QUINDLE_API GLListAsArray<GLTarget>;
extern template class QUINDLE_API GLSetAsArray<GLTarget>;
extern template class QUINDLE_API GLListAsArray<GLScreenItem>;
extern template class QUINDLE_API GLSetAsArray<GLScreenItem>;
extern template class QUINDLE_API GLListAsArray<AbsGLPlane>;
extern template class QUINDLE_API GLSetAsArray<AbsGLPlane>;
extern template class QUINDLE_API GLListAsArray<GLCel>;
extern template class QUINDLE_API GLSetAsArray<GLCel>;
extern template class QUINDLE_API GLListAsArray<GLNarrator>;
extern template class QUINDLE_API GLSetAsArray<GLNarrator>;
extern template class QUINDLE_API GLListAsArray<GLPoint>;
#endif

#endif
