// SPDX-License-Identifier: MIT
#include "TextStyles.h"
#include "DeviceSettings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

namespace corvanta::lab {

namespace {

using namespace Qt::Literals::StringLiterals;

const TextStyle& style(const std::string& name) {
    return *std::ranges::find(textStyles(), name, [](const TextStyle& other) { return std::string(other.name); });
}

TEST(TextStyles, HaveThePublishedSizes) {
    EXPECT_EQ(style("body").sizeAt(u"extra-small"_s), 14);
    EXPECT_EQ(style("body").sizeAt(u"large"_s), 17);
    EXPECT_EQ(style("body").sizeAt(u"accessibility-extra-extra-extra-large"_s), 53);
    EXPECT_EQ(style("footnote").sizeAt(u"large"_s), 13);
}

TEST(TextStyles, AreThoseOfANewDeviceForASizeThatIsNone) {
    EXPECT_EQ(style("body").sizeAt(u"huge"_s), 17);
    EXPECT_EQ(style("body").sizeAt({}), 17);
}

TEST(TextStyles, GrowWithTheTextSizeAndHaveNamesOfTheirOwn) {
    std::set<std::string> names;
    for (const TextStyle& text : textStyles()) {
        EXPECT_TRUE(names.insert(text.name).second) << text.name;
        EXPECT_TRUE(std::ranges::is_sorted(text.sizes)) << text.name;
        EXPECT_EQ(qsizetype(text.sizes.size()), contentSizes().size());
    }
}

} // namespace

} // namespace corvanta::lab
