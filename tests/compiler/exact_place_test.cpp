/** Nodes that the default places elsewhere or leaves out, and where the lossless setting has them. */
#include "compiler/exact_fixture.h"

namespace
{

class ExactChoiceTest : public gpbtest::ExactFixture
{
protected:
    void SetUp() override
    {
        ExactFixture::SetUp();
        useDataModule("choice");
    }
};

// ---- the case of an earlier entry ----

TEST_F(ExactChoiceTest, EachListEntryHasACaseOfItsOwn)
{
    const std::string two = "<entry><one>1</one></entry><entry><one>2</one></entry>";
    expectDefault(two, "entry { case_one { one: '2' } } entry {}");
    expectLossless(two, "entry { case_one { one: '1' } } entry { case_one { one: '2' } }");
    const std::string three = "<entry><one>1</one><name>a</name></entry><entry><name>b</name></entry>"
                              "<entry><one>3</one></entry>";
    expectDefault(three, "entry { case_one { one: '3' } name: 'a' } entry { name: 'b' } entry {}");
    expectLossless(three, "entry { case_one { one: '1' } name: 'a' } entry { name: 'b' } "
                          "entry { case_one { one: '3' } }");
    expectBoth("<entry><one>1</one></entry><entry><two>2</two></entry><entry><one>3</one></entry>",
               "entry { case_one { one: '1' } } entry { case_two { two: '2' } } entry { case_one { one: '3' } }");
}

// ---- what stays open behind a node ----

TEST_F(ExactChoiceTest, NothingStaysOpenBehindAnEmptyLeafOfAnotherType)
{
    const std::string content = "<name>before</name><a-leaf/><name>n</name><after>x</after><flag/>";
    expectDefault(content, "name: 'before' case_a { name: 'n' }",
                  {"2: [GpbXmlCompiler][ProcXmlLeafNode]leaf , not expect type 9.",
                   "2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [after] from [choice.Top.case_a].",
                   "2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [] from [choice.Top.case_a]."});
    expectLossless(content, "name: 'n' case_a {} after: 'x' flag: true");
}

TEST_F(ExactChoiceTest, NothingStaysOpenBehindAPresenceContainer)
{
    const std::string content = "<a-box>\n</a-box><name>n</name><after>x</after>";
    expectDefault(content, "case_a { a_box {} name: 'n' }",
                  {"2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [after] from [choice.Top.case_a]."});
    expectLossless(content, "case_a { a_box {} } name: 'n' after: 'x'");
    expectLossless("<holder><a-box/><name>n</name></holder><holder><name>o</name></holder>",
                   "holder { held_a { a_box {} } name: 'o' }");
}

TEST_F(ExactChoiceTest, NothingStaysOpenBehindACaseInACase)
{
    const std::string content = "<deep/><deep-flag/><name>n</name>";
    expectDefault(content, "case_a { case_sub { deep_flag: true } }",
                  {"2: [GpbXmlCompiler][ProcXmlLeafNode]leaf , not expect type 9.",
                   "2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [name] from "
                   "[choice.Top.case_achoice.Top.case_a.case_sub]."});
    expectLossless(content, "case_a { case_sub { deep_flag: true } } name: 'n'");
}

// ---- cases, as both settings place them ----

TEST_F(ExactChoiceTest, LeavesAndContainersOfACase)
{
    expectBoth("<a-leaf>1</a-leaf>", "case_a { a_leaf: '1' }");
    expectBoth("<a-flag/>", "case_a { a_flag: true }");
    expectBoth("<a-box><inside>1</inside></a-box>", "case_a { a_box { inside: '1' } }");
    expectBoth("<a-leaf>1</a-leaf><a-flag/><a-box><inside>2</inside></a-box><a-list><inside>3</inside></a-list>"
               "<a-list><inside>4</inside></a-list><name>n</name>",
               "case_a { a_leaf: '1' a_flag: true a_box { inside: '2' } a_list { inside: '3' } a_list { inside: '4' } }"
               " name: 'n'");
    expectBoth("<deep>1</deep><deep-flag/><a-leaf>2</a-leaf>",
               "case_a { case_sub { deep: '1' deep_flag: true } a_leaf: '2' }");
    expectBoth("<holder><a-leaf>1</a-leaf><name>n</name></holder><name>m</name>",
               "holder { held_a { a_leaf: '1' } name: 'n' } name: 'm'");
}

TEST_F(ExactChoiceTest, LeafOfACaseWithTheNameOfAContainer)
{
    expectBoth("<dual>1</dual>", "case_b { dual: '1' }");
    expectBoth("<dual><x>1</x></dual>", "dual { x: '1' }");
    expectBoth("<dual>1</dual><dual><x>1</x></dual>", "case_b { dual: '1' } dual { x: '1' }");
    expectLossless("<dual/>", "case_b {}");
}

// A leaf whose container is missing belongs nowhere.
TEST_F(ExactChoiceTest, ContainersOfACaseAreNotSearched)
{
    expectDefault("<inside>1</inside>", "case_a { a_box { inside: '1' } }");
    expectLossless("<inside>1</inside>", "",
                   {"2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [inside] from [choice.Top]."});
}

// ---- the last case wins ----

TEST_F(ExactChoiceTest, SwitchesToAnotherCaseAndBack)
{
    expectBoth("<a-leaf>1</a-leaf><b-leaf>2</b-leaf>", "case_b { b_leaf: '2' }");
    expectBoth("<a-leaf>1</a-leaf><b-leaf>2</b-leaf><a-flag/>", "case_a { a_flag: true }");
    expectBoth("<a-leaf>1</a-leaf><text>2</text>", "text: '2'");
    expectBoth("<a-leaf>1</a-leaf><o-flag/><a-flag/>", "case_a { a_flag: true }");
    expectBoth("<deep>1</deep><text>2</text><deep>3</deep>", "case_a { case_sub { deep: '3' } }");
    expectBoth("<a-box><inside>1</inside></a-box><color>red</color><a-leaf>3</a-leaf>", "case_a { a_leaf: '3' }");
    expectBoth("<a-leaf>1</a-leaf><case-b><b-leaf>2</b-leaf></case-b><a-leaf>3</a-leaf>", "case_a { a_leaf: '3' }");
    expectLossless("<entry><one>1</one></entry><entry><one>2</one><two>3</two><one>4</one></entry>",
                   "entry { case_one { one: '1' } } entry { case_one { one: '4' } }");
}

TEST_F(ExactChoiceTest, ACaseByItsOwnName)
{
    expectBoth("<case-b><b-leaf>2</b-leaf></case-b>", "case_b { b_leaf: '2' }");
    expectBoth("<case-b>\n</case-b>", "case_b {}");
    expectLossless("<case-b/>", "case_b {}");
    expectLossless("<entry><case-one><one>1</one></case-one></entry><entry><case-one><one>2</one></case-one></entry>",
                   "entry { case_one { one: '1' } } entry { case_one { one: '2' } }");
}

TEST_F(ExactChoiceTest, ASwitchThatFailsKeepsTheOldCase)
{
    expectBoth(
        "<a-leaf>1</a-leaf><color>blue</color><a-flag/>", "case_a { a_leaf: '1' a_flag: true }",
        {"0: [GpbXmlCompiler][FillLeafField]Fail to translator node [color] value [blue] to layer [choice.Top]."});
    expectBoth("<a-leaf>1</a-leaf><o-flag><x>1</x></o-flag><a-flag/>", "case_a { a_leaf: '1' a_flag: true }",
               {"2: [GpbXmlCompiler][GenerateLayer]Fail to find message type for path choice.Top.o_flag.",
                "0: Create layer failed [o-flag]"});
}

TEST_F(ExactChoiceTest, SwitchesManyTimes)
{
    std::string content;
    for (int i = 0; i < 200; ++i)
    {
        content += "<deep>1</deep><text>t</text><a-box><inside>i</inside></a-box><b-leaf>b</b-leaf><o-flag/>"
                   "<a-list><inside>k</inside></a-list><case-b><b-leaf>c</b-leaf></case-b>";
    }
    expectBoth(content + "<deep>end</deep>", "case_a { case_sub { deep: 'end' } }");
}

// ---- the setting ----

TEST_F(ExactChoiceTest, IsAskedForAtEachEncode)
{
    const std::string content = "<entry><one>1</one></entry><entry><one>2</one></entry>";
    for (int i = 0; i < 3; ++i)
    {
        expectDefault(content, "entry { case_one { one: '2' } } entry {}");
        expectLossless(content, "entry { case_one { one: '1' } } entry { case_one { one: '2' } }");
    }
}

TEST_F(ExactChoiceTest, BelongsToItsContextAlone)
{
    setLossless(true);
    const GpbLibInitParam param = log().initParam(kModuleId);
    GpbLibContext *const other = GPBLIB_Initial(&param);
    ASSERT_EQ(0u, GPBLIB_ProtobufLoad(other, "choice", 0));
    const gpbtest::XmlDocument xml(document("<entry><one>1</one></entry><entry><one>2</one></entry>"));
    GpbXmlCompilerBase *const compiler = GpbXmlCompiler_CreateCompiler(other, "choice");
    unsigned int length = 0;
    unsigned int error = 1;
    const char *const bytes = GpbXmlCompiler_Encode(compiler, xml.get(), &length, &error);
    ASSERT_NE(nullptr, bytes);
    EXPECT_TRUE(judge().holds("choice.Top", std::string(bytes, length), "entry { case_one { one: '2' } } entry {}"));
    GpbXmlCompiler_Destory(compiler);
    GPBLIB_Uninitial(other);
}

// ---- names ----

using ExactNameTest = gpbtest::ExactFixture;

// A leaf-list of another case must never be filled as if it were a container.
TEST_F(ExactNameTest, NamesakesInTwoCases)
{
    useModule("twins",
              "message A { message Item { string x = 1; } repeated Item item = 1; string only_a = 2; }"
              "message B { message Item { string y = 1; } Item item = 1; string only_b = 2; repeated string note = 3; }"
              "message C { message Note { string z = 1; } Note note = 1; }"
              "oneof pick { A a = 1; B b = 2; C c = 3; }");
    expectLossless("<only-a>1</only-a><item><x>2</x></item><item><x>3</x></item>",
                   "a { only_a: '1' item { x: '2' } item { x: '3' } }");
    expectLossless("<note>1</note><note>2</note>", "b { note: '1' note: '2' }");
    expectLossless("<note><z>1</z></note>", "c { note { z: '1' } }");
    expectLossless("<note><z>1</z></note><note>2</note><note>3</note>", "b { note: '2' note: '3' }");
}

// The fields of a list in a case, which the default search comes to first, are not those of the other case.
TEST_F(ExactNameTest, NamesakesOfACaseAndOfAListInAnother)
{
    useModule("lists", "message A { message Entry { string id = 1; string value = 2; } repeated Entry entry = 1; }"
                       "message B { string id = 1; string value = 2; }"
                       "oneof pick { A a = 1; B b = 2; } string value3 = 4;");
    const std::string content = "<id>1</id>";
    expectDefault(content, "a {}", {"0: Gpb compiler leaf choice case node [id] fail."});
    expectLossless(content, "b { id: '1' }");
    expectLossless("<value>1</value>", "b { value: '1' }");
    expectLossless("<entry><id>1</id><value>2</value></entry><entry><id>3</id></entry>",
                   "a { entry { id: '1' value: '2' } entry { id: '3' } }");
}

TEST_F(ExactNameTest, NamesWithDots)
{
    useModule("dots", "message A { string c_d = 1; } string a_b = 1; oneof pick { A in_a = 2; } A x_y = 3;");
    const std::string content = "<a.b>1</a.b><c.d>2</c.d><x.y><c-d>3</c-d></x.y>";
    expectDefault(content, "",
                  {"2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [a.b] from [dots.Top].",
                   "2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [c.d] from [dots.Top].",
                   "0: Can't Find field [x.y]"});
    expectLossless(content, "a_b: '1' in_a { c_d: '2' } x_y { c_d: '3' }");
}

TEST_F(ExactNameTest, LongNames)
{
    const std::string name(128, 'l');
    const std::string longest(1000, 'm');
    useModule("longs", "message Box { string " + longest + " = 1; } string " + name + " = 1; Box " + longest + " = 2;");
    const std::string leaf = "<" + name + ">1</" + name + ">";
    expectDefault(leaf, "",
                  {"2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [" + name + "] from [longs.Top]."});
    expectLossless(leaf, name + ": '1'");
    expectLossless("<" + longest + "><" + longest + ">2</" + longest + "></" + longest + ">",
                   longest + " { " + longest + ": '2' }");
}

TEST_F(ExactNameTest, MoreThan255Cases)
{
    std::string types;
    std::string cases;
    constexpr int kCases = 300;
    for (int i = 1; i <= kCases; ++i)
    {
        const std::string id = std::to_string(i);
        types += "message T" + id + " { string leaf_n" + id + "n = 1; }";
        cases += "T" + id + " c" + id + " = " + id + ";";
    }
    useModule("wide", types + "oneof pick { " + cases + " } string own = 1000;");
    expectDefault("<own>1</own><leaf-n7n>7</leaf-n7n>", "own: '1'",
                  {"2: [GpbXmlCompiler][ProcXmlLeafNode]Fail to find field [leaf-n7n] from [wide.Top]."});
    expectLossless("<own>1</own><leaf-n7n>7</leaf-n7n>", "own: '1' c7 { leaf_n7n: '7' }");
    expectLossless("<leaf-n300n>7</leaf-n300n>", "c300 { leaf_n300n: '7' }");
}

TEST_F(ExactNameTest, ModulesTellNamesakesApart)
{
    useModule("mixed",
              "string name = 1 [json_name = 'base:name']; string name_1 = 2 [json_name = 'more-names:name'];"
              "Box box = 3 [json_name = 'base:box']; Box box_1 = 4 [json_name = 'more-names:box'];",
              "message Box { string x = 1; string x_1 = 2 [json_name = 'more-names:x']; }");
    const std::string content = "<name>1</name><name xmlns='urn:x:more-names'>2</name>"
                                "<box xmlns='urn:x:more-names'><x>3</x></box><box xmlns='http://x.org/base'><x>4</x>"
                                "</box>";
    expectDefault(content, "name: '2' box { x: '4' }");
    expectLossless(content, "name: '1' name_1: '2' box { x: '4' } box_1 { x_1: '3' }");
    expectLossless("<name xmlns='urn:more-names'>1</name>", "name_1: '1'");
    expectLossless("<p:name xmlns:p='x:more-names'>1</p:name><name xmlns='http://x.org/more-names/'>2</name>",
                   "name_1: '1' name: '2'");
    // Children are in the namespace that is declared around them.
    expectLossless("<box xmlns='urn:base'><x>1</x><p:x xmlns:p='urn:more-names'>2</p:x></box>",
                   "box { x: '1' x_1: '2' }");
}

TEST_F(ExactNameTest, ANamesakeOfAnotherModuleInAnEarlierCase)
{
    useModule("base", "message A { string name = 1 [json_name = 'more:name']; string x = 2; }"
                      "message B { string name = 1; string y = 2; } oneof pick { A a = 1; B b = 2; }");
    expectLossless("<y>1</y><name xmlns='urn:base'>2</name>", "b { name: '2' y: '1' }");
    expectLossless("<x>1</x><name xmlns='urn:more'>2</name>", "a { name: '2' x: '1' }");
}

TEST_F(ExactNameTest, NumberOfTheLayerBehindAName)
{
    useModule("depths", "message Box { string name3 = 1; message In { string name4 = 1; } oneof pick { In in = 2; } }"
                        "string name2 = 1; Box box = 2; oneof pick { Box boxed = 3; }");
    expectBoth("<name>1</name><box><name>2</name></box>", "name2: '1' box { name3: '2' }");
    expectLossless("<box><name>1</name></box><box><name>2</name></box>", "box { name3: '2' }");
    expectLossless("<name3>1</name3>", "boxed { name3: '1' }");
    expectLossless("<name4>1</name4>", "boxed { in { name4: '1' } }");
}

// Blanks are the value of a text, or what an empty container is formatted with.
TEST_F(ExactNameTest, BlanksOfAContainerWhoseNameFitsALeafWorse)
{
    useModule("modes", "message Box { string x = 1; } Box mode = 1; int32 mode2 = 2; Box name2 = 3; string name = 4;"
                       "Box flag2 = 5; bool flag = 6;");
    expectLossless("<mode>\n</mode><name>\n</name>", "mode {} name: '\\n'");
    expectLossless("<mode> </mode><name> </name><flag> </flag>", "mode {} name: ' ' flag: true");
    expectLossless("<mode/><name/>", "mode {}");
    expectLossless("<mode>\n2</mode>", "mode2: 2");
    expectLossless("<mode><x>1</x></mode><mode>2</mode>", "mode { x: '1' } mode2: 2");
}

TEST_F(ExactNameTest, CasesThatShareAType)
{
    useModule("shared", "oneof pick { Address source = 1; Address target = 2; } oneof other { Address third = 3; }",
              "message Address { string ip = 1; }");
    expectLossless("<ip>1</ip>", "source { ip: '1' }");
    expectLossless("<target><ip>1</ip></target><third><ip>2</ip></third>", "target { ip: '1' } third { ip: '2' }");
}

TEST_F(ExactNameTest, CaseTypesThatContainThemselves)
{
    useModule("circle", "oneof pick { Case first = 1; Top top = 2; } string own = 3; repeated Top list = 4;",
              "message Case { string leaf = 1; oneof inner { Case again = 2; Other other = 3; } }"
              "message Other { string last = 1; oneof inner { Case back = 2; } repeated Case cases = 3; }");
    expectLossless("<leaf>1</leaf>", "first { leaf: '1' }");
    expectLossless("<last>1</last><own>2</own>", "first { other { last: '1' } } own: '2'");
    expectLossless("<cases><leaf>1</leaf></cases><cases><last>2</last></cases>",
                   "first { other { cases { leaf: '1' } cases { other { last: '2' } } } }");
    expectLossless("<top><list><leaf>1</leaf></list><list><leaf>2</leaf></list></top>",
                   "top { list { first { leaf: '1' } } list { first { leaf: '2' } } }");
}

// ---- lists ----

TEST_F(ExactNameTest, ListsInListsWithCases)
{
    useModule("nested", "message Outer { message Inner { message L { string l = 1; repeated Inner again = 2; }"
                        " message R { string r = 1; } oneof side { L left = 1; R right = 2; } string name = 3; }"
                        " message Some { repeated Inner inner = 1; string note = 2; } oneof pick { Some some = 1; }"
                        " string name = 2; } repeated Outer outer = 1;");
    expectLossless("<outer><name>1</name><inner><l>a</l></inner><inner><r>b</r><name>c</name></inner></outer>"
                   "<outer><inner><l>d</l></inner><note>n</note><inner><l>e</l><again><r>f</r></again>"
                   "<again><l>g</l></again></inner><name>2</name></outer>",
                   "outer { name: '1' some { inner { left { l: 'a' } } inner { right { r: 'b' } name: 'c' } } } "
                   "outer { some { inner { left { l: 'd' } } note: 'n' inner { left { l: 'e' again { right { r: 'f' } }"
                   " again { left { l: 'g' } } } } } name: '2' }");
}

} // namespace
