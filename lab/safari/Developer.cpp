// SPDX-License-Identifier: MIT
#include "Developer.h"

#include "InspectorPool.h"
#include "InspectorRelay.h"
#include "PageTitle.h"
#include "TargetListSettler.h"

#include <algorithm>
#include <chrono>
#include <set>
#include <utility>

namespace corvanta::lab {

namespace {

constexpr const char* devicePath = "/dev/corvanta/Lab/Device";
constexpr const char* samplesInterface = "dev.corvanta.Lab.DeviceSamples1";
constexpr int developerAnswerLimit = 5000;

bool isAmong(const std::vector<LabDevice>& devices, const std::string& busName) {
    return std::ranges::find(devices, busName, &LabDevice::busName) != devices.end();
}

} // namespace

/// What Safari holds of one device: the line to its server, its settled targets and their inspectors.
class Developer::Device {
public:
    Device(LabDevice device, DevelopMenu& menu, std::function<void()> onConnection)
        : m_device(std::move(device))
        , m_menu(menu)
        , m_onConnection(std::move(onConnection))
        , m_relay(m_device.inspectorAddress,
                  {.onTargets = [this](InspectableTargets targets) { received(std::move(targets)); },
                   .onConnection = [this](bool isConnected) { setConnected(isConnected); }})
        , m_inspectors(m_relay.inspectorAddress()) {}

    [[nodiscard]] bool isConnected() const { return m_isConnected; }

    /// Whether this has a device's place for the same server.
    [[nodiscard]] bool serves(const LabDevice& device) const {
        return device.busName == m_device.busName && device.inspectorAddress == m_device.inspectorAddress;
    }

    void setSwitches(const DeviceSwitches& switches) {
        m_showsInspectors = switches.showsInspectors;
        m_relay.setPausesContexts(switches.pausesContexts);
    }

    /// Shows in the menu what is known.
    void showTargets() { m_menu.setTargets(m_device.busName, m_targets); }

    void inspect(const TargetIdentifier& identifier) {
        const auto target = std::ranges::find(m_targets, identifier, &InspectableTarget::identifier);
        if (target != m_targets.end())
            m_inspectors.inspect(identifier, targetTitle(*target));
    }

private:
    void setConnected(bool isConnected) {
        m_isConnected = isConnected;
        m_onConnection();
    }

    void received(InspectableTargets targets) {
        m_settler.update(std::move(targets), std::chrono::steady_clock::now());
        schedule();
    }

    void schedule() {
        const auto due = m_settler.due();
        if (!due) {
            m_timer.clear();
            return;
        }
        const auto wait = std::chrono::ceil<std::chrono::milliseconds>(*due - std::chrono::steady_clock::now());
        m_timer.set(g_timeout_add(
            static_cast<guint>(std::max<std::int64_t>(wait.count(), 0)),
            [](gpointer self) -> gboolean {
                static_cast<Device*>(self)->m_timer.forget();
                static_cast<Device*>(self)->settle();
                return G_SOURCE_REMOVE;
            },
            this));
    }

    void settle() {
        if (auto targets = m_settler.take(std::chrono::steady_clock::now())) {
            m_targets = std::move(*targets);
            showTargets();
            m_inspectors.setTargets(m_targets);
            inspectNewContexts();
        }
        schedule();
    }

    void inspectNewContexts() {
        std::set<TargetIdentifier> contexts;
        for (const InspectableTarget& target : m_targets) {
            if (target.kind != TargetKind::javaScriptContext)
                continue;
            contexts.insert(target.identifier);
            if (m_showsInspectors && !m_knownContexts.contains(target.identifier))
                inspect(target.identifier);
        }
        m_knownContexts = std::move(contexts);
    }

