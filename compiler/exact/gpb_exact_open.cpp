#include "compiler/exact/gpb_exact_open.h"

#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>

#include "compiler/gpb_layer.h"

using google::protobuf::FieldDescriptor;
using google::protobuf::Message;

unsigned int GpbOpenExactCases(const GpbExactField &field, GpbCompilerStack &stack)
{
    for (const FieldDescriptor *caseField : field.cases)
    {
        const GpbCompilerStackLayer &upper = GpbTopLayer(stack);
        Message *message = GpbOpenLayerMessage(upper.pstMessage, caseField);
        if (message == nullptr || stack.uiLayerNum == GPB_COMPILER_MAX_LAYERS)
        {
            return GPB_COMPILER_ERR;
        }
        GpbCompilerStackLayer &layer = GpbPushLayer(stack, message, caseField->message_type());
        // Where nobody reads paths, the layer below has none.
        if (!upper.strXPath.empty())
        {
            GpbAppendXPath(layer, &upper, *caseField->file(), *caseField);
        }
    }
    return GPB_COMPILER_OK;
}
