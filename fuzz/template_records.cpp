/** Templates from random YANG records, with every kind of mapping; what is dumped must read back as it was. */
#include <deque>
#include <string>
#include <vector>

#include "gpb_templatelib/gpb_template.h"
#include "platform/zmp.h"
#include "support/bytes.h"
#include "support/guard.h"
#include "support/library.h"

namespace
{

using gpbfuzz::Bytes;
using gpbfuzz::require;

constexpr size_t kMaxNodes = 40;
constexpr size_t kMaxLeaves = 6;
constexpr const char *kModule = "everything-three";

constexpr const char *kNodeNames[] = {
    "top",  "box",   "entry",   "again",   "agains", "kind",        "a",     "b",    "mode",  "one",
    "two",  "three", "deep",    "x",       "y",      "nested-mode", "p",     "far",  "inner", "sub",
    "loop", "loops", "numbers", "o-shape", "kind-a", "kind-b",      "point", "pick", "left",  "foreign"};
constexpr const char *kLeafNames[] = {"f-double", "f-float", "f-int64", "f-string", "f-bool",      "f-enum",
                                      "r-string", "r-int32", "r-enum",  "f-bytes",  "box",         "key",
                                      "a-value",  "a-state", "label",   "leaf",     "one-leaf",    "x-leaf",
                                      "o-int32",  "numbers", "nobody",  "flag",     "foreign_leaf"};

/** The host's records, made from the input. */
class Records
{
public:
    explicit Records(Bytes &bytes) : m_bytes(bytes)
    {
        for (size_t count = 1 + bytes.below(kMaxNodes); count > 0; --count)
        {
            addNode();
        }
    }
    ~Records()
    {
        for (const GpbYangNode &node : m_nodes)
        {
            VEC_VectorFree_F(node.pstLeafVec, "fuzz", 1);
        }
    }
    Records(const Records &) = delete;
    Records &operator=(const Records &) = delete;

    const GpbYangNode *any() { return &m_nodes[m_bytes.below(static_cast<uint32_t>(m_nodes.size()))]; }

private:
    template <size_t count>
    const char *name(const char *const (&known)[count])
    {
        const uint32_t choice = m_bytes.below(count + 2);
        if (choice < count)
        {
            return known[choice];
        }
        // Names of any bytes and of lengths around the limits; now and then none at all.
        const size_t length = m_bytes.byte() * size_t{2};
        return choice == count ? m_names.emplace_back(m_bytes.text(20) + std::string(length, 'n')).c_str()
                               : (m_bytes.below(4) == 0 ? nullptr : "");
    }

    void addNode()
    {
        GpbYangNode node = {};
        node.pcName = m_nodes.empty() ? kNodeNames[m_bytes.flag() ? 0 : 20] : name(kNodeNames);
        node.uiClassId = m_bytes.below(8) == 0 ? m_bytes.number() : 0x100 + m_bytes.byte();
        node.ucNodeKind = static_cast<uint8_t>(m_bytes.below(4));
        node.ucSkip = m_bytes.below(16) == 0 ? 1 : 0;
        GpbYangNode *const parent =
            m_nodes.empty() ? nullptr : &m_nodes[m_nodes.size() - 1 - m_bytes.below(3) % m_nodes.size()];
        GpbYangNode *const added = &m_nodes.emplace_back(node);
        if (parent != nullptr)
        {
            added->pstParent = parent;
            GpbYangNode **link = &parent->pstFirstChild;
            while (*link != nullptr)
            {
                link = &(*link)->pstNextSibling;
            }
            *link = added;
        }
        addLeaves(*added);
    }

    void addLeaves(GpbYangNode &node)
    {
        uint32_t count = m_bytes.below(kMaxLeaves + 1);
        if (count == 0)
        {
            return;
        }
        node.pstLeafVec = VEC_VectorInit_F(1, 2, "fuzz", 1);
        require(node.pstLeafVec != nullptr, "no vector");
        for (; count > 1; --count)
        {
            GpbYangLeaf leaf = {};
            leaf.pcName = name(kLeafNames);
            leaf.uiIsKey = m_bytes.below(3);
            leaf.uiFieldId = m_bytes.below(8) == 0 ? m_bytes.number() : m_bytes.byte();
            leaf.uiMapFieldId = m_bytes.flag() ? m_bytes.byte() : 0;
            VEC_VectorSet(node.pstLeafVec, &m_leaves.emplace_back(leaf));
        }
    }

