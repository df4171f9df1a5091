// Fields by node name, as one compiler asks for them.
#ifndef GPB_DESCRIPTOR_GPB_FIELD_FINDER_H
#define GPB_DESCRIPTOR_GPB_FIELD_FINDER_H

#include <cstdint>

#include "descriptor/gpb_name_plan.h"
#include "descriptor/gpb_name_trail.h"
#include "gpb_templatelib/gpb_descriptor.h"

inline constexpr GpbFoundField GPB_NOTHING_FOUND = {};

/// Answers as GPB_FindFieldDescByNodeName and GPB_GetLeafFieldDescByNodeName do, from the tables of a plan, which many
/// threads may ask. One finder belongs to one compiler.
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

    /// While one lives, a finder remembers the names of a document, so that it seldom has to ask the plan.
    class Document
    {
    public:
        /// @param doNamesStay  see GpbNameTrail
        Document(GpbFieldFinder &finder, bool doNamesStay)
            : finder_(finder), before_(finder.trail_), trail_(doNamesStay)
        {
            finder.trail_ = &trail_;
        }
        ~Document() { finder_.trail_ = before_; }

        Document(const Document &) = delete;
        Document &operator=(const Document &) = delete;

    private:
        GpbFieldFinder &finder_;
        GpbNameTrail *before_;
        GpbNameTrail trail_;
    };

private:
    // Whether a step is of the table of a message type in a layer.
    static bool IsOf(const GpbNameStep *step, const google::protobuf::Descriptor *message, uint32_t layer)
    {
        return step != nullptr && step->table->IsOf(message, static_cast<int32_t>(layer));
    }

    const GpbNamedField &Find(const google::protobuf::Descriptor *message, const char *nodeName, uint32_t layer)
    {
        if (trail_ == nullptr)
        {
            return plan_.TableOf(message, layer).Find(nodeName);
        }
        GpbNameTrail::Used &used = trail_->UsedIn(layer);
        if (!IsOf(used.last, message, layer))
        {
            Change(used, message, layer);
        }
        // No step yet, or one whose place has been given to a field of another table.
        GpbNameStep *const next = used.last->next;
        if (next->table != used.last->table || !trail_->IsAt(*next, nodeName))
        {
            return FindBehind(used, nodeName);
        }
        used.last = next;
        return *next->field;
    }

    void Change(GpbNameTrail::Used &used, const google::protobuf::Descriptor *message, uint32_t layer);
    const GpbNamedField &FindBehind(GpbNameTrail::Used &used, const char *nodeName);

    GpbNamePlan &plan_;
    GpbNameTrail *trail_ = nullptr; ///< null between documents
};

#endif
