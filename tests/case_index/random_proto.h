/** Message types to compare searches on, and names to search there. */
#ifndef GPB_TESTS_CASE_INDEX_RANDOM_PROTO_H
#define GPB_TESTS_CASE_INDEX_RANDOM_PROTO_H

#include <google/protobuf/descriptor.h>
#include <random>
#include <set>
#include <string>

namespace gpbtest
{

inline void collectNames(const google::protobuf::Descriptor *message, std::set<std::string> &names)
{
    for (int i = 0; i < message->field_count(); ++i)
    {
        std::string name = message->field(i)->lowercase_name();
        names.insert(name);
        // What a document calls a field with a layer suffix, and names that only look so.
        while (!name.empty() && name.back() >= '0' && name.back() <= '9')
        {
            name.pop_back();
            names.insert(name);
        }
    }
    for (int i = 0; i < message->nested_type_count(); ++i)
    {
        collectNames(message->nested_type(i), names);
    }
}

/** All names that could stand for a field of a type or around it, and some that stand for none. */
inline std::set<std::string> namesAround(const google::protobuf::Descriptor *message)
{
    std::set<std::string> names = {"", "no_such_name", "2", std::string(127, 'n')};
    for (int i = 0; i < message->file()->message_type_count(); ++i)
    {
        collectNames(message->file()->message_type(i), names);
    }
    return names;
}

/** Message types with random choices, nested and foreign cases, and names that clash with and without suffixes. */
class RandomProto
{
public:
    explicit RandomProto(uint32_t seed) : m_random(seed) {}

    std::string Text()
    {
        std::string text = "syntax = \"proto3\";\npackage m;\n";
        text += "message Foreign { string name = 1; string name2 = 2; string a = 3; }\n";
        return text + Message("Top", 0);
    }

private:
    uint32_t Pick(uint32_t below) { return static_cast<uint32_t>(m_random() % below); }

    std::string Message(const std::string &type, uint32_t depth)
    {
        static const char *const kNames[] = {"name", "name2", "name3", "name4", "a", "a2", "b", "b3", "c", "c4"};
        std::string types;
        std::string fields;
        std::string members;
        int number = 0;
        std::string containerName;
        for (const char *name : kNames)
        {
            if (Pick(3) == 0)
            {
                fields += std::string("string ") + name + " = " + std::to_string(++number) + ";\n";
            }
            else if (Pick(8) == 0)
            {
                // A container with the name of a leaf that may lie in a case.
                containerName = name;
            }
        }
        if (!containerName.empty())
        {
            fields += "Foreign " + containerName + " = " + std::to_string(++number) + ";\n";
        }
        for (uint32_t i = 0; depth < 3 && i < Pick(4); ++i)
        {
            const std::string id = std::to_string(i);
            const bool foreign = Pick(6) == 0;
            types += foreign ? "" : Message("T" + id, depth + 1);
            (Pick(3) == 0 ? fields : members) +=
                (foreign ? "Foreign" : "T" + id) + " child_" + id + " = " + std::to_string(++number) + ";\n";
        }
        if (!members.empty())
        {
            members = "oneof choice {\n" + members + "}\n";
        }
        return "message " + type + " {\n" + types + fields + members + "}\n";
    }

    std::mt19937 m_random;
};

/** The proto file "m" with the top message Top. */
inline std::string randomProto(uint32_t seed)
{
    return RandomProto(seed).Text();
}

} // namespace gpbtest

#endif
