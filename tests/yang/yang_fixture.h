/** A directory with YANG modules, under the checking platform. */
#ifndef GPB_TESTS_YANG_YANG_FIXTURE_H
#define GPB_TESTS_YANG_YANG_FIXTURE_H

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "support/library_fixture.h"
#include "yang/records.h"
#include "yang/schema.h"
#include "yang/yang_error.h"

namespace gpbtest
{

class YangTest : public LibraryFixture
{
protected:
    /** Writes MODULE.yang with that body after its namespace and prefix; returns its path. */
    std::string writeModule(const std::string &module, const std::string &body) const;

    /** Where the modules lie, ending with "/". */
    std::string directory() const { return workPath() + "yang/"; }

    gpbyang::Schema schema(const std::string &module) const { return gpbyang::Schema({directory()}, module); }

    /** The records of a module "m" with that body. */
    std::unique_ptr<gpbyang::RecordTree> records(const std::string &body) const;

    /** "PATH kind=K class=C skip=S: LEAF[key]=ID/MAP ..." for each node. */
    static std::vector<std::string> describe(const gpbyang::RecordTree &tree);
};

/** The fault and the text of the YangError that an action throws; fails the test when it throws none. */
template <typename Action>
std::pair<gpbyang::Fault, std::string> errorOf(const Action &action)
{
    try
    {
        action();
    }
    catch (const gpbyang::YangError &error)
    {
        return {error.Cause(), error.what()};
    }
    ADD_FAILURE() << "no error";
    return {};
}

} // namespace gpbtest

#endif
