#include "faults/process_memory.h"

#include <cjson/cJSON.h>
#include <cstdlib>
#include <cstring>
#include <libxml/xmlmemory.h>
#include <new>

namespace
{

uint64_t g_failing = 0;
uint64_t g_count = 0;
bool g_isArmed = false;

bool fails()
{
    return g_isArmed && ++g_count == g_failing;
}

void *allocate(size_t size)
{
    return fails() ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void *reallocate(void *memory, size_t size)
{
    return fails() ? nullptr : std::realloc(memory, size);
}

char *duplicate(const char *text)
{
    const size_t size = std::strlen(text) + 1;
    void *const copy = allocate(size);
    return copy == nullptr ? nullptr : static_cast<char *>(std::memcpy(copy, text, size));
}

void release(void *memory)
{
    std::free(memory);
}

} // namespace

namespace gpbtest
{

void takeProcessMemory()
{
    xmlMemSetup(release, allocate, reallocate, duplicate);
    cJSON_Hooks hooks = {allocate, release};
    cJSON_InitHooks(&hooks);
}

FailingMemory::FailingMemory(uint64_t failing)
{
    g_failing = failing;
    g_count = 0;
    g_isArmed = true;
}

FailingMemory::~FailingMemory()
{
    g_isArmed = false;
}

uint64_t FailingMemory::count() const
{
    return g_count;
}

} // namespace gpbtest

// These replace the free store of the whole program, the libraries included.
#pragma GCC visibility push(default)

void *operator new(size_t size)
{
    void *const memory = allocate(size);
    if (memory == nullptr)
    {
        throw std::bad_alloc();
    }
    return memory;
}

// A sanitizer has one of its own, which would not go through here.
void *operator new(size_t size, const std::nothrow_t &) noexcept
{
    return allocate(size);
}

void operator delete(void *memory) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, size_t) noexcept
{
    std::free(memory);
}

// protobuf's list of texts makes a text and loses it when the list has no memory to grow, and its pool loses its mutex
// when there is no memory for its tables. Its public, undeprecated interface offers no way to make the room first, so
// these few bytes are its own.
extern "C" const char *__lsan_default_suppressions();
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:google::protobuf::RepeatedPtrField<std::__cxx11::basic_string\n"
           "leak:google::protobuf::DescriptorPool::DescriptorPool\n";
}

#pragma GCC visibility pop