    Bytes &m_bytes;
    std::deque<GpbYangNode> m_nodes;
    std::deque<GpbYangLeaf> m_leaves;
    std::deque<std::string> m_names;
};

/** Where the callbacks take their answers from. */
Bytes *g_answers = nullptr;

uint32_t answer(GpbCidFid *out)
{
    require(out->uiClassId == 0 && out->ucFieldId == 0 && out->ucEqual == 0, "the output record is not zeroed");
    out->uiClassId = 0x100 + g_answers->byte();
    out->ucFieldId = g_answers->byte();
    out->ucEqual = static_cast<uint8_t>(g_answers->below(3));
    return g_answers->below(8) == 1 ? 0x80000000U | g_answers->byte() : 0;
}

uint32_t mapClass(uint32_t, const GpbCidFid *index, const GpbCidFid *dom, GpbCidFid *out)
{
    require((index == nullptr) != (dom == nullptr), "not exactly one key");
    return answer(out);
}

uint32_t mapName(uint32_t, const char *, GpbCidFid *out)
{
    return answer(out);
}

/** Dumps a stored template; its bytes must read back, and be written again, as they are. */
void dump(GpbLibContext *context, uint32_t classId)
{
    // Answers that change from question to question can store a class twice; the first one counts.
    const GpbTemplateInfo *const info = GPBLIB_GetGpbTemplate(classId, context);
    require(info != nullptr, "a stored template is not found");
    uint8_t *bytes = nullptr;
    uint16_t length = 0;
    require(GPBLIB_DumpProtoFileData(context, "/p", info->uiClassId, &bytes, &length) == 0, "a template without dump");
    const uint32_t size = GPBLIB_ObjTree_GetWriteLen(info->pstObjTree);
    require(length == static_cast<uint16_t>(size), "the dump has another length than the tree");
    uint32_t consumed = 0;
    ObjTree tree = GPBLIB_ObjTree_Read(bytes, size, &consumed, 1, context);
    // The reader takes fewer containers in each other than a path of records can ask for.
    if (tree != nullptr)
    {
        std::vector<uint8_t> again(size);
        require(consumed == size && GPBLIB_ObjTree_GetWriteLen(tree) == size, "the dump reads back otherwise");
        require(GPBLIB_ObjTree_Write(tree, again.data(), size, GPB_OBJTREE_MODE_TEMPLATE, context) == size &&
                    std::vector<uint8_t>(bytes, bytes + size) == again,
                "the dump is written otherwise");
    }
    GPBLIB_ObjTree_Delete(&tree);
    ZMP_Free_F(bytes, "fuzz", 1);
}

/** A context that knows the module's file without an importer of its own. */
GpbLibContext *contextWithFile()
{
    GpbLibContext *const context = gpbfuzz::newContext();
    require(context != nullptr, "no context");
    auto *const info =
        static_cast<GpbProtoFileInfo *>(ZMP_Malloc_F(1, g_aucZmpMemPt[0], sizeof(GpbProtoFileInfo), "fuzz", 1));
    *info = GpbProtoFileInfo{};
    info->pstFileDesc = gpbfuzz::fileOf(kModule);
    require(GPBLIB_AddProtoFile_(context, info, (std::string(kModule) + ".proto").c_str(), 0) == 0, "file not stored");
    return context;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    gpbfuzz::library();
    // Names that are too long raise assertions.
    const gpbfuzz::InputGuard guard(true);
    Bytes bytes(data, size);
    g_answers = &bytes;
    GpbLibContext *const context = contextWithFile();
    const uint32_t mapping = bytes.below(3);
    if (mapping == 1)
    {
        GPBLIB_RegisterClassMapFunc(context, 1, mapClass);
    }
    else if (mapping == 2)
    {
        GPBLIB_RegisterFieldNameMapFunc(context, 1, mapName);
    }
    {
        Records records(bytes);
        for (int i = 0; i < 4; ++i)
        {
            GPBLIB_UpdateProtoFileClassInfo(context, kModule, 0, "/p", records.any());
        }
    }
    for (uint32_t i = 0; i < VEC_VectorCount(context->pstTemplateVec); ++i)
    {
        dump(context, static_cast<const GpbTemplateInfo *>(context->pstTemplateVec->ppvSlot[i])->uiClassId);
    }
    GPBLIB_Uninitial(context);
    return 0;
}
