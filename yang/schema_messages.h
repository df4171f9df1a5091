/** libyang's messages with the files that they are about, which libyang itself leaves out. */
#ifndef GPB_YANG_SCHEMA_MESSAGES_H
#define GPB_YANG_SCHEMA_MESSAGES_H

#include <libyang/libyang.h>

#include <string>

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

/** Remembers which file libyang reads: lines in its messages are lines of the file that it asked for last. */
class FileTrace
{
public:
    /** Listens to a context; both live as long as each other. */
    explicit FileTrace(ly_ctx &context);
    ~FileTrace();
    FileTrace(const FileTrace &) = delete;
    FileTrace &operator=(const FileTrace &) = delete;

    /** The errors of the context so far, a line each: "FILE:LINE: text", "FILE: text (at /m:path)" or "text". */
    std::string Errors() const;

private:
    static LY_ERR Asked(const char *module, const char *revision, const char *submodule, const char *subRevision,
                        void *self, LYS_INFORMAT *format, const char **text,
                        ly_module_imp_data_free_clb *freeText) noexcept;
    std::string Describe(const ly_err_item &error) const;
    std::string FileOf(const std::string &module) const;

    ly_ctx &context_;
    std::string lastAsked_;
};

} // namespace gpbyang

#endif
