// SPDX-License-Identifier: MIT
#pragma once

#include "InspectableTarget.h"
#include "InspectorProcess.h"

#include <map>
#include <memory>
#include <string>

namespace corvanta::lab {

/// The inspectors of one device: never more than one for a page, since a second one ends the device's pages' process
/// (WebKitGTK 2.50).
///
/// One further process waits ready without a page, so that the next inspector is there at once. Main thread only.
class InspectorPool {
public:
    explicit InspectorPool(std::string serverAddress);
    InspectorPool(const InspectorPool&) = delete;
    InspectorPool& operator=(const InspectorPool&) = delete;
    /// Every inspector of the device leaves.
    ~InspectorPool();

    /// Opens the page's inspector, or brings the one it has forward.
    void inspect(const TargetIdentifier& target, const std::string& title);

    /// What is open now: inspectors of other pages leave, the others get the present titles.
    void setTargets(const InspectableTargets& targets);

private:
    struct Slot {
        std::unique_ptr<InspectorProcess> process;
        std::string title;
    };

    void left(const TargetIdentifier& target);
    void scheduleSpare(guint delay);
    void startSpare();

    std::string m_serverAddress;
    std::map<TargetIdentifier, Slot> m_inspectors;
    std::unique_ptr<InspectorProcess> m_spare;
    SourceGuard m_spareTimer;
};

} // namespace corvanta::lab
