/** Whether this is a build with AddressSanitizer: GPB_HOST_HAS_ASAN, for the preprocessor and for the compiler. */
#ifndef GPB_HOST_ADDRESS_SANITIZER_H
#define GPB_HOST_ADDRESS_SANITIZER_H

#if defined(__SANITIZE_ADDRESS__)
#define GPB_HOST_HAS_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define GPB_HOST_HAS_ASAN 1
#endif
#endif

#ifndef GPB_HOST_HAS_ASAN
#define GPB_HOST_HAS_ASAN 0
#endif

#endif
