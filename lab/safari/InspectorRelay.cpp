// SPDX-License-Identifier: MIT
#include "InspectorRelay.h"

#include <algorithm>
#include <utility>

namespace corvanta::lab {

namespace {

constexpr guint retryInterval = 150;
/// A device that has been away for longer is asked now and then only.
constexpr int quickAttempts = 40;
constexpr guint slowRetryInterval = 2000;

/// The number of this object's own command; inspectors count theirs from one.
constexpr const char* pauseCommand = R"({"id":2000000001,"method":"Debugger.pause"})";

/// An answer is short whatever it says, and nothing else is looked into.
bool answersPause(const InspectorFrame& frame) {
    constexpr std::size_t longestAnswer = 200;
    const auto message = frameMessage(frame);
    return message && message->size() < longestAnswer && message->find(R"("id":2000000001)") != std::string_view::npos;
}

} // namespace

InspectorRelay::InspectorRelay(std::string address, Handlers handlers)
    : m_address(std::move(address))
    , m_handlers(std::move(handlers))
    , m_service(g_socket_service_new())
    , m_client(g_socket_client_new())
    , m_cancellable(g_cancellable_new()) {
    // The server is on this machine; a proxy that the desktop is set up with has no part in it.
    g_socket_client_set_enable_proxy(m_client.get(), FALSE);
    listen();
    connect();
}

InspectorRelay::~InspectorRelay() {
    g_cancellable_cancel(m_cancellable.get());
    g_signal_handlers_disconnect_by_data(m_service.get(), this);
    g_socket_service_stop(m_service.get());
    g_socket_listener_close(G_SOCKET_LISTENER(m_service.get()));
}

void InspectorRelay::listen() {
    const GlibPointer<GInetAddress> loopback(g_inet_address_new_loopback(G_SOCKET_FAMILY_IPV4));
    const GlibPointer<GSocketAddress> wanted(g_inet_socket_address_new(loopback.get(), 0));
    GSocketAddress* rawAddress = nullptr;
    if (!g_socket_listener_add_address(G_SOCKET_LISTENER(m_service.get()), wanted.get(), G_SOCKET_TYPE_STREAM,
                                       G_SOCKET_PROTOCOL_TCP, nullptr, &rawAddress, nullptr)) {
        g_warning("There is no free port for the inspectors of %s.", m_address.c_str());
        return;
    }
    const GlibPointer<GSocketAddress> address(rawAddress);
    m_inspectorAddress =
        "127.0.0.1:" + std::to_string(g_inet_socket_address_get_port(G_INET_SOCKET_ADDRESS(address.get())));
    g_signal_connect(m_service.get(), "incoming",
                     G_CALLBACK(+[](GSocketService*, GSocketConnection* connection, GObject*, InspectorRelay* self) {
                         self->accept(retain(connection));
                         return TRUE;
                     }),
                     this);
    g_socket_service_start(m_service.get());
}

void InspectorRelay::accept(GlibPointer<GSocketConnection> connection) {
    const auto inspector = m_inspectors.emplace(m_inspectors.end());
    inspector->channel = std::make_unique<InspectorChannel>(
        std::move(connection),
        InspectorChannel::Handlers{
            .onFrame = [this, inspector](const InspectorFrame& frame) { fromInspector(inspector, frame); },
            .onClosed = [this, inspector] { left(inspector); },
        });
}

void InspectorRelay::connect() {
    g_socket_client_connect_to_host_async(
        m_client.get(), m_address.c_str(), 0, m_cancellable.get(),
        [](GObject* client, GAsyncResult* result, gpointer self) {
            GError* rawError = nullptr;
            GlibPointer<GSocketConnection> connection(
                g_socket_client_connect_to_host_finish(G_SOCKET_CLIENT(client), result, &rawError));
            const GlibPointer<GError> error(rawError);
            if (g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED))
                return;
            if (connection)
                static_cast<InspectorRelay*>(self)->connected(std::move(connection));
            else
                static_cast<InspectorRelay*>(self)->lost();
        },
        this);
}

void InspectorRelay::connected(GlibPointer<GSocketConnection> connection) {
    m_device = std::make_unique<InspectorChannel>(
        std::move(connection), InspectorChannel::Handlers{
                                   .onFrame = [this](const InspectorFrame& frame) { fromDevice(frame); },
                                   .onClosed = [this] { lost(); },
                               });
    // The hash names a set of backend commands. The one sent here matches none, and the server answers with its own
    // commands, which are of no interest.
    m_device->send(encodeInspectorFrame("SetupInspectorClient", g_variant_new("(^ay)", "list")));
}

