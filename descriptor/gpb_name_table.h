// What the node names of one message type in one layer stand for.
#ifndef GPB_DESCRIPTOR_GPB_NAME_TABLE_H
#define GPB_DESCRIPTOR_GPB_NAME_TABLE_H

#include <cstdint>
#include <cstring>
#include <set>
#include <string_view>
#include <vector>

#include "descriptor/gpb_name_map.h"
#include "descriptor/gpb_name_memo.h"
#include "descriptor/gpb_named_field.h"

class GpbCaseIndex;

/// Which name comes next in a document, of those in a table; and whether it is to be tried, which it is when the guess
/// before would have been right. Every compiler keeps a few of them, so the two share a word: fields lie at even
/// addresses.
class GpbNameGuess
{
public:
    GpbNameGuess() = default;
    GpbNameGuess(const GpbNamedField *field, bool isTried)
        : code_(reinterpret_cast<const char *>(field) + (isTried ? 1 : 0))
    {
    }

    /// Null before the first guess.
    const GpbNamedField *Field() const { return reinterpret_cast<const GpbNamedField *>(code_ - Flag()); }
    bool IsTried() const { return Flag() != 0; }

private:
    uintptr_t Flag() const { return reinterpret_cast<uintptr_t>(code_) & 1U; }

    const char *code_ = nullptr;
};
static_assert(alignof(GpbNamedField) > 1, "a bit of its address is free");

/// All names that a search finds, with its answers; so a name that is not here stands for nothing. Made once and never
/// changed, so it may be read by any number of threads.
///
/// Most documents have their nodes in the order in which the fields are declared, or in another one that comes again
/// and again, so the name behind the last one is tried first. Then a name is looked up as the document spells it: the
/// table holds each name with dashes, as most modules write them, and with underlines. Other spellings (a mixture,
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

    /// The field of a name when the guess tells it, else null: then `Find` does. A part of the walks, like what is
    /// above; the rest is not, since it would have to hold more at hand than the guess takes.
    ///
    /// @param memo  of the document that the name is in; null where names do not stay where they are
    /// @param walk  whose guess it is, among the walks of the memo
    static const GpbNamedField *FindGuessed(const char *nodeName, GpbNameGuess &guess, GpbNameMemo *memo, uint32_t walk)
    {
        const GpbNamedField *const guessed = guess.Field();
        if (!guess.IsTried() || !IsNameOf(*guessed, nodeName, memo))
        {
            return nullptr;
        }
        Arrive(*guessed, true, guess, memo, walk);
        return guessed;
    }

    /// The field of a name in the table of a guess.
    static const GpbNamedField &Find(const char *nodeName, GpbNameGuess &guess, GpbNameMemo *memo, uint32_t walk);

    /// Before the first name of a message.
    GpbNameGuess FirstGuess() const { return {&fields_.front(), false}; }

private:
    GpbNameTable(const google::protobuf::Descriptor *message, int32_t layer, const GpbCaseIndex &cases);
    GpbNameTable(const google::protobuf::Descriptor *message, int32_t layer, const GpbCaseIndex &cases,
                 const std::set<std::string_view> &names);

    static bool IsNameOf(const GpbNamedField &field, const char *nodeName, GpbNameMemo *memo)
    {
        return memo == nullptr ? std::strcmp(field.name, nodeName) == 0
                               : memo->Has(nodeName, field) || IsNewNameOf(field, nodeName, *memo);
    }

    static void Arrive(const GpbNamedField &found, bool wasGuessed, GpbNameGuess &guess, GpbNameMemo *memo,
                       uint32_t walk)
    {
        if (memo == nullptr)
        {
            guess = {found.next, wasGuessed};
            return;
        }
        guess = {memo->NextOf(found), wasGuessed};
        memo->SetLast(walk, found);
    }

    static bool IsNewNameOf(const GpbNamedField &field, const char *nodeName, GpbNameMemo &memo);
    static const GpbNamedField &GuessBehind(const GpbNamedField &found, GpbNameGuess &guess, GpbNameMemo *memo,
                                            uint32_t walk);
    const GpbNamedField &FindText(const char *nodeName, GpbNameGuess &guess, GpbNameMemo *memo, uint32_t walk) const;
    const GpbNamedField &FindConverted(const char *nodeName) const;
    void SetNext();
    void SetTableAndNumbers();

    const google::protobuf::Descriptor *message_;
    int32_t layer_;
    std::vector<GpbNamedField> fields_; ///< the answers; the first one is for all names that stand for nothing
    GpbNameMap places_;                 ///< by spelling: the place of the answer
};

#endif
