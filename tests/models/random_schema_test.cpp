/** Random modules in which many nodes go astray: the check names all of them, and the lossless setting loses none. */
#include <gmock/gmock.h>
#include <libyang/libyang.h>

#include "models/model_run.h"
#include "models/schema_maker.h"
#include "support/library_fixture.h"
#include "yang/schema_messages.h"

namespace
{

using gpbtest::FormResult;
using gpbtest::RunResult;
using gpbtest::SettingResult;

constexpr std::uint64_t kSchemas = 60;
constexpr std::size_t kDocuments = 8;
constexpr std::size_t kLeaves = 60;

class RandomSchemas : public gpbtest::LibraryFixture
{
protected:
    /** Carries documents of one pair of modules, and adds up what is lost. */
    void carry(std::uint64_t seed, const std::string &space)
    {
        const gpbtest::MadeModules made = gpbtest::makeModules(seed, space);
        workDirectory().writeFile("yang/m.yang", made.base);
        workDirectory().writeFile("yang/z.yang", made.augmenting);
        const gpbyang::Schema schema({workPath() + "yang"}, "m", {"z"});
        const RunResult result = gpbtest::runModel(context(), workPath() + "reslink/protobuf/", schema,
                                                   {kDocuments, kLeaves, seed * kSchemas});
        GPBLIB_UnloadProtoFileAll(context(), 0);
        log().clear();
        for (const SettingResult *setting : {&result.usual, &result.lossless})
        {
            for (const FormResult *form : {&setting->xml, &setting->json, &setting->toJson})
            {
                EXPECT_THAT(form->unexplained, testing::IsEmpty()) << "seed " << seed << "\n"
                                                                   << made.base << made.augmenting;
                leaves += form->leaves;
            }
        }
        lost += result.usual.xml.lost + result.usual.json.lost + result.usual.toJson.lost;
        named += result.lossless.losses;
        lostLossless += result.lossless.xml.lost + result.lossless.json.lost + result.lossless.toJson.lost;
    }

    std::size_t leaves = 0;
    std::size_t lost = 0;
    std::size_t named = 0;
    std::size_t lostLossless = 0;

private:
    const gpbyang::KeptMessages m_quiet;
};

TEST_F(RandomSchemas, TheCheckNamesAllThatIsLost)
{
    for (std::uint64_t seed = 1; seed <= kSchemas && !HasFailure(); ++seed)
    {
        carry(seed, "http://example.com/yang/z");
    }
    EXPECT_GT(leaves, 10000u);
    EXPECT_GT(lost, 1000u);
    EXPECT_EQ(named, 0u);
    EXPECT_EQ(lostLossless, 0u);
}

TEST_F(RandomSchemas, NamespacesThatTellNothing)
{
    for (std::uint64_t seed = 1; seed <= kSchemas && !HasFailure(); ++seed)
    {
        carry(seed, "urn:nothing");
    }
    EXPECT_GT(named, 0u);
    EXPECT_GT(lostLossless, 0u);
}

} // namespace
