// The places of proto files as the importer reads them.
#ifndef GPB_CORE_GPB_SOURCE_TREE_H
#define GPB_CORE_GPB_SOURCE_TREE_H

#include <google/protobuf/compiler/importer.h>
#include <memory>
#include <mutex>

#include "core/gpb_protobuf_compat.h"
#include "gpb_templatelib/gpb_lib.h"

/// Makes what is derived from the descriptors of an importer.
using GpbMakeDerived = std::shared_ptr<void> (*)();

/// Opens no file whose braces nest deeper than any file that loads. The parser calls itself for each nested message and
/// checks the depth only afterwards, so such a file would overflow the stack of the host.
class GpbSourceTree final : public google::protobuf::compiler::DiskSourceTree
{
public:
    /// As the base class; null for a file that nests too deep, which then fails to load like one that cannot be read.
    google::protobuf::io::ZeroCopyInputStream *Open(GpbPbPath filename) override;

    /// What the library has derived from the descriptors of the importer that reads through this tree, made by `make`
    /// at the first call. Hosts know the layout of the context, and may hold an importer of their own kind: so it is
    /// kept here, where it goes with the importer. Any thread may ask.
    std::shared_ptr<void> Derived(GpbMakeDerived make);

    /// Forgets it; whoever still holds it keeps it.
    void DropDerived();

private:
    std::mutex derivedMutex_;
    std::shared_ptr<void> derived_;
};

/// What is derived from the descriptors of an importer: kept with the context when it is the context's own importer,
/// else made anew for each caller.
std::shared_ptr<void> GpbDerivedOf(const GpbLibContext *context, const GpbPbImporter *importer, GpbMakeDerived make);

/// Forgets what is kept with a context.
void GpbDropDerived(const GpbLibContext *context);

#endif
