/** One JSON document through the library: encoded as a whole or below an item, or asked for model attributes. */
#ifndef GPBTOOL_JSON_ENCODER_H
#define GPBTOOL_JSON_ENCODER_H

#include <cstdint>
#include <string>
#include <vector>

#include "document_encoder.h"

namespace gpbtool
{

struct JsonOptions
{
    std::string item; /**< JSON pointer; empty: the whole document */
    bool stripPrefixes;
};

/** @throws ToolError (Usage, Input, Encode, Incomplete) */
EncodedDocument EncodeJson(Session &session, Console &console, const EncodeRequest &request,
                           const JsonOptions &options);

/** A leaf of a message. */
struct LeafAttribute
{
    std::string name;
    std::uint32_t type; /**< GPB_MDL_TYPE_ code */
};

/** The leaves of the message that an item stands for. @throws as EncodeJson */
std::vector<LeafAttribute> ReadAttributes(Session &session, const EncodeRequest &request, const JsonOptions &options);

} // namespace gpbtool

#endif
