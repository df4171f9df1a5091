// Texts in place: the small steps from which the name rules are made.
#include <cstring>

#include "core/gpb_memory.h"
#include "descriptor/gpb_util_tag.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "platform/safe_string.h"
#include "platform/yos.h"
#include "platform/zmp.h"

void Gpb_Util_RemoveModuleName(char *pcDest, uint32_t uiSize, const char *pcSrc)
{
    if (pcDest == nullptr || pcSrc == nullptr || uiSize == 0)
    {
        return;
    }
    uint32_t out = 0;
    uint32_t segment = 0;
    // The room is tested before a ":" can give some of it back: a prefix that fills the room ends the copy.
    for (const char *in = pcSrc; *in != '\0' && out < uiSize - 1; ++in)
    {
        if (*in == ':')
        {
            out = segment;
            continue;
        }
        pcDest[out++] = *in;
        if (*in == '/')
        {
            segment = out;
        }
    }
    pcDest[out] = '\0';
}

void Gpb_Util_ConverDashToUnderline(char *pcText)
{
    (void)GPBLIB_ChrReplace(pcText, '-', '_');
}

void Gpb_Util_ConverUnderlineToDash(char *pcText)
{
    (void)GPBLIB_ChrReplace(pcText, '_', '-');
}

void Gpb_Util_StrToLowcase(char *pcText)
{
    if (pcText == nullptr)
    {
        return;
    }
    for (; *pcText != '\0'; ++pcText)
    {
        if (*pcText >= 'A' && *pcText <= 'Z')
        {
            *pcText = static_cast<char>(*pcText - 'A' + 'a');
        }
    }
}

void Gpb_Util_CutFirstChar(char *pcText)
{
    if (pcText == nullptr || *pcText == '\0')
    {
        return;
    }
    std::memmove(pcText, pcText + 1, std::strlen(pcText));
}

char *Gpb_util_StrDup(uint32_t uiModuleId, const char *pcSrc, uint32_t *puiLen)
{
    if (pcSrc == nullptr)
    {
        return nullptr;
    }
    const uint32_t length = YOS_StrLen(pcSrc);
    const size_t size = static_cast<size_t>(length) + 1;
    auto *copy = static_cast<char *>(GpbMalloc(uiModuleId, size, GPB_UTIL_TAG, __LINE__));
    if (copy == nullptr)
    {
        return nullptr;
    }
    if (strcpy_s(copy, size, pcSrc) != 0)
    {
        ZMP_Assert(GPB_UTIL_TAG, __LINE__, 0);
        copy[0] = '\0';
    }
    copy[length] = '\0';
    if (puiLen != nullptr)
    {
        *puiLen = length;
    }
    return copy;
}
