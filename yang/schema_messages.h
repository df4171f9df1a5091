/** Where libyang takes modules from, and its messages with the files that they are about, which it leaves out. */
#ifndef GPB_YANG_SCHEMA_MESSAGES_H
#define GPB_YANG_SCHEMA_MESSAGES_H

#include <libyang/libyang.h>

#include <string>
#include <vector>

namespace gpbyang
{

/** While one lives, libyang keeps its messages instead of writing them to standard error. */
class KeptMessages
{
public:
    KeptMessages() : earlier_(ly_log_options(LY_LOSTORE)) {}
    ~KeptMessages() { ly_log_options(earlier_); }
    KeptMessages(const KeptMessages &) = delete;
    KeptMessages &operator=(const KeptMessages &) = delete;

private:
    std::uint32_t earlier_;
};

/** Gives libyang its files, and so knows which one it reads: lines in its messages are lines of the latest. */
class FileSource
{
public:
    /** Serves a context, which lives longer. `directories` are searched in their order, each with what is below it. */
    FileSource(ly_ctx &context, std::vector<std::string> directories);
    ~FileSource();
    FileSource(const FileSource &) = delete;
    FileSource &operator=(const FileSource &) = delete;

    /**
     * The errors of the context so far, a line each: "FILE:LINE: text", "FILE: text (at /m:path)" or "text". A file
     * whose lack is among them comes first.
     */
    std::string Errors() const;

private:
    struct File
    {
        std::string path; /**< empty: there is none */
        LYS_INFORMAT format = LYS_IN_UNKNOWN;
    };

    static LY_ERR Give(const char *module, const char *revision, const char *submodule, const char *subRevision,
                       void *self, LYS_INFORMAT *format, const char **text, ly_module_imp_data_free_clb *freeText);
    File Find(const std::string &module, const char *revision) const;
    std::string Describe(const ly_err_item &error) const;

    ly_ctx &context_;
    std::vector<std::string> directories_;
    std::string latest_;  /**< path of the file given last */
    std::string missing_; /**< name of the module last asked for in vain */
};

} // namespace gpbyang

#endif
