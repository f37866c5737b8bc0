// SPDX-License-Identifier: MIT
#pragma once

#include "GlibPointers.h"
#include "InspectorFrames.h"

#include <array>
#include <cstddef>
#include <deque>
#include <functional>

namespace corvanta::lab {

/// One open connection of the inspector protocol. Main thread only.
class InspectorChannel {
public:
    /// How many bytes may wait for a side that does not read before the next frame is one too many.
    static constexpr std::size_t maximumWaiting = std::size_t{64} << 20;

    struct Handlers {
        std::function<void(const InspectorFrame&)> onFrame;
        /// The other side has gone, talks nonsense or does not read; it may destroy the channel.
        std::function<void()> onClosed;
    };

    /// The handlers are called from the main loop, never from within a call into this object.
    InspectorChannel(GlibPointer<GSocketConnection> connection, Handlers handlers);
    InspectorChannel(const InspectorChannel&) = delete;
    InspectorChannel& operator=(const InspectorChannel&) = delete;
    ~InspectorChannel();

    /// Sends behind everything sent before, without ever waiting. When too much waits already, the frame is dropped and
    /// the channel is closed: a side that stopped reading must not use up the memory of this one.
    void send(const std::vector<std::byte>& frame);

private:
    void readMore();
    void received(std::span<const std::byte> bytes);
    void writeMore();
    void written(gssize size);
    void close();

    GlibPointer<GSocketConnection> m_connection;
    GlibPointer<GCancellable> m_cancellable;
    Handlers m_handlers;
    InspectorFrameReader m_reader;
    std::array<std::byte, 65536> m_buffer{};
    std::deque<GlibPointer<GBytes>> m_outgoing;
    std::size_t m_waiting = 0;
    SourceGuard m_closing;
};

} // namespace corvanta::lab
