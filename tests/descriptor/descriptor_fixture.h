/** What the tests of the descriptor services share: descriptors from inline `.proto` texts, and their names. */
#ifndef GPB_TESTS_DESCRIPTOR_DESCRIPTOR_FIXTURE_H
#define GPB_TESTS_DESCRIPTOR_DESCRIPTOR_FIXTURE_H

#include <string>
#include <vector>

#include <google/protobuf/descriptor.h>
#include <gtest/gtest.h>

#include "gpb_templatelib/gpb_descriptor.h"
#include "support/platform_fixture.h"
#include "support/proto_judge.h"
#include "support/text_lines.h"

namespace gpbtest
{

/** Full name of a descriptor; "(null)" for none. */
template <typename Descriptor>
std::string nameOf(const Descriptor *descriptor)
{
    return descriptor == nullptr ? "(null)" : descriptor->full_name();
}

class DescriptorFixture : public PlatformFixture
{
protected:
    using Message = google::protobuf::Descriptor;
    using Field = google::protobuf::FieldDescriptor;

    /** Adds a proto3 file of that text, once per test. */
    void addProto(const std::string &text) { m_judge.addFile("m.proto", "syntax = 'proto3'; " + text); }
    void addProto2(const std::string &text) { m_judge.addFile("m.proto", "syntax = 'proto2'; " + text); }

    const Message *message(const std::string &name) const
    {
        const Message *const found = m_judge.findType(name);
        EXPECT_NE(nullptr, found) << name;
        return found;
    }

    /** What a search found, as "FIELD", or "FIELD by CASE_FIELD" where it wrote the case field. */
    static std::string found(const Field *field, const Field *caseField)
    {
        return nameOf(field) + (caseField == nullptr ? "" : " by " + nameOf(caseField));
    }

    std::string findNode(const std::string &in, const std::string &node, int32_t layer = 1) const
    {
        const Field *caseField = nullptr;
        const Field *const field = GPB_FindFieldDescByNodeName(message(in), node.c_str(), layer, &caseField);
        return found(field, caseField);
    }

    std::string findLeaf(const std::string &in, const std::string &node, int32_t layer = 1) const
    {
        const Field *caseField = nullptr;
        const Field *const field = GPB_GetLeafFieldDescByNodeName(node.c_str(), message(in), layer, &caseField);
        return found(field, caseField);
    }

    std::string findInCases(const std::string &in, const std::string &name, int32_t layer = 1) const
    {
        const Field *caseField = nullptr;
        const Field *const field = GPB_GetFieldDescByOneof(name.c_str(), message(in), layer, &caseField);
        return found(field, caseField);
    }

private:
    ProtoJudge m_judge;
};

} // namespace gpbtest

#endif
