// SPDX-License-Identifier: MIT
#include "TextStyles.h"

#include "DeviceSettings.h"

namespace corvanta::lab {

namespace {

constexpr qsizetype standardSize = 3;

// The tables of sizes for iOS in the Human Interface Guidelines, "Typography".
using Sizes = std::array<int, 12>;
constexpr Sizes largeTitle{31, 32, 33, 34, 36, 38, 40, 44, 48, 52, 56, 60};
constexpr Sizes title1{25, 26, 27, 28, 30, 32, 34, 38, 43, 48, 53, 58};
constexpr Sizes title2{19, 20, 21, 22, 24, 26, 28, 34, 39, 44, 50, 56};
constexpr Sizes title3{17, 18, 19, 20, 22, 24, 26, 31, 37, 43, 49, 55};
constexpr Sizes body{14, 15, 16, 17, 19, 21, 23, 28, 33, 40, 47, 53};
constexpr Sizes subheadline{12, 13, 14, 15, 17, 19, 21, 25, 30, 36, 42, 49};
constexpr Sizes footnote{12, 12, 12, 13, 15, 17, 19, 23, 27, 33, 38, 44};
constexpr Sizes caption1{11, 11, 11, 12, 14, 16, 18, 22, 26, 32, 37, 43};
constexpr Sizes caption2{11, 11, 11, 11, 13, 15, 17, 20, 24, 29, 34, 40};

} // namespace

int TextStyle::sizeAt(const QString& contentSize) const {
    const qsizetype index = contentSizes().indexOf(contentSize);
    return sizes[static_cast<std::size_t>(index < 0 ? standardSize : index)];
}

const std::vector<TextStyle>& textStyles() {
    static const std::vector<TextStyle> styles{
        {"title0", largeTitle},
        {"title1", title1},
        {"title2", title2},
        {"title3", title3},
        {"headline", body},
        {"short-headline", body},
        {"body", body},
        {"short-body", body},
        {"tall-body", body},
        {"subheadline", subheadline},
        {"short-subheadline", subheadline},
        {"footnote", footnote},
        {"short-footnote", footnote},
        {"caption1", caption1},
        {"short-caption1", caption1},
        {"caption2", caption2},
    };
    return styles;
}

} // namespace corvanta::lab
