// A message that is filled by plan.
#ifndef GPB_COMPILER_GPB_RECORD_H
#define GPB_COMPILER_GPB_RECORD_H

#include <cstdint>
#include <cstring>
#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>
#include <memory>
#include <string_view>
#include <typeinfo>

#include "compiler/gpb_record_arena.h"
#include "compiler/gpb_record_type.h"

class GpbRecord;
struct GpbRecordCell;

/// A text with its bytes behind it.
struct GpbRecordText
{
    size_t length;

    std::string_view View() const { return {reinterpret_cast<const char *>(this + 1), length}; }
};

/// What a field holds: which of these, its field says.
union GpbRecordValue
{
    uint64_t number; ///< signed ones extended, floating-point ones by their bits
    const GpbRecordText *text;
    GpbRecord *record;
    GpbRecordCell *last; ///< of a repeated field
};

/// One value of a repeated field.
struct GpbRecordCell
{
    GpbRecordCell *previous;
    GpbRecordValue value;
};

/// The number under which a record keeps a value.
template <typename Value>
uint64_t GpbRecordNumber(Value value)
{
    if constexpr (std::is_same_v<Value, float>)
    {
        uint32_t bits = 0;
        std::memcpy(&bits, &value, sizeof(bits));
        return bits;
    }
    else if constexpr (std::is_same_v<Value, double>)
    {
        uint64_t bits = 0;
        std::memcpy(&bits, &value, sizeof(bits));
        return bits;
    }
    else
    {
        return static_cast<uint64_t>(value);
    }
}

/// Stands in a layer for a message that nobody outside the library looks at, and holds what such a message would hold.
/// protobuf's own dynamic messages go through all fields of their type when they are made, written and deleted; a
/// record costs as much as there is in it. It is a message so that it can stand in a layer, but has no reflection: only
/// GpbRecordOf leads to its values.
///
/// All records below a top record lie in its arena and go with it.
class alignas(GpbRecordValue) GpbRecord final : public google::protobuf::Message
{
public:
    /// An empty top record. A lack of memory is thrown, here and below, and changes nothing.
    static std::unique_ptr<GpbRecord> NewTop(const GpbRecordType &type);
    ~GpbRecord() override;

    GpbRecord(const GpbRecord &) = delete;
    GpbRecord &operator=(const GpbRecord &) = delete;

    /// A top record is larger than its class, which the operator that knows the size would not expect.
    // NOLINTNEXTLINE(cert-dcl54-cpp,misc-new-delete-overloads): records are made in memory that was taken for them
    static void operator delete(void *memory) { ::operator delete(memory); }

    const GpbRecordType &Type() const { return type_; }

    /// Sets a singular field of this type that is no message, or adds to a repeated one. A part of each conversion: the
    /// call would take as long as the rest.
    [[gnu::always_inline]] void Store(const GpbRecordField &field, uint64_t number)
    {
        GpbRecordValue value = {};
        value.number = number;
        Put(field, value, number != 0);
        arena_->Expect(NUMBER_BYTES);
    }

    void Store(const GpbRecordField &field, std::string_view text);

    /// The record of a singular message field of this type, made when it is not there; a new one of a repeated field.
    GpbRecord *Open(const GpbRecordField &field);

    /// The record of the current case of a choice, or null when there is none or it is no message.
    const GpbRecord *CaseOf(const google::protobuf::OneofDescriptor *choice) const;

    /// Whether this is `other` or lies in it.
    bool IsWithin(const GpbRecord &other) const;

    /// About how many bytes the document will have.
    size_t ExpectedBytes() const { return arena_->Expected(); }

    /// Whether no required field is missing, here and in what lies in it.
    bool IsWhole() const;

    /// Calls `visit(field, value)` for each field that is there, the one with the highest number first. A part of its
    /// callers, whose visits are short.
    template <typename Visit>
    [[gnu::always_inline]] void ForEachFromLast(const Visit &visit) const
    {
        const GpbRecordValue *const words = Words();
        for (size_t word = type_.BitWords(); word-- > 0;)
        {
            const GpbRecordField *const fields = type_.Fields() + word * GpbRecordType::WORD_BITS;
            for (uint64_t bits = words[word].number; bits != 0;)
            {
                const unsigned bit = HIGHEST_BIT ^ static_cast<unsigned>(__builtin_clzll(bits));
                const GpbRecordField &field = fields[bit];
                bits &= ~field.bit;
                visit(field, words[field.word]);
            }
        }
    }

    // What a message has to have, and nobody asks a record for.
    google::protobuf::Message *New(google::protobuf::Arena *arena) const override;
    int GetCachedSize() const override;

protected:
    google::protobuf::Metadata GetMetadata() const override;

private:
    static constexpr unsigned HIGHEST_BIT = GpbRecordType::WORD_BITS - 1;

    // Bytes of a number with its tag, and of a tag and a length, as far as most documents go.
    static constexpr size_t NUMBER_BYTES = 5;
    static constexpr size_t LENGTH_BYTES = 4;

    // A record has its words behind it, as its type says. Those of fields that are not there are undefined.
    GpbRecord(const GpbRecordType &type, GpbRecordArena *arena, const GpbRecord *parent);

    GpbRecordValue *Words() { return reinterpret_cast<GpbRecordValue *>(this + 1); }
    const GpbRecordValue *Words() const { return const_cast<GpbRecord *>(this)->Words(); }

    // By the number of a choice: the place of its last case and 1, or 0.
    uint32_t *Cases() { return reinterpret_cast<uint32_t *>(Words() + type_.CaseWord()); }
    const uint32_t *Cases() const { return const_cast<GpbRecord *>(this)->Cases(); }

    bool IsPresent(const GpbRecordField &field) const { return (Words()[field.bitWord].number & field.bit) != 0; }
    void SetPresent(const GpbRecordField &field) { Words()[field.bitWord].number |= field.bit; }
    void SetAbsent(const GpbRecordField &field) { Words()[field.bitWord].number &= ~field.bit; }

    void Put(const GpbRecordField &field, GpbRecordValue value, bool isSomething)
    {
        if (!field.isPlain)
        {
            if (field.isRepeated)
            {
                Append(field, value);
                return;
            }
            EnterCase(field);
        }
        Words()[field.word] = value;
        if (isSomething || field.hasPresence)
        {
            SetPresent(field);
        }
        else
        {
            SetAbsent(field);
        }
    }

    void Append(const GpbRecordField &field, GpbRecordValue value);
    void EnterCase(const GpbRecordField &field);

    const GpbRecordType &type_;
    GpbRecordArena *arena_; ///< behind the top record
    const GpbRecord *parent_;
};

/// The record that a layer's message is, or null for any other message. The type lies in the library alone, so its
/// information has one address.
inline GpbRecord *GpbRecordOf(google::protobuf::Message *message)
{
    const bool isRecord = message != nullptr && &typeid(*message) == &typeid(GpbRecord);
    return isRecord ? static_cast<GpbRecord *>(message) : nullptr;
}

inline const GpbRecord *GpbRecordOf(const google::protobuf::Message *message)
{
    return GpbRecordOf(const_cast<google::protobuf::Message *>(message));
}

#endif
