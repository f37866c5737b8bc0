// SPDX-License-Identifier: MIT
#include "InspectorChannel.h"

#include <gtest/gtest.h>

#include <sys/socket.h>

#include <array>
#include <memory>

namespace corvanta::lab {

namespace {

GlibPointer<GSocketConnection> connectionOn(int descriptor) {
    const GlibPointer<GSocket> socket(g_socket_new_from_fd(descriptor, nullptr));
    return GlibPointer<GSocketConnection>(g_socket_connection_factory_create_connection(socket.get()));
}

/// Serves events until the condition holds, for at most ten seconds.
template<typename Condition>
bool eventually(Condition condition) {
    bool isOver = false;
    SourceGuard limit;
    limit.set(g_timeout_add_seconds(
        10,
        [](gpointer over) -> gboolean {
            *static_cast<bool*>(over) = true;
            return G_SOURCE_CONTINUE;
        },
        &isOver));
    while (!condition() && !isOver)
        g_main_context_iteration(nullptr, TRUE);
    return condition();
}

class InspectorChannelTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, m_ends.data()), 0); }

    InspectorChannel::Handlers handlers() {
        return {.onFrame = [this](const InspectorFrame&) { ++m_frames; }, .onClosed = [this] { m_isClosed = true; }};
    }

    std::array<int, 2> m_ends{-1, -1};
    int m_frames = 0;
    bool m_isClosed = false;
};

} // namespace

TEST_F(InspectorChannelTest, ClosesWhenTheOtherSideDoesNotRead) {
    InspectorChannel channel(connectionOn(m_ends[0]), handlers());
    const auto other = connectionOn(m_ends[1]);
    const std::vector<std::byte> large(InspectorChannel::maximumWaiting + 1'000'000);

    channel.send(large);
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
    EXPECT_FALSE(m_isClosed) << "one frame is never too many";
    channel.send(encodeInspectorFrame("Hi", nullptr));
    EXPECT_FALSE(m_isClosed) << "not from within";

    EXPECT_TRUE(eventually([this] { return m_isClosed; }));
}

TEST_F(InspectorChannelTest, GoesOnWithASideThatReads) {
    InspectorChannel channel(connectionOn(m_ends[0]), handlers());
    const auto body = encodeInspectorFrame("Hi", g_variant_new("(s)", std::string(5'000'000, 'x').c_str()));
    bool isOtherClosed = false;
    int received = 0;
    const InspectorChannel other(connectionOn(m_ends[1]), {.onFrame = [&](const InspectorFrame&) { ++received; },
                                                           .onClosed = [&] { isOtherClosed = true; }});
    for (int round = 1; round <= 20; ++round) {
        channel.send(body);
        ASSERT_TRUE(eventually([&] { return received == round; }));
    }
    EXPECT_FALSE(m_isClosed || isOtherClosed);
}

} // namespace corvanta::lab
