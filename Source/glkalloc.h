// glkalloc.h - a standard allocator over the library's kernel routines, so
// that standard containers inside the library take their blocks from the
// kernel like everything else. Not exported.
#ifndef QUINDLE_GLKALLOC_H
#define QUINDLE_GLKALLOC_H

#include "gldefs.h"

#include <cstddef>
#include <string>
#include <vector>

template <class T>
class GLKernelAllocator {
public:
    typedef T value_type;
    GLKernelAllocator() {}
    template <class U>
    GLKernelAllocator(const GLKernelAllocator<U>&)
    {
    }
    T* allocate(std::size_t n)
    {
        void* pBlock = GL_ALLOC(n * sizeof(T));
        GL_ASSERT(pBlock);
        return static_cast<T*>(pBlock);
    }
    void deallocate(T* p, std::size_t) { GL_FREE(p); }
    template <class U>
    bool operator==(const GLKernelAllocator<U>&) const
    {
        return true;
    }
    template <class U>
    bool operator!=(const GLKernelAllocator<U>&) const
    {
        return false;
    }
};

typedef std::basic_string<char, std::char_traits<char>, GLKernelAllocator<char>> GLKernelText;
template <class T>
using GLKernelArray = std::vector<T, GLKernelAllocator<T>>;

#endif
