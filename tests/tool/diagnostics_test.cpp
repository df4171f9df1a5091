/** What the library says, by level. */
#include <gmock/gmock.h>

#include "tool_fixture.h"

namespace
{

using ::testing::HasSubstr;
using ::testing::Not;

class DiagnosticsByLevel : public gpbtest::ToolTest
{
protected:
    std::string stderrWith(const std::vector<std::string> &options) const
    {
        std::vector<std::string> arguments = {"--lenient"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return encodeText("<top><name>a</name><zz>1</zz><yy><x>1</x><w>2</w></yy></top>", arguments).err;
    }

    const std::string m_failure = "library[0]: Can't Find field [yy]\n";
    const std::string m_skipped =
        "library[2]: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [zz] from [m.Top].\n";
    const std::string m_progress = "library[1]: [GpbXmlCompiler][GetGpbBuffer]Success to serialize, length is 3.\n";
    const std::string m_dump = "library[3]: [GpbXmlCompiler][Encode]Success encode, message structure is:\n";
};

TEST_F(DiagnosticsByLevel, FailuresAlways)
{
    EXPECT_EQ(stderrWith({}), m_failure + "warning: " + path("doc.xml") +
                                  ": 2 elements skipped or with a value that does not fit, run with -v to see them\n");
}

TEST_F(DiagnosticsByLevel, OneVShowsWhatIsSkipped)
{
    const std::string text = stderrWith({"-v"});
    EXPECT_THAT(text, HasSubstr(m_skipped));
    EXPECT_THAT(text, HasSubstr(m_failure));
    EXPECT_THAT(text, Not(HasSubstr("library[1]")));
    EXPECT_THAT(text, Not(HasSubstr("library[3]")));
}

TEST_F(DiagnosticsByLevel, TwoShowProgressToo)
{
    const std::string text = stderrWith({"-vv"});
    EXPECT_THAT(text, HasSubstr(m_skipped));
    EXPECT_THAT(text, HasSubstr(m_progress));
    EXPECT_THAT(text, ::testing::StartsWith("library[1]: GPBLIB_Initial begin\nlibrary[1]: GPBLIB_Initial end\n"));
    EXPECT_THAT(text, Not(HasSubstr("library[3]")));
}

TEST_F(DiagnosticsByLevel, ThreeShowTheMessageToo)
{
    const std::string text = stderrWith({"-v", "-v", "-v"});
    EXPECT_THAT(text, HasSubstr(m_skipped));
    EXPECT_THAT(text, HasSubstr(m_progress));
    EXPECT_THAT(text, HasSubstr(m_dump));
}

} // namespace
