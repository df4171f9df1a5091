// Class ids and field ids of YANG nodes and leaves, as the host's mapping callbacks give them.
#include "template/gpb_template_mapping.h"

#include "core/gpb_log.h"
#include "core/gpb_template_tag.h"
#include "platform/safe_string.h"
#include "platform/zmp.h"
#include "template/gpb_template_text.h"

namespace
{

constexpr uint32_t LINE_FORMAT_IDS_FAILED = 1152;

uint32_t MapDom(const GpbLibContext *context, const GpbCidFid &key, GpbCidFid *out)
{
    *out = GpbCidFid{};
    return context->pfnClassMap(context->ulMapArg, nullptr, &key, out);
}

uint32_t MapName(const GpbLibContext *context, const char *leafName, GpbCidFid *out)
{
    *out = GpbCidFid{};
    return context->pfnFieldNameMap(context->ulMapArg, leafName, out);
}

uint32_t MapTargetClass(const GpbLibContext *context, const GpbYangNode *node, uint32_t *classId)
{
    GpbCidFid out;
    const uint32_t ret = MapDom(context, GpbMakeCidFid(node->uiClassId, 0), &out);
    if (ret != 0)
    {
        GPB_LOG(context, GPB_LOG_ERROR, __LINE__, "failed to convert dom cid=0x%x to dim cid, ret=%u, nodename=%s",
                node->uiClassId, ret, GpbShown(node->pcName));
        return ret;
    }
    *classId = out.uiClassId;
    GPB_LOG(context, GPB_LOG_PROGRESS, __LINE__, "Class (%s) map: from 0x%x to 0x%x.", GpbShown(node->pcName),
            node->uiClassId, out.uiClassId);
    return 0;
}

uint32_t MapNotification(const GpbLibContext *context, const GpbYangNode *node, uint32_t *classId)
{
    GpbCidFid out;
    const uint32_t ret = MapName(context, nullptr, &out);
    if (ret != 0)
    {
        GPB_LOG(context, GPB_LOG_ERROR, __LINE__, "failed to convert notification: ret=%u, nodename=%s", ret,
                GpbShown(node->pcName));
        return ret;
    }
    *classId = out.uiClassId;
    GPB_LOG(context, GPB_LOG_PROGRESS, __LINE__, "Get notification (%s) id (0x%x).", GpbShown(node->pcName),
            out.uiClassId);
    return 0;
}

// The text of mapped ids: one pair where parent and application agree, else both.
int FormatMappedIds(const GpbYangNode *node, uint32_t allLeaves, const GpbYangLeaf *leaf, const GpbCidFid &app,
                    char *out, uint32_t size)
{
    const bool onePair =
        (allLeaves == 0 && node->uiClassId == app.uiClassId) || (allLeaves == 1 && leaf->uiMapFieldId == 0);
    const uint32_t appFieldId = app.ucFieldId;
    if (onePair)
    {
        return snprintf_truncated_s(out, size, "%x.%x", app.uiClassId, appFieldId);
    }
    return snprintf_truncated_s(out, size, app.ucEqual != 0 ? "%x.%x=%x,%x" : "%x.%x|%x,%x", node->uiClassId,
                                leaf->uiFieldId, app.uiClassId, appFieldId);
}

} // namespace

GpbCidFid GpbMakeCidFid(uint32_t classId, uint32_t fieldId)
{
    GpbCidFid pair = {};
    pair.uiClassId = classId;
    pair.ucFieldId = static_cast<uint8_t>(fieldId);
    return pair;
}

GpbCidFid GpbIndexKey(const GpbYangNode *node, const GpbYangLeaf *leaf)
{
    return GpbMakeCidFid(node->uiClassId, leaf->uiMapFieldId != 0 ? leaf->uiMapFieldId : leaf->uiFieldId);
}

uint32_t GpbMapIndex(const GpbLibContext *context, const GpbCidFid &key, GpbCidFid *out)
{
    *out = GpbCidFid{};
    return context->pfnClassMap(context->ulMapArg, &key, nullptr, out);
}

uint32_t GPBLIB_GetClassIdFromYangNode(const GpbLibContext *pstCtx, const GpbYangNode *pstNode, uint32_t *puiClassId)
{
    if (pstCtx == nullptr || pstNode == nullptr || puiClassId == nullptr)
    {
        return 1;
    }
    *puiClassId = 0;
    if (pstCtx->pfnClassMap != nullptr)
    {
        return MapTargetClass(pstCtx, pstNode, puiClassId);
    }
    if (pstCtx->pfnFieldNameMap != nullptr)
    {
        return MapNotification(pstCtx, pstNode, puiClassId);
    }
    *puiClassId = pstNode->uiClassId;
    GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "Default class (%s) id (0x%x).", GpbShown(pstNode->pcName),
            pstNode->uiClassId);
    return 0;
}

