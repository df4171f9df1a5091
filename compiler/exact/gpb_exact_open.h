// Layers, as the walks of the lossless setting open and close them.
#ifndef GPB_COMPILER_EXACT_GPB_EXACT_OPEN_H
#define GPB_COMPILER_EXACT_GPB_EXACT_OPEN_H

#include <cstdint>

#include "descriptor/gpb_exact_names.h"
#include "gpb_templatelib/gpb_compiler.h"

/// Opens the cases of a field below the top layer of a stack, each as a layer of its own. They are always those of the
/// top layer's message: what an earlier pop has left in a slot is never used again.
///
/// @return GPB_COMPILER_OK; GPB_COMPILER_ERR when a message cannot be opened, or when there is no layer left, and then
///         the last case is there, empty. Layers that were pushed before a failure stay on the stack
unsigned int GpbOpenExactCases(const GpbExactField &field, GpbCompilerStack &stack);

/// Closes the layers that are opened while it lives, and leaves nothing of them in their slots but the memory of their
/// paths.
class GpbLayerScope
{
public:
    explicit GpbLayerScope(GpbCompilerStack &stack) : stack_(stack), layerNum_(stack.uiLayerNum) {}

    ~GpbLayerScope()
    {
        while (stack_.uiLayerNum > layerNum_)
        {
            GpbCompilerStackLayer &layer = stack_.astLayer[--stack_.uiLayerNum];
            layer.pstDescriptor = nullptr;
            layer.pstMessage = nullptr;
        }
    }

    GpbLayerScope(const GpbLayerScope &) = delete;
    GpbLayerScope &operator=(const GpbLayerScope &) = delete;

private:
    GpbCompilerStack &stack_;
    uint32_t layerNum_;
};

#endif
