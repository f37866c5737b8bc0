// SPDX-License-Identifier: MIT
#include "InspectorChannel.h"

#include <utility>

namespace corvanta::lab {

namespace {

bool wasCancelled(const GlibPointer<GError>& error) {
    return g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED) != FALSE;
}

} // namespace

InspectorChannel::InspectorChannel(GlibPointer<GSocketConnection> connection, Handlers handlers)
    : m_connection(std::move(connection))
    , m_cancellable(g_cancellable_new())
    , m_handlers(std::move(handlers)) {
    readMore();
}

InspectorChannel::~InspectorChannel() {
    g_cancellable_cancel(m_cancellable.get());
    // Shut at once, whoever still holds a reference until its cancelled operation has returned.
    g_socket_close(g_socket_connection_get_socket(m_connection.get()), nullptr);
}

void InspectorChannel::send(const std::vector<std::byte>& frame) {
    if (m_closing.isSet())
        return;
    if (m_waiting > maximumWaiting) {
        // Whoever sends does not expect to be told of the end from within.
        m_closing.set(g_idle_add(
            [](gpointer self) -> gboolean {
                static_cast<InspectorChannel*>(self)->m_closing.forget();
                static_cast<InspectorChannel*>(self)->close();
                return G_SOURCE_REMOVE;
            },
            this));
        return;
    }
    m_waiting += frame.size();
    m_outgoing.emplace_back(g_bytes_new(frame.data(), frame.size()));
    if (m_outgoing.size() == 1)
        writeMore();
}

void InspectorChannel::readMore() {
    GInputStream* const input = g_io_stream_get_input_stream(G_IO_STREAM(m_connection.get()));
    g_input_stream_read_async(
        input, m_buffer.data(), m_buffer.size(), G_PRIORITY_DEFAULT, m_cancellable.get(),
        [](GObject* stream, GAsyncResult* result, gpointer self) {
            GError* rawError = nullptr;
            const gssize size = g_input_stream_read_finish(G_INPUT_STREAM(stream), result, &rawError);
            const GlibPointer<GError> error(rawError);
            if (wasCancelled(error))
                return;
            auto* const channel = static_cast<InspectorChannel*>(self);
            if (size > 0)
                channel->received(std::span(channel->m_buffer).first(static_cast<std::size_t>(size)));
            else
                channel->close();
        },
        this);
}

void InspectorChannel::received(std::span<const std::byte> bytes) {
    m_reader.append(bytes);
    while (const auto frame = m_reader.next())
        m_handlers.onFrame(*frame);
    if (m_reader.isMalformed())
        close();
    else
        readMore();
}

void InspectorChannel::writeMore() {
    GOutputStream* const output = g_io_stream_get_output_stream(G_IO_STREAM(m_connection.get()));
    g_output_stream_write_bytes_async(
        output, m_outgoing.front().get(), G_PRIORITY_DEFAULT, m_cancellable.get(),
        [](GObject* stream, GAsyncResult* result, gpointer self) {
            GError* rawError = nullptr;
            const gssize size = g_output_stream_write_bytes_finish(G_OUTPUT_STREAM(stream), result, &rawError);
            const GlibPointer<GError> error(rawError);
            // Any other failure shows in the reading.
            if (!error)
                static_cast<InspectorChannel*>(self)->written(size);
        },
        this);
}

void InspectorChannel::written(gssize size) {
    GlibPointer<GBytes>& front = m_outgoing.front();
    const gsize whole = g_bytes_get_size(front.get());
    const auto part = static_cast<gsize>(size);
    m_waiting -= part;
    if (part < whole)
        front.reset(g_bytes_new_from_bytes(front.get(), part, whole - part));
    else
        m_outgoing.pop_front();
    if (!m_outgoing.empty())
        writeMore();
}

void InspectorChannel::close() {
    // The handler may destroy the object that holds it.
    const auto onClosed = m_handlers.onClosed;
    onClosed();
}

} // namespace corvanta::lab
