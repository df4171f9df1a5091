#include "compiler/gpb_record_leaf.h"

double GpbToDouble(const char *text)
{
    return GpbReadDouble(text);
}
