// What the node names of one message type in one layer stand for in the lossless setting.
#ifndef GPB_DESCRIPTOR_GPB_EXACT_NAMES_H
#define GPB_DESCRIPTOR_GPB_EXACT_NAMES_H

#include <cstdint>
#include <deque>
#include <google/protobuf/descriptor.h>
#include <string>
#include <string_view>
#include <vector>

#include "descriptor/gpb_layer_tables.h"
#include "descriptor/gpb_name_map.h"

/// What kind of field a node asks for. A group is no message here: it counts as a leaf, of a type that takes no value.
enum class GpbExactKind
{
    LEAF,
    MESSAGE,
    ANY ///< of a leaf and a message that fit alike, the leaf
};

/// A field that a node may stand for.
struct GpbExactField
{
    const google::protobuf::FieldDescriptor *field = nullptr;

    /// The case fields from the message down to the one that holds the field, outermost first.
    std::vector<const google::protobuf::FieldDescriptor *> cases;
};

/// All names of a message type's fields and of those in its cases. Unlike the default search, this one looks through
/// cases only, never into their containers and lists; it knows how nodes are called in their module and which module
/// that is, where the proto file tells; and no number of cases and no length of a name is too much for it.
///
/// Made once and never changed, so it may be read by any number of threads.
class GpbExactNames
{
public:
    /// @param layer  number of the message's layer, as names of fields carry it behind them; its cases lie one below
    GpbExactNames(const google::protobuf::Descriptor *message, int32_t layer);

    GpbExactNames(const GpbExactNames &) = delete;
    GpbExactNames &operator=(const GpbExactNames &) = delete;

    /// The field that a node stands for, or null when none of the kind fits. Of several, it is the one that fits best,
    /// and among those the one that lies in the fewest cases, then the first one. A case field of the message itself is
    /// what a node stands for only when nothing else fits.
    ///
    /// @param name    the node's name, without a prefix
    /// @param module  name of the module that the node belongs to, or the end of it behind a dash, as it stands in the
    ///                namespaces of many vendors: of several modules with that end, the shortest is meant; empty when
    ///                nobody knows
    const GpbExactField *Find(std::string_view name, GpbExactKind kind, std::string_view module) const;

private:
    /// How a field fits a name, the best way first.
    enum class Match : uint8_t
    {
        MODULE_NAME,       ///< its JSON name is the node's with the node's module before it
        MODULE_END_NAME,   ///< the same, but of the module only the last part is known
        JSON_NAME,         ///< its JSON name is the node's
        FIELD_NAME,        ///< its name is the node's, as field names are spelt
        FIELD_NAME_LAYER,  ///< so is its name without the number of its layer
        OTHER_MODULE_NAME, ///< its JSON name is the node's with another module before it
        NONE
    };

    /// A name that a field has.
    struct Entry
    {
        const GpbExactField *field;
        Match match;        ///< MODULE_NAME stands for any module
        bool isCaseItself;  ///< the field is a case field of the message
        std::string module; ///< for MODULE_NAME: the one before the name
    };

    class Builder;

    explicit GpbExactNames(Builder &&builder);

    static Match MatchOf(const Entry &entry, std::string_view module);
    static const GpbExactField *Best(const std::vector<Entry> &entries, GpbExactKind kind, std::string_view module,
                                     bool isConverted);

    std::deque<GpbExactField> fields_;        ///< never move
    std::vector<std::vector<Entry>> entries_; ///< of a name, in the order of preference where they fit alike
    GpbNameMap places_;                       ///< by spelling: the place in entries_, counted from 1
};

/// The tables of all message types of an importer.
using GpbExactNamePlan = GpbLayerTables<GpbExactNames>;

extern template class GpbLayerTables<GpbExactNames>;

#endif
