#include "yang/numbering.h"

#include "yang_fixture.h"

namespace
{

class Numbering : public gpbtest::YangTest
{
};

TEST_F(Numbering, ClassesAndFieldsCountFromOneAndChoicesStayZero)
{
    const auto tree = records(R"(
        container top { leaf a { type string; }
            list row { key k; leaf v { type string; } leaf k { type string; } }
            choice way { case one { leaf x { type string; } leaf y { type string; } } case two { leaf z { type string; } } } }
        container other { leaf b { type string; } })");
    gpbyang::NumberByRule(*tree);
    EXPECT_EQ(describe(*tree), (std::vector<std::string>{
                                   "/top kind=0 class=1 a=1/0",
                                   "/top/row kind=0 class=2 k*=1/0 v=2/0",
                                   "/top/way kind=1 class=0",
                                   "/top/way/one kind=2 class=3 x=1/0 y=2/0",
                                   "/top/way/two kind=2 class=4 z=1/0",
                                   "/other kind=0 class=5 b=1/0",
                               }));
}

} // namespace
