/**
 * Text services. A null text comes before every other text, is 0 bytes long and contains nothing: the services have
 * no way to report an error.
 */
#include <cstring>

#include "platform_exports.h"

namespace
{

/** Position of a null text among texts, for two texts of which at least one is null. */
int32_t compareNulls(const char *left, const char *right)
{
    return static_cast<int32_t>(left != nullptr) - static_cast<int32_t>(right != nullptr);
}

/** ASCII only: the platform's texts do not depend on a locale. */
unsigned char lowered(char letter)
{
    const auto byte = static_cast<unsigned char>(letter);
    return byte >= 'A' && byte <= 'Z' ? static_cast<unsigned char>(byte - 'A' + 'a') : byte;
}

} // namespace

int32_t YOS_StrCmp(const char *pcLeft, const char *pcRight)
{
    if (pcLeft == nullptr || pcRight == nullptr)
    {
        return compareNulls(pcLeft, pcRight);
    }
    return std::strcmp(pcLeft, pcRight);
}

int32_t YOS_StrICmp(const char *pcLeft, const char *pcRight)
{
    if (pcLeft == nullptr || pcRight == nullptr)
    {
        return compareNulls(pcLeft, pcRight);
    }
    while (*pcLeft != '\0' && lowered(*pcLeft) == lowered(*pcRight))
    {
        ++pcLeft;
        ++pcRight;
    }
    return int32_t{lowered(*pcLeft)} - int32_t{lowered(*pcRight)};
}

uint32_t YOS_StrLen(const char *pcText)
{
    return pcText == nullptr ? 0 : static_cast<uint32_t>(strnlen(pcText, UINT32_MAX));
}

char *YOS_StrChr(const char *pcText, char cFind)
{
    return pcText == nullptr ? nullptr : const_cast<char *>(std::strchr(pcText, cFind));
}

char *YOS_StrRChr(const char *pcText, char cFind)
{
    return pcText == nullptr ? nullptr : const_cast<char *>(std::strrchr(pcText, cFind));
}

char *YOS_StrStr(const char *pcText, const char *pcFind)
{
    return pcText == nullptr || pcFind == nullptr ? nullptr : const_cast<char *>(std::strstr(pcText, pcFind));
}
