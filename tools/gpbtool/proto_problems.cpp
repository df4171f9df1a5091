#include "proto_problems.h"

#include <google/protobuf/compiler/importer.h>

#include "proto_collector.h"

namespace gpbtool
{

namespace
{

namespace pbc = google::protobuf::compiler;

} // namespace

std::vector<std::string> FindProtoProblems(const std::vector<SearchPlace> &places, const std::string &module)
{
    pbc::DiskSourceTree tree;
    for (const SearchPlace &place : places)
    {
        tree.MapPath("", place.directory);
    }
    ProtoCollector collector;
    pbc::Importer importer(&tree, &collector);
    if (importer.Import(module + ".proto") != nullptr)
    {
        return {};
    }
    return collector.problems;
}

} // namespace gpbtool
