/**
 * What comes of each failing call: runs a life once, and then once per call of each service with that call failing.
 *
 * Every run has to leave the ledger as it was and the context as good as it was: the life after it gives the result and
 * the log of the first one again. What the failing run itself gave is told as text, to be compared with what is
 * documented.
 */
#ifndef GPB_TESTS_FAULTS_FAULT_OUTCOMES_H
#define GPB_TESTS_FAULTS_FAULT_OUTCOMES_H

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

#include "faults/fault_life.h"
#include "support/library_fixture.h"

namespace gpbtest
{

class FaultOutcomes : public LibraryFixture
{
protected:
    using Life = std::function<FaultResult()>;

    /**
     * Expects these outcomes, one text per service and outcome, in the order of gpb_host.h:
     * "SERVICE K[,K...]: RESULT[; FILE[:LINE] asserted...][; -LINE][; N lines gone][; +LINE...]".
     *
     * K: which call of the service fails, "1-3" for several in a row. RESULT: "same" as without fault, "other bytes",
     * or "none, code N". -LINE, N lines gone and +LINE: what the log lacks and what it has instead; "a line is empty"
     * when that is all. Of a line with line feeds only the first part counts: what follows is protobuf's.
     */
    void expectOutcomes(const Life &life, const std::vector<std::string> &expected);

    /** What can be failed: a service, or a callback of the host. */
    struct Service
    {
        std::string name;
        std::function<uint64_t()> callCount;
        std::function<void(uint64_t)> failCall; /**< the n-th call from now; 0 takes the order back */
    };

    /** As expectOutcomes, for one service or callback. */
    void expectOutcomesOf(const std::vector<Service> &services, const Life &life,
                          const std::vector<std::string> &expected);

private:
    struct Run
    {
        FaultResult result;
        std::vector<std::string> lines;
        std::vector<std::string> asserts;
    };

    Run run(const Life &life);
    std::vector<std::string> outcomesOf(const Service &service, const Run &good, const Life &life);
    static std::string tell(const Run &good, const Run &bad);
};

} // namespace gpbtest

#endif
