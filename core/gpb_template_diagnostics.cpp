// The one diagnostic channel, and the core's two small text functions.
#include <cstdarg>

#include "core/gpb_template_tag.h"
#include "gpb_templatelib/gpb_lib.h"
#include "platform/safe_string.h"
#include "platform/zmp.h"

namespace
{

constexpr uint32_t LINE_FORMAT_FAILED = 112;

// The host gets no tag, function or line with a message, always this text.
constexpr char PRINT_TAG[] = "NULL";

} // namespace

void GPBLIB_DebugPrint(const GpbLibContext *pstCtx, uint32_t uiLevel, const char * /*pcFunction*/, uint32_t /*uiLine*/,
                       const char *pcFormat, ...)
{
    if (pstCtx == nullptr || uiLevel >= GPB_LOG_LEVELS)
    {
        return;
    }
    const GpbLibPrintEntry &slot = pstCtx->astPrint[uiLevel];
    if (slot.pfnPrint == nullptr)
    {
        return;
    }
    char text[GPB_LOG_TEXT_SIZE] = {};
    std::va_list arguments;
    va_start(arguments, pcFormat);
    const int length = vsnprintf_truncated_s(text, sizeof(text), pcFormat, arguments);
    va_end(arguments);
    if (length < 0)
    {
        // What a formatter that failed has left may be anything, but the callback gets a text.
        text[sizeof(text) - 1] = '\0';
        ZMP_Assert(GPB_TEMPLATE_TAG, LINE_FORMAT_FAILED, 0);
    }
    (void)slot.pfnPrint(pstCtx->ulPrintHandle, slot.ulPrintArg, PRINT_TAG, text);
}

uint32_t GPBLIB_ChrReplace(char *pcText, char cFrom, char cTo)
{
    if (pcText == nullptr)
    {
        return 1;
    }
    for (; *pcText != '\0'; ++pcText)
    {
        if (*pcText == cFrom)
        {
            *pcText = cTo;
        }
    }
    return 0;
}

const char *GPBLIB_GetJsonFieldName(const GpbLibContext * /*pstCtx*/, const char *pcName)
{
    return pcName;
}
