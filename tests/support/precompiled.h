// Headers that nearly every test needs; compiled once per test program.
#ifndef GPB_TESTS_SUPPORT_PRECOMPILED_H
#define GPB_TESTS_SUPPORT_PRECOMPILED_H

#include <gmock/gmock.h>
#include <google/protobuf/dynamic_message.h>
#include <google/protobuf/text_format.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#endif
