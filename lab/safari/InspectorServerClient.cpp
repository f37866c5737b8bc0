// SPDX-License-Identifier: MIT
#include "InspectorServerClient.h"

#include <utility>

namespace corvanta {

namespace {

constexpr guint retryInterval = 150;

bool wasCancelled(const GlibPointer<GError>& error) {
    return g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED);
}

} // namespace

InspectorServerClient::InspectorServerClient(std::string address, TargetsHandler onTargets)
    : m_address(std::move(address))
    , m_onTargets(std::move(onTargets))
    , m_client(g_socket_client_new())
    , m_cancellable(g_cancellable_new()) {
    // The server listens on this machine; a proxy that the desktop is set up with has no part in it.
    g_socket_client_set_enable_proxy(m_client.get(), FALSE);
    connect();
}

InspectorServerClient::~InspectorServerClient() {
    g_cancellable_cancel(m_cancellable.get());
}

void InspectorServerClient::connect() {
    g_socket_client_connect_to_host_async(
        m_client.get(), m_address.c_str(), 0, m_cancellable.get(),
        [](GObject* client, GAsyncResult* result, gpointer self) {
            GError* rawError = nullptr;
            GlibPointer<GSocketConnection> connection(
                g_socket_client_connect_to_host_finish(G_SOCKET_CLIENT(client), result, &rawError));
            const GlibPointer<GError> error(rawError);
            if (wasCancelled(error))
                return;
            if (connection)
                static_cast<InspectorServerClient*>(self)->connected(std::move(connection));
            else
                static_cast<InspectorServerClient*>(self)->lost();
        },
        this);
}

void InspectorServerClient::connected(GlibPointer<GSocketConnection> connection) {
    m_connection = std::move(connection);
    m_reader = {};
    // The hash names a set of backend commands. The one sent here matches none, and the server answers with its own
    // commands, which are of no interest for lists.
    const std::vector<std::byte> greeting =
        encodeInspectorFrame("SetupInspectorClient", g_variant_new("(^ay)", "list"));
    GOutputStream* const output = g_io_stream_get_output_stream(G_IO_STREAM(m_connection.get()));
    // A fresh connection's send buffer takes the few bytes at once.
    if (!g_output_stream_write_all(output, greeting.data(), greeting.size(), nullptr, nullptr, nullptr)) {
        lost();
        return;
    }
    readMore();
}

void InspectorServerClient::readMore() {
    GInputStream* const input = g_io_stream_get_input_stream(G_IO_STREAM(m_connection.get()));
    g_input_stream_read_async(
        input, m_buffer.data(), m_buffer.size(), G_PRIORITY_DEFAULT, m_cancellable.get(),
        [](GObject* stream, GAsyncResult* result, gpointer self) {
            GError* rawError = nullptr;
            const gssize size = g_input_stream_read_finish(G_INPUT_STREAM(stream), result, &rawError);
            const GlibPointer<GError> error(rawError);
            if (wasCancelled(error))
                return;
            auto* const client = static_cast<InspectorServerClient*>(self);
            if (size > 0)
                client->received(std::span(client->m_buffer).first(static_cast<std::size_t>(size)));
            else
                client->lost();
        },
        this);
}

void InspectorServerClient::received(std::span<const std::byte> bytes) {
    m_reader.append(bytes);
    bool hasChanged = false;
    while (const auto frame = m_reader.next()) {
        if (auto list = decodeTargetList(*frame)) {
            m_lists[list->connection] = std::move(list->targets);
            hasChanged = true;
        }
    }
    if (m_reader.isMalformed()) {
        lost();
        return;
    }
    readMore();
    if (hasChanged)
        publish();
}

void InspectorServerClient::lost() {
    const bool wasConnected = m_connection != nullptr;
    m_connection.reset();
    m_lists.clear();
    m_retry.set(g_timeout_add(
        retryInterval,
        [](gpointer self) -> gboolean {
            auto* const client = static_cast<InspectorServerClient*>(self);
            client->m_retry.forget();
            client->connect();
            return G_SOURCE_REMOVE;
        },
        this));
    if (wasConnected)
        publish();
}

void InspectorServerClient::publish() {
    InspectableTargets all;
    for (const auto& [connection, targets] : m_lists)
        all.insert(all.end(), targets.begin(), targets.end());
    m_onTargets(std::move(all));
}

} // namespace corvanta
