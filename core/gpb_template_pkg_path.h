// Walking the package install paths of a context.
#ifndef GPB_CORE_GPB_TEMPLATE_PKG_PATH_H
#define GPB_CORE_GPB_TEMPLATE_PKG_PATH_H

#include "gpb_templatelib/gpb_lib.h"

/// First path in the order of adding, or null.
GpbPkgPathNode *GpbFirstPkgPath(GpbLibContext *context);

/// Path after `node`, or null at the end.
GpbPkgPathNode *GpbNextPkgPath(GpbLibContext *context, const GpbPkgPathNode *node);

#endif