uint32_t GPBLIB_ConvertField(const GpbYangNode *pstNode, const GpbYangLeaf *pstLeaf, uint32_t uiAllLeaves,
                             GpbCidFid *pstOut, const GpbLibContext *pstCtx)
{
    if (pstNode == nullptr || pstLeaf == nullptr || pstOut == nullptr || pstCtx == nullptr)
    {
        return 1;
    }
    GpbCidFid from = {};
    if (uiAllLeaves == 1 && pstCtx->pfnClassMap != nullptr)
    {
        from = GpbMakeCidFid(pstNode->uiClassId, pstLeaf->uiFieldId);
        GpbCidFid out;
        const uint32_t ret = MapDom(pstCtx, from, &out);
        if (ret != 0)
        {
            GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__,
                    "failed to convert dom cid=0x%x, fid=%u to dim cidfid, container nodename=%s, leafname=%s, ret=%u",
                    from.uiClassId, static_cast<uint32_t>(from.ucFieldId), GpbShown(pstNode->pcName),
                    GpbShown(pstLeaf->pcName), ret);
            return 1;
        }
        *pstOut = GpbMakeCidFid(out.uiClassId, out.ucFieldId);
    }
    else if (uiAllLeaves == 1 && pstCtx->pfnFieldNameMap != nullptr)
    {
        const uint32_t ret = MapName(pstCtx, pstLeaf->pcName, pstOut);
        if (ret != 0)
        {
            GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__,
                    "failed to convert event para, container nodename=%s, leafname=%s, ret=%u",
                    GpbShown(pstNode->pcName), GpbShown(pstLeaf->pcName), ret);
            return 1;
        }
    }
    else
    {
        *pstOut = GpbMakeCidFid(pstNode->uiClassId, pstLeaf->uiFieldId);
    }
    GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "Convert node(%s/%s) : (0x%x, %u) ==> (0x%x, %u) ",
            GpbShown(pstNode->pcName), GpbShown(pstLeaf->pcName), from.uiClassId, static_cast<uint32_t>(from.ucFieldId),
            pstOut->uiClassId, static_cast<uint32_t>(pstOut->ucFieldId));
    return 0;
}

uint32_t GPBLIB_FillFidCidOfStrNode_(const GpbYangNode *pstNode, uint32_t uiAllLeaves, const GpbYangLeaf *pstLeaf,
                                     char *pcOut, uint32_t uiSize, const GpbLibContext *pstCtx)
{
    if (pstNode == nullptr || pstLeaf == nullptr || pcOut == nullptr || uiSize == 0 || pstCtx == nullptr)
    {
        return 1;
    }
    int count = 0;
    if (pstCtx->pfnClassMap == nullptr)
    {
        count = snprintf_truncated_s(pcOut, uiSize, "%x.%x", pstNode->uiClassId, pstLeaf->uiFieldId);
    }
    else
    {
        const GpbCidFid key = GpbIndexKey(pstNode, pstLeaf);
        GpbCidFid app;
        const uint32_t ret = GpbMapIndex(pstCtx, key, &app);
        if (ret != 0)
        {
            GPB_LOG(pstCtx, GPB_LOG_ERROR, __LINE__,
                    "failed to convert Ifname cid=0x%x, fid=%u to Ifindex cidfid, container nodename=%s,leafname=%s, "
                    "ret=%u",
                    key.uiClassId, static_cast<uint32_t>(key.ucFieldId), GpbShown(pstNode->pcName),
                    GpbShown(pstLeaf->pcName), ret);
            return ret;
        }
        GPB_LOG(pstCtx, GPB_LOG_PROGRESS, __LINE__, "Field map (equal=%u): Parent (0x%x, %u) ==> App (0x%x, %u)",
                static_cast<uint32_t>(app.ucEqual), key.uiClassId, static_cast<uint32_t>(key.ucFieldId), app.uiClassId,
                static_cast<uint32_t>(app.ucFieldId));
        count = FormatMappedIds(pstNode, uiAllLeaves, pstLeaf, app, pcOut, uiSize);
    }
    if (count < 0)
    {
        ZMP_Assert(GPB_TEMPLATE_TAG, LINE_FORMAT_IDS_FAILED, 0);
    }
    return 0;
}
