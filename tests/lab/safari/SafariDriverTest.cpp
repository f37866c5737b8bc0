// SPDX-License-Identifier: MIT
// Corvanta's own driver against the lab's Safari, with everything in the menu that it must pass over.
#include "SafariDesktop.h"

#include "Platform.h"
#include "TaskWaiting.h"
#include "safari/SafariAXInspector.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

namespace corvanta::lab::testing {

namespace {

using namespace Qt::Literals::StringLiterals;
using corvanta::testing::WatchedTask;

QStringList titles(const std::vector<SafariTarget>& targets) {
    QStringList result;
    std::ranges::transform(targets, std::back_inserter(result), &SafariTarget::title);
    return result;
}

} // namespace

/// With two pages, an extension, and Safari's switches.
class SafariDriver : public SafariDesktop {
protected:
    void SetUp() override {
        SafariDesktop::SetUp();
        std::ofstream(m_labHome + "/safari.json") << R"({"sampleExtension": true})";
        device().open("page://apple.test/");
        device().open("page://shop.test/");
        startSafari();
        ASSERT_TRUE(eventually([this] { return find({"Develop", deviceTitle, "Extensions"}).has_value(); }));
        ASSERT_TRUE(eventually([this] { return pages().size() == 2; }));
        ASSERT_TRUE(corvanta::testing::waitUntil([this] { return m_platform->accessibility().requestTrust(); }));
        ASSERT_TRUE(corvanta::testing::waitUntil([this] { return m_driver.developerFeaturesAvailable(); }));
    }

    [[nodiscard]] std::vector<SafariTarget> targets() {
        const WatchedTask<std::vector<SafariTarget>> task(m_driver.snapshotTargets(deviceName));
        EXPECT_TRUE(corvanta::testing::waitUntil([&task] { return task.isDone(); }));
        return task.result();
    }

    [[nodiscard]] bool hasTargets(const QStringList& wanted) {
        return eventually([&] { return titles(targets()) == wanted; });
    }

    const std::string deviceTitle = "iPhone 16 Pro – iOS 18.2";
    const QString deviceName = u"iPhone 16 Pro"_s;
    std::unique_ptr<Platform> m_platform = makePlatform();
    SafariAXInspector m_driver{m_platform->accessibility(), m_platform->desktop(), m_platform->clock()};
};

TEST_F(SafariDriver, FindsThePagesAmongAllElse) {
    EXPECT_TRUE(hasTargets({u"apple.test"_s, u"shop.test"_s}));

    device().open("page://news.test/");
    ASSERT_TRUE(hasTargets({u"apple.test"_s, u"shop.test"_s, u"news.test"_s}));

    const WatchedTask<void> attaching(m_driver.attach(targets().at(1), deviceName));
    ASSERT_TRUE(corvanta::testing::waitUntil([&attaching] { return attaching.isDone(); }));
    attaching.result();
    EXPECT_TRUE(m_driver.managedInspectorIsPresent());
    EXPECT_EQ(inspectorTitles(), std::vector<std::string>{"Web Inspector — shop.test"});
}

TEST_F(SafariDriver, FindsTheSamePagesWhenTheGroupsCome) {
    ASSERT_TRUE(hasTargets({u"apple.test"_s, u"shop.test"_s}));
    const auto before = targets();
    std::ofstream(m_labHome + "/safari.json") << "{}";
    ASSERT_TRUE(eventually([this] { return !find({"Develop", deviceTitle, "Extensions"}); }));
    EXPECT_EQ(targets(), before) << "with the same identities";
}

} // namespace corvanta::lab::testing

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
