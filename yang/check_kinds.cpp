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
    {CheckKind::ModuleName, "module-name", kLoss,
     "The library takes module names of at most 57 characters. It cuts longer ones and does not find their files."},
    {CheckKind::LeftOut, "left-out", kLoss, "No message has a place for the node."},
    {CheckKind::LongName, "long-name", kLoss,
     "The library finds names of at most 127 characters. It leaves longer ones out of XML and refuses them in JSON."},
    {CheckKind::DottedName, "dotted-name", kLoss,
     "The library never finds a name with a \".\", which no name in protobuf has. It leaves it out of XML and refuses "
     "it "
     "in JSON."},
    {CheckKind::CaseFields, "case-fields", kLoss,
     "The choices of the message lead to more than 255 messages. The library finds no node of a case here."},
    {CheckKind::DepthName, "depth-name", kLoss,
     "The library also looks for a name with the depth of its layer behind it, and takes another node for this one."},
    {CheckKind::SharedName, "shared-name", kLoss,
     "The library looks for a name in the message first, then in all cases and in the containers and lists of cases, "
     "one after the other, and takes another node for this one."},
    {CheckKind::CaseInList, "case-in-list", kLoss,
     "In a list, the nodes of a case go to the message of an earlier entry that had the same case, unless a container "
     "or list was open between the two."},
    {CheckKind::CasePresence, "case-presence", kLoss,
     "Behind the container, when it stands empty in XML, the library looks for the nodes beside it in its case only."},
    {CheckKind::UnionEmpty, "union-empty", kLoss,
     "An element without content is an empty leaf to the library, which needs a bool. It leaves the empty value out."},
    {CheckKind::JsonLeafList, "json-leaf-list", kLoss,
     "From JSON, the library takes arrays of enumeration values only. It passes over all others without a word."},
    {CheckKind::TopList, "top-list", kNote, "A document has one root, so it holds one entry of the list."},
    {CheckKind::TextEnum, "text-enum", kNote, "The leaf is carried as a text, since an enum would lose values."},
    {CheckKind::Decimal, "decimal", kNote,
     "The leaf may have more than the 15 digits that a double keeps. --decimals string keeps all of them."},
    {CheckKind::EmptyText, "empty-text", kNote,
     "The leaf may be empty. An element without content is left out of what is encoded from XML; in a case, nodes "
     "behind it are then looked for in the case only. JSON carries it."},
    {CheckKind::ValuePrefix, "value-prefix", kNote,
     "The value may have a prefix, which is carried as it stands: what it means is only said in the document."},
    {CheckKind::JsonNumber, "json-number", kNote,
     "A number of JSON is read with 14 digits. As a text, in double quotes, it is exact."},
    {CheckKind::JsonEmpty, "json-empty", kNote,
     "In JSON, the library takes null for the empty leaf. It passes over [null], which other tools write."},
    {CheckKind::JsonNestedList, "json-nested-list", kNote,
     "From XML to JSON, the library puts all entries into one array at the place of the first, whatever entry of the "
     "outer list they belong to."},
    {CheckKind::JsonBits, "json-bits", kNote,
     "From XML to JSON, the library writes the bits as an array with one text, unless it knows the leaf."},
    {CheckKind::TopName, "top-name", kNote,
     "Functions that go by schema path (Gpb_ModuleAdapt_GetFieldHandle, GetEnumList) make another message name of a "
     "\"_\" than the compilers, and find nothing below the node."},
    {CheckKind::Navigation, "navigation", kNote,
     "Functions that go by schema path look for the exact field name, and do not find this one."},
    {CheckKind::EnumList, "enum-list", kNote,
     "The enumeration list that the library gives names values as protobuf does."},
    {CheckKind::LongPath, "long-path", kNote,
     "The path of the element has more than 255 characters. The library does not find it in its tables of identities "
     "and "
     "bits."},
    {CheckKind::ManyLeaves, "many-leaves", kNote,
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
