#include "excuses.h"

#include <libyang/libyang.h>

#include <algorithm>

#include "yang/proto_builder.h"

namespace gpbtest
{

namespace
{

using gpbyang::CheckFinding;
using gpbyang::CheckKind;

bool isAtOrBelow(const std::string &path, const std::string &above)
{
    return path.compare(0, above.size(), above) == 0 && (path.size() == above.size() || path[above.size()] == '/');
}

/** Notes are about some values of a leaf only. */
bool isAboutValue(CheckKind kind, const Difference &difference)
{
    const std::string &value = difference.value;
    return (kind == CheckKind::EmptyText && (value.empty() || difference.isList)) ||
           (kind == CheckKind::LineBreak && ((!value.empty() && value.front() == '\n') || difference.isList));
}

bool hasNode(const lyd_node &node, const std::string &path)
{
    if ((node.flags & LYD_DEFAULT) != 0)
    {
        return false;
    }
    bool has = gpbyang::SchemaPath(*node.schema) == path;
    for (const lyd_node *child = lyd_child(&node); child != nullptr && !has; child = child->next)
    {
        has = hasNode(*child, path);
    }
    return has;
}

} // namespace

Excuses::Excuses(const std::vector<CheckFinding> &findings, Setting setting, Form form)
    : m_findings(findings), m_setting(setting), m_form(form)
{
}

std::string Excuses::name() const
{
    return std::string(m_setting == Setting::Lossless ? "lossless " : "") + (m_form == Form::FromXml ? "XML"
                                                                             : m_form == Form::FromJson
                                                                                 ? "JSON"
                                                                                 : "XML to JSON");
}

const gpbyang::CheckForms &Excuses::formsOf(const CheckFinding &finding) const
{
    return m_setting == Setting::Lossless ? finding.lossless : finding.forms;
}

bool Excuses::explain(const Difference &difference) const
{
    return std::any_of(m_findings.begin(), m_findings.end(),
                       [&](const CheckFinding &finding)
                       {
                           return gpbyang::InfoOf(finding.kind).loss
                                      ? concerns(finding) && isAtOrBelow(difference.path, finding.path)
                                      : explainNote(finding, difference);
                       });
}

bool Excuses::explainNote(const CheckFinding &finding, const Difference &difference) const
{
    if (m_setting == Setting::Lossless || m_form == Form::FromJson)
    {
        return false;
    }
    const bool isNested = finding.kind == CheckKind::JsonNestedList && m_form == Form::XmlToJson;
    return isNested ? isAtOrBelow(difference.path, finding.path)
                    : finding.path == difference.path && isAboutValue(finding.kind, difference);
}

/** Whether a loss is one of the form. JSON has no cases, so nothing that has to do with their messages is lost in it.
 */
bool Excuses::concerns(const CheckFinding &finding) const
{
    const gpbyang::CheckForms &forms = formsOf(finding);
    const bool isOfCases = finding.kind == CheckKind::CaseInList || finding.kind == CheckKind::BehindEmpty;
    return m_form == Form::FromJson ? forms.json : forms.xml && !(isOfCases && m_form == Form::XmlToJson);
}

bool Excuses::explainRefusal(const lyd_node &top) const
{
    return std::any_of(m_findings.begin(), m_findings.end(),
                       [&](const CheckFinding &finding)
                       {
                           const gpbyang::CheckForms &forms = formsOf(finding);
                           return (m_form == Form::FromJson ? forms.refusedJson : forms.refusedXml) &&
                                  hasNode(top, finding.path);
                       });
}

} // namespace gpbtest
