// SPDX-License-Identifier: MIT
// What every implementation of the seam keeps to, the fakes of the unit tests among them.
#include "ContractHost.h"
#include "TaskWaiting.h"
#include "support/LocalizedError.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace corvanta::testing;

using Elements = std::vector<AccessibilityElement>;

class SeamContract : public ::testing::Test {
protected:
    void SetUp() override {
        // Asked once: the host may show a prompt of its own.
        if (!client().requestTrust() && !waitUntil([this] { return client().isTrusted(); }, std::chrono::seconds(5)))
            GTEST_SKIP() << "this process may not use the accessibility interface here";
        ASSERT_TRUE(waitUntil([this] { return !entries().empty() && window().has_value(); }));
    }

    [[nodiscard]] AccessibilityClient& client() { return host->accessibility(); }

    template<typename Value>
    std::optional<Value> read(const std::optional<AccessibilityElement>& element, QStringView name) {
        if (!element)
            return std::nullopt;
        const auto value = client().attribute(*element, name);
        if (!value || !std::holds_alternative<Value>(*value))
            return std::nullopt;
        return std::get<Value>(*value);
    }

    [[nodiscard]] QString title(const AccessibilityElement& element) {
        return read<QString>(element, u"AXTitle").value_or(QString());
    }

    [[nodiscard]] Elements children(const std::optional<AccessibilityElement>& element) {
        return read<Elements>(element, u"AXChildren").value_or(Elements());
    }

    [[nodiscard]] std::optional<AccessibilityElement> titled(const Elements& elements, const QString& wanted) {
        const auto found =
            std::ranges::find_if(elements, [&](const auto& element) { return title(element) == wanted; });
        return found == elements.end() ? std::nullopt : std::optional(*found);
    }

    [[nodiscard]] std::optional<AccessibilityElement> application() {
        return client().application(host->bundleIdentifier());
    }

    [[nodiscard]] Elements menus() { return children(read<AccessibilityElement>(application(), u"AXMenuBar")); }

    /// What is in the menu of an item: the item has one child, and that has the entries.
    [[nodiscard]] Elements entriesOf(const std::optional<AccessibilityElement>& item) {
        const Elements menu = children(item);
        return menu.empty() ? Elements() : children(menu.front());
    }

    [[nodiscard]] std::optional<AccessibilityElement> device() {
        return titled(entriesOf(titled(menus(), u"Develop"_s)), u"iPhone 16 Pro – iOS 18.2"_s);
    }

    [[nodiscard]] Elements entries() { return entriesOf(device()); }

    [[nodiscard]] std::optional<AccessibilityElement> window() {
        return titled(read<Elements>(application(), u"AXWindows").value_or(Elements()), u"Fixture Window"_s);
    }

    const std::unique_ptr<ContractHost> host = makeContractHost();
};

TEST_F(SeamContract, KnowsApplicationsThatRunAlone) {
    EXPECT_TRUE(application());
    EXPECT_FALSE(client().application(u"dev.corvanta.NoSuchApplication"_s));
}

TEST_F(SeamContract, ReadsTheMenusInTheirOrder) {
    QStringList titles;
    for (const AccessibilityElement& menu : menus())
        titles.append(title(menu));
    EXPECT_TRUE(titles.contains(u"File"_s));
    EXPECT_GT(titles.indexOf(u"Develop"_s), titles.indexOf(u"File"_s));
}

TEST_F(SeamContract, PutsOneUntitledElementBetweenAnItemAndItsEntries) {
    const Elements between = children(device());
    ASSERT_EQ(between.size(), 1U);
    EXPECT_TRUE(title(between.front()).isEmpty());
    EXPECT_TRUE(titled(entries(), u"localhost — first"_s));
    EXPECT_TRUE(titled(entries(), u"localhost — second"_s));
}

TEST_F(SeamContract, TellsWhatIsEnabled) {
    EXPECT_EQ(read<bool>(titled(entries(), u"iPhone 16 Pro Simulator"_s), u"AXEnabled"), false);
    EXPECT_EQ(read<bool>(titled(entries(), u"localhost — first"_s), u"AXEnabled"), true);
}

TEST_F(SeamContract, ReadsAndDoesNothingWhereThereIsNothing) {
    const auto page = titled(entries(), u"localhost — first"_s);
    ASSERT_TRUE(page);
    EXPECT_FALSE(client().attribute(*page, u"AXNoSuchAttribute"));
    EXPECT_FALSE(client().performAction(*page, u"AXNoSuchAction"));
}

