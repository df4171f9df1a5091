// How records of a message type are laid out and written.
#ifndef GPB_COMPILER_GPB_RECORD_TYPE_H
#define GPB_COMPILER_GPB_RECORD_TYPE_H

#include <cstddef>
#include <cstdint>
#include <google/protobuf/descriptor.h>
#include <unordered_map>
#include <vector>

#include "compiler/gpb_enum_names.h"

class GpbRecordType;

/// How a value is written.
enum class GpbWireForm : uint8_t
{
    VARINT,
    ZIGZAG,
    FIXED32,
    FIXED64,
    TEXT,
    MESSAGE
};

/// One field of a message type.
struct GpbRecordField
{
    const google::protobuf::FieldDescriptor *field = nullptr;
    const GpbRecordType *type = nullptr;     ///< of a message field
    const GpbEnumNames *enumNames = nullptr; ///< of an enum field
    uint64_t bit = 0;                        ///< that tells in records whether the field is there
    uint32_t bitWord = 0;                    ///< of records, which has the bit
    uint32_t word = 0;                       ///< of records, which has the value; the cases of a choice share one
    uint32_t place = 0;                      ///< its index in the order of the numbers
    uint32_t tag = 0;                        ///< as written before a value, or before all of them when they are packed
    uint32_t choice = 0;                     ///< number of its oneof, counted from 1; 0 outside of oneofs
    google::protobuf::FieldDescriptor::CppType kind = google::protobuf::FieldDescriptor::CPPTYPE_INT32;
    GpbWireForm form = GpbWireForm::VARINT;
    bool isPlain = false; ///< neither repeated nor of a choice
    bool isRepeated = false;
    bool isPacked = false;
    bool isRequired = false;
    bool hasPresence = false; ///< written whenever it was set; else only when it is not zero
};

/// The fields of a message type in the order of their numbers, which is the order in which they are written. A field's
/// place is its index here.
///
/// A record of the type consists of words: bits that tell by the fields' places which are there, the values, and for
/// each choice the place of its last case.
class GpbRecordType
{
public:
    /// The types of message fields are still missing; `LinkTo` adds them.
    explicit GpbRecordType(const google::protobuf::Descriptor *descriptor);

    /// Asks `typeOf(descriptor)` for the type of each message field.
    template <typename TypeOf>
    void LinkTo(const TypeOf &typeOf)
    {
        for (GpbRecordField &field : fields_)
        {
            field.type = field.form == GpbWireForm::MESSAGE ? typeOf(field.field->message_type()) : nullptr;
        }
    }

    /// Whether records can stand for messages of this type. Left to protobuf are maps, groups, sets of messages, and
    /// closed enums of which a document can name a number that they do not have, since that is no value of the field.
    bool CanHold() const;

    /// Whether a record of this type, or one in it, may have required fields.
    bool MayReachRequired() const { return mayReachRequired_; }
    void SetMayReachRequired() { mayReachRequired_ = true; }

    const google::protobuf::Descriptor *Descriptor() const { return descriptor_; }
    const GpbRecordField &FieldAt(size_t place) const { return fields_[place]; }
    const GpbRecordField *Fields() const { return fields_.data(); }
    size_t FieldCount() const { return fields_.size(); }
    size_t ChoiceCount() const { return static_cast<size_t>(descriptor_->real_oneof_decl_count()); }

    /// Words of a record, from its first: those with the bits of the fields, and the one in which the cases begin.
    size_t BitWords() const { return bitWords_; }
    size_t CaseWord() const { return caseWord_; }

    /// Bytes of a record's words.
    size_t WordBytes() const { return wordBytes_; }

    /// What is to know of a field; null for a field of another type.
    const GpbRecordField *FieldOf(const google::protobuf::FieldDescriptor *field) const
    {
        return field->containing_type() == descriptor_ ? byIndex_[static_cast<size_t>(field->index())] : nullptr;
    }

    static constexpr size_t WORD_BITS = 64; ///< fields that a word has bits for

private:
    void LayOut();
    const GpbEnumNames *EnumNamesOf(const google::protobuf::EnumDescriptor *type);

    const google::protobuf::Descriptor *descriptor_;
    bool mayReachRequired_ = false;
    size_t bitWords_ = 0;
    size_t caseWord_ = 0;
    size_t wordBytes_ = 0;
    std::vector<GpbRecordField> fields_;
    std::vector<const GpbRecordField *> byIndex_; ///< by the index in the descriptor
    std::unordered_map<const google::protobuf::EnumDescriptor *, GpbEnumNames> enums_; ///< its elements never move
};

#endif
