// The layer number at the end of a field's name.
#ifndef GPB_DESCRIPTOR_GPB_LAYER_SUFFIX_H
#define GPB_DESCRIPTOR_GPB_LAYER_SUFFIX_H

#include <cstdint>
#include <string>
#include <string_view>

#include "gpb_templatelib/gpb_limits.h"

/// Undoes what a search does with a layer number: tells the names that it finds with the number behind them.
class GpbLayerSuffix
{
public:
    explicit GpbLayerSuffix(int32_t layer) : text_(std::to_string(layer)) {}

    /// Whether a search can find this name by its beginning; it gives up where the whole does not fit its buffer.
    bool Ends(std::string_view fieldName) const
    {
        return fieldName.size() >= text_.size() && fieldName.size() < GPB_NAME_SIZE &&
               fieldName.substr(fieldName.size() - text_.size()) == text_;
    }

    /// The name with the number behind it; empty, which is no field's name, where the whole does not fit the buffer.
    std::string AppendedTo(const std::string &name) const
    {
        return name.size() + text_.size() < GPB_NAME_SIZE ? name + text_ : std::string();
    }

    std::string_view CutOff(std::string_view fieldName) const
    {
        return fieldName.substr(0, fieldName.size() - text_.size());
    }

private:
    std::string text_;
};

#endif