TEST_F(SeamContract, KeepsTheIdentityOfAnElement) {
    const auto first = titled(entries(), u"localhost — first"_s);
    const auto again = titled(entries(), u"localhost — first"_s);
    const auto other = titled(entries(), u"localhost — second"_s);
    ASSERT_TRUE(first && again && other);
    EXPECT_EQ(*first, *again);
    EXPECT_EQ(first->hash(), again->hash());
    EXPECT_FALSE(*first == *other);
}

TEST_F(SeamContract, PressesAnEntryOfAMenuThatIsNotOpen) {
    const auto page = titled(entries(), u"localhost — second"_s);
    ASSERT_TRUE(page);
    EXPECT_TRUE(client().performAction(*page, u"AXPress"));
    EXPECT_TRUE(waitUntil([this] { return host->wasPressed(u"localhost — second"_s); }));
    EXPECT_FALSE(host->wasPressed(u"localhost — first"_s));
}

TEST_F(SeamContract, MovesAndResizesAWindow) {
    const auto moved = window();
    ASSERT_TRUE(moved);
    ASSERT_TRUE(read<Point>(moved, u"AXPosition"));
    ASSERT_TRUE(read<Size>(moved, u"AXSize"));
    EXPECT_TRUE(client().setAttribute(*moved, u"AXPosition", Point{120, 140}));
    EXPECT_TRUE(client().setAttribute(*moved, u"AXSize", Size{520, 410}));
    const auto isThere = [&] {
        const auto position = read<Point>(moved, u"AXPosition").value_or(Point());
        const auto size = read<Size>(moved, u"AXSize").value_or(Size());
        const auto isNear = [](double one, double other) { return std::abs(one - other) <= 1; };
        return isNear(position.x, 120) && isNear(position.y, 140) && isNear(size.width, 520) &&
               isNear(size.height, 410);
    };
    EXPECT_TRUE(waitUntil(isThere));
}

/// What needs no permission.
class DesktopContract : public ::testing::Test {
protected:
    const std::unique_ptr<ContractHost> host = makeContractHost();
};

TEST_F(DesktopContract, HasThePrimaryScreenFirst) {
    const std::vector<Screen> screens = host->desktop().screens();
    ASSERT_FALSE(screens.empty());
    const Screen& primary = screens.front();
    EXPECT_EQ(primary.frame.minX(), 0);
    EXPECT_EQ(primary.frame.minY(), 0);
    for (const Screen& screen : screens) {
        EXPECT_GT(screen.frame.width * screen.frame.height, 0);
        EXPECT_GE(screen.visibleFrame.minX(), screen.frame.minX());
        EXPECT_GE(screen.visibleFrame.minY(), screen.frame.minY());
        EXPECT_LE(screen.visibleFrame.maxX(), screen.frame.maxX());
        EXPECT_LE(screen.visibleFrame.maxY(), screen.frame.maxY());
    }
    const auto main = host->desktop().mainScreen();
    ASSERT_TRUE(main);
    EXPECT_TRUE(std::ranges::find(screens, *main) != screens.end());
}

TEST_F(DesktopContract, KnowsNothingOfWhatIsNotThere) {
    EXPECT_FALSE(host->desktop().isRunning(u"dev.corvanta.NoSuchApplication"_s));
    EXPECT_FALSE(host->desktop().applicationPath(u"dev.corvanta.NoSuchApplication"_s));
    host->desktop().activate(u"dev.corvanta.NoSuchApplication"_s);
}

TEST_F(DesktopContract, SaysWhyAnApplicationCannotBeOpened) {
    const WatchedTask<void> task(host->desktop().openApplication(u"/Applications/No Such Application.app"_s));
    ASSERT_TRUE(waitUntil([&] { return task.isDone(); }));
    try {
        task.result();
        FAIL() << "it did not throw";
    } catch (const LocalizedError& error) {
        EXPECT_FALSE(error.errorDescription().isEmpty());
    }
}

TEST_F(DesktopContract, KnowsTheSystemsVersion) {
    EXPECT_GT(host->desktop().operatingSystemVersion().major, 0);
}

TEST_F(DesktopContract, KeepsDataUnderKeys) {
    PreferencesStore& preferences = host->preferences();
    const QString key = u"contractOfTheSeam"_s;
    const QByteArray value("{\"name\":\"\xc3\xa4\"}\0\xff", 16);
    preferences.setData(key, value);
    EXPECT_EQ(preferences.data(key), value);
    preferences.setData(key, "second");
    EXPECT_EQ(preferences.data(key), QByteArray("second"));
    EXPECT_FALSE(preferences.data(u"noSuchKeyOfTheContract"_s));
}

} // namespace
} // namespace corvanta
