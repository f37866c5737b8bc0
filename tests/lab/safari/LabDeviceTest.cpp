// SPDX-License-Identifier: MIT
#include "LabDevice.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace corvanta::lab {

namespace {

LabDevice device(const char* name, const char* runtime, const char* busName = "") {
    return {.busName = busName, .name = name, .runtimeName = runtime, .state = "Booted", .inspectorAddress = {}};
}

std::vector<std::string> sortedTitles(std::vector<LabDevice> devices) {
    std::ranges::sort(devices, comesBefore);
    std::vector<std::string> titles;
    std::ranges::transform(devices, std::back_inserter(titles), &LabDevice::title);
    return titles;
}

} // namespace

TEST(LabDevice, IsTitledByNameAndRuntime) {
    EXPECT_EQ(device("iPhone 16 Pro", "iOS 18.2").title(), "iPhone 16 Pro – iOS 18.2");
}

TEST(LabDevice, SortsNamesAsPeopleDo) {
    EXPECT_EQ(
        sortedTitles({device("iPhone 16 Pro", "iOS 18.2"), device("iPhone 16", "iOS 18.2"),
                      device("iPhone 9", "iOS 18.2"), device("IPAD", "iOS 18.2"), device("iphone 15", "iOS 18.2")}),
        (std::vector<std::string>{"IPAD – iOS 18.2", "iPhone 9 – iOS 18.2", "iphone 15 – iOS 18.2",
                                  "iPhone 16 – iOS 18.2", "iPhone 16 Pro – iOS 18.2"}));
}

TEST(LabDevice, PutsTheNewestRuntimeFirst) {
    EXPECT_EQ(sortedTitles({device("iPhone", "iOS 9.3"), device("iPhone", "iOS 18.2"), device("iPhone", "iOS 18.10")}),
              (std::vector<std::string>{"iPhone – iOS 18.10", "iPhone – iOS 18.2", "iPhone – iOS 9.3"}));
}

TEST(LabDevice, TellsTwinsApart) {
    EXPECT_TRUE(comesBefore(device("iPhone", "iOS 18.2", "a"), device("iPhone", "iOS 18.2", "b")));
    EXPECT_FALSE(comesBefore(device("iPhone", "iOS 18.2", "b"), device("iPhone", "iOS 18.2", "a")));
}

} // namespace corvanta::lab
