/**
 * The platform's declarations, for the files that implement them.
 *
 * The library is built with hidden visibility; what is declared here is what leaves it. Every file of this folder
 * includes the platform's headers through this one, so that a service can neither be forgotten nor leak a helper.
 */
#ifndef GPB_HOST_PLATFORM_EXPORTS_H
#define GPB_HOST_PLATFORM_EXPORTS_H

// The system headers first: the pragma is not meant for them.
#include <stdarg.h>
#include <stddef.h>
#include <stdint.h>

#pragma GCC visibility push(default)
#include "platform/cmf_tree.h"
#include "platform/dll.h"
#include "platform/safe_string.h"
#include "platform/vec.h"
#include "platform/yos.h"
#include "platform/zmp.h"
#pragma GCC visibility pop

#include "gpb_templatelib/gpb_host.h"

#endif
