// Enum values by the names that documents give them.
#ifndef GPB_COMPILER_GPB_ENUM_NAMES_H
#define GPB_COMPILER_GPB_ENUM_NAMES_H

#include <cstddef>
#include <cstdint>
#include <google/protobuf/descriptor.h>
#include <string>
#include <vector>

#include "compiler/gpb_enum_text.h"
#include "descriptor/gpb_name_map.h"

/// What the enum translator finds for the leaves of an enum type in one message type: values of all enums that are
/// declared there, by the name of the leaf's enum type and the value. Made once and then only read.
class GpbEnumNames
{
public:
    GpbEnumNames(const google::protobuf::Descriptor *message, const google::protobuf::EnumDescriptor *type);

    /// The number of a text that is one value and nothing else, spelled as most modules do, in lower or upper case;
    /// null for other texts, which `Take` may know, and while the special characters are others than usual.
    const int *Find(const char *text) const
    {
        const uint32_t place = GpbAreSpecialCharsAsMade() ? spellings_.Find(text) : GpbNameMap::NOTHING;
        return place == GpbNameMap::NOTHING ? nullptr : &numbers_[place - 1];
    }

    /// A value that was found, and what comes behind it.
    struct Taken
    {
        const int *number;
        const char *rest;
    };

    /// The number of the YANG value at the begin of a text, which goes on to the next blank or to the end, and what is
    /// behind both. A null number for a value that is not known here, and for one so long that its name might be cut:
    /// it then has to be searched.
    Taken Take(const char *text) const;

    /// Whether the enum type has every number that a document can name.
    bool AreAllOf(const google::protobuf::EnumDescriptor &type) const;

private:
    void AddSpellings(const google::protobuf::Descriptor *message, const google::protobuf::EnumDescriptor *type);
    void AddSpelling(const std::string &spelling, uint32_t place);

    size_t prefixLength_; ///< of the enum type's name and the underline behind it
    std::vector<int> numbers_;
    GpbNameMap places_;    ///< by the rest of the name: the place of its number, counted from 1
    GpbNameMap spellings_; ///< the same by the usual spellings of the values
};

#endif
