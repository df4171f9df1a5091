/** A library context with a module for the JSON compilers, JSON trees, and compilers whose protected parts are open. */
#ifndef GPB_TESTS_COMPILER_JSON_FIXTURE_H
#define GPB_TESTS_COMPILER_JSON_FIXTURE_H

#include <cjson/cJSON.h>
#include <google/protobuf/compiler/importer.h>
#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>
#include <memory>
#include <string>
#include <vector>

#include "gpb_templatelib/gpb_compiler.h"
#include "support/library_fixture.h"
#include "support/proto_judge.h"
#include "support/xml_document.h"

namespace gpbtest
{

/** A JSON tree, freed with its object. */
class JsonTree
{
public:
    /** Parses a text; one that is no JSON fails the test. The root is the first member of the outermost object. */
    explicit JsonTree(const std::string &text) : m_tree(cJSON_Parse(text.c_str()))
    {
        EXPECT_NE(nullptr, m_tree) << text.substr(0, 200);
    }

    ~JsonTree() { cJSON_Delete(m_tree); }

    JsonTree(const JsonTree &) = delete;
    JsonTree &operator=(const JsonTree &) = delete;

    /** The top-level container. */
    cJSON *root() const { return m_tree == nullptr ? nullptr : m_tree->child; }

    /** An item below the root by keys and indexes, "list/0/leaf"; one that is not there fails the test. */
    cJSON *at(const std::string &path) const
    {
        cJSON *item = root();
        size_t begin = 0;
        while (item != nullptr && begin <= path.size())
        {
            const size_t end = std::min(path.find('/', begin), path.size());
            const std::string step = path.substr(begin, end - begin);
            item = cJSON_IsArray(item) != 0 ? cJSON_GetArrayItem(item, std::stoi(step))
                                            : cJSON_GetObjectItemCaseSensitive(item, step.c_str());
            begin = end + 1;
        }
        EXPECT_NE(nullptr, item) << path;
        return item;
    }

private:
    cJSON *m_tree;
};

/** The JSON to GPB compiler with everything that a subclass in a host can reach. */
class OpenJsonCompiler : public GpbJsonCompiler
{
public:
    using GpbJsonCompiler::astStrTrans;
    using GpbJsonCompiler::FillLeafField;
    using GpbJsonCompiler::GPB_CompilerStackPrepare;
    using GpbJsonCompiler::GPB_ConvertDataType;
    using GpbJsonCompiler::GPB_FillLayerMessage;
    using GpbJsonCompiler::GPB_GetItemAncestors;
    using GpbJsonCompiler::GPB_GetItemSerializeLayer;
    using GpbJsonCompiler::GPB_PushItemDescriptor;
    using GpbJsonCompiler::GpbJsonCompiler;
    using GpbJsonCompiler::IterJson;
    using GpbJsonCompiler::ProcJsonContainerNode;
    using GpbJsonCompiler::ProcJsonLeafNode;
    using GpbJsonCompiler::ProcLeafListNode;
    using GpbJsonCompiler::pstLayerMessage;
    using GpbJsonCompiler::pstMessage;
    using GpbJsonCompiler::ucStopOnError;
};

/** The XML to JSON compiler with everything that a subclass in a host can reach. */
class OpenXmlToJsonCompiler : public GpbXmlCompilerJson
{
public:
    using GpbXmlCompilerJson::CreateJsField;
    using GpbXmlCompilerJson::GpbXmlCompilerJson;
    using GpbXmlCompilerJson::mapListNode;
    using GpbXmlCompilerJson::pcResult;
    using GpbXmlCompilerJson::pstJsonRoot;
    using GpbXmlCompilerJson::ucStopOnError;
    using GpbXmlCompilerJson::uiResultLen;
};

/** What an encode gives: its code, and the bytes or text of its result; null without one. */
struct CompilerResult
{
    unsigned int code = 0;
    bool isNull = true;
    std::string bytes;
};

inline CompilerResult takeResult(GpbXmlCompilerBase &compiler, unsigned int code)
{
    CompilerResult result;
    result.code = code;
    unsigned int length = 0xDEAD;
    const char *bytes = compiler.GetResult(&length);
    result.isNull = bytes == nullptr;
    if (bytes != nullptr)
    {
        result.bytes.assign(bytes, length);
    }
    else
    {
        EXPECT_EQ(0u, length) << "a result that is null has length 0";
    }
    return result;
}

class JsonFixture : public LibraryFixture
{
protected:
    /** Makes a module known to the library and to the judge, and loads it; clears the log. */
    void addModule(const std::string &module, const std::string &protoText)
    {
        m_judge.addFile(module + ".proto", protoText);
        writeProto(module, protoText);
        ASSERT_EQ(0u, GPBLIB_ProtobufLoad(context(), module.c_str(), 0));
        log().clear();
    }

