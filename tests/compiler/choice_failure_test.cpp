/** Cases whose layers cannot be opened. */
#include "compiler/compiler_fixture.h"

namespace
{

class ChoiceFailureTest : public gpbtest::CompilerFixture
{
protected:
    void SetUp() override
    {
        CompilerFixture::SetUp();
        addDataModule("trouble");
        open("trouble");
    }

    void expectTop(const std::string &content, const std::string &textForm, const std::vector<std::string> &lines)
    {
        expectEncodes("<top>" + content + "</top>", "trouble.Top", textForm, lines);
    }

    void expectTopFails(const std::string &content, const std::vector<std::string> &lines)
    {
        expectFails("<top>" + content + "</top>", 1, lines);
    }
};

TEST_F(ChoiceFailureTest, LeafIsPassedOver)
{
    const std::vector<std::string> lines = {"0: Gpb compiler leaf choice case node [l-leaf] fail."};
    expectTop("<l-leaf>1</l-leaf><name>n</name>", "name: 'n'", lines);
    compiler().ucStopOnError = 1;
    expectTopFails("<l-leaf>1</l-leaf><name>n</name>", lines);
}

TEST_F(ChoiceFailureTest, ContainerIsPassedOver)
{
    const std::vector<std::string> lines = {"0: Gpb compiler container choice case node [l-box] fail."};
    expectTop("<l-box><x>1</x></l-box><name>n</name>", "name: 'n'", lines);
    compiler().ucStopOnError = 1;
    expectTopFails("<l-box><x>1</x></l-box><name>n</name>", lines);
}

TEST_F(ChoiceFailureTest, PresenceContainerIsPassedOver)
{
    const std::vector<std::string> lines = {"0: Gpb compiler presence container choice case node [l-box] fail."};
    expectTop("<l-box>\n</l-box><name>n</name>", "name: 'n'", lines);
    compiler().ucStopOnError = 1;
    expectTopFails("<l-box>\n</l-box><name>n</name>", lines);
}

using ChoiceFailureOddities = ChoiceFailureTest;

// An empty leaf that fails ends the walk of its siblings whatever the stop flag says; directly below the root that is
// the whole document.
TEST_F(ChoiceFailureOddities, EmptyLeafBelowTheRootFailsTheEncode)
{
    const std::vector<std::string> lines = {"0: Gpb compiler empty leaf choice case node [l-flag] fail."};
    expectTopFails("<l-flag/><name>n</name>", lines);
    compiler().ucStopOnError = 1;
    expectTopFails("<l-flag/><name>n</name>", lines);
}

// Further down its container fails, which the walk passes over.
TEST_F(ChoiceFailureOddities, EmptyLeafInAContainerEndsTheContainer)
{
    const std::vector<std::string> lines = {"0: Gpb compiler empty leaf choice case node [l-flag] fail."};
    expectTop("<box><l-flag/><name>inside</name></box><name>n</name>", "box {} name: 'n'", lines);
    compiler().ucStopOnError = 1;
    expectTopFails("<box><l-flag/><name>inside</name></box><name>n</name>", lines);
}

// A push that fails on its way leaves what it has pushed; the following siblings land there.
TEST_F(ChoiceFailureOddities, LayersOfAFailedPushStayOpen)
{
    const std::string after = "<name>n</name><after>a</after>";
    const std::string missed =
        "2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [after] from [trouble.Top.wrong].";
    expectTop("<t-leaf>1</t-leaf>" + after, "wrong { name: 'n' }",
              {"0: Gpb compiler leaf choice case node [t-leaf] fail.", missed});
    expectTop("<t-box><x>1</x></t-box>" + after, "wrong { name: 'n' }",
              {"0: Gpb compiler container choice case node [t-box] fail.", missed});
    expectTop("<t-box>\n</t-box>" + after, "wrong { name: 'n' }",
              {"0: Gpb compiler presence container choice case node [t-box] fail.", missed});
    expectTopFails("<t-flag/>" + after, {"0: Gpb compiler empty leaf choice case node [t-flag] fail."});
}

} // namespace
