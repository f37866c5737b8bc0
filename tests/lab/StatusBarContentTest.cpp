// SPDX-License-Identifier: MIT
#include "StatusBarContent.h"

#include <gtest/gtest.h>

namespace corvanta::lab {

namespace {

using namespace Qt::Literals::StringLiterals;
using Radio = StatusBarContent::Radio;
using Battery = StatusBarContent::Battery;

TEST(StatusBarContent, IsThatOfAFullDeviceWithoutOverrides) {
    EXPECT_EQ(StatusBarContent::of({}), StatusBarContent());
}

TEST(StatusBarContent, TakesEveryOverride) {
    const StatusBarContent content = StatusBarContent::of({{u"time"_s, u"9:41"_s},
                                                           {u"dataNetwork"_s, u"5g-uwb"_s},
                                                           {u"wifiBars"_s, u"1"_s},
                                                           {u"cellularBars"_s, u"2"_s},
                                                           {u"operatorName"_s, u"Harbour"_s},
                                                           {u"batteryState"_s, u"charging"_s},
                                                           {u"batteryLevel"_s, u"17"_s}});
    EXPECT_EQ(content.time, u"9:41");
    EXPECT_EQ(content.dataNetwork, u"5G UWB");
    EXPECT_EQ(content.wirelessBars, 1);
    EXPECT_EQ(content.cellularBars, 2);
    EXPECT_EQ(content.operatorName, u"Harbour");
    EXPECT_EQ(content.battery, Battery::charging);
    EXPECT_EQ(content.batteryLevel, 17);
}

TEST(StatusBarContent, ReadsAMomentAsTimeAndDate) {
    const StatusBarContent content = StatusBarContent::of({{u"time"_s, u"2007-01-09T09:41:00.000+01:00"_s}});
    EXPECT_EQ(content.time, u"9:41");
    EXPECT_EQ(content.date, QDate(2007, 1, 9));
}

TEST(StatusBarContent, HasNoBarsWithoutANetwork) {
    for (const auto& [word, radio] :
         {std::pair{u"searching"_s, Radio::searching}, std::pair{u"failed"_s, Radio::failed},
          std::pair{u"notSupported"_s, Radio::none}}) {
        const StatusBarContent content = StatusBarContent::of({{u"cellularMode"_s, word}, {u"cellularBars"_s, u"3"_s}});
        EXPECT_EQ(content.cellular, radio);
        EXPECT_EQ(content.cellularBars, 0);
    }
    EXPECT_EQ(StatusBarContent::of({{u"wifiMode"_s, u"searching"_s}}).wirelessBars, 0);
}

TEST(StatusBarContent, NamesDataNetworksAsTheyAreDrawn) {
    for (const auto& [word, name] :
         {std::pair{u"wifi"_s, u"wifi"_s}, std::pair{u"hide"_s, u"hide"_s}, std::pair{u"3g"_s, u"3G"_s},
          std::pair{u"lte-a"_s, u"LTE-A"_s}, std::pair{u"5g+"_s, u"5G+"_s}, std::pair{u"5g-uc"_s, u"5G UC"_s}}) {
        EXPECT_EQ(StatusBarContent::of({{u"dataNetwork"_s, word}}).dataNetwork, name);
    }
}

} // namespace

} // namespace corvanta::lab
