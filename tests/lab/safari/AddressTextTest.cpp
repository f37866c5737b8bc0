// SPDX-License-Identifier: MIT
#include "AddressText.h"

#include <gtest/gtest.h>

#include <ostream>

namespace corvanta::lab {

namespace {

struct Case {
    const char* name;
    const char* text;
    const char* address;
};

std::ostream& operator<<(std::ostream& stream, const Case& example) {
    return stream << example.name;
}

const Case cases[] = {
    {"Host", "apple.test", "https://apple.test"},
    {"HostAndPath", " apple.test/a?b ", "https://apple.test/a?b"},
    {"ThisMachine", "localhost:8080/x", "http://localhost:8080/x"},
    {"Loopback", "127.0.0.1:8080", "http://127.0.0.1:8080"},
    {"PortLooksLikeAScheme", "apple.test:8080", "https://apple.test:8080"},
    {"Scheme", "http://apple.test", "http://apple.test"},
    {"About", "about:blank", "about:blank"},
    {"File", "/tmp/a b", ""},
    {"FileName", "/tmp/page.html", "file:///tmp/page.html"},
    {"Words", "what is this", ""},
    {"Empty", "  ", ""},
};

class AddressTextTable : public ::testing::TestWithParam<Case> {};

} // namespace

TEST_P(AddressTextTable, MeansAnAddress) {
    EXPECT_EQ(addressFromText(GetParam().text), GetParam().address);
}

INSTANTIATE_TEST_SUITE_P(AddressText, AddressTextTable, ::testing::ValuesIn(cases),
                         [](const auto& example) { return std::string(example.param.name); });

} // namespace corvanta::lab
