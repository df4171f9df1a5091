// The value of a leaf that may be an identity.
#ifndef GPB_COMPILER_GPB_IDENTITY_VALUE_H
#define GPB_COMPILER_GPB_IDENTITY_VALUE_H

#include <cstdint>
#include <libxml/tree.h>
#include <memory>

#include "compiler/gpb_source_tag.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "platform/zmp.h"

/// Whether a leaf may hold an identity, which takes a namespace that it declares. Other nodes than elements end before
/// the place of their namespaces.
inline bool GpbMayBeIdentity(const xmlNode *leaf)
{
    return leaf->type == XML_ELEMENT_NODE && leaf->nsDef != nullptr;
}

/// A leaf's text as it is stored: an identity with its module in place of the prefix, any other text as it is.
class GpbIdentityValue
{
public:
    /// @param text  lives as long as this
    GpbIdentityValue(uint32_t memHandle, xmlNode *leaf, char *text)
        : text_(text), identity_(GpbMayBeIdentity(leaf) ? GPB_IdentityNodeValueUpdate(memHandle, leaf, text) : nullptr)
    {
    }

    char *Text() const { return identity_ == nullptr ? text_ : identity_.get(); }

private:
    struct Free
    {
        static constexpr uint32_t LINE = 435;

        void operator()(char *value) const { ZMP_Free_F(value, GPB_XML_COMPILER_TAG, LINE); }
    };

    char *text_;
    std::unique_ptr<char, Free> identity_;
};

#endif
