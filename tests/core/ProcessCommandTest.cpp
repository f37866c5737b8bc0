// SPDX-License-Identifier: MIT
#include "simulator/ProcessCommand.h"

#include "Printing.h"

#include <gtest/gtest.h>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;

TEST(ProcessCommand, DisplaysItsPartsJoinedBySpaces) {
    const ProcessCommand command{u"/usr/bin/xcrun"_s, {u"simctl"_s, u"boot"_s, u"UDID"_s}};
    EXPECT_EQ(command.displayString(), u"/usr/bin/xcrun simctl boot UDID");
}

TEST(ProcessCommand, DisplaysTheBarePathWithoutArguments) {
    EXPECT_EQ((ProcessCommand{u"/usr/bin/open"_s, {}}).displayString(), u"/usr/bin/open");
}

TEST(ProcessCommand, QuotesNothingInItsDisplay) {
    const ProcessCommand command{u"/Applications/My App"_s, {u"a b"_s, u"\"c\""_s, QString(), u"$d"_s}};
    EXPECT_EQ(command.displayString(), u"/Applications/My App a b \"c\"  $d");
}

TEST(ProcessCommand, IsEqualWhenPathAndArgumentsAre) {
    const ProcessCommand command{u"/bin/a"_s, {u"x"_s, u"y"_s}};
    EXPECT_EQ(command, (ProcessCommand{u"/bin/a"_s, {u"x"_s, u"y"_s}}));
    EXPECT_NE(command, (ProcessCommand{u"/bin/b"_s, {u"x"_s, u"y"_s}}));
    EXPECT_NE(command, (ProcessCommand{u"/bin/a"_s, {u"y"_s, u"x"_s}}));
    EXPECT_NE(command, (ProcessCommand{u"/bin/a"_s, {u"x y"_s}}));
}

} // namespace
} // namespace corvanta
