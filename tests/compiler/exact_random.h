/** Random schemas and documents, and the messages that documents have to become without any loss. */
#ifndef GPB_TESTS_COMPILER_EXACT_RANDOM_H
#define GPB_TESTS_COMPILER_EXACT_RANDOM_H

#include <cstdint>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace gpbtest
{

/** A node of a schema. Names are unique among siblings and the nodes in their choices, and recur everywhere else. */
struct RandomNode
{
    enum class Kind
    {
        TEXT,
        NUMBER,
        FLAG,
        TEXTS,
        NUMBERS,
        BOX,
        LIST,
        CHOICE, /**< its children are cases, and leaves that are cases by themselves */
        CASE,
        COUNT
    };

    Kind kind;
    std::string name; /**< as documents spell it */
    std::vector<RandomNode> children;
};

/** A document, and its message in protobuf's text form. */
struct RandomDocument
{
    std::string content; /**< of the root element */
    std::string textForm;
};

class RandomModel
{
public:
    explicit RandomModel(uint32_t seed);

    /** The content of the message of the root. */
    std::string protoContent() const { return messageContent(m_nodes); }

    /** With nodes of cases, and values that the default leaves out; or without both. */
    RandomDocument makeDocument(bool isFull);

private:
    using Kind = RandomNode::Kind;

    /** A message: fields in text form, and the messages of its cases. */
    struct Form
    {
        std::string fields;
        std::map<std::string, Form> cases;

        std::string text() const;
    };

    /** An element with its field, and the cases in which the field lies. */
    struct Instance
    {
        std::vector<std::string> cases;
        std::string xml;
        std::string form;
    };

    uint32_t pick(uint32_t below) { return static_cast<uint32_t>(m_random() % below); }

    std::vector<RandomNode> makeNodes(uint32_t depth, std::set<std::string> &names);
    RandomNode makeNode(Kind kind, uint32_t depth, std::set<std::string> &names);
    std::string newName(std::set<std::string> &names);

    static std::string fieldName(const std::string &nodeName);
    static std::string messageContent(const std::vector<RandomNode> &nodes);
    static std::string fieldText(const RandomNode &node, int &number, bool isCase);

    RandomDocument makeContent(const std::vector<RandomNode> &nodes, bool isFull);
    void addInstances(const std::vector<RandomNode> &nodes, const std::vector<std::string> &cases, bool isFull,
                      std::vector<std::vector<Instance>> &groups);
    Instance makeInstance(const RandomNode &node, bool isFull);
    Instance makeLeaf(const RandomNode &node, bool isFull);

    std::mt19937 m_random;
    int m_caseNum = 0;
    std::vector<RandomNode> m_nodes;
};

} // namespace gpbtest

#endif
