// SPDX-License-Identifier: MIT
#include "InspectorCommands.h"

#include <gtest/gtest.h>

namespace corvanta::lab {

TEST(InspectorCommands, AreLines) {
    EXPECT_EQ(formatCommand(InspectCommand{{3, 17}, "apple.test — a b"}), "inspect 3 17 apple.test — a b\n");
    EXPECT_EQ(formatCommand(PresentCommand{}), "present\n");
    EXPECT_EQ(formatCommand(RetitleCommand{"apple.test"}), "retitle apple.test\n");
}

TEST(InspectorCommands, AreReadBack) {
    EXPECT_EQ(parseCommand("inspect 3 17 apple.test — a b"),
              InspectorCommand(InspectCommand{{3, 17}, "apple.test — a b"}));
    EXPECT_EQ(parseCommand("present"), InspectorCommand(PresentCommand{}));
    EXPECT_EQ(parseCommand("retitle apple.test"), InspectorCommand(RetitleCommand{"apple.test"}));
}

TEST(InspectorCommands, ThatMeanNothingAreRefused) {
    for (const char* const line : {"", "inspect", "inspect 3", "inspect 3 x title", "inspect -1 2 title", "close"})
        EXPECT_FALSE(parseCommand(line)) << line;
}

} // namespace corvanta::lab
