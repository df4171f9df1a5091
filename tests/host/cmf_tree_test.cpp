/** Generic trees: links, walks, detaching and freeing, at any depth. */
#include <string>
#include <vector>

#include "platform/cmf_tree.h"
#include "platform/zmp.h"
#include "support/platform_fixture.h"

namespace
{

constexpr int kDeep = 100000;

/** A tree node with a name. */
struct Named
{
    CmfTreeNode link;
    char name;
};

/** Names that the free callback saw, in order. */
std::string g_freed;

void noteFreed(void *node)
{
    g_freed += static_cast<Named *>(node)->name;
}

Named *named(CmfTreeNode *node)
{
    return reinterpret_cast<Named *>(node);
}

/** The tree a(b(c d) e(f)), whose nodes are allocated from the platform. */
class CmfTreeTest : public gpbtest::PlatformFixture
{
protected:
    void SetUp() override
    {
        PlatformFixture::SetUp();
        g_freed.clear();
    }

    static CmfTreeNode *create(char name, CmfTreeNode *parent = nullptr)
    {
        auto *const node = static_cast<Named *>(ZMP_Malloc_F(kModuleId, 1, sizeof(Named), "unit", 1));
        *node = {{}, name};
        CMF_TREE_AddChildLast(parent, &node->link, 0);
        return &node->link;
    }

    void createExample()
    {
        m_a = create('a');
        m_b = create('b', m_a);
        m_c = create('c', m_b);
        m_d = create('d', m_b);
        m_e = create('e', m_a);
        m_f = create('f', m_e);
    }

    static std::string preOrder(CmfTreeNode *start)
    {
        std::string names;
        CmfTreeIter iter;
        for (CmfTreeNode *node = CMF_TREE_GetPreOrderIter(start, &iter, 0); node != nullptr;
             node = CMF_TREE_GetNextByPreOrder(&iter, 0))
        {
            names += named(node)->name;
        }
        EXPECT_EQ(nullptr, CMF_TREE_GetNextByPreOrder(&iter, 0)) << "the end of a walk is its end";
        return names;
    }

