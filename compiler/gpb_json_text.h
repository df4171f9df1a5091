// The text of a JSON tree.
#ifndef GPB_COMPILER_GPB_JSON_TEXT_H
#define GPB_COMPILER_GPB_JSON_TEXT_H

#include <cstddef>
#include <cstdint>
#include <memory>

struct cJSON;

/// Writes a tree without white space, character by character as cJSON_PrintUnformatted does. cJSON formats every number
/// by way of printf and scanf and measures its text anew after each item, which takes longer than all the rest of an
/// encode.
class GpbJsonText
{
public:
    /// Appends a tree; false for one that cannot be printed. Calls itself once for each of the containers in each
    /// other, of which there are at most GPB_JSON_MAX_DEPTH. A lack of memory is thrown, and so is a text that is
    /// longer than cJSON makes them.
    bool Append(const cJSON *item);

    /// The text so far, with a terminator.
    const char *Terminated();

private:
    // With its terminator a text is no longer than an int counts.
    static constexpr size_t MAX_SIZE = INT32_MAX;

    bool AppendObject(const cJSON *object);
    bool AppendArray(const cJSON *array);
    void AppendNumber(double number);
    void AppendString(const char *string);
    void AppendPlain(const char *string);
    void Put(char c)
    {
        *Begin(1) = c;
        ++size_;
    }

    /// A place for as many characters, which count as written up to where Finish is told that they end.
    char *Begin(size_t most)
    {
        if (capacity_ - size_ < most)
        {
            Grow(most);
        }
        return buffer_.get() + size_;
    }
    void Grow(size_t most);
    void RefuseTooLong() const;
    void Finish(const char *end) { size_ = static_cast<size_t>(end - buffer_.get()); }

    std::unique_ptr<char[]> buffer_;
    size_t size_ = 0;
    size_t capacity_ = 0;
};

#endif
