// The record types of an importer.
#ifndef GPB_COMPILER_GPB_RECORD_PLAN_H
#define GPB_COMPILER_GPB_RECORD_PLAN_H

#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

#include "compiler/gpb_record_type.h"

/// What is to know about the message type of a top-level container.
struct GpbTopType
{
    bool fitsFactory = false;              ///< a message factory survives making it
    const GpbRecordType *record = nullptr; ///< null: documents of this type are left to protobuf's messages
};

/// Record types, each made once, together with all types that it reaches. Any thread may ask.
class GpbRecordPlan
{
public:
    /// A lack of memory is thrown; the plan then answers the next question anew.
    GpbTopType TopTypeOf(const google::protobuf::Descriptor *type);

private:
    const GpbRecordType *MakeTypes(const google::protobuf::Descriptor *top);

    std::mutex mutex_;
    std::unordered_map<const google::protobuf::Descriptor *, GpbTopType> tops_;
    std::unordered_map<const google::protobuf::Descriptor *, const GpbRecordType *> known_;
    std::vector<std::unique_ptr<GpbRecordType>> types_;
};

#endif
