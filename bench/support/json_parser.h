// JSON documents from texts, as a host parses them that reads many.
#ifndef GPB_BENCH_SUPPORT_JSON_PARSER_H
#define GPB_BENCH_SUPPORT_JSON_PARSER_H

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <cjson/cJSON.h>

namespace gpbbench
{

/// Parses one document after the other, each into the memory that the one before lay in. cJSON takes a piece of memory
/// for every item, name and text: taking and releasing them is half of what parsing a large document takes.
class JsonParser
{
public:
    /// Sets the hooks of cJSON, which are the process's; so there is one parser at a time.
    JsonParser();
    ~JsonParser();
    JsonParser(const JsonParser &) = delete;
    JsonParser &operator=(const JsonParser &) = delete;

    /// The tree goes with the next one and with the parser; it is not to be changed or deleted. Failures throw
    /// std::runtime_error.
    cJSON *Parse(const std::string &text);

private:
    static constexpr size_t BLOCK_SIZE = size_t{64} * 1024;

    using Block = std::unique_ptr<char[]>;

    // What cJSON asks for. Only while a parser is at work it gives from the blocks, which take nothing back.
    static void *Malloc(size_t size);
    static void Free(void *memory);

    void *Take(size_t size);

    std::vector<Block> blocks_;
    std::vector<Block> large_; ///< texts that no block has room for
    size_t used_ = 0;          ///< blocks that the tree lies in
    char *next_ = nullptr;     ///< what is left of the last one of them
    size_t left_ = 0;
};

} // namespace gpbbench

#endif
