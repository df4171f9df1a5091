#include "subcommand.h"

namespace gpbtool
{

std::vector<std::unique_ptr<Subcommand>> MakeSubcommands()
{
    std::vector<std::unique_ptr<Subcommand>> all;
    all.push_back(MakeEncodeCommand());
    all.push_back(MakeBenchCommand());
    all.push_back(MakeDecodeCommand());
    all.push_back(MakeJsonCommand());
    all.push_back(MakeAttrsCommand());
    all.push_back(MakeModulesCommand());
    all.push_back(MakeProtoCommand());
    all.push_back(MakeCheckCommand());
    all.push_back(MakeTemplateCommand());
    return all;
}

} // namespace gpbtool
