#include "json_fixture.h"

namespace gpbtest
{

namespace
{

constexpr const char *kModule = R"(syntax = "proto3";
package j;
message Top {
    enum Color { Color_RED = 0; Color_UPX_2 = 1; Color_X_10G = 2; }
    message Box {
        message Lid { optional string shape = 1; }
        optional string name = 1;
        optional int32 size = 2;
        Lid lid = 3;
    }
    message Level { Level level = 1; optional string name = 2; repeated Level levels = 3; }
    message Wired {
        message Plug { optional uint32 pins = 1; }
        optional string cable = 1;
        Plug plug = 2;
    }
    optional string name = 1;
    optional int32 i32 = 2;
    optional uint32 u32 = 3;
    optional int64 i64 = 4;
    optional uint64 u64 = 5;
    optional double real = 6;
    optional float small_real = 7;
    optional bool flag = 8;
    optional Color color = 9;
    repeated Color colors = 10;
    repeated Box box = 11;
    Box presence = 12;
    Level level = 13;
    optional bytes raw = 14;
    repeated string tags = 15;
    repeated uint32 numbers = 16;
    oneof link { Wired wired = 17; }
    optional int32 renamed_leaf = 18 [json_name = "OwnName"];
}
)";

} // namespace

JsonToolTest::JsonToolTest()
{
    writeModule("j", kModule);
}

ProcessResult JsonToolTest::encodeJson(const std::string &json, const std::vector<std::string> &more) const
{
    std::vector<std::string> arguments = {"--text"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return run("encode", write("doc.json", json), arguments);
}

ProcessResult JsonToolTest::run(const std::string &command, const std::string &document,
                                const std::vector<std::string> &more) const
{
    std::vector<std::string> arguments = {"--module", "j", document};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return tool(command, arguments);
}

} // namespace gpbtest
