// The value of a leaf that may be an identity.
#ifndef GPB_COMPILER_GPB_IDENTITY_VALUE_H
#define GPB_COMPILER_GPB_IDENTITY_VALUE_H

#include <cstdint>
#include <libxml/tree.h>
#include <memory>

#include "compiler/gpb_source_tag.h"
#include "gpb_templatelib/gpb_descriptor.h"
#include "platform/zmp.h"

/// A leaf's text as it is stored: an identity with its module in place of the prefix, any other text as it is.
class GpbIdentityValue
{
public:
    /// @param text  lives as long as this
    GpbIdentityValue(uint32_t memHandle, xmlNode *leaf, char *text)
        : text_(text),
          // Only a leaf that declares a namespace can hold an identity.
          identity_(leaf->nsDef == nullptr ? nullptr : GPB_IdentityNodeValueUpdate(memHandle, leaf, text))
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
