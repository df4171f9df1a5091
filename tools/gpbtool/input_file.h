/** A file that is read, or standard input. */
#ifndef GPBTOOL_INPUT_FILE_H
#define GPBTOOL_INPUT_FILE_H

#include <string>

namespace gpbtool
{

class InputFile
{
public:
    /**
     * Opens a file for reading.
     *
     * @param path  a file name; "-" is standard input
     * @throws ToolError (Input)
     */
    explicit InputFile(const std::string &path);
    ~InputFile();
    InputFile(const InputFile &) = delete;
    InputFile &operator=(const InputFile &) = delete;

    /** File descriptor, open as long as this object lives. */
    int Descriptor() const { return fd_; }

    /** All bytes up to the end. @throws ToolError (Input) */
    std::string ReadAll() const;

private:
    std::string path_;
    int fd_;
};

} // namespace gpbtool

#endif
