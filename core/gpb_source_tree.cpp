#include "core/gpb_source_tree.h"

#include <google/protobuf/io/zero_copy_stream.h>
#include <memory>

#include "gpb_templatelib/gpb_limits.h"

using google::protobuf::io::ZeroCopyInputStream;

namespace
{

// Follows the nesting of a proto file, one character after the other, past texts and comments.
class NestingScanner
{
public:
    void Take(char c)
    {
        const char previous = previous_;
        previous_ = c;
        switch (state_)
        {
        case State::PLAIN:
            TakePlain(previous, c);
            break;
        case State::TEXT:
            TakeText(previous, c);
            break;
        case State::LINE_COMMENT:
            state_ = c == '\n' ? State::PLAIN : state_;
            break;
        case State::BLOCK_COMMENT:
            if (previous == '*' && c == '/')
            {
                state_ = State::PLAIN;
                previous_ = '\0';
            }
            break;
        }
    }

    bool IsTooDeep() const { return depth_ > GPB_PROTO_MAX_NESTING; }

private:
    enum class State
    {
        PLAIN,
        TEXT,
        LINE_COMMENT,
        BLOCK_COMMENT
    };

    void TakePlain(char previous, char c)
    {
        if (c == '"' || c == '\'')
        {
            quote_ = c;
            state_ = State::TEXT;
        }
        else if (previous == '/' && c == '/')
        {
            state_ = State::LINE_COMMENT;
        }
        else if (previous == '/' && c == '*')
        {
            state_ = State::BLOCK_COMMENT;
            previous_ = '\0';
        }
        // Values of options may use angle brackets for braces.
        else if (c == '{' || c == '<')
        {
            ++depth_;
        }
        else if ((c == '}' || c == '>') && depth_ > 0)
        {
            --depth_;
        }
    }

    void TakeText(char previous, char c)
    {
        if (previous == '\\')
        {
            previous_ = '\0'; // what is escaped, a backslash included, escapes and ends nothing
        }
        else if (c == quote_ || c == '\n')
        {
            state_ = State::PLAIN;
        }
    }

    State state_ = State::PLAIN;
    char previous_ = '\0';
    char quote_ = '\0';
    uint32_t depth_ = 0;
};

bool NestsTooDeep(ZeroCopyInputStream &stream)
{
    NestingScanner scanner;
    const void *data = nullptr;
    int size = 0;
    while (stream.Next(&data, &size))
    {
        const auto *text = static_cast<const char *>(data);
        for (int i = 0; i < size; ++i)
        {
            scanner.Take(text[i]);
            if (scanner.IsTooDeep())
            {
                return true;
            }
        }
    }
    return false;
}

} // namespace

ZeroCopyInputStream *GpbSourceTree::Open(GpbPbPath filename)
{
    const std::unique_ptr<ZeroCopyInputStream> scanned(DiskSourceTree::Open(filename));
    if (scanned == nullptr || NestsTooDeep(*scanned))
    {
        return nullptr;
    }
    return DiskSourceTree::Open(filename);
}

std::shared_ptr<void> GpbSourceTree::Derived(GpbMakeDerived make)
{
    const std::lock_guard<std::mutex> lock(derivedMutex_);
    if (derived_ == nullptr)
    {
        derived_ = make();
    }
    return derived_;
}

void GpbSourceTree::DropDerived()
{
    const std::lock_guard<std::mutex> lock(derivedMutex_);
    derived_.reset();
}
