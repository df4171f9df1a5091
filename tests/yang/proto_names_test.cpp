/** The generated names are the ones that the library makes of YANG names when it looks for them. */
#include <gmock/gmock.h>

#include "gpb_templatelib/gpb_descriptor.h"
#include "proto_fixture.h"
#include "yang/proto_names.h"

namespace
{

using namespace gpbyang;

using ProtoNames = gpbtest::ProtoTest;

TEST_F(ProtoNames, PackagesAndFields)
{
    EXPECT_EQ(PackageName("ietf-interfaces"), "ietf_interfaces");
    EXPECT_EQ(PackageName("a.b-C"), "a_b_C");
    EXPECT_EQ(FieldName("If-Name"), "if_name");
    EXPECT_EQ(FieldName("a.b"), "a_b");
    EXPECT_EQ(FieldName(std::string(300, 'A')), std::string(300, 'a'));
}

TEST_F(ProtoNames, Messages)
{
    EXPECT_EQ(TopMessageName("ipv4-address"), "Ipv4Address");
    EXPECT_EQ(TopMessageName("a1b"), "A1B");
    EXPECT_EQ(TopMessageName("a-1b"), "A1b");
    EXPECT_EQ(TopMessageName("my_name-x"), "My_nameX");
    EXPECT_EQ(TopMessageName("ABC"), "ABC");
    EXPECT_EQ(NestedMessageName("ABC"), "ABC_1");
    EXPECT_EQ(NestedMessageName("abc"), "Abc");
    EXPECT_EQ(NestedMessageName("_x"), "_x_1");
    EXPECT_EQ(NestedMessageName("a.b"), "A_b");
    EXPECT_EQ(NestedMessageName(std::string(300, 'A')), std::string(127, 'A') + "_1");
}

TEST_F(ProtoNames, EnumTypesHaveNoUnderscore)
{
    EXPECT_EQ(EnumTypeName("oper-status"), "OperStatus");
    EXPECT_EQ(EnumTypeName("oper_status"), "OperStatus");
    EXPECT_EQ(EnumTypeName("a_B"), "AB");
    EXPECT_EQ(EnumTypeName("a.b"), "AB");
    EXPECT_EQ(EnumTypeName("_1"), "E1");
    EXPECT_EQ(EnumTypeName("__"), "E");
}

TEST_F(ProtoNames, EnumValues)
{
    EXPECT_EQ(EnumValueName("up-2", "Status"), "Status_UPX_2");
    EXPECT_EQ(EnumValueName("10g", "Status"), "Status_X_10G");
    EXPECT_EQ(EnumValueName("lower_layer", "S"), "S_LOWER_LAYER");
    for (const char special : std::string("!\"#\\$%&,-()*+/:<>=.?[]{}|^~`@';"))
    {
        EXPECT_EQ(EnumValueName(std::string("a") + special, "S"), "S_AX_") << special;
    }
}

TEST_F(ProtoNames, EnumValuesThatTheLibraryWouldNotFind)
{
    EXPECT_EQ(EnumValueName("a b", "S"), std::nullopt);
    EXPECT_EQ(EnumValueName("a\tb", "S"), std::nullopt);
    EXPECT_EQ(EnumValueName("\xC2\xB5m", "S"), std::nullopt);
    EXPECT_EQ(EnumValueName(std::string(124, 'a'), "S"), "S_" + std::string(124, 'A'));
    EXPECT_EQ(EnumValueName(std::string(125, 'a'), "S"), std::nullopt);
    EXPECT_EQ(EnumValueName(std::string(128, 'a'), "S"), std::nullopt);
    EXPECT_EQ(EnumValueName(std::string(2000, '-'), "S"), std::nullopt);
    EXPECT_EQ(EnumValueName("a", std::string(200, 'S')), std::nullopt);
}

TEST_F(ProtoNames, WhatIsOneNameInJsonCannotBeTwoFields)
{
    NameScope scope;
    scope.AddField("foo_bar");
    EXPECT_FALSE(scope.CanAddField("foo_bar"));
    EXPECT_FALSE(scope.CanAddField("foobar"));
    EXPECT_FALSE(scope.CanAddField("_foo_bar_"));
    EXPECT_TRUE(scope.CanAddField("foobar2"));
    scope.Add("type");
    EXPECT_FALSE(scope.CanAddField("type"));
    EXPECT_TRUE(scope.CanAddField("ty_pe"));
    EXPECT_EQ(scope.AddUnique("Name", "_", 1), "Name");
    EXPECT_EQ(scope.AddUnique("Name", "_", 1), "Name_1");
    EXPECT_EQ(scope.AddUnique("Name", "_", 1), "Name_2");
}

} // namespace
