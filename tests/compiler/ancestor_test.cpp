/** The chain of fields from a message down to a nested one. */
#include <google/protobuf/descriptor.pb.h>

#include "compiler/compiler_fixture.h"

namespace
{

namespace pb = google::protobuf;

using pb::FieldDescriptor;

class AncestorTest : public gpbtest::CompilerFixture
{
protected:
    void SetUp() override
    {
        CompilerFixture::SetUp();
        addDataModule("ancestors");
    }

    const FieldDescriptor *field(const std::string &typeName, const std::string &name)
    {
        return type(typeName)->FindFieldByName(name);
    }

    /** Names of the entries; empty when there is no chain. */
    static std::vector<std::string> chain(const FieldDescriptor *field, const pb::Descriptor *top,
                                          unsigned int max = 32)
    {
        const FieldDescriptor *entries[GPB_MAX_ANCESTOR_NUM] = {};
        const unsigned int count = GPB_GetDescriptorAncestors(field, top, entries, max);
        EXPECT_LE(count, GPB_MAX_ANCESTOR_NUM);
        std::vector<std::string> names;
        for (unsigned int i = 0; i < count; ++i)
        {
            names.push_back(entries[i]->full_name());
        }
        return names;
    }

    using Names = std::vector<std::string>;
};

TEST_F(AncestorTest, ChainRunsFromTheFieldOutward)
{
    EXPECT_EQ(Names({"anc.Top.scalar"}), chain(field("anc.Top", "scalar"), type("anc.Top")));
    EXPECT_EQ(Names({"anc.Top.L1.l2", "anc.Top.l1"}), chain(field("anc.Top.L1", "l2"), type("anc.Top")));
    EXPECT_EQ(Names({"anc.Top.L1.L2.L3.leaf", "anc.Top.L1.L2.l3", "anc.Top.L1.l2", "anc.Top.l1"}),
              chain(field("anc.Top.L1.L2.L3", "leaf"), type("anc.Top")));
}

TEST_F(AncestorTest, ChainEndsAtTheGivenTop)
{
    EXPECT_EQ(Names({"anc.Top.L1.L2.L3.leaf", "anc.Top.L1.L2.l3", "anc.Top.L1.l2"}),
              chain(field("anc.Top.L1.L2.L3", "leaf"), type("anc.Top.L1")));
    EXPECT_EQ(Names({"anc.Top.L1.L2.l3"}), chain(field("anc.Top.L1.L2", "l3"), type("anc.Top.L1.L2")));
}

TEST_F(AncestorTest, ListsAreEntriesToo)
{
    EXPECT_EQ(Names({"anc.Top.Entry.Sub.leaf", "anc.Top.Entry.sub", "anc.Top.entry"}),
              chain(field("anc.Top.Entry.Sub", "leaf"), type("anc.Top")));
}

TEST_F(AncestorTest, TopThatIsNotReachedGivesNone)
{
    EXPECT_EQ(Names(), chain(field("anc.Top", "scalar"), type("anc.Foreign")));
    EXPECT_EQ(Names(), chain(field("anc.Top", "scalar"), type("anc.Top.L1"))); // below, not above
    EXPECT_EQ(Names(), chain(field("anc.Top", "scalar"), nullptr));
    EXPECT_EQ(Names(), chain(field("anc.Top.L1.L2.L3", "leaf"), type("anc.Foreign")));
}

TEST_F(AncestorTest, MessageWithoutFieldsOrWithoutAFieldOfThatTypeGivesNone)
{
    EXPECT_EQ(Names(), chain(field("anc.Top.Hollow.Sub", "leaf"), type("anc.Top")));
    EXPECT_EQ(Names(), chain(field("anc.Top.Unreached.Sub", "leaf"), type("anc.Top")));
    EXPECT_EQ(Names(), chain(field("anc.Top.Unreached", "sub"), type("anc.Top")));
}

TEST_F(AncestorTest, FieldIsEntryZeroEvenWhereThereIsNoChain)
{
    const FieldDescriptor *entries[GPB_MAX_ANCESTOR_NUM] = {};
    const FieldDescriptor *const leaf = field("anc.Foreign", "leaf");
    EXPECT_EQ(0u, GPB_GetDescriptorAncestors(leaf, type("anc.Top"), entries, GPB_MAX_ANCESTOR_NUM));
    EXPECT_EQ(leaf, entries[0]);
}

TEST_F(AncestorTest, NullArgumentGivesNone)
{
    const FieldDescriptor *entries[GPB_MAX_ANCESTOR_NUM] = {};
    EXPECT_EQ(0u, GPB_GetDescriptorAncestors(nullptr, type("anc.Top"), entries, GPB_MAX_ANCESTOR_NUM));
    EXPECT_EQ(0u, GPB_GetDescriptorAncestors(field("anc.Top", "scalar"), type("anc.Top"), nullptr, 32));
}

using AncestorOddities = AncestorTest;

// Types are compared by their own name, without the scope, and the first field wins.
TEST_F(AncestorOddities, FirstFieldWhoseTypeHasTheNameIsTaken)
{
    EXPECT_EQ(Names({"anc.Top.Twin.sub", "anc.Top.foreign"}), chain(field("anc.Top.Twin", "sub"), type("anc.Top")));
    EXPECT_EQ(Names({"anc.Foreign.Twin.foreign_leaf"}),
              chain(field("anc.Foreign.Twin", "foreign_leaf"), type("anc.Foreign.Twin")));
}

// The size of the array is taken for granted.
TEST_F(AncestorOddities, CapacityIsNotRead)
{
    EXPECT_EQ(4u, chain(field("anc.Top.L1.L2.L3", "leaf"), type("anc.Top"), 0).size());
    EXPECT_EQ(4u, chain(field("anc.Top.L1.L2.L3", "leaf"), type("anc.Top"), 1).size());
}

// No schema nests deeper than this: protobuf refuses it. So the array of 32 always has room.
TEST_F(AncestorTest, DeepestPossibleChainFits)
{
    constexpr int kDeep = 30;
    pb::FileDescriptorProto file;
    file.set_name("deep.proto");
    file.set_package("deep");
    pb::DescriptorProto *message = file.add_message_type();
    message->set_name("M0");
    for (int i = 1; i <= kDeep; ++i)
    {
        pb::FieldDescriptorProto *const down = message->add_field();
        message = message->add_nested_type();
        message->set_name("M" + std::to_string(i));
        down->set_name("m" + std::to_string(i));
        down->set_number(1);
        down->set_label(pb::FieldDescriptorProto::LABEL_OPTIONAL);
        down->set_type(pb::FieldDescriptorProto::TYPE_MESSAGE);
        down->set_type_name(message->name());
    }
    pb::FieldDescriptorProto *const leaf = message->add_field();
    leaf->set_name("leaf");
    leaf->set_number(1);
    leaf->set_label(pb::FieldDescriptorProto::LABEL_OPTIONAL);
    leaf->set_type(pb::FieldDescriptorProto::TYPE_INT32);
    pb::DescriptorPool pool;
    const pb::FileDescriptor *const built = pool.BuildFile(file);
    ASSERT_NE(nullptr, built);

    std::vector<const pb::Descriptor *> levels = {built->message_type(0)};
    while (levels.back()->nested_type_count() > 0)
    {
        levels.push_back(levels.back()->nested_type(0));
    }
    ASSERT_EQ(kDeep + 1u, levels.size());
    const FieldDescriptor *const deepest = levels.back()->field(0);
    for (size_t steps = 0; steps < levels.size(); ++steps)
    {
        std::vector<const FieldDescriptor *> entries(GPB_MAX_ANCESTOR_NUM);
        const unsigned int count = GPB_GetDescriptorAncestors(deepest, levels[levels.size() - 1 - steps],
                                                              entries.data(), GPB_MAX_ANCESTOR_NUM);
        EXPECT_EQ(steps + 1, count) << steps << " steps";
    }
}

} // namespace
