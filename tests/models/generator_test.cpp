/** The random documents: valid, of the wanted size, the same for the same seed; and the patterns behind their texts. */
#include <gmock/gmock.h>
#include <libyang/libyang.h>

#include "models/instance_maker.h"
#include "models/model_run.h"
#include "models/pattern_text.h"
#include "support/library_fixture.h"
#include "yang/schema_messages.h"

namespace
{

using gpbtest::Data;
using gpbtest::makeInstance;
using gpbyang::Schema;

constexpr int kSeeds = 50;

class Generator : public gpbtest::LibraryFixture
{
protected:
    std::string writeModule(const std::string &name, const std::string &body) const
    {
        return workDirectory().writeFile("yang/" + name + ".yang", "module " + name +
                                                                       " { yang-version 1.1; namespace \"urn:" + name +
                                                                       "\"; prefix " + name + ";\n" + body + "\n}\n");
    }

    Schema schema(const std::string &body) const
    {
        writeModule("m", body);
        return Schema({workPath() + "yang"}, "m");
    }

    const gpbyang::KeptMessages m_quiet;

    static const lysc_node &top(const Schema &schema) { return *schema.Module().compiled->data; }

    /** Data of a module with that body, which libyang finds valid. */
    static std::string document(const Schema &schema, std::uint64_t seed, std::size_t leaves = 50)
    {
        const Data data = makeInstance(top(schema), seed, leaves);
        EXPECT_NE(data, nullptr);
        return data != nullptr ? gpbtest::toXml(*data) : "";
    }
};

TEST_F(Generator, TextsMatchTheirPatterns)
{
    const std::vector<std::string> patterns = {
        "abc",
        "[a-f]{2}(:[a-f]{2})*",
        "a|bc|(d|e)+",
        "[^a-z,]{3,5}",
        "\\d{4}-\\d{2}(\\.\\d+)?",
        "\\p{L}\\p{N}+",
        "[\\-+a\\]]{1,}",
        "(([0-9]|[1-9][0-9]|1[0-9][0-9]|2[0-4][0-9]|25[0-5])\\.){3}([0-9]|[1-9][0-9]|1[0-9][0-9]|2[0-4][0-9]|25[0-5])",
        "x?y*z+.",
        "",
    };
    for (const std::string &pattern : patterns)
    {
        const Schema loaded = schema("container t { leaf a { type string { pattern '" + pattern + "'; } } }");
        const lysc_node &leaf = *lysc_node_child(&top(loaded));
        for (int seed = 0; seed < kSeeds; ++seed)
        {
            gpbtest::Random random(static_cast<std::uint64_t>(seed));
            const std::string text = gpbtest::patternText(pattern, random);
            EXPECT_EQ(lyd_value_validate(leaf.module->ctx, &leaf, text.c_str(), text.size(), nullptr, nullptr, nullptr),
                      LY_SUCCESS)
                << text << " for " << pattern;
        }
    }
}

TEST_F(Generator, WhatIsNoPatternEndsAllTheSame)
{
    gpbtest::Random random(1);
    for (const char *pattern :
         {"(", "[", "[^", "\\", "a{", "a{9999999999}", "(a{400}){400}", "]", ")", "a)b", "|", "\\p", "[a-"})
    {
        EXPECT_LE(gpbtest::patternText(pattern, random).size(), 200000u) << pattern;
    }
    gpbtest::patternText(std::string(100000, '('), random);
}

TEST_F(Generator, TheSameSeedMakesTheSameDocument)
{
    const Schema loaded =
        schema("container t { list l { key k; leaf k { type string; } leaf-list x { type int64; } } }");
    EXPECT_EQ(document(loaded, 7), document(loaded, 7));
    EXPECT_NE(document(loaded, 7), document(loaded, 8));
}

TEST_F(Generator, DocumentsAreAsLargeAsWanted)
{
    const Schema loaded =
        schema("container t { list l { key k; leaf k { type uint32; } list m { key k; leaf k { type uint32; } "
               "list n { key k; leaf k { type uint32; } list o { key k; leaf k { type uint32; } leaf v { type string; "
               "} } } } } }");
    for (std::uint64_t seed = 1; seed <= 20; ++seed)
    {
        const Data data = makeInstance(top(loaded), seed, 300);
        ASSERT_NE(data, nullptr);
        const std::size_t leaves = gpbtest::countLeaves(*data);
        EXPECT_GE(leaves, 120u);
        EXPECT_LE(leaves, 600u);
    }
}

TEST_F(Generator, ConditionsReferencesAndMandatoryNodesAreMet)
{
    const Schema loaded = schema(R"(
        identity base; identity one { base base; } identity two { base one; }
        container t {
          list l {
            key k; unique u;
            leaf k { type string { length 1..2; } } leaf u { type uint8; }
            leaf must { must ". > 100"; type uint8; }
            leaf when { when "../k = 'a'"; type empty; }
            leaf id { type identityref { base base; } mandatory true; }
            choice c { mandatory true; leaf x { when "../u > 100"; type bits { bit p; bit q; } } leaf y { type binary { length 4; } } }
          }
          leaf-list ref { type leafref { path "../l/k"; } }
          leaf dec { type decimal64 { fraction-digits 18; range "-1..1 | 5"; } }
          leaf u { type union { type int8 { range "1..4"; } type enumeration { enum auto; } } }
          leaf inst { type instance-identifier; }
        })");
    std::size_t references = 0;
    for (std::uint64_t seed = 1; seed <= kSeeds; ++seed)
    {
        const std::string xml = document(loaded, seed);
        lyd_node *read = nullptr;
        EXPECT_EQ(lyd_parse_data_mem(loaded.Module().ctx, xml.c_str(), LYD_XML, LYD_PARSE_STRICT, LYD_VALIDATE_PRESENT,
                                     &read),
                  LY_SUCCESS)
            << xml;
        const Data owned(read);
        references += xml.find("<ref>") != std::string::npos ? 1 : 0;
    }
    EXPECT_GT(references, 10u);
}

TEST_F(Generator, WhatCannotBeValidIsNoDocument)
{
    const Schema loaded = schema("container t { must \"false()\"; leaf a { type string; } }");
    EXPECT_EQ(makeInstance(top(loaded), 1, 10), nullptr);
}

TEST_F(Generator, ARunFindsWhatTheCheckDoesNotName)
{
    const Schema loaded = schema("container t { leaf a { type uint8; } leaf-list l { type string { length 1..9; } } }");
    const gpbtest::RunResult result =
        gpbtest::runModel(context(), workPath() + "reslink/protobuf/", loaded, {8, 50, 1});
    EXPECT_EQ(result.documents, 8u);
    EXPECT_EQ(result.usual.losses, 1u);
    EXPECT_EQ(result.lossless.losses, 0u);
    for (const gpbtest::FormResult *form :
         {&result.usual.xml, &result.usual.json, &result.lossless.xml, &result.lossless.json})
    {
        EXPECT_THAT(form->unexplained, testing::IsEmpty());
        EXPECT_GT(form->leaves, 10u);
        EXPECT_EQ(form->leaves, result.usual.xml.leaves);
    }
    EXPECT_GT(result.usual.json.lost, 0u);
    EXPECT_EQ(result.lossless.xml.lost, 0u);
    EXPECT_EQ(result.lossless.json.lost, 0u);
    log().clear();
}

} // namespace
