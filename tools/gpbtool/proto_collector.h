/** What protobuf's parser has against a file, as texts. */
#ifndef GPBTOOL_PROTO_COLLECTOR_H
#define GPBTOOL_PROTO_COLLECTOR_H

#include <google/protobuf/compiler/importer.h>

#include <string>
#include <vector>

namespace gpbtool
{

class ProtoCollector : public google::protobuf::compiler::MultiFileErrorCollector
{
public:
    void AddError(const std::string &file, int line, int column, const std::string &message) override
    {
        // Protobuf counts from 0 and uses -1 where a problem has no place.
        std::string where = file;
        if (line >= 0)
        {
            where += ":" + std::to_string(line + 1) + ":" + std::to_string(column + 1);
        }
        problems.push_back(where + ": " + message);
    }

    std::vector<std::string> problems; /**< "file:line:column: message" for each */
};

} // namespace gpbtool

#endif
