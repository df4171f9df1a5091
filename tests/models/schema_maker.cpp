#include "schema_maker.h"

#include <algorithm>
#include <map>
#include <set>
#include <vector>

#include "models/random.h"

namespace gpbtest
{

namespace
{

constexpr int kMostDepth = 5; /**< choices and cases count, too */
constexpr std::uint64_t kMostNodes = 5;
constexpr std::uint64_t kAugments = 4;

const std::vector<std::string> kNames = {"a", "b", "A", "a2", "a3", "b4", "c-d", "c_d", "e.f", "g", "h", "i"};
const std::vector<std::string> kTypes = {"type uint8;",
                                         "type string;",
                                         "type string { length 1..9; }",
                                         "type empty;",
                                         "type bits { bit one; bit two; }",
                                         "type enumeration { enum up; enum 10g; }",
                                         "type union { type empty; type uint8; }",
                                         "type int64;"};

class SchemaMaker
{
public:
    explicit SchemaMaker(std::uint64_t seed) : m_random(seed) {}

    MadeModules make(const std::string &space)
    {
        MadeModules made;
        made.base = "module m { yang-version 1.1; namespace \"urn:m\"; prefix m;\ncontainer t {\n" +
                    content("/m:t", "/m:t", 1) + "} }\n";
        made.augmenting =
            "module z { yang-version 1.1; namespace \"" + space + "\"; prefix z; import m { prefix m; }\n";
        m_prefix = "z";
        const std::vector<Target> targets = m_targets;
        for (std::uint64_t i = 0; i < kAugments; ++i)
        {
            const Target &target = m_random.of(targets);
            const std::string nodes = target.isChoice ? cases(target.path, target.level, kMostDepth - 1)
                                                      : content(target.path, target.level, kMostDepth - 1);
            made.augmenting += "augment " + target.path + " {\n" + nodes + "}\n";
        }
        made.augmenting += "}\n";
        return made;
    }

private:
    /** What can be augmented. */
    struct Target
    {
        std::string path;
        std::string level; /**< path of the container or list around it, or its own */
        bool isChoice;
    };

    /** A name that the module has not yet given at a level; empty when it has given all. */
    std::string newName(const std::string &level)
    {
        std::vector<std::string> free;
        std::set<std::string> &taken = m_taken[m_prefix + level];
        std::copy_if(kNames.begin(), kNames.end(), std::back_inserter(free),
                     [&](const std::string &name) { return taken.count(name) == 0; });
        if (free.empty())
        {
            return "";
        }
        const std::string name = m_random.of(free);
        taken.insert(name);
        return name;
    }

    std::string unique(const std::string &what) { return what + std::to_string(++m_count); }

    /** The nodes of a container, list or case. */
    std::string content(const std::string &path, const std::string &level, int depth)
    {
        m_targets.push_back({path, level, false});
        std::string text;
        for (std::uint64_t i = 1 + m_random.below(kMostNodes); i > 0; --i)
        {
            text += node(path, level, depth);
        }
        return text;
    }

    std::string node(const std::string &path, const std::string &level, int depth)
    {
        const std::uint64_t kind = m_random.below(depth < kMostDepth ? 10 : 4);
        if (kind >= 7)
        {
            const std::string name = unique("choice");
            return "choice " + name + " {\n" + cases(path + "/" + m_prefix + ":" + name, level, depth + 1) + "}\n";
        }
        const std::string name = newName(level);
        if (name.empty())
        {
            return "";
        }
        if (kind < 4)
        {
            const bool isList = kind == 3;
            return (isList ? "leaf-list " : "leaf ") + name + " { " +
                   (isList ? kTypes[m_random.sizeBelow(3)] : m_random.of(kTypes)) + " }\n";
        }
        const std::string inner = path + "/" + m_prefix + ":" + name;
        if (kind == 4)
        {
            return "list " + name + " { key k; leaf k { type uint8; }\n" + content(inner, inner, depth + 1) + "}\n";
        }
        return "container " + name + " {" + (kind == 5 ? " presence p;\n" : "\n") + content(inner, inner, depth + 1) +
               "}\n";
    }

    std::string cases(const std::string &path, const std::string &level, int depth)
    {
        m_targets.push_back({path, level, true});
        std::string text;
        for (std::uint64_t i = 1 + m_random.below(3); i > 0; --i)
        {
            const std::string name = unique("case");
            text += "case " + name + " {\n" + content(path + "/" + m_prefix + ":" + name, level, depth + 1) + "}\n";
        }
        return text;
    }

    Random m_random;
    std::string m_prefix = "m";
    int m_count = 0;
    std::map<std::string, std::set<std::string>> m_taken; /**< by module and level */
    std::vector<Target> m_targets;
};

} // namespace

MadeModules makeModules(std::uint64_t seed, const std::string &space)
{
    return SchemaMaker(seed).make(space);
}

} // namespace gpbtest
