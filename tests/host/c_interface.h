/** Calls of every platform function from C. */
#ifndef GPB_TESTS_HOST_C_INTERFACE_H
#define GPB_TESTS_HOST_C_INTERFACE_H

#ifdef __cplusplus
extern "C"
{
#endif

/** Calls every function of the platform's headers and of gpb_host.h; returns the line of the first wrong result, or
 * 0. */
int callPlatformFromC(void);

#ifdef __cplusplus
}
#endif

#endif
