#include "support/json_parser.h"

#include <cstdlib>
#include <new>
#include <stdexcept>

namespace gpbbench
{

namespace
{

thread_local JsonParser *t_atWork = nullptr;

} // namespace

JsonParser::JsonParser()
{
    cJSON_Hooks hooks = {&Malloc, &Free};
    cJSON_InitHooks(&hooks);
}

JsonParser::~JsonParser()
{
    cJSON_InitHooks(nullptr);
}

cJSON *JsonParser::Parse(const std::string &text)
{
    large_.clear();
    used_ = 0;
    left_ = 0;
    t_atWork = this;
    cJSON *const tree = cJSON_ParseWithLength(text.data(), text.size());
    t_atWork = nullptr;
    if (tree == nullptr)
    {
        throw std::runtime_error("the document does not parse");
    }
    return tree;
}

void *JsonParser::Malloc(size_t size)
{
    try
    {
        return t_atWork == nullptr ? std::malloc(size) : t_atWork->Take(size);
    }
    catch (const std::bad_alloc &)
    {
        return nullptr;
    }
}

void JsonParser::Free(void *memory)
{
    if (t_atWork == nullptr)
    {
        std::free(memory);
    }
}

void *JsonParser::Take(size_t size)
{
    const size_t rounded = (size + alignof(cJSON) - 1) / alignof(cJSON) * alignof(cJSON);
    if (rounded > BLOCK_SIZE)
    {
        large_.push_back(Block(new char[rounded]));
        return large_.back().get();
    }
    if (rounded > left_)
    {
        if (used_ == blocks_.size())
        {
            blocks_.push_back(Block(new char[BLOCK_SIZE]));
        }
        next_ = blocks_[used_].get();
        left_ = BLOCK_SIZE;
        ++used_;
    }
    char *const taken = next_;
    next_ += rounded;
    left_ -= rounded;
    return taken;
}

} // namespace gpbbench
