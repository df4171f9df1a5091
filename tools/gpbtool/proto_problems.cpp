#include "proto_problems.h"

#include <google/protobuf/compiler/importer.h>

#include "core/gpb_protobuf_compat.h"

namespace gpbtool
{

namespace
{

namespace pbc = google::protobuf::compiler;

class Collector : public GpbPbErrorCollector
{
public:
    void Report(const std::string &file, int line, int column, const std::string &message) override
    {
        // Protobuf counts from 0 and uses -1 where a problem has no place.
        std::string where = file;
        if (line >= 0)
        {
            where += ":" + std::to_string(line + 1) + ":" + std::to_string(column + 1);
        }
        problems.push_back(where + ": " + message);
    }

    std::vector<std::string> problems;
};

} // namespace

std::vector<std::string> FindProtoProblems(const std::vector<SearchPlace> &places, const std::string &module)
{
    pbc::DiskSourceTree tree;
    for (const SearchPlace &place : places)
    {
        tree.MapPath("", place.directory);
    }
    Collector collector;
    pbc::Importer importer(&tree, &collector);
    if (importer.Import(module + ".proto") != nullptr)
    {
        return {};
    }
    return collector.problems;
}

} // namespace gpbtool
