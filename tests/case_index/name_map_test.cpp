// Names with a number each.
#include "descriptor/gpb_name_map.h"

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

namespace
{

// Names of all lengths up to a few words, each differing from the next one of its length in one character.
std::vector<std::string> Names()
{
    constexpr size_t LONGEST = 40;
    std::vector<std::string> names;
    for (size_t length = 0; length <= LONGEST; ++length)
    {
        names.emplace_back(length, 'a');
        for (size_t i = 0; i < length; ++i)
        {
            names.emplace_back(length, 'a');
            names.back()[i] = 'b';
        }
    }
    return names;
}

} // namespace

TEST(NameMap, FindsEachNameAndNoOther)
{
    const std::vector<std::string> names = Names();
    size_t bytes = 0;
    for (const std::string &name : names)
    {
        bytes += name.size();
    }
    GpbNameMap map(names.size(), bytes);
    std::set<const char *> kept;
    for (uint32_t i = 0; i < names.size(); i += 2)
    {
        kept.insert(map.Add(names[i], i + 1));
    }
    EXPECT_EQ(kept.size(), (names.size() + 1) / 2);
    for (uint32_t i = 0; i < names.size(); ++i)
    {
        EXPECT_EQ(map.Find(names[i]), i % 2 == 0 ? i + 1 : GpbNameMap::NOTHING) << names[i];
    }
    for (const char *name : kept)
    {
        EXPECT_NE(map.Find(name), GpbNameMap::NOTHING) << name;
    }
}
