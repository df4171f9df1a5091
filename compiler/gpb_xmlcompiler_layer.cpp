// XML to GPB: making the layers.
#include <google/protobuf/compiler/importer.h>
#include <google/protobuf/descriptor.h>
#include <google/protobuf/dynamic_message.h>
#include <google/protobuf/message.h>
#include <libxml/tree.h>
#include <typeinfo>

#include "compiler/gpb_layer.h"
#include "compiler/gpb_module_plan.h"
#include "compiler/gpb_record.h"
#include "compiler/gpb_xml_node.h"
#include "core/gpb_log.h"
#include "core/gpb_protobuf_compat.h"
#include "gpb_templatelib/gpb_compiler.h"

using google::protobuf::FieldDescriptor;
using google::protobuf::Message;

namespace
{

constexpr uint32_t LINE_NOT_A_MESSAGE = 199;
constexpr char GENERATE_LAYER[] = "GenerateLayer";
constexpr uint32_t LINE_NO_TYPE = 542;
constexpr uint32_t LINE_NO_PROTOTYPE = 549;
constexpr uint32_t LINE_NO_MESSAGE = 557;

constexpr GpbTopLayerLog TOP_LAYER_LOG = {"InitCompilerTopLayer", 235, 241, 247};

// The path of a layer that may not have been written yet.
std::string PathOf(const GpbCompilerStackLayer *upper, const FieldDescriptor &field, const char *path)
{
    if (path != nullptr)
    {
        return path;
    }
    return upper == nullptr ? std::string() : GpbXPathOf(*upper, field);
}

} // namespace

unsigned int GpbXmlCompiler::InitCompilerTopLayer(xmlNode *pstRoot, GpbCompilerStackLayer &stLayer)
{
    // Only a subclass can look at the message.
    const bool isSubclass = typeid(*this) != typeid(GpbXmlCompiler);
    return GpbSetUpTopLayer({pvLibHandle, pstFileDesc, pstImporter, pstMsgFactory, &pstPlan->records, isSubclass},
                            GpbXmlNodeName(pstRoot), TOP_LAYER_LOG, stLayer);
}

unsigned int GpbXmlCompiler::GenerateLayer(GpbCompilerStackLayer &stLayer, GpbCompilerStackLayer *pstUpper,
                                           const FieldDescriptor *pstField)
{
    GenerateXPath(stLayer, pstUpper, pstField);
    const unsigned int result = GenerateLayerType(stLayer, pstUpper, pstField, stLayer.strXPath.c_str());
    if (result != GPB_COMPILER_OK || pstUpper != nullptr)
    {
        return result;
    }
    stLayer.pstMessage = pstMsgFactory->GetPrototype(stLayer.pstDescriptor)->New();
    if (stLayer.pstMessage == nullptr)
    {
        GPB_LOG(pvLibHandle, GPB_LOG_ERROR, LINE_NO_MESSAGE,
                "[GpbXmlCompiler][GenerateLayer]Fail to new message for path %s", stLayer.strXPath.c_str());
        return GPB_COMPILER_NO_MESSAGE;
    }
    return GPB_COMPILER_OK;
}

unsigned int GpbXmlCompiler::GenerateLayerType(GpbCompilerStackLayer &stLayer, GpbCompilerStackLayer *pstUpper,
                                               const FieldDescriptor *pstField, const char *pcPath)
{
    stLayer.pstDescriptor = pstField->message_type();
    if (stLayer.pstDescriptor == nullptr)
    {
        GPB_LOG_AS(pvLibHandle, GPB_LOG_SKIP, GENERATE_LAYER, LINE_NO_TYPE,
                   "[GpbXmlCompiler][GenerateLayer]Fail to find message type for path %s.",
                   PathOf(pstUpper, *pstField, pcPath).c_str());
        return GPB_COMPILER_NO_MESSAGE_TYPE;
    }
    // The records of a document need no prototypes.
    if (pstUpper != nullptr && GpbRecordOf(pstUpper->pstMessage) != nullptr)
    {
        return GPB_COMPILER_OK;
    }
    const Message *prototype = pstMsgFactory->GetPrototype(stLayer.pstDescriptor);
    if (prototype == nullptr)
    {
        GPB_LOG_AS(pvLibHandle, GPB_LOG_ERROR, GENERATE_LAYER, LINE_NO_PROTOTYPE,
                   "[GpbXmlCompiler][GenerateLayer]Fail to get proto type for path %s.",
                   PathOf(pstUpper, *pstField, pcPath).c_str());
        return GPB_COMPILER_NO_PROTOTYPE;
    }
    return GPB_COMPILER_OK;
}

void GpbXmlCompiler::GenerateXPath(GpbCompilerStackLayer &stLayer, GpbCompilerStackLayer *pstUpper,
                                   const FieldDescriptor *pstField)
{
    GpbAppendXPath(stLayer, pstUpper, *pstFileDesc, *pstField);
}

unsigned int GpbXmlCompiler::AddLayerToUpperLayer(const GpbCompilerStackLayer &stUpper, GpbCompilerStackLayer &stLayer,
                                                  const FieldDescriptor *pstField)
{
    if (pstField->type() != FieldDescriptor::TYPE_MESSAGE)
    {
        GPB_LOG(pvLibHandle, GPB_LOG_ERROR, LINE_NOT_A_MESSAGE,
                "[GpbXmlCompiler][AddLayerToUpperLayer]Field [%s] type is not message, it is %u.",
                GpbPbName(*pstField).c_str(), static_cast<unsigned int>(pstField->type()));
        return GPB_COMPILER_NOT_A_MESSAGE;
    }
    stLayer.pstMessage = GpbOpenLayerMessage(stUpper.pstMessage, pstField);
    return stLayer.pstMessage == nullptr ? GPB_COMPILER_ERR : GPB_COMPILER_OK;
}
