/** What a message holds, counted. */
#ifndef GPB_TESTS_SUPPORT_MESSAGE_VALUES_H
#define GPB_TESTS_SUPPORT_MESSAGE_VALUES_H

#include <google/protobuf/message.h>

#include <cstddef>

namespace gpbtest
{

/** Number of values in a message and all messages in it; messages themselves are none. */
std::size_t countValues(const google::protobuf::Message &message);

} // namespace gpbtest

#endif
