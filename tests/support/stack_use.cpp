#include "support/stack_use.h"

#include <algorithm>
#include <pthread.h>
#include <stdexcept>
#include <sys/mman.h>

namespace gpbtest
{

namespace
{

constexpr size_t kStackSize = size_t{16} * 1024 * 1024;
constexpr unsigned char kUntouched = 0x5A;

/** Memory of its own for a stack, which nothing else has written to. */
class PaintedStack
{
public:
    PaintedStack() : m_memory(mmap(nullptr, kStackSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))
    {
        if (m_memory == MAP_FAILED)
        {
            throw std::runtime_error("no memory for a stack");
        }
        std::fill(begin(), end(), kUntouched);
    }
    ~PaintedStack() { munmap(m_memory, kStackSize); }
    PaintedStack(const PaintedStack &) = delete;
    PaintedStack &operator=(const PaintedStack &) = delete;

    void *memory() const { return m_memory; }

    /** Stacks grow downwards on all machines that are tested on. */
    size_t use() const
    {
        const auto *const last = std::find_if(begin(), end(), [](unsigned char byte) { return byte != kUntouched; });
        return static_cast<size_t>(end() - last);
    }

private:
    unsigned char *begin() const { return static_cast<unsigned char *>(m_memory); }
    unsigned char *end() const { return begin() + kStackSize; }

    void *m_memory;
};

void *callBody(void *body)
{
    (*static_cast<const std::function<void()> *>(body))();
    return nullptr;
}

} // namespace

size_t stackUse(const std::function<void()> &body)
{
    const PaintedStack stack;
    pthread_attr_t attributes;
    pthread_t thread = {};
    pthread_attr_init(&attributes);
    const bool isStarted =
        pthread_attr_setstack(&attributes, stack.memory(), kStackSize) == 0 &&
        pthread_create(&thread, &attributes, callBody, const_cast<std::function<void()> *>(&body)) == 0;
    pthread_attr_destroy(&attributes);
    if (!isStarted)
    {
        throw std::runtime_error("no thread with a stack of its own");
    }
    pthread_join(thread, nullptr);
    return stack.use();
}

} // namespace gpbtest
