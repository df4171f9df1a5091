// JSON numbers with as many digits as they need.
#ifndef GPB_COMPILER_EXACT_GPB_EXACT_JSON_NUMBER_H
#define GPB_COMPILER_EXACT_GPB_EXACT_JSON_NUMBER_H

#include "gpb_templatelib/gpb_limits.h"

/// Writes a number so that reading it gives the number again. A whole one of up to 64 bits stands without an exponent,
/// at which fields of whole numbers would stop reading. False when the platform does not write it.
bool GpbWriteExactNumber(double value, char (&text)[GPB_JSON_NUMBER_SIZE]);

#endif
