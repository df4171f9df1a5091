/** .proto files made of small modules, judged by protobuf, and documents of them carried through the library. */
#ifndef GPB_TESTS_YANG_PROTO_FIXTURE_H
#define GPB_TESTS_YANG_PROTO_FIXTURE_H

#include <memory>
#include <string>
#include <vector>

#include "support/proto_judge.h"
#include "yang/number_lock.h"
#include "yang/proto_builder.h"
#include "yang/proto_writer.h"
#include "yang_fixture.h"

namespace gpbtest
{

/** A document with what the library made of it. */
struct Carried
{
    std::string text;                     /**< the message, in protobuf's single-line text form */
    std::size_t leaves = 0;               /**< values in the document, as libyang sees them */
    std::vector<std::string> differences; /**< between them and the message */
};

class ProtoTest : public YangTest
{
protected:
    /** Makes the file of a module "m" with that body; protobuf has to accept it. */
    std::string proto(const std::string &body, gpbyang::Decimals decimals = gpbyang::Decimals::Double);

    /** As above, without the lines up to the package. */
    std::string messages(const std::string &body, gpbyang::Decimals decimals = gpbyang::Decimals::Double);

    /** Makes the file of a module "m" with that body, with the numbers of `lock`, which is brought up to date. */
    std::string locked(const std::string &body, std::string &lock);

    /** Loads the file of the module "m" of the last call into the library and encodes a document of it. */
    Carried fromXml(const std::string &xml);
    /** The document is XML all the same; libyang makes the JSON of it. */
    Carried fromJson(const std::string &xml);

    /** Names of modules that the next calls have as augmenting ones. */
    std::vector<std::string> m_augmenting;

private:
    Carried carry(const std::string &xml, bool asJson);
    std::string write(const std::string &body, gpbyang::Decimals decimals, gpbyang::NumberLock &lock);

    std::unique_ptr<gpbyang::Schema> m_schema;
    gpbyang::ProtoFile m_file;
    std::string m_text;
};

} // namespace gpbtest

#endif
