// Kdllfix.cpp - the kernel pointer and the library's memory routines.
#include "gldll.h"

KernelServices* kernel = 0;

void DLLInit(void* pKernel)
{
    kernel = static_cast<KernelServices*>(pKernel);
    GL_ASSERT(kernel != 0);
}

// Every allocation of the library passes here with the file and line of the
// allocating expression. The result is returned untested: each caller asserts
// on the pointer it gets, so that the report names the caller.
void* GLAllocMemory(std::uint32_t size, const char* file, int line)
{
    GL_ASSERT(size > 0);
    GL_ASSERT(file != 0);
    GL_ASSERT(line >= 1);
    GL_ASSERT(kernel != 0);
    return kernel->AllocMemory(size, file, line);
}

// A null pointer goes to the kernel unchanged: a list that was never
// initialised releases a null array.
void GLFreeMemory(void* pointer)
{
    GL_ASSERT(kernel != 0);
    kernel->FreeMemory(pointer);
}
