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

#include "descriptor/gpb_case_index.h"
#include "gpb_templatelib/gpb_descriptor.h"

/// Answers as GPB_FindFieldDescByNodeName and GPB_GetLeafFieldDescByNodeName do, and remembers the answers, misses
/// included: documents repeat their names, and a search through the cases of a choice costs more the more cases there
/// are. One finder belongs to one compiler, so it needs no lock. Documents are made by clients, who could think of
/// names without end (a field's name alone has as many spellings as its letters have cases): so only the first
/// MAX_REMEMBERED hits and misses of a place are remembered, and no name that is too long for a field. All others are
/// searched anew, and so is what a failing service did not let find.
class GpbFieldFinder
{
public:
    /// Remembered hits of one message type in one layer, and as many misses.
    static constexpr size_t MAX_REMEMBERED = 2048;

    GpbFoundField FindNode(const google::protobuf::Descriptor *message, const char *nodeName, uint32_t layer);
    GpbFoundField FindLeaf(const google::protobuf::Descriptor *message, const char *nodeName, uint32_t layer);

private:
    /// The answers of one message type in one layer; the keys point into `names`.
    struct Answers
    {
        std::unordered_map<std::string_view, GpbFoundField> nodes;
        std::unordered_map<std::string_view, GpbFoundField> leaves;
        std::deque<std::string> names;
        size_t hitCount = 0;
        size_t missCount = 0;
        GpbCaseIndex cases;

        Answers(const google::protobuf::Descriptor *message, int32_t layer) : cases(message, layer) {}
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

    Answers &AnswersOf(const google::protobuf::Descriptor *message, uint32_t layer);

    template <typename Search>
    static GpbFoundField Remembered(std::unordered_map<std::string_view, GpbFoundField> &known, Answers &answers,
                                    const char *nodeName, const Search &search);

    std::unordered_map<Place, Answers, PlaceHash> places_;
};

#endif
