/**
 * Vectors of pointers. Their memory is that of the platform's allocator, under the file and line of the caller who
 * creates or frees the vector; memory that a vector gets while it grows is under its own tag.
 */
#include <cstring>

#include "events.h"
#include "faults.h"
#include "pointer_array.h"

namespace
{

constexpr const char *kFileTag = "vec";
constexpr uint32_t kLineGrow = 1;
constexpr uint32_t kFirstGrowth = 8;

void notifyVector(GpbHostEventKind kind, const VecVector &vector, const char *file, uint32_t line)
{
    host::notify({kind, vector.uiModuleId, g_aucZmpMemPt[0], &vector, vector.uiSize, file, line});
}

/** Empty slots, or null. */
void **allocateSlots(uint32_t moduleId, uint32_t size, const char *file, uint32_t line)
{
    const size_t bytes = host::pointerArrayBytes(size);
    void *const slots = ZMP_Malloc_F(moduleId, g_aucZmpMemPt[0], bytes, file, line);
    if (slots != nullptr)
    {
        std::memset(slots, 0, bytes);
    }
    return static_cast<void **>(slots);
}

bool grow(VecVector &vector)
{
    if (vector.uiSize > VEC_INVALID_INDEX / 2)
    {
        return false;
    }
    const uint32_t size = vector.uiSize == 0 ? kFirstGrowth : vector.uiSize * 2;
    void **const slots = allocateSlots(vector.uiModuleId, size, kFileTag, kLineGrow);
    if (slots == nullptr)
    {
        return false;
    }
    std::memcpy(slots, vector.ppvSlot, size_t{vector.uiSize} * sizeof(void *));
    ZMP_Free_F(vector.ppvSlot, kFileTag, kLineGrow);
    vector.ppvSlot = slots;
    vector.uiSize = size;
    return true;
}

} // namespace

VecVector *VEC_VectorInit_F(uint32_t uiModuleId, uint32_t uiSize, const char *pcFile, uint32_t uiLine)
{
    if (host::callFails(GPB_HOST_VEC_INIT))
    {
        return nullptr;
    }
    auto *const vector =
        static_cast<VecVector *>(ZMP_Malloc_F(uiModuleId, g_aucZmpMemPt[0], sizeof(VecVector), pcFile, uiLine));
    if (vector == nullptr)
    {
        return nullptr;
    }
    *vector = {uiModuleId, 0, uiSize, allocateSlots(uiModuleId, uiSize, pcFile, uiLine)};
    if (vector->ppvSlot == nullptr)
    {
        ZMP_Free_F(vector, pcFile, uiLine);
        return nullptr;
    }
    notifyVector(GPB_HOST_EVENT_VEC_INIT, *vector, pcFile, uiLine);
    return vector;
}

uint32_t VEC_VectorSet(VecVector *pstVector, void *pvItem)
{
    // A null item cannot be told from an empty slot, so it cannot be stored.
    if (host::callFails(GPB_HOST_VEC_SET) || pstVector == nullptr || pvItem == nullptr)
    {
        return VEC_INVALID_INDEX;
    }
    uint32_t index = 0;
    while (index < pstVector->uiCount && pstVector->ppvSlot[index] != nullptr)
    {
        ++index;
    }
    if (index == pstVector->uiSize && !grow(*pstVector))
    {
        return VEC_INVALID_INDEX;
    }
    pstVector->ppvSlot[index] = pvItem;
    if (index == pstVector->uiCount)
    {
        ++pstVector->uiCount;
    }
    return index;
}

uint32_t VEC_VectorCount(const VecVector *pstVector)
{
    if (pstVector == nullptr)
    {
        return 0;
    }
    // Callers clear slots by themselves, the last one perhaps, and the stored count does not see it.
    uint32_t count = pstVector->uiCount;
    while (count > 0 && pstVector->ppvSlot[count - 1] == nullptr)
    {
        --count;
    }
    return count;
}

void VEC_VectorZipEmptySlot(VecVector *pstVector)
{
    if (pstVector == nullptr)
    {
        return;
    }
    uint32_t kept = 0;
    for (uint32_t index = 0; index < pstVector->uiCount; ++index)
    {
        void *const item = pstVector->ppvSlot[index];
        if (item != nullptr)
        {
            pstVector->ppvSlot[index] = nullptr;
            pstVector->ppvSlot[kept++] = item;
        }
    }
    pstVector->uiCount = kept;
}

void VEC_VectorFree_F(VecVector *pstVector, const char *pcFile, uint32_t uiLine)
{
    if (pstVector == nullptr)
    {
        return;
    }
    notifyVector(GPB_HOST_EVENT_VEC_FREE, *pstVector, pcFile, uiLine);
    ZMP_Free_F(pstVector->ppvSlot, pcFile, uiLine);
    ZMP_Free_F(pstVector, pcFile, uiLine);
}
