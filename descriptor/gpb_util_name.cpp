// YANG names and values in their protobuf forms.
#include "descriptor/gpb_util_tag.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "platform/safe_string.h"
#include "platform/yos.h"
#include "platform/zmp.h"

namespace
{

// Room for the comparison copy of a container name.
constexpr size_t CONTAINER_NAME_SIZE = 256;

// Appended to a message name that would be the same as its field's.
constexpr char MESSAGE_SUFFIX[] = "_1";

bool IsLower(char c)
{
    return c >= 'a' && c <= 'z';
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

char ToUpper(char c)
{
    return IsLower(c) ? static_cast<char>(c - 'a' + 'A') : c;
}

enum class Separators
{
    DASH,
    DASH_AND_UNDERLINE
};

bool IsSeparator(char c, Separators separators)
{
    return c == '-' || (c == '_' && separators == Separators::DASH_AND_UNDERLINE);
}

// Turns a name into CamelCase in place. `out` never overtakes `in`, since separators are removed and nothing is added.
void ToCamelCase(char *name, Separators separators)
{
    const char *in = name;
    char *out = name;
    if (IsLower(*in))
    {
        *out++ = ToUpper(*in++);
    }
    while (*in != '\0')
    {
        const char current = *in++;
        if (IsSeparator(current, separators))
        {
            if (IsLower(*in))
            {
                *out++ = ToUpper(*in++);
            }
            else if (IsDigit(*in))
            {
                // What follows this digit is left alone, unlike behind any other digit: "a-1b" is A1b, "a1b" is A1B.
                // The names in the proto files are made that way.
                *out++ = *in++;
            }
            else
            {
                *out++ = '_';
            }
        }
        else
        {
            *out++ = current;
            if (IsDigit(current) && IsLower(*in))
            {
                *out++ = ToUpper(*in++);
            }
        }
    }
    *out = '\0';
}

} // namespace

uint32_t Gpb_Util_ConvertProtoEnumToYangEnum(const char *pcProtoName, char *pcDest, uint32_t uiSize)
{
    if (pcProtoName == nullptr || pcDest == nullptr)
    {
        return 1;
    }
    const char *separator = YOS_StrChr(pcProtoName, '_');
    if (separator == nullptr)
    {
        return 1;
    }
    return strcpy_s(pcDest, uiSize, separator + 1) == 0 ? 0 : 1;
}

void Gpb_Util_ConvertTopLayerName(char *pcName)
{
    if (pcName != nullptr)
    {
        ToCamelCase(pcName, Separators::DASH_AND_UNDERLINE);
    }
}

int Gpb_util_ConverContainerName(char *pcName, uint32_t uiNoSuffix)
{
    if (pcName == nullptr || *pcName == '\0')
    {
        return 0;
    }
    char before[CONTAINER_NAME_SIZE] = {};
    if (strcpy_s(before, sizeof(before), pcName) != 0)
    {
        ZMP_Assert(GPB_UTIL_TAG, __LINE__, 0);
    }
    Gpb_Util_ConverDashToUnderline(before);
    ToCamelCase(pcName, Separators::DASH);
    const int difference = YOS_StrCmp(pcName, before);
    if (difference == 0 && uiNoSuffix == 0)
    {
        char *end = pcName + YOS_StrLen(pcName);
        for (const char c : MESSAGE_SUFFIX)
        {
            *end++ = c;
        }
    }
    return difference;
}

uint32_t GPB_ConvertXmlNodeName(const char *pcSrc, char *pcDest, uint32_t uiSize)
{
    if (pcSrc == nullptr || pcDest == nullptr || strcpy_s(pcDest, uiSize, pcSrc) != 0)
    {
        return 1;
    }
    Gpb_Util_ConverDashToUnderline(pcDest);
    Gpb_Util_StrToLowcase(pcDest);
    return 0;
}
