/** Exit codes of gpbtool; they are part of its interface, scripts depend on them. */
#ifndef GPBTOOL_EXIT_CODES_H
#define GPBTOOL_EXIT_CODES_H

namespace gpbtool
{

enum class ExitCode
{
    Ok = 0,
    Usage = 1,
    Module = 2,
    Input = 3,
    Encode = 4,
    Output = 5,
    Incomplete = 6,
    Internal = 7,
    Different = 8, /**< of `template diff` only, which gives the process codes of its own */
};

/** The table that every help text ends with. */
inline constexpr const char *kExitCodeHelp =
    "Exit codes:\n"
    "  0  done\n"
    "  1  wrong use of the command line\n"
    "  2  module, message or schema path not found, or the module does not load\n"
    "  3  input that cannot be read, is malformed, is refused, or does not decode\n"
    "  4  the document could not be encoded, or the template not made\n"
    "  5  output could not be written\n"
    "  6  part of the document has no place in the module or a value does not fit; nothing was written\n"
    "  7  out of memory or an error of the tool itself\n"
    "With several documents: the code of the first one that failed.";

} // namespace gpbtool

#endif
