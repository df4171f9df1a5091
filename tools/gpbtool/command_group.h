/** A subcommand that consists of subcommands, one of which the command line names. */
#ifndef GPBTOOL_COMMAND_GROUP_H
#define GPBTOOL_COMMAND_GROUP_H

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "subcommand.h"

namespace gpbtool
{

class CommandGroup : public Subcommand
{
public:
    CommandGroup(std::string name, std::string description, std::vector<std::unique_ptr<Subcommand>> members);

    const char *Name() const override { return name_.c_str(); }
    const char *Description() const override { return description_.c_str(); }
    void Declare(CLI::App &app) override;
    ExitCode Run(Console &console) override;
    int Status(ExitCode code) const override;
    void Select() override;

private:
    std::string name_;
    std::string description_;
    std::vector<std::unique_ptr<Subcommand>> members_;
    std::vector<const CLI::App *> declared_; /**< of each member */
    Subcommand *selected_ = nullptr;
};

} // namespace gpbtool

#endif
