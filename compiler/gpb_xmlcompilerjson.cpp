// XML to JSON: from a document to a tree, and from the tree to its text.
#include <cjson/cJSON.h>
#include <libxml/tree.h>
#include <typeinfo>

#include "compiler/exact/gpb_exact_xml_to_json.h"
#include "compiler/gpb_json_document.h"
#include "compiler/gpb_json_text.h"
#include "compiler/gpb_xmlcompilerjson_tag.h"
#include "core/gpb_barrier.h"
#include "core/gpb_log.h"
#include "gpb_templatelib/gpb_compiler.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "gpb_templatelib/gpb_extension.h"
#include "gpb_templatelib/gpb_lib.h"
#include "platform/yos.h"
#include "platform/zmp.h"

namespace
{

constexpr uint32_t LINE_FREE_TEXT_AT_END = 138;
constexpr uint32_t LINE_FREE_TEXT = 153;

// A copy of the tree's text under the module id, or null.
char *PrintTree(uint32_t moduleId, const cJSON *tree)
{
    if (tree == nullptr)
    {
        return nullptr;
    }
    return GpbNoThrow(static_cast<char *>(nullptr),
                      [&]
                      {
                          GpbJsonText text;
                          return text.Append(tree) ? Gpb_util_StrDup(moduleId, text.Terminated(), nullptr) : nullptr;
                      });
}

} // namespace

GpbXmlCompilerJson::GpbXmlCompilerJson(const google::protobuf::FileDescriptor *pstFile,
                                       const google::protobuf::compiler::Importer *pstImport, void *pvHandle,
                                       unsigned char ucFlag)
    : GpbXmlCompilerBase(pstFile, pstImport, pvHandle),
      uiMemHandle(GPBLIB_GetMemHandle(static_cast<const GpbLibContext *>(pvHandle)))
{
    InitTransTbl(ucFlag);
}

GpbXmlCompilerJson::~GpbXmlCompilerJson()
{
    GpbJsonDocument::Delete(pstJsonRoot);
    if (pcResult != nullptr)
    {
        ZMP_Free_F(pcResult, GPB_XML_TO_JSON_TAG, LINE_FREE_TEXT_AT_END);
    }
}

unsigned int GpbXmlCompilerJson::Encode(xmlDoc *pstDoc)
{
    if (pstDoc == nullptr)
    {
        return GPB_COMPILER_ERR;
    }
    xmlNode *root = xmlDocGetRootElement(pstDoc);
    if (root == nullptr)
    {
        return GPB_COMPILER_NO_ROOT;
    }
    return EncodeRoot(root);
}

unsigned int GpbXmlCompilerJson::EncodeRoot(xmlNode *pstRoot)
{
    ClearResult();
    uiDepth = 0;
    // A subclass may look at the tree, keep parts of it or add to it, and the lossless walk renames members: both get
    // one whose items are cJSON's own.
    const bool isSubclass = typeid(*this) != typeid(GpbXmlCompilerJson);
    const bool isLossless = GPBEXT_IsLossless(static_cast<const GpbLibContext *>(pvLibHandle)) != 0;
    pstJsonRoot = isSubclass || isLossless ? GpbLib_Json_AllocObject(uiMemHandle) : GpbJsonDocument::New();
    if (pstJsonRoot == nullptr)
    {
        return GPB_COMPILER_NO_JSON_ITEM;
    }
    const unsigned int result = GpbNoThrow(GPB_COMPILER_NO_JSON_ITEM,
                                           [&] {
                                               return isLossless ? GpbExactXmlToJson(*this).WalkDocument(pstRoot)
                                                                 : IterXmlDoc(nullptr, pstRoot, pstJsonRoot);
                                           });
    if (result != GPB_COMPILER_OK)
    {
        GPB_LOG_AS(pvLibHandle, GPB_LOG_ERROR, "Encode", __LINE__,
                   "[GpbXmlCompilerJson][Encode]Fail to iterate xml doc, return %u.", result);
    }
    return result;
}

const char *GpbXmlCompilerJson::GetResult(unsigned int *puiLen)
{
    if (puiLen == nullptr)
    {
        return nullptr;
    }
    if (pcResult == nullptr)
    {
        pcResult = PrintTree(uiMemHandle, pstJsonRoot);
        uiResultLen = pcResult == nullptr ? 0 : YOS_StrLen(pcResult);
    }
    *puiLen = uiResultLen;
    return pcResult;
}

void GpbXmlCompilerJson::ClearResult()
{
    GpbJsonDocument::Delete(pstJsonRoot);
    pstJsonRoot = nullptr;
    if (pcResult != nullptr)
    {
        ZMP_Free_F(pcResult, GPB_XML_TO_JSON_TAG, LINE_FREE_TEXT);
        pcResult = nullptr;
    }
    uiResultLen = 0;
    mapListNode.clear();
}
