#include "descriptor/gpb_field_finder.h"

#include <utility>

using google::protobuf::Descriptor;

void GpbFieldFinder::Change(UsedInLayer &used, const Descriptor *message, uint32_t layer)
{
    std::swap(used.last, used.before);
    if (memo_ != nullptr)
    {
        memo_->Change(layer % LAYERS);
    }
    if (!IsOf(used.last, message, layer))
    {
        used.last = plan_.TableOf(message, layer).FirstGuess();
    }
}
