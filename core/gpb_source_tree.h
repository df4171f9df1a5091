// The places of proto files as the importer reads them.
#ifndef GPB_CORE_GPB_SOURCE_TREE_H
#define GPB_CORE_GPB_SOURCE_TREE_H

#include <google/protobuf/compiler/importer.h>

#include "core/gpb_protobuf_compat.h"

/// Opens no file whose braces nest deeper than any file that loads. The parser calls itself for each nested message and
/// checks the depth only afterwards, so such a file would overflow the stack of the host.
class GpbSourceTree : public google::protobuf::compiler::DiskSourceTree
{
public:
    /// As the base class; null for a file that nests too deep, which then fails to load like one that cannot be read.
    google::protobuf::io::ZeroCopyInputStream *Open(GpbPbPath filename) override;
};

#endif
