/** A document in the default and in the lossless setting, side by side. */
#ifndef GPB_TESTS_COMPILER_EXACT_FIXTURE_H
#define GPB_TESTS_COMPILER_EXACT_FIXTURE_H

#include "compiler/compiler_fixture.h"
#include "gpb_templatelib/gpb_extension.h"

namespace gpbtest
{

/** Documents of one module, whose root is <top> and becomes the message Top of the package that the module is called.
 */
class ExactFixture : public CompilerFixture
{
protected:
    using Lines = std::vector<std::string>;

    /** Adds a proto3 module with these types and this content of the message Top, and opens a compiler of it. */
    void useModule(const std::string &module, const std::string &content, const std::string &types = "")
    {
        m_module = module;
        addModule(module, "syntax = 'proto3'; package " + module + "; " + types + " message Top {" + content + "}");
        open(module);
    }

    /** Opens a compiler of a module of the test data. */
    void useDataModule(const std::string &module)
    {
        m_module = module;
        addDataModule(module);
        open(module);
    }

    void setLossless(bool isOn) { EXPECT_EQ(0u, GPBEXT_SetLossless(context(), isOn ? 1 : 0)); }

    /** What the setting gives for the content of <top>: the message in text form and the lines of what is left out. */
    void expectDefault(const std::string &content, const std::string &textForm, const Lines &lines = {})
    {
        SCOPED_TRACE("default");
        setLossless(false);
        expectEncodes(document(content), m_module + ".Top", textForm, lines);
    }

    void expectLossless(const std::string &content, const std::string &textForm, const Lines &lines = {})
    {
        SCOPED_TRACE("lossless");
        setLossless(true);
        expectEncodes(document(content), m_module + ".Top", textForm, lines);
    }

    /** Both settings agree. */
    void expectBoth(const std::string &content, const std::string &textForm, const Lines &lines = {})
    {
        expectDefault(content, textForm, lines);
        expectLossless(content, textForm, lines);
    }

    std::string document(const std::string &content) const { return m_doctype + "<top>" + content + "</top>"; }

    std::string m_doctype;

private:
    std::string m_module;
};

} // namespace gpbtest

#endif