    /** A compiler of a class of choice for a module that has been added. */
    template <typename Compiler, typename... Argument>
    std::unique_ptr<Compiler> open(const std::string &module, Argument... argument)
    {
        const google::protobuf::compiler::Importer *importer = GPBLIB_GetImporter(context());
        return std::make_unique<Compiler>(importer->pool()->FindFileByName(module + ".proto"), importer,
                                          static_cast<void *>(context()), argument...);
    }

    const google::protobuf::Descriptor *type(const std::string &fullName)
    {
        const google::protobuf::Descriptor *found =
            GPBLIB_GetImporter(context())->pool()->FindMessageTypeByName(fullName);
        EXPECT_NE(nullptr, found) << fullName;
        return found;
    }

    ProtoJudge &judge() { return m_judge; }

    static std::string serializedLine(size_t length)
    {
        return "1: Gpb compiler Success to serialize, length is " + std::to_string(length) + ".";
    }

    static std::string iterateLine(unsigned int code)
    {
        return "0: Gpb compiler encode fail to iterate json, return " + std::to_string(code) + ".";
    }

    static std::string prepareLine(unsigned int code)
    {
        return "0: Gpb compiler prepare fail " + std::to_string(code) + ".";
    }

    /**
     * Encodes again with a compiler that is no subclass, which need not keep messages that anybody can look at: what
     * comes out, and what is logged, has to be the same. Once more, where nobody listens, the same comes out.
     */
    template <typename Compiler>
    void expectTwin(const std::string &module, const JsonTree &tree, cJSON *item, const Compiler &compiler,
                    const CompilerResult &result, const std::vector<std::string> &lines)
    {
        const auto twin = open<GpbJsonCompiler>(module);
        const unsigned int code = twin->EncodeJson(tree.root(), item);
        EXPECT_EQ(result.code, code);
        const CompilerResult twinResult = code == 0 ? takeResult(*twin, code) : CompilerResult{code, true, ""};
        EXPECT_EQ(result.isNull, twinResult.isNull);
        EXPECT_EQ(result.bytes, twinResult.bytes);
        EXPECT_EQ(joinLines(lines), log().take());
        EXPECT_EQ(compiler.GetEncodeDebugString(), twin->GetEncodeDebugString());
        const ClosedSlots closed(context());
        const auto silent = open<GpbJsonCompiler>(module);
        EXPECT_EQ(code, silent->EncodeJson(tree.root(), item));
        const CompilerResult silentResult = code == 0 ? takeResult(*silent, code) : CompilerResult{code, true, ""};
        EXPECT_EQ(result.isNull, silentResult.isNull);
        EXPECT_EQ(result.bytes, silentResult.bytes);
    }

    /** Encodes a whole document and expects this message and these lines ahead of the one of success. */
    void expectEncodes(const std::string &module, const std::string &json, const std::string &typeName,
                       const std::string &textForm, std::vector<std::string> lines = {})
    {
        SCOPED_TRACE(json.substr(0, 1000));
        const JsonTree tree(json);
        const auto compiler = open<OpenJsonCompiler>(module);
        const CompilerResult result = takeResult(*compiler, compiler->EncodeJson(tree.root(), tree.root()));
        EXPECT_EQ(0u, result.code);
        EXPECT_FALSE(result.isNull);
        EXPECT_TRUE(m_judge.holds(typeName, result.bytes, textForm));
        lines.push_back(serializedLine(result.bytes.size()));
        EXPECT_EQ(joinLines(lines), log().take());
        expectTwin(module, tree, tree.root(), *compiler, result, lines);
    }

