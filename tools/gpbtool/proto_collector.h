/** What protobuf's parser has against a file, as texts. */
#ifndef GPBTOOL_PROTO_COLLECTOR_H
#define GPBTOOL_PROTO_COLLECTOR_H

#include <string>
#include <vector>

#include "core/gpb_protobuf_compat.h"

namespace gpbtool
{

class ProtoCollector : public GpbPbErrorCollector
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

    std::vector<std::string> problems; /**< "file:line:column: message" for each */
};

} // namespace gpbtool

#endif
