// SPDX-License-Identifier: MIT
#include "MacAccessibilityClient.h"
#include "MacControlWindow.h"
#include "MacDesktop.h"
#include "MacMapSurface.h"
#include "MacPlaceSearch.h"
#include "MacPreferencesStore.h"
#include "Platform.h"
#include "simulator/FoundationProcessRunner.h"
#include "support/SystemClock.h"

namespace corvanta {

namespace {

class MacPlatform final : public Platform {
public:
    /// Everything can be asked at once.
    [[nodiscard]] QCoro::Task<void> untilReady() override { co_return; }

    [[nodiscard]] AccessibilityClient& accessibility() override { return *m_accessibility; }

    [[nodiscard]] Desktop& desktop() override { return m_desktop; }

    [[nodiscard]] Clock& clock() override { return m_clock; }

    [[nodiscard]] PreferencesStore& preferences() override { return *m_preferences; }

    [[nodiscard]] PlaceSearch& placeSearch() override { return m_placeSearch; }

    [[nodiscard]] std::unique_ptr<CommandRunning> makeCommandRunner() override {
        return std::make_unique<FoundationProcessRunner>();
    }

    [[nodiscard]] std::shared_ptr<ControlWindow> makeControlWindow(QWidget& window) override {
        return makeMacControlWindow(window);
    }

    [[nodiscard]] std::unique_ptr<MapSurface> makeMapSurface(QWidget& parent) override {
        return makeMacMapSurface(parent);
    }

private:
    SystemClock m_clock;
    MacDesktop m_desktop;
    MacPlaceSearch m_placeSearch;
    const std::unique_ptr<AccessibilityClient> m_accessibility = makeMacAccessibilityClient(m_clock);
    const std::unique_ptr<PreferencesStore> m_preferences = makeMacPreferencesStore();
};

} // namespace

std::unique_ptr<Platform> makePlatform() {
    return std::make_unique<MacPlatform>();
}

} // namespace corvanta
