// SPDX-License-Identifier: MIT
#include "simulator/SimulatorDevice.h"

#include "Printing.h"
#include "simulator/SimulatorDeviceJson.h"

#include <gtest/gtest.h>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;

SimulatorDevice device(const QString& state) {
    return {u"U"_s, u"iPhone 16 Pro"_s, state, u"com.apple.CoreSimulator.SimRuntime.iOS-18-2"_s, u"type"_s, true};
}

TEST(SimulatorDevice, IsIdentifiedByItsUDID) {
    EXPECT_EQ(device(u"Shutdown"_s).id(), u"U");
}

TEST(SimulatorDevice, IsBootedInExactlyThatState) {
    EXPECT_TRUE(device(u"Booted"_s).isBooted());
    EXPECT_FALSE(device(u"booted"_s).isBooted());
    EXPECT_FALSE(device(u"Booting"_s).isBooted());
}

TEST(SimulatorDevice, ShowsNameAndRuntime) {
    EXPECT_EQ(device(u"Shutdown"_s).displayName(), u"iPhone 16 Pro — iOS 18.2");
}

TEST(SimulatorDevice, ShowsThatItIsBooted) {
    EXPECT_EQ(device(u"Booted"_s).displayName(), u"iPhone 16 Pro — iOS 18.2 • Booted");
}

TEST(SimulatorDevice, OnlyTurnsTheDashesOfAnotherRuntimeIntoDots) {
    SimulatorDevice other = device(u"Shutdown"_s);
    other.runtimeIdentifier = u"com.apple.CoreSimulator.SimRuntime.xrOS-2-0"_s;
    EXPECT_EQ(other.runtimeDisplayName(), u"com.apple.CoreSimulator.SimRuntime.xrOS.2.0");
}

TEST(SimulatorDevice, ReplacesEveryOccurrenceOfTheRuntimePrefix) {
    SimulatorDevice other = device(u"Shutdown"_s);
    other.runtimeIdentifier = u"x-com.apple.CoreSimulator.SimRuntime.iOS-1-com.apple.CoreSimulator.SimRuntime.iOS-2"_s;
    EXPECT_EQ(other.runtimeDisplayName(), u"x.iOS 1.iOS 2");
}

TEST(SimulatorDevice, ReadsTheStoredFormThatItWrote) {
    SimulatorDevice plain = device(u"Booted"_s);
    EXPECT_EQ(decodeSimulatorDevice(JsonDecoder(encodeJson(plain))), plain);
    plain.deviceTypeIdentifier = std::nullopt;
    EXPECT_FALSE(encodeJson(plain).contains(u"deviceTypeIdentifier"_s));
    EXPECT_EQ(decodeSimulatorDevice(JsonDecoder(encodeJson(plain))), plain);
}

} // namespace
} // namespace corvanta
