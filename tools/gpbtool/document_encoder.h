/** One document through the library: read, encoded, and judged for what did not make it into the message. */
#ifndef GPBTOOL_DOCUMENT_ENCODER_H
#define GPBTOOL_DOCUMENT_ENCODER_H

#include <cstdint>
#include <string>

#include "console.h"
#include "session.h"

namespace google::protobuf
{
class Descriptor;
class FileDescriptor;
} // namespace google::protobuf

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
    std::uint64_t documentSize; /**< in bytes */
};

/** Encodes an XML document. @throws ToolError (Input, Encode, Incomplete) */
EncodedDocument EncodeXml(Session &session, Console &console, const EncodeRequest &request);

/** Makes the JSON text of an XML document, with numbers for 64-bit integers or texts. @throws as EncodeXml */
std::string ConvertXmlToJson(Session &session, Console &console, const EncodeRequest &request, bool numbers64);

/** Full names of a module's top-level messages, for hints. */
std::string TopMessages(const google::protobuf::FileDescriptor &file);

} // namespace gpbtool

#endif
