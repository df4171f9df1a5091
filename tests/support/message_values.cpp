#include "message_values.h"

#include <google/protobuf/descriptor.h>

#include <vector>

namespace gpbtest
{

namespace pb = google::protobuf;

std::size_t countValues(const pb::Message &message)
{
    const pb::Reflection &reflection = *message.GetReflection();
    std::vector<const pb::FieldDescriptor *> fields;
    reflection.ListFields(message, &fields);
    std::size_t count = 0;
    for (const pb::FieldDescriptor *field : fields)
    {
        const int size = field->is_repeated() ? reflection.FieldSize(message, field) : 1;
        for (int i = 0; i < size; ++i)
        {
            const bool isMessage = field->cpp_type() == pb::FieldDescriptor::CPPTYPE_MESSAGE;
            count += !isMessage             ? 1
                     : field->is_repeated() ? countValues(reflection.GetRepeatedMessage(message, field, i))
                                            : countValues(reflection.GetMessage(message, field));
        }
    }
    return count;
}

} // namespace gpbtest
