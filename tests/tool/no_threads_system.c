/* A system that has no thread left to give. */
#include <errno.h>
#include <pthread.h>

__attribute__((visibility("default"))) int pthread_create(pthread_t *thread, const pthread_attr_t *attributes,
                                                          void *(*start)(void *), void *argument)
{
    (void)thread;
    (void)attributes;
    (void)start;
    (void)argument;
    return EAGAIN;
}
