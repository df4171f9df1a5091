/** A file that is read, or standard input. */
#ifndef GPBTOOL_INPUT_FILE_H
#define GPBTOOL_INPUT_FILE_H

#include <cstddef>
#include <cstdint>
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

    const std::string &Path() const { return path_; }

    /** Reads up to `size` bytes; 0 at the end. @throws ToolError (Input) */
    std::size_t Read(char *buffer, std::size_t size);

    /** All bytes up to the end. @throws ToolError (Input) */
    std::string ReadAll();

    /** Bytes read so far. */
    std::uint64_t BytesRead() const { return bytesRead_; }

private:
    std::string path_;
    int fd_;
    std::uint64_t bytesRead_ = 0;
};

} // namespace gpbtool

#endif
