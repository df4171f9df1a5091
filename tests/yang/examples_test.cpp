/** The example module fits its .proto file and its documents. */
#include <libyang/libyang.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "gpb_templatelib/gpb_template.h"
#include "yang/id_map.h"
#include "yang/numbering.h"
#include "yang_fixture.h"

namespace
{

constexpr const char *kModule = "example-interfaces";

std::string example(const std::string &relative)
{
    return std::string(EXAMPLES_DIR) + relative;
}

class ExampleModule : public gpbtest::YangTest
{
protected:
    gpbyang::RecordTree tree() const { return {gpbyang::Schema({example("yang")}, kModule), kModuleId}; }
};

TEST_F(ExampleModule, LibyangAcceptsItsDocuments)
{
    ly_ctx *made = nullptr;
    ASSERT_EQ(ly_ctx_new(example("yang").c_str(), LY_CTX_NO_YANGLIBRARY | LY_CTX_DISABLE_SEARCHDIR_CWD, &made),
              LY_SUCCESS);
    const std::unique_ptr<ly_ctx, decltype(&ly_ctx_destroy)> context(made, &ly_ctx_destroy);
    ASSERT_NE(ly_ctx_load_module(context.get(), kModule, nullptr, nullptr), nullptr);
    for (const char *size : {"small", "medium", "large"})
    {
        const std::string document = example(std::string("documents/") + kModule + "/" + size + ".xml");
        lyd_node *data = nullptr;
        EXPECT_EQ(lyd_parse_data_path(context.get(), document.c_str(), LYD_XML, LYD_PARSE_STRICT, LYD_VALIDATE_PRESENT,
                                      &data),
                  LY_SUCCESS)
            << document;
        EXPECT_NE(data, nullptr) << document;
        lyd_free_all(data);
    }
}

TEST_F(ExampleModule, EveryClassOfItHasATemplate)
{
    const gpbyang::RecordTree records = tree();
    gpbyang::NumberByRule(records);
    ASSERT_EQ(GPBLIB_PkgAddInstallPath(context(), example("modules/").c_str()), 0u);
    ASSERT_EQ(GPBLIB_ProtobufLoad(context(), kModule, 0), 0u);
    std::size_t classes = 0;
    for (const GpbYangNode *node : records.Nodes())
    {
        if (node->ucNodeKind != GPB_YANG_CHOICE)
        {
            EXPECT_EQ(GPBLIB_UpdateProtoFileClassInfo(context(), kModule, 0, "", node), 0u) << gpbyang::PathOf(*node);
            EXPECT_NE(GPBLIB_GetGpbTemplate(node->uiClassId, context()), nullptr) << gpbyang::PathOf(*node);
            ++classes;
        }
    }
    EXPECT_EQ(classes, 19u);
    log().clear();
}

TEST_F(ExampleModule, ItsMapOfIdsFits)
{
    const gpbyang::RecordTree records = tree();
    std::ifstream file(example("yang/example-interfaces.ids.json"));
    const std::string text(std::istreambuf_iterator<char>(file), {});
    gpbyang::ApplyIdMap(records, text, "map");
    std::size_t named = 0;
    for (const GpbYangNode *node : records.Nodes())
    {
        named += node->uiClassId != 0 ? 1 : 0;
    }
    EXPECT_EQ(named, 6u);
}

} // namespace
