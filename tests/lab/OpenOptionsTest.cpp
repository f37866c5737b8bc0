// SPDX-License-Identifier: MIT
#include "OpenOptions.h"

#include <gtest/gtest.h>

namespace corvanta::lab {

namespace {

using namespace Qt::Literals::StringLiterals;

TEST(OpenOptions, ReadsAnApplicationWithArguments) {
    const auto options = OpenOptions::parse({u"-a"_s, u"Simulator"_s, u"--args"_s, u"-CurrentDeviceUDID"_s, u"ABC"_s});
    EXPECT_EQ(options.application, u"Simulator");
    EXPECT_EQ(options.applicationOption(u"-CurrentDeviceUDID"_s), u"ABC");
    EXPECT_TRUE(options.problem.isEmpty());
}

TEST(OpenOptions, ReadsAddressesAndTheBackground) {
    const auto options = OpenOptions::parse({u"-g"_s, u"-a"_s, u"Safari"_s, u"http://localhost/"_s});
    EXPECT_TRUE(options.inBackground);
    EXPECT_EQ(options.items, QStringList{u"http://localhost/"_s});
}

TEST(OpenOptions, KnowsBundleIdentifiers) {
    const auto options = OpenOptions::parse({u"-b"_s, u"com.apple.Safari"_s});
    EXPECT_EQ(options.application, u"com.apple.Safari");
    EXPECT_TRUE(options.isBundleIdentifier);
}

TEST(OpenOptions, RefusesWhatItDoesNotKnow) {
    EXPECT_FALSE(OpenOptions::parse({u"-Z"_s}).problem.isEmpty());
    EXPECT_FALSE(OpenOptions::parse({u"-a"_s}).problem.isEmpty());
}

} // namespace

} // namespace corvanta::lab
