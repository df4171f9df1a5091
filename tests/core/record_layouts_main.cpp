// Prints packaging/record-layouts.txt as this machine has it.
#include <cstdio>

#include "core/record_layouts.h"

int main()
{
    return std::fputs(gpbtest::listRecordLayouts().c_str(), stdout) < 0 ? 1 : 0;
}
