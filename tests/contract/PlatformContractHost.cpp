// SPDX-License-Identifier: MIT
#include "ContractHost.h"

#include "FixtureProcess.h"
#include "Platform.h"

namespace corvanta::testing {

using namespace Qt::Literals::StringLiterals;

namespace {

/// The platform of this build, and the fixture that stands on its desktop.
class PlatformContractHost final : public ContractHost {
public:
    [[nodiscard]] AccessibilityClient& accessibility() override { return m_platform->accessibility(); }

    [[nodiscard]] Desktop& desktop() override { return m_platform->desktop(); }

    [[nodiscard]] PreferencesStore& preferences() override { return m_platform->preferences(); }

    [[nodiscard]] QString bundleIdentifier() const override { return u"dev.corvanta.MenuFixture"_s; }

    [[nodiscard]] bool wasPressed(const QString& title) override {
        return m_fixture.reports().contains(u"pressed "_s + title);
    }

private:
    FixtureProcess m_fixture{bundleIdentifier()};
    std::unique_ptr<Platform> m_platform = makePlatform();
};

} // namespace

std::unique_ptr<ContractHost> makeContractHost() {
    return std::make_unique<PlatformContractHost>();
}

} // namespace corvanta::testing
