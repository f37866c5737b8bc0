// SPDX-License-Identifier: MIT
#include "SafariSettings.h"

#include <gtest/gtest.h>

namespace corvanta::lab {

namespace {

SafariSettingsValues changedValues() {
    SafariSettingsValues values;
    values.developerFeatures = false;
    values.sampleContext = true;
    values.setDevice("ABC-1", {.showsInspectors = true,
                               .pausesContexts = false,
                               .connectsViaNetwork = true,
                               .name = "iPhone “16”",
                               .runtimeName = "iOS 18.2",
                               .inspectorAddress = "127.0.0.1:4000"});
    values.setDevice("ABC-2", {.pausesContexts = true, .name = {}, .runtimeName = {}, .inspectorAddress = {}});
    return values;
}

} // namespace

TEST(SafariSettingsText, ReadsWhatItWrote) {
    EXPECT_EQ(parseSafariSettings(formatSafariSettings(changedValues(), "")), changedValues());
}

TEST(SafariSettingsText, KeepsWhatItDoesNotKnow) {
    const std::string text = formatSafariSettings(changedValues(), R"({"other": [1, 2], "developerFeatures": true})");
    EXPECT_NE(text.find("\"other\""), std::string::npos) << text;
    EXPECT_EQ(parseSafariSettings(text), changedValues());
}

TEST(SafariSettingsText, TakesBackWhatWasSwitchedOff) {
    const std::string text = formatSafariSettings(changedValues(), "");
    EXPECT_EQ(parseSafariSettings(formatSafariSettings({}, text)), SafariSettingsValues());
}

TEST(SafariSettingsText, ReadsDamagedTextAsTheDefaults) {
    for (const char* const text : {"", "{", "[]", "null", R"({"developerFeatures": "no", "devices": 3})",
                                   R"({"devices": {"ABC": [], "DEF": {"connectViaNetwork": 1, "name": 2}}})"})
        EXPECT_EQ(parseSafariSettings(text), SafariSettingsValues()) << text;
}

TEST(SafariSettingsValues, ForgetsADeviceWhoseSwitchesAreOff) {
    SafariSettingsValues values = changedValues();
    values.setDevice("ABC-1", {});
    values.setDevice("ABC-2", {});
    EXPECT_TRUE(values.devices.empty());
    EXPECT_EQ(values.device("ABC-1"), DeviceSwitches());
}

} // namespace corvanta::lab
