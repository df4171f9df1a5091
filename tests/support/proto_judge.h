/**
 * Judges encoded messages with protobuf alone: its own parser reads the `.proto` text, its own reader the bytes, and
 * nothing of the library under test takes part.
 *
 *     ProtoJudge judge;
 *     judge.addFile("m.proto", protoText);
 *     EXPECT_TRUE(judge.holds("pkg.Top", bytes, "leaf: 3 list { name: 'a' }"));
 */
#ifndef GPB_TESTS_SUPPORT_PROTO_JUDGE_H
#define GPB_TESTS_SUPPORT_PROTO_JUDGE_H

#include <memory>
#include <string>

#include <google/protobuf/descriptor.h>
#include <google/protobuf/dynamic_message.h>
#include <gtest/gtest.h>

namespace gpbtest
{

class ProtoJudge
{
public:
    /** Adds a file; files that it imports come first. A text with errors fails the test. */
    void addFile(const std::string &name, const std::string &text);

    /**
     * Whether bytes hold exactly this message and no unknown field. Members compare by value, so a text stands for what
     * is set, not for how protobuf prints it.
     *
     * @param type      full message name
     * @param textForm  the expected message in protobuf's text form
     */
    ::testing::AssertionResult holds(const std::string &type, const std::string &bytes, const std::string &textForm);

    /** The bytes as protobuf's single-line text form, for messages of a failing test; an error text when not valid. */
    std::string toText(const std::string &type, const std::string &bytes);

    /** The bytes as protobuf's JSON, with the field names of the file; an error text when not valid. */
    std::string toJson(const std::string &type, const std::string &bytes);

    /** How protobuf itself encodes a message given in text form; an error fails the test and gives no bytes. */
    std::string encode(const std::string &type, const std::string &textForm);

    /** The message type, or null. */
    const google::protobuf::Descriptor *findType(const std::string &type) const;

private:
    std::unique_ptr<google::protobuf::Message> newMessage(const std::string &type);
    std::unique_ptr<google::protobuf::Message> parseBytes(const std::string &type, const std::string &bytes,
                                                          std::string &error);
    std::unique_ptr<google::protobuf::Message> parseText(const std::string &type, const std::string &textForm,
                                                         std::string &error);

    google::protobuf::DescriptorPool m_pool;
    google::protobuf::DynamicMessageFactory m_factory{&m_pool};
};

} // namespace gpbtest

#endif