    LabDevice m_device;
    DevelopMenu& m_menu;
    std::function<void()> m_onConnection;
    bool m_isConnected = false;
    bool m_showsInspectors = false;
    std::set<TargetIdentifier> m_knownContexts;
    TargetListSettler m_settler;
    InspectableTargets m_targets;
    SourceGuard m_timer;
    InspectorRelay m_relay;
    InspectorPool m_inspectors;
};

Developer::Developer(GDBusConnection* bus, SafariSettings& settings)
    : m_bus(retain(bus))
    , m_settings(settings)
    , m_menu({.onInspect = [this](const std::string& busName,
                                  const TargetIdentifier& target) { inspect(busName, target); },
              .onSwitch =
                  [this](const std::string& busName, const DeviceSwitches& switches) {
                      SafariSettingsValues values = m_settings.values();
                      values.setDevice(LabDevice::identifierOf(busName), switches);
                      if (const std::string problem = m_settings.set(values); !problem.empty())
                          g_warning("The switches of a device are not kept: %s", problem.c_str());
                  }})
    , m_watcher(bus, [this](const std::vector<LabDevice>& devices) { setDevices(devices); }) {
    applySettings();
}

Developer::~Developer() = default;

void Developer::applySettings() {
    // Whoever has just switched may be an item of a device that is to go.
    m_update.set(g_idle_add(
        [](gpointer self) -> gboolean {
            auto* const developer = static_cast<Developer*>(self);
            developer->m_update.forget();
            developer->update();
            return G_SOURCE_REMOVE;
        },
        this));
}

void Developer::setDevices(const std::vector<LabDevice>& devices) {
    m_booted.clear();
    std::ranges::copy_if(devices, std::back_inserter(m_booted),
                         [](const LabDevice& device) { return device.isBooted() && !device.inspectorAddress.empty(); });
    std::erase_if(m_samples, [this](const auto& known) { return !isAmong(m_booted, known.first); });
    update();
}

void Developer::update() {
    for (const LabDevice& device : m_booted) {
        remember(device);
        setSamples(device.busName);
    }
    std::vector<LabDevice> devices = remembered();
    devices.insert(devices.end(), m_booted.begin(), m_booted.end());
    std::erase_if(m_devices, [&devices](const auto& known) {
        return std::ranges::none_of(devices,
                                    [&known](const LabDevice& device) { return known.second->serves(device); });
    });
    for (const LabDevice& device : devices) {
        if (!m_devices.contains(device.busName))
            m_devices.emplace(device.busName, std::make_unique<Device>(device, m_menu, [this] { applySettings(); }));
        m_devices.at(device.busName)->setSwitches(m_settings.values().device(device.identifier()));
    }
    std::erase_if(devices, [this](const LabDevice& device) {
        return !isAmong(m_booted, device.busName) && !m_devices.at(device.busName)->isConnected();
    });
    std::ranges::sort(devices, comesBefore);
    m_menu.setDevices(devices);
    for (const LabDevice& device : devices) {
        m_menu.setSwitches(device.busName, m_settings.values().device(device.identifier()));
        m_devices.at(device.busName)->showTargets();
    }
}

std::vector<LabDevice> Developer::remembered() const {
    std::vector<LabDevice> devices;
    for (const auto& [identifier, switches] : m_settings.values().devices) {
        LabDevice device{
            .busName = LabDevice::busNameOf(identifier),
            .name = switches.name,
            .runtimeName = switches.runtimeName,
            .state = "Booted",
            .inspectorAddress = switches.inspectorAddress,
        };
        // Another device may have got the port since.
        const bool isTaken =
            std::ranges::find(m_booted, device.inspectorAddress, &LabDevice::inspectorAddress) != m_booted.end();
        if (switches.connectsViaNetwork && !switches.inspectorAddress.empty() && !isTaken &&
            !isAmong(m_booted, device.busName))
            devices.push_back(std::move(device));
    }
    return devices;
}

void Developer::remember(const LabDevice& device) {
    SafariSettingsValues values = m_settings.values();
    DeviceSwitches switches = values.device(device.identifier());
    if (!switches.connectsViaNetwork)
        return;
    switches.name = device.name;
    switches.runtimeName = device.runtimeName;
    switches.inspectorAddress = device.inspectorAddress;
    values.setDevice(device.identifier(), switches);
    if (const std::string problem = m_settings.set(values); !problem.empty())
        g_warning("The address of %s is not kept: %s", device.name.c_str(), problem.c_str());
}

void Developer::setSamples(const std::string& busName) {
    const Samples wanted{m_settings.values().sampleContext, m_settings.values().sampleExtension};
    if (const auto known = m_samples.find(busName); known != m_samples.end() && known->second == wanted)
        return;
    m_samples[busName] = wanted;
    for (const auto& [sample, isPresent] :
         {std::pair{"JSContext", wanted.context}, std::pair{"WebExtension", wanted.extension}}) {
        // A device that has no samples answers with an error, which changes nothing.
        g_dbus_connection_call(m_bus.get(), busName.c_str(), devicePath, samplesInterface, "SetPresent",
                               g_variant_new("(sb)", sample, isPresent ? TRUE : FALSE), nullptr,
                               G_DBUS_CALL_FLAGS_NO_AUTO_START, developerAnswerLimit, nullptr, nullptr, nullptr);
    }
}

void Developer::inspect(const std::string& busName, const TargetIdentifier& target) {
    if (const auto device = m_devices.find(busName); device != m_devices.end())
        device->second->inspect(target);
}

} // namespace corvanta::lab
