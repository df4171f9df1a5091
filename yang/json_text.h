/** A JSON text with the places of its values, which cJSON does not keep. */
#ifndef GPB_YANG_JSON_TEXT_H
#define GPB_YANG_JSON_TEXT_H

#include <cjson/cJSON.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

#include "yang/yang_error.h"

namespace gpbyang
{

class JsonText
{
public:
    /**
     * Reads a text; nothing but white space may follow its value.
     *
     * @param source  names the text in errors
     * @throws YangError (Ids), "SOURCE:LINE:COLUMN: ..."
     */
    JsonText(std::string text, std::string source);

    const cJSON &Root() const { return *root_; }

    /** "SOURCE:LINE:COLUMN: what" for a value, at its name where it has one. */
    YangError ErrorAt(const cJSON &value, const std::string &what) const;

    /** The value as a whole number from 1 to a bound, written with digits only; nothing otherwise. */
    std::optional<std::uint32_t> Number(const cJSON &value, std::uint32_t most) const;

private:
    struct Place
    {
        std::size_t name;
        std::size_t value;
    };
    struct ItemDeleter
    {
        void operator()(cJSON *item) const { cJSON_Delete(item); }
    };

    std::string At(std::size_t offset) const;
    void Locate();

    std::string text_;
    std::string source_;
    std::unique_ptr<cJSON, ItemDeleter> root_;
    std::unordered_map<const cJSON *, Place> places_;
};

} // namespace gpbyang

#endif
