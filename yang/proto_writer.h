/** The text of a .proto file. */
#ifndef GPB_YANG_PROTO_WRITER_H
#define GPB_YANG_PROTO_WRITER_H

#include <string>

#include "yang/proto_model.h"

namespace gpbyang
{

/**
 * Writes a numbered model; the same model gives the same text.
 *
 * @param comments  whether the descriptions of the YANG nodes become comments
 */
std::string WriteProtoFile(const ProtoFile &file, bool comments);

} // namespace gpbyang

#endif
