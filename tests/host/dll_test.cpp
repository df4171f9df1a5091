/** Doubly linked lists: the head is a node among nodes. */
#include <cstdint>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "platform/dll.h"

namespace
{

/** A list node with a number, and a list of these. */
struct Number
{
    DllNode link;
    int value;
};

int compareNumber(const void *key, const void *node)
{
    return static_cast<const Number *>(node)->value - *static_cast<const int *>(key);
}

class DllTest : public ::testing::Test
{
protected:
    DllTest()
    {
        m_list.pstFirst = head();
        m_list.pstLast = head();
    }

    DllNode *head() { return reinterpret_cast<DllNode *>(&m_list); }

    void append(Number &number) { DLL_Insert_In_Middle(&m_list, m_list.pstLast, head(), &number.link); }

    void prepend(Number &number) { DLL_Insert_In_Middle(&m_list, head(), m_list.pstFirst, &number.link); }

    /** Values from first to last; also checks that the way back is the same and that the count is right. */
    std::vector<int> values()
    {
        std::vector<int> forward;
        for (DllNode *node = m_list.pstFirst; node != head(); node = node->pstNext)
        {
            forward.push_back(reinterpret_cast<Number *>(node)->value);
        }
        std::vector<int> backward;
        for (DllNode *node = m_list.pstLast; node != head(); node = node->pstPrev)
        {
            backward.insert(backward.begin(), reinterpret_cast<Number *>(node)->value);
        }
        EXPECT_EQ(forward, backward);
        EXPECT_EQ(forward.size(), m_list.uiCount);
        return forward;
    }

    DllNode *find(int value) { return DLL_Find(&m_list, &value, compareNumber); }

    DllHead m_list{};
    Number m_one{{}, 1};
    Number m_two{{}, 2};
    Number m_three{{}, 3};
};

TEST_F(DllTest, InsertsBetweenAnyNeighbours)
{
    append(m_two);
    EXPECT_EQ(std::vector<int>{2}, values());
    EXPECT_EQ(head(), m_two.link.pstNext);
    EXPECT_EQ(head(), m_two.link.pstPrev);
    prepend(m_one);
    EXPECT_EQ((std::vector<int>{1, 2}), values());
    DLL_Insert_In_Middle(&m_list, &m_one.link, &m_two.link, &m_three.link);
    EXPECT_EQ((std::vector<int>{1, 3, 2}), values());
}

TEST_F(DllTest, DeletesFirstMiddleAndLast)
{
    append(m_one);
    append(m_two);
    append(m_three);
    DLL_Delete(&m_list, &m_two.link);
    EXPECT_EQ((std::vector<int>{1, 3}), values());
    DLL_Delete(&m_list, &m_one.link);
    EXPECT_EQ(std::vector<int>{3}, values());
    append(m_one);
    DLL_Delete(&m_list, &m_one.link);
    EXPECT_EQ(std::vector<int>{3}, values());
    DLL_Delete(&m_list, &m_three.link);
    EXPECT_EQ(std::vector<int>{}, values());
    EXPECT_EQ(head(), m_list.pstFirst);
    EXPECT_EQ(head(), m_list.pstLast);
}

TEST_F(DllTest, FindsTheFirstMatch)
{
    Number secondTwo{{}, 2};
    append(m_one);
    append(m_two);
    append(secondTwo);
    EXPECT_EQ(&m_one.link, find(1));
    EXPECT_EQ(&m_two.link, find(2));
    EXPECT_EQ(nullptr, find(3));
}

TEST_F(DllTest, FindsNothingInAnEmptyOrUnpreparedList)
{
    EXPECT_EQ(nullptr, find(1));
    DllHead unprepared{};
    const int key = 1;
    EXPECT_EQ(nullptr, DLL_Find(&unprepared, &key, compareNumber));
}

TEST_F(DllTest, HandleWordsAreLeftAlone)
{
    m_list.ulHandle = 11;
    m_one.link.ulHandle = 22;
    append(m_one);
    append(m_two);
    DLL_Delete(&m_list, &m_one.link);
    EXPECT_EQ(11u, m_list.ulHandle);
    EXPECT_EQ(22u, m_one.link.ulHandle);
    EXPECT_EQ(0u, m_two.link.ulHandle);
}

TEST_F(DllTest, NodeOfNoListIsNotDeleted)
{
    append(m_one);
    DLL_Delete(&m_list, &m_two.link);
    EXPECT_EQ(std::vector<int>{1}, values());
    append(m_two);
    DLL_Delete(&m_list, &m_two.link);
    DLL_Delete(&m_list, &m_two.link);
    EXPECT_EQ(std::vector<int>{1}, values());
    DLL_Delete(&m_list, head());
    EXPECT_EQ(std::vector<int>{1}, values());
}

TEST_F(DllTest, NullIsHarmless)
{
    const int key = 1;
    append(m_one);
    EXPECT_EQ(nullptr, DLL_Find(nullptr, &key, compareNumber));
    EXPECT_EQ(nullptr, DLL_Find(&m_list, &key, nullptr));
    DLL_Delete(nullptr, &m_one.link);
    DLL_Delete(&m_list, nullptr);
    DLL_Insert_In_Middle(nullptr, &m_one.link, head(), &m_two.link);
    DLL_Insert_In_Middle(&m_list, nullptr, head(), &m_two.link);
    DLL_Insert_In_Middle(&m_list, &m_one.link, nullptr, &m_two.link);
    DLL_Insert_In_Middle(&m_list, &m_one.link, head(), nullptr);
    EXPECT_EQ(std::vector<int>{1}, values());
}

} // namespace
