/** gpbtool template: makes, shows and compares templates of management classes. */
#include "command_group.h"

namespace gpbtool
{

std::unique_ptr<Subcommand> MakeTemplateCommand()
{
    std::vector<std::unique_ptr<Subcommand>> members;
    members.push_back(MakeTemplateBuildCommand());
    members.push_back(MakeTemplateShowCommand());
    members.push_back(MakeTemplateDiffCommand());
    return std::make_unique<CommandGroup>("template", "Make, show and compare templates of management classes",
                                          std::move(members));
}

} // namespace gpbtool
