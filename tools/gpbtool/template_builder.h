/** Making the template of a class of a YANG module. */
#ifndef GPBTOOL_TEMPLATE_BUILDER_H
#define GPBTOOL_TEMPLATE_BUILDER_H

#include <string>
#include <vector>

#include "console.h"
#include "session.h"

namespace gpbtool
{

struct TemplateRequest
{
    std::vector<std::string> yangPaths;
    std::string module;
    std::string path;
    std::string idsFile; /**< empty: numbered by rule */
};

/**
 * Makes a template and returns its bytes. Leaves that the template leaves out are warned about.
 *
 * @throws ToolError (Module, Input, Encode)
 */
std::string BuildTemplate(Session &session, Console &console, const TemplateRequest &request);

} // namespace gpbtool

#endif
