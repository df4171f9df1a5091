/** The print slots of the library: what it says is shown by level, counted, and its last failure remembered. */
#ifndef GPBTOOL_DIAGNOSTICS_H
#define GPBTOOL_DIAGNOSTICS_H

#include <cstdint>
#include <string>

#include "console.h"
#include "gpb_templatelib/gpb_lib.h"

namespace gpbtool
{

/**
 * How much of the library's diagnostics is shown: failures always, then with each step one level more.
 *
 * | verbosity | levels shown                                  |
 * |-----------|-----------------------------------------------|
 * | 0         | 0 failures                                    |
 * | 1 (-v)    | and 2, parts of a document that were skipped  |
 * | 2 (-vv)   | and 1, progress                               |
 * | 3 (-vvv)  | and 3, the encoded message as text            |
 */
class Diagnostics
{
public:
    Diagnostics(Console &console, int verbosity);
    ~Diagnostics();
    Diagnostics(const Diagnostics &) = delete;
    Diagnostics &operator=(const Diagnostics &) = delete;

    /** Fills handle and print slots. The callbacks reach this object, so it must outlive the context. */
    void Connect(GpbLibInitParam &param);

    /** Shows failures only from `-v` on: for callers that report them in their own way. */
    void SetQuiet(bool quiet) { quiet_ = quiet; }

    int Verbosity() const { return verbosity_; }

    /** Forgets counts and the last failure. */
    void Reset();

    /** Failures and skipped parts since the last Reset. */
    std::uint64_t Problems() const { return problems_; }

    /** The library's last failure message since the last Reset; empty if there was none. */
    const std::string &LastFailure() const { return lastFailure_; }

private:
    static std::uint32_t Print(std::uint32_t handle, std::uint32_t level, const char *tag, const char *text);
    void Take(std::uint32_t level, const char *text);
    bool Shown(std::uint32_t level) const;

    Console &console_;
    int verbosity_;
    bool quiet_ = false;
    std::uint64_t problems_ = 0;
    std::string lastFailure_;
};

} // namespace gpbtool

#endif
