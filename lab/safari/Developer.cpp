// SPDX-License-Identifier: MIT
#include "Developer.h"

#include "InspectorPool.h"
#include "InspectorRelay.h"
#include "PageTitle.h"
#include "TargetListSettler.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace corvanta::lab {

/// What Safari holds of one booted device: the line to its server, its settled pages and their inspectors.
class Developer::Device {
public:
    Device(const LabDevice& device, DevelopMenu& menu)
        : m_busName(device.busName)
        , m_menu(menu)
        , m_relay(device.inspectorAddress, [this](InspectableTargets targets) { received(std::move(targets)); })
        , m_inspectors(m_relay.inspectorAddress()) {}

    [[nodiscard]] const std::string& address() const { return m_relay.address(); }

    void inspect(const TargetIdentifier& identifier) {
        const auto target = std::ranges::find(m_targets, identifier, &InspectableTarget::identifier);
        if (target != m_targets.end())
            m_inspectors.inspect(identifier, pageTitle(target->url));
    }

private:
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
            m_menu.setTargets(m_busName, m_targets);
            m_inspectors.setTargets(m_targets);
        }
        schedule();
    }

    std::string m_busName;
    DevelopMenu& m_menu;
    TargetListSettler m_settler;
    InspectableTargets m_targets;
    SourceGuard m_timer;
    InspectorRelay m_relay;
    InspectorPool m_inspectors;
};

Developer::Developer(GDBusConnection* bus)
    : m_menu([this](const std::string& busName, const TargetIdentifier& target) { inspect(busName, target); })
    , m_watcher(bus, [this](const std::vector<LabDevice>& devices) { setDevices(devices); }) {}

Developer::~Developer() = default;

void Developer::setDevices(const std::vector<LabDevice>& devices) {
    std::vector<LabDevice> booted;
    std::ranges::copy_if(devices, std::back_inserter(booted),
                         [](const LabDevice& device) { return device.isBooted() && !device.inspectorAddress.empty(); });
    m_menu.setDevices(booted);
    std::erase_if(m_devices, [&booted](const auto& known) {
        return std::ranges::none_of(booted, [&known](const LabDevice& device) {
            return device.busName == known.first && device.inspectorAddress == known.second->address();
        });
    });
    for (const LabDevice& device : booted) {
        if (!m_devices.contains(device.busName)) {
            m_menu.setTargets(device.busName, {});
            m_devices.emplace(device.busName, std::make_unique<Device>(device, m_menu));
        }
    }
}

void Developer::inspect(const std::string& busName, const TargetIdentifier& target) {
    if (const auto device = m_devices.find(busName); device != m_devices.end())
        device->second->inspect(target);
}

} // namespace corvanta::lab
