// SPDX-License-Identifier: MIT
#pragma once

#include "GlibPointers.h"
#include "InspectableTarget.h"
#include "InspectorChannel.h"

#include <functional>
#include <list>
#include <map>
#include <memory>
#include <set>
#include <string>

namespace corvanta::lab {

/// Stands between a device's inspector server and everyone in Safari who has to do with it.
///
/// The server (WebKitGTK 2.50) sends page lists and inspector messages only to the client that came last, and does not
/// survive two inspectors of one page. So this object is its only client: it keeps the page list, and it is the server
/// of the inspector processes, to each of which it passes the lists and the messages of the pages inspected there. A
/// page that is being inspected is not given to a second inspector.
///
/// While the device's server is away the list is empty and the connection is tried again until this object goes.
/// Listens on loopback only. Main thread only.
class InspectorRelay {
public:
    struct Handlers {
        /// Every list, the first one included.
        std::function<void(InspectableTargets)> onTargets;
        /// The device's server has answered, or has gone away.
        std::function<void(bool isConnected)> onConnection;
    };

    /// `address` is the "host:port" of the device's server. The handlers are called from the main loop, never from
    /// within a call into this object.
    InspectorRelay(std::string address, Handlers handlers);
    InspectorRelay(const InspectorRelay&) = delete;
    InspectorRelay& operator=(const InspectorRelay&) = delete;
    ~InspectorRelay();

    /// The device's server.
    [[nodiscard]] const std::string& address() const { return m_address; }

    /// Where inspectors connect: "127.0.0.1:PORT".
    [[nodiscard]] const std::string& inspectorAddress() const { return m_inspectorAddress; }

    /// Whether a JavaScript context is paused, at the next statement that it runs, when its inspector is ready.
    void setPausesContexts(bool pauses) { m_pausesContexts = pauses; }

private:
    struct Inspector {
        std::unique_ptr<InspectorChannel> channel;
        bool wantsLists = false;
    };

    using Inspectors = std::list<Inspector>;

    void listen();
    void accept(GlibPointer<GSocketConnection> connection);
    void connect();
    void connected(GlibPointer<GSocketConnection> connection);
    void lost();
    void fromDevice(const InspectorFrame& frame);
    void fromInspector(Inspectors::iterator inspector, const InspectorFrame& frame);
    void left(Inspectors::iterator inspector);
    void keepList(TargetList list, std::vector<std::byte> frame);
    void publish();
    [[nodiscard]] bool isContext(const TargetIdentifier& target) const;
    void pauseWhenReady(const TargetIdentifier& target, const InspectorFrame& frame);

    std::string m_address;
    std::string m_inspectorAddress;
    Handlers m_handlers;
    GlibPointer<GSocketService> m_service;
    GlibPointer<GSocketClient> m_client;
    GlibPointer<GCancellable> m_cancellable;
    std::unique_ptr<InspectorChannel> m_device;
    Inspectors m_inspectors;
    std::map<TargetIdentifier, InspectorChannel*> m_inspected;
    /// Contexts whose inspector is still getting ready.
    std::set<TargetIdentifier> m_toBePaused;
    bool m_pausesContexts = false;
    bool m_isConnected = false;
    int m_attempts = 0;
    std::map<std::uint64_t, InspectableTargets> m_lists;
    std::map<std::uint64_t, std::vector<std::byte>> m_listFrames;
    SourceGuard m_retry;
};

} // namespace corvanta::lab
