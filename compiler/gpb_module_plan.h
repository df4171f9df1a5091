// What compilers need to know of the message types of an importer, worked out once.
#ifndef GPB_COMPILER_GPB_MODULE_PLAN_H
#define GPB_COMPILER_GPB_MODULE_PLAN_H

#include <memory>

#include "compiler/gpb_record_plan.h"
#include "descriptor/gpb_exact_names.h"
#include "descriptor/gpb_name_plan.h"
#include "gpb_templatelib/gpb_api.h"

/// All compilers of an importer share one. What is in it is made when it is first asked for and then only read, by any
/// number of threads.
struct GpbModulePlan
{
    GpbNamePlan names;
    GpbExactNamePlan exactNames; ///< of the lossless setting
    GpbRecordPlan records;
};

/// The plan of an importer: the context's when it is the context's importer, and then it goes with the importer; else
/// one of its own.
std::shared_ptr<GpbModulePlan> GpbPlanOf(const void *libHandle, const GpbPbImporter *importer);

#endif