void InspectorRelay::lost() {
    const bool hadChannel = m_device != nullptr;
    m_device.reset();
    m_inspectors.clear();
    m_inspected.clear();
    m_toBePaused.clear();
    m_lists.clear();
    m_listFrames.clear();
    m_retry.set(g_timeout_add(
        ++m_attempts > quickAttempts ? slowRetryInterval : retryInterval,
        [](gpointer self) -> gboolean {
            auto* const relay = static_cast<InspectorRelay*>(self);
            relay->m_retry.forget();
            relay->connect();
            return G_SOURCE_REMOVE;
        },
        this));
    if (hadChannel)
        publish();
    if (std::exchange(m_isConnected, false))
        m_handlers.onConnection(false);
}

void InspectorRelay::fromDevice(const InspectorFrame& frame) {
    if (auto list = decodeTargetList(frame)) {
        keepList(std::move(*list), encodeInspectorFrame(frame));
    } else if (frame.name == "DidSetupInspectorClient") {
        m_attempts = 0;
        if (!std::exchange(m_isConnected, true))
            m_handlers.onConnection(true);
    } else if (frame.name == "SendMessageToFrontend") {
        if (answersPause(frame))
            return;
        const auto target = frameTarget(frame);
        const auto inspector = target ? m_inspected.find(*target) : m_inspected.end();
        if (inspector != m_inspected.end())
            inspector->second->send(encodeInspectorFrame(frame));
    }
}

void InspectorRelay::keepList(TargetList list, std::vector<std::byte> frame) {
    std::erase_if(m_inspected, [&list](const auto& inspected) {
        return inspected.first.connection == list.connection &&
               std::ranges::find(list.targets, inspected.first, &InspectableTarget::identifier) == list.targets.end();
    });
    for (const Inspector& inspector : m_inspectors) {
        if (inspector.wantsLists)
            inspector.channel->send(frame);
    }
    m_listFrames[list.connection] = std::move(frame);
    m_lists[list.connection] = std::move(list.targets);
    publish();
}

void InspectorRelay::fromInspector(Inspectors::iterator inspector, const InspectorFrame& frame) {
    if (frame.name == "SetupInspectorClient") {
        // No commands means that the inspector's own are right: it runs with the same library as the device.
        inspector->channel->send(encodeInspectorFrame("DidSetupInspectorClient", g_variant_new("(^ay)", "")));
        inspector->wantsLists = true;
        for (const auto& [connection, listFrame] : m_listFrames)
            inspector->channel->send(listFrame);
        return;
    }
    const auto target = frameTarget(frame);
    if (!target || !m_device)
        return;
    if (frame.name == "Setup" && !m_inspected.emplace(*target, inspector->channel.get()).second)
        return;
    const auto inspected = m_inspected.find(*target);
    if (inspected == m_inspected.end() || inspected->second != inspector->channel.get())
        return;
    m_device->send(encodeInspectorFrame(frame));
    if (frame.name == "Setup" && m_pausesContexts && isContext(*target))
        m_toBePaused.insert(*target);
    if (m_toBePaused.contains(*target))
        pauseWhenReady(*target, frame);
    if (frame.name == "FrontendDidClose") {
        m_inspected.erase(inspected);
        m_toBePaused.erase(*target);
    }
}

bool InspectorRelay::isContext(const TargetIdentifier& target) const {
    const auto list = m_lists.find(target.connection);
    return list != m_lists.end() && std::ranges::any_of(list->second, [&target](const InspectableTarget& known) {
               return known.identifier == target && known.kind == TargetKind::javaScriptContext;
           });
}

void InspectorRelay::pauseWhenReady(const TargetIdentifier& target, const InspectorFrame& frame) {
    // The last word of an inspector's start: its debugger is on by then.
    const auto message = frameMessage(frame);
    if (!message || message->find(R"("Inspector.initialized")") == std::string_view::npos)
        return;
    m_toBePaused.erase(target);
    m_device->send(encodeInspectorFrame("SendMessageToBackend",
                                        g_variant_new("(tts)", target.connection, target.target, pauseCommand)));
}

void InspectorRelay::left(Inspectors::iterator inspector) {
    std::erase_if(m_inspected, [this, inspector](const auto& inspected) {
        const auto& [target, channel] = inspected;
        if (channel != inspector->channel.get())
            return false;
        m_toBePaused.erase(target);
        if (m_device) {
            m_device->send(
                encodeInspectorFrame("FrontendDidClose", g_variant_new("(tt)", target.connection, target.target)));
        }
        return true;
    });
    m_inspectors.erase(inspector);
}

void InspectorRelay::publish() {
    InspectableTargets all;
    for (const auto& [connection, targets] : m_lists)
        all.insert(all.end(), targets.begin(), targets.end());
    m_handlers.onTargets(std::move(all));
}

} // namespace corvanta::lab
