// What the walks over JSON trees report alike.
#ifndef GPB_COMPILER_GPB_JSON_LOG_H
#define GPB_COMPILER_GPB_JSON_LOG_H

#include "gpb_templatelib/gpb_compiler.h"

/// A node under this key is none of the layer's.
void GpbReportNoJsonField(void *libHandle, const char *key, const GpbCompilerStackLayer &layer);

/// The case that holds the container, the leaf or the leaf-list of this key cannot be opened.
void GpbReportJsonContainerCaseFailed(void *libHandle, const char *key);
void GpbReportJsonLeafCaseFailed(void *libHandle, const char *key, const GpbCompilerStackLayer &layer);
void GpbReportJsonLeafListCaseFailed(void *libHandle, const char *memberKey);

/// The layers around the item of this key cannot be opened.
void GpbReportJsonAncestorsFailed(void *libHandle, const char *key);

#endif
