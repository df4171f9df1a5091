// Opening the messages between a layer and a field that lies in a nested message type.
#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>
#include <string>

#include "compiler/gpb_ancestor_layers.h"
#include "compiler/gpb_case_switch.h"
#include "compiler/gpb_layer.h"
#include "compiler/gpb_record.h"
#include "core/gpb_barrier.h"
#include "core/gpb_protobuf_compat.h"
#include "gpb_templatelib/gpb_compiler.h"

using google::protobuf::Descriptor;
using google::protobuf::FieldDescriptor;
using google::protobuf::Message;

namespace
{

// Each new layer's path repeats the text so far, which doubles it: without an end, a schema with cases nested in cases
// would fill the memory. Log lines show the first 1023 characters at most.
constexpr size_t MAX_ACCUMULATED_PATH = size_t{64} * 1024;

// First field of `message` whose message type carries the name of `type`.
const FieldDescriptor *FieldOfType(const Descriptor *message, const Descriptor *type)
{
    for (int i = 0; i < message->field_count(); ++i)
    {
        const Descriptor *fieldType = message->field(i)->message_type();
        if (fieldType != nullptr && GpbPbName(*fieldType) == GpbPbName(*type))
        {
            return message->field(i);
        }
    }
    return nullptr;
}

// Sets the path of a new layer: deliberately behind that of the new layer before it, if there is one. The layer below
// is a record without a path only where nobody reads paths, and so this one gets none; a host's own stack may begin
// with a layer that has none.
void SetPath(std::string &path, const std::string *before, const GpbCompilerStackLayer &top,
             const FieldDescriptor *entry)
{
    path.clear();
    if (top.strXPath.empty() && GpbRecordOf(top.pstMessage) != nullptr)
    {
        return;
    }
    if (before != nullptr)
    {
        path.append(*before);
    }
    if (path.size() <= MAX_ACCUMULATED_PATH)
    {
        path.append(top.strXPath).append(".").append(GpbPbName(*entry));
    }
}

// The message that a new layer for `entry` fills, or null when the top layer's message cannot hold it.
Message *OpenMessage(GpbCompilerStack &stack, Message *parent, const FieldDescriptor *entry)
{
    // A repeated entry, or one of another message, would end the process inside protobuf.
    if (parent == nullptr || entry->is_repeated() || entry->containing_type() != parent->GetDescriptor())
    {
        return nullptr;
    }
    const GpbCaseSwitch caseSwitch(stack, parent, entry);
    return GpbOpenLayerMessage(parent, entry);
}

// Takes the slot above the top as it was left, message and path included, if it is of the right type, which is all that
// is asked: a case that is entered again costs no lookup in its message. Deliberately its message may be that of an
// earlier list entry, too; the bytes of a document must not depend on the version of the library.
bool ReuseSlot(GpbCompilerStack &stack, const FieldDescriptor *entry)
{
    if (stack.uiLayerNum >= GPB_COMPILER_MAX_LAYERS ||
        stack.astLayer[stack.uiLayerNum].pstDescriptor != entry->message_type())
    {
        return false;
    }
    ++stack.uiLayerNum;
    return true;
}

} // namespace

unsigned int GPB_GetDescriptorAncestors(const FieldDescriptor *pstField, const Descriptor *pstTop,
                                        const FieldDescriptor **ppstAncestors, unsigned int /*uiMaxNum*/)
{
    if (pstField == nullptr || ppstAncestors == nullptr)
    {
        return 0;
    }
    unsigned int count = 0;
    ppstAncestors[count++] = pstField;
    const Descriptor *type = pstField->containing_type();
    while (type != nullptr && type != pstTop)
    {
        const Descriptor *parent = type->containing_type();
        const FieldDescriptor *field = parent == nullptr ? nullptr : FieldOfType(parent, type);
        // Every caller's array has this many entries, so a deeper chain counts as one that does not reach the top.
        if (field == nullptr || count == GPB_MAX_ANCESTOR_NUM)
        {
            return 0;
        }
        ppstAncestors[count++] = field;
        type = parent;
    }
    return type == nullptr ? 0 : count;
}

unsigned int GpbPushAncestorLayers(const FieldDescriptor *field, GpbCompilerStack &stack)
{
    if (stack.uiLayerNum == 0 || stack.uiLayerNum > GPB_COMPILER_MAX_LAYERS ||
        stack.astLayer[stack.uiLayerNum - 1].pstDescriptor == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    const FieldDescriptor *ancestors[GPB_MAX_ANCESTOR_NUM] = {};
    unsigned int count = GPB_GetDescriptorAncestors(field, stack.astLayer[stack.uiLayerNum - 1].pstDescriptor,
                                                    ancestors, GPB_MAX_ANCESTOR_NUM);
    if (count == 0)
    {
        return GPB_COMPILER_ERR;
    }
    const std::string *path = nullptr; // of the last new layer
    while (count > 0)
    {
        const FieldDescriptor *entry = ancestors[--count];
        if (entry->message_type() == nullptr)
        {
            return GPB_COMPILER_ERR;
        }
        if (ReuseSlot(stack, entry))
        {
            continue;
        }
        const GpbCompilerStackLayer &top = stack.astLayer[stack.uiLayerNum - 1];
        Message *message = OpenMessage(stack, top.pstMessage, entry);
        // The message is made before the room is tested, so a full stack leaves it behind, empty.
        if (message == nullptr || stack.uiLayerNum == GPB_COMPILER_MAX_LAYERS)
        {
            return GPB_COMPILER_ERR;
        }
        GpbCompilerStackLayer &layer = stack.astLayer[stack.uiLayerNum];
        SetPath(layer.strXPath, path, top, entry);
        path = &layer.strXPath;
        layer.pstDescriptor = entry->message_type();
        layer.pstMessage = message;
        ++stack.uiLayerNum;
    }
    return GPB_COMPILER_OK;
}

unsigned int GPB_PushAncesDescriptor(const FieldDescriptor *pstField, GpbCompilerStack &stStack)
{
    return GpbNoThrow(GPB_COMPILER_ERR, [&] { return GpbPushAncestorLayers(pstField, stStack); });
}
