// SPDX-License-Identifier: MIT
#pragma once

#include "GlibPointers.h"
#include "InspectableTarget.h"
#include "InspectorFrames.h"

#include <array>
#include <functional>
#include <map>
#include <string>

namespace corvanta {

/// Listens to the page lists that a device's inspector server sends by itself whenever they change.
///
/// It never inspects anything, so it may be connected beside any number of inspectors. While the server is away the
/// list is empty and the connection is tried again until this object goes. Main thread only.
class InspectorServerClient {
public:
    using TargetsHandler = std::function<void(InspectableTargets)>;

    /// `address` is "host:port". `onTargets` is called from the main loop, never from within a call into this object,
    /// with every list, the first one included.
    InspectorServerClient(std::string address, TargetsHandler onTargets);
    InspectorServerClient(const InspectorServerClient&) = delete;
    InspectorServerClient& operator=(const InspectorServerClient&) = delete;
    ~InspectorServerClient();

    [[nodiscard]] const std::string& address() const { return m_address; }

private:
    void connect();
    void connected(GlibPointer<GSocketConnection> connection);
    void readMore();
    void received(std::span<const std::byte> bytes);
    void lost();
    void publish();

    std::string m_address;
    TargetsHandler m_onTargets;
    GlibPointer<GSocketClient> m_client;
    GlibPointer<GCancellable> m_cancellable;
    GlibPointer<GSocketConnection> m_connection;
    InspectorFrameReader m_reader;
    std::array<std::byte, 16384> m_buffer{};
    std::map<std::uint64_t, InspectableTargets> m_lists;
    SourceGuard m_retry;
};

} // namespace corvanta
