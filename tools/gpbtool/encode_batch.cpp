#include "encode_batch.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <system_error>
#include <thread>

#include "batch_progress.h"
#include "core/gpb_protobuf_compat.h"

namespace gpbtool
{

namespace
{

using Clock = std::chrono::steady_clock;

constexpr auto kProgressInterval = std::chrono::milliseconds(100);

struct Outcome
{
    bool finished = false;
    ExitCode code = ExitCode::Ok;
    EncodedSizes sizes = {0, 0};
    std::string messages;
};

/** What is known of a file's size before it is read: 0 for what is no plain file. */
std::uint64_t FileSize(const std::string &path)
{
    std::error_code failed;
    const std::uintmax_t size = std::filesystem::file_size(path, failed);
    return failed ? 0 : size;
}

/** The documents of a run: given out one by one, and collected in their order. */
class Documents
{
public:
    explicit Documents(const BatchPlan &plan) : plan_(plan), outcomes_(plan.documents.size())
    {
        counts_.documents = plan.documents.size();
        for (const std::string &document : plan.documents)
        {
            fileSizes_.push_back(FileSize(document));
            counts_.fileBytes += fileSizes_.back();
        }
    }

    /** Encodes documents until none is left. */
    void Work(Session &session, RecordingConsole &messages)
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

    /** Gives out no more. */
    void Stop()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        next_ = outcomes_.size();
    }

    /** Waits for the outcome that is next in order, for as long as progress may stand still. */
    void Wait()
    {
        std::unique_lock<std::mutex> lock(mutex_);
        finished_.wait_for(lock, kProgressInterval,
                           [this] { return taken_ == outcomes_.size() || outcomes_[taken_].finished; });
    }

    /** Takes the outcomes that are next in order and finished. */
    std::vector<Outcome> Take()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        std::vector<Outcome> taken;
        for (; taken_ < outcomes_.size() && outcomes_[taken_].finished; ++taken_)
        {
            taken.push_back(std::move(outcomes_[taken_]));
        }
        return taken;
    }

    bool AllTaken()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        return taken_ == outcomes_.size();
    }

    BatchCounts Counts()
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        BatchCounts counts = counts_;
        counts.seconds = std::chrono::duration<double>(Clock::now() - begin_).count();
        return counts;
    }

private:
    /** Never throws: a document without outcome would be waited for without end. */
    Outcome Encode(Session &session, RecordingConsole &messages, const std::string &document) const noexcept
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

    void Finish(std::size_t index, Outcome outcome)
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

/** A thread beside the first one, with a context of its own. */
void Help(const BatchPlan &plan, Documents &documents)
{
    try
    {
        RecordingConsole messages;
        Session session(messages, plan.search);
        {
            // The first thread has said already what there is to say about the module.
            const GpbPbLogSilencer silencer;
            session.Load(plan.module);
        }
        messages.Take();
        documents.Work(session, messages);
    }
    catch (const std::exception &)
    {
        // No memory for one more context: the other threads encode the documents.
    }
}

/** Threads that end, and are waited for, with this object. */
class Threads
{
public:
    explicit Threads(Documents &documents) : documents_(documents) {}
    Threads(const Threads &) = delete;
    Threads &operator=(const Threads &) = delete;
    ~Threads()
    {
        documents_.Stop();
        for (std::thread &thread : threads_)
        {
            thread.join();
        }
    }

    /** False when the system gives no further thread. */
    bool Start(const std::function<void()> &work)
    {
        try
        {
            threads_.emplace_back(work);
            return true;
        }
        catch (const std::system_error &)
        {
            return false;
        }
    }

private:
    Documents &documents_;
    std::vector<std::thread> threads_;
};

/** Draws progress as often as it is worth looking at. */
class ProgressDisplay
{
public:
    explicit ProgressDisplay(Console &console) : console_(console) {}

    void Show(const BatchCounts &counts)
    {
        const Clock::time_point now = Clock::now();
        if (now >= next_)
        {
            console_.ShowStatus(ProgressLine(counts));
            next_ = now + kProgressInterval;
        }
    }

private:
    Console &console_;
    Clock::time_point next_;
};

} // namespace

EncodeBatch::EncodeBatch(BatchPlan plan, Console &console) : plan_(std::move(plan)), console_(console)
{
    const auto printMessages = [this]
    {
        const std::string messages = messages_.Take();
        if (!messages.empty())
        {
            console_.Print(messages);
        }
    };
    try
    {
        session_ = std::make_unique<Session>(messages_, plan_.search);
        session_->Load(plan_.module);
    }
    catch (const ToolError &)
    {
        printMessages();
        throw;
    }
    printMessages();
}

ExitCode EncodeBatch::Run()
{
    Documents documents(plan_);
    ProgressDisplay progress(console_);
    progress.Show(documents.Counts());
    Threads threads(documents);
    const std::size_t count = std::min<std::size_t>(plan_.jobs, plan_.documents.size());
    bool started = threads.Start([&] { documents.Work(*session_, messages_); });
    if (!started)
    {
        documents.Work(*session_, messages_);
    }
    for (std::size_t i = 1; i < count && started; ++i)
    {
        started = threads.Start([&] { Help(plan_, documents); });
    }

    ExitCode result = ExitCode::Ok;
    while (!documents.AllTaken())
    {
        documents.Wait();
        progress.Show(documents.Counts());
        for (const Outcome &outcome : documents.Take())
        {
            result = result == ExitCode::Ok ? outcome.code : result;
            if (!outcome.messages.empty())
            {
                console_.Print(outcome.messages);
            }
        }
    }
    console_.Print(Summary(documents.Counts()));
    return result;
}

} // namespace gpbtool
