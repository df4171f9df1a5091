#include "support/leaf_rows.h"
#include "support/proto_text.h"
#include "support/workload.h"

namespace gpbbench
{

namespace
{

constexpr size_t CASE_LEAVES = 4;
constexpr size_t LEAVES_SET_AGAIN = 8;

std::string Number(size_t value)
{
    return std::to_string(value);
}

Workload Finish(const std::string &name, const ProtoText &proto, const XmlText &xml)
{
    return {"bench-" + name, proto.Text(), "bench_" + name + ".Table", xml.Text(), xml.Leaves()};
}

// A list of entries in one table, written by `entry(xml, index)` until there are enough leaves.
template <typename WriteEntry>
XmlText WriteTable(size_t leaves, const WriteEntry &entry)
{
    XmlText xml;
    xml.Open("table");
    for (size_t index = 0; xml.Leaves() < leaves; ++index)
    {
        xml.Open("entry");
        entry(xml, index);
        xml.Close("entry");
    }
    xml.Close("table");
    return xml;
}

// The table's own message around what `entry(proto)` declares as message Entry.
template <typename DeclareEntry>
ProtoText DeclareTable(const std::string &name, bool isList, const DeclareEntry &entry)
{
    ProtoText proto("bench_" + name);
    proto.OpenMessage("Table");
    proto.OpenMessage("Entry");
    entry(proto);
    proto.CloseMessage();
    proto.MessageField("entry", "Entry", 1, isList);
    proto.CloseMessage();
    return proto;
}

std::string CaseLeafName(const std::string &caseName, size_t leaf)
{
    return caseName + "-" + LeafName(leaf);
}

void DeclareCaseLeaves(ProtoText &proto, const std::string &caseName)
{
    proto.DeclareEnum();
    for (size_t k = 0; k < CASE_LEAVES; ++k)
    {
        proto.LeafField(CaseLeafName(caseName, k), LeafKindOf(k), static_cast<int>(k + 1));
    }
}

void WriteCaseLeaves(XmlText &xml, const std::string &caseName, size_t seed)
{
    for (size_t k = 0; k < CASE_LEAVES; ++k)
    {
        xml.Leaf(CaseLeafName(caseName, k), LeafKindOf(k), seed);
    }
}

// A choice of messages that `inside(proto, name)` fills; its fields count from `firstNumber`.
template <typename DeclareInside>
void DeclareChoice(ProtoText &proto, const std::string &prefix, size_t cases, int firstNumber,
                   const DeclareInside &inside)
{
    for (size_t i = 0; i < cases; ++i)
    {
        proto.OpenMessage("Case" + Number(i));
        inside(proto, prefix + Number(i));
        proto.CloseMessage();
    }
    proto.OpenChoice("choice");
    for (size_t i = 0; i < cases; ++i)
    {
        proto.MessageField(prefix + Number(i), "Case" + Number(i), static_cast<int>(i) + firstNumber, false);
    }
    proto.CloseChoice();
}

ProtoText DeclareTableOfChoices(const std::string &name, size_t cases, bool isList)
{
    return DeclareTable(name, isList,
                        [&](ProtoText &proto)
                        {
                            proto.LeafField("name", LeafKind::STRING, 1);
                            DeclareChoice(proto, "case-", cases, 2, DeclareCaseLeaves);
                        });
}

} // namespace

Workload MakeWideWorkload(size_t width, size_t present, size_t leaves)
{
    const std::string name = "wide_" + Number(width);
    const ProtoText proto = DeclareTable(name, true, [&](ProtoText &inside) { DeclareLeaves(inside, width); });
    const XmlText xml = WriteTable(leaves,
                                   [&](XmlText &out, size_t index)
                                   {
                                       for (size_t i = 0; i < width; i += width / present)
                                       {
                                           out.Leaf(LeafName(i), LeafKindOf(i), index + i);
                                       }
                                   });
    return Finish(name, proto, xml);
}

Workload MakeChoiceWorkload(size_t cases, size_t leaves)
{
    const std::string name = "choice_" + Number(cases);
    const ProtoText proto = DeclareTableOfChoices(name, cases, true);
    const XmlText xml = WriteTable(leaves,
                                   [&](XmlText &out, size_t index)
                                   {
                                       out.Leaf("name", LeafKind::STRING, index);
                                       WriteCaseLeaves(out, "case-" + Number(index % cases), index);
                                   });
    return Finish(name, proto, xml);
}

Workload MakeNestedChoiceWorkload(size_t cases, size_t leaves)
{
    const std::string name = "nested_" + Number(cases);
    const auto declareInner = [&](ProtoText &proto, const std::string &outer)
    { DeclareChoice(proto, outer + "-inner-", cases, 1, DeclareCaseLeaves); };
    const ProtoText proto = DeclareTable(name, true,
                                         [&](ProtoText &inside)
                                         {
                                             inside.LeafField("name", LeafKind::STRING, 1);
                                             DeclareChoice(inside, "case-", cases, 2, declareInner);
                                         });
    const XmlText xml = WriteTable(leaves,
                                   [&](XmlText &out, size_t index)
                                   {
                                       out.Leaf("name", LeafKind::STRING, index);
                                       const std::string outer = "case-" + Number(index % cases);
                                       const std::string inner = "-inner-" + Number(index / cases % cases);
                                       WriteCaseLeaves(out, outer + inner, index);
                                   });
    return Finish(name, proto, xml);
}

Workload MakeFieldByNameWorkload(size_t width, size_t leaves)
{
    const std::string name = "by_name_" + Number(width);
    const ProtoText proto =
        DeclareTable(name, false,
                     [&](ProtoText &inside)
                     {
                         for (size_t i = 0; i < width; ++i)
                         {
                             inside.LeafField(LeafName(i), LeafKind::UINT32, static_cast<int>(i + 1));
                         }
                     });
    const XmlText xml = WriteTable(1,
                                   [&](XmlText &out, size_t)
                                   {
                                       for (size_t i = 0; out.Leaves() < leaves; ++i)
                                       {
                                           const size_t leaf = i % LEAVES_SET_AGAIN * width / LEAVES_SET_AGAIN;
                                           out.Leaf(LeafName(leaf), LeafKind::UINT32, i);
                                       }
                                   });
    return Finish(name, proto, xml);
}

Workload MakeCaseFieldByNameWorkload(size_t cases, size_t leaves)
{
    const std::string name = "case_by_name_" + Number(cases);
    const ProtoText proto = DeclareTableOfChoices(name, cases, false);
    const XmlText xml = WriteTable(1,
                                   [&](XmlText &out, size_t)
                                   {
                                       while (out.Leaves() < leaves)
                                       {
                                           WriteCaseLeaves(out, "case-" + Number(cases - 1), out.Leaves());
                                       }
                                   });
    return Finish(name, proto, xml);
}

} // namespace gpbbench
