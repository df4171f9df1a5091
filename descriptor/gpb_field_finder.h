// Fields by node name, as one compiler asks for them.
#ifndef GPB_DESCRIPTOR_GPB_FIELD_FINDER_H
#define GPB_DESCRIPTOR_GPB_FIELD_FINDER_H

#include <cstdint>

#include "descriptor/gpb_name_plan.h"
#include "gpb_templatelib/gpb_descriptor.h"

inline constexpr GpbFoundField GPB_NOTHING_FOUND = {};

/// Answers as GPB_FindFieldDescByNodeName and GPB_GetLeafFieldDescByNodeName do, from the tables of a plan. It
/// remembers the tables that it used last in each layer, and where in them, so that a walk seldom has to ask the plan,
/// which many threads may do. One finder belongs to one compiler.
class GpbFieldFinder
{
public:
    /// @param plan  outlives the finder
    explicit GpbFieldFinder(GpbNamePlan &plan) : plan_(plan) {}

    const GpbFoundField &FindNode(const google::protobuf::Descriptor *message, const char *nodeName, uint32_t layer)
    {
        return message == nullptr || nodeName == nullptr ? GPB_NOTHING_FOUND : Find(message, nodeName, layer).node;
    }

    const GpbFoundField &FindLeaf(const google::protobuf::Descriptor *message, const char *nodeName, uint32_t layer)
    {
        return message == nullptr || nodeName == nullptr ? GPB_NOTHING_FOUND : Find(message, nodeName, layer).leaf;
    }

    /// While one lives, names are taken to stay where they are.
    class Document
    {
    public:
        /// @param memo  nothing in it yet; null: names may move
        Document(GpbFieldFinder &finder, GpbNameMemo *memo) : finder_(finder), before_(finder.memo_)
        {
            finder.memo_ = memo;
        }
        ~Document() { finder_.memo_ = before_; }

        Document(const Document &) = delete;
        Document &operator=(const Document &) = delete;

    private:
        GpbFieldFinder &finder_;
        GpbNameMemo *before_;
    };

private:
    // Deeper layers share a place with higher ones. A power of two, since each leaf's layer is divided by it.
    static constexpr uint32_t LAYERS = GpbNameMemo::WALKS;

    // Many documents have two kinds of containers in turn.
    struct UsedInLayer
    {
        GpbNameGuess last;
        GpbNameGuess before;
    };

    // Whether a guess is of the table of a message type in a layer.
    static bool IsOf(const GpbNameGuess &guess, const google::protobuf::Descriptor *message, uint32_t layer)
    {
        const GpbNamedField *const field = guess.Field();
        return field != nullptr && field->table->IsOf(message, static_cast<int32_t>(layer));
    }

    const GpbNamedField &Find(const google::protobuf::Descriptor *message, const char *nodeName, uint32_t layer)
    {
        const uint32_t walk = layer % LAYERS;
        UsedInLayer &used = used_[walk];
        if (!IsOf(used.last, message, layer))
        {
            Change(used, message, layer);
        }
        const GpbNamedField *const guessed = GpbNameTable::FindGuessed(nodeName, used.last, memo_, walk);
        return guessed == nullptr ? GpbNameTable::Find(nodeName, used.last, memo_, walk) : *guessed;
    }

    void Change(UsedInLayer &used, const google::protobuf::Descriptor *message, uint32_t layer);

    GpbNamePlan &plan_;
    GpbNameMemo *memo_ = nullptr;
    UsedInLayer used_[LAYERS];
};

#endif
