// SPDX-License-Identifier: MIT
#include "AtspiWindows.h"

#include "AtspiMessages.h"

#include <algorithm>

namespace corvanta {

namespace {

using namespace Qt::Literals::StringLiterals;

const QString rootObjectPath = u"/org/a11y/atspi/accessible/root"_s;

} // namespace

AtspiWindows::AtspiWindows(X11Windows& windows, const AtspiBus& bus, HangAllowance& allowance,
                           AtspiApplications& applications)
    : m_windows(windows)
    , m_bus(bus)
    , m_allowance(allowance)
    , m_applications(applications) {}

bool AtspiWindows::isWindowRole(AtspiRole role) {
    switch (role) {
    case AtspiRole::frame:
    case AtspiRole::dialog:
    case AtspiRole::alert:
    case AtspiRole::fileChooser:
    case AtspiRole::colorChooser:
    case AtspiRole::fontChooser:
        return true;
    default:
        return false;
    }
}

bool AtspiWindows::isWindow(const AtspiItem& item) {
    return isWindowRole(item.role) && item.parent == AtspiReference{item.reference.bus, rootObjectPath};
}

std::optional<PixelRect> AtspiWindows::frame(const AtspiItem& item) {
    if (!isWindow(item))
        return extents(item.reference);
    const std::optional<X11Windows::Window> window = windowBehind(item);
    return window ? m_windows.outerFrame(*window) : std::nullopt;
}

std::optional<X11Windows::Window> AtspiWindows::windowBehind(const AtspiItem& item) {
    if (!isWindow(item))
        return std::nullopt;
    const std::optional<std::uint32_t> processId = m_applications.processId(item.reference.bus);
    if (!processId)
        return std::nullopt;
    std::vector<X11Windows::Window> candidates = m_windows.windows();
    std::erase_if(candidates, [&](X11Windows::Window window) { return m_windows.processId(window) != processId; });
    const AtspiWindowMatch::Facts facts{
        [this](X11Windows::Window window) { return m_windows.title(window); },
        [this](X11Windows::Window window) { return m_windows.outerFrame(window).value_or(PixelRect()); },
        [&] { return extents(item.reference).value_or(PixelRect()); },
    };
    return m_match.windowBehind(item.reference, item.name, std::move(candidates), facts);
}

std::optional<PixelRect> AtspiWindows::extents(const AtspiReference& reference) {
    constexpr quint32 onScreen = 0;
    HangAllowance::Call call{
        m_bus.call(reference, u"org.a11y.atspi.Component"_s, u"GetExtents"_s, {QVariant::fromValue(onScreen)})};
    return m_allowance.wait(call) ? parseExtents(call.pending.reply()) : std::nullopt;
}

} // namespace corvanta
