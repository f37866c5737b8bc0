// SPDX-License-Identifier: MIT
#pragma once

#include "InspectableTarget.h"

#include <glib.h>

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace corvanta::lab {

/// One message of the WebKit remote inspector's socket protocol (GLib ports, WebKitGTK 2.50).
///
/// On the wire: the body's size as four bytes, most significant first; one byte of flags, whose lowest bit says that
/// the sender is little-endian; then the body, which is the message's name with a closing NUL and a serialised
/// GVariant. The size does not count the flags.
struct InspectorFrame {
    std::string name;
    std::vector<std::byte> parameters;
    bool isLittleEndian = true;
};

/// Cuts a byte stream into frames. It trusts nothing: a stream that cannot be right is malformed for good.
class InspectorFrameReader {
public:
    /// 128 MiB: far above the heap snapshots and resources that inspectors are sent.
    static constexpr std::size_t maximumBodySize = std::size_t{128} << 20;

    void append(std::span<const std::byte> bytes);

    /// The next whole frame, or nothing while it is not complete or the stream is malformed.
    [[nodiscard]] std::optional<InspectorFrame> next();

    [[nodiscard]] bool isMalformed() const { return m_isMalformed; }

private:
    std::vector<std::byte> m_bytes;
    std::size_t m_consumed = 0;
    bool m_isMalformed = false;
};

/// A frame with `name` and `parameters` (floating references are consumed; may be null), ready to be sent.
[[nodiscard]] std::vector<std::byte> encodeInspectorFrame(std::string_view name, GVariant* parameters);

/// The same frame again, byte by byte.
[[nodiscard]] std::vector<std::byte> encodeInspectorFrame(const InspectorFrame& frame);

/// The target that a message of one inspector is about: what its parameters begin with. Nothing when they are too
/// short.
[[nodiscard]] std::optional<TargetIdentifier> frameTarget(const InspectorFrame& frame);

/// The text of a "SendMessageToBackend" or "SendMessageToFrontend" frame, which is JSON; nothing when it has none.
/// Valid as long as the frame is.
[[nodiscard]] std::optional<std::string_view> frameMessage(const InspectorFrame& frame);

/// What one process of the device offers.
struct TargetList {
    std::uint64_t connection = 0;
    /// In the order of their numbers; targets of unknown types are left out.
    InspectableTargets targets;
};

/// What a "SetTargetList" frame says; nothing for other frames and for damaged ones.
[[nodiscard]] std::optional<TargetList> decodeTargetList(const InspectorFrame& frame);

} // namespace corvanta::lab
