/** One module's way from YANG to bytes and back, with random documents. */
#ifndef GPB_TESTS_MODELS_MODEL_RUN_H
#define GPB_TESTS_MODELS_MODEL_RUN_H

#include <cstdint>
#include <string>
#include <vector>

#include "gpb_templatelib/gpb_lib.h"
#include "models/data_match.h"
#include "yang/check.h"
#include "yang/schema.h"

namespace gpbtest
{

struct RunOptions
{
    std::size_t documents = 4; /**< for each top-level node */
    std::size_t leaves = 200;  /**< about as many for each document */
    std::uint64_t seed = 1;
};

/** What became of the documents in one form with one setting. */
struct FormResult
{
    std::size_t leaves = 0;
    std::size_t lost = 0; /**< at nodes of which `gpbtool check` says so */
    std::vector<std::string> unexplained;
};

/** What became of the documents with one setting, and what the check says about it. */
struct SettingResult
{
    std::size_t losses = 0; /**< nodes that the check names */
    FormResult xml;
    FormResult json;
    FormResult toJson; /**< from XML */
};

struct RunResult
{
    std::size_t documents = 0;
    SettingResult usual;
    SettingResult lossless;
};

/**
 * Makes the module's .proto file in a directory of the context's search path, and carries documents through it, with
 * the context's lossless setting off and on.
 *
 * @throws YangError when the module has no data
 */
RunResult runModel(GpbLibContext *context, const std::string &protoDirectory, const gpbyang::Schema &schema,
                   const RunOptions &options);

} // namespace gpbtest

#endif
