/** Subcommands: each is one file and one line in the registry (subcommands.cpp). */
#ifndef GPBTOOL_SUBCOMMAND_H
#define GPBTOOL_SUBCOMMAND_H

#include <memory>
#include <vector>

#include "console.h"
#include "exit_codes.h"

namespace CLI
{
class App;
}

namespace gpbtool
{

class Subcommand
{
public:
    Subcommand() = default;
    Subcommand(const Subcommand &) = delete;
    Subcommand &operator=(const Subcommand &) = delete;
    virtual ~Subcommand() = default;

    virtual const char *Name() const = 0;
    virtual const char *Description() const = 0;

    /** Declares the options; they are filled before Run. */
    virtual void Declare(CLI::App &app) = 0;

    /** Called when the command line was read, whether or not it is right. */
    virtual void Select() {}

    /** Does the work; failures are ToolErrors or, where work goes on after them, reported and returned. */
    virtual ExitCode Run(Console &console) = 0;

    /** What the process ends with for a code, whoever found it. */
    virtual int Status(ExitCode code) const { return static_cast<int>(code); }

    /** The table of exit codes that the help text ends with. */
    virtual const char *ExitCodes() const { return kExitCodeHelp; }
};

/** All subcommands, in the order of the help text. */
std::vector<std::unique_ptr<Subcommand>> MakeSubcommands();

std::unique_ptr<Subcommand> MakeEncodeCommand();
std::unique_ptr<Subcommand> MakeBenchCommand();
std::unique_ptr<Subcommand> MakeDecodeCommand();
std::unique_ptr<Subcommand> MakeJsonCommand();
std::unique_ptr<Subcommand> MakeAttrsCommand();
std::unique_ptr<Subcommand> MakeModulesCommand();
std::unique_ptr<Subcommand> MakeProtoCommand();
std::unique_ptr<Subcommand> MakeCheckCommand();
std::unique_ptr<Subcommand> MakeTemplateCommand();
std::unique_ptr<Subcommand> MakeTemplateBuildCommand();
std::unique_ptr<Subcommand> MakeTemplateShowCommand();
std::unique_ptr<Subcommand> MakeTemplateDiffCommand();

} // namespace gpbtool

#endif
