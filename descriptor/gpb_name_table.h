// What the node names of one message type in one layer stand for.
#ifndef GPB_DESCRIPTOR_GPB_NAME_TABLE_H
#define GPB_DESCRIPTOR_GPB_NAME_TABLE_H

#include <cstdint>
#include <set>
#include <string_view>
#include <vector>

#include "descriptor/gpb_field_search.h"
#include "descriptor/gpb_name_map.h"

class GpbCaseIndex;
class GpbNameTable;

/// What a node name stands for: as a node of any kind, and as a leaf.
struct GpbNamedField
{
    GpbFoundField node; ///< GPB_FindFieldDescByNodeName's answer
    GpbFoundField leaf; ///< GPB_GetLeafFieldDescByNodeName's answer

    const char *name = "";               ///< as most documents spell it; "" for what stands for nothing
    const GpbNameTable *table = nullptr; ///< that it is in
    const GpbNamedField *next = nullptr; ///< that most documents have behind this one
    uint32_t number = 0;                 ///< among those of all tables
};

/// All names that a search finds, with its answers; so a name that is not here stands for nothing. Made once and never
/// changed, so it may be read by any number of threads.
///
/// The table holds each name with dashes, as most modules write them, and with underlines. Other spellings (a mixture,
/// upper case) are converted and looked up again.
class GpbNameTable
{
public:
    GpbNameTable(const google::protobuf::Descriptor *message, int32_t layer);

    bool IsOf(const google::protobuf::Descriptor *message, int32_t layer) const
    {
        return message == message_ && layer == layer_;
    }

    GpbNameTable(const GpbNameTable &) = delete;
    GpbNameTable &operator=(const GpbNameTable &) = delete;

    /// What a name stands for.
    const GpbNamedField &Find(const char *nodeName) const
    {
        const GpbNamedField *const found = FindAsSpelt(nodeName);
        return found == nullptr ? FindConverted(nodeName) : *found;
    }

    /// The same when the name is spelt as in the table, else null.
    const GpbNamedField *FindAsSpelt(const char *nodeName) const;

    /// The same after the name was converted, by the platform's functions.
    const GpbNamedField &FindConverted(const char *nodeName) const;

    /// What all names stand for that are not here. Behind it comes the first field.
    const GpbNamedField &Nothing() const { return fields_.front(); }

private:
    GpbNameTable(const google::protobuf::Descriptor *message, int32_t layer, const GpbCaseIndex &cases);
    GpbNameTable(const google::protobuf::Descriptor *message, int32_t layer, const GpbCaseIndex &cases,
                 const std::set<std::string_view> &names);

    void SetNext();
    void SetTableAndNumbers();

    const google::protobuf::Descriptor *message_;
    int32_t layer_;
    std::vector<GpbNamedField> fields_; ///< the answers; the first one is for all names that stand for nothing
    GpbNameMap places_;                 ///< by spelling: the place of the answer
};

#endif
