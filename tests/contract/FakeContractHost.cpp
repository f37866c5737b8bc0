// SPDX-License-Identifier: MIT
#include "ContractHost.h"

#include "FakeAccessibilityTree.h"
#include "FakeDesktop.h"
#include "FakeError.h"
#include "MemoryPreferencesStore.h"
#include "VirtualClock.h"

#include <QSet>

namespace corvanta::testing {

using namespace Qt::Literals::StringLiterals;

namespace {

/// The fakes with which the rest of the tests work.
class FakeContractHost final : public ContractHost {
public:
    FakeContractHost() {
        using Element = FakeAccessibilityTree::Element;
        Element& application = m_tree.addUntitled(u"application"_s);
        Element& bar = m_tree.addUntitled(u"menu bar"_s);
        Element& develop = m_tree.add(u"Develop"_s);
        Element& device = m_tree.add(u"iPhone 16 Pro – iOS 18.2"_s);
        Element& menuOfDevelop = m_tree.addUntitled(u"menu of Develop"_s);
        Element& menuOfDevice = m_tree.addUntitled(u"menu of the device"_s);
        application.set(u"AXMenuBar"_s, &bar);
        bar.append(m_tree.add(u"File"_s)).append(develop);
        develop.append(menuOfDevelop);
        menuOfDevelop.append(device);
        device.append(menuOfDevice);
        menuOfDevice.append(m_tree.add(u"iPhone 16 Pro Simulator"_s).enabled(false));
        for (const QString& page : {u"localhost — first"_s, u"localhost — second"_s}) {
            menuOfDevice.append(
                m_tree.add(page).enabled(true).refuse(u"AXNoSuchAction"_s).whenPerformed(u"AXPress"_s, [this, page] {
                    m_pressed.insert(page);
                }));
        }
        application.append(m_tree.add(u"Fixture Window"_s).place({10, 20, 400, 300}), u"AXWindows"_s);
        m_tree.setApplication(bundleIdentifier(), application);
        m_desktop.allScreens = {{{0, 0, 1600, 1000}, {0, 0, 1600, 975}}};
        m_desktop.focusedScreen = m_desktop.allScreens.front();
        m_desktop.script.fail(DesktopOperation::openApplication, FakeError(u"It is not there."_s));
    }

    [[nodiscard]] AccessibilityClient& accessibility() override { return m_tree; }

    [[nodiscard]] Desktop& desktop() override { return m_desktop; }

    [[nodiscard]] PreferencesStore& preferences() override { return m_preferences; }

    [[nodiscard]] QString bundleIdentifier() const override { return u"dev.corvanta.MenuFixture"_s; }

    [[nodiscard]] bool wasPressed(const QString& title) override { return m_pressed.contains(title); }

private:
    VirtualClock m_clock;
    CallLog m_log{m_clock};
    FakeAccessibilityTree m_tree{m_clock};
    FakeDesktop m_desktop{m_clock, m_log};
    MemoryPreferencesStore m_preferences;
    QSet<QString> m_pressed;
};

} // namespace

std::unique_ptr<ContractHost> makeContractHost() {
    return std::make_unique<FakeContractHost>();
}

} // namespace corvanta::testing
