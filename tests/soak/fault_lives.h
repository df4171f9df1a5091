/** A host's whole lives, in each of which one service or one allocation fails. */
#ifndef GPB_TESTS_SOAK_FAULT_LIVES_H
#define GPB_TESTS_SOAK_FAULT_LIVES_H

#include <cstdint>
#include <string>

#include "faults/fault_life.h"
#include "gpb_templatelib/gpb_limits.h"
#include "soak/inputs.h"
#include "support/temp_directory.h"

namespace gpbsoak
{

class FaultLives
{
public:
    FaultLives();
    ~FaultLives();
    FaultLives(const FaultLives &) = delete;
    FaultLives &operator=(const FaultLives &) = delete;

    /** What a host does with a loaded module. */
    enum Use : uint32_t
    {
        kXmlToGpb,
        kXmlToJson,
        kJsonToGpb,
        kJsonListToGpb,
        kJsonLeafToGpb,
        kAttributes,
        kTemplate,
        kUseCount
    };

    /** A life without faults, then one with any platform call failing, from the context's making to its end. */
    void failPlatform(Use use, Random &random);

    /**
     * A life in which any allocation of the process, of libxml2 or of cJSON fails while the module is used. Not while
     * it loads: protobuf's parser of proto files does not survive that.
     */
    void failMemory(Use use, Random &random);

    uint64_t faults() const { return m_faults; }
    uint64_t documents() const { return m_documents; }
    uint64_t modules() const { return m_modules; }
    uint64_t templates() const { return m_templates; }

private:
    GpbLibContext *createContext() const;
    gpbtest::FaultResult use(GpbLibContext *context, Use use);
    gpbtest::FaultResult live(Use use);

    gpbtest::TempDirectory m_work;
    std::string m_installPath;
    const std::string m_templateModule = std::string(GPB_PROTO_FILE_NAME_SIZE, 'm'); ///< long, so that it needs memory
    gpbtest::FaultRecords m_records;
    _xmlDoc *m_xml;
    cJSON *m_json;
    uint64_t m_faults = 0;
    uint64_t m_documents = 0;
    uint64_t m_modules = 0;
    uint64_t m_templates = 0;
};

} // namespace gpbsoak

#endif
