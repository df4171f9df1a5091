/** What the check of a module says about a difference between a document and its message. */
#ifndef GPB_TESTS_MODELS_EXCUSES_H
#define GPB_TESTS_MODELS_EXCUSES_H

#include <string>
#include <vector>

#include "models/data_match.h"
#include "yang/check.h"

namespace gpbtest
{

enum class Setting
{
    Usual,
    Lossless,
};

enum class Form
{
    FromXml,
    FromJson,
    XmlToJson,
};

class Excuses
{
public:
    Excuses(const std::vector<gpbyang::CheckFinding> &findings, Setting setting, Form form);

    /** "XML", "lossless JSON", "XML to JSON" */
    std::string name() const;

    /** Whether a node that differs, or one around it, is one of those that the check names for the form and setting. */
    bool explain(const Difference &difference) const;

    /** Whether a document has a node of which the check says that it makes the form be refused. */
    bool explainRefusal(const lyd_node &top) const;

private:
    bool explainNote(const gpbyang::CheckFinding &finding, const Difference &difference) const;
    bool concerns(const gpbyang::CheckFinding &finding) const;
    const gpbyang::CheckForms &formsOf(const gpbyang::CheckFinding &finding) const;

    const std::vector<gpbyang::CheckFinding> &m_findings;
    Setting m_setting;
    Form m_form;
};

} // namespace gpbtest

#endif
