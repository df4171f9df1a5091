/** gpbtool: encodes instance documents of YANG modules into Protocol Buffers, and shows what came out. */
#include <CLI/CLI.hpp>

#include <csignal>
#include <new>

#include "command_group.h"
#include "subcommand.h"
#include "xml_document.h"

namespace
{

using gpbtool::CommandGroup;
using gpbtool::Console;
using gpbtool::ExitCode;

/** The program as the group of its subcommands. */
std::unique_ptr<CommandGroup> MakeProgram()
{
    return std::make_unique<CommandGroup>(
        "gpbtool", "Encodes instance documents of YANG modules into Protocol Buffers, and shows what came out.",
        gpbtool::MakeSubcommands());
}

ExitCode Main(int argc, char **argv, CommandGroup &program, Console &console)
{
    CLI::App app(program.Description(), program.Name());
    app.footer(program.ExitCodes());
    app.set_version_flag("--version", GPBTOOL_VERSION);
    program.Declare(app);
    try
    {
        app.parse(argc, argv);
    }
    catch (const CLI::ParseError &error)
    {
        program.Select();
        return app.exit(error) == 0 ? ExitCode::Ok : ExitCode::Usage;
    }
    program.Select();
    gpbtool::PrepareXmlParser();
    return program.Run(console);
}

} // namespace

int main(int argc, char **argv)
{
    // A reader that goes away and a file that may not grow are output errors with a message, not a silent end.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    Console console;
    const std::unique_ptr<CommandGroup> program = MakeProgram();
    ExitCode code = ExitCode::Internal;
    try
    {
        code = Main(argc, argv, *program, console);
    }
    catch (const gpbtool::ToolError &error)
    {
        console.Error(error);
        code = error.Code();
    }
    catch (const std::bad_alloc &)
    {
        std::fputs("error: out of memory\n", stderr);
    }
    catch (const std::exception &error)
    {
        console.Print(std::string("error: ") + error.what());
    }
    console.ClearStatus();
    return program->Status(code);
}
