#include <algorithm>
#include <iterator>

#include "yang/check.h"

namespace gpbyang
{

namespace
{

constexpr bool kLoss = true;
constexpr bool kNote = false;
/** With the lossless setting. */
constexpr bool kKept = true;
constexpr bool kStays = false;

constexpr CheckKindInfo kKinds[] = {
    {CheckKind::ModuleName, kLoss, kStays, "module-name",
     "The library takes module names of at most 57 characters. It cuts longer ones and does not find their files.",
     nullptr},
    {CheckKind::RootName, kLoss, kStays, "root-name",
     "The library does not find the message of the top-level node by its name.", nullptr},
    {CheckKind::LeftOut, kLoss, kStays, "left-out",
     "No message has a place for the node. It is left out of XML and refused in JSON.",
     "No message has a place for the node, which is left out."},
    {CheckKind::LongName, kLoss, kKept, "long-name",
     "The library finds names of at most 127 characters. It leaves longer ones out of XML and refuses them in JSON.",
     nullptr},
    {CheckKind::DottedName, kLoss, kKept, "dotted-name",
     "The library never finds a name with a \".\", which no name in protobuf has. It leaves it out of XML and refuses "
     "it in JSON.",
     nullptr},
    {CheckKind::CaseFields, kLoss, kKept, "case-fields",
     "The choices of the message lead to more than 255 messages. The library finds no node of a case here.", nullptr},
    {CheckKind::DepthName, kLoss, kKept, "depth-name",
     "The library also looks for a name with the depth of its layer behind it, and takes one node for another.",
     nullptr},
    {CheckKind::SharedName, kLoss, kKept, "shared-name",
     "The library looks for a name in the message first, then in all cases and in the containers and lists of cases, "
     "one after the other, and takes one node for another.",
     "Several nodes have one name, and the namespace, which has to end in the name of the module or the end of it, "
     "does "
     "not tell them apart."},
    {CheckKind::CaseInList, kLoss, kKept, "case-in-list",
     "In a list, the nodes of a case go to the message of an earlier entry that had the same case, unless a container "
     "or list was open between the two.",
     nullptr},
    {CheckKind::BehindEmpty, kLoss, kKept, "behind-empty",
     "When an element without a value, or a text that begins with a line break, stands in a case in XML, the library "
     "looks for what follows it in that case only; or, when there is no way to the node, for nothing more.",
     nullptr},
    {CheckKind::UnionEmpty, kLoss, kKept, "union-empty",
     "An element without content is an empty leaf to the library, which needs a bool. It leaves the empty value out.",
     nullptr},
    {CheckKind::JsonLeafList, kLoss, kKept, "json-leaf-list",
     "From JSON, the library takes arrays of enumeration values only. It passes over all others without a word.",
     nullptr},
    {CheckKind::TopList, kNote, kStays, "top-list", "A document has one root, so it holds one entry of the list.",
     nullptr},
    {CheckKind::TextEnum, kNote, kStays, "text-enum", "The leaf is carried as a text, since an enum would lose values.",
     nullptr},
    {CheckKind::Decimal, kNote, kStays, "decimal",
     "The leaf may have more than the 15 digits that a double keeps. --decimals string keeps all of them.", nullptr},
    {CheckKind::EmptyText, kNote, kKept, "empty-text",
     "The leaf may be empty. An element without content is left out of what is made of XML. JSON carries it.", nullptr},
    {CheckKind::EmptyElement, kNote, kKept, "empty-element",
     "The container or entry may be empty. An element without content is left out of what is made of XML; with a line "
     "break as its text it is carried, and so is {} in JSON.",
     nullptr},
    {CheckKind::LineBreak, kNote, kKept, "line-break",
     "The text may begin with a line break. In XML, the library takes such an element for a container, and leaves it "
     "out.",
     nullptr},
    {CheckKind::ValuePrefix, kNote, kStays, "value-prefix",
     "The value may have a prefix, which is carried as it stands: what it means is only said in the document.",
     nullptr},
    {CheckKind::JsonNumber, kNote, kStays, "json-number",
     "A number of JSON is read with 14 digits. As a text, in double quotes, it is exact.",
     "A number of JSON is read as a double, with 15 digits for sure. As a text, in double quotes, it is exact."},
    {CheckKind::JsonEmpty, kNote, kKept, "json-empty",
     "In JSON, the library takes null for the empty leaf. It passes over [null], which other tools write.", nullptr},
    {CheckKind::JsonNestedList, kNote, kKept, "json-nested-list",
     "From XML to JSON, the library puts all entries into one array at the place of the first, whatever entry of the "
     "outer list they belong to.",
     nullptr},
    {CheckKind::JsonBits, kNote, kStays, "json-bits",
     "From XML to JSON, the library writes the bits as an array with one text, unless it knows the leaf.", nullptr},
    {CheckKind::TopName, kNote, kStays, "top-name",
     "Functions that go by schema path (Gpb_ModuleAdapt_GetFieldHandle, GetEnumList) make another message name of a "
     "\"_\" than the compilers, and find nothing below the node.",
     nullptr},
    {CheckKind::Navigation, kNote, kStays, "navigation",
     "Functions that go by schema path look for the exact field name, and do not find this one.", nullptr},
    {CheckKind::EnumList, kNote, kStays, "enum-list",
     "The enumeration list that the library gives names values as protobuf does.", nullptr},
    {CheckKind::LongPath, kNote, kStays, "long-path",
     "The path of the element has more than 255 characters. The library does not find it in its tables of identities "
     "and bits.",
     nullptr},
    {CheckKind::ManyLeaves, kNote, kStays, "many-leaves",
     "The message has more than 255 leaves, which the library's model attributes cannot count.", nullptr},
};
static_assert(std::size(kKinds) == static_cast<std::size_t>(CheckKind::Count), "a text for each kind");

} // namespace

const CheckKindInfo &InfoOf(CheckKind kind)
{
    return *std::find_if(std::begin(kKinds), std::end(kKinds),
                         [&](const CheckKindInfo &info) { return info.kind == kind; });
}

} // namespace gpbyang
