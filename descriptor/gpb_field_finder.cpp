#include "descriptor/gpb_field_finder.h"

#include <cstring>
#include <utility>

using google::protobuf::Descriptor;

void GpbFieldFinder::Change(GpbNameTrail::Used &used, const Descriptor *message, uint32_t layer)
{
    std::swap(used.last, used.before);
    if (!IsOf(used.last, message, layer))
    {
        used.last = &trail_->Keep("", plan_.TableOf(message, layer).Nothing());
    }
}

// A name that did not come behind the last one before: it lies where another of its kind lay, or it is the one that is
// declared behind the last one, or it has to be looked up.
const GpbNamedField &GpbFieldFinder::FindBehind(GpbNameTrail::Used &used, const char *nodeName)
{
    GpbNameStep &last = *used.last;
    GpbNameStep *step = trail_->IsEnd(last) ? nullptr : trail_->StepAt(nodeName, *last.table);
    if (step == nullptr)
    {
        const GpbNamedField &declared = *last.field->next;
        const GpbNamedField *const found =
            std::strcmp(declared.name, nodeName) == 0 ? &declared : last.table->FindAsSpelt(nodeName);
        if (found == nullptr)
        {
            // Converted each time: what fails in the platform's functions must not be remembered as a miss.
            return last.table->FindConverted(nodeName);
        }
        step = &trail_->Keep(nodeName, *found);
    }
    last.next = step;
    used.last = step;
    return *step->field;
}