    /** Encodes a part of a document and expects the message of the part and these lines ahead of the one of success. */
    void expectPart(const std::string &module, const std::string &json, const std::string &path,
                    const std::string &typeName, const std::string &textForm, std::vector<std::string> lines = {})
    {
        SCOPED_TRACE(path + " of " + json.substr(0, 1000));
        const JsonTree tree(json);
        const auto compiler = open<OpenJsonCompiler>(module);
        const CompilerResult result = takeResult(*compiler, compiler->EncodeJson(tree.root(), tree.at(path)));
        EXPECT_EQ(0u, result.code);
        EXPECT_FALSE(result.isNull);
        EXPECT_TRUE(m_judge.holds(typeName, result.bytes, textForm));
        lines.push_back(serializedLine(result.bytes.size()));
        EXPECT_EQ(joinLines(lines), log().take());
        expectTwin(module, tree, tree.at(path), *compiler, result, lines);
    }

    /** Encodes a document, or a part of it, and expects a code and these lines ahead of the one of the failing walk. */
    void expectFails(const std::string &module, const std::string &json, unsigned int code,
                     std::vector<std::string> lines = {}, const std::string &path = "")
    {
        SCOPED_TRACE(path + " of " + json.substr(0, 1000));
        const JsonTree tree(json);
        const auto compiler = open<OpenJsonCompiler>(module);
        EXPECT_EQ(code, compiler->EncodeJson(tree.root(), path.empty() ? tree.root() : tree.at(path)));
        EXPECT_EQ(nullptr, compiler->pstMessage);
        EXPECT_EQ(nullptr, compiler->pstLayerMessage);
        lines.push_back(iterateLine(code));
        EXPECT_EQ(joinLines(lines), log().take());
        expectTwin(module, tree, path.empty() ? tree.root() : tree.at(path), *compiler, CompilerResult{code, true, ""},
                   lines);
    }

private:
    ProtoJudge m_judge;
};

/** The module of most tests: every kind of field, at the top and one layer below. */
constexpr const char *kPlantProto = R"(
syntax = "proto3";
package plant;
message Plant {
  double ratio = 1;
  float load = 2;
  int64 big = 3;
  uint64 ubig = 4;
  int32 level = 5;
  fixed64 fix64 = 6;
  fixed32 fix32 = 7;
  bool on = 8;
  string first_name = 9;
  bytes blob = 12;
  uint32 count = 13;
  enum State { State_NONE = 0; State_UP = 1; State_X_2G = 2; }
  State state = 14;
  sfixed32 sfix32 = 15;
  sfixed64 sfix64 = 16;
  sint32 zig32 = 17;
  sint64 zig64 = 18;
  repeated State states = 19;
  repeated string names = 20;
  repeated int32 numbers = 21;
  repeated bool flags = 22;
  message Box {
    string label = 1;
    int32 size = 2;
    message Lid { string colour = 1; }
    Lid lid = 3;
    repeated Lid lids = 4;
    repeated string tags = 5;
  }
  Box box = 23;
  repeated Box boxes = 24;
  message Left {
    string left_leaf = 1;
    message Inner { int32 depth = 1; }
    Inner inner = 2;
    enum Side { Side_A = 0; Side_B = 1; }
    repeated Side sides = 3;
  }
  message Right { string right_leaf = 1; bool mark = 2; }
  oneof way { Left left = 25; Right right = 26; string plain = 27; State mode = 28; }
  message Rows {
    message Row { string cell = 1; message Sub { int32 x = 1; } Sub sub = 2; enum E { E_A = 0; } repeated E es = 3; }
    repeated Row row = 1;
  }
  oneof other { Rows rows = 29; }
}
)";

/** A message type that contains itself. */
constexpr const char *kNodeProto = R"(
syntax = "proto3";
package nest;
message Node { Node node = 1; int32 leaf = 2; repeated Node kids = 3; repeated string words = 4; }
)";

} // namespace gpbtest

#endif
