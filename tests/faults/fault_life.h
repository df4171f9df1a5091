/** The scenarios of the fault tests: what a host does from beginning to end, and whether it got what it wanted. */
#ifndef GPB_TESTS_FAULTS_FAULT_LIFE_H
#define GPB_TESTS_FAULTS_FAULT_LIFE_H

#include <cstring>
#include <string>
#include <vector>

#include <cjson/cJSON.h>

#include "gpb_templatelib/gpb_compiler_c.h"
#include "gpb_templatelib/gpb_lib.h"
#include "gpb_templatelib/gpb_template.h"

struct _xmlDoc;

namespace gpbtest
{

/** A module with every kind of node, whose name is kFaultModule, and documents of it. */
extern const char *const kFaultModule;
extern const char *const kFaultProto;
extern const char *const kFaultXml;
extern const char *const kFaultJson;

/** A module whose leaves have identity values, whose name is kIdentityModule. */
extern const char *const kIdentityModule;
extern const char *const kIdentityProto;
extern const char *const kIdentityXml;

/** What a host was given, without memory of its own, so that no fault meets the test. */
struct FaultResult
{
    bool isDone = false;
    uint32_t code = 0;   /**< of the last function that has one */
    size_t length = 0;   /**< of all that was added */
    uint64_t digest = 0; /**< of all that was added */

    void add(const void *bytes, size_t size);
    void add(const char *text) { add(text, std::strlen(text)); }

    bool operator==(const FaultResult &other) const
    {
        return isDone == other.isDone && code == other.code && length == other.length && digest == other.digest;
    }
};

/** kFaultXml without its leaf-list of texts, which protobuf may lose one of when memory fails. */
std::string faultXmlWithoutTexts();

/** A compiler from its making to its end, with one document. A null compiler is a result that is not done. */
FaultResult encodeXml(GpbXmlCompilerBase *compiler, _xmlDoc *document);
FaultResult encodeJson(GpbXmlCompilerBase *compiler, cJSON *root, cJSON *item);
FaultResult listAttributes(GpbLibContext *context, GpbXmlCompilerBase *compiler, cJSON *root, cJSON *item);

/** The first member of that key below an item, at any depth; null when there is none. */
cJSON *findItem(cJSON *root, const std::string &key);

/** A host's records of /top/list with a choice, and the template of its list. */
class FaultRecords
{
public:
    FaultRecords();
    ~FaultRecords();
    FaultRecords(const FaultRecords &) = delete;
    FaultRecords &operator=(const FaultRecords &) = delete;

    const GpbYangNode *target() const { return &m_nodes[1]; }

private:
    static constexpr size_t kNodes = 4;
    GpbYangNode m_nodes[kNodes] = {};
    std::vector<GpbYangLeaf> m_leaves;
};

/** Forgets all templates as an unload does, but keeps the proto files, which the next run uses again. */
void forgetTemplates(GpbLibContext *context);

/** Makes the template from a loaded module of kFaultProto, dumps it and reads the dump back; then forgets it. */
FaultResult generateTemplate(GpbLibContext *context, const char *module, const FaultRecords &records);

} // namespace gpbtest

#endif
