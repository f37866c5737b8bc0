// SPDX-License-Identifier: MIT
#include "InspectorFrames.h"

#include "GlibPointers.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace corvanta::lab {

namespace {

constexpr std::size_t headerSize = 5;
constexpr std::byte littleEndianFlag{1};
/// Behind the two numbers of the target.
constexpr std::size_t messageOffset = 2 * sizeof(std::uint64_t);

std::optional<TargetKind> targetKind(std::string_view type, std::string_view url) {
    if (type == "WebPage")
        return url.starts_with("safari-web-extension:") ? TargetKind::extensionPage : TargetKind::page;
    if (type == "ServiceWorker")
        return TargetKind::serviceWorker;
    if (type == "JavaScript")
        return TargetKind::javaScriptContext;
    return std::nullopt;
}

} // namespace

void InspectorFrameReader::append(std::span<const std::byte> bytes) {
    m_bytes.erase(m_bytes.begin(), m_bytes.begin() + static_cast<std::ptrdiff_t>(m_consumed));
    m_consumed = 0;
    m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
}

std::optional<InspectorFrame> InspectorFrameReader::next() {
    const std::span<const std::byte> rest = std::span(m_bytes).subspan(m_consumed);
    if (m_isMalformed || rest.size() < headerSize)
        return std::nullopt;
    std::size_t bodySize = 0;
    for (std::size_t index = 0; index < 4; ++index)
        bodySize = bodySize << 8U | std::to_integer<std::size_t>(rest[index]);
    if (bodySize == 0 || bodySize > maximumBodySize) {
        m_isMalformed = true;
        return std::nullopt;
    }
    if (rest.size() - headerSize < bodySize)
        return std::nullopt;

    const std::span<const std::byte> body = rest.subspan(headerSize, bodySize);
    const auto nameEnd = std::ranges::find(body, std::byte{0});
    if (nameEnd == body.end()) {
        m_isMalformed = true;
        return std::nullopt;
    }
    InspectorFrame frame;
    std::ranges::transform(body.begin(), nameEnd, std::back_inserter(frame.name),
                           [](std::byte byte) { return std::to_integer<char>(byte); });
    frame.parameters.assign(nameEnd + 1, body.end());
    frame.isLittleEndian = (rest[4] & littleEndianFlag) != std::byte{0};
    m_consumed += headerSize + bodySize;
    return frame;
}

std::vector<std::byte> encodeInspectorFrame(std::string_view name, GVariant* parameters) {
    const GlibPointer<GVariant> owned(parameters ? g_variant_ref_sink(parameters) : nullptr);
    const std::size_t parametersSize = owned ? g_variant_get_size(owned.get()) : 0;
    const std::size_t bodySize = name.size() + 1 + parametersSize;

    std::vector<std::byte> bytes;
    bytes.reserve(headerSize + bodySize);
    for (unsigned shift = 32; shift > 0; shift -= 8)
        bytes.push_back(static_cast<std::byte>(bodySize >> (shift - 8U) & 0xFFU));
    bytes.push_back(std::endian::native == std::endian::little ? littleEndianFlag : std::byte{0});
    std::ranges::copy(std::as_bytes(std::span(name)), std::back_inserter(bytes));
    bytes.push_back(std::byte{0});
    if (parametersSize > 0) {
        // Copied rather than stored in place, where it would not be aligned.
        const auto* const data = static_cast<const std::byte*>(g_variant_get_data(owned.get()));
        bytes.insert(bytes.end(), data, data + parametersSize);
    }
    return bytes;
}

std::vector<std::byte> encodeInspectorFrame(const InspectorFrame& frame) {
    std::vector<std::byte> bytes = encodeInspectorFrame(frame.name, nullptr);
    const std::size_t bodySize = bytes.size() - headerSize + frame.parameters.size();
    for (unsigned index = 0; index < 4; ++index)
        bytes[index] = static_cast<std::byte>(bodySize >> (24U - 8U * index) & 0xFFU);
    bytes[4] = frame.isLittleEndian ? littleEndianFlag : std::byte{0};
    bytes.insert(bytes.end(), frame.parameters.begin(), frame.parameters.end());
    return bytes;
}

std::optional<TargetIdentifier> frameTarget(const InspectorFrame& frame) {
    if (frame.parameters.size() < messageOffset)
        return std::nullopt;
    const auto number = [&frame](std::size_t offset) {
        std::uint64_t value = 0;
        std::memcpy(&value, frame.parameters.data() + offset, sizeof value);
        return frame.isLittleEndian ? GUINT64_FROM_LE(value) : GUINT64_FROM_BE(value);
    };
    return TargetIdentifier{number(0), number(sizeof(std::uint64_t))};
}

std::optional<std::string_view> frameMessage(const InspectorFrame& frame) {
    if (frame.parameters.size() <= messageOffset || frame.parameters.back() != std::byte{0})
        return std::nullopt;
    return std::string_view(reinterpret_cast<const char*>(frame.parameters.data()) + messageOffset,
                            frame.parameters.size() - messageOffset - 1);
}

std::optional<TargetList> decodeTargetList(const InspectorFrame& frame) {
    if (frame.name != "SetTargetList")
        return std::nullopt;
    const GlibPointer<GBytes> bytes(g_bytes_new(frame.parameters.data(), frame.parameters.size()));
    GlibPointer<GVariant> parameters(
        g_variant_ref_sink(g_variant_new_from_bytes(G_VARIANT_TYPE("(ta(tsssb))"), bytes.get(), FALSE)));
    if (frame.isLittleEndian != (std::endian::native == std::endian::little))
        parameters.reset(g_variant_byteswap(parameters.get()));
    if (!g_variant_is_normal_form(parameters.get()))
        return std::nullopt;

    TargetList list;
    GVariantIter* iterator = nullptr;
    g_variant_get(parameters.get(), "(ta(tsssb))", &list.connection, &iterator);
    std::uint64_t target = 0;
    const char* type = nullptr;
    const char* name = nullptr;
    const char* url = nullptr;
    gboolean hasLocalDebugger = FALSE;
    while (g_variant_iter_next(iterator, "(t&s&s&sb)", &target, &type, &name, &url, &hasLocalDebugger)) {
        if (const auto kind = targetKind(type, url))
            list.targets.push_back({{list.connection, target}, name, url, *kind});
    }
    g_variant_iter_free(iterator);
    std::ranges::sort(list.targets, {}, &InspectableTarget::identifier);
    return list;
}

} // namespace corvanta::lab
