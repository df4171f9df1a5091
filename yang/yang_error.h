/** The one exception of this library: what cannot be used, and where. */
#ifndef GPB_YANG_YANG_ERROR_H
#define GPB_YANG_YANG_ERROR_H

#include <stdexcept>
#include <string>

namespace gpbyang
{

/** What cannot be used. */
enum class Fault
{
    Module, /**< the module, or one that it needs, is not found or does not load */
    NoData, /**< the module has nothing that a document could hold */
    Path,   /**< a path does not lead to a node */
    Ids,    /**< the map of ids is malformed, or does not fit the module */
    Lock,   /**< the lock file is malformed, or belongs to another module */
};

class YangError : public std::runtime_error
{
public:
    /** @param what  "place: what is wrong", may have several lines */
    YangError(Fault fault, const std::string &what) : std::runtime_error(what), fault_(fault) {}

    Fault Cause() const { return fault_; }

private:
    Fault fault_;
};

} // namespace gpbyang

#endif
