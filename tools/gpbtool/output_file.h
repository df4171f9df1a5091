/** Writing results: a file appears complete or not at all. */
#ifndef GPBTOOL_OUTPUT_FILE_H
#define GPBTOOL_OUTPUT_FILE_H

#include <string>
#include <string_view>

namespace gpbtool
{

/**
 * Writes `bytes` to a new file beside `path` and renames it to `path`, so that an earlier file is replaced as a whole.
 * What is no ordinary file, such as a device or a pipe, is written to directly. Threads may write different files.
 *
 * @throws ToolError (Output)
 */
void WriteFile(const std::string &path, std::string_view bytes);

/** @throws ToolError (Output) */
void WriteStdout(std::string_view bytes);

/** Writes to `path`; empty and "-" are standard output. */
void WriteOutput(const std::string &path, std::string_view bytes);

} // namespace gpbtool

#endif
