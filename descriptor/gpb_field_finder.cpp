#include "descriptor/gpb_field_finder.h"

#include <utility>

using google::protobuf::Descriptor;

void GpbFieldFinder::Change(UsedInLayer &used, const Descriptor *message, uint32_t layer)
{
    std::swap(used.last, used.before);
    std::swap(used.lastGuess, used.beforeGuess);
    if (!IsOf(used.last, message, layer))
    {
        used.last = &plan_.TableOf(message, layer);
        used.lastGuess = {};
    }
}

const GpbNamedField &GpbFieldFinder::FindElsewhere(UsedInLayer &used, const char *nodeName)
{
    return used.last->Find(nodeName, used.lastGuess, memo_);
}
