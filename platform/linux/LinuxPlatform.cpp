// SPDX-License-Identifier: MIT
#include "AtspiAccessibilityClient.h"
#include "DataFolder.h"
#include "LabCommandRunner.h"
#include "LinuxDesktop.h"
#include "LinuxPlaceSearch.h"
#include "MapSetup.h"
#include "Platform.h"
#include "SettingsPreferencesStore.h"
#include "WidgetMapSurface.h"
#include "X11ControlWindow.h"
#include "X11Screens.h"
#include "X11Windows.h"
#include "simulator/FoundationProcessRunner.h"
#include "support/SystemClock.h"

#include <chrono>

namespace corvanta {

namespace {

class LinuxPlatform final : public Platform {
public:
    LinuxPlatform() {
        for (const auto* const bundleIdentifier : {"com.apple.Safari", "com.apple.iphonesimulator"})
            m_accessibility.keepReady(QLatin1StringView(bundleIdentifier));
    }

    [[nodiscard]] QCoro::Task<void> untilReady() override {
        // Asking never waits for long, and a busy session answers late: taken for a "no", its silence would be shown as
        // a missing permission.
        const Clock::TimePoint end = m_clock.now() + readyLimit;
        while (!m_accessibility.isSettled() && m_clock.now() < end)
            co_await m_clock.sleepFor(readyPoll);
    }

    [[nodiscard]] AccessibilityClient& accessibility() override { return m_accessibility; }

    [[nodiscard]] Desktop& desktop() override { return m_desktop; }

    [[nodiscard]] Clock& clock() override { return m_clock; }

    [[nodiscard]] PreferencesStore& preferences() override { return m_preferences; }

    [[nodiscard]] PlaceSearch& placeSearch() override { return m_placeSearch; }

    [[nodiscard]] std::unique_ptr<MapSurface> makeMapSurface(QWidget& parent) override {
        return std::make_unique<WidgetMapSurface>(m_mapData.sources(MapSetup::tileOptions(m_preferences)), parent);
    }

    [[nodiscard]] std::unique_ptr<CommandRunning> makeCommandRunner() override {
        return std::make_unique<LabCommandRunner>(std::make_unique<FoundationProcessRunner>(), m_lab);
    }

    [[nodiscard]] std::shared_ptr<ControlWindow> makeControlWindow(QWidget& window) override {
        return std::make_shared<X11ControlWindow>(window, m_windows, m_screens);
    }

private:
    static constexpr auto readyPoll = std::chrono::milliseconds(20);
    static constexpr auto readyLimit = std::chrono::seconds(5);

    LabFolder m_lab;
    SystemClock m_clock;
    SettingsPreferencesStore m_preferences;
    std::shared_ptr<SharedGazetteer> m_gazetteer =
        std::make_shared<SharedGazetteer>(dataFile(QStringLiteral("places/places.gazetteer")));
    LinuxPlaceSearch m_placeSearch{m_gazetteer, placeSearchAddress(m_preferences), m_clock};
    MapData m_mapData{m_gazetteer};
    X11Windows m_windows;
    X11Screens m_screens{m_windows};
    AtspiAccessibilityClient m_accessibility{m_windows, [this] { return m_screens.primaryOrigin(); }};
    LinuxDesktop m_desktop{m_windows, m_screens, m_clock, m_lab,
                           [this](const QString& identifier) { return m_accessibility.hasMenuBar(identifier); }};
};

} // namespace

std::unique_ptr<Platform> makePlatform() {
    return std::make_unique<LinuxPlatform>();
}

} // namespace corvanta
