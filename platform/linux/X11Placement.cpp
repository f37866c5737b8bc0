// SPDX-License-Identifier: MIT
//
// How a window gets its place: what is requested of the window manager, and what is made of its answer.
#include "X11Connection.h"
#include "X11Windows.h"

#include <poll.h>

#include <algorithm>
#include <chrono>

namespace corvanta {

namespace {

using namespace std::chrono_literals;

constexpr int placementTolerance = 2;
constexpr std::chrono::milliseconds placementBound = 80ms;
constexpr std::chrono::milliseconds placementRetry = 40ms;
/// Longer than an event is under way; for window managers that do not report everything.
constexpr std::chrono::milliseconds eventPatience = 10ms;
constexpr std::chrono::milliseconds lookInterval = 60ms;
/// Five seconds: a busy program that draws its own frame takes its time to give its shadow back.
constexpr int looksAfterwards = 80;

bool isNear(int left, int right) {
    return std::abs(left - right) <= placementTolerance;
}

bool isAt(const PixelRect& frame, const PixelPlacement& placement) {
    if (placement.position && (!isNear(frame.x, placement.position->x) || !isNear(frame.y, placement.position->y)))
        return false;
    return !placement.extent ||
           (isNear(frame.width, placement.extent->width) && isNear(frame.height, placement.extent->height));
}

/// Takes away what keeps a window from being placed; true when there was something to take away.
bool undoStates(X11Connection& x, X11Windows::Window window) {
    xcb_ewmh_connection_t& ewmh = x.ewmh;
    const std::vector<std::uint32_t> states = x.numbers(window, ewmh._NET_WM_STATE, XCB_ATOM_ATOM);
    const auto has = [&](xcb_atom_t state) { return std::ranges::find(states, state) != states.end(); };
    const auto remove = [&](xcb_atom_t first, xcb_atom_t second) {
        xcb_ewmh_request_change_wm_state(&ewmh, x.screenNumber, window, XCB_EWMH_WM_STATE_REMOVE, first, second,
                                         XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER);
    };
    bool changed = false;
    if (has(ewmh._NET_WM_STATE_MAXIMIZED_HORZ) || has(ewmh._NET_WM_STATE_MAXIMIZED_VERT)) {
        remove(ewmh._NET_WM_STATE_MAXIMIZED_HORZ, ewmh._NET_WM_STATE_MAXIMIZED_VERT);
        changed = true;
    }
    if (has(ewmh._NET_WM_STATE_FULLSCREEN)) {
        remove(ewmh._NET_WM_STATE_FULLSCREEN, XCB_ATOM_NONE);
        changed = true;
    }
    if (x.isIconified(window)) {
        xcb_map_window(x.connection, window);
        changed = true;
    }
    xcb_flush(x.connection);
    return changed;
}

void request(X11Connection& x, X11Windows::Window window, const PixelPlacement& placement, const PixelBorder& around) {
    std::uint32_t flags = 0;
    PixelRect client;
    if (placement.position) {
        flags |= XCB_EWMH_MOVERESIZE_WINDOW_X | XCB_EWMH_MOVERESIZE_WINDOW_Y;
        client.x = placement.position->x + around.left;
        client.y = placement.position->y + around.top;
    }
    if (placement.extent) {
        flags |= XCB_EWMH_MOVERESIZE_WINDOW_WIDTH | XCB_EWMH_MOVERESIZE_WINDOW_HEIGHT;
        client.width = std::max(1, placement.extent->width - around.horizontal);
        client.height = std::max(1, placement.extent->height - around.vertical);
    }
    // With static gravity the position is the client window's own, whatever the decorations are.
    xcb_ewmh_request_moveresize_window(
        &x.ewmh, x.screenNumber, window, XCB_GRAVITY_STATIC, XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER,
        static_cast<xcb_ewmh_moveresize_window_opt_flags_t>(flags), static_cast<std::uint32_t>(client.x),
        static_cast<std::uint32_t>(client.y), static_cast<std::uint32_t>(client.width),
        static_cast<std::uint32_t>(client.height));
    xcb_flush(x.connection);
}

/// The placement as the window's size hints let the window manager carry it out.
PixelPlacement attainable(const X11Connection& x, X11Windows::Window window, PixelPlacement placement,
                          const PixelBorder& around) {
    const std::vector<std::uint32_t> hints = x.numbers(window, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS);
    if (!placement.extent || hints.size() < 9)
        return placement;
    constexpr std::uint32_t hasMinimum = 1U << 4U;
    constexpr std::uint32_t hasMaximum = 1U << 5U;
    const auto fit = [&](int& extent, int border, std::size_t minimum, std::size_t maximum) {
        if ((hints[0] & hasMaximum) != 0)
            extent = std::min(extent, static_cast<int>(hints[maximum]) + border);
        if ((hints[0] & hasMinimum) != 0)
            extent = std::max(extent, static_cast<int>(hints[minimum]) + border);
    };
    fit(placement.extent->width, around.horizontal, 5, 7);
    fit(placement.extent->height, around.vertical, 6, 8);
    return placement;
}

enum class Progress { underWay, arrived, refused };

/// An attempt to place a window; hears while it lives what happens to the window.
class Attempt {
public:
    Attempt(X11Connection& x, X11Windows::Window window, const PixelPlacement& placement)
        : m_x(x)
        , m_window(window)
        , m_placement(placement) {
        select(XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE);
        m_isFromAnotherState = undoStates(x, window);
    }

    Attempt(const Attempt&) = delete;
    Attempt& operator=(const Attempt&) = delete;

    ~Attempt() { select(XCB_EVENT_MASK_NO_EVENT); }

