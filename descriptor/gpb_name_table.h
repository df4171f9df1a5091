// What the node names of one message type in one layer stand for.
#ifndef GPB_DESCRIPTOR_GPB_NAME_TABLE_H
#define GPB_DESCRIPTOR_GPB_NAME_TABLE_H

#include <cstdint>
#include <set>
#include <string_view>
#include <vector>

#include "descriptor/gpb_field_search.h"
#include "descriptor/gpb_name_map.h"
#include "descriptor/gpb_name_memo.h"

class GpbCaseIndex;

/// What a node name stands for: as a node of any kind, and as a leaf.
struct GpbNamedField
{
    GpbFoundField node; ///< GPB_FindFieldDescByNodeName's answer
    GpbFoundField leaf; ///< GPB_GetLeafFieldDescByNodeName's answer

    const char *name = ""; ///< as most documents spell it
    uint32_t next = 0;     ///< place of the name that most documents have behind this one
};

/// Which name comes next in a document, of those in a table; and whether the guess before would have been right. Every
/// compiler keeps a few of them, so the two share a word.
class GpbNameGuess
{
public:
    GpbNameGuess() = default;
    GpbNameGuess(uint32_t place, bool isTried) : code_(place << 1U | (isTried ? 1U : 0U)) {}

    uint32_t Place() const { return code_ >> 1U; }
    bool IsTried() const { return (code_ & 1U) != 0; }

private:
    uint32_t code_ = 0;
};

/// All names that a search finds, with its answers; so a name that is not here stands for nothing. Made once and never
/// changed, so it may be read by any number of threads.
///
/// Most documents have their nodes in the order in which the fields are declared, so the name behind the last one is
/// tried first. Then a name is looked up as the document spells it: the table holds each name with dashes, as most
/// modules write them, and with underlines. Other spellings (a mixture, upper case) are converted and looked up again.
class GpbNameTable
{
public:
    GpbNameTable(const google::protobuf::Descriptor *message, int32_t layer);

    bool IsOf(const google::protobuf::Descriptor *message, int32_t layer) const
    {
        return message == message_ && layer == layer_;
    }

    /// @param memo  of the document that the name is in; null where names do not stay where they are
    const GpbNamedField &Find(const char *nodeName, GpbNameGuess &guess, GpbNameMemo *memo) const
    {
        const GpbNamedField &guessed = fields_[guess.Place()];
        const uint32_t number = firstNumber_ + guess.Place();
        if (guess.IsTried() &&
            ((memo != nullptr && memo->Has(nodeName, guessed, number)) || IsNameOf(guessed, nodeName, number, memo)))
        {
            guess = {guessed.next, true};
            return guessed;
        }
        const GpbNamedField &found = LookUp(nodeName, guessed, memo);
        guess = {found.next, &found == &guessed};
        return found;
    }

private:
    GpbNameTable(const google::protobuf::Descriptor *message, int32_t layer, const GpbCaseIndex &cases);
    GpbNameTable(const google::protobuf::Descriptor *message, int32_t layer, const GpbCaseIndex &cases,
                 const std::set<std::string_view> &names);

    static bool IsNameOf(const GpbNamedField &field, const char *nodeName, uint32_t number, GpbNameMemo *memo);
    const GpbNamedField &LookUp(const char *nodeName, const GpbNamedField &guessed, GpbNameMemo *memo) const;
    const GpbNamedField &LookUpText(const char *nodeName, const GpbNamedField &guessed, GpbNameMemo *memo) const;
    bool Contains(const GpbNamedField *field) const;
    const GpbNamedField &FindConverted(const char *nodeName) const;
    void SetNext();

    const google::protobuf::Descriptor *message_;
    int32_t layer_;
    uint32_t firstNumber_;              ///< of its fields among those of all tables, for memos
    std::vector<GpbNamedField> fields_; ///< the answers; the first one is for all names that stand for nothing
    GpbNameMap places_;                 ///< by spelling: the place of the answer
};

#endif
