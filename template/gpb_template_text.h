// Texts of the host in log lines.
#ifndef GPB_TEMPLATE_GPB_TEMPLATE_TEXT_H
#define GPB_TEMPLATE_GPB_TEMPLATE_TEXT_H

/// A text for a "%s"; a missing one is named instead of being read.
inline const char *GpbShown(const char *text)
{
    return text != nullptr ? text : "(null)";
}

#endif
