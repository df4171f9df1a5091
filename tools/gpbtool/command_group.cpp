#include "command_group.h"

#include <CLI/CLI.hpp>

namespace gpbtool
{

CommandGroup::CommandGroup(std::string name, std::string description, std::vector<std::unique_ptr<Subcommand>> members)
    : name_(std::move(name)), description_(std::move(description)), members_(std::move(members))
{
}

void CommandGroup::Declare(CLI::App &app)
{
    app.require_subcommand(1);
    for (const auto &member : members_)
    {
        CLI::App *sub = app.add_subcommand(member->Name(), member->Description());
        sub->footer(member->ExitCodes());
        member->Declare(*sub);
        declared_.push_back(sub);
    }
}

void CommandGroup::Select()
{
    for (std::size_t i = 0; i < declared_.size(); ++i)
    {
        if (declared_[i]->parsed())
        {
            selected_ = members_[i].get();
            selected_->Select();
        }
    }
}

ExitCode CommandGroup::Run(Console &console)
{
    return selected_ != nullptr ? selected_->Run(console) : ExitCode::Usage;
}

int CommandGroup::Status(ExitCode code) const
{
    return selected_ != nullptr ? selected_->Status(code) : Subcommand::Status(code);
}

} // namespace gpbtool
