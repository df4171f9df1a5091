// Fields by node name, each searched once.
#ifndef GPB_DESCRIPTOR_GPB_FIELD_FINDER_H
#define GPB_DESCRIPTOR_GPB_FIELD_FINDER_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "gpb_templatelib/gpb_descriptor.h"

/// Answers as GPB_FindFieldDescByNodeName and GPB_GetLeafFieldDescByNodeName do, and remembers the answers, misses
/// included: documents repeat their names, and a search through the cases of a choice costs more the more cases there
/// are. One finder belongs to one compiler, so it needs no lock, and what it holds is bounded by the names it was
/// asked.
class GpbFieldFinder
{
public:
    /// What a search found: the field, or null, and the case field that leads to it, or null.
    struct Found
    {
        const google::protobuf::FieldDescriptor *field = nullptr;
        const google::protobuf::FieldDescriptor *caseField = nullptr;
    };

    Found FindNode(const google::protobuf::Descriptor *message, const char *nodeName, uint32_t layer);
    Found FindLeaf(const google::protobuf::Descriptor *message, const char *nodeName, uint32_t layer);

private:
    /// The answers of one message type in one layer; the keys point into `names`.
    struct Answers
    {
        std::unordered_map<std::string_view, Found> nodes;
        std::unordered_map<std::string_view, Found> leaves;
        std::deque<std::string> names;
    };

    struct Place
    {
        const google::protobuf::Descriptor *message;
        uint32_t layer;

        bool operator==(const Place &other) const { return message == other.message && layer == other.layer; }
    };

    struct PlaceHash
    {
        size_t operator()(const Place &place) const
        {
            return std::hash<const void *>()(place.message) ^ (static_cast<size_t>(place.layer) << 1U);
        }
    };

    using Search = Found (*)(const google::protobuf::Descriptor *message, const char *nodeName, uint32_t layer);

    static Found Remembered(std::unordered_map<std::string_view, Found> &answers, std::deque<std::string> &names,
                            Search search, const google::protobuf::Descriptor *message, const char *nodeName,
                            uint32_t layer);

    std::unordered_map<Place, Answers, PlaceHash> places_;
};

#endif
