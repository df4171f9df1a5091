#include "document_queue.h"

#include <filesystem>

namespace gpbtool
{

namespace
{

/** What is known of a file's size before it is read: 0 for what is no plain file. */
std::uint64_t FileSize(const std::string &path)
{
    std::error_code failed;
    const std::uintmax_t size = std::filesystem::file_size(path, failed);
    return failed ? 0 : size;
}

} // namespace

DocumentQueue::DocumentQueue(const BatchPlan &plan) : plan_(plan), outcomes_(plan.documents.size())
{
    counts_.documents = plan.documents.size();
    for (const std::string &document : plan.documents)
    {
        fileSizes_.push_back(FileSize(document));
        counts_.fileBytes += fileSizes_.back();
    }
}

void DocumentQueue::Work(Session &session, RecordingConsole &messages)
{
    for (;;)
    {
        std::unique_lock<std::mutex> lock(mutex_);
        if (next_ == outcomes_.size())
        {
            return;
        }
        const std::size_t index = next_++;
        lock.unlock();
        Outcome outcome = Encode(session, messages, plan_.documents[index]);
        lock.lock();
        Finish(index, std::move(outcome));
    }
}

void DocumentQueue::Stop()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    next_ = outcomes_.size();
}

void DocumentQueue::Wait(std::chrono::milliseconds limit)
{
    std::unique_lock<std::mutex> lock(mutex_);
    finished_.wait_for(lock, limit, [this] { return taken_ == outcomes_.size() || outcomes_[taken_].finished; });
}

std::vector<Outcome> DocumentQueue::Take()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    std::vector<Outcome> taken;
    for (; taken_ < outcomes_.size() && outcomes_[taken_].finished; ++taken_)
    {
        taken.push_back(std::move(outcomes_[taken_]));
    }
    return taken;
}

bool DocumentQueue::AllTaken()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    return taken_ == outcomes_.size();
}

BatchCounts DocumentQueue::Counts()
{
    const std::lock_guard<std::mutex> lock(mutex_);
    BatchCounts counts = counts_;
    counts.seconds = std::chrono::duration<double>(Clock::now() - begin_).count();
    return counts;
}

/** Never throws: a document without outcome would be waited for without end. */
Outcome DocumentQueue::Encode(Session &session, RecordingConsole &messages, const std::string &document) const noexcept
{
    Outcome outcome;
    try
    {
        try
        {
            outcome.sizes = plan_.encode(session, messages, document);
        }
        catch (const ToolError &error)
        {
            outcome.code = error.Code();
            messages.Error(error);
        }
        catch (const std::exception &error)
        {
            outcome.code = ExitCode::Internal;
            messages.Error(ToolError(outcome.code, document + ": not encoded: " + error.what(),
                                     "is there enough memory for that many threads? --jobs 1 needs least"));
        }
        outcome.messages = messages.Take();
    }
    catch (const std::exception &)
    {
        // There was no memory for the message; the count of failures tells of it.
        outcome.code = ExitCode::Internal;
    }
    return outcome;
}

void DocumentQueue::Finish(std::size_t index, Outcome outcome)
{
    outcome.finished = true;
    ++counts_.finished;
    counts_.failed += outcome.code == ExitCode::Ok ? 0 : 1;
    counts_.bytesIn += outcome.sizes.in;
    counts_.bytesOut += outcome.sizes.out;
    counts_.finishedBytes += fileSizes_[index];
    outcomes_[index] = std::move(outcome);
    finished_.notify_one();
}

} // namespace gpbtool
