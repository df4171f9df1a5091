// Prints the telemetry module for protoc, so that generated classes and library read the same text.
#include <iostream>

#include "support/workload.h"

int main()
{
    std::cout << gpbbench::TelemetryProto();
    return std::cout.flush() ? 0 : 1;
}
