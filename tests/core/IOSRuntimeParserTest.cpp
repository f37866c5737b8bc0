// SPDX-License-Identifier: MIT
#include "simulator/IOSRuntimeParser.h"

#include "support/JsonDecoder.h"

#include <gtest/gtest.h>

namespace corvanta {
namespace {

using IOSRuntimeParser::availableIOSRuntimeCount;

TEST(IOSRuntimeParser, CountsUsableIOSRuntimes) {
    EXPECT_EQ(availableIOSRuntimeCount(R"({"runtimes":[
        {"identifier":"com.apple.CoreSimulator.SimRuntime.iOS-18-2","isAvailable":true,"version":"18.2"},
        {"identifier":"com.apple.CoreSimulator.SimRuntime.iOS-17-5"},
        {"identifier":"com.apple.CoreSimulator.SimRuntime.iOS-16-4","isAvailable":false},
        {"identifier":"com.apple.CoreSimulator.SimRuntime.watchOS-11-0","isAvailable":true}]})"),
              2);
}

TEST(IOSRuntimeParser, CountsNoneInAnEmptyList) {
    EXPECT_EQ(availableIOSRuntimeCount(R"({"runtimes":[]})"), 0);
}

TEST(IOSRuntimeParser, FailsForADocumentOfAnotherShape) {
    for (const char* output :
         {"", "{}", "[]", R"({"runtimes":{}})", R"({"runtimes":[{}]})", R"({"runtimes":[{"identifier":5}]})",
          R"({"runtimes":[{"identifier":"x","isAvailable":1}]})"})
        EXPECT_THROW((void)availableIOSRuntimeCount(output), JsonDecodingError) << output;
}

} // namespace
} // namespace corvanta