    CmfTreeNode *m_a = nullptr;
    CmfTreeNode *m_b = nullptr;
    CmfTreeNode *m_c = nullptr;
    CmfTreeNode *m_d = nullptr;
    CmfTreeNode *m_e = nullptr;
    CmfTreeNode *m_f = nullptr;
};

TEST_F(CmfTreeTest, FirstWordIsTheParentAndTheSecondTheFirstChild)
{
    createExample();
    CmfTreeNode *const *const words = reinterpret_cast<CmfTreeNode *const *>(m_b);
    EXPECT_EQ(m_a, words[0]);
    EXPECT_EQ(m_c, words[1]);
    EXPECT_EQ(nullptr, reinterpret_cast<CmfTreeNode *const *>(m_a)[0]);
    EXPECT_EQ(nullptr, reinterpret_cast<CmfTreeNode *const *>(m_f)[1]);
    EXPECT_EQ(5 * sizeof(void *), sizeof(CmfTreeNode));
    CMF_TREE_FreeTree(m_a, nullptr, 0);
}

TEST_F(CmfTreeTest, LinksLeadToParentChildAndSibling)
{
    createExample();
    EXPECT_EQ(m_b, CMF_TREE_GetFirstChild(m_a, 0));
    EXPECT_EQ(m_e, CMF_TREE_GetNextSibling(m_b, 0));
    EXPECT_EQ(nullptr, CMF_TREE_GetNextSibling(m_e, 0));
    EXPECT_EQ(nullptr, CMF_TREE_GetNextSibling(m_a, 0));
    EXPECT_EQ(nullptr, CMF_TREE_GetFirstChild(m_c, 0));
    EXPECT_EQ(m_a, CMF_TREE_GetParent(m_e, 0));
    EXPECT_EQ(nullptr, CMF_TREE_GetParent(m_a, 0));
    CMF_TREE_FreeTree(m_a, nullptr, 0);
}

TEST_F(CmfTreeTest, WalkIsPreOrderAndStaysInItsSubtree)
{
    createExample();
    EXPECT_EQ("abcdef", preOrder(m_a));
    EXPECT_EQ("bcd", preOrder(m_b));
    EXPECT_EQ("ef", preOrder(m_e));
    EXPECT_EQ("c", preOrder(m_c));
    EXPECT_EQ("", preOrder(nullptr));
    CMF_TREE_FreeTree(m_a, nullptr, 0);
}

TEST_F(CmfTreeTest, DetachesFirstMiddleAndLastChild)
{
    CmfTreeNode *const top = create('t');
    CmfTreeNode *const first = create('1', top);
    CmfTreeNode *const middle = create('2', top);
    CmfTreeNode *const last = create('3', top);
    create('x', middle);

    CMF_TREE_DetachNode(middle, 0);
    EXPECT_EQ("t13", preOrder(top));
    EXPECT_EQ("2x", preOrder(middle));
    EXPECT_EQ(nullptr, CMF_TREE_GetParent(middle, 0));
    EXPECT_EQ(nullptr, CMF_TREE_GetNextSibling(middle, 0));
    CMF_TREE_DetachNode(middle, 0); // has no parent any more
    EXPECT_EQ("t13", preOrder(top));

    CMF_TREE_DetachNode(last, 0);
    EXPECT_EQ("t1", preOrder(top));
    CMF_TREE_AddChildLast(top, last, 0);
    EXPECT_EQ("t13", preOrder(top));
    CMF_TREE_DetachNode(first, 0);
    EXPECT_EQ("t3", preOrder(top));
    CMF_TREE_DetachNode(last, 0);
    EXPECT_EQ("t", preOrder(top));
    EXPECT_EQ(nullptr, CMF_TREE_GetFirstChild(top, 0));

    for (CmfTreeNode *const tree : {top, first, middle, last})
    {
        CMF_TREE_FreeTree(tree, nullptr, 0);
    }
}

TEST_F(CmfTreeTest, AddingANodeThatHasAParentMovesIt)
{
    createExample();
    CMF_TREE_AddChildLast(m_e, m_b, 0);
    EXPECT_EQ("aefbcd", preOrder(m_a));
    EXPECT_EQ(m_e, CMF_TREE_GetParent(m_b, 0));
    CMF_TREE_AddChildLast(m_e, m_f, 0); // to the end
    EXPECT_EQ("aebcdf", preOrder(m_a));
    CMF_TREE_FreeTree(m_a, nullptr, 0);
}

TEST_F(CmfTreeTest, NoNodeBecomesItsOwnDescendant)
{
    createExample();
    CMF_TREE_AddChildLast(m_a, m_a, 0);
    CMF_TREE_AddChildLast(m_c, m_a, 0);
    CMF_TREE_AddChildLast(m_c, m_b, 0);
    EXPECT_EQ("abcdef", preOrder(m_a));
    EXPECT_EQ(nullptr, CMF_TREE_GetParent(m_a, 0));
    CMF_TREE_FreeTree(m_a, nullptr, 0);
}

TEST_F(CmfTreeTest, FreesEveryNodeOnceAndAfterItsCallback)
{
    createExample();
    events().clear();
    CMF_TREE_FreeTree(m_a, noteFreed, 0);
    EXPECT_EQ("cdbfea", g_freed);
    EXPECT_EQ(6u, events().ofKind(GPB_HOST_EVENT_FREE).size());
}

TEST_F(CmfTreeTest, FreesASubtreeAndNothingAboveIt)
{
    createExample();
    CmfTreeNode above = *m_a;
    CmfTreeNode beside = *m_e;
    CMF_TREE_FreeTree(m_b, noteFreed, 0);
    EXPECT_EQ("cdb", g_freed);
    EXPECT_EQ(above.pstFirstChild, m_a->pstFirstChild) << "who does not detach keeps the link to what is gone";
    EXPECT_EQ(beside.pstPrevSibling, m_e->pstPrevSibling);
    m_a->pstFirstChild = m_e;
    m_e->pstPrevSibling = nullptr;
    CMF_TREE_FreeTree(m_a, nullptr, 0);
}

TEST_F(CmfTreeTest, FreesADetachedSubtree)
{
    createExample();
    CMF_TREE_DetachNode(m_b, 0);
    CMF_TREE_FreeTree(m_b, noteFreed, 0);
    EXPECT_EQ("cdb", g_freed);
    EXPECT_EQ("aef", preOrder(m_a));
    CMF_TREE_FreeTree(m_a, nullptr, 0);
}

TEST_F(CmfTreeTest, CallbackOfAParentSeesNoReleasedChild)
{
    createExample();
    CMF_TREE_FreeTree(
        m_a, [](void *node) { EXPECT_EQ(nullptr, static_cast<CmfTreeNode *>(node)->pstFirstChild); }, 0);
}

TEST_F(CmfTreeTest, ServesAVeryDeepTree)
{
    CmfTreeNode *const top = create('t');
    CmfTreeNode *bottom = top;
    for (int depth = 1; depth < kDeep; ++depth)
    {
        bottom = create('n', bottom);
    }
    EXPECT_EQ(static_cast<size_t>(kDeep), preOrder(top).size());
    events().clear();
    CMF_TREE_FreeTree(top, noteFreed, 0);
    EXPECT_EQ(static_cast<size_t>(kDeep), g_freed.size());
    EXPECT_EQ('t', g_freed.back());
}

TEST_F(CmfTreeTest, ServesAVeryWideTree)
{
    CmfTreeNode *const top = create('t');
    for (int index = 1; index < kDeep; ++index)
    {
        create('n', top);
    }
    EXPECT_EQ(static_cast<size_t>(kDeep), preOrder(top).size());
    CMF_TREE_FreeTree(top, noteFreed, 0);
    EXPECT_EQ(static_cast<size_t>(kDeep), g_freed.size());
}

TEST_F(CmfTreeTest, NullIsHarmless)
{
    EXPECT_EQ(nullptr, CMF_TREE_GetFirstChild(nullptr, 0));
    EXPECT_EQ(nullptr, CMF_TREE_GetNextSibling(nullptr, 0));
    EXPECT_EQ(nullptr, CMF_TREE_GetParent(nullptr, 0));
    EXPECT_EQ(nullptr, CMF_TREE_GetNextByPreOrder(nullptr, 0));
    CmfTreeNode node{};
    EXPECT_EQ(&node, CMF_TREE_GetPreOrderIter(&node, nullptr, 0));
    CMF_TREE_AddChildLast(nullptr, &node, 0);
    CMF_TREE_AddChildLast(&node, nullptr, 0);
    CMF_TREE_DetachNode(nullptr, 0);
    CMF_TREE_FreeTree(nullptr, noteFreed, 0);
    EXPECT_EQ(nullptr, node.pstParent);
    EXPECT_EQ(nullptr, node.pstFirstChild);
    EXPECT_EQ("", g_freed);
}

} // namespace
