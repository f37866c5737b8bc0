// SPDX-License-Identifier: MIT
#include "AnswerWatch.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

#include <poll.h>

namespace corvanta::testing {

namespace {

using namespace std::chrono_literals;
using Time = std::chrono::steady_clock::time_point;

constexpr auto interval = 25ms;

template<typename Reply>
using Owned = std::unique_ptr<Reply, decltype([](Reply* reply) { std::free(reply); })>;

} // namespace

class AnswerWatch::State {
public:
    State()
        : m_connection(xcb_connect(nullptr, nullptr))
        , m_root(xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root)
        , m_protocols(atom("WM_PROTOCOLS"))
        , m_ping(atom("_NET_WM_PING")) {
        // Answers go to the root window: from Qt to who hears of its structure, from others to who hears of its
        // windows.
        select(m_root, XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    }

    ~State() { xcb_disconnect(m_connection); }

    State(const State&) = delete;
    State& operator=(const State&) = delete;

    void run() {
        while (!isEnding) {
            const Time now = std::chrono::steady_clock::now();
            if (const std::uint32_t wanted = nextWindow.exchange(0); wanted != 0) {
                m_window = wanted;
                forget();
                select(m_window, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
            }
            forgiveIfAsked();
            if (!m_askedAt && m_window != 0 && now >= m_nextTime)
                ask(now);
            pollfd waited{xcb_get_file_descriptor(m_connection), POLLIN, 0};
            constexpr int look = 5;
            ::poll(&waited, 1, look);
            while (const Owned<xcb_generic_event_t> event{xcb_poll_for_event(m_connection)})
                take(*event);
        }
    }

    std::atomic<bool> isEnding = false;
    std::atomic<bool> isForgiven = false;
    std::atomic<std::uint32_t> nextWindow = 0;
    std::atomic<std::int64_t> longest = 0;
    /// When the question was asked that has no answer yet; the beginning of time without one.
    std::atomic<Time> openSince = Time();
    std::atomic<int> answers = 0;

private:
    [[nodiscard]] xcb_atom_t atom(std::string_view name) const {
        const auto cookie = xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
        const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(m_connection, cookie, nullptr));
        return reply ? reply->atom : XCB_ATOM_NONE;
    }

    void select(xcb_window_t window, std::uint32_t events) const {
        xcb_change_window_attributes(m_connection, window, XCB_CW_EVENT_MASK, &events);
        xcb_flush(m_connection);
    }

    void ask(Time now) {
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = m_window;
        message.type = m_protocols;
        message.data.data32[0] = m_ping;
        message.data.data32[1] = ++m_question;
        message.data.data32[2] = m_window;
        xcb_send_event(m_connection, 0, m_window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&message));
        xcb_flush(m_connection);
        m_askedAt = now;
        openSince = now;
        m_nextTime = now + interval;
    }

    void take(const xcb_generic_event_t& event) {
        constexpr std::uint8_t typeMask = 0x7f;
        const auto type = event.response_type & typeMask;
        // The answer to what was forgiven may be here before this thread has heard of that.
        forgiveIfAsked();
        if (type == XCB_CLIENT_MESSAGE) {
            const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
            const bool isAnswer =
                message.type == m_protocols && message.data.data32[0] == m_ping && message.data.data32[1] == m_question;
            if (isAnswer && m_askedAt) {
                note(std::chrono::steady_clock::now() - *m_askedAt);
                forget();
                ++answers;
            }
        } else if (type == XCB_DESTROY_NOTIFY) {
            if (reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == m_window)
                leave();
        } else if (type == XCB_UNMAP_NOTIFY) {
            if (reinterpret_cast<const xcb_unmap_notify_event_t&>(event).window == m_window)
                leave();
        }
    }

    void leave() {
        m_window = 0;
        forget();
    }

    void forget() {
        m_askedAt.reset();
        openSince = Time();
    }

    void forgiveIfAsked() {
        if (isForgiven.exchange(false))
            forget();
    }

    void note(std::chrono::steady_clock::duration duration) {
        longest = std::max(longest.load(), std::chrono::duration_cast<std::chrono::milliseconds>(duration).count());
    }

    xcb_connection_t* m_connection;
    xcb_window_t m_root;
    xcb_atom_t m_protocols;
    xcb_atom_t m_ping;
    xcb_window_t m_window = 0;
    std::uint32_t m_question = 0x51000000;
    std::optional<Time> m_askedAt;
    Time m_nextTime;
};

AnswerWatch::AnswerWatch()
    : m_state(std::make_unique<State>())
    , m_asker([state = m_state.get()] { state->run(); }) {}

AnswerWatch::~AnswerWatch() {
    m_state->isEnding = true;
    m_asker.join();
}

void AnswerWatch::watch(std::uint32_t window) {
    m_state->nextWindow = window;
}

void AnswerWatch::forgive() {
    m_state->isForgiven = true;
}

std::chrono::milliseconds AnswerWatch::longest() const {
    const Time openSince = m_state->openSince;
    const auto open = openSince == Time() ? Time::duration() : std::chrono::steady_clock::now() - openSince;
    return std::max(std::chrono::milliseconds(m_state->longest),
                    std::chrono::duration_cast<std::chrono::milliseconds>(open));
}

int AnswerWatch::answers() const {
    return m_state->answers;
}

} // namespace corvanta::testing
