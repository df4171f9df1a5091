/** The documents of a run: given out one by one to threads, and their outcomes collected in the order of the documents.
 */
#ifndef GPBTOOL_DOCUMENT_QUEUE_H
#define GPBTOOL_DOCUMENT_QUEUE_H

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

#include "batch_progress.h"
#include "encode_batch.h"

namespace gpbtool
{

struct Outcome
{
    bool finished = false;
    ExitCode code = ExitCode::Ok;
    EncodedSizes sizes = {0, 0};
    std::string messages;
};

/** Its functions may be called from any thread. */
class DocumentQueue
{
public:
    /** @param plan  outlives the queue */
    explicit DocumentQueue(const BatchPlan &plan);

    /** Encodes documents until none is left. */
    void Work(Session &session, RecordingConsole &messages);

    /** Gives out no more. */
    void Stop();

    /** Waits for the outcome that is next in order, but no longer than `limit`. */
    void Wait(std::chrono::milliseconds limit);

    /** Takes the outcomes that are next in order and finished. */
    std::vector<Outcome> Take();

    bool AllTaken();

    BatchCounts Counts();

private:
    using Clock = std::chrono::steady_clock;

    Outcome Encode(Session &session, RecordingConsole &messages, const std::string &document) const noexcept;
    void Finish(std::size_t index, Outcome outcome);

    const BatchPlan &plan_;
    const Clock::time_point begin_ = Clock::now();
    std::vector<std::uint64_t> fileSizes_;
    std::mutex mutex_;
    std::condition_variable finished_;
    std::vector<Outcome> outcomes_; // this and what follows under mutex_
    std::size_t next_ = 0;          // to be given out
    std::size_t taken_ = 0;
    BatchCounts counts_;
};

} // namespace gpbtool

#endif
