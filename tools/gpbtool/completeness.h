/** Whether all of a document got through, and what is said when it did not. */
#ifndef GPBTOOL_COMPLETENESS_H
#define GPBTOOL_COMPLETENESS_H

#include <string>
#include <vector>

#include "console.h"
#include "diagnostics.h"

namespace gpbtool
{

struct Finding
{
    std::string place; /**< line, or line and column */
    std::string text;  /**< what is wrong */
};

struct Completeness
{
    std::string document;
    const char *unit; /**< what is counted, in the singular: "element" */
    bool lenient;     /**< warn instead of failing */
};

/**
 * Fails, or warns where that was asked for, when not all of the document got through.
 *
 * @param findings  what the tool found itself; when it found nothing, what the library complained of counts
 * @throws ToolError (Incomplete)
 */
void JudgeCompleteness(const Completeness &about, const std::vector<Finding> &findings, const Diagnostics &log,
                       Console &console);

} // namespace gpbtool

#endif
