// What every compiler owns, and the table of characters that enum value names cannot hold.
#include <google/protobuf/compiler/importer.h>
#include <google/protobuf/dynamic_message.h>
#include <mutex>

#include "compiler/gpb_enum_text.h"
#include "compiler/gpb_module_plan.h"
#include "descriptor/gpb_field_finder.h"
#include "gpb_templatelib/gpb_compiler.h"
#include "platform/safe_string.h"
#include "platform/yos.h"
#include "platform/zmp.h"

namespace
{

constexpr char COMPILER_BASE_TAG[] = "gpb_xmlcompilerbase.cpp";
constexpr uint32_t LINE_PREFIX_FAILED = 80;

// Compilers may be constructed by several threads at once.
std::mutex g_specialCharTableMutex;

// The table itself tells whether it is filled: a host that can write to it gets it back with its next compiler.
void FillSpecialCharTable()
{
    const std::lock_guard<std::mutex> lock(g_specialCharTableMutex);
    if (GpbXmlCompilerBase::aucSpecialCharTable[static_cast<unsigned char>(GPB_SPECIAL_CHARS[0])] != 0)
    {
        return;
    }
    for (const char c : GPB_SPECIAL_CHARS)
    {
        GpbXmlCompilerBase::aucSpecialCharTable[static_cast<unsigned char>(c)] = 1;
    }
}

} // namespace

unsigned char GpbXmlCompilerBase::aucSpecialCharTable[256] = {};

GpbXmlCompilerBase::GpbXmlCompilerBase(const google::protobuf::FileDescriptor *pstFile,
                                       const google::protobuf::compiler::Importer *pstImport, void *pvHandle)
    : pvLibHandle(pvHandle), pstFileDesc(pstFile), pstImporter(pstImport), pstPlan(GpbPlanOf(pvHandle, pstImport)),
      pstFieldFinder(std::make_unique<GpbFieldFinder>(pstPlan->names))
{
    pstMsgFactory = new google::protobuf::DynamicMessageFactory(pstImporter->pool());
    FillSpecialCharTable();
}

GpbXmlCompilerBase::~GpbXmlCompilerBase()
{
    // The factory owns the message's type, so it goes last.
    delete pstMessage;
    pstMessage = nullptr;
    delete pstMsgFactory;
}

unsigned int GpbXmlCompilerBase::Encode(struct _xmlDoc * /*pstDoc*/)
{
    return 0;
}

unsigned int GpbXmlCompilerBase::EncodeJson(struct cJSON * /*pstRoot*/, struct cJSON * /*pstItem*/)
{
    return 0;
}

unsigned int GpbXmlCompilerBase::GetMdlAttr(const void * /*pvHandle*/, struct cJSON * /*pstRoot*/,
                                            struct cJSON * /*pstItem*/, void * /*pvMdlAttr*/)
{
    return 0;
}

const char *GpbXmlCompilerBase::GetResult(unsigned int * /*puiLen*/)
{
    return nullptr;
}

const char *GpbXmlCompilerBase_EnumYang2Proto(const char *pcYangValue, const char *pcEnumTypeName, char *pcOut,
                                              unsigned int uiOutSize)
{
    if (pcYangValue == nullptr || pcEnumTypeName == nullptr || pcOut == nullptr)
    {
        return nullptr;
    }
    const int prefix = snprintf_truncated_s(pcOut, uiOutSize, "%s_", pcEnumTypeName);
    if (prefix < 0)
    {
        ZMP_Assert(COMPILER_BASE_TAG, LINE_PREFIX_FAILED, 0);
        if (prefix == -1)
        {
            return nullptr;
        }
    }
    char *out = pcOut + YOS_StrLen(pcOut);
    const char *last = pcOut + uiOutSize - 1;
    if (GpbIsDigit(*pcYangValue))
    {
        out = GpbWriteEnumEscape(out);
    }
    for (const char *in = pcYangValue; *in != '\0'; ++in)
    {
        if (GpbIsSpecial(*in))
        {
            out = GpbWriteEnumEscape(out);
            continue;
        }
        // Only here is the room respected; callers leave room for the two-character writes.
        if (out >= last)
        {
            break;
        }
        *out++ = GpbToUpper(*in);
        if (out == last)
        {
            break;
        }
    }
    *out = '\0';
    return pcOut;
}
