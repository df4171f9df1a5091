/** Deletion of object trees and subtrees, and the release of a node's content. */
#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "gpb_templatelib/gpb_objtree.h"
#include "platform/zmp.h"
#include "support/platform_fixture.h"
#include "support/text_lines.h"

namespace
{

using gpbtest::joinLines;

constexpr char kFile[] = "object_tree_delete";
constexpr uint32_t kNodeLine = 1;
constexpr uint32_t kContentLine = 2;
constexpr size_t kContentSize = 5;
constexpr uint32_t kSize = 40;
constexpr uint32_t kNodeAttrId = 65535;
constexpr char kContentTag[] = "gpb_template_rdmi_tree";
constexpr uint32_t kDepth = 200000;

// The record is shared with hosts: its header is five words, the parent first and the first child second.
static_assert(offsetof(ObjNode, stTree) == 0 && sizeof(CmfTreeNode) == 5 * sizeof(void *), "five words of links");
static_assert(offsetof(CmfTreeNode, pstParent) == 0 && offsetof(CmfTreeNode, pstFirstChild) == sizeof(void *),
              "parent and first child");
static_assert(offsetof(ObjNode, nodeType) == sizeof(CmfTreeNode), "the type follows the links");
static_assert(offsetof(ObjNode, value) == offsetof(ObjNode, pucString), "the content's pointer is the first word");
static_assert(GPB_OBJNODE_INVALID == 0 && GPB_OBJNODE_INTLEAF == 1 && GPB_OBJNODE_STRLEAF == 2 &&
                  GPB_OBJNODE_CONTAIN == 3 && GPB_OBJNODE_ROOTDOC == 4,
              "node types");

class ObjectTreeDelete : public gpbtest::PlatformFixture
{
protected:
    /** A zeroed node of a type below a parent, or on its own. */
    static ObjNode *make(uint32_t type, ObjNode *parent = nullptr)
    {
        auto *const node =
            static_cast<ObjNode *>(ZMP_Malloc_F(kModuleId, g_aucZmpMemPt[0], sizeof(ObjNode), kFile, kNodeLine));
        *node = {};
        node->nodeType = type;
        node->gpbSize = kSize;
        if (parent != nullptr)
        {
            CMF_TREE_AddChildLast(&parent->stTree, &node->stTree, 0);
        }
        return node;
    }

    static ObjNode *makeText(ObjNode *parent = nullptr)
    {
        ObjNode *const node = make(GPB_OBJNODE_STRLEAF, parent);
        node->pucString =
            static_cast<uint8_t *>(ZMP_Malloc_F(kModuleId, g_aucZmpMemPt[0], kContentSize, kFile, kContentLine));
        node->objLen = kContentSize;
        return node;
    }

    static ObjNode *makeRoot()
    {
        ObjNode *const root = make(GPB_OBJNODE_ROOTDOC);
        root->value = kModuleId;
        return root;
    }

    static std::vector<ObjNode *> childrenOf(const ObjNode *node)
    {
        std::vector<ObjNode *> children;
        for (CmfTreeNode *child = node->stTree.pstFirstChild; child != nullptr; child = child->pstNextSibling)
        {
            children.push_back(reinterpret_cast<ObjNode *>(child));
        }
        return children;
    }

    /** What was released, in order: "content" with its file tag, or "node". */
    std::vector<std::string> released()
    {
        std::vector<std::string> texts;
        for (const gpbtest::PlatformEvent &event : events().ofKind(GPB_HOST_EVENT_FREE))
        {
            texts.push_back(event.size == kContentSize ? "content " + event.file : "node");
        }
        return texts;
    }
};

class ObjectTreeDeleteOfAttributes : public ObjectTreeDelete
{
protected:
    void SetUp() override
    {
        ObjectTreeDelete::SetUp();
        root = makeRoot();
        attributes = make(GPB_OBJNODE_CONTAIN, root);
        attributes->id = kNodeAttrId;
        firstAttribute = make(GPB_OBJNODE_CONTAIN, attributes);
        secondAttribute = make(GPB_OBJNODE_CONTAIN, attributes);
        root->pNodeAttr = attributes;
        first = make(GPB_OBJNODE_INTLEAF, root);
        first->pFieldAttr = firstAttribute;
        second = makeText(root);
        second->pFieldAttr = secondAttribute;
    }

    void TearDown() override
    {
        GPBLIB_ObjTree_Delete(&root);
        ObjectTreeDelete::TearDown();
    }

