/** One document through the library: read, encoded, and judged for what did not make it into the message. */
#ifndef GPBTOOL_DOCUMENT_ENCODER_H
#define GPBTOOL_DOCUMENT_ENCODER_H

#include <string>

#include "console.h"
#include "session.h"

namespace google::protobuf
{
class Descriptor;
}

namespace gpbtool
{

struct EncodeRequest
{
    std::string module;   /**< loaded in the session */
    std::string document; /**< file name, "-" for standard input */
    bool lenient;         /**< leave out what does not fit, with a warning */
};

struct EncodedDocument
{
    std::string bytes;
    const google::protobuf::Descriptor *type;
};

/** @throws ToolError (Input, Encode, Incomplete) */
EncodedDocument EncodeDocument(Session &session, Console &console, const EncodeRequest &request);

} // namespace gpbtool

#endif