    /// Whether a state of the window had to be undone first.
    [[nodiscard]] bool isFromAnotherState() const { return m_isFromAnotherState; }

    /// Whether the window was moved or resized, by whomever.
    [[nodiscard]] bool wasConfigured() const { return m_wasConfigured; }

    /// Requests what is to be requested, and says how far it has come.
    Progress advance() {
        while (const auto event = owned(xcb_poll_for_event(m_x.connection)))
            note(*event);
        const std::optional<PixelRect> client = m_x.clientRect(m_window);
        if (!client)
            return Progress::refused;
        const PixelBorder around = m_x.border(m_window);
        const auto now = std::chrono::steady_clock::now();
        // Undoing a state changes decorations and shadows a moment later, so the request is repeated with what they
        // are then.
        if (m_requestedBorder != around || now >= m_nextRequest) {
            request(m_x, m_window, m_placement, around);
            m_requestedBorder = around;
            m_nextRequest = now + placementRetry;
        }
        // Until something happens the frame may be that of the state before.
        if (m_isFromAnotherState && !m_wasStirred)
            return Progress::underWay;
        const PixelRect frame = outside(*client, around);
        if (isAt(frame, m_placement))
            return Progress::arrived;
        const PixelPlacement best = attainable(m_x, m_window, m_placement, around);
        return best != m_placement && isAt(frame, best) ? Progress::refused : Progress::underWay;
    }

    /// Returns when there is an event, also one that arrived together with a reply.
    void awaitEvent(std::chrono::nanoseconds atMost) {
        if (const auto event = owned(xcb_poll_for_queued_event(m_x.connection))) {
            note(*event);
            return;
        }
        pollfd descriptor{xcb_get_file_descriptor(m_x.connection), POLLIN, 0};
        const auto limit =
            std::chrono::ceil<std::chrono::milliseconds>(std::min<std::chrono::nanoseconds>(atMost, eventPatience));
        ::poll(&descriptor, 1, static_cast<int>(limit.count()));
    }

private:
    void select(std::uint32_t events) {
        xcb_change_window_attributes(m_x.connection, m_window, XCB_CW_EVENT_MASK, &events);
        xcb_flush(m_x.connection);
    }

    void note(const xcb_generic_event_t& event) {
        constexpr unsigned sentByClient = 0x80;
        const unsigned type = event.response_type & ~sentByClient;
        m_wasStirred = m_wasStirred || type != 0;
        m_wasConfigured = m_wasConfigured || type == XCB_CONFIGURE_NOTIFY;
    }

    X11Connection& m_x;
    X11Windows::Window m_window;
    PixelPlacement m_placement;
    bool m_isFromAnotherState = false;
    bool m_wasStirred = false;
    bool m_wasConfigured = false;
    /// What the last request reckoned with; nothing before the first.
    std::optional<PixelBorder> m_requestedBorder;
    std::chrono::steady_clock::time_point m_nextRequest;
};

} // namespace

bool X11Windows::place(Window window, const PixelPlacement& placement) {
    X11Connection& x = *m_connection;
    if (!x.works() || !x.clientRect(window))
        return false;
    Attempt attempt(x, window, placement);
    Progress progress = Progress::underWay;
    allowance(window).wait(
        [&] {
            progress = attempt.advance();
            return progress != Progress::underWay;
        },
        [&](std::chrono::nanoseconds atMost) { attempt.awaitEvent(atMost); });
    // What the window refuses it would refuse again.
    const bool isUnfinished =
        progress == Progress::underWay || (progress == Progress::arrived && attempt.isFromAnotherState());
    lookAfter(window, placement, isUnfinished);
    return progress == Progress::arrived || (progress == Progress::underWay && !attempt.wasConfigured());
}

HangAllowance& X11Windows::allowance(Window window) {
    // The server gives each program's connection a range of its own for the numbers of its windows.
    const std::uint32_t withinRange = xcb_get_setup(m_connection->connection)->resource_id_mask;
    return m_allowances.try_emplace(window & ~withinRange, placementBound).first->second;
}

void X11Windows::lookAfter(Window window, const PixelPlacement& placement, bool isUnfinished) {
    if (!isUnfinished && !m_unfinished.contains(window))
        return;
    // What is new takes the place of what was wanted before, also where nothing of it is left to be done.
    Unfinished& unfinished = m_unfinished[window];
    if (placement.position)
        unfinished.placement.position = isUnfinished ? placement.position : std::nullopt;
    if (placement.extent)
        unfinished.placement.extent = isUnfinished ? placement.extent : std::nullopt;
    if (!isUnfinished)
        return;
    unfinished.border = m_connection->border(window);
    unfinished.hasArrived = false;
    unfinished.looksLeft = looksAfterwards;
    if (!m_nextLook.isActive())
        m_nextLook.start(lookInterval);
}

void X11Windows::lookAtUnfinished() {
    for (auto entry = m_unfinished.begin(); entry != m_unfinished.end();) {
        auto& [window, unfinished] = *entry;
        const std::optional<PixelRect> client = m_connection->clientRect(window);
        const PixelBorder around = m_connection->border(window);
        // Where the shadow of a busy program comes back late, the window has to arrive once more; where a person has
        // moved it since, it has not.
        unfinished.hasArrived = unfinished.hasArrived && unfinished.border == around;
        unfinished.border = around;
        if (client && isAt(outside(*client, around), unfinished.placement))
            unfinished.hasArrived = true;
        else if (client && !unfinished.hasArrived)
            request(*m_connection, window, unfinished.placement, around);
        entry = !client || --unfinished.looksLeft == 0 ? m_unfinished.erase(entry) : std::next(entry);
    }
    if (m_unfinished.empty())
        m_nextLook.stop();
}

} // namespace corvanta
