/** The layouts of the public records as this machine has them, after the list packaging/record-layouts.txt. */
#ifndef GPB_TESTS_CORE_RECORD_LAYOUTS_H
#define GPB_TESTS_CORE_RECORD_LAYOUTS_H

#include <cstddef>
#include <string>
#include <vector>

#include "gpb_templatelib/gpb_compiler.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "gpb_templatelib/gpb_host.h"
#include "gpb_templatelib/gpb_template.h"

namespace gpbtest
{

constexpr bool kHas64Bits = sizeof(void *) == 8;
static_assert(sizeof(void *) == 4 || kHas64Bits, "the list knows machines of 32 and of 64 bits");

struct FieldLayout
{
    std::string name;
    size_t offset;
    size_t size;
    size_t alignment;
};

struct RecordLayout
{
    std::string name;
    size_t size;
    size_t alignment;
    std::vector<FieldLayout> fields;
};

/** The records of the list, in its order, as the compiler lays them out. */
std::vector<RecordLayout> recordLayouts();

/** The text of the list with the numbers of this machine in place of those listed for machines of its kind. */
std::string listRecordLayouts();

} // namespace gpbtest

#endif
