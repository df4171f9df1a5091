// The end of what is kept beside a context.
#ifndef GPB_CORE_GPB_EXTENSION_H
#define GPB_CORE_GPB_EXTENSION_H

#include "gpb_templatelib/gpb_lib.h"

/// Forgets the extensions of a context that ends; another one may come to lie at its address.
void GpbForgetExtensions(const GpbLibContext *context);

#endif
