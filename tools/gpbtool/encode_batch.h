/** Many documents on several threads, with a library context on each. */
#ifndef GPBTOOL_ENCODE_BATCH_H
#define GPBTOOL_ENCODE_BATCH_H

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "console.h"
#include "exit_codes.h"
#include "recording_console.h"
#include "session.h"

namespace gpbtool
{

/** Sizes of a document and of what was written for it, in bytes. */
struct EncodedSizes
{
    std::uint64_t in;
    std::uint64_t out;
};

struct BatchPlan
{
    SearchOptions search; /**< completed */
    std::string module;
    std::vector<std::string> documents;
    unsigned int jobs; /**< threads, at most */

    /** Encodes and writes one document; called from several threads, for different documents. Failures are thrown. */
    std::function<EncodedSizes(Session &, Console &, const std::string &document)> encode;
};

/**
 * A run over documents. What it writes, says and returns does not depend on the number of threads: the messages of a
 * document come together, and those of different documents in the order of the documents.
 */
class EncodeBatch
{
public:
    /** Loads the module. @throws ToolError (Module, Internal) */
    EncodeBatch(BatchPlan plan, Console &console);

    /**
     * Encodes all documents; one that fails is reported and does not keep the others from being written. Shows
     * progress, and a summary at the end.
     *
     * @return code of the first document that failed, in their order
     */
    ExitCode Run();

private:
    BatchPlan plan_;
    Console &console_;
    RecordingConsole messages_; /**< of the first thread; outlives its session */
    std::unique_ptr<Session> session_;
};

} // namespace gpbtool

#endif
