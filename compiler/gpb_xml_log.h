// What the walks over XML documents that fill messages report alike.
#ifndef GPB_COMPILER_GPB_XML_LOG_H
#define GPB_COMPILER_GPB_XML_LOG_H

#include "gpb_templatelib/gpb_compiler.h"

/// A container of this name is none of the layer's.
void GpbReportNoXmlContainer(void *libHandle, const char *name);

/// A leaf of this name, or an empty one, is none of the layer's.
void GpbReportNoXmlLeaf(void *libHandle, const char *name, const GpbCompilerStackLayer &layer);
void GpbReportNoXmlEmptyLeaf(void *libHandle, const GpbCompilerStackLayer &layer);

/// The case that holds the container, the container without content, the leaf or the empty leaf of this name cannot be
/// opened.
void GpbReportXmlContainerCaseFailed(void *libHandle, const char *name);
void GpbReportXmlPresenceCaseFailed(void *libHandle, const char *name);
void GpbReportXmlLeafCaseFailed(void *libHandle, const char *name);
void GpbReportXmlEmptyLeafCaseFailed(void *libHandle, const char *name);

/// The field of an empty leaf takes no value of its kind.
void GpbReportXmlEmptyLeafType(void *libHandle, const google::protobuf::FieldDescriptor &field);

#endif
