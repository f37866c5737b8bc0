// SPDX-License-Identifier: MIT
#include "simulator/SimctlCommandBuilder.h"

#include "Printing.h"

#include <gtest/gtest.h>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;

const QString udid = u"8E2C5F0A-1111-4222-8333-944445555666"_s;
const SimctlCommandBuilder builder{u"/usr/bin/xcrun"_s, u"/usr/bin/open"_s};

ProcessCommand xcrun(const QStringList& arguments) {
    return {u"/usr/bin/xcrun"_s, arguments};
}

TEST(SimctlCommandBuilder, ListsAvailableDevicesAsJSON) {
    EXPECT_EQ(builder.listAvailableDevices(), xcrun({u"simctl"_s, u"list"_s, u"-j"_s, u"devices"_s, u"available"_s}));
}

TEST(SimctlCommandBuilder, Boots) {
    EXPECT_EQ(builder.boot(udid), xcrun({u"simctl"_s, u"boot"_s, udid}));
}

TEST(SimctlCommandBuilder, WaitsForTheBoot) {
    EXPECT_EQ(builder.bootStatus(udid), xcrun({u"simctl"_s, u"bootstatus"_s, udid, u"-b"_s}));
    EXPECT_EQ(builder.bootStatus(u"X"_s).displayString(), u"/usr/bin/xcrun simctl bootstatus X -b");
}

TEST(SimctlCommandBuilder, LaunchesTheSimulatorThroughTheOpenTool) {
    EXPECT_EQ(
        builder.launchSimulator(udid),
        (ProcessCommand{u"/usr/bin/open"_s, {u"-a"_s, u"Simulator"_s, u"--args"_s, u"-CurrentDeviceUDID"_s, udid}}));
}

TEST(SimctlCommandBuilder, OpensTheAddressAsItIsSpelled) {
    const URL url = *URL::parse(u"HTTP://Example.com:80/a%20b?x=1&y=2#z");
    EXPECT_EQ(builder.openURL(udid, url),
              xcrun({u"simctl"_s, u"openurl"_s, udid, u"HTTP://Example.com:80/a%20b?x=1&y=2#z"_s}));
}

TEST(SimctlCommandBuilder, SetsTheLocationAsOneArgumentWithTheMinusBehindTheComma) {
    EXPECT_EQ(builder.setLocation(udid, {37.3349, -122.009}),
              xcrun({u"simctl"_s, u"location"_s, udid, u"set"_s, u"37.3349,-122.009"_s}));
    EXPECT_EQ(builder.setLocation(udid, {-12, 0}).arguments.last(), u"-12.0,0.0");
}

TEST(SimctlCommandBuilder, ClearsTheLocation) {
    EXPECT_EQ(builder.clearLocation(udid), xcrun({u"simctl"_s, u"location"_s, udid, u"clear"_s}));
}

TEST(SimctlCommandBuilder, TakesItsPathsAndTheDeviceVerbatim) {
    const SimctlCommandBuilder other{u"/opt/my tools/xcrun"_s, u"/opt/open"_s};
    EXPECT_EQ(other.boot(u"a b"_s), (ProcessCommand{u"/opt/my tools/xcrun"_s, {u"simctl"_s, u"boot"_s, u"a b"_s}}));
    EXPECT_EQ(other.launchSimulator(udid).executablePath, u"/opt/open");
}

} // namespace
} // namespace corvanta
