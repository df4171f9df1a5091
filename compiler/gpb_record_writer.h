// Records as bytes, and as messages.
#ifndef GPB_COMPILER_GPB_RECORD_WRITER_H
#define GPB_COMPILER_GPB_RECORD_WRITER_H

#include <google/protobuf/message.h>

#include "compiler/gpb_backward_writer.h"
#include "compiler/gpb_record.h"

/// Writes what SerializeToString of the message would write.
void GpbWriteRecord(const GpbRecord &record, GpbBackwardWriter &writer);

/// Fills an empty message of the record's type with what is in the record.
void GpbCopyRecord(const GpbRecord &record, google::protobuf::Message &message);

#endif
