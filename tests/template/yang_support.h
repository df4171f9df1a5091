/** A host for template tests: its YANG tree, its mapping callbacks, and a module whose proto file is loaded. */
#ifndef GPB_TESTS_TEMPLATE_YANG_SUPPORT_H
#define GPB_TESTS_TEMPLATE_YANG_SUPPORT_H

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "gpb_templatelib/gpb_template.h"
#include "support/library_fixture.h"
#include "tree_support.h"

namespace gpbtest
{

/** The host's records, with their names and vectors. */
class YangTree
{
public:
    YangTree() = default;
    ~YangTree();
    YangTree(const YangTree &) = delete;
    YangTree &operator=(const YangTree &) = delete;

    /** Adds a node, the last child of `parent` (null: a top node). */
    GpbYangNode *node(GpbYangNode *parent, const std::string &name, uint32_t classId, uint8_t kind = 0);

    /** Adds a leaf to a node, which gets a leaf vector with its first one. */
    GpbYangLeaf *leaf(GpbYangNode *node, const std::string &name, uint32_t fieldId, uint32_t isKey = 0,
                      uint32_t mapFieldId = 0);

    /** Gives a node an empty leaf vector. */
    void emptyLeafVector(GpbYangNode *node);

    /** Releases the leaf vectors; the tree must not be used any more. */
    void clear();

private:
    std::deque<GpbYangNode> m_nodes;
    std::deque<GpbYangLeaf> m_leaves;
    std::deque<std::string> m_names;
    std::vector<VecVector *> m_vectors;
};

/** What the callbacks of a context were asked, and what they answer. There is one per process. */
class MappingHost
{
public:
    static constexpr uint32_t kArg = 0xCAFE;

    MappingHost();
    ~MappingHost();

    /** Answers of the class-map callback: the key, whether it is an index key, and the output to fill. */
    std::function<uint32_t(bool isIndex, const GpbCidFid &key, GpbCidFid *out)> onClass;

    /** Answers of the field-name-map callback; the name is null for the whole notification. */
    std::function<uint32_t(const char *name, GpbCidFid *out)> onName;

    /** The questions, as "index 0xC.F", "dom 0xC.F", "name N" and "notification". */
    std::vector<std::string> asked;

    static uint32_t classMap(uint32_t arg, const GpbCidFid *indexKey, const GpbCidFid *domKey, GpbCidFid *out);
    static uint32_t nameMap(uint32_t arg, const char *name, GpbCidFid *out);

private:
    static MappingHost *s_current;
};

/**
 * A test with the module "ifm" loaded and its YANG tree /ifm/interfaces/interface with a choice "mode" of the cases
 * "access" and "trunk". The log is empty when the test begins.
 */
class TemplateFixture : public LibraryFixture
{
protected:
    void SetUp() override;
    void TearDown() override;

    /** Loads a module from a proto text; the log is empty afterwards. */
    void load(const std::string &module, const std::string &proto);

    /** The file descriptor of a loaded module. */
    const google::protobuf::FileDescriptor *file(const std::string &module) const;

    /** A message of the module "ifm" by its full name. */
    const google::protobuf::Descriptor *message(const std::string &name) const;

    /** A field of ifm.Ifm.Interfaces.Interface. */
    const google::protobuf::FieldDescriptor *field(const std::string &name) const;

    void useClassMap();
    void useNameMap();

    /** Makes the template of a node of module "ifm" with the path "/p". */
    uint32_t update(const GpbYangNode *node) const;

    /** The stored tree of a class as one line; "none" when there is no template. */
    std::string stored(uint32_t classId) const;

    YangTree m_yang;
    MappingHost m_host;
    GpbYangNode *m_ifm = nullptr;        // class 0x10
    GpbYangNode *m_interfaces = nullptr; // class 0x20
    GpbYangNode *m_interface = nullptr;  // class 0x30
};

} // namespace gpbtest

#endif
