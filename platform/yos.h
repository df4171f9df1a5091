/**
 * @file
 * Operating system services of the device platform: texts, file-system tests and the pointer stack.
 *
 * Imported by the library, provided by the host process.
 */
#ifndef GPB_TEMPLATELIB_PLATFORM_YOS_H
#define GPB_TEMPLATELIB_PLATFORM_YOS_H

#include <stdint.h>

#ifdef __cplusplus
extern "C"
{
#endif

/** Compares two texts byte by byte; below, equal to or above 0 as strcmp. */
int32_t YOS_StrCmp(const char *pcLeft, const char *pcRight);

/** Compares two texts without regard to the case of ASCII letters. */
int32_t YOS_StrICmp(const char *pcLeft, const char *pcRight);

/** Length of a text in bytes, without its terminator. */
uint32_t YOS_StrLen(const char *pcText);

/** First occurrence of a character, or null. */
char *YOS_StrChr(const char *pcText, char cFind);

/** Last occurrence of a character, or null. */
char *YOS_StrRChr(const char *pcText, char cFind);

/** First occurrence of a text within a text, or null. */
char *YOS_StrStr(const char *pcText, const char *pcFind);

/** 1 when the path names an existing file that is no directory, any other value otherwise. */
uint32_t YOS_VFS_IsFileExist(const char *pcPath);

/** 1 when the path names an existing directory, any other value otherwise. */
uint32_t YOS_VFS_IsDirExist(const char *pcPath);

/** Creates a stack of pointers with room for `uiDepth` items at first (it grows); null on failure. */
void *YOS_CreateStackByHandle(void *pvHandle, uint32_t uiDepth);

/** Pushes a pointer; 0 on success, non-zero when out of memory. */
uint32_t YOS_Push(void *pvStack, void *pvItem);

/** Pops the top pointer into `*ppvItem`; 0 on success, non-zero when the stack is empty. */
uint32_t YOS_Pop(void *pvStack, void **ppvItem);

/** Number of pointers on the stack. */
uint32_t YOS_GetSize(void *pvStack);

/** Deletes a stack; the items are not touched. Null does nothing. */
void YOS_DeleteStack(void *pvStack);

#ifdef __cplusplus
}
#endif

#endif