    ObjNode *root = nullptr;
    ObjNode *attributes = nullptr;      // describes the root's fields
    ObjNode *firstAttribute = nullptr;  // describes `first`
    ObjNode *secondAttribute = nullptr; // describes `second`
    ObjNode *first = nullptr;
    ObjNode *second = nullptr;
};

TEST_F(ObjectTreeDelete, ThroughNothingDoesNothing)
{
    ObjNode *none = nullptr;
    GPBLIB_ObjTree_Delete(nullptr);
    GPBLIB_ObjTree_Delete(&none);
    EXPECT_EQ(nullptr, none);
    EXPECT_EQ("", joinLines(events().texts()));
}

TEST_F(ObjectTreeDelete, OfARootAloneFreesIt)
{
    ObjTree root = makeRoot();
    GPBLIB_ObjTree_Delete(&root);
    EXPECT_EQ(nullptr, root);
    EXPECT_EQ("node\n", joinLines(released()));
}

TEST_F(ObjectTreeDelete, OfARootFreesEveryNodeAndEveryContent)
{
    ObjTree root = makeRoot();
    makeText(root);
    ObjNode *const container = make(GPB_OBJNODE_CONTAIN, root);
    make(GPB_OBJNODE_INTLEAF, container)->value = 0xDEADBEEFDEADBEEF;
    makeText(container);
    make(GPB_OBJNODE_CONTAIN, container);
    makeText(root);
    GPBLIB_ObjTree_Delete(&root);
    EXPECT_EQ(nullptr, root);
    const std::string content = std::string("content ") + kContentTag;
    const std::vector<std::string> all = released();
    EXPECT_EQ(3, std::count(all.begin(), all.end(), content));
    EXPECT_EQ(7, std::count(all.begin(), all.end(), "node"));
    EXPECT_EQ(10u, all.size());
}

TEST_F(ObjectTreeDelete, ReleasesTheContentBeforeItsNode)
{
    ObjTree root = makeRoot();
    makeText(root);
    GPBLIB_ObjTree_Delete(&root);
    EXPECT_EQ(joinLines({std::string("content ") + kContentTag, "node", "node"}), joinLines(released()));
}

TEST_F(ObjectTreeDelete, OfASubtreeTakesItOutAndMakesTheWriteLengthUnknown)
{
    ObjTree root = makeRoot();
    ObjNode *const before = make(GPB_OBJNODE_INTLEAF, root);
    ObjNode *container = make(GPB_OBJNODE_CONTAIN, root);
    makeText(container);
    makeText(container);
    ObjNode *const after = make(GPB_OBJNODE_INTLEAF, root);
    GPBLIB_ObjTree_Delete(&container);
    EXPECT_EQ(nullptr, container);
    EXPECT_EQ(0u, root->gpbSize);
    EXPECT_EQ((std::vector<ObjNode *>{before, after}), childrenOf(root));
    EXPECT_EQ(5u, released().size());
    EXPECT_EQ(kSize, before->gpbSize);
    EXPECT_EQ(kSize, after->gpbSize);
    GPBLIB_ObjTree_Delete(&root);
}

TEST_F(ObjectTreeDelete, OfADeepLeafReachesTheTopmostNode)
{
    ObjTree root = makeRoot();
    ObjNode *const outer = make(GPB_OBJNODE_CONTAIN, root);
    ObjNode *const inner = make(GPB_OBJNODE_CONTAIN, outer);
    ObjNode *leaf = make(GPB_OBJNODE_INTLEAF, inner);
    GPBLIB_ObjTree_Delete(&leaf);
    EXPECT_EQ(nullptr, leaf);
    EXPECT_EQ(0u, root->gpbSize);
    EXPECT_EQ(kSize, outer->gpbSize) << "only the root's size doubles as the write length";
    EXPECT_EQ(kSize, inner->gpbSize);
    EXPECT_EQ(nullptr, inner->stTree.pstFirstChild);
    GPBLIB_ObjTree_Delete(&root);
}

TEST_F(ObjectTreeDelete, OfASubtreeWithoutRootChangesNoSize)
{
    ObjNode *top = make(GPB_OBJNODE_CONTAIN);
    ObjNode *leaf = make(GPB_OBJNODE_INTLEAF, top);
    GPBLIB_ObjTree_Delete(&leaf);
    EXPECT_EQ(nullptr, leaf);
    EXPECT_EQ(kSize, top->gpbSize);
    EXPECT_TRUE(childrenOf(top).empty());
    GPBLIB_ObjTree_Delete(&top);
    EXPECT_EQ(nullptr, top);
}

TEST_F(ObjectTreeDelete, OfANodeWithoutParentFreesIt)
{
    ObjNode *text = makeText();
    GPBLIB_ObjTree_Delete(&text);
    EXPECT_EQ(nullptr, text);
    EXPECT_EQ(joinLines({std::string("content ") + kContentTag, "node"}), joinLines(released()));
}

TEST_F(ObjectTreeDelete, OfALeafWithoutContentFreesTheNodeAlone)
{
    ObjTree root = makeRoot();
    make(GPB_OBJNODE_STRLEAF, root);
    make(GPB_OBJNODE_INVALID, root);
    GPBLIB_ObjTree_Delete(&root);
    EXPECT_EQ(joinLines({"node", "node", "node"}), joinLines(released()));
}

TEST_F(ObjectTreeDelete, OfAVeryDeepTreeDoesNotExhaustTheStack)
{
    ObjTree root = makeRoot();
    ObjNode *bottom = root;
    for (uint32_t depth = 0; depth < kDepth; ++depth)
    {
        bottom = make(GPB_OBJNODE_CONTAIN, bottom);
    }
    ObjNode *leaf = make(GPB_OBJNODE_INTLEAF, bottom);
    GPBLIB_ObjTree_Delete(&leaf);
    EXPECT_EQ(0u, root->gpbSize);
    GPBLIB_ObjTree_Delete(&root);
    EXPECT_EQ(nullptr, root);
}

TEST_F(ObjectTreeDelete, CallbackReleasesTheContentOfATextLeafOnce)
{
    ObjNode *text = makeText();
    GPBLIB_ObjNode_FreeCallback(text);
    EXPECT_EQ(nullptr, text->pucString);
    EXPECT_EQ(joinLines({std::string("content ") + kContentTag}), joinLines(released()));
    GPBLIB_ObjNode_FreeCallback(text);
    EXPECT_EQ(1u, released().size());
    GPBLIB_ObjTree_Delete(&text);
}

TEST_F(ObjectTreeDelete, CallbackLeavesOtherNodesAlone)
{
    for (const uint32_t type : {GPB_OBJNODE_INVALID, GPB_OBJNODE_INTLEAF, GPB_OBJNODE_CONTAIN, GPB_OBJNODE_ROOTDOC, 5u})
    {
        ObjNode node = {};
        node.nodeType = type;
        node.value = 0x1234;
        GPBLIB_ObjNode_FreeCallback(&node);
        EXPECT_EQ(0x1234u, node.value) << type;
    }
    GPBLIB_ObjNode_FreeCallback(nullptr);
    EXPECT_EQ("", joinLines(events().texts()));
}

TEST_F(ObjectTreeDeleteOfAttributes, ClearsThePointerOfTheDescribedNodeOnly)
{
    GPBLIB_ObjTree_Delete(&firstAttribute);
    EXPECT_EQ(nullptr, first->pFieldAttr);
    EXPECT_EQ(secondAttribute, second->pFieldAttr);
    EXPECT_EQ(attributes, root->pNodeAttr);
}

TEST_F(ObjectTreeDeleteOfAttributes, ClearsAllPointersIntoADeletedNodeAttribute)
{
    GPBLIB_ObjTree_Delete(&attributes);
    EXPECT_EQ(nullptr, root->pNodeAttr);
    EXPECT_EQ(nullptr, first->pFieldAttr);
    EXPECT_EQ(nullptr, second->pFieldAttr);
    EXPECT_EQ((std::vector<ObjNode *>{first, second}), childrenOf(root));
}

TEST_F(ObjectTreeDeleteOfAttributes, ClearsAllPointersIntoANodeAttributeThatAnotherHasReplaced)
{
    ObjNode *const replacement = make(GPB_OBJNODE_CONTAIN, root);
    replacement->id = kNodeAttrId;
    root->pNodeAttr = replacement;
    GPBLIB_ObjTree_Delete(&firstAttribute);
    EXPECT_EQ(nullptr, first->pFieldAttr);
    EXPECT_EQ(secondAttribute, second->pFieldAttr);
    GPBLIB_ObjTree_Delete(&attributes);
    EXPECT_EQ(nullptr, second->pFieldAttr);
    EXPECT_EQ(replacement, root->pNodeAttr);
    EXPECT_EQ((std::vector<ObjNode *>{first, second, replacement}), childrenOf(root));
}

TEST_F(ObjectTreeDeleteOfAttributes, KeepsTheDescriptionWhenTheDescribedNodeGoes)
{
    GPBLIB_ObjTree_Delete(&second);
    EXPECT_EQ(attributes, root->pNodeAttr);
    EXPECT_EQ((std::vector<ObjNode *>{firstAttribute, secondAttribute}), childrenOf(attributes));
    EXPECT_EQ(firstAttribute, first->pFieldAttr);
}

} // namespace
