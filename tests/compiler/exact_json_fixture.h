/** The compilers that read or write JSON in both settings. */
#ifndef GPB_TESTS_COMPILER_EXACT_JSON_FIXTURE_H
#define GPB_TESTS_COMPILER_EXACT_JSON_FIXTURE_H

#include "compiler/json_fixture.h"
#include "gpb_templatelib/gpb_extension.h"

namespace gpbtest
{

/** What an encode comes to: a code, and with code 0 a message. */
struct Outcome
{
    Outcome(const char *form) : textForm(form) {}
    Outcome(const char *form, std::vector<std::string> logLines) : textForm(form), lines(std::move(logLines)) {}
    Outcome(unsigned int failure, std::vector<std::string> logLines) : code(failure), lines(std::move(logLines)) {}

    unsigned int code = 0;
    std::string textForm;
    std::vector<std::string> lines; /**< ahead of the one that every encode ends with */
};

class ExactJsonFixture : public JsonFixture
{
protected:
    void setLossless(bool isOn) { ASSERT_EQ(0u, GPBEXT_SetLossless(context(), isOn ? 1 : 0)); }

    /** Encodes an item with a subclass, which gets messages, and without, which gets records. */
    void expectOutcome(const std::string &setting, const Outcome &outcome, const JsonTree &tree, cJSON *item,
                       const std::string &typeName)
    {
        SCOPED_TRACE(setting);
        log().clear();
        const auto compiler = open<OpenJsonCompiler>(module());
        const unsigned int code = compiler->EncodeJson(tree.root(), item);
        EXPECT_EQ(outcome.code, code);
        CompilerResult result;
        result.code = code;
        std::vector<std::string> lines = outcome.lines;
        if (code == 0)
        {
            result = takeResult(*compiler, code);
            EXPECT_TRUE(judge().holds(typeName, result.bytes, outcome.textForm));
            lines.push_back(serializedLine(result.bytes.size()));
        }
        else
        {
            lines.push_back(iterateLine(code));
        }
        EXPECT_EQ(joinLines(lines), log().take());
        expectTwin(module(), tree, item, *compiler, result, lines);
    }

    virtual std::string module() const { return "wood"; }
};

/** Choices, lists, names and values that the default misplaces or leaves out. */
constexpr const char *kWoodProto = R"(
syntax = "proto3";
package wood;
message Wood {
  message Tree {
    string name = 1;
    message CaseLeafy {
      string leaf_shape = 1;
      bool evergreen = 2;
      repeated string tints = 3;
      message Crown { int32 width = 1; }
      Crown crown = 4;
    }
    message CaseBare {
      int32 thorns = 1;
      message Cone { string colour = 1; int32 height = 2; string leaf_shape = 3; }
      repeated Cone cone = 2;
      message Root { int32 weight = 1; }
      Root root = 3;
      message CaseDeep { string depth_note = 1; repeated string notes = 2; }
      oneof soil { CaseDeep soil_deep = 4; }
    }
    message CaseTall { int32 height = 1; int32 weight = 2; }
    oneof kind { CaseBare kind_bare = 2; CaseLeafy kind_leafy = 3; CaseTall kind_tall = 4; }
    string after = 5;
  }
  repeated Tree tree = 1;
  string v1_2 = 2;
  repeated string names = 3;
  repeated int32 numbers = 4;
  repeated bool marks = 5;
  bool open = 6;
  repeated double ratios = 7;
  int64 big = 8;
  uint64 ubig = 9;
  double exact = 10;
  string text = 11;
  bytes blob = 12;
  enum State { State_NONE = 0; State_UP = 1; State_X_2G = 2; }
  State state = 13;
  repeated State states = 14;
  message Box { string label = 1; Box box = 2; repeated Box boxes = 3; }
  Box box = 15;
  repeated Box boxes = 16;
  string one = 17 [json_name = "pine:size"];
  string two = 18 [json_name = "oak:size"];
  message Den { string one = 1 [json_name = "pine:size"]; string two = 2 [json_name = "oak:size"]; }
  Den den = 19;
  message Nest { Den den = 1; }
  repeated Nest nest = 23;
  repeated bytes blobs = 20;
  message Bush {
    string name = 1;
    message CaseRed { string red_leaf = 1; int32 red_count = 2; message Stem { int32 width = 1; } Stem stem = 3; }
    message CaseBlue { int32 blue_berry = 1; }
    oneof hue { CaseRed hue_red = 2; CaseBlue hue_blue = 3; }
  }
  repeated Bush bush = 22;
  int32 count = 21;
}
)";

} // namespace gpbtest

#endif
