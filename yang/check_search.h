/** One search of the library for a node: what it finds, what it opens on the way, and what it leaves open. */
#ifndef GPB_YANG_CHECK_SEARCH_H
#define GPB_YANG_CHECK_SEARCH_H

#include <vector>

#include "yang/proto_model.h"

namespace google::protobuf
{
class Descriptor;
class FieldDescriptor;
} // namespace google::protobuf

namespace gpbyang
{

/** What an element of XML holds, as the library tells them apart. */
enum class Element
{
    Text,    /**< a text */
    Empty,   /**< nothing */
    Break,   /**< a text that begins with a line break */
    Content, /**< elements */
};

/** The forms that a node's element can have, the usual one first. */
std::vector<Element> ElementsOf(const ProtoField &field);

using FieldChain = std::vector<const google::protobuf::FieldDescriptor *>;

/** Whether nodes below two chains of fields cannot stand in one document: they are in two cases of one choice. */
bool Exclude(const FieldChain &a, const FieldChain &b);

class Search
{
public:
    /** Looks in a message as for a leaf's text, or as for everything else. */
    Search(const google::protobuf::Descriptor &from, const char *node, bool asText);

    const google::protobuf::FieldDescriptor *Found() const { return found_; }
    /** Fields whose messages are opened, the outermost first. */
    const FieldChain &Opened() const { return opened_; }
    /** Whether the message that holds the field is reached. */
    bool Reached() const { return reached_; }
    bool Finds(const google::protobuf::FieldDescriptor *field) const { return reached_ && found_ == field; }
    bool FindsMessage() const;

    /** Whether an element has an effect on the field. */
    bool Stores(Element element) const;
    /** The message in which the library goes on behind an element; null for the one where it was. */
    const google::protobuf::Descriptor *LeftOpen(Element element) const;

private:
    const google::protobuf::FieldDescriptor *found_;
    FieldChain opened_;
    bool reached_;
};

} // namespace gpbyang

#endif
