#include "compiler/gpb_module_plan.h"

#include "core/gpb_source_tree.h"

std::shared_ptr<GpbModulePlan> GpbPlanOf(const void *libHandle, const GpbPbImporter *importer)
{
    const GpbMakeDerived make = []() -> std::shared_ptr<void> { return std::make_shared<GpbModulePlan>(); };
    return std::static_pointer_cast<GpbModulePlan>(
        GpbDerivedOf(static_cast<const GpbLibContext *>(libHandle), importer, make));
}
