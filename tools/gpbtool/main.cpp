/** gpbtool: encodes instance documents of YANG modules into Protocol Buffers, and shows what came out. */
#include <CLI/CLI.hpp>

#include <csignal>
#include <new>

#include "subcommand.h"
#include "xml_document.h"

namespace
{

using gpbtool::Console;
using gpbtool::ExitCode;

ExitCode RunSelected(CLI::App &app, const std::vector<std::unique_ptr<gpbtool::Subcommand>> &commands, Console &console)
{
    for (const auto &command : commands)
    {
        if (app.got_subcommand(command->Name()))
        {
            return command->Run(console);
        }
    }
    return ExitCode::Usage;
}

ExitCode Main(int argc, char **argv, Console &console)
{
    CLI::App app("Encodes instance documents of YANG modules into Protocol Buffers, and shows what came out.",
                 "gpbtool");
    app.require_subcommand(1);
    app.footer(gpbtool::kExitCodeHelp);
    app.set_version_flag("--version", GPBTOOL_VERSION);
    const auto commands = gpbtool::MakeSubcommands();
    for (const auto &command : commands)
    {
        CLI::App *sub = app.add_subcommand(command->Name(), command->Description());
        sub->footer(gpbtool::kExitCodeHelp);
        command->Declare(*sub);
    }
    try
    {
        app.parse(argc, argv);
    }
    catch (const CLI::ParseError &error)
    {
        return app.exit(error) == 0 ? ExitCode::Ok : ExitCode::Usage;
    }
    gpbtool::PrepareXmlParser();
    return RunSelected(app, commands, console);
}

} // namespace

int main(int argc, char **argv)
{
    // A reader that goes away and a file that may not grow are output errors with a message, not a silent end.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    Console console;
    ExitCode code = ExitCode::Internal;
    try
    {
        code = Main(argc, argv, console);
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
    console.EndProgress();
    return static_cast<int>(code);
}
