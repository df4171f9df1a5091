#include "encode_batch.h"

#include <algorithm>
#include <chrono>
#include <system_error>
#include <thread>

#include "core/gpb_protobuf_compat.h"
#include "document_queue.h"

namespace gpbtool
{

namespace
{

using Clock = std::chrono::steady_clock;

constexpr auto kProgressInterval = std::chrono::milliseconds(100);

/** A thread beside the first one, with a context of its own. */
void Help(const BatchPlan &plan, DocumentQueue &documents)
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
    explicit Threads(DocumentQueue &documents) : documents_(documents) {}
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
    DocumentQueue &documents_;
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
    DocumentQueue documents(plan_);
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
        documents.Wait(kProgressInterval);
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
