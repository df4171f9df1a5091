#include <algorithm>
#include <iterator>

#include "yang/check.h"

namespace gpbyang
{

namespace
{

constexpr bool kLoss = true;
constexpr bool kNote = false;

constexpr CheckKindInfo kKinds[] = {
    {CheckKind::ModuleName, kLoss, "module-name",
     "The library takes module names of at most 57 characters. It cuts longer ones and does not find their files."},
    {CheckKind::LeftOut, kLoss, "left-out", "No message has a place for the node."},
    {CheckKind::LongName, kLoss, "long-name",
     "The library finds names of at most 127 characters. It leaves longer ones out of XML and refuses them in JSON."},
    {CheckKind::DottedName, kLoss, "dotted-name",
     "The library never finds a name with a \".\", which no name in protobuf has. It leaves it out of XML and refuses "
     "it "
     "in JSON."},
    {CheckKind::CaseFields, kLoss, "case-fields",
     "The choices of the message lead to more than 255 messages. The library finds no node of a case here."},
    {CheckKind::DepthName, kLoss, "depth-name",
     "The library also looks for a name with the depth of its layer behind it, and takes another node for this one."},
    {CheckKind::SharedName, kLoss, "shared-name",
     "The library looks for a name in the message first, then in all cases and in the containers and lists of cases, "
     "one after the other, and takes another node for this one."},
    {CheckKind::CaseInList, kLoss, "case-in-list",
     "In a list, the nodes of a case go to the message of an earlier entry that had the same case, unless a container "
     "or list was open between the two."},
    {CheckKind::CasePresence, kLoss, "case-presence",
     "Behind the container, when it stands empty in XML, the library looks for the nodes beside it in its case only."},
    {CheckKind::UnionEmpty, kLoss, "union-empty",
     "An element without content is an empty leaf to the library, which needs a bool. It leaves the empty value out."},
    {CheckKind::JsonLeafList, kLoss, "json-leaf-list",
     "From JSON, the library takes arrays of enumeration values only. It passes over all others without a word."},
    {CheckKind::TopList, kNote, "top-list", "A document has one root, so it holds one entry of the list."},
    {CheckKind::TextEnum, kNote, "text-enum", "The leaf is carried as a text, since an enum would lose values."},
    {CheckKind::Decimal, kNote, "decimal",
     "The leaf may have more than the 15 digits that a double keeps. --decimals string keeps all of them."},
    {CheckKind::EmptyText, kNote, "empty-text",
     "The leaf may be empty. An element without content is left out of what is encoded from XML; in a case, nodes "
     "behind it are then looked for in the case only. JSON carries it."},
    {CheckKind::ValuePrefix, kNote, "value-prefix",
     "The value may have a prefix, which is carried as it stands: what it means is only said in the document."},
    {CheckKind::JsonNumber, kNote, "json-number",
     "A number of JSON is read with 14 digits. As a text, in double quotes, it is exact."},
    {CheckKind::JsonEmpty, kNote, "json-empty",
     "In JSON, the library takes null for the empty leaf. It passes over [null], which other tools write."},
    {CheckKind::JsonNestedList, kNote, "json-nested-list",
     "From XML to JSON, the library puts all entries into one array at the place of the first, whatever entry of the "
     "outer list they belong to."},
    {CheckKind::JsonBits, kNote, "json-bits",
     "From XML to JSON, the library writes the bits as an array with one text, unless it knows the leaf."},
    {CheckKind::TopName, kNote, "top-name",
     "Functions that go by schema path (Gpb_ModuleAdapt_GetFieldHandle, GetEnumList) make another message name of a "
     "\"_\" than the compilers, and find nothing below the node."},
    {CheckKind::Navigation, kNote, "navigation",
     "Functions that go by schema path look for the exact field name, and do not find this one."},
    {CheckKind::EnumList, kNote, "enum-list",
     "The enumeration list that the library gives names values as protobuf does."},
    {CheckKind::LongPath, kNote, "long-path",
     "The path of the element has more than 255 characters. The library does not find it in its tables of identities "
     "and "
     "bits."},
    {CheckKind::ManyLeaves, kNote, "many-leaves",
     "The message has more than 255 leaves, which the library's model attributes cannot count."},
};
static_assert(std::size(kKinds) == static_cast<std::size_t>(CheckKind::Count), "a text for each kind");

} // namespace

const CheckKindInfo &InfoOf(CheckKind kind)
{
    return *std::find_if(std::begin(kKinds), std::end(kKinds),
                         [&](const CheckKindInfo &info) { return info.kind == kind; });
}

} // namespace gpbyang
